// OtDate and OtTime.
#include "temporal/calendar_walk.h"

using cases::Show;

namespace {

TEST(OtDate, AgreesWithAnotherCalendarAndTurnsBack) {
  cases::WalkProlepticDays(89);
}

// The formula keeps truncating where no calendar goes: results that stored numbers rely on.
TEST(OtDate, FollowsItsFormulaOutsideTheCalendar) {
  EXPECT_EQ(OtDate(0).dayabs(), 0);
  EXPECT_EQ(Show(OtDate(0)), "-4713/11/24");
  EXPECT_EQ(OtDate(2001, 13, 1).dayabs(), OtDate(2002, 1, 1).dayabs());
  EXPECT_EQ(OtDate(-4800, 3, 1).dayabs(), -32044);
  EXPECT_EQ(Show(OtDate(OtDate(-5000, 6, 1).dayabs())), "-4999/-5/-29");
  const struct {
    long dayNumber;
    const char* date;
  } rows[] = {{2147483647, "-23342/6/3"},  // the year wraps in 16 bits
              {-2147483647L - 1, "13918/-6/-16"},
              {13689326, "-32768/1/1"},
              {-31739, "-4800/12/31"}};
  for (const auto& row : rows) EXPECT_EQ(Show(OtDate(row.dayNumber)), row.date) << row.dayNumber;
}

TEST(OtDate, KnowsValidDates) {
  const struct {
    OtDate date;
    bool valid;
    long toNextMonth;
  } rows[] = {{OtDate(2000, 2, 29), true, 1},   {OtDate(1900, 2, 29), false, 0},
              {OtDate(2000, 2, 30), false, 0},  {OtDate(1582, 10, 10), true, 22},
              {OtDate(2024, 2, 28), true, 2},   {OtDate(2001, 12, 1), true, 31},
              {OtDate(-1, 5, 17), true, 15},    {OtDate(2000, -1, 17), false, 14},
              {OtDate(2000, 5, -1), false, 33}, {OtDate(2000, 4, 31), false, 0},
              {OtDate(2000, 0, 1), false, 31},  {OtDate(2000, 13, 1), false, 31}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.date.IsDate(), row.valid) << Show(row.date);
    EXPECT_EQ(row.date.daynxtmonth(), row.toNextMonth) << Show(row.date);
  }
  EXPECT_TRUE(OtDate(2024, 2, 29).IsLastDayOfTheMonth());
  OtDate null(2000, 1, 1);
  EXPECT_EQ(null.SetNullValue(), 0);
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_FALSE(null.IsDate());
  EXPECT_EQ(Show(null), "-32768/-128/-128");
}

TEST(OtDate, WeekdaysAreRightUpToTheYearsWhereTheyFallToSunday) {
  for (long n = OtDate(0, 3, 1).dayabs(); n < OtDate(4600, 3, 1).dayabs(); n += 5) {
    ASSERT_EQ(OtDate(n).DayOfTheDate(), n % 7) << Show(OtDate(n));
  }
  EXPECT_EQ(OtDate(2000, 1, 1).DayOfTheDate(), OtSaturday);
  EXPECT_EQ(OtDate(4600, 3, 1).DayOfTheDate(), OtSunday);    // a Saturday
  EXPECT_EQ(OtDate(20000, 3, 1).DayOfTheDate(), OtSunday);   // a Wednesday
  EXPECT_EQ(OtDate(-100, 3, 2).DayOfTheDate(), OtSaturday);  // a Friday
  EXPECT_STREQ(OtDate(2000, 1, 1).PrintDayOfTheDate().StrGet(), "Saturday");
}

TEST(OtDate, ComparesWithWildcardsButEqualsWithout) {
  const struct {
    OtDate a, b;
    int difference;
    bool equal;
  } rows[] = {{OtDate(2000, 5, 17), OtDate(-1, 5, 17), 0, false},
              {OtDate(-1, 5, 17), OtDate(2000, 5, 17), 0, false},
              {OtDate(2000, 5, 17), OtDate(2003, 1, 1), -3, false},
              {OtDate(2000, 5, 17), OtDate(2000, -1, 20), -3, false},
              {OtDate(2000, 5, 17), OtDate(2000, 3, -1), 2, false},
              {OtDate(2000, 5, 17), OtDate(-1, -1, -1), 0, false},
              {OtDate(2000, 5, 17), OtDate(2000, 5, 17), 0, true},
              {OtDate(32767, 1, 1), OtDate(-32768, 1, 1), 65535, false}};
  for (const auto& row : rows) {
    const std::string name = Show(row.a) + " and " + Show(row.b);
    EXPECT_EQ(row.a != row.b, row.difference) << name;
    EXPECT_EQ(row.a == row.b, row.equal) << name;
    EXPECT_EQ(row.a < row.b, row.difference < 0) << name;
    EXPECT_EQ(row.a > row.b, row.difference > 0) << name;
    EXPECT_EQ(row.a <= row.b, row.difference <= 0) << name;
    EXPECT_EQ(row.a >= row.b, row.difference >= 0) << name;
  }
  EXPECT_TRUE(OtDate(-1, 1, 1) < OtDate(2451546L));  // a temporary compares as a date
}

TEST(OtDate, CountsInDays) {
  OtDate date(2000, 2, 28);
  EXPECT_EQ(Show(date + 2), "2000/3/1");
  EXPECT_EQ(Show(date - 59L), "1999/12/31");
  EXPECT_EQ(date - OtDate(1999, 2, 28), 365);
  EXPECT_EQ(OtDate(1582, 10, 15) - OtDate(1582, 10, 10), 5);
  EXPECT_EQ(Show(++date), "2000/2/29");
  EXPECT_EQ(Show(--date), "2000/2/28");
  EXPECT_EQ(static_cast<long>(date += 366), 2451603 + 366);
  // Sums are cut to 32 bits like every day number.
  EXPECT_EQ(Show(OtDate(2451545) + 2147483647), Show(OtDate(2451545L - 2147483647 - 2)));
}

TEST(OtDate, AndTimesTakeEveryTypeOfNumber) {
  const auto take = [](auto two) {
    OtDate date(two);
    date += two;
    date = date + two;
    date -= two;
    date = date - two;
    EXPECT_EQ(date.dayabs(), 2);
    OtTime time(two);
    time += two;
    time = time + two;
    time -= two;
    time = time - two;
    EXPECT_EQ(Show(time), "0:0:2");
  };
  take('\2');
  take(short{2});
  take(2u);
  take(2UL);
  take(2LL);
  take(2ULL);
  take(2.5f);
  take(2.5);
  take(OtWednesday);
}

struct Divisions : OtDate {
  using OtDate::divide;
  using OtDate::modulo;
};

TEST(OtDate, DividesByMagnitudes) {
  const Divisions d;
  const struct {
    long a, b, quotient, remainder;
  } rows[] = {{7, 3, 2, 1},
              {-7, 3, -2, -1},
              {7, -3, -2, -1},
              {-7, -3, 2, 1},
              {7, 0, 0, 0},
              {static_cast<long>(0x80000000UL), 2, -1073741824, 0}};  // operands are cut first
  for (const auto& row : rows) {
    EXPECT_EQ(d.divide(row.a, row.b), row.quotient) << row.a << '/' << row.b;
    EXPECT_EQ(d.modulo(row.a, row.b), row.remainder) << row.a << '/' << row.b;
  }
}

TEST(OtTime, MovesOnTheClock) {
  const struct {
    const char* name;
    OtTime result;
    const char* expected;
  } rows[] = {
      {"carry into the next day", OtTime(23, 59, 59) + 1, "0:0:0"},
      {"modulo a day", OtTime(23, 0, 0) + 7200L, "1:0:0"},
      {"several days", OtTime(0, 0, 0) + 100000, "3:46:40"},
      {"forward by less than nothing", OtTime(12, 0, 0) + -5, "12:0:-5"},
      {"hours wrap before they are reduced", OtTime(0, 0, 0) + 500000, "-118:53:20"},
      {"borrow", OtTime(0, 0, 0) - 1, "23:59:59"},
      {"one day is made up for", OtTime(0, 0, 0) - 100000, "-4:13:20"},
      {"back by less than nothing", OtTime(12, 0, 0) - -3600, "13:0:0"},
      {"way round the clock", OtTime(1, 0, 0) - OtTime(23, 0, 0), "2:0:0"},
      {"seconds wrap in eight bits", OtTime(0, 0, 127) + 59, "0:0:-70"},
      {"more than a day", OtTime(90000), "25:0:0"},
      {"from seconds", OtTime(3661L), "1:1:1"},
      {"from less than nothing", OtTime(-3661), "-1:-1:-1"},
      {"the hour wraps", OtTime(2147483647), "43:14:7"},
  };
  for (const auto& row : rows) EXPECT_EQ(Show(row.result), row.expected) << row.name;
  OtTime time(23, 59, 59);
  EXPECT_EQ(Show(++time), "0:0:0");
  EXPECT_EQ(Show(--time), "23:59:59");
  EXPECT_EQ(static_cast<long>(time), 86399);
}

// Every second of a day, forward and back by a step that isn't round.
TEST(OtTime, AgreesWithSecondsOfTheDay) {
  for (int n = 0; n < 86400; ++n) {
    ASSERT_EQ(static_cast<long>(OtTime(n) + 54321), (n + 54321) % 86400) << n;
    ASSERT_EQ(static_cast<long>(OtTime(n) - 54321), (n + 86400 - 54321) % 86400) << n;
  }
}

TEST(OtTime, ComparesAndKnowsValidTimes) {
  EXPECT_EQ(OtTime(10, 0, 0) != OtTime(9, 59, 59), 1);
  EXPECT_EQ(OtTime(-128, 0, 0) != OtTime(127, 0, 0), -1);
  EXPECT_TRUE(OtTime(1, 2, 3) == OtTime(3723));
  EXPECT_TRUE(OtTime(1, 2, 3) < OtTime(1, 2, 4));
  EXPECT_TRUE(OtTime(0, 0, 0).IsTime());
  for (const OtTime& time : {OtTime(24, 0, 0), OtTime(0, 60, 0), OtTime(0, 0, -1)}) {
    EXPECT_FALSE(time.IsTime()) << Show(time);
  }
  OtTime null(0, 0, 0);
  EXPECT_EQ(null.SetNullValue(), 0);
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_FALSE(null.IsTime());
}

}  // namespace
