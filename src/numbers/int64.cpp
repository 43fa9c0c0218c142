// 64-bit integers of two words: arithmetic, text, and their row.

#include "ot95/int64.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "kit/checkedformat.h"
#include "kit/estimate.h"
#include "kit/hash.h"
#include "kit/narrowtext.h"
#include "kit/textcursor.h"
#include "kit/walks.h"
#include "numbers/convert.h"
#include "numbers/rows.h"
#include "ot95/bytes.h"
#include "ot95/fault.h"
#include "ot95/store.h"
#include "ot95/text.h"
#include "text/units.h"

// ---------------------------------------------------------------------------------------------
// The value class

namespace {

using ot95::DigitOf;
using ot95::TextCursor;

constexpr char defaultFormat[] = "%S";
constexpr std::uint64_t highestMagnitude = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t lowestMagnitude = highestMagnitude + 1;

/// The magnitude of a double as "%E" shows it, with seven digits and nothing behind the point.
/// @param value from 1 to the largest double below 2^63.
std::uint64_t SevenDigits(double value) {
  constexpr int digitsBehindPoint = 6;
  char text[32];
  const char* end =
      std::to_chars(text, std::end(text), value, std::chars_format::scientific, digitsBehindPoint)
          .ptr;
  const char* const mark = text + 2 + digitsBehindPoint;  // "d.dddddde+XX"
  int exponent = 0;
  std::from_chars(mark + 2, end, exponent);
  std::uint64_t magnitude = DigitOf(text[0]);
  for (const char* at = text + 2; at != mark && exponent > 0; ++at, --exponent) {
    magnitude = magnitude * 10 + DigitOf(*at);
  }
  for (; exponent > 0; --exponent) magnitude *= 10;
  return magnitude;
}

std::uint64_t MagnitudeOf(double value) {
  constexpr double largestBelowLimit = 9223372036854774784.0;
  if (value > largestBelowLimit) return highestMagnitude;
  return value >= 1.0 ? SevenDigits(value) : 0;
}

bool IsDirective(char letter) {
  switch (letter) {
    case 'S':
    case 'd':
    case 'i':
    case 'o':
    case 'x':
    case 'X':
      return true;
    default:
      return false;
  }
}

struct Base {
  int radix;
  std::string_view prefix;
};

Base BaseOf(char directive) {
  switch (directive) {
    case 'o':
      return {8, "0"};
    case 'x':
      return {16, "0x"};
    case 'X':
      return {16, "0X"};
    default:
      return {10, ""};
  }
}

void AppendNumber(ot95::BoundedText& text, std::int64_t value, char directive) {
  const Base base = BaseOf(directive);
  auto magnitude = static_cast<std::uint64_t>(value);
  if (value < 0) {
    magnitude = 0 - magnitude;
    // The smallest value shows its sign in decimal only.
    if (magnitude != lowestMagnitude || base.radix == 10) text.Append('-');
  }
  char digits[24];
  char* const end = std::to_chars(digits, std::end(digits), magnitude, base.radix).ptr;
  if (directive == 'X') std::transform(digits, end, digits, ot95::UpperAscii);
  text.Append(base.prefix);
  text.Append({digits, static_cast<std::size_t>(end - digits)});
}

OtString& AppendTo(OtString& out, const char* text, std::size_t length) {
  return ot95::TextAccess::Append(out, {text, OtLanguageContext::GetDefault8CodeSet(), length});
}

OtString& AppendTo(OtString& out, ot95::BoundedText& text) {
  const std::size_t length = text.View().size();
  return AppendTo(out, text.Terminate(), length);
}

/// The base that a text without its sign shows. A prefix "0x" is passed over; the "0" of an octal
/// number stays as its first digit.
unsigned TakeBase(const char*& text) {
  if (*text != '0') return 10;
  if (ot95::UpperAscii(text[1]) != 'X') return 8;
  text += 2;
  return 16;
}

/// "%x" reads only what "%x" prints, so a plain 0 is octal for all but "%S".
bool Allows(char directive, unsigned base) {
  return directive == 'S' || base == static_cast<unsigned>(BaseOf(directive).radix);
}

/// Reads digits up to the end of the text or to `terminator`; false for anything else.
bool TakeDigits(const char*& text, unsigned base, char terminator, std::uint64_t& magnitude) {
  magnitude = 0;
  for (; *text != 0 && *text != terminator; ++text) {
    const unsigned digit = DigitOf(*text);
    if (digit >= base) return false;
    magnitude = magnitude * base + digit;
  }
  return true;
}

/// Reads one number; `text` moves to the character that ended it.
bool TakeNumber(const char*& text, char directive, char terminator, std::uint64_t& value) {
  const bool negative = *text == '-';
  if (negative || *text == '+') ++text;
  const unsigned base = TakeBase(text);
  std::uint64_t magnitude;
  if (!Allows(directive, base) || !TakeDigits(text, base, terminator, magnitude)) return false;
  value = negative ? 0 - magnitude : magnitude;
  return true;
}

/// The road of nearly all numbers by the default format: decimal digits up to the end of the text.
/// False for anything else, which may yet be a number.
bool ScanDecimal(const char* text, std::uint64_t& value) {
  const bool negative = *text == '-';
  if (negative || *text == '+') ++text;
  if (*text < '1' || *text > '9') return false;
  std::uint64_t magnitude = 0;
  for (; *text != 0; ++text) {
    const unsigned digit = static_cast<unsigned char>(*text) - unsigned{'0'};
    if (digit > 9) return false;
    magnitude = magnitude * 10 + digit;
  }
  value = negative ? 0 - magnitude : magnitude;
  return true;
}

/// Walks a terminated text in step with a terminated format. The last number is the value.
bool Scan(const char* text, const char* format, std::uint64_t& value) {
  for (;; ++format, ++text) {
    if (*format == '%' && IsDirective(format[1])) {
      const char directive = format[1];
      format += 2;
      if (!TakeNumber(text, directive, *format, value)) return false;
    }
    // Behind a number this is its terminator.
    if (*format != *text) return false;
    if (*format == 0) return true;
  }
}

}  // namespace

OtInt64::OtInt64(double value) : OtInt64(Bits{MagnitudeOf(std::fabs(value))}) {
  if (value < 0) *this = -*this;
}

OtInt64 OtInt64::DivisionByZero() {
  constexpr int line = 737;
  OTDB_assert("0 && \"OtInt64 divide by zero\"", "src\\otint64", line);
  return 0;
}

OtString& OtInt64::PrintToOtString(OtString& out, const char* format) const {
  if (!format || std::strcmp(format, defaultFormat) == 0) {
    char digits[32];
    char* const end = std::to_chars(digits, std::end(digits), Value()).ptr;
    *end = 0;
    return AppendTo(out, digits, static_cast<std::size_t>(end - digits));
  }
  constexpr std::size_t longestNumber = 32;
  char buffer[512];
  ot95::BoundedText text(buffer, sizeof buffer);
  for (const char* at = format; *at != 0; ++at) {
    if (text.View().size() + longestNumber > sizeof buffer) {
      AppendTo(out, text);
      text = ot95::BoundedText(buffer, sizeof buffer);
    }
    if (*at == '%' && IsDirective(at[1])) {
      AppendNumber(text, Value(), *++at);
    } else {
      text.Append(*at);
    }
  }
  return AppendTo(out, text);
}

void OtInt64::ScanFromOtString(const OtString& text, const char* format) {
  if (!format) format = defaultFormat;
  const ot95::NarrowText narrow(text);
  const char* const bytes = narrow.Bytes();
  if (*format == 0 || *bytes == 0) return;
  std::uint64_t value = Unsigned();  // Stays if the format has no number.
  const bool scanned =
      (format == defaultFormat && ScanDecimal(bytes, value)) || Scan(bytes, format, value);
  *this = scanned ? OtInt64(Bits{value}) : OtInt64(-1);
}

// ---------------------------------------------------------------------------------------------
// The row

namespace ot95 {

namespace {

constexpr std::size_t kWidth = sizeof(OtInt64);

/// The value at `bytes`: its two words, low one first in every form.
OtInt64 ReadInt64(const unsigned char* bytes, unsigned char form) {
  return OtInt64(LoadAs<std::uint32_t>(bytes, form),
                 LoadAs<std::int32_t>(bytes + kWidth / 2, form));
}

/// Store and Load: two words for each value.
unsigned long MoveWords(void* target, const void* source, unsigned char format,
                        unsigned long count) {
  return LongStore(target, source, FormOf(format), 2 * count);
}

unsigned long NullSize(unsigned long count) {
  return count * kWidth;
}

unsigned long Size(const void*, unsigned char, unsigned char, unsigned long count) {
  return count * kWidth;
}

unsigned long SizeFromMemFile(MemFile*, unsigned char, unsigned long count) {
  return count * kWidth;
}

float EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                   unsigned long count, OtIdxBounds* limits) {
  StoreBound(limits, value, op, count * kWidth);
  if (!HasRange(bounds)) return 0.0F;
  const OtInt64 number = ReadInt64(static_cast<const unsigned char*>(value), format);
  const OtInt64 lower = ReadInt64(LowerKey<kWidth>(*bounds).bytes, format);
  const OtInt64 upper = ReadInt64(UpperKey<kWidth>(*bounds).bytes, format);
  return static_cast<float>(EstimateInt64(op, number, lower, upper) /
                            (LineNumber(upper) - LineNumber(lower) + 1.0));
}

OtString& Print(OtString& target, void* value, const char* format, unsigned long /*count*/) {
  return static_cast<const OtInt64*>(value)->PrintToOtString(target, format);
}

void* ScanText(void* value, OtString& text, const char* format, unsigned long /*count*/) {
  if (value) static_cast<OtInt64*>(value)->ScanFromOtString(text, format);
  return value;
}

constexpr OtConvertFromFunc convertFrom =
    ScalarConvertFrom<Int64AsText, CreateCountedZero<OtInt64>>;

}  // namespace

constinit OtTypeDescriptor rowOtInt64 = {
    .name = "OtInt64",
    .Create = CreateCountedZero<OtInt64>,
    .Delete = DeleteCounted<OtInt64>,
    .Store = MoveWords,
    .Load = MoveWords,
    .NullSizeGet = NullSize,
    .SizeGet = Size,
    .SizeGetFromMemFile = SizeFromMemFile,
    .Compare = Int64Compare,
    .EvalAndBound = EvalAndBound,
    .Hash = ScalarHash<std::int64_t>,  // The halves fold alike in every order.
    .ConvertTo = ScalarConvertTo<Int64AsText>,
    .ConvertFrom = convertFrom,
    .Construct = ConstructZero<kWidth>,
    .Destruct = DestructNothing,
    .Assign = AssignBytes<kWidth>,
    .Copy = AssignBytes<kWidth>,
    .Translate = TranslateFixed<MoveWords, MoveWords, AssignBytes<kWidth>, kWidth>,
    .IsNull = IsNeverNull,
    .SetNull = nullptr,
    .format = defaultFormat,
    .PrintToString = Print,
    .ScanFromString = ScanText,
    .memoryLength = kWidth,
    .isFixed = 1,
    .DefaultValue = DefaultFromText<convertFrom>,
};

}  // namespace ot95

long Int64Compare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                  void* value2, unsigned short /*cmpOp*/, unsigned long count, int& status) {
  const unsigned char form = ot95::FormOf(format);
  return ot95::WalkPairs(ot95::kWidth, length1, value1, length2, value2, count, status,
                         [form](const unsigned char* left, const unsigned char* right) {
                           return ot95::ThreeWay(ot95::ReadInt64(left, form),
                                                 ot95::ReadInt64(right, form));
                         });
}
