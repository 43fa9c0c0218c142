#ifndef OT95_SRC_TEXT_COLLATION_LETTERCOMPARE_H
#define OT95_SRC_TEXT_COLLATION_LETTERCOMPARE_H

/// @file
/// Comparison of what most texts are: Unicode letters that stand for themselves.

#include "text/collation/alikeunits.h"
#include "text/collation/walk.h"

namespace ot95 {

/// How far two texts have been compared, in bytes of both. What comes next is more than letters.
struct LettersMet {
  std::size_t bytes = 0;
  unsigned char script = 0;  ///< Of the letters before; 0 if none differed.
  Differences differences;
};

/// Whether letters with plain keys stand for themselves: no mark follows.
inline bool StandAlone(unsigned next1, unsigned next2) {
  if ((next1 | next2) < OT_FIRST_MARK) [[likely]]
    return true;
  return IsNoFollower(next1) && IsNoFollower(next2);
}

/// How two terminated texts sort that begin with letters of different rank, as most do that have
/// nothing to do with each other; 0 for all others.
[[gnu::always_inline]] inline int SignOfFirstLetters(const char* text1, const char* text2,
                                                     const OtLanguage& language) {
  const unsigned unit1 = LoadWide(text1);
  const unsigned unit2 = LoadWide(text2);
  if (unit1 == unit2 || unit1 >= kPlainKeys || unit2 >= kPlainKeys) return 0;
  const std::uint32_t key1 = kOrderTables.plainKeys[unit1];
  const std::uint32_t key2 = kOrderTables.plainKeys[unit2];
  if ((key1 & key2 & kLetterKey) == 0 || (key1 ^ key2) < 2 * kTailoredKey) return 0;
  if (((key1 | key2) & kTailoredKey) != 0 && language.tailorsOrder != 0) return 0;
  if (!StandAlone(LoadWide(text1 + 2), LoadWide(text2 + 2))) return 0;
  return key1 < key2 ? -1 : 1;
}

/// Compares two terminated texts of one language in levels. Both are in the machine's order.
/// @param readable bytes of either that may be read.
int CompareUnicode(const char* text1, const char* text2, std::size_t readable, unsigned short cmpOp,
                   const OtLanguage& language);

}  // namespace ot95

#endif
