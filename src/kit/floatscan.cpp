// Comparison of arrays of floating-point numbers up to their first difference.

#include "kit/floatscan.h"

#include <cstring>

#include "kit/wide.h"
#include "ot95/bytes.h"

namespace ot95 {

namespace {

constexpr std::size_t kRound = 128;  // Bytes that are looked at together.

template <class T>
bool EqualAt(const unsigned char* left, const unsigned char* right, std::size_t index,
             unsigned char form) {
  return LoadAs<T>(left + index * sizeof(T), form) == LoadAs<T>(right + index * sizeof(T), form);
}

// Number of elements in the whole rounds that are equal from the start.
template <class T>
std::size_t SkipEqualPlain(const unsigned char* left, const unsigned char* right, std::size_t count,
                           unsigned char form) {
  constexpr std::size_t perRound = kRound / sizeof(T);
  std::size_t index = 0;
  for (; count - index >= perRound; index += perRound) {
    bool equal = true;
    for (std::size_t i = 0; i < perRound; ++i) equal &= EqualAt<T>(left, right, index + i, form);
    if (!equal) break;
  }
  return index;
}

#ifdef OT95_HAVE_WIDE

// The bytes of each number in reverse order, as a shuffle of a vector's two halves.
template <class T>
OT95_WIDE __m256i ReversedOrder() {
  unsigned char order[32];
  for (unsigned i = 0; i < 32; ++i) {
    order[i] = static_cast<unsigned char>((i % 16) ^ (sizeof(T) - 1));
  }
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(order));
}

// All ones where two numbers are equal, in the sense of numbers.
template <class T>
OT95_WIDE __m256i EqualNumbers(__m256i left, __m256i right) {
  if constexpr (sizeof(T) == 4) {
    return _mm256_castps_si256(
        _mm256_cmp_ps(_mm256_castsi256_ps(left), _mm256_castsi256_ps(right), _CMP_EQ_OQ));
  } else {
    return _mm256_castpd_si256(
        _mm256_cmp_pd(_mm256_castsi256_pd(left), _mm256_castsi256_pd(right), _CMP_EQ_OQ));
  }
}

template <class T, bool reversed>
OT95_WIDE bool IsRoundEqual(const unsigned char* left, const unsigned char* right, __m256i order) {
  __m256i equal = _mm256_set1_epi32(-1);
  for (std::size_t at = 0; at < kRound; at += sizeof equal) {
    __m256i one = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(left + at));
    __m256i two = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(right + at));
    if constexpr (reversed) {
      one = _mm256_shuffle_epi8(one, order);
      two = _mm256_shuffle_epi8(two, order);
    }
    equal = _mm256_and_si256(equal, EqualNumbers<T>(one, two));
  }
  return _mm256_movemask_epi8(equal) == -1;
}

template <class T, bool reversed>
OT95_WIDE std::size_t SkipEqualWide(const unsigned char* left, const unsigned char* right,
                                    std::size_t count) {
  const __m256i order = ReversedOrder<T>();
  const std::size_t bytes = count * sizeof(T) / kRound * kRound;
  std::size_t at = 0;
  while (at < bytes && IsRoundEqual<T, reversed>(left + at, right + at, order)) at += kRound;
  return at / sizeof(T);
}

template <class T>
std::size_t SkipEqual(const unsigned char* left, const unsigned char* right, std::size_t count,
                      unsigned char form) {
  if (count * sizeof(T) < kRound) return 0;
  if (!HasWideVectors()) return SkipEqualPlain<T>(left, right, count, form);
  return ReversesBytes(form) ? SkipEqualWide<T, true>(left, right, count)
                             : SkipEqualWide<T, false>(left, right, count);
}

#else
template <class T>
constexpr auto SkipEqual = SkipEqualPlain<T>;
#endif

}  // namespace

template <class T>
std::size_t FirstUnequalFloat(const unsigned char* left, const unsigned char* right,
                              std::size_t count, unsigned char form) {
  std::size_t index = SkipEqual<T>(left, right, count, form);
  while (index < count && EqualAt<T>(left, right, index, form)) ++index;
  return index;
}

template std::size_t FirstUnequalFloat<float>(const unsigned char*, const unsigned char*,
                                              std::size_t, unsigned char);
template std::size_t FirstUnequalFloat<double>(const unsigned char*, const unsigned char*,
                                               std::size_t, unsigned char);

}  // namespace ot95
