#ifndef OT95_INT64_H
#define OT95_INT64_H

/// @file
/// OtInt64, the signed 64-bit integer of stored data.
///
/// A value is two 32-bit words, the low one first, so that a record which holds one has the same
/// layout on every machine. Arithmetic is two's complement and wraps: the greatest value plus 1 is
/// the smallest. Only division by zero is reported (OTDB_assert in fault.h; when that returns,
/// quotient and remainder are 0). There is no null value: OtNull_OtInt64 has one.
///
///     value = high * 2^32 + low       | low (4) | high (4) |    bytes of a record, 4-aligned
///
/// @code
///   OtInt64 big(0xffffffffUL, 0x7fffffffL);   // low, high: the greatest value
///   ++big;                                    // big < OtInt64(0)
///   OtString text("= ");
///   big.PrintToOtString(text, "%S");          // text == "= -9223372036854775808"
///   OtInt64 rest = OtInt64(-7) % OtInt64(2);  // rest == OtInt64(-1)
///   OtInt64 mask(0);
///   mask.ScanFromOtString("0x1F", nullptr);   // mask == OtInt64(31)
/// @endcode

#include <cstdint>

#include "ot95/base.h"

class OtString;

/// Two 32-bit words; the value is `high` times 2^32 plus `low`. There is no default constructor and
/// no conversion to a built-in type: read the words, or print it.
class OT95_EXPORT OtInt64 {
 public:
  std::uint32_t low;  ///< Bits 0 to 31.
  std::int32_t high;  ///< Bits 32 to 63, with the sign.

  /// A native integer keeps its value: a signed one with its sign, an unsigned one up to 2^63 - 1;
  /// above that it wraps to a negative value, with the same bits.
  constexpr OtInt64(long value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(int value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(unsigned long value) : OtInt64(Bits{value}) {}
  constexpr OtInt64(unsigned value) : OtInt64(Bits{value}) {}
  constexpr OtInt64(long long value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(unsigned long long value) : OtInt64(Bits{value}) {}
  /// Sets the two words to the low 32 bits of the arguments.
  constexpr OtInt64(unsigned long lowWord, long highWord)
      : low(static_cast<std::uint32_t>(lowWord)), high(static_cast<std::int32_t>(highWord)) {}
  /// The whole part by way of seven decimal digits, rounded: 123456789.0 gives 123456800 and
  /// 1.9999999 gives 2. Cut at plus and minus 2^63 - 1; 0 for NaN. So it has always been.
  OtInt64(double value);

  // All comparisons are those of the numbers.
  constexpr bool operator==(const OtInt64& other) const { return Value() == other.Value(); }
  constexpr bool operator!=(const OtInt64& other) const { return Value() != other.Value(); }
  constexpr bool operator<(const OtInt64& other) const { return Value() < other.Value(); }
  constexpr bool operator>(const OtInt64& other) const { return Value() > other.Value(); }
  constexpr bool operator<=(const OtInt64& other) const { return Value() <= other.Value(); }
  constexpr bool operator>=(const OtInt64& other) const { return Value() >= other.Value(); }

  // All results are taken modulo 2^64. The negation of the smallest value is itself.
  constexpr OtInt64 operator-() const { return Bits{0 - Unsigned()}; }
  constexpr OtInt64 operator+(const OtInt64& other) const {
    return Bits{Unsigned() + other.Unsigned()};
  }
  constexpr OtInt64 operator-(const OtInt64& other) const {
    return Bits{Unsigned() - other.Unsigned()};
  }
  constexpr OtInt64 operator*(const OtInt64& other) const {
    return Bits{Unsigned() * other.Unsigned()};
  }
  // Division truncates toward zero: -7 / 2 is -3, and the remainder has the sign of the dividend.
  constexpr OtInt64 operator/(const OtInt64& other) const { return Division(other, 0); }
  constexpr OtInt64 operator%(const OtInt64& other) const { return Division(other, 1); }
  /// Shifts by 64 and more leave 0, or -1 of a negative value to the right.
  constexpr OtInt64 operator<<(unsigned count) const {
    return Bits{count > 63 ? 0 : Unsigned() << count};
  }
  constexpr OtInt64 operator>>(unsigned count) const {
    return Bits{static_cast<std::uint64_t>(Value() >> (count > 63 ? 63 : count))};
  }
  constexpr OtInt64 operator|(const OtInt64& other) const {
    return Bits{Unsigned() | other.Unsigned()};
  }
  constexpr OtInt64 operator&(const OtInt64& other) const {
    return Bits{Unsigned() & other.Unsigned()};
  }
  constexpr OtInt64 operator~() const { return Bits{~Unsigned()}; }

  // The compound operators return a copy, not a reference: so the interface has always been. There
  // is no exclusive or, and no postfix form.
  constexpr OtInt64 operator+=(const OtInt64& other) { return *this = *this + other; }
  constexpr OtInt64 operator-=(const OtInt64& other) { return *this = *this - other; }
  constexpr OtInt64 operator*=(const OtInt64& other) { return *this = *this * other; }
  constexpr OtInt64 operator/=(const OtInt64& other) { return *this = *this / other; }
  constexpr OtInt64 operator%=(const OtInt64& other) { return *this = *this % other; }
  constexpr OtInt64 operator<<=(unsigned count) { return *this = *this << count; }
  constexpr OtInt64 operator>>=(unsigned count) { return *this = *this >> count; }
  constexpr OtInt64 operator++() { return *this += OtInt64(1); }
  constexpr OtInt64 operator--() { return *this -= OtInt64(1); }

  /// The value without its sign; the smallest value has no positive and stays.
  constexpr OtInt64 Abs() const { return Value() > 0 ? *this : -*this; }
  /// Quotient truncated toward zero, or with `remainder` non-zero the remainder, signed as this.
  /// The smallest value divided by -1 is itself, with remainder 0. A divisor of 0 is reported to
  /// OTDB_assert; if that returns, the answer is 0.
  constexpr OtInt64 Division(const OtInt64& divisor, int remainder) const {
    const std::int64_t by = divisor.Value();
    if (by == 0) return DivisionByZero();
    // The machine traps when the smallest value is divided by -1.
    if (by == -1) return remainder ? OtInt64(0) : -*this;
    return Bits{static_cast<std::uint64_t>(remainder ? Value() % by : Value() / by)};
  }

  /// Appends the value to `out`, and returns it. `format` is text with directives in it:
  ///
  /// | Directive | Prints | Reads |
  /// |---|---|---|
  /// | `%S` | decimal | decimal, "0x1F" as hexadecimal, "017" as octal |
  /// | `%d` `%i` | decimal | decimal that doesn't begin with 0 |
  /// | `%o` | octal with a leading 0 | octal with a leading 0 |
  /// | `%x` `%X` | hexadecimal with "0x" or "0X", digits in that case | hexadecimal with prefix |
  ///
  /// A null format means "%S". A negative value has its sign in front of the prefix; the smallest
  /// value shows it in decimal only. A "%" before any other character is printed as it is.
  OtString& PrintToOtString(OtString& out, const char* format) const;
  /// Parses `text` in step with `format`: literal characters have to be equal, and a number ends at
  /// the format's next character. With several numbers the last one counts. There is no check for
  /// overflow: digits wrap.
  ///
  /// A text that doesn't match leaves -1, which can't be told from the text "-1". An empty text
  /// leaves the value as it was, and so does an empty format.
  void ScanFromOtString(const OtString& text, const char* format);

 private:
  struct Bits {
    std::uint64_t value;
  };
  // Outside constant expressions the words move as one 64-bit integer, which the compiler keeps in
  // a register; putting them together by shifts would cost two stores for every result.
  constexpr OtInt64(Bits bits) : low(0), high(0) {
    if (wordsAreNative && !__builtin_is_constant_evaluated()) {
      __builtin_memcpy(this, &bits.value, sizeof *this);
    } else {
      low = static_cast<std::uint32_t>(bits.value);
      high = static_cast<std::int32_t>(bits.value >> 32);
    }
  }
  constexpr std::uint64_t Unsigned() const {
    std::uint64_t bits = 0;
    if (wordsAreNative && !__builtin_is_constant_evaluated()) {
      __builtin_memcpy(&bits, this, sizeof bits);
    } else {
      bits = std::uint64_t{static_cast<std::uint32_t>(high)} << 32 | low;
    }
    return bits;
  }
  constexpr std::int64_t Value() const { return static_cast<std::int64_t>(Unsigned()); }
  static constexpr bool wordsAreNative = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
  static OtInt64 DivisionByZero();
};

static_assert(sizeof(OtInt64) == 8 && alignof(OtInt64) == 4, "a stored record holds it unpadded");

/// Comparer of the row OtInt64, by the contract of OtCompareFunc (typemgr.h): -1, 0 or 1 by the
/// numbers, in every form. `cmpOp` isn't read.
OT95_EXPORT long Int64Compare(unsigned char format, unsigned long length1, void* value1,
                              unsigned long length2, void* value2, unsigned short cmpOp,
                              unsigned long count, int& status);

#endif
