#include "text/collation/keycompare.h"

#include <algorithm>

namespace ot95 {
namespace {

/// The words of a key.
struct Words {
  const char* at = nullptr;
  const char* end = nullptr;
  unsigned char script = 0;

  bool Read(const void* value, std::size_t available, unsigned char format) {
    if (value == nullptr || available < kHeaderSize) return false;
    const std::size_t length = LoadLength(value, format);
    const auto* key = static_cast<const char*>(value);
    if (length < kHeaderSize || length + 2 > available) return false;
    if ((format & kStoreKey) == 0 && IsOldForm(value, length)) return false;
    if (static_cast<unsigned char>(key[2]) != OT_CS_ORDER) return false;
    script = static_cast<unsigned char>(key[3]);
    at = key + kHeaderSize;
    end = at + (length - kHeaderSize) / 2 * 2;
    return script != 0 && (script & kMixedScripts) == 0;
  }
  unsigned short Peek(bool reversed) const { return at != end ? LoadUnit(at, true, reversed) : 0; }
  unsigned short Next(bool reversed) {
    const unsigned short word = Peek(reversed);
    if (at != end) at += 2;
    return word;
  }
};

// To the first words that aren't the same, or end the text.
void PassEqualWords(Words& words1, Words& words2) {
  const auto left =
      static_cast<std::size_t>(std::min(words1.end - words1.at, words2.end - words2.at));
  const std::size_t passed = PassEqual<sizeof(std::uint16_t)>(words1.at, words2.at, 0, left);
  words1.at += passed;
  words2.at += passed;
}

// What begins with symbols on one side or both: to the next real character of each.
void MeetBehindSymbols(Words& words1, Words& words2, std::uint32_t& key1, std::uint32_t& key2,
                       bool reversed, const Levels& levels, Differences& differences) {
  const auto next = [&](Words& words) {
    std::uint32_t key = 0;
    do key = ComposeOrderKey(words.Next(reversed), words.script);
    while (!IsReal(key) && levels.Ignores(key));
    return key;
  };
  const int symbol = PairSymbols(
      key1, [&] { return next(words1); }, key2, [&] { return next(words2); },
      [](std::uint32_t) { return false; });
  if (symbol != 0) differences.symbol = symbol;
}

// Goes on to where letters tell how two keys sort. @return 0 where something else comes first.
[[gnu::always_inline]] inline int CompareLetterWords(Words& words1, Words& words2, bool reversed,
                                                     Differences& differences) {
  for (;;) {
    PassEqualWords(words1, words2);
    const unsigned short word1 = words1.Peek(reversed);
    const unsigned short word2 = words2.Peek(reversed);
    if (!IsLetterWord(word1) || !IsLetterWord(word2)) return 0;
    if (((word1 ^ word2) & kLetterRank) != 0) {
      return (word1 & kLetterRank) < (word2 & kLetterRank) ? -1 : 1;
    }
    if (word1 != word2) {
      differences.Note(ComposeOrderKey(word1, words1.script),
                       ComposeOrderKey(word2, words2.script));
    }
    words1.at += 2;
    words2.at += 2;
  }
}

// What of a word decides before all else.
unsigned PrimaryOf(unsigned word) {
  return IsLetterWord(word) ? word & (kFirstLetter | kLetterRank) : word;
}

// Where keys go on with symbols or digits, or one ends: how what is behind them sorts. Any other
// difference weighs less. @return 0 where that can't tell.
int SignBehindSymbols(Words words1, Words words2, bool reversed) {
  const auto firstReal = [reversed](Words& words) {
    unsigned word = words.Next(reversed);
    while (word != 0 && word < kFirstDigit) word = words.Next(reversed);
    return word;
  };
  const unsigned primary1 = PrimaryOf(firstReal(words1));
  const unsigned primary2 = PrimaryOf(firstReal(words2));
  return (primary1 > primary2) - (primary1 < primary2);
}

[[gnu::noinline]] int CompareWords(Words words1, Words words2, bool reversed, const Levels& levels,
                                   Differences differences) {
  for (;;) {
    const Words before1 = words1;
    const Words before2 = words2;
    const unsigned short word1 = words1.Next(reversed);
    const unsigned short word2 = words2.Next(reversed);
    if (word1 == word2) {
      if (word1 == 0) return differences.Decide(levels);
      continue;
    }
    std::uint32_t key1 = ComposeOrderKey(word1, words1.script);
    std::uint32_t key2 = ComposeOrderKey(word2, words2.script);
    if (!IsReal(key1) || !IsReal(key2)) {
      words1 = before1;
      words2 = before2;
      MeetBehindSymbols(words1, words2, key1, key2, reversed, levels, differences);
    }
    differences.Note(key1, key2);
    if (differences.primary != 0) return differences.primary;
    if (key1 == 0) return differences.Decide(levels);
  }
}

[[gnu::always_inline]] inline int CompareWholly(Words words1, Words words2, bool reversed,
                                                unsigned short cmpOp) {
  Differences differences;
  if (words1.script != kBeyondAlphabets) {
    int sign = CompareLetterWords(words1, words2, reversed, differences);
    const bool alphabet = words1.script < kBeyondAlphabets;  // with symbols between its letters
    if (sign == 0 && alphabet) sign = SignBehindSymbols(words1, words2, reversed);
    if (sign != 0) return sign;
  }
  return CompareWords(words1, words2, reversed, Levels(cmpOp), differences);
}

}  // namespace

std::optional<int> CompareKeysInStep(unsigned char format, unsigned long length1,
                                     const void* value1, unsigned long length2, const void* value2,
                                     unsigned short cmpOp) {
  constexpr unsigned short way = OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY;
  const bool memory = (format & 15) == OT_FORMAT_MEMORY;
  if (memory || (cmpOp & way) != OT_CMP_NO_WILDCARDS) return {};
  Words words1;
  Words words2;
  if (!words1.Read(value1, length1, format) || !words2.Read(value2, length2, format)) return {};
  if (words1.script != words2.script) return {};
  return CompareWholly(words1, words2, IsReversed(format), cmpOp);
}

long CompareKeysFrom(const char* key1, const char* key2, std::size_t at, unsigned short cmpOp,
                     bool reversed) {
  const auto from = [at, reversed](const char* key) -> Words {
    const std::size_t length = LoadUnit(key, true, reversed);
    const char* const end = key + (length & ~std::size_t{1});
    return {key + std::min(at, static_cast<std::size_t>(end - key)), end,
            static_cast<unsigned char>(key[3])};
  };
  return CompareWholly(from(key1), from(key2), reversed, cmpOp);
}

}  // namespace ot95
