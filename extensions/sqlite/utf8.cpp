// What is a text.
#include "utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace ot95::sqlite {

namespace {

constexpr std::size_t kMostUnits = 32765;

constexpr std::size_t kWord = 8;
constexpr std::uint64_t kOnes = 0x0101010101010101u, kHighs = kOnes << 7;

bool IsContinuation(unsigned char byte) {
  return (byte & 0xc0) == 0x80;
}

/// The bytes of the character at a place; 0 for a bad one.
std::size_t CharacterSize(const unsigned char* at, std::size_t left) {
  const unsigned char first = at[0];
  if (first < 0x80) return first != 0;
  if (first < 0xc2 || first > 0xf4 || left < 2 || !IsContinuation(at[1])) return 0;
  if (first < 0xe0) return 2;
  if (left < 3 || !IsContinuation(at[2])) return 0;
  if (first < 0xf0) {
    const bool isShorter = first == 0xe0 && at[1] < 0xa0,
               isSurrogate = first == 0xed && at[1] > 0x9f;
    return isShorter || isSurrogate ? 0 : 3;
  }
  if (left < 4 || !IsContinuation(at[3])) return 0;
  const bool isShorter = first == 0xf0 && at[1] < 0x90, isBeyond = first == 0xf4 && at[1] > 0x8f;
  return isShorter || isBeyond ? 0 : 4;
}

template <class Word>
Word Load(const unsigned char* at) {
  Word word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// Flags bytes that aren't ASCII, or zero. Bytes above a zero may be flagged, too; the lowest flag
/// is right.
std::uint64_t FlagsOf(std::uint64_t word) {
  return (word | (word - kOnes)) & kHighs;
}

/// Whether a text is ASCII without a zero. It may say no to one that is.
bool IsPlain(const unsigned char* at, std::size_t size) {
  if (size >= kWord) {
    std::uint64_t flags = FlagsOf(Load<std::uint64_t>(at + size - kWord));
    for (; size > kWord; at += kWord, size -= std::min(size, kWord)) {
      flags |= FlagsOf(Load<std::uint64_t>(at));
    }
    return flags == 0;
  }
  if (size < kWord / 2) return false;
  const std::uint64_t both =
      std::uint64_t{Load<std::uint32_t>(at)} << 32 | Load<std::uint32_t>(at + size - kWord / 2);
  return FlagsOf(both) == 0;
}

/// How many of the next bytes are ASCII and not zero, as far as one look tells.
std::size_t PlainBytes(const unsigned char* at, std::size_t left) {
  if (left < kWord) return *at < 0x80 && *at != 0;
  const std::uint64_t flags = FlagsOf(Load<std::uint64_t>(at));
  if (flags == 0) return kWord;
  if constexpr (std::endian::native != std::endian::little) return *at < 0x80 && *at != 0;
  return static_cast<std::size_t>(std::countr_zero(flags)) / 8;
}

/// @return how many 16-bit units they take; more than a text can have where they are none
std::size_t UnitsOf(const unsigned char* at, std::size_t left) {
  std::size_t units = 0;
  while (left != 0) {
    const std::size_t plain = PlainBytes(at, left);
    at += plain;
    left -= plain;
    units += plain;
    while (left != 0 && (*at >= 0x80 || *at == 0)) {
      const std::size_t size = CharacterSize(at, left);
      if (size == 0) return kMostUnits + 1;
      units += size == 4 ? 2 : 1;
      at += size;
      left -= size;
    }
  }
  return units;
}

}  // namespace

// This is a good part of what a comparison costs.
bool IsText(std::string_view bytes) {
  const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
  if (bytes.size() <= kMostUnits && IsPlain(at, bytes.size())) return true;
  return UnitsOf(at, bytes.size()) <= kMostUnits;
}

}  // namespace ot95::sqlite
