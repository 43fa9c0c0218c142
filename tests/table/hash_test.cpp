// Hashes of the scalar and the nullable rows.
#include <gtest/gtest.h>

#include <random>

#include "bytes_testing.h"
#include "ot95/store.h"
#include "ot95/typemgr.h"

namespace {

constexpr OtDWord kMultiplier = 1103515245;
constexpr OtDWord kNullMarker = 0xfefe7575;
constexpr int kEnd = OT_ERR_END_OF_DATA;

struct Hashed {
  OtDWord hash;
  int status;
  bool operator==(const Hashed&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Hashed& h) {
  return out << "(" << h.hash << ", " << h.status << ")";
}

Hashed Hash(char id, int format, ExactBlock& value, unsigned long count) {
  OtTypeMgr types;
  Hashed hashed{99, 99};
  const unsigned long hash = types.Hash(id, value.size(), value.data(), count,
                                        static_cast<unsigned char>(format), hashed.status);
  hashed.hash = static_cast<OtDWord>(hash);
  EXPECT_EQ(hash, hashed.hash) << "a hash has 32 bits";
  return hashed;
}

TEST(Hash, FoldsContributionsOfElements) {
  const struct {
    const char* what;
    char id;
    const char* bigEndian;
    unsigned long count;
    OtDWord fold;
    int status;
  } cases[] = {
      {"char", 0, "ff", 1, 0xffffffff, 0},
      {"OtByte", 10, "ff", 1, 0xff, 0},
      {"short", 1, "ffff", 1, 0xffffffff, 0},
      {"shorts of both signs", 1,
       "8001"
       "7ffe",
       2, 0xffffffff, 0},
      {"OtWord", 5, "ffff", 1, 0xffff, 0},
      {"long", 2, "01020304", 1, 0x01020304, 0},
      {"OtDWord", 6, "fedcba98", 1, 0xfedcba98, 0},
      {"BlockId", 14, "0000004d", 1, 77, 0},
      {"int", 7, "fffffffe", 1, 0xfffffffe, 0},
      {"unsigned", 8, "80000000", 1, 0x80000000, 0},
      {"enum", 9, "00000005", 1, 5, 0},
      {"float", 4, "3fc00000", 1, 0x3fc00000, 0},
      {"d_Interval", 25, "3fc00000", 1, 0x3fc00000, 0},
      {"double", 3, "c004000000000001", 1, 0xc0040001, 0},
      {"double zero", 3, "0000000000000000", 1, 0, 0},
      {"double minus zero", 3, "8000000000000000", 1, 0x80000000, 0},
      {"two equal ones", 2, "0102030401020304", 2, 0, 0},
      {"one and two", 1, "00010002", 2, 3, 0},
      {"two and one", 1, "00020001", 2, 3, 0},
      {"the data end", 7, "00000007", 2, 7, kEnd},
      {"more data than asked for", 7, "0000000700000001", 1, 7, 0},
      {"a partial element", 7, "0000000712", 2, 0x12000007, 0},
      {"and the end behind it", 7, "0000000712", 3, 0x12000007, kEnd},
      {"half a double", 3, "01020304", 1, 0x01020304, 0},
  };
  OtTypeMgr types;
  for (const auto& c : cases) {
    if (CurrentFactory[static_cast<int>(c.id)]->Hash == nullptr) continue;
    SCOPED_TRACE(c.what);
    const std::vector<unsigned char> bytes = Unhex(c.bigEndian);
    ExactBlock stored(bytes);
    EXPECT_EQ(Hash(c.id, 2, stored, c.count), (Hashed{c.fold * kMultiplier, c.status}));
    const unsigned width = types.MemLenGet(c.id, 1);
    if (bytes.size() % width != 0) continue;
    std::vector<unsigned char> memory(bytes);
    types.Load(c.id, memory.data(), memory.data(), 2,
               static_cast<unsigned long>(bytes.size()) / width);
    ExactBlock native(memory);
    for (const int format : {8, 1, 7, 0xf8}) {
      EXPECT_EQ(Hash(c.id, format, native, c.count), (Hashed{c.fold * kMultiplier, c.status}))
          << "form " << format;
    }
  }
}

TEST(Hash, FoldsLongArraysOfAnyLength) {
  std::mt19937 random(3);
  for (std::size_t length = 1; length < 700; length += 1 + length / 16) {
    std::vector<std::uint16_t> words(length);
    OtDWord fold = 0;
    for (auto& word : words) {
      word = static_cast<std::uint16_t>(random());
      fold ^= static_cast<OtDWord>(static_cast<std::int16_t>(word));
    }
    const auto count = static_cast<unsigned long>(length);
    ExactBlock native(words.data(), 2 * length);
    EXPECT_EQ(Hash(1, 1, native, count), (Hashed{fold * kMultiplier, 0})) << length;
    ShortStore(words.data(), words.data(), 2, count);
    ExactBlock bigEndian(words.data(), 2 * length);
    EXPECT_EQ(Hash(1, 2, bigEndian, count), (Hashed{fold * kMultiplier, 0})) << length;
  }
}

TEST(Hash, OfNullableRowsCarriesTheMultiplierInEachElement) {
  const struct {
    const char* what;
    char id;
    const char* bigEndian;  // Flag, then value.
    unsigned long count;
    OtDWord hash;
    int status;
  } cases[] = {
      {"OtNull_short 5 as short 5", 30, "000005", 1, 5 * kMultiplier, 0},
      {"OtNull_short -1", 30, "00ffff", 1, 0xffffffff * kMultiplier, 0},
      {"OtNull_ushort", 31, "00ffff", 1, 0xffff * kMultiplier, 0},
      {"OtNull_char", 28, "00ff", 1, 0xffffffff * kMultiplier, 0},
      {"OtNull_uchar", 29, "00ff", 1, 0xff * kMultiplier, 0},
      {"OtNull_OtInt64", 38, "000000000100000002", 1, 3 * kMultiplier, 0},
      {"OtNull_double", 37, "00c004000000000001", 1, 0xc0040001 * kMultiplier, 0},
      {"a null", 30, "010000", 1, kNullMarker, 0},
      {"two nulls", 30, "010000010000", 2, 0, 0},
      {"a null and a value", 30, "010000000005", 2, kNullMarker ^ (5 * kMultiplier), 0},
      {"an unknown flag is no null", 30, "020005", 1, 5 * kMultiplier, 0},
      {"the data end", 30, "000005", 2, 5 * kMultiplier, kEnd},
      {"a partial element", 30, "0000", 1, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ExactBlock stored(Unhex(c.bigEndian));
    EXPECT_EQ(Hash(c.id, 2, stored, c.count), (Hashed{c.hash, c.status}));
  }
  const struct {
    std::int16_t value;
    char isNull;
  } records[2] = {{5, 0}, {0, 1}};
  ExactBlock memory(records, sizeof records);
  EXPECT_EQ(Hash(30, 8, memory, 2), (Hashed{kNullMarker ^ (5 * kMultiplier), 0}));
}

TEST(Hash, OfNoElementsIsZero) {
  OtTypeMgr types;
  for (char id = 0; id < 41; ++id) {
    if (types.MemLenGet(id, 1) == 0 || CurrentFactory[static_cast<int>(id)]->Hash == nullptr)
      continue;
    if (id == 20 || id == 21) continue;  // Legacy strings don't walk, and leave the status.
    int status = 99;
    EXPECT_EQ(types.Hash(id, 0, nullptr, 0, 8, status), 0U) << types.NameGet(id, nullptr);
    EXPECT_EQ(status, 0) << types.NameGet(id, nullptr);
  }
}

}  // namespace
