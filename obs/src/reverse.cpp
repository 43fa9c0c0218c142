// Reversal of the bytes of many words, as wide as the processor allows.

#include "reverse.h"

#include <cstddef>
#include <cstring>

#include "ot95/bytes.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define OT95_HAVE_AVX2 1
#endif

namespace ot95 {
namespace {

using Bytes = unsigned char;

/// A word is read before its place is written, so that the two places may be one.
template <class Word>
inline void ReverseEach(Bytes* target, const Bytes* source, std::size_t size) {
  for (std::size_t at = 0; at < size; at += sizeof(Word)) {
    Word word;
    std::memcpy(&word, source + at, sizeof word);
    word = Reversed(word);
    std::memcpy(target + at, &word, sizeof word);
  }
}

#ifdef OT95_HAVE_AVX2

#define OT95_AVX2 __attribute__((target("avx2")))

constexpr std::size_t kLane = 32;          // Bytes of one vector.
constexpr std::size_t kRound = 4 * kLane;  // Bytes in flight in the loops below.

/// From here on the array is too large to stay in a cache: writing around it saves reading the
/// target's lines first.
constexpr std::size_t kStreamFrom = std::size_t{8} << 20;

/// Where each byte of a vector comes from when its words are reversed.
template <class Word>
OT95_AVX2 inline __m256i Order() {
  alignas(kLane) Bytes order[kLane];
  for (std::size_t i = 0; i < kLane; ++i) order[i] = Bytes((i % 16) ^ (sizeof(Word) - 1));
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(order));
}

template <bool stream>
OT95_AVX2 inline void Put(Bytes* target, __m256i vector) {
  if constexpr (stream) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(target), vector);
  } else {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target), vector);
  }
}

OT95_AVX2 inline __m256i Get(const Bytes* source) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
}

/// Whole rounds; returns the bytes done. Each round is read before it is written.
template <class Word, bool stream>
OT95_AVX2 std::size_t ReverseRounds(Bytes* target, const Bytes* source, std::size_t size) {
  const __m256i order = Order<Word>();
  std::size_t at = 0;
  for (; at + kRound <= size; at += kRound) {
    const __m256i lane0 = Get(source + at);
    const __m256i lane1 = Get(source + at + kLane);
    const __m256i lane2 = Get(source + at + 2 * kLane);
    const __m256i lane3 = Get(source + at + 3 * kLane);
    Put<stream>(target + at, _mm256_shuffle_epi8(lane0, order));
    Put<stream>(target + at + kLane, _mm256_shuffle_epi8(lane1, order));
    Put<stream>(target + at + 2 * kLane, _mm256_shuffle_epi8(lane2, order));
    Put<stream>(target + at + 3 * kLane, _mm256_shuffle_epi8(lane3, order));
  }
  if constexpr (stream) _mm_sfence();
  return at;
}

template <class Word>
std::size_t ReverseFast(Bytes* target, const Bytes* source, std::size_t size) {
  if (size < kRound || !__builtin_cpu_supports("avx2")) return 0;
  if (size < kStreamFrom || target == source) {
    return ReverseRounds<Word, false>(target, source, size);
  }
  const std::size_t head = (kLane - reinterpret_cast<std::uintptr_t>(target) % kLane) % kLane;
  if (head % sizeof(Word) != 0) return ReverseRounds<Word, false>(target, source, size);
  ReverseEach<Word>(target, source, head);
  return head + ReverseRounds<Word, true>(target + head, source + head, size - head);
}

#else

template <class Word>
std::size_t ReverseFast(Bytes*, const Bytes*, std::size_t) {
  return 0;
}

#endif

}  // namespace

template <class Word>
void ReverseWords(void* target, const void* source, unsigned long count) {
  auto* to = static_cast<Bytes*>(target);
  const auto* from = static_cast<const Bytes*>(source);
  const std::size_t size = count * sizeof(Word);
  const std::size_t done = ReverseFast<Word>(to, from, size);
  ReverseEach<Word>(to + done, from + done, size - done);
}

template void ReverseWords<std::uint16_t>(void*, const void*, unsigned long);
template void ReverseWords<std::uint32_t>(void*, const void*, unsigned long);
template void ReverseWords<std::uint64_t>(void*, const void*, unsigned long);

}  // namespace ot95
