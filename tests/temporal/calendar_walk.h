#ifndef OT95_TESTS_TEMPORAL_CALENDAR_WALK_H
#define OT95_TESTS_TEMPORAL_CALENDAR_WALK_H

// Both calendars against references of their own, over as many days as a test has time for.

#include <gtest/gtest.h>

#include <chrono>

#include "temporal/cases.h"

namespace cases {

/// Compares every `step`th day that OtDate mirrors with std::chrono, there and back.
inline void WalkProlepticDays(int step) {
  const long unixEpoch = 2440588;
  const long first = OtDate(-4799, 1, 1).dayabs();
  const long last = 13689325;  // 32767-12-31
  for (long n = first; n <= last; n += step) {
    const std::chrono::sys_days point{std::chrono::days(n - unixEpoch)};
    const std::chrono::year_month_day expected(point);
    const OtDate date(n);
    ASSERT_EQ(date.year, static_cast<int>(expected.year())) << n;
    ASSERT_EQ(static_cast<unsigned>(date.month), static_cast<unsigned>(expected.month())) << n;
    ASSERT_EQ(static_cast<unsigned>(date.day), static_cast<unsigned>(expected.day())) << n;
    ASSERT_EQ(date.dayabs(), n);
    ASSERT_TRUE(date.IsDate()) << n;
  }
}

/// Julian up to 1582-10-04, Gregorian from 1582-10-15 on, one day after the other.
struct ReformedDay {
  int year, month, day;

  int DaysInMonth() const {
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool gregorian = year > 1582;
    const bool leap = year % 4 == 0 && (!gregorian || year % 100 != 0 || year % 400 == 0);
    return month == 2 && leap ? 29 : lengths[month - 1];
  }
  void Advance() {
    if (year == 1582 && month == 10 && day == 4) day = 14;
    if (++day <= DaysInMonth()) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
};

/// Compares every day of d_Date from 0000-03-01 to the end of `lastYear` with that reference.
inline void WalkReformedDays(int lastYear) {
  ReformedDay expected{0, 3, 1};
  d_Date date(0, 3, 1);
  const d_Date january(2000, 1, 1);
  int dayOfYear = 61;  // Julian year 0 is a leap year
  for (int count = 1721117 - 2451544; expected.year <= lastYear; ++count, ++dayOfYear) {
    if (expected.month == 1 && expected.day == 1) dayOfYear = 1;
    ASSERT_EQ(date.year, expected.year) << count;
    ASSERT_EQ(date.month, expected.month) << count;
    ASSERT_EQ(date.day, expected.day) << count;
    ASSERT_EQ(date != january, count) << Show(date);
    ASSERT_EQ(date.day_of_week(), (count + 2451546) % 7) << Show(date);
    ASSERT_EQ(date.days_in_month(), expected.DaysInMonth()) << Show(date);
    if (expected.year > 0) {
      ASSERT_EQ(date.day_of_year(), dayOfYear) << Show(date);
    }
    if (expected.year == 32767 && expected.month == 12 && expected.day == 31) break;
    date++;
    expected.Advance();
  }
}

}  // namespace cases

#endif
