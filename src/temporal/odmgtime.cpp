// d_Time as a value, with its zone and the default one.

#include <array>

#include "ot95/clock.h"
#include "temporal/odmgseconds.h"

namespace {

using ot95::ClockFields;
using ot95::Cut32;
using ot95::Cut8;
using ot95::TruncateToLong;

// Seconds of the time as it is stored, zone included, without hundredths.
d_Interval SinceMidnight(const d_Time& time) {
  return d_Interval(0, time.hour, time.minute, static_cast<float>(time.second));
}

// Day by day, with the rounding of each step. Where a day is too small to change the float, 0.
float ToPositiveSeconds(float seconds) {
  while (seconds < 0) {
    const float next = seconds + d_Interval(1, 0, 0, 0).seconds;
    if (next == seconds) return 0;
    seconds = next;
  }
  return seconds;
}

void SetClock(d_Time& time, const ClockFields& fields) {
  time.hour = Cut8(fields.hour);
  time.minute = Cut8(fields.minute);
  time.second = Cut8(TruncateToLong(fields.second));
  time.hundredths = Cut8(ot95::HundredthsOf(fields.second));
}

d_Time MovedBy(const d_Time& time, const d_Interval& span) {
  const ClockFields fields(ToPositiveSeconds(SinceMidnight(time).seconds + span.seconds));
  return d_Time(static_cast<unsigned short>(fields.hour),
                static_cast<unsigned short>(fields.minute), fields.second, time.tzHour,
                time.tzMinute);
}

int Wall(int field, int zone) {
  return static_cast<std::uint16_t>(field - zone);
}

}  // namespace

d_Time::Time_Zone d_Time::default_Time_Zone{};

d_Time::d_Time() : d_Time(OtTime()) {}

d_Time::d_Time(unsigned short h, unsigned short m, float s)
    : d_Time(h, m, s, Cut8(default_Time_Zone), 0) {}

d_Time::d_Time(unsigned short h, unsigned short m, float s, short zoneHour, short zoneMinute)
    : tzHour(Cut8(zoneHour)),
      tzMinute(Cut8(zoneMinute)),
      hour(Cut8(h + zoneHour)),
      minute(Cut8(m + zoneMinute)),
      second(Cut8(TruncateToLong(s))),
      hundredths(Cut8(ot95::HundredthsOf(s))) {}

d_Time::d_Time(long seconds) : d_Time(0, 0, 0) {
  std::int64_t n = Cut32(seconds);
  if (n < 0) n += (ot95::secondsPerDay - 1 - n) / ot95::secondsPerDay * ot95::secondsPerDay;
  hour = Cut8(n / 3600 + tzHour);
  minute = Cut8(n % 3600 / 60);
  second = Cut8(n % 60);
}

d_Time::d_Time(const OtTime& other) {
  *this = other;
  hour = Cut8(hour + tzHour);
}

d_Time::d_Time(const d_Timestamp& other) : d_Time(other.time) {}

d_Time& d_Time::operator=(const OtTime& other) {
  tzHour = Cut8(default_Time_Zone);
  tzMinute = 0;
  hour = other.hour;
  minute = other.minute;
  second = other.second;
  hundredths = 0;
  return *this;
}

void d_Time::set_default_Time_Zone_to_local() {
  btime now{};
  bksgettime(&now);
  if (now.zone != 0) default_Time_Zone = static_cast<Time_Zone>(now.zone / 3600);
}

d_Time d_Time::current() {
  return d_Time(OtTime());
}

d_Time& d_Time::operator+=(const d_Interval& interval) {
  const d_Interval start(0, hour, minute, ot95::SecondsOf(*this));
  SetClock(*this, ClockFields(ToPositiveSeconds(start.seconds + interval.seconds)));
  return *this;
}

d_Time& d_Time::operator-=(const d_Interval& interval) {
  const d_Interval start = SinceMidnight(*this);
  SetClock(*this, ClockFields(ToPositiveSeconds(start.seconds - interval.seconds)));
  return *this;
}

d_Time operator+(const d_Time& time, const d_Interval& interval) {
  return MovedBy(time, interval);
}

d_Time operator+(const d_Interval& interval, const d_Time& time) {
  return MovedBy(time, interval);
}

d_Time operator-(const d_Time& time, const d_Interval& interval) {
  return MovedBy(time, -interval);
}

d_Interval operator-(const d_Time& a, const d_Time& b) {
  return SinceMidnight(a) - SinceMidnight(b);
}

bool operator<(const d_Time& a, const d_Time& b) {
  const auto rank = [](const d_Time& time) {
    return std::array{Wall(time.hour, time.tzHour), Wall(time.minute, time.tzMinute),
                      time.second * 100 + time.hundredths};
  };
  return rank(a) < rank(b);
}

int operator!=(const d_Time& a, const d_Time& b) {
  const int hours = Wall(a.hour, a.tzHour) - Wall(b.hour, b.tzHour);
  if (hours != 0) return hours;
  const int minutes = Wall(a.minute, a.tzMinute) - Wall(b.minute, b.tzMinute);
  if (minutes != 0) return minutes;
  return TruncateToLong(ot95::SecondsOf(a) - ot95::SecondsOf(b));
}
