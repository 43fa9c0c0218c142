// Calendar dates as values: day numbers, arithmetic, weekdays.

#include <cstdlib>

#include "ot95/clock.h"
#include "ot95/temporal.h"
#include "temporal/cut.h"

namespace {

using ot95::Cut16;
using ot95::Cut32;
using ot95::Cut8;

long TruncatedByMagnitude(std::int64_t a, std::int64_t b, bool remainder) {
  if (b == 0) return 0;
  const std::int64_t first = std::llabs(a);
  const std::int64_t second = std::llabs(b);
  const std::int64_t result = remainder ? first % second : first / second;
  return Cut32((a < 0) != (b < 0) ? -result : result);
}

}  // namespace

OtDate& OtDate::Today() {
  bdate today{};
  bksgetdate(&today);
  return *this = OtDate(today.year, today.month, today.day);
}

OtDate OtDate::operator+(long days) const {
  return OtDate(static_cast<long>(Cut32(std::int64_t{dayabs()} + Cut32(days))));
}

OtDate OtDate::operator-(long days) const {
  return OtDate(static_cast<long>(Cut32(std::int64_t{dayabs()} - Cut32(days))));
}

// The formula for every number. Between the limits of SetMirrored it gives the same; outside,
// stored data relies on its very results.
OtDate& OtDate::SetByFormula(OtLong dayNumber) {
  std::int64_t l = std::int64_t{dayNumber} + 68569;
  const std::int64_t c = l * 4 / 146097;
  l -= (c * 146097 + 3) / 4;
  const std::int64_t i = (l * 5 + 5) * 800 / 1461001;
  l += 31 - i * 1461 / 4;
  const int j = Cut8(l * 80 / 2447);
  const int k = j / 11;
  day = Cut8(l - j * 2447 / 80);
  month = Cut8(j + 2 - 12 * k);
  year = Cut16(k + (c * 5 - 245) * 20 + i);
  return *this;
}

OtDaysOfTheWeek OtDate::DayOfTheDate() const {
  const int y = year + (month - 14) / 12;
  const int b = month + 10;
  const int c = b - 12 * (b / 13);
  // 77 keeps the sum positive for everyday years only; what turns negative is called a Sunday.
  const int s =
      (13 * c - 1) / 5 + 5 * (y - 100 * (y / 100)) / 4 + day - 2 * (y / 100) + y / 400 + 77;
  const int w = s % 7;
  return w <= 0 ? OtSunday : static_cast<OtDaysOfTheWeek>(w - 1);
}

long OtDate::divide(long a, long b) const {
  return TruncatedByMagnitude(Cut32(a), Cut32(b), false);
}

long OtDate::modulo(long a, long b) const {
  return TruncatedByMagnitude(Cut32(a), Cut32(b), true);
}
