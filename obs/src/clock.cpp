// The clock: dates, times and zones from the system, or from a replacement that a host has set.

#include "ot95/clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>

namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr long kNoZone = -2171;

constexpr std::int64_t SecondsAt(short year, unsigned month, unsigned day) {
  using namespace std::chrono;
  return sys_days{std::chrono::year{year} / static_cast<int>(month) / static_cast<int>(day)}
             .time_since_epoch()
             .count() *
         kSecondsPerDay;
}

constexpr std::int64_t kFirstSecond = SecondsAt(-32767, 1, 1);
constexpr std::int64_t kLastSecond = SecondsAt(32767, 12, 31) + kSecondsPerDay - 1;
constexpr OtLong kWidestZone = 7 * kSecondsPerDay;

/// The seconds that the system's zone is ahead of UTC at an instant of its clock.
OtLong SystemZone(std::time_t seconds) {
  std::tm fields{};
  if (localtime_r(&seconds, &fields) == nullptr) return BKS_ZONE_UNKNOWN;
  return static_cast<OtLong>(fields.tm_gmtoff);
}

bksinstant SystemClock() {
  std::timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return {std::int64_t{now.tv_sec} * kMillisecondsPerSecond + now.tv_nsec / 1000000,
          SystemZone(now.tv_sec)};
}

std::atomic<bksclock> clockSource{SystemClock};

bksinstant Now() {
  return clockSource.load()();
}

/// The zone to reckon with: a source may answer anything.
OtLong ZoneOf(const bksinstant& instant) {
  if (instant.zone == BKS_ZONE_UNKNOWN) return 0;
  return std::clamp(instant.zone, -kWidestZone, kWidestZone);
}

constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0);
}

constexpr int FloorRemainder(std::int64_t value, std::int64_t by) {
  return static_cast<int>(value % by + (value % by < 0 ? by : 0));
}

/// An instant as a clock shows it that is `zone` seconds ahead of UTC.
void Split(std::int64_t milliseconds, OtLong zone, btime* time, bdate* date) {
  const std::int64_t seconds = std::clamp(FloorDivide(milliseconds, kMillisecondsPerSecond) + zone,
                                          kFirstSecond, kLastSecond);
  if (date != nullptr) {
    const auto day = static_cast<int>(FloorDivide(seconds, kSecondsPerDay));
    const std::chrono::year_month_day fields{std::chrono::sys_days{std::chrono::days{day}}};
    date->year = static_cast<short>(int{fields.year()});
    date->month = static_cast<unsigned char>(unsigned{fields.month()});
    date->day = static_cast<unsigned char>(unsigned{fields.day()});
  }
  if (time != nullptr) {
    const int ofDay = FloorRemainder(seconds, kSecondsPerDay);
    const int fraction = FloorRemainder(milliseconds, kMillisecondsPerSecond);
    time->hour = static_cast<unsigned char>(ofDay / 3600);
    time->minute = static_cast<unsigned char>(ofDay / 60 % 60);
    time->second = static_cast<unsigned char>(ofDay % 60);
    time->hundredth = static_cast<unsigned char>(fraction / 10);
    time->zone = zone;
  }
}

void SplitLocal(btime* time, bdate* date) {
  const bksinstant now = Now();
  Split(now.milliseconds, ZoneOf(now), time, date);
}

}  // namespace

void bksgetdate(bdate* date) {
  SplitLocal(nullptr, date);
}

void bksgettime(btime* time) {
  SplitLocal(time, nullptr);
}

void bksgetsystemtime(btime* time, bdate* date) {
  Split(Now().milliseconds, 0, time, date);
}

long bksgettimezone() {
  const bksinstant now = Now();
  return now.zone == BKS_ZONE_UNKNOWN ? kNoZone : ZoneOf(now) / 60;
}

std::int64_t bksgetmilliseconds() {
  return Now().milliseconds;
}

bksclock bksSetClock(bksclock source) noexcept {
  return clockSource.exchange(source ? source : SystemClock);
}
