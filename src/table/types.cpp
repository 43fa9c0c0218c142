// The two tables of rows, and the row of values that have no type.
#include <iterator>
#include "ot95/text.h"

#include "kit/walks.h"
#include "table/rows.h"

namespace ot95 {

namespace {

// Any member that does nothing: it answers 0, and leaves a status as it was.
template <class Function>
struct Idle;

template <class Result, class... Arguments>
struct Idle<Result (*)(Arguments...)> {
  static Result Answer(Arguments...) { return Result(); }
};

template <class Function>
constexpr Function idle = &Idle<Function>::Answer;

OtString& PrintNothing(OtString& target, void*, const char*, unsigned long) {
  return target;
}

}  // namespace

constinit OtTypeDescriptor rowIllegal = {.name = "illegal",
                                         .Create = idle<OtCreateFunc>,
                                         .Delete = idle<OtDeleteFunc>,
                                         .Store = idle<OtStoreFunc>,
                                         .Load = idle<OtLoadFunc>,
                                         .NullSizeGet = idle<OtNullSizeFunc>,
                                         .SizeGet = idle<OtSizeFunc>,
                                         .SizeGetFromMemFile = idle<OtFileSizeFunc>,
                                         .Compare = idle<OtCompareFunc>,
                                         .EvalAndBound = idle<OtEvalFunc>,
                                         .Hash = idle<OtHashFunc>,
                                         .ConvertTo = idle<OtConvertToFunc>,
                                         .ConvertFrom = idle<OtConvertFromFunc>,
                                         .Construct = idle<OtConstructFunc>,
                                         .Destruct = idle<OtDestructFunc>,
                                         .Assign = idle<OtAssignFunc>,
                                         .Copy = idle<OtAssignFunc>,
                                         .Translate = idle<OtTranslateFunc>,
                                         .IsNull = idle<OtIsNullFunc>,
                                         .SetNull = nullptr,
                                         .format = "illegal",
                                         .PrintToString = PrintNothing,
                                         .ScanFromString = idle<OtScanFunc>,
                                         .memoryLength = 0,
                                         .isFixed = 1,
                                         .DefaultValue = idle<OtDefaultFunc>};

}  // namespace ot95

// Identifiers 0 to 27 are the same in both tables but for the string.
#define OT95_FIRST_ROWS(string)                                                               \
  &ot95::rowChar, &ot95::rowShort, &ot95::rowLong, &ot95::rowDouble, &ot95::rowFloat,         \
      &ot95::rowOtWord, &ot95::rowOtDWord, &ot95::rowInt, &ot95::rowUnsigned, &ot95::rowEnum, \
      &ot95::rowOtByte, &string, &ot95::rowOtDate, &ot95::rowOtTime, &ot95::rowBlockId,       \
      &ot95::rowOtObjId, &ot95::rowOtClassId, &ot95::rowOtRef, &ot95::rowOtBlob,              \
      &ot95::rowOtDateTime, &ot95::rowOtIString, &ot95::rowOtCaseIString, &ot95::rowD_Date,   \
      &ot95::rowD_Time, &ot95::rowD_Timestamp, &ot95::rowD_Interval, &ot95::rowOtInt64,       \
      &ot95::rowOtBoolean

constinit OtTypeDescriptor* const CurrentFactory[] = {OT95_FIRST_ROWS(ot95::rowOtString),
                                                      &ot95::rowOtNull_char,
                                                      &ot95::rowOtNull_uchar,
                                                      &ot95::rowOtNull_short,
                                                      &ot95::rowOtNull_ushort,
                                                      &ot95::rowOtNull_int,
                                                      &ot95::rowOtNull_unsigned,
                                                      &ot95::rowOtNull_long,
                                                      &ot95::rowOtNull_ulong,
                                                      &ot95::rowOtNull_float,
                                                      &ot95::rowOtNull_double,
                                                      &ot95::rowOtNull_OtInt64,
                                                      &ot95::rowOtSeal,
                                                      &ot95::rowIllegal,
                                                      nullptr};

constinit OtTypeDescriptor* const LegacyFactory[] = {OT95_FIRST_ROWS(ot95::rowLegacyOtString),
                                                     nullptr};

#undef OT95_FIRST_ROWS

static_assert(std::size(CurrentFactory) == ot95::kCurrentRows + 1);
static_assert(std::size(LegacyFactory) == ot95::kLegacyRows + 1);
