#ifndef OT95_BOOLEAN_H
#define OT95_BOOLEAN_H

/// @file
/// OtBoolean, a truth value in one byte that can be unknown (null).

#include "ot95/base.h"

/// 0 is false, 1 true and 255 null. Other bytes can come from stored data: they equal true,
/// print as false and rank as signed bytes.
class OT95_EXPORT OtBoolean {
 public:
  unsigned char value;

  /// True for any argument but 0, also for 255.
  constexpr OtBoolean(long truth) : value(truth != 0) {}

  constexpr bool operator==(const OtBoolean& other) const {
    if (IsNullValue() || other.IsNullValue()) return value == other.value;
    return (value == 0) == (other.value == 0);
  }
  /// A null is below everything else.
  constexpr bool operator>(const OtBoolean& other) const {
    if (IsNullValue()) return false;
    if (other.IsNullValue()) return true;
    return static_cast<signed char>(value) > static_cast<signed char>(other.value);
  }
  constexpr bool operator<(const OtBoolean& other) const {
    return !(*this > other) && !(*this == other);
  }
  constexpr bool operator==(long truth) const { return *this == OtBoolean(truth); }
  constexpr bool operator>(long truth) const { return *this > OtBoolean(truth); }
  constexpr bool operator<(long truth) const { return *this < OtBoolean(truth); }

  constexpr bool IsNullValue() const { return value == 255; }
  /// Makes it null; returns 0.
  int SetNullValue() {
    value = 255;
    return 0;
  }
};

static_assert(sizeof(OtBoolean) == 1, "an array of booleans is an array of bytes");

/// Comparer of the row OtBoolean: -1, 0 or 1, with null below every value.
OT95_EXPORT long BooleanCompare(unsigned char format, unsigned long length1, void* value1,
                                unsigned long length2, void* value2, unsigned short cmpOp,
                                unsigned long count, int& status);

#endif
