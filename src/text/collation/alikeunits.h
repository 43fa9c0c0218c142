#ifndef OT95_SRC_TEXT_COLLATION_ALIKEUNITS_H
#define OT95_SRC_TEXT_COLLATION_ALIKEUNITS_H

/// @file
/// Units that a comparison passes over in two texts at once, many bytes at a time: equal ones and,
/// once no difference of case counts any more, letters that differ in case alone.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "text/collation/orders.h"

namespace ot95 {

/// A two-byte unit of a text whose units have the other byte first.
enum class TurnedUnit : std::uint16_t {};

/// What a unit is in the machine's order.
template <class Unit>
using UnitValue = std::conditional_t<sizeof(Unit) == 1, std::uint8_t, std::uint16_t>;

template <class Unit>
UnitValue<Unit> LoadAs(const char* place) {
  UnitValue<Unit> unit;
  std::memcpy(&unit, place, sizeof unit);
  if constexpr (std::is_same_v<Unit, TurnedUnit>) unit = SwapBytes(unit);
  return unit;
}

/// The first and the last unit of a range.
struct UnitRange {
  unsigned first, last;
  constexpr bool Has(unsigned unit) const { return unit - first <= last - first; }
};

inline constexpr unsigned kCaseDistance = 0x20;

/// What of differences in case is passed over.
enum class CaseFold {
  kNone,
  kLatin,   ///< That of Latin letters.
  kOthers,  ///< That of Greek and Cyrillic ones.
  kAll
};

/// Capitals whose small letter stands kCaseDistance behind them and sorts like them but for case.
inline constexpr UnitRange kLatinCapitals[] = {
    {'A', 'Z'}, {0xc0, 0xc5}, {0xc7, 0xd6}, {0xd8, 0xde}};
inline constexpr UnitRange kOtherCapitals[] = {{0x391, 0x3a1}, {0x3a3, 0x3ab}, {0x410, 0x42f}};
inline constexpr UnitRange kByteCapitals[] = {{'A', 'Z'}};

/// Units that no head of a contraction has behind it.
inline constexpr UnitRange kLatinNoFollowers[] = {{1, OT_FIRST_MARK - 1}};
template <class Unit>
inline constexpr UnitRange kNoFollowers[] = {
    {1, OT_FIRST_MARK - 1}, {0x370, 0x482}, {0x488, 0x52f}, {0x1e00, 0x1eff}};
template <>
inline constexpr UnitRange kNoFollowers<std::uint8_t>[] = {{1, 0x7f}};

template <std::size_t count>
constexpr bool AnyHas(const UnitRange (&ranges)[count], unsigned unit) {
  bool has = false;
#pragma GCC unroll 8
  for (const UnitRange& range : ranges) has |= range.Has(unit);
  return has;
}

/// Whether a character is sure to be no mark, and no part of a contraction that all languages have.
inline bool IsNoFollower(unsigned value) {
  return value < kPlainKeys && kOrderTables.plainKeys[value] != 0;
}

/// Whether a unit is a capital that is folded.
template <class Unit, CaseFold fold>
constexpr bool IsFolded(unsigned unit) {
  if (sizeof(Unit) == 1) return AnyHas(kByteCapitals, unit);
  return (fold != CaseFold::kOthers && AnyHas(kLatinCapitals, unit)) ||
         (fold != CaseFold::kLatin && AnyHas(kOtherCapitals, unit));
}

/// Whether two units are passed over together. Where case is folded, nothing that can follow a head
/// is passed over.
template <class Unit, CaseFold fold>
bool AreAlike(UnitValue<Unit> unit1, UnitValue<Unit> unit2) {
  if ((unit1 | unit2) == 0) return false;
  if (fold == CaseFold::kNone) return unit1 == unit2;
  if (unit1 == unit2) return AnyHas(kNoFollowers<Unit>, unit1);
  const unsigned low = std::min(unit1, unit2);
  const unsigned high = std::max(unit1, unit2);
  return high - low == kCaseDistance && IsFolded<Unit, fold>(low);
}

#if defined(__SSE2__)

/// Sixteen bytes as units.
template <class Unit>
struct UnitBlock {
  static constexpr bool kWide = sizeof(Unit) == 2;

  static __m128i Each(unsigned unit) {
    return kWide ? _mm_set1_epi16(static_cast<short>(unit))
                 : _mm_set1_epi8(static_cast<char>(unit));
  }
  static __m128i Equal(__m128i a, __m128i b) {
    return kWide ? _mm_cmpeq_epi16(a, b) : _mm_cmpeq_epi8(a, b);
  }
  /// In the machine's order.
  static __m128i Value(__m128i units) {
    if (!std::is_same_v<Unit, TurnedUnit>) return units;
    return _mm_or_si128(_mm_slli_epi16(units, 8), _mm_srli_epi16(units, 8));
  }
  static __m128i Minus(__m128i a, __m128i b) {
    return kWide ? _mm_sub_epi16(a, b) : _mm_sub_epi8(a, b);
  }
  /// Not below zero.
  static __m128i Beyond(__m128i a, __m128i b) {
    return kWide ? _mm_subs_epu16(a, b) : _mm_subs_epu8(a, b);
  }
  template <std::size_t count>
  static __m128i In(const UnitRange (&ranges)[count], __m128i units) {
    __m128i within = _mm_setzero_si128();
#pragma GCC unroll 8
    for (const UnitRange& range : ranges) {
      const __m128i beyond =
          Beyond(Minus(units, Each(range.first)), Each(range.last - range.first));
      within = _mm_or_si128(within, Equal(beyond, _mm_setzero_si128()));
    }
    return within;
  }
  /// Units that are passed over where they are equal; among Latin letters only Latin ones.
  template <CaseFold fold>
  static __m128i NoFollowers(__m128i units) {
    return fold == CaseFold::kLatin ? In(kLatinNoFollowers, units) : In(kNoFollowers<Unit>, units);
  }
  /// Capitals that are folded.
  template <CaseFold fold>
  static __m128i Folded(__m128i units) {
    if (!kWide) return In(kByteCapitals, units);
    if (fold == CaseFold::kLatin) return In(kLatinCapitals, units);
    if (fold == CaseFold::kOthers) return In(kOtherCapitals, units);
    return _mm_or_si128(In(kLatinCapitals, units), In(kOtherCapitals, units));
  }
};

/// Bytes before the first unit that isn't alike in the 8 or 16 at two places.
template <class Unit, CaseFold fold, std::size_t bytes>
[[gnu::always_inline]] inline std::size_t AlikeInBlock(const char* place1, const char* place2) {
  using Block = UnitBlock<Unit>;
  const auto load = [](const char* place) {
    const auto* block = reinterpret_cast<const __m128i*>(place);
    const __m128i units = bytes == 16 ? _mm_loadu_si128(block) : _mm_loadl_epi64(block);
    return fold == CaseFold::kNone ? units : Block::Value(units);
  };
  const __m128i block1 = load(place1);
  const __m128i block2 = load(place2);
  const __m128i zero = _mm_setzero_si128();
  __m128i alike = Block::Equal(block1, block2);
  if (fold != CaseFold::kNone) {
    // One of the differences is zero.
    const __m128i behind = Block::Beyond(block1, block2);
    const __m128i apart = _mm_or_si128(behind, Block::Beyond(block2, block1));
    const __m128i low = Block::Minus(block1, behind);
    alike = _mm_or_si128(_mm_and_si128(alike, Block::template NoFollowers<fold>(block1)),
                         _mm_and_si128(Block::Equal(apart, Block::Each(kCaseDistance)),
                                       Block::template Folded<fold>(low)));
  } else {
    alike = _mm_andnot_si128(Block::Equal(block1, zero), alike);
  }
  // What lies behind eight bytes is zero, which is never alike.
  const auto differ = ~static_cast<unsigned>(_mm_movemask_epi8(alike));
  return static_cast<std::size_t>(__builtin_ctz(differ));
}

#else

template <class Unit, CaseFold fold, std::size_t bytes>
std::size_t AlikeInBlock(const char* place1, const char* place2) {
  std::size_t at = 0;
  while (at < bytes && AreAlike<Unit, fold>(LoadAs<Unit>(place1 + at), LoadAs<Unit>(place2 + at))) {
    at += sizeof(Unit);
  }
  return at;
}

#endif

/// A place in each of two texts.
struct Places {
  const char* one;
  const char* two;

  Places Behind(std::ptrdiff_t bytes) const { return {one + bytes, two + bytes}; }
};

/// The unit at a place, 0 at the end of a text.
template <class Unit>
UnitValue<Unit> UnitAt(const char* place, std::uintptr_t end) {
  return reinterpret_cast<std::uintptr_t>(place) < end ? LoadAs<Unit>(place) : UnitValue<Unit>{0};
}

/// Passes over what is alike in the next `bytes` bytes. @return whether all of them are.
template <class Unit, CaseFold fold, std::size_t bytes>
[[gnu::always_inline]] inline bool PassBlock(Places& at, std::ptrdiff_t back = 0) {
  const auto alike =
      static_cast<std::ptrdiff_t>(AlikeInBlock<Unit, fold, bytes>(at.one - back, at.two - back));
  if (alike > back) at = at.Behind(alike - back);
  return alike == bytes;
}

/// Goes on to where two texts part. A block that reaches back over bytes that were passed before is
/// better than units one by one.
template <class Unit, CaseFold fold>
[[gnu::always_inline]] inline Places PassAlike(Places at, const TextSpan& text1,
                                               const TextSpan& text2) {
  auto left = std::min(static_cast<std::ptrdiff_t>(text1.readable) - (at.one - text1.text),
                       static_cast<std::ptrdiff_t>(text2.readable) - (at.two - text2.text));
  for (; left >= 16; left -= 16) {
    if (!PassBlock<Unit, fold, 16>(at)) return at;
  }
  if (left >= 8) {
    if (!PassBlock<Unit, fold, 8>(at)) return at;
    left -= 8;
  }
  const std::ptrdiff_t back = 8 - left;
  if (left > 0 && at.one - text1.text >= back && at.two - text2.text >= back) {
    PassBlock<Unit, fold, 8>(at, back);
  }
  while (AreAlike<Unit, fold>(UnitAt<Unit>(at.one, text1.end), UnitAt<Unit>(at.two, text2.end))) {
    at = at.Behind(sizeof(Unit));
  }
  return at;
}

}  // namespace ot95

#endif
