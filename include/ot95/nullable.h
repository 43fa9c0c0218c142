#ifndef OT95_NULLABLE_H
#define OT95_NULLABLE_H

/// @file
/// The eleven nullable numbers: a scalar with a flag that says that it is absent. A plain `long`
/// has no bits left to mean "unknown"; OtNull_long has a byte of its own for it.
///
/// | Type | Holds | Row | Bytes in memory | Bytes on disk |
/// |---|---|---|---|---|
/// | OtNull_char | `signed char` | 28 | 2 | 2 |
/// | OtNull_uchar | `unsigned char` | 29 | 2 | 2 |
/// | OtNull_short | `short` | 30 | 4 | 3 |
/// | OtNull_ushort | `unsigned short` | 31 | 4 | 3 |
/// | OtNull_int | `int` | 32 | 8 | 5 |
/// | OtNull_unsigned | `unsigned` | 33 | 8 | 5 |
/// | OtNull_long | OtLong: 32 bits on every machine | 34 | 8 | 5 |
/// | OtNull_ulong | OtDWord: 32 bits on every machine | 35 | 8 | 5 |
/// | OtNull_float | `float` | 36 | 8 | 5 |
/// | OtNull_double | `double` | 37 | 16 | 9 |
/// | OtNull_OtInt64 | OtInt64 | 38 | 12 | 9 |
///
/// @code
///   OtNull_long weight;                    // null: nobody has weighed it yet
///   long pounds = weight.ValueOr(-1);      // pounds == -1
///   weight = 250;                          // weight.Value() == 250
///   OtNull_long unknown;                   // unknown < weight
///
///   unsigned char page[5];                 // one flag byte, then the value
///   OtTypeMgr types;
///   types.Store(page, &weight, OT_FORMAT_BIG_ENDIAN, 1);  // page[0] == 0
///   weight.SetNull();
///   types.Store(page, &weight, OT_FORMAT_BIG_ENDIAN, 1);  // page[0] == 1
/// @endcode
///
/// The two layouts differ. In memory the value stands first, with the flag behind it and then
/// padding; on disk the flag stands first and nothing is padded:
///
///     memory, OtNull_short   | value (2) | flag (1) | padding (1) |
///     disk                   | flag (1)  | value (2) |
///
/// A null prints as the null text ("{NULL}", see OtTypeMgr::SetNullPrintString). A text that is
/// empty or begins with the null text scans as null.

#include <type_traits>

#include "ot95/base.h"
#include "ot95/int64.h"

/// A number that can be null. The rows work on this very record, so an array of them can be given
/// to the type manager as it is.
/// @tparam T the number.
/// @tparam typeId its row in the table; it tells OtNull_int and OtNull_long apart, which both hold
///   an `int`.
// A 32-bit machine would align a double to 4 by itself, and the record to 12 bytes.
template <class T, char typeId>
class alignas(std::is_same_v<T, double> ? 8 : alignof(T)) OtNull {
 public:
  using ValueType = T;

  /// The number; 0 while the record is null. A write through this member doesn't touch the flag:
  /// assign to the record to give it a value.
  T value = T(0);
  /// Not null when 0, null otherwise. SetNull writes 1. On disk only 1 means null: records that
  /// are loaded hold 0 or 1 here.
  char isNull = 1;

  /// Null.
  constexpr OtNull() = default;
  /// A value, which is not null: also for 0.
  constexpr OtNull(T number) : value(number), isNull(0) {}

  constexpr bool IsNull() const { return isNull != 0; }
  /// The same, under the name that the other value classes have for it.
  constexpr bool IsNullValue() const { return IsNull(); }
  /// Makes it null, with value 0.
  void SetNull() {
    value = T(0);
    isNull = 1;
  }
  /// Makes it null; returns 0.
  int SetNullValue() {
    SetNull();
    return 0;
  }

  /// The number; 0 of a null. Ask IsNull first where 0 is a number of yours.
  constexpr T Value() const { return IsNull() ? T(0) : value; }
  /// The number, or `other` of a null.
  constexpr T ValueOr(T other) const { return IsNull() ? other : value; }

  // Comparison as in an index: a null is below every number and equals another null. Where the
  // number is a not-a-number, nothing is equal and nothing is less; the row, which has to answer
  // three ways, then answers 1.
  friend constexpr bool operator==(const OtNull& a, const OtNull& b) {
    return a.IsNull() || b.IsNull() ? a.IsNull() == b.IsNull() : a.value == b.value;
  }
  friend constexpr bool operator!=(const OtNull& a, const OtNull& b) { return !(a == b); }
  friend constexpr bool operator<(const OtNull& a, const OtNull& b) {
    return a.IsNull() || b.IsNull() ? a.IsNull() && !b.IsNull() : a.value < b.value;
  }
  friend constexpr bool operator>(const OtNull& a, const OtNull& b) { return b < a; }
  friend constexpr bool operator<=(const OtNull& a, const OtNull& b) { return a < b || a == b; }
  friend constexpr bool operator>=(const OtNull& a, const OtNull& b) { return b <= a; }
};

using OtNull_char = OtNull<signed char, 28>;  // signed whatever the machine thinks of `char`
using OtNull_uchar = OtNull<unsigned char, 29>;
using OtNull_short = OtNull<short, 30>;
using OtNull_ushort = OtNull<unsigned short, 31>;
using OtNull_int = OtNull<int, 32>;
using OtNull_unsigned = OtNull<unsigned, 33>;
using OtNull_long = OtNull<OtLong, 34>;
using OtNull_ulong = OtNull<OtDWord, 35>;
using OtNull_float = OtNull<float, 36>;
using OtNull_double = OtNull<double, 37>;
using OtNull_OtInt64 = OtNull<OtInt64, 38>;

namespace ot95 {

/// Whether a nullable record has the size that the table says, with the flag right behind the
/// value. Asked below for all eleven, on every machine that the header is compiled for.
template <class Record, std::size_t size>
constexpr bool HasNullableLayout =
    sizeof(Record) ==
    size&& std::is_standard_layout_v<Record>&& std::is_trivially_copyable_v<
        Record>&& __builtin_offsetof(Record, isNull) == sizeof(typename Record::ValueType);

static_assert(HasNullableLayout<OtNull_char, 2> && HasNullableLayout<OtNull_uchar, 2>);
static_assert(HasNullableLayout<OtNull_short, 4> && HasNullableLayout<OtNull_ushort, 4>);
static_assert(HasNullableLayout<OtNull_int, 8> && HasNullableLayout<OtNull_unsigned, 8>);
static_assert(HasNullableLayout<OtNull_long, 8> && HasNullableLayout<OtNull_ulong, 8>);
static_assert(HasNullableLayout<OtNull_float, 8> && HasNullableLayout<OtNull_double, 16>);
static_assert(HasNullableLayout<OtNull_OtInt64, 12>);

}  // namespace ot95

#endif
