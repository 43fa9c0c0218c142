// Keys of order words compared in step are compared as the level walk does.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "bytes_testing.h"
#include "ot95/typemgr.h"
#include "text/collation/compare.h"
#include "text/rows/stored.h"

namespace {

using Key = std::vector<unsigned char>;

Key MakeKey(const std::vector<unsigned short>& words, unsigned char script, unsigned char form) {
  Key key(ot95::kHeaderSize + words.size() * 2);
  ot95::StoreLength(key.data(), key.size(), form);
  key[2] = OT_CS_ORDER;
  key[3] = script;
  for (std::size_t i = 0; i < words.size(); ++i) {
    ot95::StoreLength(&key[ot95::kHeaderSize + i * 2], words[i], form);
  }
  key.push_back(0);
  key.push_back(0xff);
  return key;
}

TEST(KeysInStep, EqualTheLevelWalk) {
  std::mt19937 random(95);
  const auto below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
  // Letters of several cases and accents, digits, symbols, spaces, ideographs, and an early end.
  const unsigned short alphabet[] = {0x7010, 0x4010, 0x7110, 0x728c, 0x7011, 0x3f01, 0x3f02,
                                     0x0060, 0x0061, 0x0006, 0x0007, 0x8001, 0xfffe, 0x0000};
  const unsigned char scripts[] = {1, 1, 1, 2, 0x14, 0x50};
  const unsigned short options[] = {0, 0x20, 0x40, 0x60, 0x80, 0x200, 0x2e0};
  for (int round = 0; round < 200000; ++round) {
    std::vector<unsigned short> words1(below(9)), words2;
    const unsigned letters = below(4) == 0 ? unsigned{std::size(alphabet)} : 6;
    for (auto& word : words1) word = alphabet[below(letters)];
    words2 = words1;
    for (unsigned changes = below(3); changes > 0 && !words2.empty(); --changes) {
      words2[below(static_cast<unsigned>(words2.size()))] = alphabet[below(std::size(alphabet))];
    }
    if (below(4) == 0) words2.resize(below(9), 0x7010);
    const unsigned char script1 = scripts[below(std::size(scripts))];
    const unsigned char script2 = below(8) == 0 ? scripts[below(std::size(scripts))] : script1;
    const unsigned char form = below(2) ? OT_FORMAT_BIG_ENDIAN : OT_FORMAT_NATIVE;
    const auto op =
        static_cast<unsigned short>(OT_CMP_NO_WILDCARDS | options[below(std::size(options))]);
    Key key1 = MakeKey(words1, script1, form);
    Key key2 = MakeKey(words2, script2, form);
    const auto span = [form](const Key& key) {
      return ot95::TextSpan::Bounded(reinterpret_cast<const char*>(key.data()) + ot95::kHeaderSize,
                                     key.size() - ot95::kHeaderSize - ot95::kTerminatorSize,
                                     OT_CS_ORDER, key[3], form == OT_FORMAT_BIG_ENDIAN);
    };
    int status = -1;
    const auto format = static_cast<unsigned char>(form | (below(2) ? ot95::kStoreKey : 0));
    const long found =
        StringCompare(format, key1.size(), key1.data(), key2.size(), key2.data(), op, 1, status);
    const long expected = ot95::CompareSpansPlainly(span(key1), span(key2), op);
    ASSERT_EQ((found > 0) - (found < 0), (expected > 0) - (expected < 0))
        << Hex(key1.data(), key1.size()) << ' ' << Hex(key2.data(), key2.size()) << " op "
        << std::hex << op;
    ASSERT_EQ(status, 0);
  }
}

}  // namespace
