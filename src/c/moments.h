#ifndef OT95_SRC_C_MOMENTS_H
#define OT95_SRC_C_MOMENTS_H

/// @file
/// From the fields of C to dates and times, as far as these can hold them, and back.

#include <utility>

#include "ot95/odmg.h"
#include "ot95/temporal.h"
#include "ot95c/ot95c.h"

namespace ot95::c {

template <class T>
bool Narrow(std::int64_t from, T& to) {
  to = static_cast<T>(from);
  return std::in_range<T>(from);
}

template <class Date>
bool PutDay(const ot95_moment& moment, Date& to) {
  return Narrow(moment.year, to.year) && Narrow(moment.month, to.month) &&
         Narrow(moment.day, to.day);
}
template <class Date>
void GetDay(const Date& from, ot95_moment& moment) {
  moment.year = from.year;
  moment.month = from.month;
  moment.day = from.day;
}
template <class Time>
bool PutClock(const ot95_moment& moment, Time& to) {
  return Narrow(moment.hour, to.hour) && Narrow(moment.minute, to.minute) &&
         Narrow(moment.second, to.second);
}
template <class Time>
void GetClock(const Time& from, ot95_moment& moment) {
  moment.hour = from.hour;
  moment.minute = from.minute;
  moment.second = from.second;
}
inline bool PutZone(const ot95_moment& moment, d_Time& to) {
  return Narrow(moment.hundredth, to.hundredths) && Narrow(moment.zone_hour, to.tzHour) &&
         Narrow(moment.zone_minute, to.tzMinute);
}
inline void GetZone(const d_Time& from, ot95_moment& moment) {
  moment.hundredth = from.hundredths;
  moment.zone_hour = from.tzHour;
  moment.zone_minute = from.tzMinute;
}

inline bool PutMoment(const ot95_moment& moment, OtDate& to) {
  return PutDay(moment, to);
}
inline void GetMoment(const OtDate& from, ot95_moment& moment) {
  GetDay(from, moment);
}
inline bool PutMoment(const ot95_moment& moment, d_Date& to) {
  return PutDay(moment, to);
}
inline void GetMoment(const d_Date& from, ot95_moment& moment) {
  GetDay(from, moment);
}
inline bool PutMoment(const ot95_moment& moment, OtTime& to) {
  return PutClock(moment, to);
}
inline void GetMoment(const OtTime& from, ot95_moment& moment) {
  GetClock(from, moment);
}
inline bool PutMoment(const ot95_moment& moment, d_Time& to) {
  return PutClock(moment, to) && PutZone(moment, to);
}
inline void GetMoment(const d_Time& from, ot95_moment& moment) {
  GetClock(from, moment);
  GetZone(from, moment);
}
/// Of a day and a time of it.
template <class T>
bool PutMoment(const ot95_moment& moment, T& to) requires requires {
  to.date, to.time;
}
{ return PutMoment(moment, to.date) && PutMoment(moment, to.time); }
template <class T>
void GetMoment(const T& from, ot95_moment& moment) requires requires {
  from.date, from.time;
}
{
  GetMoment(from.date, moment);
  GetMoment(from.time, moment);
}

}  // namespace ot95::c

#endif
