#ifndef OT95_ODMG_H
#define OT95_ODMG_H

/// @file
/// The temporal types of the ODMG object model: d_Date, d_Time, d_Timestamp, d_Interval, and
/// overlaps.
///
/// They stand beside OtDate, OtTime and OtDateTime (temporal.h), and differ from them in what they
/// count. The two calendars must not be mixed up:
///
/// | | OtDate | d_Date |
/// |---|---|---|
/// | Calendar | Gregorian at all times | Julian to 1582-10-04, then Gregorian from 1582-10-15 |
/// | The day behind 1582-10-04 | 1582-10-05 | 1582-10-15 |
/// | 1500-02-29 | no date | a date: Julian leap year |
/// | Weekdays count from | Monday 0 | Sunday 0 |
/// | Null, wildcards in memory | yes | no |
///
/// | | OtTime | d_Time |
/// |---|---|---|
/// | Resolution | seconds | hundredths |
/// | Zone | none | hours and minutes ahead of UTC |
///
/// @code
///   d_Date start(1582, 10, 4);
///   start += d_Interval(1);                              // start == d_Date(1582, 10, 15)
///   d_Date leap(2000, 60);                               // leap == d_Date(2000, 2, 29)
///   d_Timestamp meeting;
///   meeting = d_Date(2000, 1, 31);
///   meeting.time = d_Time(22, 30, 0.0f);
///   meeting += d_Interval(0, 2);                         // meeting.date == d_Date(2000, 2, 1)
///   d_Interval early = d_Time(9, 0, 0) - d_Time(8, 15, 0);   // early.seconds == 2700
///   int shared = overlaps(d_Time(9, 0, 0), d_Time(12, 0, 0), d_Time(12, 0, 0), d_Time(13, 0, 0));
///   bool both = shared != 0;                             // both == true
/// @endcode
///
/// An interval is one float of seconds, with 24 bits of precision: an interval of a year is exact
/// to two seconds, and one of a day to the hundredth. None of the types has a null value, and none
/// checks its fields: what is stored unchecked is carried along. A default-constructed date, time
/// or timestamp holds the present.
///
/// `operator!=` of these types is a three-way comparison, not a truth value: a signed difference,
/// with 0 for no difference. `==` and `<` and its kin are truth values, and suit containers.
///
/// Text goes through the type manager (rows 22 to 25) in the format language of temporal.h. Mind
/// two of the rows' own formats: those of d_Date and d_Timestamp have no year, so that a value that
/// is printed and scanned without a format of one's own comes back in the year 0; and an interval
/// below one day scans as one day, because the scanner knows no day 0. Give a format with "%Y":
/// @code
///   const OtTypeMgr types;
///   const d_Date day(1969, 7, 20);
///   d_Date back;
///   OtString text;
///   types.PrintToOtString(OtTypeOf<d_Date>::id, text, &day, nullptr, 1);   // text == "Sun Jul 20"
///   types.ScanFromOtString(OtTypeOf<d_Date>::id, &back, text, nullptr, 1); // back.year == 0
///   OtString full;
///   types.PrintToOtString(OtTypeOf<d_Date>::id, full, &day, "%Y-%m-%d", 1);
///   types.ScanFromOtString(OtTypeOf<d_Date>::id, &back, full, "%Y-%m-%d", 1);  // back == day
/// @endcode

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
  float seconds;  ///< Also negative. Stored bit by bit.

  /// The sum of the magnitudes; one negative argument makes the whole of it negative: (1, -1) is
  /// 25 hours back, not 23 hours forward.
  d_Interval(int day = 0, int hour = 0, int minute = 0, float second = 0);
  d_Interval operator-() const { return Of(-seconds); }

  /// An interval of that many seconds, bit by bit.
  static d_Interval Of(float seconds) {
    d_Interval interval;
    interval.seconds = seconds;
    return interval;
  }
};

// Float arithmetic on the seconds; whole numbers are converted to float first.
OT95_EXPORT d_Interval operator+(const d_Interval& a, const d_Interval& b);
OT95_EXPORT d_Interval operator-(const d_Interval& a, const d_Interval& b);
OT95_EXPORT d_Interval operator*(const d_Interval& interval, int factor);
OT95_EXPORT d_Interval operator*(int factor, const d_Interval& interval);
/// A divisor of 0 leaves the interval as it is.
OT95_EXPORT d_Interval operator/(const d_Interval& interval, int divisor);
/// Comparison of the seconds as floats. A not-a-number is neither equal nor less.
inline bool operator==(const d_Interval& a, const d_Interval& b) {
  return a.seconds == b.seconds;
}
inline bool operator!=(const d_Interval& a, const d_Interval& b) {
  return !(a == b);
}
inline bool operator<(const d_Interval& a, const d_Interval& b) {
  return a.seconds < b.seconds;
}
inline bool operator>(const d_Interval& a, const d_Interval& b) {
  return b < a;
}
inline bool operator<=(const d_Interval& a, const d_Interval& b) {
  return a.seconds <= b.seconds;
}
inline bool operator>=(const d_Interval& a, const d_Interval& b) {
  return b <= a;
}

/// A date of the Julian and Gregorian calendar. Arithmetic goes by way of a count of days, right
/// for all dates from March of year 0 on. The ten days from 1582-10-05 to 1582-10-14 don't exist;
/// as fields they can be stored, and count as the days ten days later.
class OT95_EXPORT d_Date {
 public:
  /// Weekdays as d_Date counts them. (OtDaysOfTheWeek starts with Monday.)
  enum Weekday : int { Sunday, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

  std::int16_t year;  ///< Also zero and negative.
  signed char month;  ///< 1 to 12 in a valid date.
  signed char day;    ///< 1 to the month's length in a valid date.

  /// Today, by the local clock.
  d_Date();
  /// @param dayOfYear 1 is January 1; larger and smaller values reach other years.
  d_Date(short year, unsigned short dayOfYear);
  /// The fields, cut to their widths and not checked.
  d_Date(short year, unsigned short month, unsigned short day);
  // The year, month and day of another value, as they are: the same day only from 1582-10-15 on.
  d_Date(const d_Timestamp& other);
  d_Date(const OtDate& other);
  d_Date(const OtDateTime& other) : d_Date(other.date) {}
  d_Date(const d_Date&) = default;
  d_Date& operator=(const d_Date&) = default;
  d_Date& operator=(const d_Timestamp& other) { return *this = d_Date(other); }
  d_Date& operator=(const OtDate& other) { return *this = d_Date(other); }
  d_Date& operator=(const OtDateTime& other) { return *this = d_Date(other); }

  /// 1 for January 1, 366 for December 31 of a leap year.
  unsigned short day_of_year() const;
  /// The weekday; negative for dates before the beginning of the day count.
  Weekday day_of_week() const;
  /// Today, by the local clock.
  static d_Date current() { return d_Date(); }

  /// Moves to the next such weekday after this date, a full week on from the same one, and returns
  /// this object.
  d_Date& next(Weekday weekday);
  /// Moves to the last such weekday before this date, and returns this object.
  d_Date& previous(Weekday weekday);

  // By the whole days of the interval; what is left of it is dropped, so that 23 hours move
  // nothing.
  d_Date& operator+=(const d_Interval& interval);
  d_Date& operator-=(const d_Interval& interval);
  // One day on or back; postfix only.
  d_Date operator++(int);
  d_Date operator--(int);

  /// Days of this date's month.
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

// By whole days, as += and -=.
OT95_EXPORT d_Date operator+(const d_Date& date, const d_Interval& interval);
OT95_EXPORT d_Date operator+(const d_Interval& interval, const d_Date& date);
OT95_EXPORT d_Date operator-(const d_Date& date, const d_Interval& interval);
/// Three-way comparison, not a truth value: the days from `b` to `a`. There are no wildcards.
OT95_EXPORT int operator!=(const d_Date& a, const d_Date& b);
// Comparison by the count of days.
inline bool operator==(const d_Date& a, const d_Date& b) {
  return (a != b) == 0;
}
inline bool operator<(const d_Date& a, const d_Date& b) {
  return (a != b) < 0;
}
inline bool operator>(const d_Date& a, const d_Date& b) {
  return b < a;
}
inline bool operator<=(const d_Date& a, const d_Date& b) {
  return !(b < a);
}
inline bool operator>=(const d_Date& a, const d_Date& b) {
  return !(a < b);
}

/// A time of day with a zone and hundredths of a second.
///
/// `hour` and `minute` are ahead of the wall clock by the zone: 10:30 in a zone of 2 hours is
/// held as hour 12, minute 30, tzHour 2. Printing and comparison take the zone away again; the
/// stored form is the six bytes as they are, zone first, and orders by them.
class OT95_EXPORT d_Time {
 public:
  /// A zone as its offset in hours.
  enum Time_Zone : int {};

  signed char tzHour;      ///< Zone offset, hours.
  signed char tzMinute;    ///< Zone offset, minutes.
  signed char hour;        ///< Wall clock plus tzHour.
  signed char minute;      ///< Wall clock plus tzMinute.
  signed char second;      ///< 0 to 59 in a valid time.
  signed char hundredths;  ///< 0 to 99 in a valid time.

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
  /// In the default zone, whose hours are added to `hour`; without hundredths.
  d_Time(const OtTime& other);
  d_Time(const OtDateTime& other) : d_Time(other.time) {}
  d_Time(const d_Timestamp& other);
  d_Time(const d_Time&) = default;
  d_Time& operator=(const d_Time&) = default;
  d_Time& operator=(const d_Timestamp& other) { return *this = d_Time(other); }
  /// Unlike the constructor, assignment doesn't add the default zone to the hour.
  d_Time& operator=(const OtTime& other);
  d_Time& operator=(const OtDateTime& other) { return *this = other.time; }

  /// @param zone hours ahead of UTC, as `d_Time::Time_Zone(2)`.
  static void set_default_Time_Zone(Time_Zone zone) { default_Time_Zone = zone; }
  /// Takes the zone of the clock, unless that is 0.
  static void set_default_Time_Zone_to_local();
  /// The present local time in the default zone.
  static d_Time current();

  /// Moves within a day, to the hundredth, and wraps at midnight; the zone is kept.
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
/// Three-way comparison of wall clocks, not a truth value: the difference in hours as unsigned
/// 16-bit numbers, or else in minutes, or else in whole seconds. Times less than a second apart
/// give 0: 10:00:00.25 and 10:00:00.75 do, and so this alone can't order a container.
OT95_EXPORT int operator!=(const d_Time& a, const d_Time& b);
/// The same order by wall clocks, to the hundredth: an order for containers. Equal is what has the
/// same wall clock, in whatever zone.
OT95_EXPORT bool operator<(const d_Time& a, const d_Time& b);
inline bool operator==(const d_Time& a, const d_Time& b) {
  return !(a < b) && !(b < a);
}
inline bool operator>(const d_Time& a, const d_Time& b) {
  return b < a;
}
inline bool operator<=(const d_Time& a, const d_Time& b) {
  return !(b < a);
}
inline bool operator>=(const d_Time& a, const d_Time& b) {
  return !(a < b);
}

/// A point of time: a date and a time with its zone.
class OT95_EXPORT d_Timestamp {
 public:
  d_Date date;  ///< Julian or Gregorian, as d_Date has it.
  d_Time time;  ///< With zone and hundredths.

  /// Now, by the local clock, in the default zone.
  d_Timestamp() = default;
  d_Timestamp(const d_Timestamp&) = default;
  d_Timestamp& operator=(const d_Timestamp&) = default;
  /// Replaces the date and keeps the time.
  d_Timestamp& operator=(const d_Date& other) {
    date = other;
    return *this;
  }
  /// Date and time; as with d_Time's assignment, the default zone isn't added to the hour.
  d_Timestamp& operator=(const OtDateTime& other);

  /// Now, by the local clock, in the default zone.
  static d_Timestamp current();

  /// Moves on calendar and clock. The zone is kept, and so is what the wall clock shows of it.
  d_Timestamp& operator+=(const d_Interval& interval);
  d_Timestamp& operator-=(const d_Interval& interval);
};

OT95_EXPORT d_Timestamp operator+(const d_Timestamp& stamp, const d_Interval& interval);
OT95_EXPORT d_Timestamp operator+(const d_Interval& interval, const d_Timestamp& stamp);
OT95_EXPORT d_Timestamp operator-(const d_Timestamp& stamp, const d_Interval& interval);
/// Three-way comparison, not a truth value: that of the dates, or else that of the times.
OT95_EXPORT int operator!=(const d_Timestamp& a, const d_Timestamp& b);
// Comparison by date, then by time to the hundredth.
inline bool operator==(const d_Timestamp& a, const d_Timestamp& b) {
  return a.date == b.date && a.time == b.time;
}
inline bool operator<(const d_Timestamp& a, const d_Timestamp& b) {
  return a.date == b.date ? a.time < b.time : a.date < b.date;
}
inline bool operator>(const d_Timestamp& a, const d_Timestamp& b) {
  return b < a;
}
inline bool operator<=(const d_Timestamp& a, const d_Timestamp& b) {
  return !(b < a);
}
inline bool operator>=(const d_Timestamp& a, const d_Timestamp& b) {
  return !(a < b);
}

static_assert(sizeof(d_Date) == 4 && sizeof(d_Time) == 6 && sizeof(d_Timestamp) == 10 &&
                  sizeof(d_Interval) == 4,
              "the memory lengths of the type table");

/// 1 when the periods from `a1` to `a2` and from `b1` to `b2`, ends included, have a point in
/// common, else 0. The ends of a period may come in either order. Mixed forms compare the date or
/// the time of the timestamps. Periods that meet in one point overlap:
///
///     a1 |=======| a2                1
///                | b1 =====| b2
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
