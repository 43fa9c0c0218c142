// Numbers as text by a caller's format, and back, as the C library does it in its "C" locale.

#include "kit/numbertext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "kit/checkedformat.h"
#include "kit/realtext.h"
#include "kit/textcursor.h"

namespace ot95 {

namespace {

constexpr std::string_view integerLetters = "cdiouxX";
constexpr std::string_view realLetters = "aAeEfFgG";
constexpr char unprintableFormat[] = "0x%02x";

std::uint32_t CutTo(int bits, std::uint32_t value) {
  return bits == 32 ? value : value & ((std::uint32_t{1} << bits) - 1);
}

std::int32_t SignedOf(int bits, std::uint32_t value) {
  return bits == 8    ? static_cast<std::int8_t>(value)
         : bits == 16 ? static_cast<std::int16_t>(value)
                      : static_cast<std::int32_t>(value);
}

std::string_view SignText(const Conversion& conversion, bool negative) {
  return negative ? "-" : conversion.plus ? "+" : conversion.space ? " " : "";
}

/// Appends digits, filled with zeros to the precision.
void AppendDigits(BoundedText& text, const Conversion& conversion, std::string_view sign,
                  std::uint32_t magnitude, int base) {
  char digits[16];
  char* end = digits;
  if (magnitude != 0 || conversion.precision != 0) {
    end = std::to_chars(digits, std::end(digits), magnitude, base).ptr;
  }
  if (conversion.letter == 'X') std::transform(digits, end, digits, UpperAscii);
  const auto length = static_cast<std::size_t>(end - digits);
  const auto least = static_cast<std::size_t>(std::max(conversion.precision, 0));
  std::size_t zeros = least > length ? least - length : 0;
  // The alternate form of an octal number begins with a zero.
  const bool leads = zeros != 0 || (length != 0 && digits[0] == '0');
  if (base == 8 && conversion.alternate && !leads) zeros = 1;
  text.AppendField(conversion, sign, zeros, {digits, length}, conversion.precision < 0);
}

void AppendInteger(BoundedText& text, const Conversion& conversion, std::uint32_t value) {
  const std::uint32_t bits = CutTo(conversion.bits, value);
  const bool prefix = conversion.alternate && bits != 0;
  switch (conversion.letter) {
    case 'c': {
      const char c = static_cast<char>(value);
      return text.AppendField(conversion, {}, 0, {&c, 1}, false);
    }
    case 'o':
      return AppendDigits(text, conversion, {}, bits, 8);
    case 'x':
      return AppendDigits(text, conversion, prefix ? "0x" : "", bits, 16);
    case 'X':
      return AppendDigits(text, conversion, prefix ? "0X" : "", bits, 16);
    case 'u':
      return AppendDigits(text, conversion, {}, bits, 10);
    default: {
      const std::int32_t number = SignedOf(conversion.bits, value);
      const auto pattern = static_cast<std::uint32_t>(number);
      return AppendDigits(text, conversion, SignText(conversion, number < 0),
                          number < 0 ? 0 - pattern : pattern, 10);
    }
  }
}

void AppendReal(BoundedText& text, const Conversion& conversion, double value) {
  RealText digits;
  const bool hexadecimal = (conversion.letter | 0x20) == 'a' && std::isfinite(value);
  char sign[4];
  BoundedText signText(sign, sizeof sign);
  signText.Append(SignText(conversion, std::signbit(value)));
  if (hexadecimal) signText.Append(conversion.letter == 'a' ? "0x" : "0X");
  text.AppendField(conversion, signText.View(), 0, digits.Render(std::fabs(value), conversion),
                   std::isfinite(value));
}

/// A text of printBufferSize around one conversion.
template <class AppendValue>
OtString& PrintBetween(OtString& target, const char* format, std::string_view letters,
                       const AppendValue& append) {
  char buffer[printBufferSize];
  BoundedText text(buffer, sizeof buffer);
  const CheckedFormat parts = ParseFormat(format, letters);
  text.AppendFormatText(parts.before);
  if (parts.conversion.letter) append(text, parts.conversion);
  text.AppendFormatText(parts.behind);
  return target = text.Terminate();
}

/// The stretch of text that a conversion may read: white space, where it is passed over, is free.
TextCursor Field(TextCursor& text, const Conversion& conversion) {
  if (conversion.letter != 'c') text.SkipSpace();
  const auto rest = static_cast<std::size_t>(text.end - text.at);
  const auto width = static_cast<std::size_t>(conversion.width);
  return {text.at, width == 0 ? rest : std::min(rest, width)};
}

bool ReadConverted(TextCursor& text, const Conversion& conversion, std::uint32_t& bits) {
  TextCursor field = Field(text, conversion);
  std::int32_t number = 0;
  bool found = false;
  switch (conversion.letter) {
    case 'c':
      found = !field.AtEnd();
      if (found) bits = static_cast<unsigned char>(*field.at++);
      break;
    case 'd':
    case 'i':
      found = ReadSigned(field, conversion.letter == 'd' ? 10 : 0, number);
      if (found) bits = static_cast<std::uint32_t>(number);
      break;
    case 'u':
      found = ReadUnsigned(field, 10, bits);
      break;
    case 'o':
      found = ReadUnsigned(field, 8, bits);
      break;
    default:
      found = ReadUnsigned(field, 16, bits);
  }
  text.at = field.at;
  return found;
}

template <class T>
bool ReadConverted(TextCursor& text, const Conversion& conversion, T& value) {
  TextCursor field = Field(text, conversion);
  const bool found = ReadReal(field, value, RealPrefix::kFails);
  text.at = field.at;
  return found;
}

bool ScanInteger(TextCursor text, const CheckedFormat& parts, std::uint32_t& bits) {
  return parts.conversion.letter && text.MatchFormatText(parts.before) &&
         ReadConverted(text, parts.conversion, bits);
}

/// The printed form of a byte that has no character.
bool ReadHexByte(TextCursor text, std::uint32_t& bits) {
  return text.MatchFormatText("0x") && ReadUnsigned(text, 16, bits);
}

bool IsScaled(const char* format) {
  return std::strncmp(format, "ldex", 4) == 0;
}

bool IsPrintable(unsigned char byte) {
  return byte >= 0x20 && byte < 0x7f;
}

}  // namespace

OtString& PrintInteger(OtString& target, std::uint32_t bits, const char* format) {
  return PrintBetween(target, format, integerLetters,
                      [=](BoundedText& text, const Conversion& conversion) {
                        AppendInteger(text, conversion, bits);
                      });
}

OtString& PrintReal(OtString& target, double value, const char* format) {
  return PrintBetween(target, format, realLetters,
                      [=](BoundedText& text, const Conversion& conversion) {
                        AppendReal(text, conversion, value);
                      });
}

OtString& PrintDouble(OtString& target, double value, const char* format) {
  if (!IsScaled(format)) return PrintReal(target, value, format);
  int exponent = 0;
  const double mantissa = std::frexp(value, &exponent);
  char buffer[printBufferSize];
  BoundedText text(buffer, sizeof buffer);
  const CheckedFormat first = ParseFormat(format, realLetters);
  const CheckedFormat second = ParseFormat(first.behind, integerLetters);
  text.AppendFormatText(first.before);
  if (first.conversion.letter) AppendReal(text, first.conversion, mantissa);
  text.AppendFormatText(second.before);
  if (second.conversion.letter) {
    AppendInteger(text, second.conversion, static_cast<std::uint32_t>(exponent));
  }
  text.AppendFormatText(second.behind);
  return target = text.Terminate();
}

OtString& PrintChar(OtString& target, const void* bytes, const char* format, unsigned long count) {
  const CheckedFormat printable = ParseFormat(format, integerLetters);
  const CheckedFormat other = ParseFormat(unprintableFormat, integerLetters);
  target = "";
  char buffer[8 * printBufferSize];
  BoundedText text(buffer, sizeof buffer);
  for (unsigned long i = 0; i < count; ++i) {
    const unsigned char byte = static_cast<const unsigned char*>(bytes)[i];
    const CheckedFormat& parts = IsPrintable(byte) ? printable : other;
    char pieceBuffer[printBufferSize];
    BoundedText piece(pieceBuffer, sizeof pieceBuffer);
    piece.AppendFormatText(parts.before);
    if (parts.conversion.letter) AppendInteger(piece, parts.conversion, byte);
    piece.AppendFormatText(parts.behind);
    if (text.View().size() + printBufferSize > sizeof buffer) {
      target << text.Terminate();
      text = BoundedText(buffer, sizeof buffer);
    }
    text.Append(piece.View());
  }
  return target << text.Terminate();
}

bool ScanInteger(std::uint32_t& bits, const char* text, std::size_t length, const char* format) {
  return ScanInteger(TextCursor(text, length), ParseFormat(format, integerLetters), bits);
}

template <class T>
void ScanReal(T& value, const char* text, std::size_t length, const char* format) {
  const CheckedFormat parts = ParseFormat(format, realLetters);
  TextCursor cursor(text, length);
  if (!parts.conversion.letter || !cursor.MatchFormatText(parts.before)) return;
  T scanned;
  if (ReadConverted(cursor, parts.conversion, scanned)) value = scanned;
}

template void ScanReal<float>(float&, const char*, std::size_t, const char*);
template void ScanReal<double>(double&, const char*, std::size_t, const char*);

void ScanDouble(double& value, const char* text, std::size_t length, const char* format) {
  if (!IsScaled(format)) return ScanReal(value, text, length, format);
  const CheckedFormat first = ParseFormat(format, realLetters);
  const CheckedFormat second = ParseFormat(first.behind, integerLetters);
  if (!first.conversion.letter || !second.conversion.letter) return;
  TextCursor cursor(text, length);
  double mantissa;
  std::uint32_t exponent;
  if (cursor.MatchFormatText(first.before) && ReadConverted(cursor, first.conversion, mantissa) &&
      cursor.MatchFormatText(second.before) && ReadConverted(cursor, second.conversion, exponent)) {
    value = std::ldexp(mantissa, static_cast<std::int32_t>(exponent));
  }
}

void ScanChar(void* bytes, const char* text, std::size_t length, const char* format,
              unsigned long count) {
  const CheckedFormat parts = ParseFormat(format, integerLetters);
  for (unsigned long i = 0; i < count && i < length; ++i) {
    const TextCursor rest(text + i, length - i);
    std::uint32_t bits;
    if (ReadHexByte(rest, bits) || ScanInteger(rest, parts, bits)) {
      static_cast<unsigned char*>(bytes)[i] = static_cast<unsigned char>(bits);
    }
  }
}

std::int32_t ParseLong32(const char* text, int base) {
  TextCursor cursor(text, std::strlen(text));
  std::int32_t value = 0;
  ReadSigned(cursor, static_cast<unsigned>(base), value);
  return value;
}

double ParseDouble(const char* text) {
  TextCursor cursor(text, std::strlen(text));
  double value = 0;
  ReadReal(cursor, value, RealPrefix::kReads);
  return value;
}

}  // namespace ot95
