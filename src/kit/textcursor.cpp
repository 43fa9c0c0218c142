// A place in a text of one-byte characters that moves over white space and numbers.

#include "kit/textcursor.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace ot95 {

namespace {

bool TakeSign(TextCursor& text) {
  if (text.AtEnd() || (*text.at != '-' && *text.at != '+')) return false;
  return *text.at++ == '-';
}

bool StartsHexadecimal(const TextCursor& text) {
  return text.end - text.at > 1 && text.at[0] == '0' && UpperAscii(text.at[1]) == 'X';
}

/// A number without its sign, saturated far above 32 bits; false if there is none. A prefix "0x"
/// with nothing behind it reads as its zero.
bool ReadMagnitude(TextCursor& text, unsigned base, bool& negative, std::uint64_t& magnitude) {
  text.SkipSpace();
  negative = TakeSign(text);
  const char* const start = text.at;
  if ((base == 0 || base == 16) && StartsHexadecimal(text)) {
    text.at += 2;
    base = 16;
  } else if (base == 0) {
    base = !text.AtEnd() && *text.at == '0' ? 8 : 10;
  }
  constexpr std::uint64_t tooLarge = std::uint64_t{1} << 40;
  magnitude = 0;
  for (; !text.AtEnd() && DigitOf(*text.at) < base; ++text.at) {
    if (magnitude < tooLarge) magnitude = magnitude * base + DigitOf(*text.at);
  }
  return text.at != start;
}

/// Of a number whose magnitude doesn't fit: whether it is too large, and not too small.
bool IsTooLarge(const char* at, const char* end, bool hexadecimal) {
  const char mark = hexadecimal ? 'P' : 'E';
  long scale = 0;
  bool significant = false;
  bool point = false;
  for (; at != end && UpperAscii(*at) != mark; ++at) {
    significant = significant || (*at != '0' && *at != '.');
    if (*at == '.') {
      point = true;
    } else if (significant != point) {
      scale += point ? -1 : 1;
    }
  }
  if (hexadecimal) scale *= 4;
  std::int32_t exponent = 0;
  if (at != end) {
    TextCursor digits(at + 1, static_cast<std::size_t>(end - at - 1));
    ReadSigned(digits, 10, exponent);
  }
  return scale + std::int64_t{exponent} > 0;
}

/// Whether hexadecimal digits begin at a place, maybe behind a point.
bool HasHexadecimalDigit(const char* at, const char* end) {
  if (at != end && *at == '.') ++at;
  return at != end && DigitOf(*at) < 16;
}

template <class T>
bool ReadRealAs(TextCursor& text, T& value, RealPrefix prefix) {
  text.SkipSpace();
  const bool negative = TakeSign(text);
  const bool marked = StartsHexadecimal(text);
  const bool hexadecimal = marked && HasHexadecimalDigit(text.at + 2, text.end);
  if (marked && !hexadecimal && prefix == RealPrefix::kFails) return false;
  const char* const digits = text.at + (hexadecimal ? 2 : 0);
  // A second sign is one that from_chars would take.
  if (digits == text.end || *digits == '-') return false;
  T magnitude = 0;
  const auto result =
      std::from_chars(digits, text.end, magnitude,
                      hexadecimal ? std::chars_format::hex : std::chars_format::general);
  if (result.ec == std::errc::result_out_of_range) {
    magnitude =
        IsTooLarge(digits, result.ptr, hexadecimal) ? std::numeric_limits<T>::infinity() : 0;
  } else if (result.ec != std::errc()) {
    return false;
  }
  // Behind "inf" an 'i' promises more, which from_chars has not found.
  const bool broken = UpperAscii(*digits) == 'I' && result.ptr != text.end &&
                      result.ptr - digits == 3 && UpperAscii(*result.ptr) == 'I';
  if (broken && prefix == RealPrefix::kFails) return false;
  text.at = result.ptr;
  value = negative ? -magnitude : magnitude;
  return true;
}

}  // namespace

bool TextCursor::MatchFormatText(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool percent = text.substr(i, 2) == "%%";
    if (percent || IsSpaceAscii(text[i])) SkipSpace();
    if (IsSpaceAscii(text[i])) continue;
    if (AtEnd() || *at != text[i]) return false;
    ++at;
    if (percent) ++i;
  }
  return true;
}

bool ReadSigned(TextCursor& text, unsigned base, std::int32_t& value) {
  bool negative;
  std::uint64_t magnitude;
  if (!ReadMagnitude(text, base, negative, magnitude)) return false;
  constexpr std::uint64_t highest = std::numeric_limits<std::int32_t>::max();
  if (negative) {
    value = static_cast<std::int32_t>(-static_cast<std::int64_t>(std::min(magnitude, highest + 1)));
  } else {
    value = static_cast<std::int32_t>(std::min(magnitude, highest));
  }
  return true;
}

bool ReadUnsigned(TextCursor& text, unsigned base, std::uint32_t& value) {
  bool negative;
  std::uint64_t magnitude;
  if (!ReadMagnitude(text, base, negative, magnitude)) return false;
  constexpr std::uint64_t highest = std::numeric_limits<std::uint32_t>::max();
  // A sign counts only for what fits, as it does for strtoul.
  const bool fits = magnitude <= highest;
  value = static_cast<std::uint32_t>(fits ? (negative ? 0 - magnitude : magnitude) : highest);
  return true;
}

bool ReadReal(TextCursor& text, double& value, RealPrefix prefix) {
  return ReadRealAs(text, value, prefix);
}
bool ReadReal(TextCursor& text, float& value, RealPrefix prefix) {
  return ReadRealAs(text, value, prefix);
}

}  // namespace ot95
