#ifndef OT95_SRC_KIT_NUMBERTEXT_H
#define OT95_SRC_KIT_NUMBERTEXT_H

/// @file
/// Numbers as text by checked formats, always as the C locale writes them. Integers behave as on a
/// machine with a 32-bit `long`, whatever the machine.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "ot95/text.h"

namespace ot95 {

/// Bytes that a rendered value can have, with the terminator; longer text is cut.
constexpr std::size_t printBufferSize = 512;

/// Print and scan the 32 bits of an integer; signed and unsigned conversions each read them in
/// their own way.
OtString& PrintInteger(OtString& target, std::uint32_t bits, const char* format);
bool ScanInteger(std::uint32_t& bits, const char* text, std::size_t length, const char* format);

/// Print and scan a floating-point number, with one conversion.
OtString& PrintReal(OtString& target, double value, const char* format);
template <class T>
void ScanReal(T& value, const char* text, std::size_t length, const char* format);

/// As PrintReal and ScanReal, but a format that starts with "ldex" has two conversions: for the
/// mantissa and for the exponent by which it is scaled, so that no bit is lost.
OtString& PrintDouble(OtString& target, double value, const char* format);
void ScanDouble(double& value, const char* text, std::size_t length, const char* format);

/// Prints `count` bytes, each through `format`, or as "0x%02x" if it isn't printable.
OtString& PrintChar(OtString& target, const void* bytes, const char* format, unsigned long count);
/// Scans up to `count` bytes from as many places of the text; each is read as "0x%x" first.
void ScanChar(void* bytes, const char* text, std::size_t length, const char* format,
              unsigned long count);

/// The number that begins a terminated text, as by strtol with 32 bits; 0 if none does.
/// @param base 10, or 0 for "0x" and "0" to choose.
std::int32_t ParseLong32(const char* text, int base);
/// The number that begins a terminated text, as by strtod; 0 if none does.
double ParseDouble(const char* text);

/// The text of a number, in decimal; of a double, fifteen significant digits as of "%.15g".
struct NumberText {
  template <typename Integer>
  explicit NumberText(Integer number) {
    *std::to_chars(text, text + sizeof text - 1, number).ptr = 0;
  }
  explicit NumberText(double number) {
    constexpr int kDigits = 15;
    *std::to_chars(text, text + sizeof text - 1, number, std::chars_format::general, kDigits).ptr =
        0;
  }
  char text[32];  ///< Room for every number, with a terminator.
};

/// Replaces `target` with the number, by one conversion. Narrow types are extended by their own
/// signedness.
template <class T>
OtString& PrintNumber(OtString& target, T value, const char* format) {
  if constexpr (std::is_floating_point_v<T>) {
    return PrintReal(target, value, format);
  } else if constexpr (sizeof(T) == 1 && !std::is_same_v<T, unsigned char>) {
    return PrintNumber(target, static_cast<short>(static_cast<signed char>(value)), format);
  } else {
    static_assert(sizeof(T) <= 4);
    return PrintInteger(target, static_cast<std::uint32_t>(value), format);
  }
}

/// Reads a number; a text that doesn't match leaves `value` as it is.
template <class T>
void ScanNumber(T& value, const char* text, std::size_t length, const char* format) {
  if constexpr (std::is_same_v<T, double>) {
    ScanDouble(value, text, length, format);
  } else if constexpr (std::is_floating_point_v<T>) {
    ScanReal(value, text, length, format);
  } else if constexpr (sizeof(T) == 1) {
    ScanChar(&value, text, length, format, 1);
  } else {
    std::uint32_t bits;
    if (ScanInteger(bits, text, length, format)) value = static_cast<T>(bits);
  }
}

}  // namespace ot95

#endif
