// The eleven nullable scalars: one template over the facts of the scalar.
#include "numbers/nullable.h"

#include <cstring>

#include "kit/estimate.h"
#include "kit/hash.h"
#include "kit/nulltext.h"
#include "kit/numbertext.h"
#include "kit/scalartext.h"
#include "kit/statics.h"
#include "numbers/convert.h"
#include "numbers/estimate.h"
#include "numbers/rows.h"
#include "ot95/store.h"

namespace ot95 {

namespace {

constexpr std::uint32_t kNullHash = 0xfefe7575;

// A text as a template argument.
template <std::size_t size>
struct Literal {
  char text[size];
  consteval Literal(const char (&characters)[size]) { std::copy_n(characters, size, text); }
};

// Where values stand in stored bytes, which are as wide as the value in every form.
template <class T>
void PutValue(unsigned char* at, const T& value, unsigned char form) {
  StoreAs<T>(at, value, form);
}
void PutValue(unsigned char* at, const OtInt64& value, unsigned char form) {
  StoreAs<std::uint32_t>(at, value.low, form);
  StoreAs<std::int32_t>(at + 4, value.high, form);
}
template <Literal rowName, Literal rowFormat, class Record, class AsText>
struct Nullable {
  using Value = typename Record::ValueType;
  static constexpr std::size_t storedWidth = sizeof(Value) + 1;

  static void Construct(void* memory, unsigned long count, unsigned long) {
    auto* records = static_cast<Record*>(memory);
    for (unsigned long i = 0; i < count; ++i) records[i].SetNull();
  }

  static void* Create(unsigned long count) {
    count = std::max(count, 1UL);
    void* records = AllocateElements(count, sizeof(Record));
    if (records != nullptr) Construct(records, count, 0);
    return records;
  }

  static unsigned long Store(void* disk, const void* memory, unsigned char format,
                             unsigned long count) {
    const auto* records = static_cast<const Record*>(memory);
    auto* at = static_cast<unsigned char*>(disk);
    for (unsigned long i = 0; i < count; ++i, at += storedWidth) {
      at[NullFlagAt<Value>(format)] = records[i].isNull != 0;
      PutValue(at + NullValueAt(format), records[i].value, format);
    }
    return count * storedWidth;
  }

  static unsigned long Load(void* memory, const void* disk, unsigned char format,
                            unsigned long count) {
    auto* records = static_cast<Record*>(memory);
    const auto* at = static_cast<const unsigned char*>(disk);
    for (unsigned long i = 0; i < count; ++i)
      records[i] = LoadNullable<Record>(at + i * storedWidth, format);
    return count * storedWidth;
  }

  static unsigned long NullSizeGet(unsigned long count) { return count * storedWidth; }
  static unsigned long SizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
    return NullSizeGet(count);
  }
  static unsigned long SizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
    return NullSizeGet(count);
  }

  // Unlike that of the plain types, a comparison with a not-a-number answers 1.
  static long CompareValues(const Value& left, const Value& right) {
    if (left < right) return -1;
    return left == right ? 0 : 1;
  }

  static long CompareRecords(const Record& left, const Record& right) {
    if (left.isNull || right.isNull) return (right.isNull != 0) - (left.isNull != 0);
    return CompareValues(left.value, right.value);
  }

  static long Compare(unsigned char format, unsigned long length1, void* value1,
                      unsigned long length2, void* value2, unsigned short, unsigned long count,
                      int& status) {
    const unsigned char form = FormOf(format);
    return WalkPairs(NullWalkWidth<Record>(form), length1, value1, length2, value2, count, status,
                     [form](const unsigned char* left, const unsigned char* right) {
                       return CompareRecords(LoadNullable<Record>(left, form),
                                             LoadNullable<Record>(right, form));
                     });
  }

  static std::uint32_t HashRecord(Record record) {
    if (record.isNull) return kNullHash;
    using Number = std::conditional_t<std::is_arithmetic_v<Value>, Value, std::int64_t>;
    int status = 0;
    return static_cast<std::uint32_t>(
        ScalarHash<Number>(OT_FORMAT_MEMORY, sizeof(Value), &record.value, 1, status));
  }

  // Each contribution carries the multiplier already, so that one element hashes like the scalar.
  static unsigned long Hash(unsigned char format, unsigned long length, void* value,
                            unsigned long count, int& status) {
    const unsigned char form = FormOf(format);
    return FoldElements(NullWalkWidth<Record>(form), length, value, count, status,
                        [form](const unsigned char* element) {
                          return HashRecord(LoadNullable<Record>(element, form));
                        });
  }

  static NullableNumber Place(const Record& record) {
    if constexpr (std::is_same_v<Value, OtInt64>) {
      return {LineNumber(record.value), record.isNull != 0};
    } else {
      return {static_cast<double>(record.value), record.isNull != 0};
    }
  }

  // The number of values that qualify: it has never been divided by the range.
  static double CountInt64(unsigned short op, const Record& record, const Record& low,
                           const Record& high, double sum) {
    if (record.isNull && !high.isNull) return 1.0;
    const bool above =
        (op & OT_OP_GREATER) || low.value <= record.value || (low.isNull && !record.isNull);
    const bool below = (op & OT_OP_LESS) || record.value <= high.value;
    return sum == 0.0 && above && below ? 1.0 : sum;
  }

  static float EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, unsigned long count, OtIdxBounds* limits) {
    StoreBound(limits, value, op, count * storedWidth);
    if (!HasRange(bounds)) return 0.0F;
    const Record record = LoadNullable<Record>(static_cast<const unsigned char*>(value), format);
    const Record low = LoadNullable<Record>(LowerKey<storedWidth>(*bounds).bytes, format);
    const Record high = LoadNullable<Record>(UpperKey<storedWidth>(*bounds).bytes, format);
    const double sum = EstimateNullable(op, Place(record), Place(low), Place(high));
    if constexpr (std::is_same_v<Value, OtInt64>) {
      return static_cast<float>(CountInt64(op, record, low, high, sum));
    } else {
      const double share = sum / (Place(high).number - Place(low).number + 1.0);
      return static_cast<float>(std::is_same_v<Value, double> ? Floored(share, sum) : share);
    }
  }

  static int IsNull(void* value) {
    return static_cast<signed char>(static_cast<Record*>(value)->isNull);
  }

  static int SetNull(void* value) {
    static_cast<Record*>(value)->SetNull();
    return 0;
  }

  static const char* FormatOr(const char* format) {
    return format != nullptr ? format : rowFormat.text;
  }

  static OtString& Print(OtString& target, void* value, const char* format, unsigned long) {
    auto& record = *static_cast<Record*>(value);
    if (record.isNull != 0) return target = nullPrintString;
    if constexpr (std::is_same_v<Value, OtInt64>) {
      return record.value.PrintToOtString(target, format);
    } else {
      return PrintNumber(target, record.value, FormatOr(format));
    }
  }

  static void* Scan(void* value, OtString& text, const char* format, unsigned long) {
    if (value == nullptr) return nullptr;
    auto& record = *static_cast<Record*>(value);
    const NarrowText narrow(text);
    if (narrow.Length() == 0 || BeginsWithNullText(narrow)) {
      record.SetNull();
    } else if constexpr (std::is_same_v<Value, OtInt64>) {
      record.value.ScanFromOtString(text,
                                    format);  // A null record stays null: so it has always been.
    } else {
      Value scanned = record.value;
      ScanNumber(scanned, narrow.Bytes(), narrow.Length(), FormatOr(format));
      record.value = scanned;
      record.isNull = 0;
    }
    return value;
  }

  static constexpr auto assign = AssignValues<Record>;

  static constexpr OtTypeDescriptor Row() {
    return {.name = rowName.text,
            .Create = Create,
            .Delete = DeletePlain,
            .Store = Store,
            .Load = Load,
            .NullSizeGet = NullSizeGet,
            .SizeGet = SizeGet,
            .SizeGetFromMemFile = SizeGetFromMemFile,
            .Compare = Compare,
            .EvalAndBound = EvalAndBound,
            .Hash = Hash,
            .ConvertTo = NullableConvertTo<AsText, Record>,
            .ConvertFrom = NullableConvertFrom<AsText, Record, Create>,
            .Construct = Construct,
            .Destruct = DestructNothing,
            .Assign = assign,
            .Copy = assign,
            .Translate = TranslateFixed<Load, Store, assign, sizeof(Record)>,
            .IsNull = IsNull,
            .SetNull = SetNull,
            .format = rowFormat.text,
            .PrintToString = Print,
            .ScanFromString = Scan,
            .memoryLength = sizeof(Record),
            .isFixed = 1,
            .DefaultValue = DefaultFromCreate<Create>};
  }
};

}  // namespace

constinit OtTypeDescriptor rowOtNull_char =
    Nullable<"OtNull_char", "%c", OtNull_char, NullCharAsText>::Row();
constinit OtTypeDescriptor rowOtNull_uchar =
    Nullable<"OtNull_uchar", "%c", OtNull_uchar, NullUcharAsText>::Row();
constinit OtTypeDescriptor rowOtNull_short =
    Nullable<"OtNull_short", "%hd", OtNull_short, NullShortAsText>::Row();
constinit OtTypeDescriptor rowOtNull_ushort =
    Nullable<"OtNull_ushort", "%hu", OtNull_ushort, NullUshortAsText>::Row();
constinit OtTypeDescriptor rowOtNull_int =
    Nullable<"OtNull_int", "%d", OtNull_int, IntAsText>::Row();
constinit OtTypeDescriptor rowOtNull_unsigned =
    Nullable<"OtNull_unsigned", "%u", OtNull_unsigned, NullUnsignedAsText>::Row();
constinit OtTypeDescriptor rowOtNull_long =
    Nullable<"OtNull_long", "%ld", OtNull_long, LongAsText>::Row();
constinit OtTypeDescriptor rowOtNull_ulong =
    Nullable<"OtNull_ulong", "%lu", OtNull_ulong, NullUlongAsText>::Row();
constinit OtTypeDescriptor rowOtNull_float =
    Nullable<"OtNull_float", "%f", OtNull_float, FloatAsText>::Row();
constinit OtTypeDescriptor rowOtNull_double =
    Nullable<"OtNull_double", "%lf", OtNull_double, DoubleAsText>::Row();
constinit OtTypeDescriptor rowOtNull_OtInt64 =
    Nullable<"OtNull_OtInt64", "%S", OtNull_OtInt64, Int64AsText>::Row();

}  // namespace ot95
