// The rows d_Date, d_Time, d_Timestamp and d_Interval.
#include "kit/hash.h"
#include "numbers/estimate.h"
#include "ot95/store.h"
#include "ot95/text.h"
#include "temporal/estimate.h"
#include "temporal/odmgseconds.h"
#include "temporal/row.h"
#include "temporal/rows.h"
#include "temporal/text.h"

namespace ot95 {
namespace {

constexpr const char* dateFormat = "%a %b %e";
constexpr const char* timeFormat = "%I:%M:%S %p";
constexpr const char* stampFormat = "%a %b %e %I:%M:%S %p";
constexpr const char* intervalFormat = "%e days, %I hours, %M minutes, %S seconds";

OtDate RecordDate(const d_Date& date) {
  return OtDate(date.year, date.month, date.day);
}

// The wall clock, in fields of eight bits.
OtTime RecordTime(const d_Time& time) {
  return OtTime(time.hour - time.tzHour, time.minute - time.tzMinute,
                TruncateToLong(time.hundredths / 100.0 + time.second));
}

// Days of the month stand for days, and a negative interval has negative fields.
OtDateTime RecordOf(const d_Interval& interval) {
  const float t = interval.seconds;
  const ClockFields fields(t);
  return OtDateTime(OtDate(0, 1, TruncateToLong(t / 86400.0f)),
                    OtTime(fields.hour, fields.minute, TruncateToLong(fields.second)));
}

// The seconds of the day on the wall clock; they can lie outside the day.
long WallSeconds(const d_Time& time) {
  return time.second + (time.minute - time.tzMinute + (time.hour - time.tzHour) * 60L) * 60;
}

void PrintRecord(OtString& out, const OtDateTime& record, const char* format,
                 const char* byDefault) {
  PrintTemporal(out, record, format != nullptr ? format : byDefault);
}

OtDateTime ScanRecord(const OtString& text, const char* format, const char* byDefault) {
  return ScanTemporal(text, format != nullptr ? format : byDefault);
}

}  // namespace

template <>
struct TextOf<d_Date> {
  static void Write(OtString& text, const d_Date& date) { text = OtString(DayCount::Of(date) + 1); }
  static void Read(d_Date& date, OtString* text) {
    date = d_Date(0, 0, 0);
    if (text != nullptr) DayCount::Set(date, static_cast<long>(*text) - 1);
  }
  static void Print(OtString& out, const d_Date& date, const char* format) {
    PrintRecord(out, OtDateTime(RecordDate(date), OtTime(0, 0, 0)), format, dateFormat);
  }
  static void Scan(d_Date& date, const OtString& text, const char* format) {
    date = ScanRecord(text, format, dateFormat);
  }
};

template <>
struct TextOf<d_Time> {
  static void Write(OtString& text, const d_Time& time) { text = OtString(WallSeconds(time)); }
  static void Read(d_Time& time, OtString* text) {
    time = text != nullptr ? d_Time(static_cast<long>(*text)) : d_Time(0, 0, 0);
  }
  static void Print(OtString& out, const d_Time& time, const char* format) {
    PrintRecord(out, OtDateTime(OtDate(0, 1, 1), RecordTime(time)), format, timeFormat);
  }
  static void Scan(d_Time& time, const OtString& text, const char* format) {
    time = ScanRecord(text, format, timeFormat).time;
  }
};

template <>
struct TextOf<d_Timestamp> {
  static void Write(OtString& text, const d_Timestamp& stamp) {
    WriteStamp(text, DayCount::Of(stamp.date) + 1, WallSeconds(stamp.time));
  }
  static void Read(d_Timestamp& stamp, OtString* text) {
    stamp.date = d_Date(0, 0, 0);
    stamp.time = d_Time(0, 0, 0);
    if (text != nullptr) ReadStamp(*text, stamp.date, stamp.time, d_Date(0, 0, 0));
  }
  static void Print(OtString& out, const d_Timestamp& stamp, const char* format) {
    PrintRecord(out, OtDateTime(RecordDate(stamp.date), RecordTime(stamp.time)), format,
                stampFormat);
  }
  static void Scan(d_Timestamp& stamp, const OtString& text, const char* format) {
    stamp = ScanRecord(text, format, stampFormat);
  }
};

template <>
struct TextOf<d_Interval> {
  static void Write(OtString& text, const d_Interval& interval) {
    text = OtString(long{TruncateToLong(interval.seconds)});
  }
  static void Read(d_Interval& interval, OtString* text) {
    interval.seconds = text != nullptr ? static_cast<float>(static_cast<double>(*text)) : 0;
  }
  static void Print(OtString& out, const d_Interval& interval, const char* format) {
    PrintRecord(out, RecordOf(interval), format, intervalFormat);
  }
  // A text of less than one day isn't a valid record, and comes back as one day.
  static void Scan(d_Interval& interval, const OtString& text, const char* format) {
    const OtDateTime record = ScanRecord(text, format, intervalFormat);
    interval = d_Interval(record.date.day, record.time.hour, record.time.minute,
                          static_cast<float>(record.time.second));
  }
};

namespace {

std::uint32_t HashOfDate(const unsigned char* bytes, unsigned char form) {
  return DateBits<std::uint16_t>(bytes, form);
}

std::uint32_t HashOfTimeInMemory(const unsigned char* bytes) {
  const d_Time time = ValueAt<d_Time>(bytes);
  const std::uint32_t hour = static_cast<std::uint16_t>(time.hour - time.tzHour);
  const std::uint32_t minute = static_cast<std::uint16_t>(time.minute - time.tzMinute);
  const std::int16_t seconds = Cut16(TruncateToLong(SecondsOf(time)));
  return ((hour * 256 + minute) << 16) + static_cast<std::uint32_t>(seconds);
}

// Stored times hash by their bytes, zone and all, apart from the same times in memory.
template <class Byte>
std::uint32_t FoldTimeBytes(const unsigned char* bytes) {
  std::uint32_t sum = 0;
  for (int i = 0; i < 6; ++i) {
    sum = sum << 4 ^ static_cast<std::uint32_t>(static_cast<Byte>(bytes[i]));
  }
  return sum;
}

std::uint32_t HashOfTime(const unsigned char* bytes, unsigned char form) {
  return form == OT_FORMAT_MEMORY ? HashOfTimeInMemory(bytes) : FoldTimeBytes<unsigned char>(bytes);
}

// The date hashes as an OtDate here, and the bytes of the time count as signed.
std::uint32_t HashOfStamp(const unsigned char* bytes, unsigned char form) {
  const std::uint32_t time = form == OT_FORMAT_MEMORY ? HashOfTimeInMemory(bytes + 4)
                                                      : FoldTimeBytes<signed char>(bytes + 4);
  return DateBits<OtLong>(bytes, form) ^ time;
}

}  // namespace

constinit OtTypeDescriptor rowD_Date =
    RowWithoutNull<d_Date>({.name = "d_Date",
                            .format = dateFormat,
                            .compare = d_DateCompare,
                            .evaluate = EvalD_Date,
                            .hash = HashFields<d_Date, HashOfDate>});

constinit OtTypeDescriptor rowD_Time =
    RowWithoutNull<d_Time>({.name = "d_Time",
                            .format = timeFormat,
                            .compare = d_TimeCompare,
                            .evaluate = EvalD_Time,
                            .hash = HashFields<d_Time, HashOfTime>});

constinit OtTypeDescriptor rowD_Timestamp =
    RowWithoutNull<d_Timestamp>({.name = "d_Timestamp",
                                 .format = stampFormat,
                                 .compare = d_TimestampCompare,
                                 .evaluate = EvalD_Timestamp,
                                 .hash = HashFields<d_Timestamp, HashOfStamp>});

// A float to the engine: what the row `float` does with stored bytes, this row does by the very
// same functions.
constinit OtTypeDescriptor rowD_Interval = {
    .name = "d_Interval",
    .Create = CreateCounted<d_Interval>,
    .Delete = DeleteCounted<d_Interval>,
    .Store = FloatStore,
    .Load = FloatStore,
    .NullSizeGet = FloatNullSizeGet,
    .SizeGet = FloatSizeGet,
    .SizeGetFromMemFile = PrimitiveFileSize<FloatSizeGet, 15>,
    .Compare = FloatCompare,
    .EvalAndBound = EvalNumber<float>,
    .Hash = ScalarHash<float>,
    .ConvertTo = ToTexts<d_Interval>,
    .ConvertFrom = FromTexts<d_Interval>,
    .Construct = ConstructValues<d_Interval>,
    .Destruct = DestructNothing,
    .Assign = AssignValues<d_Interval>,
    .Copy = CopyValues<d_Interval>,
    .Translate = TranslateFixed<FloatStore, FloatStore, AssignBytes<4>, 4>,
    .IsNull = IsNeverNull,
    .SetNull = nullptr,
    .format = intervalFormat,
    .PrintToString = PrintMember<d_Interval>,
    .ScanFromString = ScanMember<d_Interval>,
    .memoryLength = sizeof(d_Interval),
    .isFixed = 1,
    .DefaultValue = DefaultFromText<FromTexts<d_Interval>>};

}  // namespace ot95
