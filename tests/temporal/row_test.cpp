// The rows of both calendars, as an engine uses them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <vector>

#include "ot95/typemgr.h"
#include "temporal/cases.h"

using cases::Show;
using cases::Stamp;

namespace {

constexpr char dateId = 12, timeId = 13, dateTimeId = 19;
constexpr char dDateId = 22, dTimeId = 23, dStampId = 24, dIntervalId = 25;
constexpr std::uint32_t multiplier = 1103515245;

std::string Hex(const unsigned char* bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += "0123456789abcdef"[bytes[i] >> 4];
    text += "0123456789abcdef"[bytes[i] & 15];
  }
  return text;
}

// Bytes in a block of their very size, so that the sanitizers see what is read behind them.
struct Bytes {
  Bytes(std::initializer_list<int> values)
      : size(values.size()), block(new unsigned char[values.size()]) {
    std::size_t at = 0;
    for (const int value : values) block[at++] = static_cast<unsigned char>(value);
  }
  unsigned long size;
  std::unique_ptr<unsigned char[]> block;
};

template <class T>
void ExpectStored(char id, const T& value, const char* native, const char* bigEndian) {
  OtTypeMgr types;
  const struct {
    unsigned char format;
    const char* bytes;
  } rows[] = {{OT_FORMAT_NATIVE, native}, {OT_FORMAT_BIG_ENDIAN, bigEndian}, {0xe2, bigEndian}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    T pair[] = {value, value};
    unsigned char disk[20];
    const unsigned long size = std::strlen(row.bytes) / 2;
    ASSERT_EQ(types.Store(id, disk, pair, row.format, 2), 2 * size);
    EXPECT_EQ(Hex(disk, 2 * size), std::string(row.bytes) + row.bytes);
    T loaded[2];
    ASSERT_EQ(types.Load(id, loaded, disk, row.format, 2), 2 * size);
    EXPECT_EQ(Show(loaded[0]) + Show(loaded[1]), Show(value) + Show(value));
    EXPECT_EQ(types.DiskLenGet(id, pair, row.format, 2, OT_FORMAT_MEMORY), 2 * size);
    EXPECT_EQ(types.DiskLenGetFromMemFile(id, nullptr, row.format, 2), 2 * size);
    T translated[2];
    EXPECT_EQ(types.Translate(id, translated, OT_FORMAT_MEMORY, 0, disk, row.format, 0, 2),
              2 * size);
    EXPECT_EQ(Show(translated[1]), Show(value));
  }
  EXPECT_EQ(types.MemLenGet(id, 3), 3 * sizeof(T));
}

TEST(TemporalRows, StoreTheirBytes) {
  ExpectStored(dateId, OtDate(2000, 1, 2), "d0070102", "07d00102");
  ExpectStored(dateId, OtDate(-32768, -128, -128), "00808080", "80008080");
  ExpectStored(timeId, OtTime(13, 5, 9), "0d0509", "0d0509");
  ExpectStored(timeId, OtTime(-128, -128, -128), "808080", "808080");
  ExpectStored(dateTimeId, OtDateTime(OtDate(2000, 1, 2), OtTime(13, 5, 9)), "d00701020d0509",
               "07d001020d0509");
  ExpectStored(dDateId, d_Date(2000, 1, 2), "d0070102", "07d00102");
  ExpectStored(dTimeId, d_Time(13, 5, 9.5f, -1, 30), "ff1e0c230932", "ff1e0c230932");
  ExpectStored(dStampId, Stamp(d_Date(2000, 1, 2), d_Time(13, 5, 9.5f)), "d007010200000d050932",
               "07d0010200000d050932");
  OtTypeMgr types;
  unsigned char disk[4];
  d_Interval interval(1, 1);
  EXPECT_EQ(types.Store(dIntervalId, disk, &interval, OT_FORMAT_BIG_ENDIAN, 1), 4u);
  EXPECT_EQ(Hex(disk, 4), "47afc800");
}

TEST(TemporalRows, TheIntervalIsAFloatToTheEngine) {
  const OtTypeDescriptor& number = *CurrentFactory[4];
  const OtTypeDescriptor& interval = *CurrentFactory[25];
  EXPECT_EQ(interval.NullSizeGet, number.NullSizeGet);
  EXPECT_EQ(interval.SizeGet, number.SizeGet);
  EXPECT_EQ(interval.SizeGetFromMemFile, number.SizeGetFromMemFile);
  EXPECT_EQ(interval.Compare, number.Compare);
  EXPECT_EQ(interval.EvalAndBound, number.EvalAndBound);
  EXPECT_EQ(interval.Hash, number.Hash);
  EXPECT_EQ(interval.Translate, number.Translate);
  EXPECT_EQ(interval.IsNull, number.IsNull);
}

TEST(TemporalRows, CompareStoredFields) {
  constexpr unsigned short wild = 0, plain = 0x10;
  const struct {
    const char* name;
    char id;
    Bytes first, second;
    unsigned short cmpOp;
    unsigned long count;
    long result;
    int status;
  } rows[] = {
      {"any year", dateId, {7, 208, 5, 17}, {255, 255, 5, 17}, wild, 1, 0, 0},
      {"any year, of d_Date", dDateId, {7, 208, 5, 17}, {255, 255, 5, 17}, wild, 1, 0, 0},
      {"year -1", dateId, {7, 208, 5, 17}, {255, 255, 5, 17}, plain, 1, 1, 0},
      {"any month", dateId, {7, 208, 5, 17}, {7, 208, 255, 20}, wild, 1, -1, 0},
      {"any month, any day", dateId, {7, 208, 5, 17}, {7, 208, 255, 255}, wild, 1, 0, 0},
      {"any day", dateId, {7, 208, 5, 17}, {7, 208, 5, 255}, wild, 1, 0, 0},
      {"any day of another month", dateId, {7, 208, 5, 17}, {7, 208, 6, 255}, wild, 1, -1, 0},
      {"day -1", dateId, {7, 208, 5, 17}, {7, 208, 5, 255}, plain, 1, 1, 0},
      {"wildcard on the wrong side", dateId, {255, 255, 5, 17}, {7, 208, 5, 17}, wild, 1, -1, 0},
      {"second element", dateId, {0, 1, 1, 1, 0, 1, 1, 2}, {0, 1, 1, 1, 0, 1, 1, 1}, wild, 2, 1, 0},
      {"end of an array", dateId, {0, 1, 1, 1}, {0, 1, 1, 1, 0, 1, 1, 1}, wild, 2, 0, 2101},
      {"end after a difference", dateId, {0, 2, 1, 1}, {0, 1, 1, 1}, wild, 2, 1, 2101},
      {"half a year", dateId, {7}, {7, 0, 1, 1}, wild, 1, 0, 2101},
      {"half a year, less", dateId, {7}, {7, 208, 1, 1}, wild, 1, -1, 0},
      {"no month", dateId, {7, 208}, {7, 208, 1, 1}, wild, 1, 0, 2101},
      {"no day", dateId, {7, 208, 1, 1}, {7, 208, 1}, wild, 1, 0, 2101},
      {"no day after a difference", dateId, {7, 208, 2}, {7, 208, 1, 1}, wild, 1, 1, 0},
      {"times", timeId, {1, 2, 3}, {1, 2, 4}, wild, 1, -1, 0},
      {"times are signed", timeId, {128, 128, 128}, {0, 0, 0}, wild, 1, -1, 0},
      {"no second", timeId, {1, 2}, {1, 2, 4}, wild, 1, 0, 2101},
      {"date-times", dateTimeId, {7, 208, 1, 1, 1, 2, 3}, {7, 208, 1, 1, 1, 2, 2}, wild, 1, 1, 0},
      {"date-times have no wildcards",
       dateTimeId,
       {7, 208, 1, 1, 1, 2, 3},
       {255, 255, 1, 1, 1, 2, 3},
       wild,
       1,
       1,
       0},
      {"d_Time by bytes, zone first",
       dTimeId,
       {1, 0, 9, 0, 0, 0},
       {0, 0, 12, 0, 0, 0},
       wild,
       1,
       1,
       0},
      {"stamps: any year, then the time",
       dStampId,
       {7, 208, 5, 17, 0, 0, 1, 0, 0, 0},
       {255, 255, 5, 17, 0, 0, 2, 0, 0, 0},
       wild,
       1,
       -1,
       0},
      {"stamps: year -1",
       dStampId,
       {7, 208, 5, 17, 0, 0, 1, 0, 0, 0},
       {255, 255, 5, 17, 0, 0, 2, 0, 0, 0},
       plain,
       1,
       1,
       0},
      {"stamps: no time",
       dStampId,
       {7, 208, 5, 17},
       {7, 208, 5, 17, 0, 0, 1, 0, 0, 0},
       wild,
       1,
       0,
       2101},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    int status = 7;
    EXPECT_EQ(types.Cmp(row.id, row.first.size, row.first.block.get(), row.second.size,
                        row.second.block.get(), row.cmpOp, row.count, OT_FORMAT_BIG_ENDIAN, status),
              row.result)
        << row.name;
    EXPECT_EQ(status, row.status) << row.name;
  }
}

template <class T>
long InMemory(char id, const T& a, const T& b, unsigned char format = OT_FORMAT_MEMORY) {
  T first(a), second(b);
  return OtTypeMgr().Cmp(id, &first, &second, 0, 1, format);
}

TEST(TemporalRows, CompareByTheClassesInMemory) {
  const OtDate date(2000, 5, 17), anyYear(-1, 5, 17);
  EXPECT_EQ(InMemory(dateId, date, anyYear), 0);
  EXPECT_EQ(InMemory(dateId, anyYear, date), 0);
  EXPECT_EQ(InMemory(dateId, date, OtDate(2003, 5, 17)), -3);
  EXPECT_EQ(InMemory(dDateId, d_Date(2000, 1, 1), d_Date(2000, 3, 1)), -60);
  EXPECT_NE(InMemory(dDateId, d_Date(date), d_Date(anyYear)), 0);
  const d_Time east(12, 0, 0, 3, 0), utc(12, 0, 0, 0, 0);
  EXPECT_EQ(InMemory(dTimeId, east, utc), 0);
  EXPECT_EQ(InMemory(dTimeId, east, utc, OT_FORMAT_NATIVE), 1);
  EXPECT_EQ(InMemory(dStampId, Stamp(date, east), Stamp(date, utc)), 0);
  const OtDateTime noon(date, OtTime(12, 0, 0)), anyNoon(anyYear, OtTime(12, 0, 0));
  EXPECT_EQ(InMemory(dateTimeId, noon, anyNoon), 0);
  EXPECT_EQ(InMemory(dateTimeId, noon, anyNoon, 0x18), 1);  // with a flag, no memory form
}

unsigned long HashOf(char id, const void* value, unsigned char format, unsigned long length = 0,
                     unsigned long count = 1, int expectedStatus = 0) {
  int status = 7;
  const unsigned long hash =
      OtTypeMgr().Hash(id, length, const_cast<void*>(value), count, format, status);
  EXPECT_EQ(status, expectedStatus);
  return hash;
}

TEST(TemporalRows, Hash) {
  const OtDate date(2000, 1, 2);
  const OtTime time(13, -5, 9);
  const std::uint32_t dateBits = 0x07d00102, timeBits = 0x000cfb09;
  const OtDateTime both(date, time);
  const d_Date january(OtDate(-3, -1, 2));
  const d_Time zoned(13, 5, 9.75f, -1, 30);
  const d_Timestamp stamp = Stamp(date, zoned);
  const Bytes dateBytes{7, 208, 1, 2, 7, 208, 1, 2, 7}, zonedBytes{255, 30, 12, 35, 9, 75},
      stampBytes{7, 208, 1, 2, 255, 30, 12, 35, 9, 75};
  const std::uint32_t zonedBits = ((13u * 256 + 5) << 16) + 9;
  const struct {
    const char* name;
    unsigned long hash;
    std::uint32_t folded;
  } rows[] = {
      {"date", HashOf(dateId, &date, OT_FORMAT_MEMORY), dateBits},
      {"date, big-endian", HashOf(dateId, dateBytes.block.get(), OT_FORMAT_BIG_ENDIAN), dateBits},
      {"two equal dates", HashOf(dateId, dateBytes.block.get(), OT_FORMAT_BIG_ENDIAN, 0, 2), 0},
      {"a date that ends early",
       HashOf(dateId, dateBytes.block.get(), OT_FORMAT_BIG_ENDIAN, 9, 4, 2101), 0x07000000},
      {"time", HashOf(timeId, &time, OT_FORMAT_NATIVE), timeBits},
      {"date-time", HashOf(dateTimeId, &both, OT_FORMAT_MEMORY), dateBits ^ timeBits},
      // (-3 * 256 + 0xffff) * 256 + 2: the month counts as an unsigned word here.
      {"d_Date", HashOf(dDateId, &january, OT_FORMAT_MEMORY), 0x00fcff02},
      {"d_Time", HashOf(dTimeId, &zoned, OT_FORMAT_MEMORY), zonedBits},
      {"d_Time stored", HashOf(dTimeId, zonedBytes.block.get(), OT_FORMAT_BIG_ENDIAN), 0x0feee3db},
      {"d_Timestamp", HashOf(dStampId, &stamp, OT_FORMAT_MEMORY), dateBits ^ zonedBits},
      // Here the bytes are signed: the zone of -1 fills the word.
      {"d_Timestamp stored", HashOf(dStampId, stampBytes.block.get(), OT_FORMAT_BIG_ENDIAN),
       dateBits ^ 0xffeee3db},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.hash, static_cast<std::uint32_t>(row.folded * multiplier)) << row.name;
  }
}

// What `value` converts to, and what the text gives back.
template <class T>
std::string Texts(char id, T value) {
  OtTypeMgr types;
  OtTypeConvertData* data = types.ConvertTo(id, &value, 1);
  const OtString* text = data->GetString(0);
  const std::string result = text->IsNullValue() ? "null" : text->StrGet();
  delete data;
  return result;
}

template <class T>
std::string FromText(char id, const char* text) {
  OtTypeMgr types;
  OtString string(text);
  if (text == nullptr) string.SetNullValue();
  OtTypeConvertData* data = OtTypeConvertData::Make(11, 1, &string, nullptr);
  T* value = static_cast<T*>(CurrentFactory[static_cast<int>(id)]->ConvertFrom(data, 1));
  const std::string result = Show(*value);
  types.Delete(id, value, 1);
  delete data;
  return result;
}

TEST(TemporalRows, ConvertToNumbers) {
  const OtDate date(2000, 1, 1), noDate(-32768, -128, -128);
  const OtTime time(1, 1, 1), noTime(-128, -128, -128);
  EXPECT_EQ(Texts(dateId, date), "2451545");
  EXPECT_EQ(Texts(dateId, noDate), "null");
  EXPECT_EQ(Texts(timeId, time), "3661");
  EXPECT_EQ(Texts(dateTimeId, OtDateTime(date, time)), "2451545:3661");
  EXPECT_EQ(Texts(dateTimeId, OtDateTime(noDate, noTime)), "null");
  EXPECT_EQ(Texts(dDateId, d_Date(2000, 1, 1)), "2451545");
  EXPECT_EQ(Texts(dTimeId, d_Time(1, 1, 1.5f, 5, 30)), "3661");
  EXPECT_EQ(Texts(dStampId, Stamp(date, d_Time(1, 1, 1.5f, 5, 30))), "2451545:3661");
  EXPECT_EQ(Texts(dIntervalId, d_Interval(0, 0, 0, -1.5f)), "-1");
  EXPECT_EQ(Texts(dIntervalId, d_Interval::Of(1e30f)), "-2147483648");
}

TEST(TemporalRows, ConvertFromNumbers) {
  const struct {
    const char* name;
    std::string value;
    const char* expected;
  } rows[] = {
      {"date", FromText<OtDate>(dateId, "2451545"), "2000/1/1"},
      {"no date", FromText<OtDate>(dateId, nullptr), "-32768/-128/-128"},
      {"empty", FromText<OtDate>(dateId, ""), "-4713/11/24"},
      {"time", FromText<OtTime>(timeId, "3661"), "1:1:1"},
      {"date-time", FromText<OtDateTime>(dateTimeId, "2451545:3661"), "2000/1/1 1:1:1"},
      {"date alone", FromText<OtDateTime>(dateTimeId, "2451545"), "2000/1/1 0:0:0"},
      {"no time", FromText<OtDateTime>(dateTimeId, "2451545:"), "2000/1/1 0:0:0"},
      {"time alone", FromText<OtDateTime>(dateTimeId, ":3661"), "0/0/0 1:1:1"},
      {"neither", FromText<OtDateTime>(dateTimeId, nullptr), "-32768/-128/-128 -128:-128:-128"},
      {"d_Date", FromText<d_Date>(dDateId, "2451545"), "2000/1/1"},
      {"no d_Date", FromText<d_Date>(dDateId, nullptr), "0/0/0"},
      {"d_Time", FromText<d_Time>(dTimeId, "-1"), "0,0 23:59:59.0"},
      {"stamp", FromText<d_Timestamp>(dStampId, "2451545:3661"), "2000/1/1 0,0 1:1:1.0"},
      {"stamp, time alone", FromText<d_Timestamp>(dStampId, ":3661"), "0/0/0 0,0 1:1:1.0"},
      {"no stamp", FromText<d_Timestamp>(dStampId, nullptr), "0/0/0 0,0 0:0:0.0"},
      {"interval", FromText<d_Interval>(dIntervalId, "-12.75e1x"), "-127.5"},
      {"no interval", FromText<d_Interval>(dIntervalId, nullptr), "0"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.value, row.expected) << row.name;
}

TEST(TemporalRows, CreateReadsTheClockAndDefaultsDont) {
  const cases::FixedClock clock(946684800000, 0);
  OtTypeMgr types;
  auto* dates = static_cast<OtDate*>(types.Create(dateId, 3));
  EXPECT_EQ(Show(dates[0]) + Show(dates[2]), "2000/1/12000/1/1");
  EXPECT_EQ(types.IsNullValue(dateId, dates), 0);
  EXPECT_EQ(types.SetNullValue(dateId, dates), 0);
  EXPECT_NE(types.IsNullValue(dateId, dates), 0);
  EXPECT_EQ(types.Delete(dateId, dates, 3), nullptr);
  EXPECT_EQ(types.Delete(dateId, nullptr, 3), nullptr);
  auto* stamps = static_cast<d_Timestamp*>(types.DefaultValue(dStampId, 2, 1));
  EXPECT_EQ(Show(stamps[1]), "-4712/1/1 0,0 0:0:0.0");  // day number 0 of an empty text
  types.Delete(dStampId, stamps, 2);
  auto* nulls = static_cast<OtDateTime*>(types.DefaultValue(dateTimeId, 2, 1));
  EXPECT_TRUE(nulls[1].IsNullValue());
  types.Delete(dateTimeId, nulls, 2);
  EXPECT_EQ(types.SupportsNullValue(dDateId), 0);
  if (sizeof(void*) == 4) {
    EXPECT_EQ(types.Create(dStampId, 0x40000000), nullptr);
  }
}

template <class T>
std::string Printed(char id, T value, const char* format = nullptr) {
  OtString out("> ");
  OtTypeMgr().PrintToOtString(id, out, &value, format, 1);
  return out.StrGet();
}

TEST(TemporalRows, PrintByTheirFormats) {
  const OtDate date(2000, 1, 1);
  d_Time negative(0, 0, 0);
  negative.hundredths = -50;
  const struct {
    std::string text;
    const char* expected;
  } rows[] = {
      {Printed(dateId, date), "> Sat 01.Jan 2000"},
      {Printed(dateId, OtDate(-32768, -128, -128)), "{NULL}"},
      {Printed(timeId, OtTime(13, 5, 9)), "> 01:05:09 pm"},
      {Printed(dateTimeId, OtDateTime(date, OtTime(0, 5, 9))), "> Sat 01.Jan 2000 12:05:09 am"},
      {Printed(dDateId, d_Date(date), "%Y %H"), "> 2000 00"},
      {Printed(dDateId, d_Date(date)), "> Sat Jan 01"},
      {Printed(dTimeId, d_Time(13, 5, 9.5f, 3, 30)), "> 01:05:09 pm"},
      {Printed(dTimeId, d_Time(13, 5, 0), "%Y-%m-%d"), "> 0000-01-01"},
      {Printed(dStampId, Stamp(date, d_Time(13, 5, 9, 3, 30))), "> Sat Jan 01 01:05:09 pm"},
      {Printed(dIntervalId, d_Interval(2, 3)), "> 02 days, 03 hours, 00 minutes, 00 seconds"},
      {Printed(dIntervalId, d_Interval(0, 15)), "> 00 days, 03 hours, 00 minutes, 00 seconds"},
      {Printed(dIntervalId, d_Interval(-1, 2, 3, 4)),
       "> -01 days, -02 hours, -03 minutes, -04 seconds"},
      {Printed(dIntervalId, d_Interval::Of(1e30f), "%e %H:%M:%S"), "> 00 -03:-14:00"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.text, row.expected);
}

template <class T>
std::string Scanned(char id, const char* text, const char* format = nullptr) {
  T value;
  OtString string(text);
  EXPECT_EQ(OtTypeMgr().ScanFromOtString(id, &value, string, format, 1), &value);
  return Show(value);
}

float ScannedInterval(const char* text) {
  d_Interval value(9);
  OtString string(text);
  OtTypeMgr().ScanFromOtString(dIntervalId, &value, string, nullptr, 1);
  return value.seconds;
}

TEST(TemporalRows, ScanByTheirFormats) {
  d_Time::set_default_Time_Zone(static_cast<d_Time::Time_Zone>(2));
  // Taken back by assignment, the hour doesn't get the zone.
  EXPECT_EQ(Scanned<d_Time>(dTimeId, "01:05:09 pm"), "2,0 13:5:9.0");
  d_Time::set_default_Time_Zone(d_Time::Time_Zone{});
  EXPECT_EQ(Scanned<OtDate>(dateId, "Sat 01.Jan 2000"), "2000/1/1");
  EXPECT_EQ(Scanned<OtTime>(timeId, "{NULL}"), "-128:-128:-128");
  EXPECT_EQ(Scanned<d_Date>(dDateId, "2000-01-05", "%Y-%m-%d"), "2000/1/5");
  EXPECT_EQ(Scanned<d_Date>(dDateId, "{NULL}"), "-32768/-128/-128");
  EXPECT_EQ(Scanned<d_Timestamp>(dStampId, "Sat Jan 01 01:05:09 pm"), "0/1/1 0,0 13:5:9.0");
  EXPECT_EQ(ScannedInterval("02 days, 03 hours, 00 minutes, 00 seconds"), 183600.0f);
  EXPECT_EQ(ScannedInterval("00 days, 03 hours, 00 minutes, 00 seconds"), 86400.0f);
  EXPECT_EQ(ScannedInterval("32 days, 03 hours, 00 minutes, 00 seconds"), 86400.0f);
  EXPECT_EQ(ScannedInterval("{NULL}"), -11527808.0f);
  OtString text("x");
  EXPECT_EQ(OtTypeMgr().ScanFromOtString(dateId, nullptr, text, nullptr, 1), nullptr);
}

struct Estimate {
  const char* name;
  char id;
  Bytes value, lower, upper;  // big-endian; no range without a lower key
  unsigned short op;
  float share;
  unsigned short opAfter;
  const char* limits;  // lower key/upper key
};

std::string ShownKey(void* key, unsigned char length) {
  const std::string text = key != nullptr ? Hex(static_cast<unsigned char*>(key), length) : "-";
  std::free(key);
  return text;
}

TEST(TemporalRows, Estimate) {
  const Estimate rows[] = {
      {"a day of a year",
       dateId,
       {7, 208, 2, 1},
       {7, 208, 1, 1},
       {7, 208, 12, 31},
       OT_OP_EQUAL,
       1.0F / 366,
       OT_OP_EQUAL,
       "07d00201/07d00201"},
      {"days before",
       dateId,
       {7, 208, 2, 1},
       {7, 208, 1, 1},
       {7, 208, 12, 31},
       OT_OP_LESS | 0x20,
       31.0F / 366,
       OT_OP_LESS,
       "-/07d00201"},
      {"a whole year",
       dateId,
       {7, 208, 255, 255},
       {7, 207, 1, 1},
       {7, 208, 12, 31},
       OT_OP_EQUAL,
       366.0F / 731,
       OT_OP_EQUAL | OT_OP_WILDCARD,
       "07d00101/07d00c1f"},
      {"any February",
       dateId,
       {255, 255, 2, 255},
       {},
       {},
       OT_OP_EQUAL,
       1.0F,
       OT_OP_EQUAL | OT_OP_WILDCARD,
       "ed970218/7ffe021c"},
      {"no range", dateId, {7, 208, 1, 1}, {}, {}, OT_OP_LESS, 1.0F, OT_OP_LESS, "-/07d00101"},
      {"time",
       timeId,
       {0, 0, 49},
       {0, 0, 0},
       {0, 1, 39},
       OT_OP_GREATER,
       0.5F,
       OT_OP_GREATER,
       "000031/-"},
      {"date-time, without seconds",
       dateTimeId,
       {7, 208, 1, 1, 0, 9, 59},
       {7, 208, 1, 1, 0, 0, 0},
       {7, 208, 1, 1, 0, 9, 0},
       OT_OP_EQUAL,
       0.1F,
       OT_OP_EQUAL,
       "07d0010100093b/07d0010100093b"},
      {"d_Date without range",
       dDateId,
       {7, 208, 1, 2},
       {},
       {},
       OT_OP_LESS,
       15624033.0F,
       OT_OP_LESS,
       "-/07d00102"},
      {"d_Date",
       dDateId,
       {7, 208, 1, 2},
       {7, 208, 1, 1},
       {7, 208, 1, 10},
       OT_OP_GREATER,
       0.8F,
       OT_OP_GREATER,
       "07d00102/-"},
      {"d_Date of any year",
       dDateId,
       {255, 255, 1, 255},
       {7, 208, 1, 1},
       {7, 208, 1, 10},
       OT_OP_EQUAL,
       1.0F,
       OT_OP_EQUAL,
       "80000180/7fff017f"},
      {"d_Date, keys in falling order",
       dDateId,
       {7, 208, 1, 2},
       {7, 208, 1, 10},
       {7, 208, 1, 1},
       OT_OP_LESS,
       1.0F,
       OT_OP_LESS,
       "-/07d00102"},
      {"d_Time",
       dTimeId,
       {5, 0, 0, 0, 49, 0},
       {0, 0, 0, 0, 0, 0},
       {0, 0, 0, 1, 39, 0},
       OT_OP_LESS,
       0.49F,
       OT_OP_LESS,
       "-/050000003100"},
      {"d_Timestamp: an hour is a day",
       dStampId,
       {7, 208, 1, 1, 0, 0, 1, 0, 0, 0},
       {7, 208, 1, 1, 0, 0, 0, 0, 0, 0},
       {7, 208, 1, 2, 0, 0, 0, 0, 0, 0},
       OT_OP_LESS,
       3600.0F / 3601,
       OT_OP_LESS,
       "-/07d00101000001000000"},
  };
  OtTypeMgr types;
  for (const Estimate& row : rows) {
    const auto length = static_cast<unsigned char>(row.lower.size);
    OtIdxBounds bounds{row.lower.block.get(), row.upper.block.get(), length, length};
    OtIdxBounds limits;
    unsigned short op = row.op;
    EXPECT_FLOAT_EQ(
        types.EvalAndBound(row.id, length != 0 ? &bounds : nullptr, op, row.value.block.get(),
                           OT_FORMAT_BIG_ENDIAN, 1, &limits, nullptr),
        row.share)
        << row.name;
    EXPECT_EQ(op, row.opAfter) << row.name;
    const std::string lower = ShownKey(limits.lowerKey, limits.lowerKeyLength);
    EXPECT_EQ(lower + '/' + ShownKey(limits.upperKey, limits.upperKeyLength), row.limits)
        << row.name;
  }
}

// A caller's key takes the patches of the fields that it holds; with a length of 0 it is whole.
TEST(TemporalRows, WidenAsMuchOfALimitAsThereIs) {
  const struct {
    unsigned char length;
    const char* widened;
  } rows[] = {{0, "ed970b18"}, {1, "ffffffff"}, {2, "ed97ffff"}, {3, "ed970bff"}, {4, "ed970b18"}};
  for (const auto& row : rows) {
    unsigned char key[] = {255, 255, 255, 255};
    OtIdxBounds limits;
    limits.lowerKey = key;
    limits.lowerKeyLength = row.length;
    unsigned short op = OT_OP_GREATER;
    const Bytes any{255, 255, 255, 255};
    OtTypeMgr().EvalAndBound(dateId, nullptr, op, any.block.get(), OT_FORMAT_BIG_ENDIAN, 1, &limits,
                             nullptr);
    EXPECT_EQ(Hex(key, 4), row.widened) << +row.length;
  }
}

}  // namespace
