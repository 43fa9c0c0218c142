#ifndef OT95_TEMPORAL_H
#define OT95_TEMPORAL_H

/// @file
/// OtDate, OtTime and OtDateTime: calendar dates, clock times to the second, and both in one.
///
/// All three are small records of fields, not counters, and hold whatever fields they are given:
/// only IsDate, IsTime and IsDaTime check them. Fields wrap at their widths without a word.
///
///     OtDate      | year (2) | month | day |                             4 bytes
///     OtTime                               | hour | minute | second |    3 bytes
///     OtDateTime  | year (2) | month | day | hour | minute | second |    7 stored, 8 in memory
///
/// The calendar is the proleptic Gregorian one: it counts back before 1582 as if it had always been
/// in use. (d_Date in odmg.h has the Julian calendar there.) Days are counted by Julian Day
/// Numbers:
///
/// | Date | Day number | Is |
/// |---|---|---|
/// | -4713-11-24 | 0 | the date that an empty text converts to |
/// | 1582-10-04 | 2299150 | the day before 1582-10-05 |
/// | 1970-01-01 | 2440588 | |
/// | 2000-01-01 | 2451545 | a Saturday |
/// | 32767-12-31 | 13689325 | the last day that fits |
///
/// A default-constructed value reads the clock: it is the present, neither null nor zero.
/// @code
///   OtDate due(2000, 1, 31);
///   due += 30;                                  // due == OtDate(2000, 3, 1)
///   long left = OtDate(2000, 12, 25) - due;     // left == 299
///   OtString text;
///   due.PrintToOtString(text, "%a %e.%b %Y");   // text == "Wed 01.Mar 2000"
///   OtDate back(0);
///   back.ScanFromOtString(text, "%a %e.%b %Y"); // back == due
///   OtTime clock(23, 59, 59);
///   ++clock;                                    // clock == OtTime(0, 0, 0)
///   OtDateTime end(OtDate(2000, 12, 31), OtTime(23, 59, 59));
///   end.AddSeconds(1);                          // end.date == OtDate(2001, 1, 1)
/// @endcode
///
/// A field of -1 in a date is a wildcard for ordering: it agrees with every value.
/// @code
///   const OtDate may17(2000, 5, 17), anyYear(-1, 5, 17);
///   int order = may17 != anyYear;               // order == 0
///   bool equal = may17 == anyYear;              // equal == false
/// @endcode
///
/// `operator!=` is a three-way comparison, not a truth value: negative, 0 or positive.
///
/// The format language of printing and scanning, which the types of odmg.h share:
/// | Directive | Stands for | Scanned |
/// |---|---|---|
/// | `%Y` `%y` | The year in four digits; in two | 4 characters; 2, as 1900 to 1999 |
/// | `%m` `%B` `%b` | The month as a number; its name; the first three letters of it | 2; a name |
/// | `%d` `%e` | The day of the month in two digits | 2 |
/// | `%A` `%a` | The weekday's name; the first three letters of it | a name, not kept |
/// | `%H` `%I` | The hour; the hour of a 12-hour clock | 2 |
/// | `%M` `%S` | Minute; second | 2 |
/// | `%p` `%P` | "am" or "pm"; "AM" or "PM" | 2, by its first letter |
/// | `%%` | A percent sign | 1 |
///
/// Names are English but for "Januar" and "Februar". A directive that isn't in the table prints its
/// letter. `%I` prints 12-hour numbers as people write them only where the format has `%p` or `%P`;
/// without one it prints 00 to 12, and the half of the day is lost.
///
/// Scanning goes by position: it takes numbers of these widths, skips one character of text for
/// every other character of the format without comparing it, and accepts names in full or cut to
/// three letters, in their own case. Fields that the format doesn't name are 0000-01-01 00:00:00: a
/// format without a year loses it. It reports no failure; what isn't a valid value becomes
/// 0000-01-01 00:00:00 as a whole, and a text that begins with the null text becomes null.

#include <cstdint>
#include <type_traits>

#include "ot95/base.h"

class OtDateTime;
class OtInt64;
class OtString;

namespace ot95 {

/// Lets every type of number in where a parameter is meant as `long`. The operators of dates and
/// times would else be ambiguous with those of `long`, to which both convert.
template <class Number>
using IfNumber = std::enable_if_t<std::is_convertible_v<Number, long> && !std::is_class_v<Number>>;

}  // namespace ot95

/// Weekdays as OtDate counts them. (d_Date::Weekday starts with Sunday.)
enum OtDaysOfTheWeek : int {
  OtMonday,
  OtTuesday,
  OtWednesday,
  OtThursday,
  OtFriday,
  OtSaturday,
  OtSunday
};

/// A calendar date. A field of -1 is a wildcard for the ordering operators, not for `==`; dates
/// that have one are no keys for a std::map. In disk forms, wildcards count in the second operand
/// only.
class OT95_EXPORT OtDate {
 public:
  std::int16_t year;  ///< Also zero and negative.
  signed char month;  ///< 1 to 12 in a valid date.
  signed char day;    ///< 1 to the month's length in a valid date.

  /// Today, by the local clock.
  OtDate() { Today(); }
  /// From a day number, cut to 32 bits; see dateabs.
  OtDate(long dayNumber) { dateabs(dayNumber); }
  template <class Number, class = ot95::IfNumber<Number>>
  OtDate(Number dayNumber) : OtDate(static_cast<long>(dayNumber)) {}
  /// The fields, cut to their widths and not checked.
  constexpr OtDate(int y, int m, int d)
      : year(static_cast<std::int16_t>(y)),
        month(static_cast<signed char>(m)),
        day(static_cast<signed char>(d)) {}

  /// Becomes today, by the local clock.
  OtDate& Today();
  /// The day number; see dayabs. A date thus takes part in arithmetic as a number of days: cast it
  /// where you mean the number.
  constexpr operator long() const { return dayabs(); }

  // Arithmetic in days, by way of the day number, modulo 2^32. A year beyond 16 bits wraps.
  OtDate operator+(long days) const;
  OtDate operator-(long days) const;
  template <class Number, class = ot95::IfNumber<Number>>
  OtDate operator+(Number days) const {
    return *this + static_cast<long>(days);
  }
  template <class Number, class = ot95::IfNumber<Number>>
  OtDate operator-(Number days) const {
    return *this - static_cast<long>(days);
  }
  long operator-(const OtDate& other) const { return dayabs() - other.dayabs(); }
  OtDate& operator+=(long days) { return *this = *this + days; }
  OtDate& operator-=(long days) { return *this = *this - days; }
  template <class Number, class = ot95::IfNumber<Number>>
  OtDate& operator+=(Number days) {
    return *this = *this + days;
  }
  template <class Number, class = ot95::IfNumber<Number>>
  OtDate& operator-=(Number days) {
    return *this = *this - days;
  }
  OtDate& operator++() { return *this += 1; }
  OtDate& operator--() { return *this -= 1; }

  /// All fields are equal. A wildcard equals only itself here.
  constexpr bool operator==(const OtDate& other) const {
    return year == other.year && month == other.month && day == other.day;
  }
  /// Three-way comparison, not a truth value: the difference of the first fields that differ, or
  /// 0. A field that is -1 on either side is passed over.
  constexpr int operator!=(const OtDate& other) const {
    if (int years = FieldDifference(year, other.year)) return years;
    if (int months = FieldDifference(month, other.month)) return months;
    return FieldDifference(day, other.day);
  }
  constexpr bool operator<(const OtDate& other) const { return (*this != other) < 0; }
  constexpr bool operator>(const OtDate& other) const { return (*this != other) > 0; }
  constexpr bool operator<=(const OtDate& other) const { return (*this != other) <= 0; }
  constexpr bool operator>=(const OtDate& other) const { return (*this != other) >= 0; }

  /// The weekday. Right from 0000-03-01 to 4600-02-28; farther off it can fall to Sunday.
  OtDaysOfTheWeek DayOfTheDate() const;
  /// The weekday's English name.
  OtString PrintDayOfTheDate() const;
  /// Whether the fields name a day of the calendar. The year is not restricted.
  constexpr bool IsDate() const {
    if (day < 1 || day > 31 || month < 1 || month > 12) return false;
    return (day <= 28 && year >= -4799) || daynxtmonth() > 0;
  }
  constexpr bool IsLastDayOfTheMonth() const { return daynxtmonth() == 1; }

  /// The Julian Day Number: 2451545 for 2000-01-01. Month 13 is January of the next year.
  constexpr long dayabs() const { return DayNumber(year, month, day); }
  /// Sets the fields from a day number, cut to 32 bits, and returns this object. It reverses
  /// dayabs for the years from -4799 on.
  OtDate& dateabs(long dayNumber) {
    const OtLong n = static_cast<OtLong>(dayNumber);
    return n >= firstMirrored && n <= lastMirrored ? SetMirrored(n) : SetByFormula(n);
  }
  /// Days from this date to the first of the next month.
  constexpr long daynxtmonth() const { return DayNumber(year, month + 1, 1) - dayabs(); }

  constexpr bool IsNullValue() const { return *this == OtDate(-32768, -128, -128); }
  /// Makes it null; returns 0.
  int SetNullValue() {
    *this = OtDate(-32768, -128, -128);
    return 0;
  }

  /// Appends the date to `out`; a null date replaces the text of `out` by the null text.
  /// @param format null means "%Y-%m-%d". Directives of the clock print the present time.
  void PrintToOtString(OtString& out, const char* format) const;
  /// Parses `text`; the null text at its beginning gives the null date. What isn't a valid date
  /// becomes 0000-01-01. A null `format` means "%Y-%m-%d".
  void ScanFromOtString(const OtString& text, const char* format);

 protected:
  /// Quotient of the magnitudes, negative when one operand is; 0 for a divisor of 0.
  long divide(long a, long b) const;
  /// Remainder of the magnitudes, negative when one operand is; 0 for a divisor of 0.
  long modulo(long a, long b) const;

 private:
  static constexpr int FieldDifference(int a, int b) { return a == -1 || b == -1 ? 0 : a - b; }

  static constexpr int DayNumber(int year, int month, int day);
  /// Days of the years from -4799 to 32767, between which dayabs and dateabs mirror each other.
  static constexpr OtLong firstMirrored = -31738;
  static constexpr OtLong lastMirrored = 13689325;
  OtDate& SetMirrored(OtLong dayNumber);
  OtDate& SetByFormula(OtLong dayNumber);
};

// The conversions are inline: queries run them by the million.

// The divisions of this formula truncate. That is what makes January and February, months outside
// the year, and years before -4799 come out as they always have. Where no term is negative, the
// same is done in unsigned numbers; 979 / 32 is close enough to 367 / 12 for twelve months.
constexpr int OtDate::DayNumber(int year, int month, int day) {
  if (month >= 1 && month <= 13 && year >= -4799) {
    const unsigned winter = month < 3;
    const unsigned y = static_cast<unsigned>(year + 4800) - winter;
    const unsigned m = static_cast<unsigned>(month - 2) + 12 * winter;
    const unsigned century = y / 100;
    const unsigned days = y * 1461 / 4 - century + century / 4 + (979 * m - 1) / 32;
    return static_cast<int>(days) + day - 32075;
  }
  const int a = (month - 14) / 12;
  const int y = year + a + 4800;
  return y * 1461 / 4 + day - 32075 + (month - 2 - 12 * a) * 367 / 12 - (y + 100) / 100 * 3 / 4;
}

// Years begin in March here, so that the leap day comes last, and are counted from -4800. The
// product with a scaled reciprocal yields a quotient and a remainder at once.
inline OtDate& OtDate::SetMirrored(OtLong dayNumber) {
  constexpr int epoch = -32044;  // -4800-03-01
  const std::uint32_t quarters = 4 * static_cast<std::uint32_t>(dayNumber - epoch) + 3;
  const std::uint32_t century = quarters / 146097;

  // 2939745 / 2^32 is 4 / 1461, close enough for the days of a century.
  const std::uint64_t product = std::uint64_t{2939745} * (quarters % 146097 | 3);
  const std::uint32_t yearOfCentury = static_cast<std::uint32_t>(product >> 32);
  const std::uint32_t dayOfYear = static_cast<std::uint32_t>(product) / 2939745 / 4;

  // 2141 / 2^16 is 5 / 153, five months to 153 days; 197913 starts the count with month 3.
  const std::uint32_t scaled = 2141 * dayOfYear + 197913;
  const std::uint32_t nextYear = dayOfYear >= 306;
  year = static_cast<std::int16_t>(100 * century + yearOfCentury + nextYear - 4800);
  month = static_cast<signed char>((scaled >> 16) - 12 * nextYear);
  day = static_cast<signed char>((scaled & 0xffff) / 2141 + 1);
  return *this;
}

/// A time of day, without fractions and zone.
class OT95_EXPORT OtTime {
 public:
  signed char hour;    ///< 0 to 23 in a valid time.
  signed char minute;  ///< 0 to 59 in a valid time.
  signed char second;  ///< 0 to 59 in a valid time.

  /// The present local time.
  OtTime() { Now(); }
  /// From a count of seconds, cut to 32 bits. It isn't reduced to one day: 90000 gives the hour 25.
  OtTime(long seconds);
  template <class Number, class = ot95::IfNumber<Number>>
  OtTime(Number seconds) : OtTime(static_cast<long>(seconds)) {}
  /// The fields, cut to their widths and not checked.
  constexpr OtTime(int h, int m, int s)
      : hour(static_cast<signed char>(h)),
        minute(static_cast<signed char>(m)),
        second(static_cast<signed char>(s)) {}

  /// Becomes the present local time.
  OtTime& Now();
  /// Seconds since midnight: 0 to 86399 of a valid time.
  constexpr operator long() const { return (hour * 60L + minute) * 60 + second; }

  /// Later by seconds, modulo a day. Going forward by a negative count leaves negative fields.
  OtTime operator+(long seconds) const;
  /// Earlier by seconds. One day is made up for; going back farther leaves a negative hour.
  OtTime operator-(long seconds) const;
  template <class Number, class = ot95::IfNumber<Number>>
  OtTime operator+(Number seconds) const {
    return *this + static_cast<long>(seconds);
  }
  template <class Number, class = ot95::IfNumber<Number>>
  OtTime operator-(Number seconds) const {
    return *this - static_cast<long>(seconds);
  }
  /// The way from `other` forward to this time on a 24-hour clock.
  OtTime operator-(const OtTime& other) const;
  OtTime& operator+=(long seconds) { return *this = *this + seconds; }
  OtTime& operator-=(long seconds) { return *this = *this - seconds; }
  template <class Number, class = ot95::IfNumber<Number>>
  OtTime& operator+=(Number seconds) {
    return *this = *this + seconds;
  }
  template <class Number, class = ot95::IfNumber<Number>>
  OtTime& operator-=(Number seconds) {
    return *this = *this - seconds;
  }
  OtTime& operator++() { return *this += 1; }
  OtTime& operator--() { return *this -= 1; }

  constexpr bool operator==(const OtTime& other) const { return (*this != other) == 0; }
  /// Three-way comparison, not a truth value: -1, 0 or 1.
  constexpr int operator!=(const OtTime& other) const {
    const int difference = hour != other.hour       ? hour - other.hour
                           : minute != other.minute ? minute - other.minute
                                                    : second - other.second;
    return (difference > 0) - (difference < 0);
  }
  constexpr bool operator<(const OtTime& other) const { return (*this != other) < 0; }
  constexpr bool operator>(const OtTime& other) const { return (*this != other) > 0; }
  constexpr bool operator<=(const OtTime& other) const { return (*this != other) <= 0; }
  constexpr bool operator>=(const OtTime& other) const { return (*this != other) >= 0; }

  /// Whether the fields name a time of day. There are no leap seconds.
  constexpr bool IsTime() const {
    return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
  }

  constexpr bool IsNullValue() const { return *this == OtTime(-128, -128, -128); }
  /// Makes it null; returns 0.
  int SetNullValue() {
    *this = OtTime(-128, -128, -128);
    return 0;
  }

  /// As for OtDate; a null `format` means "%H:%M:%S", and directives of the date print today.
  void PrintToOtString(OtString& out, const char* format) const;
  /// As for OtDate. What isn't a valid time becomes 00:00:00.
  void ScanFromOtString(const OtString& text, const char* format);
};

/// A date and a time of day. Whether it means local time or UTC is the application's business.
class OT95_EXPORT OtDateTime {
 public:
  OtDate date;  ///< The day.
  OtTime time;  ///< The time on that day.

  /// The present local date and time.
  OtDateTime() = default;
  /// Both halves as they are, not checked.
  OtDateTime(const OtDate& d, const OtTime& t) : date(d), time(t) {}
  /// The date at the present time of day, not at midnight.
  OtDateTime(const OtDate& d) : date(d) {}
  /// The time today.
  OtDateTime(const OtTime& t) : time(t) {}
  OtDateTime(const OtDateTime&) = default;
  OtDateTime& operator=(const OtDateTime&) = default;
  /// Replaces the time and keeps the date.
  OtDateTime& operator=(const OtTime& t) {
    time = t;
    return *this;
  }

  /// Becomes the present local time. The clock is read twice: a call at midnight can pair the old
  /// time with the new date.
  OtDateTime& Now();
  /// Becomes the present time in UTC, of one reading of the clock.
  OtDateTime& NowUTC();
  /// Whether both halves are valid.
  bool IsDaTime() const { return date.IsDate() && time.IsTime(); }

  /// Three-way comparison, not a truth value; the wildcards of OtDate apply.
  constexpr int operator!=(const OtDateTime& other) const {
    const int days = date != other.date;
    return days != 0 ? days : time != other.time;
  }
  /// The same under another name. There are no other comparisons.
  int Compare(const OtDateTime& other) const { return *this != other; }

  /// Moves by seconds, forward or back; the date follows the clock past midnight.
  OtDateTime& AddSeconds(long seconds);
  /// From UTC to local time.
  /// @return 0, or -2171 when the zone isn't known; the value then stays.
  int ToLocalTime();
  /// From local time to UTC; as ToLocalTime.
  int ToUTCTime();

  /// Null is what is null in both halves.
  constexpr bool IsNullValue() const { return date.IsNullValue() && time.IsNullValue(); }
  /// Makes it null; returns 0.
  int SetNullValue() {
    date.SetNullValue();
    return time.SetNullValue();
  }
  /// The value of six zeros. In spite of the name it isn't the null value.
  static const OtDateTime& Null();

  /// As for OtDate; a null `format` means "%Y-%m-%dT%H:%M:%S".
  void PrintToOtString(OtString& out, const char* format) const;
  /// As for OtDate. What isn't a valid date and time becomes 0000-01-01 00:00:00, but six zeros
  /// stay.
  void ScanFromOtString(const OtString& text, const char* format);

 private:
  int ShiftMinutes(long minutes);
  void SetMinuteOfDay(long minuteOfDay);
};

static_assert(sizeof(OtDate) == 4 && sizeof(OtTime) == 3 && sizeof(OtDateTime) == 8,
              "the memory lengths of the type table");

/// Sets `out` to the milliseconds since 1970-01-01 00:00 UTC, and returns 0.
OT95_EXPORT int GetSystemTimeInMSSinceTheEpoch(OtInt64& out);

/// Comparers of the rows OtDate, OtTime and OtDateTime, by the contract of OtCompareFunc
/// (typemgr.h). Only the sign of a result counts. In memory form they are the `operator!=` of the
/// class. In disk forms, the second date of DateCompare can hold wildcards, unless bit 0x10 of
/// `cmpOp` is set, and OtDateTime knows none.
OT95_EXPORT long DateCompare(unsigned char format, unsigned long length1, void* value1,
                             unsigned long length2, void* value2, unsigned short cmpOp,
                             unsigned long count, int& status);
OT95_EXPORT long TimeCompare(unsigned char format, unsigned long length1, void* value1,
                             unsigned long length2, void* value2, unsigned short cmpOp,
                             unsigned long count, int& status);
OT95_EXPORT long DaTimeCompare(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);

#endif
