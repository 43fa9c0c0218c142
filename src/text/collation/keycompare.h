#ifndef OT95_SRC_TEXT_COLLATION_KEYCOMPARE_H
#define OT95_SRC_TEXT_COLLATION_KEYCOMPARE_H

/// @file
/// Comparison of index keys: texts of order words.

#include <optional>

#include "text/collation/alike.h"
#include "text/collation/walk.h"
#include "text/rows/stored.h"

namespace ot95 {

/// The part of a letter's word that ranks before its accent and case.
inline constexpr unsigned kLetterRank = 0x7f;

/// Whether two stored values are whole keys of one alphabet, and how long the shorter one is: the
/// two begin with lengths in the given order of bytes.
template <bool reversed>
[[gnu::always_inline]] inline std::size_t EndOfKeys(std::size_t available1, const char* key1,
                                                    std::size_t available2, const char* key2) {
  if (available1 < kHeaderSize || available2 < kHeaderSize) return 0;
  if (LoadWide(key1 + 2) != LoadWide(key2 + 2)) return 0;  // code set and script
  if (static_cast<unsigned char>(key1[2]) != OT_CS_ORDER) return 0;
  if (static_cast<unsigned char>(key1[3]) - 1U >= kBeyondAlphabets - 1U) return 0;
  const std::size_t length1 = LoadUnit(key1, true, reversed);
  const std::size_t length2 = LoadUnit(key2, true, reversed);
  if (length1 + 2 > available1 || length2 + 2 > available2) return 0;
  return std::min(length1, length2) & ~std::size_t{1};
}

/// Compares whole keys of one alphabet from a place on before which they are the same.
long CompareKeysFrom(const char* key1, const char* key2, std::size_t at, unsigned short cmpOp,
                     bool reversed);

/// Compares whole keys of one alphabet. Most steps down the tree of an index end where the first
/// words that differ are letters of different rank. @param end of the shorter one.
template <bool reversed>
[[gnu::always_inline]] inline long CompareWholeKeys(const char* key1, const char* key2,
                                                    std::size_t end, unsigned short cmpOp) {
  constexpr std::size_t block = 8;
  if (end < kHeaderSize + block) return CompareKeysFrom(key1, key2, kHeaderSize, cmpOp, reversed);
  const std::size_t at = end < kHeaderSize + 2 * block
                             ? FirstApart<2, block>(key1, key2, kHeaderSize, end)
                             : FirstApart<2, 2 * block>(key1, key2, kHeaderSize, end);
  if (at < end) {
    const unsigned word1 = LoadUnit(key1 + at, true, reversed);
    const unsigned word2 = LoadUnit(key2 + at, true, reversed);
    constexpr unsigned kinds = 0xc000;
    const bool letters = (((word1 ^ kFirstLetter) | (word2 ^ kFirstLetter)) & kinds) == 0;
    const int apart = static_cast<int>(word1 & kLetterRank) - static_cast<int>(word2 & kLetterRank);
    if (letters && apart != 0) return apart < 0 ? -1 : 1;
  } else if (LoadWide(key1) == LoadWide(key2)) {
    return 0;
  }
  return CompareKeysFrom(key1, key2, at, cmpOp, reversed);
}

/// Compares two keys of order words as an index does at every step down its tree: word by word.
/// @return what the level walk gives; nothing where these aren't two whole keys of one script, or
///   where wildcards or whole orders are asked for.
std::optional<int> CompareKeysInStep(unsigned char format, unsigned long length1,
                                     const void* value1, unsigned long length2, const void* value2,
                                     unsigned short cmpOp);

}  // namespace ot95

#endif
