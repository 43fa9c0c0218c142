#ifndef OT95_SRC_TEXT_COLLATION_INSTEP_H
#define OT95_SRC_TEXT_COLLATION_INSTEP_H

/// @file
/// Comparison of two texts of one code set and language by their finished keys.

#include "text/collation/finished.h"

namespace ot95 {

/// In the place of a sign: there are no keys for these texts, or they don't tell.
inline constexpr int kUndecided = 2;

/// How two terminated texts sort that begin with letters of different rank, as most do that have
/// nothing to do with each other; 0 for all others.
template <class Unit>
[[gnu::always_inline]] inline int SignOfFirst(KeysOf<Unit> keys, const char* text1,
                                              const char* text2) {
  const unsigned unit1 = LoadAs<Unit>(text1);
  const unsigned unit2 = LoadAs<Unit>(text2);
  if (unit1 == unit2) return 0;
  const std::uint32_t key1 = keys.At(unit1);
  const std::uint32_t key2 = keys.At(unit2);
  if (((key1 ^ key2) & 0xffffff00) == 0 || ((key1 | key2) & kLook) != 0) return 0;
  const unsigned next1 = LoadAs<Unit>(text1 + sizeof(Unit));
  const unsigned next2 = LoadAs<Unit>(text2 + sizeof(Unit));
  if (JoinsEither<Unit>(keys, next1, next2)) return 0;
  return key1 < key2 ? -1 : 1;
}

/// How two texts of the same letters sort. @param accent,case_,symbol their differences.
long SignOfMarks(int accent, int case_, int symbol, unsigned short cmpOp);

/// What two texts share that run in step.
struct TextLabels {
  std::uint16_t readable;  ///< Bytes of either that may be read.
  unsigned char codeSet;
  unsigned char language;
};

/// Compares two terminated texts, of Unicode in the machine's order and of a one-byte code set.
long CompareWide(WideKeys keys, const char* text1, const char* text2, TextLabels labels,
                 unsigned short cmpOp);
long CompareNarrow(ByteKeys keys, const char* text1, const char* text2, TextLabels labels,
                   unsigned short cmpOp);

/// Compares any two texts that run in step. @return a sign, or kUndecided.
long CompareInStep(const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp);

}  // namespace ot95

#endif
