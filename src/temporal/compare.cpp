// Comparers of the rows of both calendars. In memory form the classes compare; stored values
// compare field by field where they stand, and may end within an element.
#include "temporal/row.h"

namespace ot95 {
namespace {

constexpr unsigned short noWildcards = 0x10;

// Two stored elements, of which `available` bytes can be used on both sides.
struct StoredPair {
  const unsigned char* first;
  const unsigned char* second;
  std::uint64_t available;
  bool ended = false;  // a field was asked for that doesn't start before the end

  bool Has(std::uint64_t offset) {
    ended |= offset >= available;
    return offset < available;
  }
  signed char First(std::size_t offset) const { return static_cast<signed char>(first[offset]); }
  signed char Second(std::size_t offset) const { return static_cast<signed char>(second[offset]); }
};

// Signed bytes from `from` to before `to`; the first that differ decide.
long CompareBytes(StoredPair& pair, std::size_t from, std::size_t to) {
  for (std::size_t at = from; at < to && pair.Has(at); ++at) {
    if (pair.first[at] != pair.second[at]) return ThreeWay(pair.First(at), pair.Second(at));
  }
  return 0;
}

struct YearOrder {
  long result;
  bool secondIsWildcard;
};

YearOrder CompareYears(const StoredPair& pair, unsigned char form) {
  const auto first = LoadAs<std::int16_t>(pair.first, form);
  const auto second = LoadAs<std::int16_t>(pair.second, form);
  return {ThreeWay(first, second), second == -1};
}

// Only the second date can hold wildcards here, because it is the one from the query.
long CompareDates(StoredPair& pair, unsigned char form, unsigned short cmpOp) {
  const bool wildcards = (cmpOp & noWildcards) == 0;
  const YearOrder years = CompareYears(pair, form);
  if (years.result != 0 && !(wildcards && years.secondIsWildcard)) return years.result;
  if (!pair.Has(2)) return 0;
  const bool anyMonth = wildcards && pair.Second(2) == -1;
  if (!anyMonth && pair.first[2] != pair.second[2]) return ThreeWay(pair.First(2), pair.Second(2));
  if (!pair.Has(3)) return 0;
  const bool anyDay = wildcards && pair.Second(3) == -1;
  return anyDay ? 0 : ThreeWay(pair.First(3), pair.Second(3));
}

// The walk over stored elements. `compare(pair)` answers for one pair, and may find its end.
template <class T, class Compare>
long CompareStored(unsigned long length1, void* value1, unsigned long length2, void* value2,
                   unsigned long count, int& status, Compare&& compare) {
  constexpr std::size_t width = storedForm<T>.width;
  const std::uint64_t end =
      std::min(Side(value1, length1, count, width).end, Side(value2, length2, count, width).end);
  std::uint64_t offset = 0;
  bool ended = false;
  const long result =
      WalkPairs(width, length1, value1, length2, value2, count, status,
                [&](const unsigned char* first, const unsigned char* second) {
                  StoredPair pair{first, second, std::min<std::uint64_t>(end - offset, width)};
                  const long order = compare(pair);
                  offset += width;
                  ended = pair.ended;
                  return order;
                });
  if (ended) status = OT_ERR_END_OF_DATA;
  return result;
}

// OtDate and d_Date differ in memory only.
template <class Date>
long CompareDateRow(unsigned char format, unsigned long length1, void* value1,
                    unsigned long length2, void* value2, unsigned short cmpOp, unsigned long count,
                    int& status) {
  if (IsMemoryForm(format)) {
    return CompareInMemory<Date>(length1, value1, length2, value2, count, status);
  }
  return CompareStored<Date>(
      length1, value1, length2, value2, count, status,
      [&](StoredPair& pair) { return CompareDates(pair, FormOf(format), cmpOp); });
}

// OtTime and d_Time: stored, they are bytes in order.
template <class Time>
long CompareTimeRow(unsigned char format, unsigned long length1, void* value1,
                    unsigned long length2, void* value2, unsigned long count, int& status) {
  if (IsMemoryForm(format)) {
    return CompareInMemory<Time>(length1, value1, length2, value2, count, status);
  }
  return CompareStored<Time>(length1, value1, length2, value2, count, status, [](StoredPair& pair) {
    return CompareBytes(pair, 0, storedForm<Time>.width);
  });
}

}  // namespace
}  // namespace ot95

using namespace ot95;

long DateCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                 void* value2, unsigned short cmpOp, unsigned long count, int& status) {
  return CompareDateRow<OtDate>(format, length1, value1, length2, value2, cmpOp, count, status);
}

long d_DateCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                   void* value2, unsigned short cmpOp, unsigned long count, int& status) {
  return CompareDateRow<d_Date>(format, length1, value1, length2, value2, cmpOp, count, status);
}

long TimeCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                 void* value2, unsigned short, unsigned long count, int& status) {
  return CompareTimeRow<OtTime>(format, length1, value1, length2, value2, count, status);
}

long d_TimeCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                   void* value2, unsigned short, unsigned long count, int& status) {
  return CompareTimeRow<d_Time>(format, length1, value1, length2, value2, count, status);
}

// The whole format byte is asked here: with a flag in its high bits, the form is a stored one. And
// stored date-times know no wildcards.
long DaTimeCompare(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                   void* value2, unsigned short, unsigned long count, int& status) {
  if (format == OT_FORMAT_MEMORY) {
    return CompareInMemory<OtDateTime>(length1, value1, length2, value2, count, status);
  }
  return CompareStored<OtDateTime>(length1, value1, length2, value2, count, status,
                                   [&](StoredPair& pair) {
                                     const long years = CompareYears(pair, FormOf(format)).result;
                                     return years != 0 ? years : CompareBytes(pair, 2, 7);
                                   });
}

long d_TimestampCompare(unsigned char format, unsigned long length1, void* value1,
                        unsigned long length2, void* value2, unsigned short cmpOp,
                        unsigned long count, int& status) {
  if (IsMemoryForm(format)) {
    return CompareInMemory<d_Timestamp>(length1, value1, length2, value2, count, status);
  }
  return CompareStored<d_Timestamp>(
      length1, value1, length2, value2, count, status, [&](StoredPair& pair) {
        const long days = CompareDates(pair, FormOf(format), cmpOp);
        return days != 0 || pair.ended ? days : CompareBytes(pair, 4, 10);
      });
}
