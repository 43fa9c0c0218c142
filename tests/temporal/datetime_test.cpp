// OtDateTime, and what reads the clock.
#include <gtest/gtest.h>

#include "ot95/int64.h"
#include "temporal/cases.h"

using cases::FixedClock;
using cases::Show;

namespace {

constexpr std::int64_t midnight2000 = 946684800000;  // 2000-01-01 00:00:00 UTC

TEST(OtDateTime, MovesBySeconds) {
  const struct {
    OtDateTime start;
    long seconds;
    const char* expected;
  } rows[] = {
      {{OtDate(2000, 12, 31), OtTime(23, 59, 59)}, 0, "2000/12/31 23:59:59"},
      {{OtDate(2000, 12, 31), OtTime(23, 59, 59)}, 1, "2001/1/1 0:0:0"},
      {{OtDate(2001, 1, 1), OtTime(0, 0, 0)}, -1, "2000/12/31 23:59:59"},
      {{OtDate(2000, 1, 1), OtTime(12, 0, 0)}, 172800, "2000/1/3 12:0:0"},
      {{OtDate(2000, 1, 1), OtTime(12, 0, 0)}, -90000, "1999/12/31 11:0:0"},
      {{OtDate(2000, 1, 1), OtTime(0, 0, 0)}, 2147483647, "2068/1/19 3:14:7"},
  };
  for (const auto& row : rows) {
    OtDateTime value(row.start);
    EXPECT_EQ(Show(value.AddSeconds(row.seconds)), row.expected) << row.seconds;
  }
}

TEST(OtDateTime, MovesBetweenLocalTimeAndUtc) {
  const struct {
    const char* name;
    OtLong zoneMinutes;
    OtDateTime start;
    const char* local;
    const char* utc;
  } rows[] = {
      {"late",
       60,
       {OtDate(2000, 12, 31), OtTime(23, 30, 15)},
       "2001/1/1 0:30:15",
       "2000/12/31 22:30:15"},
      {"early",
       60,
       {OtDate(2001, 1, 1), OtTime(0, 30, 15)},
       "2001/1/1 1:30:15",
       "2000/12/31 23:30:15"},
      {"half an hour",
       30,
       {OtDate(2001, 1, 1), OtTime(0, 30, 15)},
       "2001/1/1 1:0:15",
       "2001/1/1 0:0:15"},
      {"full hour of the day before",
       70,
       {OtDate(2001, 1, 1), OtTime(0, 10, 0)},
       "2001/1/1 1:20:0",
       "2000/12/31 23:0:0"},
      {"odd fields carry one day only",
       60,
       {OtDate(2001, 1, 1), OtTime(-30, -1, 0)},
       "2000/12/31 -6:59:0",
       "2000/12/31 -8:59:0"},
  };
  for (const auto& row : rows) {
    const FixedClock clock(midnight2000, row.zoneMinutes * 60);
    OtDateTime local(row.start), utc(row.start);
    EXPECT_EQ(local.ToLocalTime(), 0);
    EXPECT_EQ(utc.ToUTCTime(), 0);
    EXPECT_EQ(Show(local), row.local) << row.name;
    EXPECT_EQ(Show(utc), row.utc) << row.name;
  }
  const FixedClock clock(midnight2000, BKS_ZONE_UNKNOWN);
  OtDateTime value(OtDate(2001, 1, 1), OtTime(0, 0, 0));
  EXPECT_EQ(value.ToLocalTime(), -2171);
  EXPECT_EQ(value.ToUTCTime(), -2171);
  EXPECT_EQ(Show(value), "2001/1/1 0:0:0");
}

TEST(OtDateTime, ReadsTheClock) {
  const FixedClock clock(midnight2000 - 1500, 7200);
  EXPECT_EQ(Show(OtDateTime()), "2000/1/1 1:59:58");
  EXPECT_EQ(Show(OtDateTime(OtDate(1, 1, 1)).NowUTC()), "1999/12/31 23:59:58");
  EXPECT_EQ(Show(OtDateTime(OtDate(1990, 5, 6))), "1990/5/6 1:59:58");  // not midnight
  EXPECT_EQ(Show(OtDateTime(OtTime(3, 4, 5))), "2000/1/1 3:4:5");
  EXPECT_EQ(Show(OtDate()) + ' ' + Show(OtTime()), "2000/1/1 1:59:58");
  OtDateTime value(OtDate(1990, 5, 6), OtTime(0, 0, 0));
  value = OtTime(7, 8, 9);
  EXPECT_EQ(Show(value), "1990/5/6 7:8:9");
  value = OtDate(1991, 1, 1);  // by way of the constructor
  EXPECT_EQ(Show(value), "1991/1/1 1:59:58");
}

TEST(OtDateTime, ReadsTheClockOnceForEachHalf) {
  static int reads;
  reads = 0;
  const bksclock before = bksSetClock([] { return ++reads, bksinstant{midnight2000, 0}; });
  OtDateTime();
  EXPECT_EQ(reads, 2);
  OtDateTime(OtDate(1990, 5, 6));
  EXPECT_EQ(reads, 3);
  bksSetClock(before);
}

TEST(OtDateTime, CountsAllMillisecondsOfTheClock) {
  const FixedClock clock(4102444800123, 0);  // 2100: beyond 32 bits of seconds
  OtInt64 now(0);
  EXPECT_EQ(GetSystemTimeInMSSinceTheEpoch(now), 0);
  EXPECT_EQ(std::uint64_t{now.low} | static_cast<std::uint64_t>(now.high) << 32, 4102444800123u);
}

TEST(OtDateTime, ComparesDateFirstWithWildcards) {
  const OtDateTime a(OtDate(2000, 5, 17), OtTime(1, 0, 0));
  EXPECT_EQ(a != OtDateTime(OtDate(2003, 5, 17), OtTime(0, 0, 0)), -3);
  EXPECT_EQ(a.Compare(OtDateTime(OtDate(-1, 5, 17), OtTime(0, 0, 0))), 1);
  EXPECT_EQ(a.Compare(a), 0);
}

TEST(OtDateTime, NullAndTheValueOfZerosAreDifferent) {
  EXPECT_FALSE(OtDateTime::Null().IsNullValue());
  EXPECT_FALSE(OtDateTime::Null().IsDaTime());
  EXPECT_EQ(Show(OtDateTime::Null()), "0/0/0 0:0:0");
  OtDateTime value(OtDate(2000, 1, 1), OtTime(0, 0, 0));
  value.date.SetNullValue();
  EXPECT_FALSE(value.IsNullValue());
  EXPECT_EQ(value.SetNullValue(), 0);
  EXPECT_TRUE(value.IsNullValue());
}

}  // namespace
