// Every day of both calendars.
#include "temporal/calendar_walk.h"

namespace {

TEST(EveryDay, OfTheProlepticCalendar) {
  cases::WalkProlepticDays(1);
}

TEST(EveryDay, OfTheReformedCalendar) {
  cases::WalkReformedDays(32767);
}

}  // namespace
