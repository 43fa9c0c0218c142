#ifndef OT95_SRC_NUMBERS_CONVERT_H
#define OT95_SRC_NUMBERS_CONVERT_H

/// @file
/// Members ConvertTo and ConvertFrom of the scalar and nullable rows. Which text a number becomes,
/// and how it is read back, are two facts of its row, and they often disagree.

#include "kit/convert.h"
#include "ot95/int64.h"
#include "ot95/text.h"

namespace ot95 {

/// A number of type T that is written as `OtString(To)` and read by `operator Back`.
template <class T, class To, class Back = To>
struct NumberAsText {
  using Type = T;
  static void Write(OtString& text, const T& value) {
    OtString number(static_cast<To>(value));
    text.Destruct(number);
  }
  static void Read(T& value, const OtString& text) {
    value = static_cast<T>(static_cast<Back>(text));
  }
};

/// OtInt64 through its own printer and scanner.
struct Int64AsText {
  using Type = OtInt64;
  static void Write(OtString& text, const OtInt64& value) { value.PrintToOtString(text, nullptr); }
  static void Read(OtInt64& value, const OtString& text) {
    value = OtInt64(0);
    value.ScanFromOtString(text, nullptr);
  }
};

// The scalar rows, by family.
using CharAsText = NumberAsText<signed char, short>;
using ShortAsText = NumberAsText<short, short>;
using LongAsText = NumberAsText<OtLong, long>;
using IntAsText = NumberAsText<int, int>;
using FloatAsText = NumberAsText<float, double>;
using DoubleAsText = NumberAsText<double, double>;

// The nullable rows that differ from their scalars.
using NullCharAsText = NumberAsText<signed char, char, int>;
using NullUcharAsText = NumberAsText<unsigned char, int>;
using NullShortAsText = NumberAsText<short, short, int>;
using NullUshortAsText = NumberAsText<unsigned short, unsigned short, int>;
using NullUnsignedAsText = NumberAsText<unsigned, unsigned, int>;
using NullUlongAsText = NumberAsText<OtDWord, unsigned long, long>;

/// A missing or null string counts as an empty one, which is 0.
template <class AsText>
void ReadScalarText(typename AsText::Type& value, const OtString* text) {
  if (text) {
    AsText::Read(value, *text);
  } else {
    value = 0;
  }
}

template <class AsText>
constexpr OtConvertToFunc ScalarConvertTo = &ConvertToTexts<typename AsText::Type, &AsText::Write>;

/// @tparam create the row's.
template <class AsText, OtCreateFunc create>
constexpr OtConvertFromFunc ScalarConvertFrom =
    &ConvertFromTexts<typename AsText::Type, create, &ReadScalarText<AsText>>;

/// @tparam Record has members `value`, which AsText knows, and `isNull`.
template <class AsText, class Record>
void WriteNullableText(OtString& text, const Record& record) {
  if (record.isNull) {
    text.SetNullValue();
  } else {
    AsText::Write(text, record.value);
  }
}

/// A missing or null string leaves the record null, as the row's Create made it.
template <class AsText, class Record>
void ReadNullableText(Record& record, const OtString* text) {
  if (!text) return;
  AsText::Read(record.value, *text);
  record.isNull = 0;
}

template <class AsText, class Record>
constexpr OtConvertToFunc NullableConvertTo =
    &ConvertToTexts<Record, &WriteNullableText<AsText, Record>>;

template <class AsText, class Record, OtCreateFunc create>
constexpr OtConvertFromFunc NullableConvertFrom =
    &ConvertFromTexts<Record, create, &ReadNullableText<AsText, Record>>;

/// DefaultValue of a nullable row.
template <OtCreateFunc create>
void* DefaultFromCreate(unsigned long count, int /*nullable*/) {
  return create(count);
}

}  // namespace ot95

#endif
