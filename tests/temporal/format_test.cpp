// The format language of all temporal types, at its ends and beyond them.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "ot95/typemgr.h"
#include "temporal/cases.h"

using cases::Show;

namespace {

constexpr std::int64_t clockOf2000 = 946684800000 + 45296000;  // 2000-01-01 12:34:56 UTC

template <class T>
std::string Printed(const T& value, const char* format) {
  OtString out;
  value.PrintToOtString(out, format);
  return out.StrGet();
}

// The format in a block of its very size, so that the sanitizers see what is read behind its end.
class ExactFormat {
 public:
  explicit ExactFormat(const std::string& text) : copy_(new char[text.size() + 1]) {
    text.copy(copy_.get(), text.size());
    copy_[text.size()] = '\0';
  }
  operator const char*() const { return copy_.get(); }

 private:
  std::unique_ptr<char[]> copy_;
};

OtDateTime Scanned(const std::string& text, const std::string& format) {
  OtDateTime value(OtDate(1, 2, 3), OtTime(4, 5, 6));
  value.ScanFromOtString(OtString(text.c_str()), ExactFormat(format));
  return value;
}

TEST(TemporalFormat, Prints) {
  const OtDateTime value(OtDate(2000, 1, 1), OtTime(13, 5, 9));
  const auto at = [](int hour) { return OtDateTime(OtDate(2000, 1, 1), OtTime(hour, 30, 0)); };
  const OtDateTime odd(OtDate(-1, 13, -7), OtTime(-3, 100, 127));
  const struct {
    OtDateTime value;
    const char* format;
    const char* expected;
  } rows[] = {
      {value, "%a %e.%b %Y %I:%M:%S %p", "Sat 01.Jan 2000 01:05:09 pm"},
      {value, nullptr, "2000-01-01T13:05:09"},
      {value, "%A %B %d", "Saturday Januar 01"},
      {value, "%y|%H|%P|%%|%Q|%", "00|13|PM|%|Q|"},
      {value, "", ""},
      {value, "no directive", "no directive"},
      {at(0), "%I:%M:%S %P", "12:30:00 AM"},
      {at(0), "%I:%M:%S", "00:30:00"},
      {at(12), "%I:%M:%S %P", "12:30:00 PM"},
      {at(12), "%I", "12"},
      {at(13), "%I", "01"},
      {at(13), "%I %%p", "01 %p"},  // the percent sign swallows what follows it
      {at(11), "%p%P", "amAM"},
      {odd, "%Y %y %m %B %b %d %e", "-0001 -01 13 013 013 -07 -07"},
      {odd, "%H %I %I%p %M:%S", "-03 -03 -03am 100:127"},
      {OtDateTime(OtDate(12345, 2, 1), OtTime(0, 0, 0)), "%Y %y %B %b", "12345 45 Februar Feb"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Printed(row.value, row.format), row.expected)
        << Show(row.value) << " by " << (row.format != nullptr ? row.format : "default");
  }
  for (const char* format : {static_cast<const char*>(nullptr), "%Y-%m-%d"}) {
    EXPECT_EQ(Printed(odd.date, format), "-0001-13--07");
    EXPECT_EQ(Printed(OtDate(-32768, -128, 127), format), "-32768--128-127");
  }
}

TEST(TemporalFormat, AppendsButNullReplaces) {
  OtString out("on ");
  OtDate date(2000, 1, 1);
  date.PrintToOtString(out, nullptr);
  EXPECT_STREQ(out.StrGet(), "on 2000-01-01");
  date.SetNullValue();
  date.PrintToOtString(out, nullptr);
  EXPECT_STREQ(out.StrGet(), "{NULL}");
  const std::string longText(1000, 'x');
  EXPECT_EQ(Printed(OtTime(1, 2, 3), (longText + "%H" + longText).c_str()),
            longText + "01" + longText);
  OtString wide(reinterpret_cast<const unsigned short*>(u"on "));
  OtTime(1, 2, 3).PrintToOtString(wide, nullptr);
  EXPECT_EQ(wide.Len(), 11);
}

TEST(TemporalFormat, TheOtherHalfIsTheClock) {
  const cases::FixedClock clock(clockOf2000, 0);
  EXPECT_EQ(Printed(OtDate(1990, 5, 6), "%Y %H:%M:%S"), "1990 12:34:56");
  EXPECT_EQ(Printed(OtTime(1, 2, 3), "%Y-%m-%d %H"), "2000-01-01 01");
  EXPECT_EQ(Printed(OtTime(1, 2, 3), "%a%%H"), "Sat%H");
}

TEST(TemporalFormat, Scans) {
  const char* const failed = "0/1/1 0:0:0";
  const struct {
    const char* text;
    const char* format;
    const char* expected;
  } rows[] = {
      {"2000-01-05", "%Y-%m-%d", "2000/1/5 0:0:0"},
      {"2000/01/05", "%Y-%m-%d", "2000/1/5 0:0:0"},  // other characters aren't compared
      {"03", "%y", "1903/1/1 0:0:0"},
      {"2000-02-30", "%Y-%m-%d", failed},
      {"00000000", "%Y%m%d", "0/0/0 0:0:0"},
      {"12:30:00 PM", "%I:%M:%S %p", "0/1/1 12:30:0"},
      {"12:30:00 AM", "%I:%M:%S %p", "0/1/1 0:30:0"},
      {"01:00:00 pm", "%I:%M:%S %p", "0/1/1 13:0:0"},
      {"01:00:00 xm", "%I:%M:%S %p", "0/1/1 1:0:0"},
      {"Jan 05 2000", "%b %d %Y", "2000/1/5 0:0:0"},
      {"Januar 05 2000", "%b %d %Y", "2000/1/5 0:0:0"},
      {"January 05 2000", "%b %d %Y", "2000/1/5 0:0:0"},  // "y" for " ", " 0" for "%d", ...
      {"January05 2000", "%b%%%d %Y", "2000/1/5 0:0:0"},
      {"003 05 2000", "%b %d %Y", "2000/3/5 0:0:0"},
      {"jan 05 2000", "%b %d %Y", "2000/1/5 0:0:0"},  // no name: a number that isn't one
      {"Saturday 01", "%a %d", "0/1/1 0:0:0"},
      {"Satur 07", "%A %d", "0/1/7 0:0:0"},
      {"07", "%a%d", "0/1/7 0:0:0"},
      {"  7", "%d", "0/1/7 0:0:0"},            // white space before a number is free
      {" 0712", "%d%m", failed},               // ... but its width isn't: the rest is month 71
      {"+7-1", "%d%H", failed},                // signs count as digits
      {"2000", "%Y-%m-%d", "2000/1/1 0:0:0"},  // what is missing keeps its start
      {"", "%Y-%m-%d %H:%M:%S %p %y", "0/1/1 0:0:0"},
      {"20000105", "%Y%m%d%", "2000/1/5 0:0:0"},
      {"32767-01-01", "%Y-%m-%d", failed},
      {"{NULL}", "%Y", "-32768/-128/-128 -128:-128:-128"},
      {"{NULL}abc", "%Y", "-32768/-128/-128 -128:-128:-128"},
      {"{NULL", "%Y", failed},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Show(Scanned(row.text, row.format)), row.expected)
        << '\'' << row.text << "' by '" << row.format << '\'';
  }
  OtDate date(1999, 9, 9);
  date.ScanFromOtString("2000-01-05", nullptr);
  EXPECT_EQ(Show(date), "2000/1/5");
  OtTime time(1, 1, 1);
  time.ScanFromOtString("25:00:00", nullptr);
  EXPECT_EQ(Show(time), "0:0:0");
  date.ScanFromOtString(reinterpret_cast<const unsigned short*>(u"2001-02-03"), nullptr);
  EXPECT_EQ(Show(date), "2001/2/3");
}

TEST(TemporalFormat, FollowsTheNullTextAsItIsSet) {
  const OtString before(OtTypeMgr::GetNullPrintString());
  OtTypeMgr::SetNullPrintString(reinterpret_cast<const unsigned short*>(u"none"));
  EXPECT_TRUE(Scanned("none", "%Y").IsNullValue());
  EXPECT_FALSE(Scanned("non", "%Y").IsNullValue());
  OtTypeMgr::SetNullPrintString("");
  EXPECT_TRUE(Scanned("2000", "%Y").IsNullValue());  // an empty text begins every text
  // A wide one is narrowed as all text that is scanned: by characters, not by low bytes.
  OtTypeMgr::SetNullPrintString(reinterpret_cast<const unsigned short*>(u"нет"));
  OtDate date(-32768, -128, -128);
  OtString printed;
  date.PrintToOtString(printed, nullptr);
  date = OtDate(2000, 1, 1);
  date.ScanFromOtString(printed, nullptr);
  EXPECT_TRUE(date.IsNullValue());
  OtTypeMgr::SetNullPrintString(reinterpret_cast<const unsigned short*>(u"Ā"));
  EXPECT_FALSE(Scanned("2000", "%Y").IsNullValue());
  OtTypeMgr::SetNullPrintString(before);
}

// What one format prints, it scans again; and no format and no text does harm.
TEST(TemporalFormat, SurvivesRandomFormatsAndTexts) {
  std::mt19937 random(4711);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const std::string pieces = "%%%%%%%YymBbdeAaHIMSPpQ:-. {N9aJF+\xff\x01";
  const char* const words[] = {"2000",   "12",      "Jan", "Sat", "PM",
                               "{NULL}", "Februar", "-",   "  ",  "9"};
  for (int round = 0; round < 20000; ++round) {
    std::string format, text;
    for (std::size_t n = below(24); n > 0; --n) format += pieces[below(pieces.size())];
    for (std::size_t n = below(8); n > 0; --n) {
      text += below(3) != 0 ? words[below(std::size(words))] : pieces.substr(below(30), 2);
    }
    const ExactFormat exact(format);
    const OtDateTime scanned = Scanned(text, format);
    const bool zeros = Show(scanned) == "0/0/0 0:0:0";
    ASSERT_TRUE(scanned.IsNullValue() || scanned.IsDaTime() || zeros) << text << " by " << format;
    const OtDateTime any(
        OtDate(static_cast<int>(random()), static_cast<int>(random()), static_cast<int>(random())),
        OtTime(static_cast<int>(random() % 256), 1, 2));
    const std::string printed = Printed(any, exact);
    ASSERT_LE(printed.size(), 10 * format.size()) << format;
  }
}

TEST(TemporalFormat, ScansWhatItPrints) {
  const char* const formats[] = {"%Y-%m-%d %H:%M:%S", "%a %e.%b %Y %I:%M:%S %p",
                                 "%A, %B %d %Y, %S seconds after %M minutes after %I %P"};
  std::mt19937 random(42);
  for (int round = 0; round < 3000; ++round) {
    const OtDateTime value(OtDate(static_cast<long>(1721060 + random() % 3652000)),
                           OtTime(static_cast<long>(random() % 86400)));
    for (const char* format : formats) {
      ASSERT_EQ(Show(Scanned(Printed(value, format), format)), Show(value)) << format;
    }
  }
}

}  // namespace
