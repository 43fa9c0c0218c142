// Dates with a time of day as values, and the system's clock in milliseconds.

#include "ot95/clock.h"
#include "ot95/int64.h"
#include "ot95/temporal.h"
#include "temporal/cut.h"

namespace {

constexpr long unknownZone = -2171;
constexpr int secondsPerDay = 86400;

}  // namespace

// The time is read first: a midnight between the two calls gives a late time on the new day.
OtDateTime& OtDateTime::Now() {
  time.Now();
  date.Today();
  return *this;
}

OtDateTime& OtDateTime::NowUTC() {
  btime now{};
  bdate today{};
  bksgetsystemtime(&now, &today);
  date = OtDate(today.year, today.month, today.day);
  time = OtTime(now.hour, now.minute, now.second);
  return *this;
}

// The clock's own wrap tells of the change of day, so that odd fields carry as the clock does.
OtDateTime& OtDateTime::AddSeconds(long seconds) {
  const OtLong n = ot95::Cut32(seconds);
  int days = n / secondsPerDay;
  const int rest = n % secondsPerDay;
  OtTime moved = time;
  if (rest >= 0) {
    moved += rest;
    days += moved < time;
  } else {
    moved -= -rest;
    days -= moved > time;
  }
  date += days;
  time = moved;
  return *this;
}

int OtDateTime::ToLocalTime() {
  const long zone = bksgettimezone();
  return zone == unknownZone ? static_cast<int>(zone) : ShiftMinutes(zone);
}

int OtDateTime::ToUTCTime() {
  const long zone = bksgettimezone();
  return zone == unknownZone ? static_cast<int>(zone) : ShiftMinutes(-zone);
}

int OtDateTime::ShiftMinutes(long minutes) {
  SetMinuteOfDay(time.hour * 60L + time.minute + minutes);
  return 0;
}

// Carries one day at most, which is enough for a zone.
void OtDateTime::SetMinuteOfDay(long minuteOfDay) {
  int hour = static_cast<int>(minuteOfDay / 60);
  int minute = static_cast<int>(minuteOfDay % 60);
  if (minuteOfDay >= 24 * 60) {
    date += 1;
    hour -= 24;
  } else if (minuteOfDay < 0) {
    date -= 1;
    hour += minute == 0 ? 24 : 23;
    minute += minute == 0 ? 0 : 60;
  }
  time = OtTime(hour, minute, time.second);
}

const OtDateTime& OtDateTime::Null() {
  static constexpr OtDate noDate(0, 0, 0);
  static constexpr OtTime noTime(0, 0, 0);
  static const OtDateTime zeros(noDate, noTime);
  return zeros;
}

int GetSystemTimeInMSSinceTheEpoch(OtInt64& out) {
  const auto milliseconds = static_cast<std::uint64_t>(bksgetmilliseconds());
  out.low = static_cast<std::uint32_t>(milliseconds);
  out.high = static_cast<std::int32_t>(milliseconds >> 32);
  return 0;
}
