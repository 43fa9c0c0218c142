// Clock, faults and versions of the base services.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "ot95/clock.h"
#include "ot95/fault.h"
#include "ot95/version.h"

namespace {

bksinstant setInstant;

bksinstant ReadSetInstant() {
  return setInstant;
}

std::string Text(const bdate& date, const btime& time) {
  char text[80];
  std::snprintf(text, sizeof text, "%d-%02u-%02u %02u:%02u:%02u.%02u %ld", date.year, date.month,
                date.day, time.hour, time.minute, time.second, time.hundredth, long{time.zone});
  return text;
}

TEST(Clock, ShowsTheInstantLocallyAndInUtc) {
  const struct {
    const char* name;
    bksinstant instant;
    const char* local;
    const char* utc;
    long minutes;
  } rows[] = {
      {"epoch", {0, 0}, "1970-01-01 00:00:00.00 0", "1970-01-01 00:00:00.00 0", 0},
      {"leap day east",
       {951782400999, 3600},
       "2000-02-29 01:00:00.99 3600",
       "2000-02-29 00:00:00.99 0",
       60},
      {"no leap day in 2100, west",
       {4107542400000, -3600},
       "2100-02-28 23:00:00.00 -3600",
       "2100-03-01 00:00:00.00 0",
       -60},
      {"just before the epoch", {-1, 0}, "1969-12-31 23:59:59.99 0", "1969-12-31 23:59:59.99 0", 0},
      {"beyond 2038",
       {4102444800000, 20700},
       "2100-01-01 05:45:00.00 20700",
       "2100-01-01 00:00:00.00 0",
       345},
      {"odd seconds west",
       {0, -1172},
       "1969-12-31 23:40:28.00 -1172",
       "1970-01-01 00:00:00.00 0",
       -19},
      {"unknown zone",
       {0, BKS_ZONE_UNKNOWN},
       "1970-01-01 00:00:00.00 0",
       "1970-01-01 00:00:00.00 0",
       -2171},
      {"end of time",
       {INT64_MAX, INT32_MAX},
       "32767-12-31 23:59:59.80 604800",
       "32767-12-31 23:59:59.80 0",
       10080},
      {"start of time",
       {INT64_MIN, -INT32_MAX},
       "-32767-01-01 00:00:00.19 -604800",
       "-32767-01-01 00:00:00.19 0",
       -10080},
  };
  const bksclock before = bksSetClock(ReadSetInstant);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    setInstant = row.instant;
    bdate date{};
    btime time{};
    bksgetdate(&date);
    bksgettime(&time);
    EXPECT_EQ(Text(date, time), row.local);
    bksgetsystemtime(&time, &date);
    EXPECT_EQ(Text(date, time), row.utc);
    EXPECT_EQ(bksgettimezone(), row.minutes);
    EXPECT_EQ(bksgetmilliseconds(), row.instant.milliseconds);
  }
  bksgetdate(nullptr);
  bksgettime(nullptr);
  bksgetsystemtime(nullptr, nullptr);
  EXPECT_EQ(bksSetClock(before), ReadSetInstant);
}

// Nothing is known of the system's time but that it has a zone.
TEST(Clock, NullRestoresTheSystem) {
  const bksclock system = bksSetClock(ReadSetInstant);
  EXPECT_EQ(bksSetClock(nullptr), ReadSetInstant);
  EXPECT_EQ(bksSetClock(nullptr), system);
  EXPECT_NE(system().zone, BKS_ZONE_UNKNOWN);
}

std::string lastFault;

void NoteFault(const char* expression, const char* file, unsigned long line) {
  lastFault = std::string(file) + ":" + std::to_string(line) + " " + expression;
}

TEST(Fault, AssertionReportsOneLineAndReturns) {
  const struct {
    const char* expression;
    const char* file;
    const char* report;
  } rows[] = {
      {"0 && \"100%s\"", "otint64", "otint64:737: assertion failed: 0 && \"100%s\"\n"},
      {nullptr, nullptr, "(unknown):737: assertion failed: (unknown)\n"},
  };
  for (const auto& row : rows) {
    testing::internal::CaptureStderr();
    OTDB_assert(row.expression, row.file, 737);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.report);
  }
}

TEST(Fault, HandlersAreReplacedAndRestored) {
  const OtAssertHandler first = OTDB_SetAssertHandler(NoteFault);
  OTDB_assert("x > 0", "otstring", 12);
  EXPECT_EQ(lastFault, "otstring:12 x > 0");
  EXPECT_EQ(OTDB_SetAssertHandler(nullptr), NoteFault);
  EXPECT_EQ(OTDB_SetAssertHandler(first), first);

  const OtMemoryHandler none =
      OtSetMemoryHandler([](unsigned long size) { return int(size == 7); });
  EXPECT_EQ(OtCallMemoryHandler(7), 1);
  EXPECT_EQ(OtCallMemoryHandler(8), 0);
  OtSetMemoryHandler(nullptr);
  EXPECT_EQ(OtCallMemoryHandler(7), 0);
  EXPECT_EQ(OtSetMemoryHandler(nullptr), none);
}

TEST(Version, MatchesThisReleaseOnly) {
  EXPECT_EQ(CheckOtVersionNumber(9, 5, 26, 340, 0, 3), 0);
  EXPECT_EQ(CheckOtVersionNumber(9, 5, 26, 340, 0, -1), 0);
  EXPECT_EQ(CheckOtVersionNumber(8, 5, 26, 340, 0, 3), 1);
  EXPECT_EQ(CheckOtVersionNumber(9, 6, 26, 340, 1, 3), 2);
  EXPECT_EQ(CheckOtVersionNumber(9, 5, 26, 340, 1, 3), 5);
}

}  // namespace
