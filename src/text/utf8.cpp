/// UTF-8 and UTF-16. Only well-formed UTF-8 passes, and no zero character, which would end a text.
#include "text/utf8.h"

#include <cstring>

namespace ot95 {

namespace {

constexpr unsigned kReplacement = 0xfffd;

bool IsHigh(unsigned unit) {
  return (unit & 0xfc00) == 0xd800;
}

bool IsLow(unsigned unit) {
  return (unit & 0xfc00) == 0xdc00;
}

/// The character at a place of 16-bit units, which moves behind it.
unsigned TakeCharacter(const std::uint16_t*& at, const std::uint16_t* end) {
  const unsigned unit = *at++;
  if (IsHigh(unit) && at != end && IsLow(*at)) {
    return 0x10000 + ((unit & 0x3ff) << 10) + (*at++ & 0x3ff);
  }
  return IsHigh(unit) || IsLow(unit) ? kReplacement : unit;
}

/// The sequences of one length: marks of the lead byte, and the least character that needs it.
struct Sequence {
  unsigned char mask, lead;
  std::uint32_t least;
};
constexpr Sequence kSequences[] = {{0xe0, 0xc0, 0x80}, {0xf0, 0xe0, 0x800}, {0xf8, 0xf0, 0x10000}};

/// The character of a sequence of several bytes, 0 for a bad one; `at` moves behind it.
std::uint32_t TakeSequence(const unsigned char*& at, const unsigned char* end) {
  for (int following = 1; following <= 3; ++following) {
    const Sequence& form = kSequences[following - 1];
    if ((*at & form.mask) != form.lead) continue;
    if (end - at <= following) return 0;
    std::uint32_t character = *at++ & static_cast<unsigned char>(~form.mask);
    for (int i = 0; i < following; ++i, ++at) {
      if ((*at & 0xc0) != 0x80) return 0;
      character = character << 6 | (*at & 0x3f);
    }
    const bool isCharacter = character >= form.least && character < 0x110000 &&
                             !(character >= 0xd800 && character < 0xe000);
    return isCharacter ? character : 0;
  }
  return 0;
}

std::uint16_t* PutCharacter(std::uint16_t* to, std::uint32_t character) {
  if (character >= 0x10000) {
    character -= 0x10000;
    *to++ = static_cast<std::uint16_t>(0xd800 + (character >> 10));
    character = 0xdc00 + (character & 0x3ff);
  }
  *to++ = static_cast<std::uint16_t>(character);
  return to;
}

/// Widens as many bytes as a word has if they are ASCII and none of them is zero.
template <class Word>
[[gnu::always_inline]] inline bool WidenPlain(const unsigned char* at, std::uint16_t* to) {
  constexpr Word ones = static_cast<Word>(0x0101010101010101u), highs = ones << 7;
  Word word;
  std::memcpy(&word, at, sizeof word);
  if (((word | (word - ones)) & highs) != 0) return false;
  for (std::size_t i = 0; i < sizeof word; ++i) to[i] = at[i];
  return true;
}

[[gnu::always_inline]] inline bool IsTwoByteSequence(const unsigned char* at) {
  return *at >= 0xc2 && *at < 0xe0 && (at[1] & 0xc0) == 0x80;
}

}  // namespace

std::size_t Utf8Size(const std::uint16_t* units, std::size_t count) {
  std::size_t size = 0;
  for (const std::uint16_t *at = units, *end = units + count; at != end;) {
    if (*at < 0x800) [[likely]] {
      size += *at++ < 0x80 ? std::size_t{1} : 2;
      continue;
    }
    size += TakeCharacter(at, end) < 0x10000 ? std::size_t{3} : 4;
  }
  return size;
}

void EncodeUtf8(const std::uint16_t* units, std::size_t count, char* utf8) {
  const auto put = [&utf8](unsigned byte) { *utf8++ = static_cast<char>(byte); };
  for (const std::uint16_t *at = units, *end = units + count; at != end;) {
    if (*at < 0x80) {
      put(*at++);
      continue;
    }
    const unsigned character = TakeCharacter(at, end);
    int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    put(kSequences[following - 1].lead | character >> 6 * following);
    while (following-- > 0) put(0x80 | (character >> 6 * following & 0x3f));
  }
}

std::uint16_t* DecodeUtf8(const unsigned char* at, const unsigned char* end, std::uint16_t* to) {
  while (at != end) {
    while (end - at >= 8 && WidenPlain<std::uint64_t>(at, to)) {
      at += 8;
      to += 8;
    }
    if (end - at >= 4 && WidenPlain<std::uint32_t>(at, to)) {
      at += 4;
      to += 4;
    }
    while (at != end && *at < 0x80) {
      if (*at == 0) return nullptr;
      *to++ = *at++;
      if (end - at >= 8) break;  // which may be plain again
    }
    while (end - at > 1 && IsTwoByteSequence(at)) {
      *to++ = static_cast<std::uint16_t>((at[0] & 0x1f) << 6 | (at[1] & 0x3f));
      at += 2;
    }
    while (at != end && *at >= 0x80) {
      const std::uint32_t character = TakeSequence(at, end);
      if (character == 0) return nullptr;
      to = PutCharacter(to, character);
    }
  }
  return to;
}

}  // namespace ot95
