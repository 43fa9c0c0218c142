// Sort keys of both calendars.
#include "temporal/sortkey.h"

#include "temporal/odmgseconds.h"
#include "temporal/row.h"

namespace ot95 {

namespace {

constexpr unsigned short noWildcards = 0x10;

// Signed bytes from `from` to before `to`.
void PutFields(SortKeyWriter& out, const unsigned char* bytes, std::size_t from, std::size_t to) {
  for (std::size_t at = from; at < to; ++at) out.Put(bytes[at] ^ 0x80U);
}

// Year, month and day, in whichever form the year is. `fieldsCanBeOpen` where -1 means any.
int PutDate(const SortInput& input, SortKeyWriter& out, const unsigned char* bytes,
            bool fieldsCanBeOpen) {
  const auto year = LoadAs<std::int16_t>(bytes, FormOf(input.format));
  const int open = input.isOperand ? int{kOpenKey} : int{OT_ERR_NOT_SUPPORTED};
  if (fieldsCanBeOpen && year == -1) return open;
  out.PutSigned(year);
  for (std::size_t at = 2; at < 4; ++at) {
    if (fieldsCanBeOpen && bytes[at] == 0xff) return open;
    PutFields(out, bytes, at, at + 1);
  }
  return 0;
}

bool AllowsWildcards(const SortInput& input) {
  return (input.cmpOp & noWildcards) == 0;
}

// The zone is taken away, and what lies before midnight wraps to behind it, as in comparison. That
// drops differences of less than a second, but finds them between other values: with hundredths
// there is no order.
int PutWallTime(SortKeyWriter& out, const d_Time& time) {
  if (time.hundredths != 0) return OT_ERR_NOT_SUPPORTED;
  out.PutNumber(static_cast<std::uint16_t>(time.hour - time.tzHour));
  out.PutNumber(static_cast<std::uint16_t>(time.minute - time.tzMinute));
  out.PutSigned(time.second);
  return 0;
}

void PutDayCount(SortKeyWriter& out, const d_Date& date) {
  out.PutSigned(static_cast<std::int32_t>(DayCount::Of(date)));
}

// `put(bytes)` writes one element in the given form.
template <class T, class Put>
int PutEach(const SortInput& input, bool inMemory, Put&& put) {
  return PutElements(
      input, ElementWidth<T>(inMemory),
      [&](const unsigned char* element, std::uint64_t) -> int { return put(element); });
}

}  // namespace

int SortKeyOfDates(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsMemoryForm(input.format);
  return PutEach<OtDate>(input, inMemory, [&](const unsigned char* bytes) {
    return PutDate(input, out, bytes, inMemory || AllowsWildcards(input));
  });
}

int SortKeyOfTimes(const SortInput& input, SortKeyWriter& out) {
  return PutEach<OtTime>(input, IsMemoryForm(input.format), [&](const unsigned char* bytes) {
    PutFields(out, bytes, 0, 3);
    return 0;
  });
}

int SortKeyOfDateTimes(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = input.format == OT_FORMAT_MEMORY;
  return PutEach<OtDateTime>(input, inMemory, [&](const unsigned char* bytes) {
    const int status = PutDate(input, out, bytes, inMemory);
    if (status == 0) PutFields(out, bytes, 4, 7);
    return status;
  });
}

int SortKeyOfD_Dates(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsMemoryForm(input.format);
  return PutEach<d_Date>(input, inMemory, [&](const unsigned char* bytes) {
    if (!inMemory) return PutDate(input, out, bytes, AllowsWildcards(input));
    PutDayCount(out, ValueAt<d_Date>(bytes));
    return 0;
  });
}

int SortKeyOfD_Times(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsMemoryForm(input.format);
  return PutEach<d_Time>(input, inMemory, [&](const unsigned char* bytes) {
    if (inMemory) return PutWallTime(out, ValueAt<d_Time>(bytes));
    PutFields(out, bytes, 0, 6);
    return 0;
  });
}

int SortKeyOfD_Timestamps(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsMemoryForm(input.format);
  return PutEach<d_Timestamp>(input, inMemory, [&](const unsigned char* bytes) {
    if (inMemory) {
      PutDayCount(out, ValueAt<d_Date>(bytes));
      return PutWallTime(out, ValueAt<d_Time>(bytes + 4));
    }
    const int status = PutDate(input, out, bytes, AllowsWildcards(input));
    if (status == 0) PutFields(out, bytes, 4, 10);
    return status;
  });
}

}  // namespace ot95
