#ifndef OT95_SRC_TEXT_COLLATION_ALIKE_H
#define OT95_SRC_TEXT_COLLATION_ALIKE_H

/// @file
/// Units that a comparison passes over in two texts at once, many bytes at a time: equal ones and,
/// once no difference of case counts any more, letters that differ in case alone.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "text/units.h"

namespace ot95 {

/// The first and the last unit of a range.
struct UnitRange {
  unsigned first, last;
  constexpr bool Has(unsigned unit) const { return unit - first <= last - first; }
};

/// Whose differences in case are passed over.
enum class CaseFold { kNone, kLatin, kOthers };

inline constexpr unsigned kCaseDistance = 0x20;

/// Capitals whose small letter stands kCaseDistance behind them and sorts like them but for case,
/// in languages that tailor nothing; and units with which nothing before them contracts.
template <CaseFold>
struct Folded;
template <>
struct Folded<CaseFold::kLatin> {
  static constexpr UnitRange kCapitals[] = {{'A', 'Z'}, {0xc0, 0xc5}, {0xc7, 0xd6}, {0xd8, 0xde}};
  static constexpr UnitRange kAlone[] = {{1, 0x2ff}};
};
template <>
struct Folded<CaseFold::kOthers> {
  static constexpr UnitRange kCapitals[] = {{0x391, 0x3a1}, {0x3a3, 0x3ab}, {0x410, 0x42f}};
  static constexpr UnitRange kAlone[] = {{1, 0x2ff}, {0x370, 0x482}, {0x48a, 0x52f}};
};

template <std::size_t count>
constexpr bool AnyHas(const UnitRange (&ranges)[count], unsigned unit) {
  return std::any_of(ranges, ranges + count, [unit](UnitRange range) { return range.Has(unit); });
}

/// Whether two units are passed over together where case is folded.
template <CaseFold fold>
constexpr bool AreAlike(unsigned unit1, unsigned unit2) {
  if (unit1 == unit2) return AnyHas(Folded<fold>::kAlone, unit1);
  const unsigned low = std::min(unit1, unit2);
  return std::max(unit1, unit2) - low == kCaseDistance && AnyHas(Folded<fold>::kCapitals, low);
}

#if defined(__SSE2__)

/// The bytes of a block that hold equal units, none of them zero.
template <std::size_t width>
struct EqualUnits {
  static __m128i In(__m128i block1, __m128i block2) {
    const __m128i zero = _mm_setzero_si128();
    return width == 2
               ? _mm_andnot_si128(_mm_cmpeq_epi16(block1, zero), _mm_cmpeq_epi16(block1, block2))
               : _mm_andnot_si128(_mm_cmpeq_epi8(block1, zero), _mm_cmpeq_epi8(block1, block2));
  }
};

/// The bytes of the first block that hold no terminator.
template <std::size_t width>
struct NonZeroUnits {
  static __m128i In(__m128i block, __m128i) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i ends = width == 2 ? _mm_cmpeq_epi16(block, zero) : _mm_cmpeq_epi8(block, zero);
    return _mm_cmpeq_epi8(ends, zero);
  }
};

/// The bytes of a block that hold units which are alike but for case.
template <CaseFold fold>
struct AlikeUnits {
  static __m128i Each(unsigned unit) { return _mm_set1_epi16(static_cast<short>(unit)); }
  template <std::size_t count>
  static __m128i Within(const UnitRange (&ranges)[count], __m128i units) {
    const __m128i zero = _mm_setzero_si128();
    __m128i within = zero;
#pragma GCC unroll 8
    for (const UnitRange& range : ranges) {
      const __m128i beyond =
          _mm_subs_epu16(_mm_sub_epi16(units, Each(range.first)), Each(range.last - range.first));
      within = _mm_or_si128(within, _mm_cmpeq_epi16(beyond, zero));
    }
    return within;
  }
  static __m128i In(__m128i block1, __m128i block2) {
    // One of the differences is zero.
    const __m128i behind = _mm_subs_epu16(block1, block2);
    const __m128i apart = _mm_or_si128(behind, _mm_subs_epu16(block2, block1));
    const __m128i low = _mm_sub_epi16(block1, behind);
    const __m128i recased = _mm_and_si128(_mm_cmpeq_epi16(apart, Each(kCaseDistance)),
                                          Within(Folded<fold>::kCapitals, low));
    return _mm_or_si128(recased, _mm_and_si128(_mm_cmpeq_epi16(block1, block2),
                                               Within(Folded<fold>::kAlone, block1)));
  }
};

/// Bytes before the first unit that isn't alike in the 8 or 16 at two places, those that come
/// before `from` not looked at.
template <class Alike, std::size_t bytes>
[[gnu::always_inline]] inline std::size_t AlikeInBlock(const char* place1, const char* place2,
                                                       std::size_t from = 0) {
  const auto load = [](const char* place) {
    const auto* block = reinterpret_cast<const __m128i*>(place);
    return bytes == 16 ? _mm_loadu_si128(block) : _mm_loadl_epi64(block);
  };
  // What lies behind eight bytes is zero, which is never alike.
  const auto alike =
      static_cast<unsigned>(_mm_movemask_epi8(Alike::In(load(place1), load(place2))));
  return static_cast<std::size_t>(__builtin_ctz(~alike & ~0U << from));
}

/// Where, from `at` on, two texts part, or at most `size`, behind which nothing may be read. What
/// is left at the end is looked at in a block that reaches back.
template <class Alike>
[[gnu::always_inline]] inline std::size_t PassBlocks(const char* text1, const char* text2,
                                                     std::size_t at, std::size_t size) {
  for (; at + 16 <= size; at += 16) {
    const std::size_t alike = AlikeInBlock<Alike, 16>(text1 + at, text2 + at);
    if (alike != 16) return at + alike;
  }
  if (at >= size) return at;
  if (size >= 16) {
    const std::size_t last = size - 16;
    return last + AlikeInBlock<Alike, 16>(text1 + last, text2 + last, at - last);
  }
  if (at + 8 <= size) {
    const std::size_t alike = AlikeInBlock<Alike, 8>(text1 + at, text2 + at);
    if (alike != 8) return at + alike;
    at += 8;
  }
  if (at < size && size >= 8) {
    const std::size_t last = size - 8;
    return last + AlikeInBlock<Alike, 8>(text1 + last, text2 + last, at - last);
  }
  return at;
}

template <std::size_t width>
[[gnu::always_inline]] inline std::size_t PassEqual(const char* text1, const char* text2,
                                                    std::size_t at, std::size_t size) {
  return PassBlocks<EqualUnits<width>>(text1, text2, at, size);
}

/// The first unit, from `at` on, that isn't equal in two texts or ends them; or `size`, behind
/// which nothing may be read. Between both there are `bytes` bytes or more, in few steps.
template <std::size_t width, std::size_t bytes>
[[gnu::always_inline]] inline std::size_t FirstApart(const char* text1, const char* text2,
                                                     std::size_t at, std::size_t size) {
  for (;; at = std::min(at + bytes, size - bytes)) {
    const std::size_t alike = AlikeInBlock<EqualUnits<width>, bytes>(text1 + at, text2 + at);
    if (alike != bytes) return at + alike;
    if (at + bytes == size) return size;
  }
}

/// Where, from `at` on, a text ends, or at most `size`.
template <std::size_t width>
[[gnu::always_inline]] inline std::size_t PassText(const char* text, std::size_t at,
                                                   std::size_t size) {
  return PassBlocks<NonZeroUnits<width>>(text, text, at, size);
}

template <CaseFold fold>
[[gnu::noinline]] inline std::size_t PassAlike(const char* text1, const char* text2, std::size_t at,
                                               std::size_t size) {
  return PassBlocks<AlikeUnits<fold>>(text1, text2, at, size);
}

#else

// Units one by one are as well passed over by who called.
template <std::size_t width>
std::size_t PassEqual(const char*, const char*, std::size_t at, std::size_t) {
  return at;
}

template <std::size_t width, std::size_t>
std::size_t FirstApart(const char* text1, const char* text2, std::size_t at, std::size_t size) {
  for (; at < size; at += width) {
    const unsigned unit = LoadUnit(text1 + at, width == 2);
    if (unit == 0 || unit != LoadUnit(text2 + at, width == 2)) break;
  }
  return at;
}

template <std::size_t width>
std::size_t PassText(const char*, std::size_t at, std::size_t) {
  return at;
}

template <CaseFold fold>
std::size_t PassAlike(const char* text1, const char* text2, std::size_t at, std::size_t size) {
  while (at + 2 <= size && AreAlike<fold>(LoadWide(text1 + at), LoadWide(text2 + at))) at += 2;
  return at;
}

#endif

}  // namespace ot95

#endif
