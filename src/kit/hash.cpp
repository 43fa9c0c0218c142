// Hashes of scalars: elements folded by exclusive or, multiplied once at the end.

#include "kit/hash.h"

#include "kit/wide.h"

namespace ot95 {

namespace {

constexpr std::size_t kRound = 128;  // Bytes of four sums, so that none waits for another.

std::uint64_t XorRoundsPlain(const unsigned char* bytes, std::size_t rounds) {
  std::uint64_t sums[4] = {};
  for (std::size_t i = 0; i < rounds * kRound; i += sizeof sums) {
    std::uint64_t words[4];
    std::memcpy(words, bytes + i, sizeof words);
    for (int lane = 0; lane < 4; ++lane) sums[lane] ^= words[lane];
  }
  return (sums[0] ^ sums[1]) ^ (sums[2] ^ sums[3]);
}

#ifdef OT95_HAVE_WIDE

OT95_WIDE std::uint64_t XorRoundsWide(const unsigned char* bytes, std::size_t rounds) {
  const auto word = [&](int i) OT95_WIDE {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes) + i);
  };
  __m256i sum0 = word(0), sum1 = word(1), sum2 = word(2), sum3 = word(3);
  while (--rounds != 0) {
    bytes += kRound;
    sum0 = _mm256_xor_si256(sum0, word(0));
    sum1 = _mm256_xor_si256(sum1, word(1));
    sum2 = _mm256_xor_si256(sum2, word(2));
    sum3 = _mm256_xor_si256(sum3, word(3));
  }
  std::uint64_t lanes[4];
  const __m256i sum = _mm256_xor_si256(_mm256_xor_si256(sum0, sum1), _mm256_xor_si256(sum2, sum3));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(lanes), sum);
  return (lanes[0] ^ lanes[1]) ^ (lanes[2] ^ lanes[3]);
}

#else
constexpr auto XorRoundsWide = XorRoundsPlain;
#endif

}  // namespace

std::uint64_t XorLanes(const void* data, std::size_t length) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::uint64_t folded = 0;
  if (const std::size_t rounds = length / kRound; rounds != 0) {
    folded = (HasWideVectors() ? XorRoundsWide : XorRoundsPlain)(bytes, rounds);
    bytes += rounds * kRound;
    length -= rounds * kRound;
  }
  std::uint64_t word;
  for (; length >= sizeof word; bytes += sizeof word, length -= sizeof word) {
    std::memcpy(&word, bytes, sizeof word);
    folded ^= word;
  }
  word = 0;
  if (length != 0) std::memcpy(&word, bytes, length);
  return folded ^ word;
}

namespace {

// Exclusive-or knows no order: neither of elements, nor of the halves of one, nor of folding and
// turning the bytes. So one fold of all bytes serves every width and form.
template <class T>
std::uint32_t FoldScalars(const void* value, std::size_t length, unsigned char form) {
  constexpr std::size_t width = std::min<std::size_t>(sizeof(T), 4);
  std::uint64_t folded = XorLanes(value, length);
  for (std::size_t bits = 32; bits >= 8 * width; bits /= 2) folded ^= folded >> bits;
  auto element = static_cast<WordOf<width>>(folded);
  if (ReversesBytes(form)) element = Reversed(element);
  if constexpr (std::is_signed_v<T>) {
    return static_cast<std::uint32_t>(static_cast<std::make_signed_t<decltype(element)>>(element));
  } else {
    return element;
  }
}

}  // namespace

template <class T>
unsigned long ScalarHash(unsigned char format, unsigned long length, void* value,
                         unsigned long count, int& status) {
  status = 0;
  if (count == 0) return 0;
  const Side side(value, length, count, sizeof(T));
  const Walk walk(count, side.Elements(sizeof(T)));
  const std::uint64_t present = std::min(SpanOf(walk.elements, sizeof(T)), side.end);
  status = walk.StatusAt(walk.elements - 1);
  return FinishHash(FoldScalars<T>(value, static_cast<std::size_t>(present), FormOf(format)));
}

#define OT95_SCALAR_HASH(T) \
  template unsigned long ScalarHash<T>(unsigned char, unsigned long, void*, unsigned long, int&);

OT95_SCALAR_HASH(signed char)
OT95_SCALAR_HASH(unsigned char)
OT95_SCALAR_HASH(std::int16_t)
OT95_SCALAR_HASH(std::uint16_t)
OT95_SCALAR_HASH(std::int32_t)
OT95_SCALAR_HASH(std::uint32_t)
OT95_SCALAR_HASH(std::int64_t)
OT95_SCALAR_HASH(float)
OT95_SCALAR_HASH(double)

#undef OT95_SCALAR_HASH

}  // namespace ot95
