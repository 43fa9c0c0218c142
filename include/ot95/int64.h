#ifndef OT95_INT64_H
#define OT95_INT64_H

/// @file
/// OtInt64, the signed 64-bit integer of stored data. Arithmetic is two's complement and wraps;
/// only division by zero is reported (OTDB_assert, then 0 for quotient and remainder).
/// @code
///   OtInt64 big(0x7fffffffffffffffL);
///   ++big;                             // wraps to the smallest value
///   OtString text;
///   big.PrintToOtString(text, "%S");   // appends -9223372036854775808
/// @endcode

#include <cstdint>

#include "ot95/base.h"

class OtString;

/// Two 32-bit words; the value is `high` times 2^32 plus `low`.
class OT95_EXPORT OtInt64 {
 public:
  std::uint32_t low;  ///< Bits 0 to 31.
  std::int32_t high;  ///< Bits 32 to 63, with the sign.

  // A native integer keeps all its bits.
  constexpr OtInt64(long value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(int value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(unsigned long value) : OtInt64(Bits{value}) {}
  constexpr OtInt64(unsigned value) : OtInt64(Bits{value}) {}
  constexpr OtInt64(long long value) : OtInt64(Bits{static_cast<std::uint64_t>(value)}) {}
  constexpr OtInt64(unsigned long long value) : OtInt64(Bits{value}) {}
  /// Sets the two words to the low 32 bits of the arguments.
  constexpr OtInt64(unsigned long lowWord, long highWord)
      : low(static_cast<std::uint32_t>(lowWord)), high(static_cast<std::int32_t>(highWord)) {}
  /// By way of seven decimal digits, rounded; cut at plus and minus 2^63 - 1; 0 for NaN.
  OtInt64(double value);

  constexpr bool operator==(const OtInt64& other) const { return Value() == other.Value(); }
  constexpr bool operator!=(const OtInt64& other) const { return Value() != other.Value(); }
  constexpr bool operator<(const OtInt64& other) const { return Value() < other.Value(); }
  constexpr bool operator>(const OtInt64& other) const { return Value() > other.Value(); }
  constexpr bool operator<=(const OtInt64& other) const { return Value() <= other.Value(); }
  constexpr bool operator>=(const OtInt64& other) const { return Value() >= other.Value(); }

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

  // The compound operators return a copy, not a reference: so the interface has always been.
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
  constexpr OtInt64 Division(const OtInt64& divisor, int remainder) const {
    const std::int64_t by = divisor.Value();
    if (by == 0) return DivisionByZero();
    // The machine traps when the smallest value is divided by -1.
    if (by == -1) return remainder ? OtInt64(0) : -*this;
    return Bits{static_cast<std::uint64_t>(remainder ? Value() % by : Value() / by)};
  }

  /// Appends the value to `out`. In `format`, "%S", "%d" and "%i" stand for decimal, "%o", "%x"
  /// and "%X" for octal and hexadecimal with prefix; null means "%S".
  OtString& PrintToOtString(OtString& out, const char* format) const;
  /// Parses `text` in step with `format`; a text that doesn't match leaves -1.
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

/// Comparer of the row OtInt64.
OT95_EXPORT long Int64Compare(unsigned char format, unsigned long length1, void* value1,
                              unsigned long length2, void* value2, unsigned short cmpOp,
                              unsigned long count, int& status);

#endif
