// What is a text.
#include "utf8.h"

#include <cstdint>
#include <cstring>

namespace ot95::sqlite {

namespace {

constexpr std::size_t kMostUnits = 32765;

/// Whether eight bytes are ASCII and none of them is zero.
bool AreEightPlain(const unsigned char* at) {
  constexpr std::uint64_t ones = 0x0101010101010101u, highs = ones << 7;
  std::uint64_t word;
  std::memcpy(&word, at, sizeof word);
  return ((word | (word - ones)) & highs) == 0;
}

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

}  // namespace

bool IsText(std::string_view bytes) {
  const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
  std::size_t left = bytes.size(), units = 0;
  while (left != 0) {
    std::size_t size = 8;
    if (left >= size && AreEightPlain(at)) {
      units += size;
    } else {
      size = CharacterSize(at, left);
      if (size == 0) return false;
      units += size == 4 ? 2 : 1;
    }
    at += size;
    left -= size;
  }
  return units <= kMostUnits;
}

}  // namespace ot95::sqlite
