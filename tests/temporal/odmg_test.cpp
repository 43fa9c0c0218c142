// The temporal types of the ODMG model.
#include <cmath>
#include <limits>
#include <set>

#include "temporal/calendar_walk.h"

using cases::Show;
using cases::Stamp;

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

// Sets the default zone for one test.
class ZoneGuard {
 public:
  explicit ZoneGuard(int hours) {
    d_Time::set_default_Time_Zone(static_cast<d_Time::Time_Zone>(hours));
  }
  ~ZoneGuard() { d_Time::set_default_Time_Zone(d_Time::Time_Zone{}); }
};

TEST(DDate, AgreesWithTheReformedCalendar) {
  cases::WalkReformedDays(2500);
}

TEST(DDate, HasItsOwnWayAtTheReformAndBeforeYearZero) {
  EXPECT_EQ(Show(d_Date(1582, 10, 4) + d_Interval(1)), "1582/10/15");
  EXPECT_EQ(d_Date(1582, 10, 10) != d_Date(1582, 10, 20), 0);  // a day that never was
  EXPECT_EQ(d_Date(1582, 10, 15).day_of_week(), d_Date::Friday);
  EXPECT_EQ(d_Date(2000, 1, 1).day_of_week(), d_Date::Saturday);
  // Products below zero are cut toward zero: the years before March of year 0 lose a day here.
  EXPECT_EQ(d_Date(0, 3, 1) != d_Date(0, 2, 29), 0);
  EXPECT_EQ(d_Date(-4800, 1, 1).day_of_week(), -3);
  const struct {
    int year, month, days;
  } rows[] = {{1500, 2, 29}, {1600, 2, 29}, {1700, 2, 28}, {2000, 2, 29},
              {2001, 2, 28}, {2004, 2, 29}, {2001, 13, 0}, {2001, 0, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(
        d_Date::days_in_month(static_cast<short>(row.year), static_cast<unsigned short>(row.month)),
        row.days)
        << row.year << '-' << row.month;
  }
}

TEST(DDate, MovesByDays) {
  const struct {
    const char* name;
    d_Date result;
    const char* expected;
  } rows[] = {
      {"day of the year", d_Date(2000, 60), "2000/2/29"},
      {"day 0", d_Date(2000, 0), "1999/12/31"},
      {"next of the same weekday", d_Date(2000, 1, 1).next(d_Date::Saturday), "2000/1/8"},
      {"next", d_Date(2000, 1, 1).next(d_Date::Sunday), "2000/1/2"},
      {"previous of the same weekday", d_Date(2000, 1, 1).previous(d_Date::Saturday), "1999/12/25"},
      {"previous", d_Date(2000, 1, 1).previous(d_Date::Friday), "1999/12/31"},
      {"less than a day", d_Date(2000, 1, 1) + d_Interval(0, 23, 59, 59.0f), "2000/1/1"},
      {"less than a day back", d_Date(2000, 1, 1) - d_Interval(0, -12), "2000/1/1"},
      {"interval first", d_Interval(366) + d_Date(2000, 1, 1), "2001/1/1"},
      {"not a number", d_Date(2000, 1, 1) + d_Interval::Of(NAN), "20752/-8/-26"},
  };
  for (const auto& row : rows) EXPECT_EQ(Show(row.result), row.expected) << row.name;
  d_Date date(2000, 2, 28);
  EXPECT_EQ(Show(date++), "2000/2/28");
  EXPECT_EQ(Show(date--), "2000/2/29");
  EXPECT_EQ(Show(date), "2000/2/28");
  EXPECT_EQ(d_Date(2000, 12, 31).day_of_year(), 366);
  date = OtDateTime(OtDate(1999, 8, 7), OtTime(1, 2, 3));
  EXPECT_EQ(Show(date), "1999/8/7");
}

TEST(DInterval, SumsMagnitudes) {
  const struct {
    const char* name;
    d_Interval result;
    float expected;
  } rows[] = {
      {"plain", d_Interval(1, 1, 0, 0.0f), 90000.0f},
      {"one negative turns all", d_Interval(1, -1, 0, 0.0f), -90000.0f},
      {"negative seconds", d_Interval(0, 0, 1, -0.5f), -60.5f},
      {"smallest int", d_Interval(0, 0, 0, 0) + d_Interval(INT32_MIN), -185542587187200.0f},
      {"24 bits", d_Interval(365, 0, 0, 1.0f), 31536000.0f},
      {"negation", -d_Interval(2), -172800.0f},
      {"difference", d_Interval(2) - d_Interval(0, 1), 169200.0f},
      {"product", 3 * d_Interval(0, 0, 1) * -2, -360.0f},
      {"quotient", d_Interval(1) / 7, 86400.0f / 7},
      {"quotient by nothing", d_Interval(1) / 0, 86400.0f},
  };
  for (const auto& row : rows) EXPECT_EQ(row.result.seconds, row.expected) << row.name;
}

TEST(DTime, TakesItsFieldsFromManySides) {
  const ZoneGuard zone(2);
  d_Time assigned(0, 0, 0);
  assigned = OtTime(10, 30, 15);
  const struct {
    const char* name;
    d_Time result;
    const char* expected;
  } rows[] = {
      {"fields", d_Time(10, 30, 0.0f), "2,0 12:30:0.0"},
      {"OtTime", OtTime(10, 30, 15), "2,0 12:30:15.0"},
      {"OtTime assigned", assigned, "2,0 10:30:15.0"},
      {"its own zone", d_Time(10, 30, 1.5f, -3, 45), "-3,45 7:75:1.50"},
      {"the fraction is a float, its hundredfold a double", d_Time(10, 0, 0.29f), "2,0 12:0:0.28"},
      {"seconds", d_Time(90061L), "2,0 27:1:1.0"},
      {"negative seconds", d_Time(-1), "2,0 25:59:59.0"},
      {"least seconds", d_Time(INT32_MIN), "2,0 22:45:52.0"},
      {"a float that is no number", d_Time(0, 0, NAN), "2,0 2:0:0.0"},
      {"a float beyond integers", d_Time(0, 0, infinity), "2,0 2:0:0.0"},
      {"wrapped", d_Time(300, 300, 300.0f), "2,0 46:44:44.0"},
  };
  for (const auto& row : rows) EXPECT_EQ(Show(row.result), row.expected) << row.name;
}

TEST(DTime, ReadsClockAndZone) {
  const cases::FixedClock clock(946684800000, -3 * 3600 - 1800);  // 1999-12-31 20:30:00 local
  EXPECT_EQ(Show(d_Time()), "0,0 20:30:0.0");
  d_Time::set_default_Time_Zone_to_local();
  const ZoneGuard zone(d_Time::default_Time_Zone);
  EXPECT_EQ(d_Time::default_Time_Zone, -3);
  EXPECT_EQ(Show(d_Time::current()), "-3,0 17:30:0.0");
  EXPECT_EQ(Show(d_Timestamp::current()), "1999/12/31 -3,0 17:30:0.0");
  EXPECT_EQ(Show(d_Date::current()), "1999/12/31");
  const cases::FixedClock utc(946684800000, 0);
  d_Time::set_default_Time_Zone_to_local();  // a zone of 0 changes nothing
  EXPECT_EQ(d_Time::default_Time_Zone, -3);
}

TEST(DTime, CalculatesInFloats) {
  d_Time added(10, 0, 0.5f), taken(10, 0, 0.5f), zoned(10, 0, 0.5f, 1, 30);
  const d_Time zonedStart(zoned);
  zoned += d_Interval(0, 1);
  const struct {
    const char* name;
    d_Time result;
    const char* expected;
  } rows[] = {
      {"past midnight", d_Time(23, 0, 0) + d_Interval(0, 2), "0,0 1:0:0.0"},
      {"+= keeps hundredths", added += d_Interval(), "0,0 10:0:0.50"},
      {"-= drops them", taken -= d_Interval(), "0,0 10:0:0.0"},
      {"hundredths that 24 bits don't hold", d_Time(10, 0, 0.29f) += d_Interval(), "0,0 10:0:0.28"},
      {"back past midnight", d_Time(0, 0, 1) - d_Interval(0, 0, 0, 1.25f), "0,0 23:59:59.75"},
      {"zone kept by +=", zoned, "1,30 12:30:0.50"},
      {"zone added once more by +", zonedStart + d_Interval(0, 1), "1,30 13:60:0.0"},
      {"and by -", zonedStart - d_Interval(0, 1), "1,30 11:60:0.0"},
      {"interval first", d_Interval(0, 1) + zonedStart, "1,30 13:60:0.0"},
      {"a day too small for the float", d_Time(1, 0, 0) - d_Interval(30000000), "0,0 0:0:0.0"},
      {"no end", d_Time(1, 0, 0) - d_Interval::Of(infinity), "0,0 0:0:0.0"},
  };
  for (const auto& row : rows) EXPECT_EQ(Show(row.result), row.expected) << row.name;
  EXPECT_EQ((d_Time(10, 0, 0.75f) - d_Time(9, 59, 30.5f)).seconds, 30.0f);
}

TEST(DTime, ComparesWallClocks) {
  const struct {
    const char* name;
    d_Time a, b;
    int difference;
  } rows[] = {
      {"hundredths don't count", d_Time(10, 0, 0.25f), d_Time(10, 0, 0.75f), 0},
      {"nearly two seconds", d_Time(10, 0, 2.75f), d_Time(10, 0, 1.0f), 1},
      {"zones", d_Time(10, 0, 0, 1, 0), d_Time(10, 0, 0, 5, 30), 0},
      {"hours", d_Time(10, 0, 0), d_Time(13, 0, 0), -3},
      {"minutes", d_Time(10, 7, 0), d_Time(10, 2, 0), 5},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.a != row.b, row.difference) << row.name;
    EXPECT_TRUE(row.difference == 0 || (row.a < row.b) == (row.difference < 0)) << row.name;
  }
  d_Time behind(1, 0, 0);  // a wall hour below 0 is a large word
  behind.tzHour = 2;
  EXPECT_EQ(behind != d_Time(0, 0, 0), 65535);
  EXPECT_TRUE(behind > d_Time(0, 0, 0));
}

// In an order for containers, what is neither less nor greater has to be equal: half a second more
// can't be nothing, or two steps of it would be nothing, too.
TEST(Odmg, SuitsOrderedContainers) {
  const std::set<d_Time> times{d_Time(10, 0, 0.0f), d_Time(10, 0, 0.75f), d_Time(10, 0, 1.5f),
                               d_Time(10, 0, 1.5f, 3, 0)};
  EXPECT_EQ(times.size(), 3U);
  const std::set<d_Date> dates{d_Date(1582, 10, 10), d_Date(1582, 10, 20), d_Date(-1, 1, 1)};
  EXPECT_EQ(dates.size(), 2U);
  const d_Date day(2000, 1, 1), next(2000, 1, 2);
  const std::set<d_Timestamp> stamps{Stamp(next, d_Time(1, 0, 0)), Stamp(day, d_Time(2, 0, 0.5f)),
                                     Stamp(day, d_Time(2, 0, 0.25f)),
                                     Stamp(day, d_Time(2, 0, 0.25f))};
  EXPECT_EQ(stamps.size(), 3U);
  EXPECT_EQ(stamps.begin()->time.hundredths, 25);
  EXPECT_TRUE(d_Interval(0, 0, 0, -1) < d_Interval(0, 0, 1) && d_Interval(1) == d_Interval(0, 24));
}

TEST(DTimestamp, MovesOnCalendarAndClock) {
  const d_Timestamp midnight = Stamp(d_Date(2000, 1, 1), d_Time(0, 0, 0));
  d_Timestamp behind(midnight);
  behind.time.tzHour = 2;
  behind.time.hour = 1;
  const struct {
    const char* name;
    d_Timestamp result;
    const char* expected;
  } rows[] = {
      {"past midnight", Stamp(d_Date(2000, 1, 31), d_Time(22, 30, 0)) + d_Interval(0, 2),
       "2000/2/1 0,0 0:30:0.0"},
      {"zone kept", Stamp(d_Date(2000, 12, 31), d_Time(23, 0, 0, 3, 30)) + d_Interval(0, 1),
       "2001/1/1 3,30 3:30:0.0"},
      {"back within the month", Stamp(d_Date(2000, 1, 15), d_Time(1, 0, 0)) - d_Interval(3, 2),
       "2000/1/11 0,0 23:0:0.0"},
      {"back by exact days goes one too far", midnight - d_Interval(2), "1999/12/29 0,0 0:0:0.0"},
      {"back", midnight - d_Interval(1, 1), "1999/12/30 0,0 23:0:0.0"},
      {"interval first", d_Interval(366) + midnight, "2001/1/1 0,0 0:0:0.0"},
      {"a wall hour below 0 is a large word", behind + d_Interval(), "2007/6/23 2,0 17:0:0.0"},
      {"hundredths", Stamp(d_Date(2000, 1, 1), d_Time(0, 0, 0.5f)) + d_Interval(),
       "2000/1/1 0,0 0:0:0.50"},
  };
  for (const auto& row : rows) EXPECT_EQ(Show(row.result), row.expected) << row.name;
  d_Timestamp stamp(midnight);
  stamp = d_Date(1990, 1, 1);
  EXPECT_EQ(Show(stamp), "1990/1/1 0,0 0:0:0.0");
  stamp = OtDateTime(OtDate(1991, 2, 3), OtTime(4, 5, 6));
  EXPECT_EQ(Show(stamp), "1991/2/3 0,0 4:5:6.0");
  EXPECT_EQ(stamp != midnight, d_Date(1991, 2, 3) != d_Date(2000, 1, 1));
  EXPECT_EQ(midnight != midnight + d_Interval(0, 0, 3), -3);
}

d_Date Day(int day) {
  return d_Date(2000, 1, static_cast<unsigned short>(day));
}
d_Time Hour(int hour, float second = 0) {
  return d_Time(static_cast<unsigned short>(hour), 0, second);
}

TEST(Overlaps, OfEveryKind) {
  const auto stamp = [](int day, int hour, float second = 0) {
    return Stamp(Day(day), Hour(hour, second));
  };
  const struct {
    const char* name;
    int overlap;
    int expected;
  } rows[] = {
      {"shared end", overlaps(Day(1), Day(10), Day(10), Day(20)), 1},
      {"apart", overlaps(Day(1), Day(10), Day(11), Day(20)), 0},
      {"apart, reversed", overlaps(Day(10), Day(1), Day(20), Day(11)), 0},
      {"within", overlaps(Day(1), Day(10), Day(3), Day(4)), 1},
      {"around", overlaps(Day(5), Day(10), Day(1), Day(20)), 1},
      {"around, reversed", overlaps(Day(10), Day(5), Day(20), Day(1)), 1},
      {"a day that never was meets its double",
       overlaps(d_Date(1582, 10, 10), d_Date(1582, 10, 10), d_Date(1582, 10, 20),
                d_Date(1582, 10, 30)),
       1},
      {"times that meet within a second",
       overlaps(Hour(9), Hour(10, 0.5f), Hour(10, 0.25f), Hour(11)), 1},
      {"times apart", overlaps(Hour(9), Hour(10), Hour(10, 1), Hour(11)), 0},
      {"stamps that share an end", overlaps(stamp(1, 9), stamp(1, 10), stamp(2, 1), stamp(1, 10)),
       1},
      {"stamps that meet within a second, but not in all bytes",
       overlaps(stamp(1, 9), stamp(1, 10, 0.25f), stamp(1, 10, 0.5f), stamp(2, 11)), 0},
      {"stamps in the same hours of other days",
       overlaps(stamp(1, 9), stamp(1, 12), stamp(2, 10), stamp(2, 11)), 0},
      {"stamps around, reversed", overlaps(stamp(3, 9), stamp(3, 8), stamp(4, 0), stamp(1, 0)), 1},
      {"one point", overlaps(stamp(1, 9), stamp(1, 9), stamp(1, 9), stamp(1, 9)), 1},
      {"stamps and dates", overlaps(stamp(2, 23), stamp(1, 0), Day(2), Day(5)), 1},
      {"stamps and dates apart", overlaps(stamp(2, 23), stamp(1, 0), Day(3), Day(5)), 0},
      {"dates and stamps", overlaps(Day(2), Day(5), stamp(6, 0), stamp(5, 23)), 1},
      {"stamps and times", overlaps(stamp(1, 9), stamp(1, 11), Hour(11), Hour(12)), 1},
      // In order as stamps, the times run from 11 down to 9, and 10 passes as lying around them.
      {"stamps and times, days apart", overlaps(stamp(2, 9), stamp(1, 11), Hour(10), Hour(10)), 1},
      {"stamps and later times", overlaps(stamp(2, 9), stamp(1, 11), Hour(12), Hour(13)), 0},
      {"times and stamps", overlaps(Hour(9), Hour(11), stamp(7, 10), stamp(9, 10)), 1},
  };
  for (const auto& row : rows) EXPECT_EQ(row.overlap, row.expected) << row.name;
}

}  // namespace
