#ifndef OT95_SRC_TEMPORAL_ODMGSECONDS_H
#define OT95_SRC_TEMPORAL_ODMGSECONDS_H

// What the ODMG types share: splitting a float of seconds into the fields of a clock. The order of
// float and double steps is part of stored values: d_Time(10, 0, 0.29f) has 28 hundredths.

#include "ot95/odmg.h"
#include "temporal/cut.h"

namespace ot95 {

constexpr int secondsPerDay = 86400;

/// Hundredths in the fraction of `seconds`: the fraction is a float, its hundredfold a double.
inline OtLong HundredthsOf(float seconds) {
  const float fraction = seconds - static_cast<float>(TruncateToLong(seconds));
  return TruncateToLong(fraction * 100.0);
}

/// Seconds and hundredths of a time as one float.
inline float SecondsOf(const d_Time& time) {
  return static_cast<float>(time.second + time.hundredths / 100.0);
}

/// A float of seconds as a clock shows it.
struct ClockFields {
  OtLong hour;    ///< Of the day.
  OtLong minute;  ///< Of the hour.
  float second;   ///< Of the minute, with its fraction.

  explicit ClockFields(float seconds) {
    const OtLong whole = TruncateToLong(seconds);
    hour = whole % secondsPerDay / 3600;
    minute = whole % 3600 / 60;
    second = seconds - static_cast<float>(whole) + static_cast<float>(whole % 60);
  }
};

/// The day count of d_Date, for the rows.
struct DayCount {
  static long Of(const d_Date& date) { return date.getAbsDate(); }
  static void Set(d_Date& date, long count) { date.setAbsDate(count); }
};

}  // namespace ot95

#endif
