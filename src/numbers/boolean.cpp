// Boolean values with a null, and their row.

#include "ot95/boolean.h"

#include <string_view>

#include "kit/estimate.h"
#include "kit/hash.h"
#include "kit/nulltext.h"
#include "kit/walks.h"
#include "numbers/convert.h"
#include "numbers/rows.h"
#include "ot95/store.h"
#include "ot95/text.h"

namespace ot95 {

namespace {

constexpr unsigned char trueByte = 1;

unsigned long Move(void* target, const void* source, unsigned char format, unsigned long count) {
  return CharStore(target, source, FormOf(format), count);
}

unsigned long NullSize(unsigned long count) {
  return count;
}

unsigned long Size(const void*, unsigned char, unsigned char, unsigned long count) {
  return count;
}

unsigned long SizeFromMemFile(MemFile*, unsigned char, unsigned long count) {
  return count;
}

long CompareBytes(const unsigned char* byte1, const unsigned char* byte2) {
  OtBoolean left(0);
  OtBoolean right(0);
  left.value = *byte1;
  right.value = *byte2;
  if (left.IsNullValue() && right.IsNullValue()) return 0;
  return left < right ? -1 : left > right ? 1 : 0;
}

/// Three values there are, and each is as likely as the others.
float EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                   unsigned long count, OtIdxBounds* limits) {
  StoreBound(limits, value, op, count);
  return HasRange(bounds) ? static_cast<float>(1.0 / 3.0) : 0.0F;
}

void Write(OtString& text, const OtBoolean& value) {
  if (value.IsNullValue()) {
    text.SetNullValue();
  } else {
    text = value.value == trueByte ? "1" : "0";
  }
}

void Read(OtBoolean& value, OtString* text) {
  if (text) {
    value = (*text)[0].GetValue() == '1';
  } else {
    value.SetNullValue();
  }
}

int IsNull(void* value) {
  return static_cast<const OtBoolean*>(value)->IsNullValue();
}

int SetNull(void* value) {
  return static_cast<OtBoolean*>(value)->SetNullValue();
}

/// Any byte but 1 and null prints as false, though it equals true.
OtString& Print(OtString& target, void* value, const char* /*format*/, unsigned long /*count*/) {
  const auto& boolean = *static_cast<const OtBoolean*>(value);
  if (boolean.IsNullValue()) return target = OtTypeMgr::GetNullPrintString();
  return target = boolean.value == trueByte ? "TRUE" : "FALSE";
}

bool MeansTrue(std::string_view text) {
  return text == "T" || text == "t" || text == "TRUE" || text == "true" || text == "1";
}

void* Scan(void* value, OtString& text, const char* /*format*/, unsigned long /*count*/) {
  if (!value) return nullptr;
  const NarrowText narrow(text);
  auto& boolean = *static_cast<OtBoolean*>(value);
  if (BeginsWithNullText(narrow)) {
    boolean.SetNullValue();
  } else {
    boolean = MeansTrue({narrow.Bytes(), narrow.Length()});
  }
  return value;
}

constexpr OtCreateFunc create = CreateCountedZero<OtBoolean>;
constexpr OtConvertFromFunc convertFrom = ConvertFromTexts<OtBoolean, create, Read>;

}  // namespace

constinit OtTypeDescriptor rowOtBoolean = {
    .name = "OtBoolean",
    .Create = create,
    .Delete = DeleteCounted<OtBoolean>,
    .Store = Move,
    .Load = Move,
    .NullSizeGet = NullSize,
    .SizeGet = Size,
    .SizeGetFromMemFile = SizeFromMemFile,
    .Compare = BooleanCompare,
    .EvalAndBound = EvalAndBound,
    .Hash = ScalarHash<signed char>,
    .ConvertTo = ConvertToTexts<OtBoolean, Write>,
    .ConvertFrom = convertFrom,
    .Construct = ConstructZero<1>,
    .Destruct = DestructNothing,
    .Assign = AssignBytes<1>,
    .Copy = AssignBytes<1>,
    .Translate = TranslateFixed<Move, Move, AssignBytes<1>, 1>,
    .IsNull = IsNull,
    .SetNull = SetNull,
    .format = "noop",
    .PrintToString = Print,
    .ScanFromString = Scan,
    .memoryLength = 1,
    .isFixed = 1,
    .DefaultValue = DefaultOrNull<OtBoolean, create, SetNull, convertFrom>,
};

}  // namespace ot95

long BooleanCompare(unsigned char /*format*/, unsigned long length1, void* value1,
                    unsigned long length2, void* value2, unsigned short /*cmpOp*/,
                    unsigned long count, int& status) {
  return ot95::WalkPairs(1, length1, value1, length2, value2, count, status, ot95::CompareBytes);
}
