// d_Timestamp as a value.

#include "temporal/odmgseconds.h"

namespace {

using ot95::Cut32;
using ot95::TruncateToLong;

std::uint16_t Word(int value) {
  return static_cast<std::uint16_t>(value);
}

// The day of the month goes through the float with the clock; the month and year stay aside in the
// day count. Taking the zone off and having the constructor add it again keeps the wall clock, but
// for a wall hour below 0, which is an unsigned word here.
void Move(d_Timestamp& stamp, float span) {
  const d_Time& time = stamp.time;
  const d_Interval start(Word(stamp.date.day), Word(time.hour - time.tzHour),
                         Word(time.minute - time.tzMinute), ot95::SecondsOf(time));
  float t = start.seconds + span;
  std::int64_t count = ot95::DayCount::Of(stamp.date) - std::int64_t{stamp.date.day};
  if (t < 0) {
    const std::int64_t days = TruncateToLong(t / -86400.0f) + std::int64_t{1};
    t += d_Interval(Cut32(days), 0, 0, 0).seconds;
    count -= days;
  } else {
    count += TruncateToLong(t / 86400.0f);
  }
  ot95::DayCount::Set(stamp.date, Cut32(count));
  const ot95::ClockFields fields(t);
  stamp.time =
      d_Time(Word(fields.hour), Word(fields.minute), fields.second, time.tzHour, time.tzMinute);
}

}  // namespace

d_Timestamp& d_Timestamp::operator=(const OtDateTime& other) {
  date = other.date;
  time = other.time;
  return *this;
}

d_Timestamp d_Timestamp::current() {
  d_Timestamp now;
  now.time = d_Time::current();
  now.date = d_Date::current();
  return now;
}

d_Timestamp& d_Timestamp::operator+=(const d_Interval& interval) {
  Move(*this, interval.seconds);
  return *this;
}

d_Timestamp& d_Timestamp::operator-=(const d_Interval& interval) {
  Move(*this, -interval.seconds);
  return *this;
}

d_Timestamp operator+(const d_Timestamp& stamp, const d_Interval& interval) {
  d_Timestamp result(stamp);
  return result += interval;
}

d_Timestamp operator+(const d_Interval& interval, const d_Timestamp& stamp) {
  return stamp + interval;
}

d_Timestamp operator-(const d_Timestamp& stamp, const d_Interval& interval) {
  d_Timestamp result(stamp);
  return result -= interval;
}

int operator!=(const d_Timestamp& a, const d_Timestamp& b) {
  const int days = a.date != b.date;
  return days != 0 ? days : a.time != b.time;
}
