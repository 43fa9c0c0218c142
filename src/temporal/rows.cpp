// The rows OtDate, OtTime and OtDateTime.
#include "temporal/rows.h"
#include "ot95/text.h"
#include "temporal/estimate.h"
#include "temporal/row.h"
#include "text/units.h"

namespace ot95 {

int FindColon(const OtString& text) {
  const unsigned char codeSet = text.GetCodeSetCode();
  const char* place = text.StrGet();
  for (int at = 0;; ++at, place += CharWidth(codeSet)) {
    const auto unit = LoadUnit(place, IsWide(codeSet));
    if (unit == ':') return at;
    if (unit == 0) return -1;
  }
}

// Text of dates and times in conversion: a number, or null.
template <class T>
struct SingleNumberText {
  static void Write(OtString& text, const T& value) {
    if (value.IsNullValue()) {
      text.SetNullValue();
    } else {
      text = OtString(static_cast<long>(value));
    }
  }
  static void Read(T& value, OtString* text) {
    if (text == nullptr) {
      value.SetNullValue();
    } else {
      value = T(static_cast<long>(*text));
    }
  }
};

template <class T>
struct ClassText {
  static void Print(OtString& out, const T& value, const char* format) {
    value.PrintToOtString(out, format);
  }
  static void Scan(T& value, const OtString& text, const char* format) {
    value.ScanFromOtString(text, format);
  }
};

template <>
struct TextOf<OtDate> : SingleNumberText<OtDate>, ClassText<OtDate> {};

template <>
struct TextOf<OtTime> : SingleNumberText<OtTime>, ClassText<OtTime> {};

template <>
struct TextOf<OtDateTime> : ClassText<OtDateTime> {
  static void Write(OtString& text, const OtDateTime& value) {
    if (value.IsNullValue()) {
      text.SetNullValue();
    } else {
      WriteStamp(text, value.date, value.time);
    }
  }
  static void Read(OtDateTime& value, OtString* text) {
    value.SetNullValue();
    if (text == nullptr) return;
    value.time = OtTime(0, 0, 0);
    ReadStamp(*text, value.date, value.time, OtDate(0, 0, 0));
  }
};

namespace {

std::uint32_t HashDate(const unsigned char* bytes, unsigned char form) {
  return DateBits<OtLong>(bytes, form);
}

std::uint32_t HashTime(const unsigned char* bytes, unsigned char) {
  const auto field = [&](int at) {
    return static_cast<std::uint32_t>(static_cast<signed char>(bytes[at]));
  };
  return (field(0) * 256 + field(1)) * 256 + field(2);
}

std::uint32_t HashDateTime(const unsigned char* bytes, unsigned char form) {
  return HashDate(bytes, form) ^ HashTime(bytes + 4, form);
}

}  // namespace

constinit OtTypeDescriptor rowOtDate = RowWithNull<OtDate>({.name = "OtDate",
                                                            .format = "%a %e.%b %Y",
                                                            .compare = DateCompare,
                                                            .evaluate = EvalOtDate,
                                                            .hash = HashFields<OtDate, HashDate>});

constinit OtTypeDescriptor rowOtTime = RowWithNull<OtTime>({.name = "OtTime",
                                                            .format = "%I:%M:%S %p",
                                                            .compare = TimeCompare,
                                                            .evaluate = EvalOtTime,
                                                            .hash = HashFields<OtTime, HashTime>});

constinit OtTypeDescriptor rowOtDateTime =
    RowWithNull<OtDateTime>({.name = "OtDateTime",
                             .format = "%a %e.%b %Y %I:%M:%S %p",
                             .compare = DaTimeCompare,
                             .evaluate = EvalOtDateTime,
                             .hash = HashFields<OtDateTime, HashDateTime>});

}  // namespace ot95
