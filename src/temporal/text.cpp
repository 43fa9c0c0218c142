// The text operations of OtDate, OtTime and OtDateTime.
#include <cstring>

#include "ot95/text.h"
#include "temporal/text.h"

namespace {

constexpr const char* defaultDateFormat = "%Y-%m-%d";
constexpr const char* defaultTimeFormat = "%H:%M:%S";
constexpr const char* defaultDateTimeFormat = "%Y-%m-%dT%H:%M:%S";

const char* Or(const char* format, const char* byDefault) {
  return format != nullptr ? format : byDefault;
}

}  // namespace

OtString OtDate::PrintDayOfTheDate() const {
  return OtString(ot95::DayName(DayOfTheDate()));
}

void OtDate::PrintToOtString(OtString& out, const char* format) const {
  if (IsNullValue()) return ot95::PrintNull(out);
  if (format == nullptr || std::strcmp(format, defaultDateFormat) == 0) {
    return ot95::PrintDate(out, *this);
  }
  ot95::PrintTemporal(out, this, nullptr, format);
}

void OtDate::ScanFromOtString(const OtString& text, const char* format) {
  *this = ot95::ScanTemporal(text, Or(format, defaultDateFormat)).date;
}

void OtTime::PrintToOtString(OtString& out, const char* format) const {
  if (IsNullValue()) return ot95::PrintNull(out);
  ot95::PrintTemporal(out, nullptr, this, Or(format, defaultTimeFormat));
}

void OtTime::ScanFromOtString(const OtString& text, const char* format) {
  *this = ot95::ScanTemporal(text, Or(format, defaultTimeFormat)).time;
}

void OtDateTime::PrintToOtString(OtString& out, const char* format) const {
  ot95::PrintTemporal(out, *this, Or(format, defaultDateTimeFormat));
}

void OtDateTime::ScanFromOtString(const OtString& text, const char* format) {
  *this = ot95::ScanTemporal(text, Or(format, defaultDateTimeFormat));
}
