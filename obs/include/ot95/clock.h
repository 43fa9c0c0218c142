#ifndef OT95_CLOCK_H
#define OT95_CLOCK_H

/// @file
/// Date and time of day, local and universal, from the system or from a source that a program
/// installs: a test or a reproducible run needs neither the system's clock nor its zone data.
///
/// @code
///   // 2000-02-29 00:00:00 UTC, in the zone +01:00
///   bksSetClock([] { return bksinstant{951782400000, 3600}; });
///   btime now{};
///   bksgettime(&now);                 // now.hour == 1
///   bdate today{};
///   bksgetdate(&today);               // today.day == 29
///   long minutes = bksgettimezone();  // minutes == 60
///   bksSetClock(nullptr);             // the system's clock again
/// @endcode
///
/// Every operation may be called from any thread. Each reads the clock once: a date and a time read
/// apart may lie on both sides of a midnight. Null records are passed over.

#include <cstdint>

#include "ot95/base.h"

/// A date of the Gregorian calendar.
struct bdate {
  short year;           ///< All four digits. Instants outside -32767..32767 give the nearest date.
  unsigned char month;  ///< 1 to 12.
  unsigned char day;    ///< 1 to 31.
};

/// A time of day.
struct btime {
  unsigned char hour;       ///< 0 to 23.
  unsigned char minute;     ///< 0 to 59.
  unsigned char second;     ///< 0 to 59.
  unsigned char hundredth;  ///< Hundredths of a second, 0 to 99.
  OtLong zone;              ///< Seconds that this clock is ahead of UTC (east is positive).
};

/// In place of a zone: nobody knows.
constexpr OtLong BKS_ZONE_UNKNOWN = INT32_MIN;

/// An instant, and the zone of the place that asks.
struct bksinstant {
  std::int64_t milliseconds;  ///< Since 1970-01-01 00:00:00 UTC, without leap seconds.
  OtLong zone;                ///< Seconds to add to UTC for local time then, daylight saving
                              ///< included; within a week; or BKS_ZONE_UNKNOWN.
};

/// A source of time.
using bksclock = bksinstant (*)();

/// The local date. An unknown zone counts as UTC here.
OT95_EXPORT void bksgetdate(bdate* date);

/// The local time of day with its zone; an unknown zone counts as UTC and reads 0.
OT95_EXPORT void bksgettime(btime* time);

/// Time of day and date in UTC, of one instant; the zone reads 0.
OT95_EXPORT void bksgetsystemtime(btime* time, bdate* date);

/// Minutes to add to UTC for local time now, daylight saving included, odd seconds dropped;
/// -2171, which is no zone, when it can't be told.
OT95_EXPORT long bksgettimezone();

/// Milliseconds since 1970-01-01 00:00:00 UTC.
OT95_EXPORT std::int64_t bksgetmilliseconds();

/// Installs `source` for all operations above and returns the source before; null restores the
/// system's clock and zone. The result may be handed back later to restore it.
OT95_EXPORT bksclock bksSetClock(bksclock source) noexcept;

#endif
