// The seal: class and row.

#include "identity/rows.h"
#include "kit/convert.h"
#include "kit/estimate.h"
#include "kit/walks.h"
#include "ot95/bytes.h"
#include "ot95/identity.h"
#include "ot95/int64.h"

void OtSeal::ConvertFrom(const OtObjId& id) {
  sealLow = static_cast<std::uint16_t>(id.lowPart);
  sealMiddle = static_cast<std::uint16_t>(id.lowPart >> 16);
  sealHigh = id.highPart;
}

void OtSeal::ConvertFrom(const OtInt64& number) {
  sealLow = static_cast<std::uint16_t>(number.low);
  sealMiddle = static_cast<std::uint16_t>(number.low >> 16);
  sealHigh = static_cast<std::uint16_t>(number.high);
}

void OtSeal::ConvertTo(OtInt64& number) const {
  number.low = std::uint32_t{sealMiddle} << 16 | sealLow;
  number.high = sealHigh;
}

int OtSeal::operator!=(const OtSeal& other) const {
  if (sealHigh != other.sealHigh) return sealHigh - other.sealHigh;
  if (sealMiddle != other.sealMiddle) return sealMiddle - other.sealMiddle;
  return sealLow - other.sealLow;
}

OtString& OtSeal::PrintToOtString(OtString& target) const {
  OtInt64 number(0);
  ConvertTo(number);
  return number.PrintToOtString(target, "%S");
}

void OtSeal::ScanFromOtString(const OtString& text) {
  OtInt64 number(0);
  if (!text.IsEmpty()) number.ScanFromOtString(text, "%S");
  ConvertFrom(number);
}

namespace {

using namespace ot95;

constexpr unsigned width = 6;

// The bytes that a seal has in every form of disk.
void StoreSeal(unsigned char* disk, const OtSeal& seal) {
  StoreAs<OtWord>(disk, seal.sealHigh, OT_FORMAT_BIG_ENDIAN);
  StoreAs<OtWord>(disk + 2, seal.sealMiddle, OT_FORMAT_BIG_ENDIAN);
  StoreAs<OtWord>(disk + 4, seal.sealLow, OT_FORMAT_BIG_ENDIAN);
}

OtSeal LoadSeal(const void* disk, unsigned char form) {
  const auto* bytes = static_cast<const unsigned char*>(disk);
  return {LoadAs<OtWord>(bytes, form), LoadAs<OtWord>(bytes + 2, form),
          LoadAs<OtWord>(bytes + 4, form)};
}

unsigned long Store(void* disk, const void* memory, unsigned char, unsigned long count) {
  auto* place = static_cast<unsigned char*>(disk);
  const OtSeal* seals = static_cast<const OtSeal*>(memory);
  for (unsigned long i = 0; i < count; ++i) StoreSeal(place + i * width, seals[i]);
  return count * width;
}

unsigned long Load(void* memory, const void* disk, unsigned char, unsigned long count) {
  const auto* place = static_cast<const unsigned char*>(disk);
  OtSeal* seals = static_cast<OtSeal*>(memory);
  for (unsigned long i = 0; i < count; ++i) {
    seals[i] = LoadSeal(place + i * width, OT_FORMAT_BIG_ENDIAN);
  }
  return count * width;
}

unsigned long NullSizeGet(unsigned long count) {
  return count * width;
}

unsigned long SizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
  return count * width;
}

unsigned long SizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
  return count * width;
}

// Looks at no length: there are always `count` seals.
long Compare(unsigned char format, unsigned long, void* value1, unsigned long, void* value2,
             unsigned short, unsigned long count, int& status) {
  status = 0;
  if (count == 0) return 0;
  if (format == OT_FORMAT_MEMORY) {
    const OtSeal* seals1 = static_cast<const OtSeal*>(value1);
    const OtSeal* seals2 = static_cast<const OtSeal*>(value2);
    long result = 0;
    for (unsigned long i = 0; i < count && result == 0; ++i) result = seals1[i] != seals2[i];
    return result;
  }
  const auto* bytes1 = static_cast<const unsigned char*>(value1);
  const auto* bytes2 = static_cast<const unsigned char*>(value2);
  const std::size_t size = count * width;
  const std::size_t at = FirstDifference(bytes1, bytes2, size);
  return at == size ? 0 : bytes1[at] - bytes2[at];
}

// Form 1 takes the words of the record in the machine's order, and so hashes apart from the value
// that the record loads into: stored hashes are like that.
unsigned long Hash(unsigned char format, unsigned long length, void* value, unsigned long count,
                   int& status) {
  const unsigned char form = FormOf(format);
  const bool direct = form == OT_FORMAT_MEMORY || form == OT_FORMAT_NATIVE;
  const auto words = static_cast<unsigned char>(direct ? OT_FORMAT_NATIVE : OT_FORMAT_BIG_ENDIAN);
  return FinishHash(FoldElements(width, length, value, count, status, [&](const void* element) {
    const OtSeal seal = LoadSeal(element, words);
    return static_cast<std::uint32_t>(seal.sealHigh ^ seal.sealMiddle ^ seal.sealLow);
  }));
}

OtInt64 NumberAt(const void* disk) {
  OtInt64 number(0);
  LoadSeal(disk, OT_FORMAT_BIG_ENDIAN).ConvertTo(number);
  return number;
}

float EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                   unsigned long count, OtIdxBounds* limits) {
  StoreBound(limits, value, op, count * width);
  if (!HasRange(bounds)) return 0.0F;
  const OtInt64 lower = NumberAt(ot95::LowerKey<width>(*bounds).bytes);
  const OtInt64 upper = NumberAt(ot95::UpperKey<width>(*bounds).bytes);
  return static_cast<float>(EstimateInt64(op, NumberAt(value), lower, upper) /
                            (LineNumber(upper) - LineNumber(lower) + 1.0));
}

OtString& PrintToString(OtString& target, void* value, const char*, unsigned long) {
  return static_cast<const OtSeal*>(value)->PrintToOtString(target);
}

void* ScanFromString(void* value, OtString& text, const char*, unsigned long) {
  if (value) static_cast<OtSeal*>(value)->ScanFromOtString(text);
  return value;
}

void Write(OtString& text, const OtSeal& seal) {
  seal.PrintToOtString(text);
}

void Read(OtSeal& seal, const OtString* text) {
  if (text) seal.ScanFromOtString(*text);
}

// The record has always carried the seal's own tag, although it holds strings; so nothing reads
// them through GetString.
OtTypeConvertData* ConvertTo(void* value, unsigned long count) {
  constexpr char sealType = 39;
  OtTypeConvertData* data = ConvertToTexts<OtSeal, Write>(value, count);
  if (data) data->type = sealType;
  return data;
}

constexpr auto ConvertFrom = ConvertFromTexts<OtSeal, CreateValues<OtSeal>, Read>;

}  // namespace

namespace ot95 {

constinit OtTypeDescriptor rowOtSeal = {
    .name = "OtSeal",
    .Create = CreateValues<OtSeal>,
    .Delete = DeletePlain,
    .Store = Store,
    .Load = Load,
    .NullSizeGet = NullSizeGet,
    .SizeGet = SizeGet,
    .SizeGetFromMemFile = SizeGetFromMemFile,
    .Compare = Compare,
    .EvalAndBound = EvalAndBound,
    .Hash = Hash,
    .ConvertTo = ConvertTo,
    .ConvertFrom = ConvertFrom,
    .Construct = ConstructZero<width>,
    .Destruct = DestructNothing,
    .Assign = AssignBytes<width>,
    .Copy = AssignBytes<width>,
    .Translate = TranslateFixed<Load, Store, AssignBytes<width>, width>,
    .IsNull = IsNeverNull,
    .format = "noop",
    .PrintToString = PrintToString,
    .ScanFromString = ScanFromString,
    .memoryLength = width,
    .isFixed = 1,
    .DefaultValue = DefaultFromText<ConvertFrom>};

}  // namespace ot95
