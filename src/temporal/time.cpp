// Times of day as values: arithmetic on a 24-hour clock.

#include "ot95/clock.h"
#include "ot95/temporal.h"
#include "temporal/cut.h"

namespace {

using ot95::Cut32;
using ot95::Cut8;

// Sums and differences of fields, each wrapped to eight bits before it is looked at again.
OtTime Wrapped(std::int64_t hour, std::int64_t minute, std::int64_t second) {
  OtTime time(0, 0, 0);
  time.hour = Cut8(hour);
  time.minute = Cut8(minute);
  time.second = Cut8(second);
  return time;
}

// Brings negative fields of a difference up by one unit of the next field each.
OtTime Borrowed(OtTime time) {
  if (time.second < 0) time = Wrapped(time.hour, time.minute - 1, time.second + 60);
  if (time.minute < 0) time = Wrapped(time.hour - 1, time.minute + 60, time.second);
  if (time.hour < 0) time.hour = Cut8(time.hour + 24);
  return time;
}

}  // namespace

OtTime::OtTime(long seconds) {
  const OtLong n = Cut32(seconds);
  *this = Wrapped(n / 3600, n % 3600 / 60, n % 3600 % 60);
}

OtTime& OtTime::Now() {
  btime now{};
  bksgettime(&now);
  return *this = OtTime(now.hour, now.minute, now.second);
}

// Only overflow is carried, and the hour is reduced modulo a day: going back is the business of
// operator-, which differs in both.
OtTime OtTime::operator+(long seconds) const {
  const OtLong n = Cut32(seconds);
  OtTime time = Wrapped(hour + n / 3600, minute + n / 60 % 60, second + n % 60);
  if (time.second >= 60) time = Wrapped(time.hour, time.minute + 1, time.second - 60);
  if (time.minute >= 60) time = Wrapped(time.hour + 1, time.minute - 60, time.second);
  if (time.hour >= 24) time.hour = Cut8(time.hour % 24);
  return time;
}

OtTime OtTime::operator-(long seconds) const {
  const OtLong n = Cut32(seconds);
  return Borrowed(Wrapped(hour - n / 3600, minute - n / 60 % 60, second - n % 60));
}

OtTime OtTime::operator-(const OtTime& other) const {
  return Borrowed(Wrapped(hour - other.hour, minute - other.minute, second - other.second));
}
