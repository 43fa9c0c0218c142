#ifndef OT95_SRC_TEXT_COLLATION_INSTEP_H
#define OT95_SRC_TEXT_COLLATION_INSTEP_H

/// @file
/// Comparison of two texts of one code set and language by their finished keys.

#include "text/collation/alike.h"
#include "text/collation/finished.h"

namespace ot95 {

/// In the place of a sign: there are no keys for these texts, or they don't tell.
inline constexpr int kUndecided = 2;

/// The same, where texts first part at letters that differ in accent or case alone.
inline constexpr int kSameRank = 3;

/// How two terminated texts sort, if they are equal, or if letters of different rank stand where
/// they first part: so most do. Otherwise kUndecided or kSameRank.
/// @param readable bytes of either that may be read, which hold a terminator.
/// @param at where they part, or a place before.
template <class Unit>
[[gnu::always_inline]] inline int SignWhereApart(KeysOf<Unit> keys, const char* text1,
                                                 const char* text2, std::size_t readable,
                                                 std::size_t& at) {
  constexpr std::size_t block = 8;
  at = 0;
  unsigned unit1 = LoadAs<Unit>(text1);
  unsigned unit2 = LoadAs<Unit>(text2);
  if (unit1 == unit2) {
    if (readable < block) return kUndecided;
    const std::size_t apart = readable < 2 * block
                                  ? FirstApart<sizeof(Unit), block>(text1, text2, 0, readable)
                                  : FirstApart<sizeof(Unit), 2 * block>(text1, text2, 0, readable);
    if (apart >= readable) [[unlikely]]
      return kUndecided;
    at = apart;
    unit1 = LoadAs<Unit>(text1 + at);
    unit2 = LoadAs<Unit>(text2 + at);
    if (unit1 == unit2) return 0;
  }
  const std::uint32_t key1 = keys.At(unit1);
  const std::uint32_t key2 = keys.At(unit2);
  if (((key1 | key2) & kLook) != 0) return kUndecided;
  const unsigned next1 = LoadAs<Unit>(text1 + at + sizeof(Unit));
  const unsigned next2 = LoadAs<Unit>(text2 + at + sizeof(Unit));
  if (JoinsEither<Unit>(keys, next1, next2)) return kUndecided;
  if (((key1 ^ key2) & 0xffffff00) == 0) [[unlikely]]
    return kSameRank;
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
/// @param at a place before which they are equal.
long CompareWide(WideKeys keys, const char* text1, const char* text2, TextLabels labels,
                 unsigned short cmpOp, std::size_t at);
/// The same, sooner done where few letters differ in accent or case, and nothing else does.
long CompareAlike(WideKeys keys, const char* text1, const char* text2, TextLabels labels,
                  unsigned short cmpOp, std::size_t at);
long CompareNarrow(ByteKeys keys, const char* text1, const char* text2, TextLabels labels,
                   unsigned short cmpOp, std::size_t at);

/// Compares two terminated Unicode texts in the machine's order. Most need no more than the first
/// letters that differ: these take no call.
[[gnu::always_inline]] inline long CompareTerminated(WideKeys keys, const char* text1,
                                                     const char* text2, TextLabels labels,
                                                     unsigned short cmpOp) {
  std::size_t at = 0;
  const int sign = SignWhereApart<std::uint16_t>(keys, text1, text2, labels.readable, at);
  if (sign < kUndecided) return sign;
  return sign == kSameRank ? CompareAlike(keys, text1, text2, labels, cmpOp, at)
                           : CompareWide(keys, text1, text2, labels, cmpOp, at);
}

/// Compares any two texts that run in step. @return a sign, or kUndecided.
long CompareInStep(const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp);

}  // namespace ot95

#endif
