// Floating-point numbers as digits, for every conversion of a format.

#include "kit/realtext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "kit/textcursor.h"

namespace ot95 {

namespace {

constexpr int defaultPrecision = 6;

// The parts of a double in memory.
constexpr int fractionBits = 52;
constexpr int fractionDigits = fractionBits / 4;
constexpr int exponentBias = 1023;
constexpr std::uint64_t implicitBit = std::uint64_t{1} << fractionBits;

/// Drops the low `bits` bits of a significand, rounded to the nearest, to even on a tie.
std::uint64_t RoundAway(std::uint64_t significand, int bits) {
  if (bits == 0) return significand;
  const std::uint64_t half = std::uint64_t{1} << (bits - 1);
  const std::uint64_t rest = significand & (half * 2 - 1);
  const std::uint64_t kept = significand >> bits;
  return kept + (rest > half || (rest == half && (kept & 1)));
}

}  // namespace

std::string_view RealText::Render(double magnitude, const Conversion& conversion) {
  const char lower = static_cast<char>(conversion.letter | 0x20);
  char* const end = RenderLower(magnitude, lower, conversion);
  if (lower != conversion.letter) std::transform(text_, end, text_, UpperAscii);
  return {text_, static_cast<std::size_t>(end - text_)};
}

char* RealText::RenderLower(double magnitude, char letter, const Conversion& conversion) {
  char* const limit = std::end(text_);
  if (!std::isfinite(magnitude)) return std::to_chars(text_, limit, magnitude).ptr;
  if (letter == 'a') return Hexadecimal(magnitude, conversion.precision, conversion.alternate);
  const int precision =
      conversion.precision < 0 ? defaultPrecision : std::min(conversion.precision, mostDigits);
  switch (letter) {
    case 'e':
      return WithPoint(
          std::to_chars(text_, limit, magnitude, std::chars_format::scientific, precision).ptr,
          conversion.alternate);
    case 'f':
      return WithPoint(
          std::to_chars(text_, limit, magnitude, std::chars_format::fixed, precision).ptr,
          conversion.alternate);
    default:
      return General(magnitude, std::max(precision, 1), conversion.alternate);
  }
}

char* RealText::General(double magnitude, int precision, bool keepZeros) {
  char* const limit = std::end(text_);
  if (!keepZeros) {
    return std::to_chars(text_, limit, magnitude, std::chars_format::general, precision).ptr;
  }
  char* end =
      std::to_chars(text_, limit, magnitude, std::chars_format::scientific, precision - 1).ptr;
  const char* mark = std::find(text_, end, 'e') + 1;
  int exponent = 0;
  std::from_chars(mark + (*mark == '+'), end, exponent);
  if (exponent >= -4 && exponent < precision) {
    end = std::to_chars(text_, limit, magnitude, std::chars_format::fixed, precision - 1 - exponent)
              .ptr;
  }
  return WithPoint(end, true);
}

char* RealText::Hexadecimal(double magnitude, int precision, bool alternate) {
  std::uint64_t bits;
  std::memcpy(&bits, &magnitude, sizeof bits);
  const int stored = static_cast<int>(bits >> fractionBits);
  std::uint64_t significand = bits & (implicitBit - 1);
  const int exponent = bits == 0 ? 0 : std::max(stored, 1) - exponentBias;
  if (stored != 0) significand |= implicitBit;
  const bool shortest = precision < 0;
  const int digits = shortest ? fractionDigits : std::min(precision, mostDigits);
  const int kept = std::min(digits, fractionDigits);
  significand = RoundAway(significand, 4 * (fractionDigits - kept));

  char* at = text_;
  *at++ = static_cast<char>('0' + (significand >> (4 * kept)));
  *at++ = '.';
  for (int i = kept - 1; i >= 0; --i) *at++ = "0123456789abcdef"[(significand >> (4 * i)) & 15];
  if (shortest) {
    while (at[-1] == '0') --at;
  }
  at = std::fill_n(at, digits - kept, '0');
  if (at[-1] == '.' && !alternate) --at;
  *at++ = 'p';
  if (exponent >= 0) *at++ = '+';
  return std::to_chars(at, std::end(text_), exponent).ptr;
}

char* RealText::WithPoint(char* end, bool wanted) {
  if (!wanted || std::find(text_, end, '.') != end) return end;
  char* const mark = std::find(text_, end, 'e');
  std::move_backward(mark, end, end + 1);
  *mark = '.';
  return end + 1;
}

}  // namespace ot95
