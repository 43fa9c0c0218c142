// Keys that compare as bytes, ranges of them, and hashes: the manager's side. Which family makes
// the key of which type stands in a table beside that of the rows, whose members are part of the
// interface.
#include <algorithm>
#include <iterator>

#include "blob/sortkey.h"
#include "identity/sortkey.h"
#include "kit/sortkey.h"
#include "numbers/sortkey.h"
#include "ot95/istring.h"
#include "table/rows.h"
#include "temporal/sortkey.h"
#include "text/legacy/sortkey.h"
#include "text/rows/sortkey.h"

namespace ot95 {

namespace {

// All values of no type are equal.
int SortKeyOfNothing(const SortInput&, SortKeyWriter&) {
  return 0;
}

struct SortRow {
  const OtTypeDescriptor* row;
  SortKeyFunc key;
};

// By identifier.
constexpr SortRow kSortRows[] = {{&rowChar, SortKeyOfScalars<signed char>},
                                 {&rowShort, SortKeyOfScalars<std::int16_t>},
                                 {&rowLong, SortKeyOfScalars<std::int32_t>},
                                 {&rowDouble, SortKeyOfScalars<double>},
                                 {&rowFloat, SortKeyOfScalars<float>},
                                 {&rowOtWord, SortKeyOfScalars<std::uint16_t>},
                                 {&rowOtDWord, SortKeyOfScalars<std::uint32_t>},
                                 {&rowInt, SortKeyOfScalars<std::int32_t>},
                                 {&rowUnsigned, SortKeyOfScalars<std::uint32_t>},
                                 {&rowEnum, SortKeyOfScalars<std::int32_t>},
                                 {&rowOtByte, SortKeyOfScalars<std::uint8_t>},
                                 {&rowOtString, SortKeyOfStrings<false>},
                                 {&rowOtDate, SortKeyOfDates},
                                 {&rowOtTime, SortKeyOfTimes},
                                 {&rowBlockId, SortKeyOfScalars<std::uint32_t>},
                                 {&rowOtObjId, SortKeyOfObjIds},
                                 {&rowOtClassId, SortKeyOfClassIds},
                                 {&rowOtRef, SortKeyOfRefs},
                                 {&rowOtBlob, SortKeyOfBlobs},
                                 {&rowOtDateTime, SortKeyOfDateTimes},
                                 {&rowOtIString, SortKeyOfLegacyStrings<OtIString>},
                                 {&rowOtCaseIString, SortKeyOfLegacyStrings<OtCaseIString>},
                                 {&rowD_Date, SortKeyOfD_Dates},
                                 {&rowD_Time, SortKeyOfD_Times},
                                 {&rowD_Timestamp, SortKeyOfD_Timestamps},
                                 {&rowD_Interval, SortKeyOfScalars<float>},
                                 {&rowOtInt64, SortKeyOfScalars<OtInt64>},
                                 {&rowOtBoolean, SortKeyOfBooleans},
                                 {&rowOtNull_char, SortKeyOfNullables<OtNull_char>},
                                 {&rowOtNull_uchar, SortKeyOfNullables<OtNull_uchar>},
                                 {&rowOtNull_short, SortKeyOfNullables<OtNull_short>},
                                 {&rowOtNull_ushort, SortKeyOfNullables<OtNull_ushort>},
                                 {&rowOtNull_int, SortKeyOfNullables<OtNull_int>},
                                 {&rowOtNull_unsigned, SortKeyOfNullables<OtNull_unsigned>},
                                 {&rowOtNull_long, SortKeyOfNullables<OtNull_long>},
                                 {&rowOtNull_ulong, SortKeyOfNullables<OtNull_ulong>},
                                 {&rowOtNull_float, SortKeyOfNullables<OtNull_float>},
                                 {&rowOtNull_double, SortKeyOfNullables<OtNull_double>},
                                 {&rowOtNull_OtInt64, SortKeyOfNullables<OtNull_OtInt64>},
                                 {&rowOtSeal, SortKeyOfSeals},
                                 {&rowIllegal, SortKeyOfNothing}};
static_assert(std::size(kSortRows) == kCurrentRows);

SortKeyFunc FindKeyFunc(const OtTypeDescriptor* row, char id) {
  if (row == nullptr) return nullptr;
  if (row == &rowLegacyOtString) return SortKeyOfStrings<true>;
  const auto index = static_cast<unsigned char>(id);
  const SortRow& sortRow = kSortRows[std::min<unsigned>(index, kCurrentRows - 1)];
  return sortRow.row == row ? sortRow.key : nullptr;
}

bool IsString(const OtTypeDescriptor* row) {
  return row == &rowOtString || row == &rowLegacyOtString;
}
bool IsLegacyString(const OtTypeDescriptor* row) {
  return row == &rowOtIString || row == &rowOtCaseIString;
}

// One end of a range, from the key of the operand or its beginning.
class RangeEnd {
 public:
  RangeEnd(void* bytes, unsigned long room)
      : bytes_(static_cast<unsigned char*>(bytes)), room_(bytes != nullptr ? room : 0) {}

  // What has been written of `size` bytes: more than there is room for is cut.
  void Take(std::uint64_t size) {
    isCut_ = size > room_;
    length_ = static_cast<unsigned long>(std::min<std::uint64_t>(size, room_));
  }
  bool IsCut() const { return isCut_; }
  // To the first bytes above all that begin with these; to no end where there are none.
  void StepAbove() {
    while (length_ > 0 && bytes_[length_ - 1] == 0xff) --length_;
    if (length_ > 0) ++bytes_[length_ - 1];
  }
  unsigned long Length() const { return length_; }
  SortKeyWriter Writer() const { return SortKeyWriter(bytes_, room_); }

 private:
  unsigned char* bytes_;
  unsigned long room_;
  unsigned long length_ = 0;
  bool isCut_ = false;
};

// How the ends of a range are made for one operand.
struct RangeMaker {
  const OtTypeDescriptor* row;
  SortKeyFunc keyFunc;
  SortInput operand;
  unsigned short relation;
  unsigned short keyOp;

  bool IsEquality() const { return relation == OT_OP_EQUAL; }
  bool IsPartOfArray() const { return IsString(row) && operand.count > 1; }

  int PutEnd(bool upper, SortKeyWriter& out, TextRange::Kind& kind) const {
    if (IsString(row)) {
      const auto put = row == &rowOtString ? SortRangeOfStrings<false> : SortRangeOfStrings<true>;
      return put(operand, keyOp, IsEquality(), upper, out, kind);
    }
    const int status = keyFunc(operand, out);
    kind = status == 0 ? TextRange::kWhole
           // Legacy patterns tell matches from others, and nothing about where those stand.
           : status == kOpenKey && !(IsLegacyString(row) && !IsEquality()) ? TextRange::kPrefix
                                                                           : TextRange::kNothing;
    return status == kOpenKey || status == kUnorderedKey ? 0 : status;
  }

  int Make(bool upper, RangeEnd& end) const {
    SortKeyWriter out = end.Writer();
    TextRange::Kind kind = TextRange::kNothing;
    if (const int status = PutEnd(upper, out, kind)) return status;
    if (kind == TextRange::kNothing) return 0;
    end.Take(out.Size());
    const bool begins = kind == TextRange::kPrefix || IsPartOfArray();
    const bool above = upper ? begins || (kind == TextRange::kWhole && relation != OT_OP_LESS)
                             : kind == TextRange::kWhole && !begins && relation == OT_OP_GREATER;
    // A cut end is the beginning of what it stood for: good as a lower one as it is.
    if (end.IsCut() ? upper : above) end.StepAbove();
    return 0;
  }
};

}  // namespace

}  // namespace ot95

unsigned OtTypeMgr::SortKeyVersion() {
  constexpr unsigned version = 1;
  return version;
}

// A string in memory is what most keys are made of, and little work.
unsigned long OtTypeMgr::SortKey(char id, void* target, unsigned long room, const void* value,
                                 unsigned long length, unsigned short cmpOp, unsigned long count,
                                 unsigned char format, int& status) const {
  constexpr int text = 11;
  const bool isString = id == text && factory_[text] == &ot95::rowOtString;
  const bool isOne = count == 1 && ot95::FormOf(format) == OT_FORMAT_MEMORY;
  if (isString && isOne && value != nullptr && target != nullptr) {
    return ot95::SortKeyOfString(*static_cast<const OtString*>(value), cmpOp, target, room, status);
  }
  return ot95::MakeSortKey(
      ot95::FindKeyFunc(Row(id), id),
      {static_cast<const unsigned char*>(value), length, count, cmpOp, format, false}, target, room,
      status);
}

int OtTypeMgr::SortRange(char id, OtSortRange& range, unsigned short op, const void* value,
                         unsigned long length, unsigned short keyOp, unsigned long count,
                         unsigned char format) const {
  range.lowerLength = range.upperLength = 0;
  const OtTypeDescriptor* row = Row(id);
  const ot95::SortKeyFunc keyFunc = ot95::FindKeyFunc(row, id);
  if (keyFunc == nullptr) return OT_ERR_BAD_ARGUMENT;
  constexpr unsigned relations = OT_OP_EQUAL | OT_OP_LESS | OT_OP_GREATER;
  constexpr unsigned options = 0x7ff0;
  const ot95::RangeMaker maker{row,
                               keyFunc,
                               {static_cast<const unsigned char*>(value), length, count,
                                static_cast<unsigned short>(op & options), format, true},
                               static_cast<unsigned short>(op & relations),
                               keyOp};
  int status = 0;
  if ((op & OT_OP_LESS) == 0) {
    ot95::RangeEnd end(range.lower, range.lowerRoom);
    status = maker.Make(false, end);
    range.lowerLength = end.Length();
  }
  if ((op & OT_OP_GREATER) == 0 && status == 0) {
    ot95::RangeEnd end(range.upper, range.upperRoom);
    status = maker.Make(true, end);
    range.upperLength = end.Length();
  }
  if (status != 0) range.lowerLength = range.upperLength = 0;
  return status;
}

std::uint64_t OtTypeMgr::Hash64(char id, const void* value, unsigned long length,
                                unsigned short cmpOp, unsigned long count, unsigned char format,
                                std::uint64_t seed, int& status) const {
  const ot95::SortKeyFunc keyFunc = ot95::FindKeyFunc(Row(id), id);
  status = OT_ERR_BAD_ARGUMENT;
  if (keyFunc == nullptr) return 0;
  ot95::Hash64State hash(seed);
  ot95::SortKeyWriter out(hash);
  const ot95::SortInput input{
      static_cast<const unsigned char*>(value), length, count, cmpOp, format, false};
  status = keyFunc(input, out);
  if (status != 0 && status != ot95::kUnorderedKey) return 0;
  if (status == ot95::kUnorderedKey) status = OT_ERR_NOT_SUPPORTED;
  return out.Finish();
}
