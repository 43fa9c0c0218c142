// Estimates of both calendars. A stored value becomes a number on a line; the share of an index's
// range is a ratio of distances there. Only dates have wildcards, which widen the scan limits.
#include "temporal/estimate.h"

#include <algorithm>

#include "kit/estimate.h"
#include "temporal/row.h"

namespace ot95 {
namespace {

int Field(const unsigned char* bytes, int at) {
  return static_cast<signed char>(bytes[at]);
}

int Year(const unsigned char* bytes, unsigned char form) {
  return LoadAs<std::int16_t>(bytes, form);
}

struct Range {
  double lower = 0;
  double upper = 0;
};

/// The numbers of an index's keys; zeros where its range isn't known.
template <class T, class Number>
Range RangeOf(const OtIdxBounds* bounds, Number number) {
  constexpr std::size_t width = storedForm<T>.width;
  if (!HasRange(bounds)) return {};
  return {static_cast<double>(number(LowerKey<width>(*bounds).bytes)),
          static_cast<double>(number(UpperKey<width>(*bounds).bytes))};
}

float Share(unsigned short op, double first, double last, const Range& range) {
  return static_cast<float>(EstimateRange(op, first, last, range.lower, range.upper, 1.0) /
                            (range.upper - range.lower + 1.0));
}

/// The whole member of a type whose values are points on the line.
template <class T, class Number>
float PointShare(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned long count,
                 OtIdxBounds* limits, Number number) {
  op &= operatorMask;
  const auto v = static_cast<double>(number(static_cast<const unsigned char*>(value)));
  const Range range = RangeOf<T>(bounds, number);
  StoreBound(limits, value, op, count * storedForm<T>.width);
  return Share(op, v, v, range);
}

/// The ODMG types count apart from EstimateRange: outside the range nothing is cut, but a sum below
/// zero.
float OdmgShare(unsigned short op, double number, const Range& range) {
  const double all = range.upper - range.lower + 1;
  const double k = number - range.lower + 1;
  double sum = op & OT_OP_LESS ? k - 1 : 0;
  if (op & OT_OP_GREATER) sum += all - k;
  if (op & OT_OP_EQUAL) sum += 1;
  return static_cast<float>(std::max(sum, 0.0) / all);
}

template <class T, class Number>
float OdmgPointShare(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned long count,
                     OtIdxBounds* limits, Number number) {
  op &= operatorMask;
  StoreBound(limits, value, op, count * storedForm<T>.width);
  return OdmgShare(op, static_cast<double>(number(static_cast<const unsigned char*>(value))),
                   RangeOf<T>(bounds, number));
}

// ---------------------------------------------------------------------------------------------
// OtDate

/// A scan limit as a date to be widened. It takes the patches of the fields that it holds.
class DateLimit {
 public:
  DateLimit() = default;
  DateLimit(void* key, unsigned char length, unsigned char form)
      : bytes_(static_cast<unsigned char*>(key)), form_(form) {
    if (key != nullptr) length_ = length == 0 ? storedForm<OtDate>.width : length;
  }
  void SetYear(int year) {
    if (Holds(1)) StoreAs<std::int16_t>(bytes_, static_cast<std::int16_t>(year), form_);
  }
  void SetField(std::size_t at, int field) {
    if (Holds(at)) bytes_[at] = static_cast<unsigned char>(field);
  }
  bool HasWildcard(std::size_t at) const { return Holds(at) && bytes_[at] == 0xff; }

 private:
  bool Holds(std::size_t at) const { return at < length_; }

  unsigned char* bytes_ = nullptr;
  std::size_t length_ = 0;
  unsigned char form_ = 0;
};

/// Both of them.
class DateLimits {
 public:
  DateLimits(const OtIdxBounds* limits, unsigned char form) {
    if (limits == nullptr) return;
    lower_ = DateLimit(limits->lowerKey, limits->lowerKeyLength, form);
    upper_ = DateLimit(limits->upperKey, limits->upperKeyLength, form);
  }
  void SetYears(int low, int high) {
    lower_.SetYear(low);
    upper_.SetYear(high);
  }
  void SetField(std::size_t at, int low, int high) {
    lower_.SetField(at, low);
    upper_.SetField(at, high);
  }
  /// Whether the byte of either key is a wildcard.
  bool HasWildcard(std::size_t at) const {
    return lower_.HasWildcard(at) || upper_.HasWildcard(at);
  }
  void DropLower() { lower_ = DateLimit(); }
  void DropUpper() { upper_ = DateLimit(); }

 private:
  DateLimit lower_;
  DateLimit upper_;
};

int DaysInMonth(const OtDate& date) {
  const OtDate first(date.year, date.month, 1);
  return static_cast<int>(first.daynxtmonth());
}

/// The first and the last date that a date with open fields stands for. No date comes before day
/// number 0.
struct DateSpan {
  OtDate low;
  OtDate high;

  DateSpan(const OtDate& date, unsigned short& op, DateLimits& limits) : low(date), high(date) {
    const OtDate base(0);
    if (date.year == -1) {
      low.year = base.year;
      high.year = 32766;
      limits.SetYears(low.year, high.year);
      op |= OT_OP_WILDCARD;
    }
    const bool firstYear = low.year == base.year;
    if (date.month == -1) {
      low.month = firstYear ? base.month : static_cast<signed char>(1);
      high.month = 12;
      limits.SetField(2, low.month, high.month);
      op |= OT_OP_WILDCARD;
    } else if (firstYear) {
      low.month = std::max(low.month, base.month);
    }
    const bool firstMonth = firstYear && low.month == base.month;
    if (date.day == -1) {
      low.day = firstMonth ? base.day : static_cast<signed char>(1);
      high.day = static_cast<signed char>(DaysInMonth(high));
      limits.SetField(3, low.day, high.day);
      op |= OT_OP_WILDCARD;
    } else if (firstMonth) {
      low.day = std::max(low.day, base.day);
    }
  }
};

OtDate DateAt(const unsigned char* bytes, unsigned char form) {
  return OtDate(Year(bytes, form), Field(bytes, 2), Field(bytes, 3));
}

/// Year, month and day as ODMG estimates count them: in years of 372 days.
std::int64_t OdmgDays(int year, int month, int day) {
  return (std::int64_t{year + 40000} * 12 + month) * 31 + day;
}

}  // namespace

float EvalOtDate(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits) {
  const unsigned char form = FormOf(format);
  op &= operatorMask;
  const Range range = RangeOf<OtDate>(
      bounds, [form](const unsigned char* key) { return DateAt(key, form).dayabs(); });
  StoreBound(limits, value, op, count * 4);
  DateLimits patches(limits, form);
  const DateSpan span(DateAt(static_cast<const unsigned char*>(value), form), op, patches);
  return Share(op, static_cast<double>(span.low.dayabs()), static_cast<double>(span.high.dayabs()),
               range);
}

float EvalOtTime(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                 unsigned long count, OtIdxBounds* limits) {
  return PointShare<OtTime>(bounds, op, value, count, limits, [](const unsigned char* key) {
    return (Field(key, 0) * 60 + Field(key, 1)) * 60 + Field(key, 2);
  });
}

// Seconds play no part.
float EvalOtDateTime(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                     unsigned long count, OtIdxBounds* limits) {
  const unsigned char form = FormOf(format);
  return PointShare<OtDateTime>(bounds, op, value, count, limits, [form](const unsigned char* key) {
    const std::int64_t days =
        (std::int64_t{Year(key, form)} * 12 + Field(key, 2)) * 31 + Field(key, 3);
    return (days * 24 + Field(key, 4)) * 60 + Field(key, 5);
  });
}

// Wildcards widen only the keys that this very call records.
float EvalD_Date(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits) {
  const unsigned char form = FormOf(format);
  op &= operatorMask;
  const Range range = RangeOf<d_Date>(bounds, [form](const unsigned char* key) {
    return OdmgDays(Year(key, form), Field(key, 2), Field(key, 3));
  });
  const bool hadLower = limits != nullptr && limits->lowerKey != nullptr;
  const bool hadUpper = limits != nullptr && limits->upperKey != nullptr;
  StoreBound(limits, value, op, count * 4);
  DateLimits recorded(limits, form);
  if (hadLower) recorded.DropLower();
  if (hadUpper) recorded.DropUpper();

  OtDate date = DateAt(static_cast<const unsigned char*>(value), form);
  const bool anyYear = date.year == -1;
  if (anyYear) recorded.SetYears(-32768, 32767);
  if (recorded.HasWildcard(2)) {
    recorded.SetField(2, -128, 127);
    date.month = 12;
  }
  if (recorded.HasWildcard(3)) {
    recorded.SetField(3, -128, 127);
    date.day = 31;
  }
  // Keys in falling order are no range to measure on, but all that there is.
  if (anyYear || range.upper < range.lower) return 1.0F;
  return OdmgShare(op, static_cast<double>(OdmgDays(date.year, date.month, date.day)), range);
}

// The zone stays in the number.
float EvalD_Time(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                 unsigned long count, OtIdxBounds* limits) {
  return OdmgPointShare<d_Time>(bounds, op, value, count, limits, [](const unsigned char* key) {
    return Field(key, 4) + (Field(key, 3) + Field(key, 2) * 60) * 60;
  });
}

// An hour counts as much as a day: keys have always been estimated so.
float EvalD_Timestamp(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                      unsigned long count, OtIdxBounds* limits) {
  const unsigned char form = FormOf(format);
  return OdmgPointShare<d_Timestamp>(
      bounds, op, value, count, limits, [form](const unsigned char* key) {
        const std::int64_t days = OdmgDays(Year(key, form), Field(key, 2), Field(key, 3));
        return ((days + Field(key, 6)) * 60 + Field(key, 7)) * 60;
      });
}

}  // namespace ot95
