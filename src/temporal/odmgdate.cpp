// d_Date as a value.

#include <cmath>

#include "ot95/clock.h"
#include "temporal/odmgseconds.h"

namespace {

using ot95::Cut16;
using ot95::Cut32;
using ot95::Cut8;

// Counts of the last Julian day, 1582-10-04, and of the fields 1582-10-15 read as a Julian date.
constexpr OtLong lastJulianDay = 2299159;
constexpr OtLong firstGregorianDayAsJulian = 2299170;

std::int64_t WholeDays(const d_Interval& interval) {
  return ot95::TruncateToLong(interval.seconds / 86400.0f);
}

std::int64_t Whole(double value) {
  return static_cast<std::int64_t>(std::trunc(value));
}

}  // namespace

d_Date::d_Date() : d_Date(OtDate()) {}

d_Date::d_Date(short y, unsigned short dayOfYear) : d_Date(y, 1, 1) {
  Move(std::int64_t{dayOfYear} - 1);
}

d_Date::d_Date(short y, unsigned short m, unsigned short d)
    : year(y), month(Cut8(m)), day(Cut8(d)) {}

d_Date::d_Date(const d_Timestamp& other) : d_Date(other.date) {}

d_Date::d_Date(const OtDate& other) : year(other.year), month(other.month), day(other.day) {}

unsigned short d_Date::day_of_year() const {
  return static_cast<unsigned short>(1 + getAbsDate() - d_Date(year, 1, 1).getAbsDate());
}

d_Date::Weekday d_Date::day_of_week() const {
  return static_cast<Weekday>((getAbsDate() + 2) % 7);
}

d_Date& d_Date::next(Weekday weekday) {
  const std::int64_t days = std::int64_t{weekday} - day_of_week();
  return Move(days > 0 ? days : days + 7);
}

d_Date& d_Date::previous(Weekday weekday) {
  const std::int64_t days = std::int64_t{day_of_week()} - weekday;
  return Move(-(days > 0 ? days : days + 7));
}

d_Date& d_Date::operator+=(const d_Interval& interval) {
  return Move(WholeDays(interval));
}

d_Date& d_Date::operator-=(const d_Interval& interval) {
  return Move(-WholeDays(interval));
}

d_Date d_Date::operator++(int) {
  const d_Date before = *this;
  Move(1);
  return before;
}

d_Date d_Date::operator--(int) {
  const d_Date before = *this;
  Move(-1);
  return before;
}

unsigned short d_Date::days_in_month() const {
  return days_in_month(year, static_cast<unsigned short>(month));
}

unsigned short d_Date::days_in_month(short year, unsigned short month) {
  constexpr unsigned char lengths[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month > 12) return 0;
  const bool julianRule = year % 100 != 0 || year < 1600;
  const bool leapYear = year % 4 == 0 && (julianRule || year % 400 == 0);
  return month == 2 && leapYear ? 29 : lengths[month];
}

// The floating-point formula rounds its double products toward zero, also below zero; that makes
// the results before March of year 0 what they are.
long d_Date::getAbsDate() const {
  const bool winter = month <= 2;
  const int m = month + (winter ? 13 : 1);
  const int y = winter ? year - 1 : year;
  const OtLong julian = day + 1720994 + static_cast<OtLong>(std::trunc(365.25 * y)) +
                        static_cast<OtLong>(std::trunc(30.6001 * m));
  if (julian < firstGregorianDayAsJulian) return julian;
  const int century = y / 100;
  return julian + century / 4 - century + 2;
}

void d_Date::setAbsDate(long count) {
  std::int64_t a = std::int64_t{Cut32(count)} + 1;
  if (a > lastJulianDay + 1) {
    const auto g = Whole((static_cast<double>(a) - 1867216.25) / 36524.25);
    a += 1 + g - g / 4;
  }
  const std::int64_t b = a + 1524;
  const std::int64_t c = Whole((static_cast<double>(b) - 122.1) / 365.25);
  const std::int64_t d = Whole(365.25 * static_cast<double>(c));
  const std::int64_t e = Whole(static_cast<double>(b - d) / 30.6001);
  const double daysBefore = std::floor(30.6001 * static_cast<double>(e));
  day = Cut8(b - d - static_cast<std::int64_t>(daysBefore));
  month = Cut8(e < 14 ? e - 1 : e - 13);
  year = Cut16(c - 4716 + (month < 3 ? 1 : 0));
}

d_Date& d_Date::Move(std::int64_t days) {
  setAbsDate(Cut32(getAbsDate() + days));
  return *this;
}

d_Date operator+(const d_Date& date, const d_Interval& interval) {
  d_Date result(date);
  return result += interval;
}

d_Date operator+(const d_Interval& interval, const d_Date& date) {
  return date + interval;
}

d_Date operator-(const d_Date& date, const d_Interval& interval) {
  d_Date result(date);
  return result -= interval;
}

int operator!=(const d_Date& a, const d_Date& b) {
  return Cut32(ot95::DayCount::Of(a) - ot95::DayCount::Of(b));
}
