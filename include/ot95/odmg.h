#ifndef OT95_ODMG_H
#define OT95_ODMG_H

/// @file
/// The temporal types of the ODMG object model: d_Date, d_Time, d_Timestamp, d_Interval, and
/// overlaps.
///
/// d_Date counts the Julian calendar up to 1582-10-04 and the Gregorian from 1582-10-15 on. d_Time
/// has a zone and hundredths. An interval is one float of seconds, with 24 bits of precision: an
/// interval of a year is exact to two seconds. None of them has a null value or checks its fields.
/// @code
///   d_Date start(1582, 10, 4);
///   start += d_Interval(1);                              // 1582-10-15
///   d_Timestamp meeting;
///   meeting = d_Date(2000, 1, 31);
///   meeting.time = d_Time(22, 30, 0.0f);
///   meeting += d_Interval(0, 2);                         // 2000-02-01 00:30
///   overlaps(d_Time(9, 0, 0), d_Time(12, 0, 0), d_Time(12, 0, 0), d_Time(13, 0, 0));  // 1
/// @endcode
///
/// `operator!=` of these types is a three-way comparison that returns a signed difference, with 0
/// for no difference.

#include <cstdint>

#include "ot95/base.h"
#include "ot95/temporal.h"

class d_Date;
class d_Timestamp;
namespace ot95 {
struct DayCount;
}

/// A signed span of time.
class OT95_EXPORT d_Interval {
 public:
  float seconds;

  /// The sum of the magnitudes; one negative argument makes the whole of it negative.
  d_Interval(int day = 0, int hour = 0, int minute = 0, float second = 0);
  d_Interval operator-() const { return Of(-seconds); }

  /// An interval of that many seconds, bit by bit.
  static d_Interval Of(float seconds) {
    d_Interval interval;
    interval.seconds = seconds;
    return interval;
  }
};

OT95_EXPORT d_Interval operator+(const d_Interval& a, const d_Interval& b);
OT95_EXPORT d_Interval operator-(const d_Interval& a, const d_Interval& b);
OT95_EXPORT d_Interval operator*(const d_Interval& interval, int factor);
OT95_EXPORT d_Interval operator*(int factor, const d_Interval& interval);
/// A divisor of 0 leaves the interval as it is.
OT95_EXPORT d_Interval operator/(const d_Interval& interval, int divisor);

/// A date of the Julian and Gregorian calendar.
class OT95_EXPORT d_Date {
 public:
  /// Weekdays as d_Date counts them. (OtDaysOfTheWeek starts with Monday.)
  enum Weekday : int { Sunday, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

  std::int16_t year;
  signed char month;  ///< 1 to 12 in a valid date.
  signed char day;    ///< 1 to the month's length in a valid date.

  /// Today, by the local clock.
  d_Date();
  /// @param dayOfYear 1 is January 1; larger and smaller values reach other years.
  d_Date(short year, unsigned short dayOfYear);
  /// The fields, cut to their widths.
  d_Date(short year, unsigned short month, unsigned short day);
  d_Date(const d_Timestamp& other);
  d_Date(const OtDate& other);
  d_Date(const OtDateTime& other) : d_Date(other.date) {}
  d_Date(const d_Date&) = default;
  d_Date& operator=(const d_Date&) = default;
  d_Date& operator=(const d_Timestamp& other) { return *this = d_Date(other); }
  d_Date& operator=(const OtDate& other) { return *this = d_Date(other); }
  d_Date& operator=(const OtDateTime& other) { return *this = d_Date(other); }

  unsigned short day_of_year() const;  ///< 1 for January 1.
  /// The weekday; negative for dates before the beginning of the day count.
  Weekday day_of_week() const;
  static d_Date current() { return d_Date(); }

  /// Moves to the next such weekday after this date, and returns this object.
  d_Date& next(Weekday weekday);
  /// Moves to the last such weekday before this date, and returns this object.
  d_Date& previous(Weekday weekday);

  // By the whole days of the interval; what is left of it is dropped.
  d_Date& operator+=(const d_Interval& interval);
  d_Date& operator-=(const d_Interval& interval);
  d_Date operator++(int);
  d_Date operator--(int);

  unsigned short days_in_month() const;
  /// 0 for a month that doesn't exist. Leap years are Julian before 1600.
  static unsigned short days_in_month(short year, unsigned short month);

 private:
  friend struct ot95::DayCount;
  /// Days on a line on which 2000-01-01 is 2451544: one less than the Julian Day Number. The ten
  /// days that the reform left out share the counts of those ten days later.
  long getAbsDate() const;
  void setAbsDate(long count);
  d_Date& Move(std::int64_t days);
};

OT95_EXPORT d_Date operator+(const d_Date& date, const d_Interval& interval);
OT95_EXPORT d_Date operator+(const d_Interval& interval, const d_Date& date);
OT95_EXPORT d_Date operator-(const d_Date& date, const d_Interval& interval);
/// The days from `b` to `a`.
OT95_EXPORT int operator!=(const d_Date& a, const d_Date& b);

/// A time of day with a zone and hundredths of a second. `hour` and `minute` are ahead of the wall
/// clock by the zone.
class OT95_EXPORT d_Time {
 public:
  /// A zone as its offset in hours.
  enum Time_Zone : int {};

  signed char tzHour;    ///< Zone offset, hours.
  signed char tzMinute;  ///< Zone offset, minutes.
  signed char hour;
  signed char minute;
  signed char second;
  signed char hundredths;

  /// Zone of new values, of which the low byte counts. To be set at start-up.
  static Time_Zone default_Time_Zone;

  /// The present local time in the default zone.
  d_Time();
  /// In the default zone, whose hours are added to `hour`.
  d_Time(unsigned short hour, unsigned short minute, float second);
  /// In the given zone, which is added to `hour` and `minute`.
  d_Time(unsigned short hour, unsigned short minute, float second, short tzHour, short tzMinute);
  /// From a count of seconds, cut to 32 bits. It isn't reduced to one day.
  d_Time(long seconds);
  template <class Number, class = ot95::IfNumber<Number>>
  d_Time(Number seconds) : d_Time(static_cast<long>(seconds)) {}
  d_Time(const OtTime& other);
  d_Time(const OtDateTime& other) : d_Time(other.time) {}
  d_Time(const d_Timestamp& other);
  d_Time(const d_Time&) = default;
  d_Time& operator=(const d_Time&) = default;
  d_Time& operator=(const d_Timestamp& other) { return *this = d_Time(other); }
  /// Unlike the constructor, assignment doesn't add the default zone to the hour.
  d_Time& operator=(const OtTime& other);
  d_Time& operator=(const OtDateTime& other) { return *this = other.time; }

  static void set_default_Time_Zone(Time_Zone zone) { default_Time_Zone = zone; }
  /// Takes the zone of the clock, unless that is 0.
  static void set_default_Time_Zone_to_local();
  static d_Time current();

  /// Moves within a day; the zone is kept.
  d_Time& operator+=(const d_Interval& interval);
  /// As `+=`, but this time's hundredths are dropped first.
  d_Time& operator-=(const d_Interval& interval);
};

/// A new time in the same zone. As that zone is added to hour and minute once more, seen from the
/// wall clock it moves by the interval and the zone.
OT95_EXPORT d_Time operator+(const d_Time& time, const d_Interval& interval);
OT95_EXPORT d_Time operator+(const d_Interval& interval, const d_Time& time);
OT95_EXPORT d_Time operator-(const d_Time& time, const d_Interval& interval);
/// The span from `b` to `a`, without regard to zones and hundredths.
OT95_EXPORT d_Interval operator-(const d_Time& a, const d_Time& b);
/// Compares wall clocks: the difference in hours as unsigned 16-bit numbers, or else in minutes, or
/// else in whole seconds.
OT95_EXPORT int operator!=(const d_Time& a, const d_Time& b);

/// A point of time.
class OT95_EXPORT d_Timestamp {
 public:
  d_Date date;
  d_Time time;

  /// Now, by the local clock.
  d_Timestamp() = default;
  d_Timestamp(const d_Timestamp&) = default;
  d_Timestamp& operator=(const d_Timestamp&) = default;
  /// Replaces the date and keeps the time.
  d_Timestamp& operator=(const d_Date& other) {
    date = other;
    return *this;
  }
  d_Timestamp& operator=(const OtDateTime& other);

  static d_Timestamp current();

  /// Moves on calendar and clock.
  d_Timestamp& operator+=(const d_Interval& interval);
  d_Timestamp& operator-=(const d_Interval& interval);
};

OT95_EXPORT d_Timestamp operator+(const d_Timestamp& stamp, const d_Interval& interval);
OT95_EXPORT d_Timestamp operator+(const d_Interval& interval, const d_Timestamp& stamp);
OT95_EXPORT d_Timestamp operator-(const d_Timestamp& stamp, const d_Interval& interval);
OT95_EXPORT int operator!=(const d_Timestamp& a, const d_Timestamp& b);

static_assert(sizeof(d_Date) == 4 && sizeof(d_Time) == 6 && sizeof(d_Timestamp) == 10 &&
                  sizeof(d_Interval) == 4,
              "the memory lengths of the type table");

/// 1 when the periods from `a1` to `a2` and from `b1` to `b2`, ends included, have a point in
/// common, else 0. The ends of a period may come in either order. Mixed forms compare the date or
/// the time of the timestamps.
OT95_EXPORT int overlaps(const d_Date& a1, const d_Date& a2, const d_Date& b1, const d_Date& b2);
OT95_EXPORT int overlaps(const d_Time& a1, const d_Time& a2, const d_Time& b1, const d_Time& b2);
/// Here ends that meet within one second, but not in all fields, don't overlap.
OT95_EXPORT int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Timestamp& b1,
                         const d_Timestamp& b2);
OT95_EXPORT int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Date& b1,
                         const d_Date& b2);
OT95_EXPORT int overlaps(const d_Date& a1, const d_Date& a2, const d_Timestamp& b1,
                         const d_Timestamp& b2);
OT95_EXPORT int overlaps(const d_Timestamp& a1, const d_Timestamp& a2, const d_Time& b1,
                         const d_Time& b2);
OT95_EXPORT int overlaps(const d_Time& a1, const d_Time& a2, const d_Timestamp& b1,
                         const d_Timestamp& b2);

/// Comparers of the rows d_Date, d_Time and d_Timestamp. Only the sign of a result counts. In disk
/// forms, the second date can hold wildcards, unless bit 0x10 of `cmpOp` is set, and times compare
/// by their bytes, with the zone first.
OT95_EXPORT long d_DateCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);
OT95_EXPORT long d_TimeCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);
OT95_EXPORT long d_TimestampCompare(unsigned char format, unsigned long length1, void* value1,
                                    unsigned long length2, void* value2, unsigned short cmpOp,
                                    unsigned long count, int& status);

#endif
