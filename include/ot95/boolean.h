#ifndef OT95_BOOLEAN_H
#define OT95_BOOLEAN_H

/// @file
/// OtBoolean, a truth value in one byte that can be unknown (null).
///
/// | Byte | Is | Prints | Converts to | Order |
/// |---|---|---|---|---|
/// | 255 | null | the null text | a null string | first |
/// | 0 | false | FALSE | "0" | second |
/// | 1 | true | TRUE | "1" | last |
/// | any other, from stored data | equal to true | FALSE | "0" | as a signed byte |
///
/// @code
///   OtBoolean paid(0);
///   OtBoolean signedBy(255);              // signedBy == OtBoolean(1)
///   signedBy.SetNullValue();              // signedBy != paid
///   bool first = signedBy < paid;         // first == true
///   OtString text;
///   OtTypeMgr().PrintToOtString(OtTypeOf<OtBoolean>::id, text, &paid, nullptr, 1);
///   bool isFalse = text == "FALSE";       // isFalse == true
/// @endcode
///
/// Text is read without regard to a format: "T", "t", "TRUE", "true" and "1" are true, what begins
/// with the null text is null, and everything else is false, "True" and "" included.

#include "ot95/base.h"

/// A truth value: two values and null. There is no conversion to `bool`, because a null has no
/// answer; compare with 0 or 1.
class OT95_EXPORT OtBoolean {
 public:
  unsigned char value;  ///< See the table above. In memory and on disk the same byte.

  /// True for any argument but 0, also for 255: only SetNullValue makes a null.
  constexpr OtBoolean(long truth) : value(truth != 0) {}

  /// Two nulls are equal, and a null equals nothing else. All bytes that are neither 0 nor null
  /// equal each other.
  constexpr bool operator==(const OtBoolean& other) const {
    if (IsNullValue() || other.IsNullValue()) return value == other.value;
    return (value == 0) == (other.value == 0);
  }
  constexpr bool operator!=(const OtBoolean& other) const { return !(*this == other); }
  /// A null is below everything else, and false below true. Bytes that are neither 0, 1 nor null
  /// rank as signed numbers: 128 and more below false.
  constexpr bool operator>(const OtBoolean& other) const {
    if (IsNullValue()) return false;
    if (other.IsNullValue()) return true;
    return static_cast<signed char>(value) > static_cast<signed char>(other.value);
  }
  constexpr bool operator<(const OtBoolean& other) const {
    return !(*this > other) && !(*this == other);
  }
  // Against a number, of which only counts whether it is 0.
  constexpr bool operator==(long truth) const { return *this == OtBoolean(truth); }
  constexpr bool operator!=(long truth) const { return !(*this == truth); }
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

/// Comparer of the row OtBoolean, by the contract of OtCompareFunc (typemgr.h): -1, 0 or 1, with
/// null below every value. `cmpOp` isn't read.
OT95_EXPORT long BooleanCompare(unsigned char format, unsigned long length1, void* value1,
                                unsigned long length2, void* value2, unsigned short cmpOp,
                                unsigned long count, int& status);

#endif
