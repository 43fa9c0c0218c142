// Printing of all temporal types: the directives of a format, and the names of months and days.

#include <cstdint>
#include <cstring>
#include <optional>

#include "ot95/text.h"
#include "ot95/typemgr.h"
#include "temporal/text.h"
#include "text/units.h"

namespace ot95 {
namespace {

constexpr char monthNames[12][10] = {"Januar",    "Februar", "March",    "April",
                                     "May",       "June",    "July",     "August",
                                     "September", "October", "November", "December"};
constexpr char dayNames[7][10] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                  "Friday", "Saturday", "Sunday"};
constexpr std::size_t abbreviation = 3;

constexpr std::size_t longestPiece = 16;  // of a directive or a character

struct DigitPairs {
  char text[200];
  constexpr DigitPairs() : text() {
    for (int i = 0; i < 100; ++i) {
      text[2 * i] = static_cast<char>('0' + i / 10);
      text[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
  }
};
constexpr DigitPairs digitPairs;

// The writers put a piece at `end` and answer its end.
char* WritePair(char* end, unsigned number) {
  std::memcpy(end, digitPairs.text + 2 * number, 2);
  return end + 2;
}

char* WriteText(char* end, const char* text, std::size_t length) {
  std::memcpy(end, text, length);
  return end + length;
}

// At least `width` digits; a sign comes on top.
char* WriteNumber(char* end, int value, int width) {
  if (value < 0) *end++ = '-';
  char digits[10];
  int count = 0;
  for (int rest = value < 0 ? -value : value; rest > 0 || count < width; rest /= 10) {
    digits[count++] = static_cast<char>('0' + rest % 10);
  }
  while (count > 0) *end++ = digits[--count];
  return end;
}

char* WriteTwo(char* end, int value) {
  const auto number = static_cast<unsigned>(value);
  return number < 100 ? WritePair(end, number) : WriteNumber(end, value, 2);
}

char* WriteFour(char* end, int value) {
  const auto number = static_cast<unsigned>(value);
  if (number >= 10000) return WriteNumber(end, value, 4);
  return WritePair(WritePair(end, number / 100), number % 100);
}

void AppendTo(OtString& out, const char* text, const char* end) {
  const auto length = static_cast<std::size_t>(end - text);
  TextAccess::Append(out, {text, OtString::GetDefault8CodeSet(), length});
}

// Whether the format shows the half of the day, so that hours count from 1 to 12.
bool ShowsNoon(const char* format) {
  while ((format = std::strchr(format, '%')) != nullptr && format[1] != '\0') {
    if (format[1] == 'P' || format[1] == 'p') return true;
    format += 2;
  }
  return false;
}

// Prints one record. The fields are taken as they are, valid or not.
class Printer {
 public:
  Printer(const OtDate* date, const OtTime* time, const char* format)
      : date_(date), time_(time), format_(format) {}

  // The string is lengthened once and not for every piece, unless the text is long.
  void Run(OtString& out) {
    char text[128];
    char* end = text;
    for (const char* next = format_; *next != '\0'; ++next) {
      if (end > text + sizeof text - longestPiece) end = Flush(out, text, end);
      if (*next != '%') {
        *end++ = *next;
      } else if (*++next != '\0') {
        end = WriteDirective(end, *next);
      } else {
        break;
      }
    }
    if (end != text) Flush(out, text, end);
  }

 private:
  static char* Flush(OtString& out, char* text, char* end) {
    *end = '\0';
    AppendTo(out, text, end);
    return text;
  }

  const OtDate& Date() {
    if (date_ == nullptr) date_ = &today_.emplace();
    return *date_;
  }
  const OtTime& Time() {
    if (time_ == nullptr) time_ = &now_.emplace();
    return *time_;
  }

  [[gnu::always_inline]] char* WriteDirective(char* end, char directive) {
    switch (directive) {
      case 'Y':
        return WriteFour(end, Date().year);
      case 'y':
        return WriteTwo(end, Date().year % 100);
      case 'm':
        return WriteTwo(end, Date().month);
      case 'B':
        return WriteMonth(end, SIZE_MAX);
      case 'b':
        return WriteMonth(end, abbreviation);
      case 'd':
      case 'e':
        return WriteTwo(end, Date().day);
      case 'A':
        return WriteName(end, DayName(Date().DayOfTheDate()), SIZE_MAX);
      case 'a':
        return WriteName(end, DayName(Date().DayOfTheDate()), abbreviation);
      case 'H':
        return WriteTwo(end, Time().hour);
      case 'I':
        return WriteTwo(end, ShortHour());
      case 'M':
        return WriteTwo(end, Time().minute);
      case 'S':
        return WriteTwo(end, Time().second);
      case 'P':
        return WriteText(end, Time().hour >= 12 ? "PM" : "AM", 2);
      case 'p':
        return WriteText(end, Time().hour >= 12 ? "pm" : "am", 2);
      default:
        *end = directive;
        return end + 1;
    }
  }
  // Without its "pm", midnight is 00 and not 12.
  int ShortHour() {
    const int hour = Time().hour;
    if (hour == 0) return ShowsNoon(format_) ? 12 : 0;
    return hour > 12 ? hour - 12 : hour;
  }
  static char* WriteName(char* end, const char* name, std::size_t longest) {
    return WriteText(end, name, strnlen(name, longest));
  }
  char* WriteMonth(char* end, std::size_t longest) {
    const int month = Date().month;
    const char* name = MonthName(month);
    return name != nullptr ? WriteName(end, name, longest) : WriteNumber(end, month, 3);
  }

  const OtDate* date_;
  const OtTime* time_;
  const char* format_;
  std::optional<OtDate> today_;
  std::optional<OtTime> now_;
};

}  // namespace

const char* MonthName(int month) {
  return month >= 1 && month <= 12 ? monthNames[month - 1] : nullptr;
}

const char* DayName(int weekday) {
  return weekday >= 0 && weekday <= 6 ? dayNames[weekday] : "no day";
}

void PrintNull(OtString& out) {
  out = OtTypeMgr::GetNullPrintString();
}

void PrintDate(OtString& out, const OtDate& date) {
  char text[longestPiece * 2];
  char* end = WriteFour(text, date.year);
  *end++ = '-';
  end = WriteTwo(end, date.month);
  *end++ = '-';
  end = WriteTwo(end, date.day);
  *end = '\0';
  constexpr std::size_t kUsual = sizeof "2000-01-01";
  const bool empty = out.MemLen() == 0 && out.GetCodeSetCode() == OtString::GetDefault8CodeSet();
  if (!empty || end != text + kUsual - 1) return AppendTo(out, text, end);
  char* const fresh = NewText(kUsual);
  if (fresh == nullptr) return;
  std::memcpy(fresh, text, kUsual);
  TextAccess::Adopt(out, fresh, kUsual);
}

void PrintTemporal(OtString& out, const OtDate* date, const OtTime* time, const char* format) {
  Printer(date, time, format).Run(out);
}

void PrintTemporal(OtString& out, const OtDateTime& record, const char* format) {
  if (record.IsNullValue()) return PrintNull(out);
  PrintTemporal(out, &record.date, &record.time, format);
}

}  // namespace ot95
