// Dates and times in ISO 8601, checked against the calendar.
#include "moment.h"

#include <cstdio>

namespace ot95::sqlite {

namespace {

int DaysOf(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && isLeap ? 29 : kDays[month - 1];
}

bool IsIn(int number, int low, int high) {
  return number >= low && number <= high;
}

bool IsValid(const ot95_moment& moment, const MomentParts& parts) {
  if (parts.hasDate && !(IsIn(moment.year, 0, 9999) && IsIn(moment.month, 1, 12) &&
                         IsIn(moment.day, 1, DaysOf(moment.year, moment.month)))) {
    return false;
  }
  const bool isZone = IsIn(moment.zone_hour, -23, 23) && IsIn(moment.zone_minute, -59, 59) &&
                      moment.zone_hour * moment.zone_minute >= 0;
  return IsIn(moment.hour, 0, 23) && IsIn(moment.minute, 0, 59) && IsIn(moment.second, 0, 59) &&
         IsIn(moment.hundredth, 0, 99) && isZone;
}

/// Reads a text from its left end.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }
  bool Skip(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// Takes exactly so many digits.
  bool Number(std::size_t digits, int32_t& number) {
    if (rest_.size() < digits) return false;
    number = 0;
    for (std::size_t i = 0; i < digits; ++i) {
      if (rest_[i] < '0' || rest_[i] > '9') return false;
      number = number * 10 + (rest_[i] - '0');
    }
    rest_.remove_prefix(digits);
    return true;
  }

 private:
  std::string_view rest_;
};

bool TakeDate(Cursor& cursor, ot95_moment& moment) {
  return cursor.Number(4, moment.year) && cursor.Skip('-') && cursor.Number(2, moment.month) &&
         cursor.Skip('-') && cursor.Number(2, moment.day);
}

bool TakeZone(Cursor& cursor, ot95_moment& moment) {
  const bool isBehind = cursor.Skip('-');
  if (!isBehind && !cursor.Skip('+')) return true;
  const bool isTaken = cursor.Number(2, moment.zone_hour) && cursor.Skip(':') &&
                       cursor.Number(2, moment.zone_minute);
  if (isBehind) {
    moment.zone_hour = -moment.zone_hour;
    moment.zone_minute = -moment.zone_minute;
  }
  return isTaken;
}

bool TakeClock(Cursor& cursor, ot95_moment& moment, bool hasHundredths) {
  if (!cursor.Number(2, moment.hour) || !cursor.Skip(':') || !cursor.Number(2, moment.minute)) {
    return false;
  }
  if (cursor.Skip(':') && !cursor.Number(2, moment.second)) return false;
  if (!hasHundredths) return true;
  if (cursor.Skip('.') && !cursor.Number(2, moment.hundredth)) return false;
  return TakeZone(cursor, moment);
}

template <class... Numbers>
std::string Print(const char* format, Numbers... numbers) {
  char text[64];
  const int size = std::snprintf(text, sizeof text, format, numbers...);
  return {text, static_cast<std::size_t>(size)};
}

}  // namespace

MomentParts MomentParts::Of(std::string_view typeName) {
  const bool isDate = typeName == "OtDate" || typeName == "d_Date";
  const bool isTime = typeName == "OtTime" || typeName == "d_Time";
  return {!isTime, !isDate, !isDate && typeName.substr(0, 2) == "d_"};
}

std::optional<std::string> FormatMoment(const ot95_moment& moment, const MomentParts& parts) {
  if (!IsValid(moment, parts)) return {};
  std::string text;
  if (parts.hasDate) text = Print("%04d-%02d-%02d", moment.year, moment.month, moment.day);
  if (!parts.hasClock) return text;
  if (parts.hasDate) text += ' ';
  text += Print("%02d:%02d:%02d", moment.hour, moment.minute, moment.second);
  if (moment.hundredth != 0) text += Print(".%02d", moment.hundredth);
  const int zone = moment.zone_hour * 60 + moment.zone_minute;
  const int distance = zone < 0 ? -zone : zone;
  if (zone != 0) text += (zone < 0 ? '-' : '+') + Print("%02d:%02d", distance / 60, distance % 60);
  return text;
}

std::optional<ot95_moment> ParseMoment(std::string_view text, const MomentParts& parts) {
  ot95_moment moment = {};
  Cursor cursor(text);
  if (parts.hasDate && !TakeDate(cursor, moment)) return {};
  if (parts.hasDate && parts.hasClock && !cursor.Skip(' ') && !cursor.Skip('T')) return {};
  if (parts.hasClock && !TakeClock(cursor, moment, parts.hasHundredths)) return {};
  if (!cursor.AtEnd() || !IsValid(moment, parts)) return {};
  return moment;
}

}  // namespace ot95::sqlite
