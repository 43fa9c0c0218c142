#ifndef OT95_TESTS_TEMPORAL_CASES_H
#define OT95_TESTS_TEMPORAL_CASES_H

// Short forms of temporal values for the tables of tests, and a clock that stands still.

#include <ostream>
#include <sstream>
#include <string>

#include "ot95/clock.h"
#include "ot95/odmg.h"
#include "ot95/temporal.h"
#include "ot95/text.h"

namespace cases {

inline std::string Show(const OtDate& d) {
  std::ostringstream out;
  out << d.year << '/' << +d.month << '/' << +d.day;
  return out.str();
}
inline std::string Show(const OtTime& t) {
  std::ostringstream out;
  out << +t.hour << ':' << +t.minute << ':' << +t.second;
  return out.str();
}
inline std::string Show(const OtDateTime& value) {
  return Show(value.date) + ' ' + Show(value.time);
}
inline std::string Show(const d_Date& d) {
  return Show(OtDate(d.year, d.month, d.day));
}
/// As stored, zone first.
inline std::string Show(const d_Time& t) {
  std::ostringstream out;
  out << +t.tzHour << ',' << +t.tzMinute << ' ' << Show(OtTime(t.hour, t.minute, t.second)) << '.'
      << +t.hundredths;
  return out.str();
}
inline std::string Show(const d_Timestamp& stamp) {
  return Show(stamp.date) + ' ' + Show(stamp.time);
}
inline std::string Show(const d_Interval& interval) {
  std::ostringstream out;
  out << interval.seconds;
  return out.str();
}

inline d_Timestamp Stamp(const d_Date& date, const d_Time& time) {
  d_Timestamp stamp;
  stamp.date = date;
  stamp.time = time;
  return stamp;
}

/// While it lives, the clock stands at `milliseconds` since 1970 in a zone of `zone` seconds.
class FixedClock {
 public:
  FixedClock(std::int64_t milliseconds, OtLong zone) : before_(Install(milliseconds, zone)) {}
  ~FixedClock() { bksSetClock(before_); }
  FixedClock(const FixedClock&) = delete;
  FixedClock& operator=(const FixedClock&) = delete;

 private:
  static bksclock Install(std::int64_t milliseconds, OtLong zone) {
    instant_ = {milliseconds, zone};
    return bksSetClock([] { return instant_; });
  }
  static inline bksinstant instant_{};
  bksclock before_;
};

}  // namespace cases

#endif
