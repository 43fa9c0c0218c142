// The rows of the twelve scalars. Families of rows share their functions; within a family only the
// order, the estimate, the hash and the format differ.
#include "kit/hash.h"
#include "kit/scalartext.h"
#include "kit/walks.h"
#include "numbers/convert.h"
#include "numbers/estimate.h"
#include "numbers/rows.h"
#include "ot95/store.h"

namespace ot95 {

namespace {

template <std::size_t width>
unsigned long FixedFileSize(MemFile*, unsigned char, unsigned long count) {
  return count * width;
}

template <class T>
struct NumberMembers {
  static constexpr auto print = NumberPrintToString<T>;
  static constexpr auto scan = NumberScanFromString<T>;
};

struct CharMembers {
  static constexpr auto print = CharPrintToString;
  static constexpr auto scan = CharScanFromString;
};

// What the rows of a family share.
template <class T, class Conversion, class TextMembers = NumberMembers<T>>
struct Family : TextMembers {
  using AsText = Conversion;
  static constexpr std::size_t width = sizeof(T);
  static constexpr auto create = CreatePlain<sizeof(T)>;
  static constexpr auto fileSize = FixedFileSize<sizeof(T)>;
};

struct CharFamily : Family<signed char, CharAsText, CharMembers> {
  static constexpr auto create = CreateZero<1>;  // No other storage comes cleared.
  static constexpr auto store = CharStore, load = CharStore;
  static constexpr auto nullSize = CharNullSizeGet;
  static constexpr auto size = CharSizeGet;
};

struct ShortFamily : Family<short, ShortAsText> {
  static constexpr auto store = ShortStore, load = ShortStore;
  static constexpr auto nullSize = ShortNullSizeGet;
  static constexpr auto size = ShortSizeGet;
};

struct LongFamily : Family<OtLong, LongAsText> {
  static constexpr auto store = LongStore, load = LongStore;
  static constexpr auto nullSize = LongNullSizeGet;
  static constexpr auto size = LongSizeGet;
};

struct IntFamily : Family<int, IntAsText> {
  static constexpr auto store = IntStore, load = IntLoad;
  static constexpr auto nullSize = IntNullSizeGet;
  static constexpr auto size = IntSizeGet;
  static constexpr auto fileSize = PrimitiveFileSize<IntSizeGet, 0xff>;
};

struct UnsignedFamily : IntFamily {
  static constexpr auto store = UnsignedStore, load = UnsignedLoad;
};

struct FloatFamily : Family<float, FloatAsText> {
  static constexpr auto store = FloatStore, load = FloatStore;
  static constexpr auto nullSize = FloatNullSizeGet;
  static constexpr auto size = FloatSizeGet;
  static constexpr auto fileSize = PrimitiveFileSize<FloatSizeGet, 15>;
};

struct DoubleFamily : Family<double, DoubleAsText> {
  static constexpr auto store = DoubleStore, load = DoubleStore;
  static constexpr auto nullSize = DoubleNullSizeGet;
  static constexpr auto size = DoubleSizeGet;
  static constexpr auto fileSize = PrimitiveFileSize<DoubleSizeGet, 15>;
};

template <class F>
constexpr OtTypeDescriptor ScalarRow(const char* name, const char* format, OtCompareFunc compare,
                                     OtEvalFunc evaluate, OtHashFunc hash) {
  constexpr auto assign = AssignBytes<F::width>;
  constexpr auto convertFrom = ScalarConvertFrom<typename F::AsText, F::create>;
  return {.name = name,
          .Create = F::create,
          .Delete = DeletePlain,
          .Store = F::store,
          .Load = F::load,
          .NullSizeGet = F::nullSize,
          .SizeGet = F::size,
          .SizeGetFromMemFile = F::fileSize,
          .Compare = compare,
          .EvalAndBound = evaluate,
          .Hash = hash,
          .ConvertTo = ScalarConvertTo<typename F::AsText>,
          .ConvertFrom = convertFrom,
          .Construct = ConstructZero<F::width>,
          .Destruct = DestructNothing,
          .Assign = assign,
          .Copy = assign,
          .Translate = TranslateFixed<F::load, F::store, assign, F::width>,
          .IsNull = IsNeverNull,
          .format = format,
          .PrintToString = F::print,
          .ScanFromString = F::scan,
          .memoryLength = F::width,
          .isFixed = 1,
          .DefaultValue = DefaultFromText<convertFrom>};
}

// enum has a Translate of its own, which does what that of int does.
unsigned long EnumTranslate(void* target, unsigned char targetFormat, unsigned long targetLength,
                            void* source, unsigned char sourceFormat, unsigned long sourceLength,
                            unsigned long count) {
  return TranslateFixed<IntLoad, IntStore, AssignBytes<4>, 4>(
      target, targetFormat, targetLength, source, sourceFormat, sourceLength, count);
}

constexpr OtTypeDescriptor EnumRow() {
  OtTypeDescriptor row = ScalarRow<IntFamily>("enum", "%d", IntCompare, EvalNumber<std::int32_t>,
                                              ScalarHash<std::int32_t>);
  row.Translate = EnumTranslate;
  return row;
}

}  // namespace

constinit OtTypeDescriptor rowChar = ScalarRow<CharFamily>(
    "char", "%c", CharCompare, EvalNumber<signed char>, ScalarHash<signed char>);
constinit OtTypeDescriptor rowOtByte = ScalarRow<CharFamily>(
    "OtByte", "%c", ByteCompare, EvalNumber<unsigned char>, ScalarHash<unsigned char>);
constinit OtTypeDescriptor rowShort = ScalarRow<ShortFamily>(
    "short", "%hd", ShortCompare, EvalNumber<std::int16_t>, ScalarHash<std::int16_t>);
constinit OtTypeDescriptor rowOtWord = ScalarRow<ShortFamily>(
    "OtWord", "%hu", WordCompare, EvalNumber<std::uint16_t>, ScalarHash<std::uint16_t>);
constinit OtTypeDescriptor rowLong =
    ScalarRow<LongFamily>("long", "%ld", LongCompare, EvalNumber<OtLong>, ScalarHash<OtLong>);
constinit OtTypeDescriptor rowOtDWord =
    ScalarRow<LongFamily>("OtDWord", "%lu", DwordCompare, EvalNumber<OtDWord>, ScalarHash<OtDWord>);
constinit OtTypeDescriptor rowBlockId = ScalarRow<LongFamily>(
    "BlockId", "#%lu", DwordCompare, EvalNumber<OtDWord>, ScalarHash<OtDWord>);
constinit OtTypeDescriptor rowInt = ScalarRow<IntFamily>(
    "int", "%d", IntCompare, EvalNumber<std::int32_t>, ScalarHash<std::int32_t>);
constinit OtTypeDescriptor rowEnum = EnumRow();
constinit OtTypeDescriptor rowUnsigned = ScalarRow<UnsignedFamily>(
    "unsigned", "%u", UnsignedCompare, EvalNumber<std::uint32_t>, ScalarHash<std::uint32_t>);
constinit OtTypeDescriptor rowFloat =
    ScalarRow<FloatFamily>("float", "%f", FloatCompare, EvalNumber<float>, ScalarHash<float>);
constinit OtTypeDescriptor rowDouble =
    ScalarRow<DoubleFamily>("double", "%lf", DoubleCompare, EvalNumber<double>, ScalarHash<double>);

}  // namespace ot95
