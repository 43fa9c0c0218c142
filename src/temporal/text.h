#ifndef OT95_SRC_TEMPORAL_TEXT_H
#define OT95_SRC_TEMPORAL_TEXT_H

// The one printer and the one scanner of all temporal types. Both work on an OtDateTime; each type
// brings its fields there and takes them back.

#include "ot95/temporal.h"

class OtString;

namespace ot95 {

/// The month's name; null for a number outside 1 to 12. January and February lack their last
/// letter: stored texts have always had them so.
const char* MonthName(int month);
/// The name of an OtDaysOfTheWeek; "no day" for any other number.
const char* DayName(int weekday);

/// Appends a date to `out` as "%Y-%m-%d" does, the form in which most are printed.
void PrintDate(OtString& out, const OtDate& date);
/// Appends a record to `out`. A half that is null is the clock's, which is read only if the format
/// asks for it.
void PrintTemporal(OtString& out, const OtDate* date, const OtTime* time, const char* format);
/// Appends the record to `out`; a null record replaces the text of `out` by the null text.
void PrintTemporal(OtString& out, const OtDateTime& record, const char* format);
/// Replaces the text of `out` by the null text.
void PrintNull(OtString& out);
/// The record that `text` stands for, perhaps null; see temporal.h on what it accepts.
OtDateTime ScanTemporal(const OtString& text, const char* format);

}  // namespace ot95

#endif
