// Scanning of all temporal types: numbers and names by the directives of a format.

#include "kit/narrowtext.h"
#include "kit/nulltext.h"
#include "temporal/text.h"
#include "text/units.h"

namespace ot95 {
namespace {

constexpr bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The part of a terminated text that isn't read yet. Behind the end there is an empty rest.
class TextRest {
 public:
  explicit TextRest(const char* text) : place_(text) {}

  void Skip(int count) {
    while (count-- > 0 && *place_ != '\0') ++place_;
  }
  char Front() const { return *place_; }

  // Reads a decimal number of up to `width` characters, sign included, behind white space of any
  // length; then moves by `width`, whatever was there.
  bool TakeNumber(int width, int& number) {
    const bool plain = width == 2 ? TakePairs<1>(number) : width == 4 && TakePairs<2>(number);
    return plain || TakeLooseNumber(width, number);
  }

  // If the rest begins as `name` does for three letters, moves behind all letters they share.
  bool TakeName(const char* name) {
    int same = 0;
    while (name[same] != '\0' && place_[same] == name[same]) ++same;
    if (same < 3) return false;
    place_ += same;
    return true;
  }

 private:
  // The usual numbers: nothing but digits.
  template <int pairs>
  bool TakePairs(int& number) {
    unsigned value = 0;
    for (int i = 0; i < 2 * pairs; i += 2) {
      const char tens = place_[i];
      if (!IsDigit(tens) || !IsDigit(place_[i + 1])) return false;
      value = value * 100 + static_cast<unsigned>(tens * 10 + place_[i + 1] - '0' * 11);
    }
    place_ += 2 * pairs;
    number = static_cast<int>(value);
    return true;
  }
  bool TakeLooseNumber(int width, int& number) {
    const char* p = place_;
    while (IsSpace(*p)) ++p;
    const char* const begin = p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    const bool found = IsDigit(*p) && p - begin < width;
    if (found) {
      int value = 0;
      for (; IsDigit(*p) && p - begin < width; ++p) value = value * 10 + (*p - '0');
      number = negative ? -value : value;
    }
    Skip(width);
    return found;
  }

  const char* place_;
};

// Collects fields in step with a format.
class Scanner {
 public:
  explicit Scanner(TextRest text) : text_(text) {}

  void Run(const char* format) {
    for (; *format != '\0'; ++format) {
      if (*format != '%') {
        text_.Skip(1);
      } else if (*++format != '\0') {
        TakeDirective(*format);
      } else {
        break;
      }
    }
    if (sawPm_ && hour_ < 12) {
      hour_ += 12;
    } else if (sawAm_ && hour_ == 12) {
      hour_ = 0;
    }
  }

  OtDateTime Result() const {
    const OtDateTime result(OtDate(year_, month_, day_), OtTime(hour_, minute_, second_));
    if (result.IsDaTime()) return result;
    if (result.date == OtDate(0, 0, 0) && result.time == OtTime(0, 0, 0)) return result;
    return OtDateTime(OtDate(0, 1, 1), OtTime(0, 0, 0));
  }

 private:
  void TakeDirective(char directive) {
    switch (directive) {
      case 'Y':
        text_.TakeNumber(4, year_);
        break;
      case 'y':
        if (text_.TakeNumber(2, year_)) year_ += 1900;
        break;
      case 'm':
        text_.TakeNumber(2, month_);
        break;
      case 'b':
      case 'B':
        TakeMonth();
        break;
      case 'd':
      case 'e':
        text_.TakeNumber(2, day_);
        break;
      case 'a':
      case 'A':
        TakeWeekday();
        break;
      case 'H':
      case 'I':
        text_.TakeNumber(2, hour_);
        break;
      case 'M':
        text_.TakeNumber(2, minute_);
        break;
      case 'S':
        text_.TakeNumber(2, second_);
        break;
      case 'p':
      case 'P':
        TakeNoon();
        break;
      default:
        text_.Skip(1);
    }
  }
  void TakeMonth() {
    for (int month = 1; month <= 12; ++month) {
      if (text_.TakeName(MonthName(month))) {
        month_ = month;
        return;
      }
    }
    text_.TakeNumber(3, month_);
  }
  void TakeWeekday() {
    for (int weekday = OtMonday; weekday <= OtSunday; ++weekday) {
      if (text_.TakeName(DayName(weekday))) return;
    }
  }
  void TakeNoon() {
    const char letter = text_.Front();
    sawPm_ |= letter == 'p' || letter == 'P';
    sawAm_ |= letter == 'a' || letter == 'A';
    text_.Skip(2);
  }

  TextRest text_;
  int year_ = 0, month_ = 1, day_ = 1, hour_ = 0, minute_ = 0, second_ = 0;
  bool sawPm_ = false, sawAm_ = false;
};

OtDateTime NullRecord() {
  OtDateTime record(OtDateTime::Null());
  record.SetNullValue();
  return record;
}

OtDateTime ScanBytes(const char* text, const char* format) {
  if (BeginsWithNullText(text)) return NullRecord();
  Scanner scanner{TextRest(text)};
  scanner.Run(format);
  return scanner.Result();
}

}  // namespace

OtDateTime ScanTemporal(const OtString& text, const char* format) {
  if (IsWide(text.GetCodeSetCode())) return ScanBytes(NarrowText(text).Bytes(), format);
  return ScanBytes(text.StrGet(), format);
}

}  // namespace ot95
