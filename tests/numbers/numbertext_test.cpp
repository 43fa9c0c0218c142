// Printing and scanning of scalars through the table. What a checked format may do is what the C
// library does with it, so its snprintf is the reference.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

enum : char {
  kChar = 0,
  kShort = 1,
  kLong = 2,
  kDouble = 3,
  kFloat = 4,
  kWord = 5,
  kDword = 6,
  kInt = 7,
  kUnsigned = 8,
  kByte = 10,
  kBlockId = 14,
  kNullUshort = 31,
  kNullInt = 32,
  kNullDouble = 37
};

template <class T>
std::string Print(char id, T value, const char* format) {
  OtString target("old");
  return OtTypeMgr().PrintToOtString(id, target, &value, format, 1).StrGet();
}

template <class T>
T Scan(char id, T value, const char* text, const char* format) {
  OtString source(text);
  OtTypeMgr types;
  EXPECT_EQ(types.ScanFromOtString(id, &value, source, format, 1), &value);
  return value;
}

// The formats below are made here, not by a caller.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

template <class T>
std::string Expected(const std::string& format, T value) {
  char text[512];
  std::snprintf(text, sizeof text, format.c_str(), value);
  return text;
}

/// Flags, width and precision at random.
std::string RandomSpec(std::mt19937_64& random) {
  std::string spec = "<%";
  for (const char flag : {'-', '+', ' ', '#', '0'}) {
    if (random() % 4 == 0) spec += flag;
  }
  if (random() % 2 == 0) spec += std::to_string(random() % (random() % 20 == 0 ? 600 : 20));
  if (random() % 2 == 0) spec += ".";
  if (spec.back() == '.' && random() % 4 != 0) {
    spec += std::to_string(random() % (random() % 20 == 0 ? 700 : 18));
  }
  return spec;
}

TEST(NumberText, IntegersPrintAsTheCLibraryDoes) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 50000; ++round) {
    const std::string spec = RandomSpec(random);
    const auto value = static_cast<std::int32_t>(random() >> (32 + random() % 32));
    const char letter = "diuoxX"[random() % 6];
    const std::string modifier(static_cast<std::size_t>(random() % 3), 'h');
    const std::string narrow = spec + modifier + letter + "%%>";
    ASSERT_EQ(Print(kInt, value, narrow.c_str()), Expected(narrow, value)) << narrow;
    const std::string plain = spec + letter + ">";
    const std::string wide = spec + (random() % 2 ? "ll" : "l") + letter + ">";
    ASSERT_EQ(Print(kLong, value, wide.c_str()), Expected(plain, value)) << wide;
    const auto half = static_cast<std::int16_t>(value);
    ASSERT_EQ(Print(kShort, half, wide.c_str()), Expected(plain, int{half})) << wide;
  }
}

TEST(NumberText, RealsPrintAsTheCLibraryDoes) {
  std::mt19937_64 random(2);
  for (int round = 0; round < 50000; ++round) {
    const std::uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    if (random() % 2 == 0) value = static_cast<double>(static_cast<std::int32_t>(bits)) / 64;
    if (random() % 50 == 0) value = std::copysign(random() % 2 ? 0.0 : HUGE_VAL, value);
    const std::string format = RandomSpec(random) + "aAeEfFgG"[random() % 8] + ">";
    ASSERT_EQ(Print(kDouble, value, format.c_str()), Expected(format, value)) << format;
    const auto narrow = static_cast<float>(value);
    ASSERT_EQ(Print(kFloat, narrow, format.c_str()), Expected(format, double{narrow})) << format;
  }
}

TEST(NumberText, DefaultFormatsOfTheRows) {
  EXPECT_EQ(Print<char>(kChar, 'A', nullptr), "A");
  EXPECT_EQ(Print<char>(kByte, '\xe9', nullptr), "0xe9");
  EXPECT_EQ(Print<std::int16_t>(kShort, -1, nullptr), "-1");
  EXPECT_EQ(Print<std::uint16_t>(kWord, 65535, nullptr), "65535");
  EXPECT_EQ(Print<std::uint16_t>(kWord, 65535, "%d"), "-1") << "the word is sign-extended";
  EXPECT_EQ(Print<std::uint32_t>(kDword, 4294967295u, nullptr), "4294967295");
  EXPECT_EQ(Print<std::uint32_t>(kBlockId, 4294967295u, nullptr), "#4294967295");
  EXPECT_EQ(Print<std::int32_t>(kLong, INT32_MIN, nullptr), "-2147483648");
  EXPECT_EQ(Print(kDouble, 0.1, nullptr), "0.100000");
  EXPECT_EQ(Print(kFloat, 1e10f, nullptr), "10000000000.000000");
}

// Rows that share a printer share what it does without a format: the format of the first.
TEST(NumberText, FormatsOfFamilies) {
  const struct {
    char id;
    const char* printed;
  } rows[] = {
      {kByte, "A"}, {kWord, "-191"}, {kDword, "-191"}, {kBlockId, "-191"}, {kUnsigned, "-191"}};
  for (const auto& row : rows) {
    std::int32_t value = row.id == kByte ? 'A' : -191;
    OtString text("-191");
    const OtTypeDescriptor& members = *CurrentFactory[static_cast<int>(row.id)];
    OtString printed;
    EXPECT_STREQ(members.PrintToString(printed, &value, nullptr, 1).StrGet(), row.printed);
    std::int32_t scanned = row.id == kWord ? -1 : 0;
    members.ScanFromString(&scanned, text, nullptr, 1);
    EXPECT_EQ(scanned, row.id == kByte ? '-' : -191) << members.name;
  }
}

TEST(NumberText, WhatIsNoConversionIsText) {
  const struct {
    const char* format;
    const char* text;
  } rows[] = {{"%n", "%n"},     {"%s", "%s"},        {"%*d", "%*d"},
              {"%d%d", "7%d"},  {"%", "%"},          {"%l", "%l"},
              {"%%%d", "%7"},   {"%%d", "%d"},       {"100%% of %d", "100% of 7"},
              {"%f", "%f"},     {"%p %d", "%p 7"},   {"%.*d", "%.*d"},
              {"%1$d", "%1$d"}, {"%d%n%s", "7%n%s"}, {"%-5d|", "7    |"},
              {"%5%d", "%57"},  {"%d%", "7%"},       {"%c", "\a"},
              {"", ""},         {"%lld", "7"},       {"%Id", "%Id"},
              {"%.3d", "007"},  {"%d%%", "7%"},      {"%ls%u", "%ls7"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Print(kInt, 7, row.format), row.text) << row.format;
    EXPECT_EQ(Print<std::int16_t>(kShort, 7, row.format), row.text) << row.format;
  }
  for (const char* format : {"%d", "%s", "%n", "%c", "%*f", "%.*g", "%lp"}) {
    EXPECT_EQ(Print(kDouble, 1.0, format), format);
    EXPECT_EQ(Print(kFloat, 1.0f, format), format);
  }
}

TEST(NumberText, ResultsAreCutAt511Bytes) {
  const std::string blanks(511, ' ');
  EXPECT_EQ(Print(kInt, 7, "%600d"), blanks);
  EXPECT_EQ(Print(kInt, 7, "%-99999999999999999999d"), "7" + blanks.substr(1));
  EXPECT_EQ(Print(kInt, 7, "%.600d"), std::string(511, '0'));
  EXPECT_EQ(Print(kInt, 7, "%511d"), blanks.substr(1) + "7");
  EXPECT_EQ(Print(kDouble, 1.0, "%.5000f"), "1." + std::string(509, '0'));
  EXPECT_EQ(Print(kDouble, -1e308, "%400.300f").size(), 511u);
  EXPECT_EQ(Print(kInt, 7, std::string(505, 'x').append("%012d").c_str()).size(), 511u);
}

TEST(NumberText, IntegersScanAsWith32BitLongs) {
  const struct {
    const char* text;
    const char* format;
    std::int32_t asInt;
    std::uint16_t asWord;
  } rows[] = {{"7", "%d", 7, 7},
              {"3000000000", "%d", INT32_MAX, 0xffff},
              {"-3000000000", "%ld", INT32_MIN, 0},
              {"99999999999", "%lu", -1, 0xffff},
              {"4294967296", "%hu", -1, 0xffff},
              {"-1", "%u", -1, 0xffff},
              {"70000", "%hd", 70000, 4464},
              {"0x1f", "%i", 31, 31},
              {"017", "%i", 15, 15},
              {"017", "%d", 17, 17},
              {"ff", "%x", 255, 255},
              {"0xff", "%x", 255, 255},
              {"17", "%o", 15, 15},
              {" \t 42abc", "%d", 42, 42},
              {"12345", "%3d", 123, 123},
              {"00042", "%-+ #.9ld", 42, 42},
              {"A", "%c", 65, 65},
              {"#9", "#%lu", 9, 9},
              {"a  9", "a %d", 9, 9},
              {"% 9", "%% %d", 9, 9},
              // What doesn't match leaves the value.
              {"abc", "%d", -5, 99},
              {"", "%d", -5, 99},
              {"9", "#%lu", -5, 99},
              {"7", "%*d", -5, 99},
              {"7", "%n", -5, 99},
              {"7", "%s", -5, 99},
              {"7", "%f", -5, 99},
              {"7", "", -5, 99},
              {"- 7", "%d", -5, 99}};
  for (const auto& row : rows) {
    EXPECT_EQ(Scan(kInt, -5, row.text, row.format), row.asInt) << row.text << " by " << row.format;
    EXPECT_EQ(Scan(kLong, -5, row.text, row.format), row.asInt) << row.text << " by " << row.format;
    EXPECT_EQ(Scan<std::uint16_t>(kWord, 99, row.text, row.format), row.asWord)
        << row.text << " by " << row.format;
  }
}

TEST(NumberText, RealsScanAsTheCLibraryDoes) {
  const char* texts[] = {"0.1",
                         "-1e400",
                         "1e-400",
                         "4.9e-324",
                         "0x1.8p3",
                         "inf",
                         "-INFINITY",
                         " 12.5x",
                         "1e",
                         ".5",
                         "5.",
                         "1e39",
                         "+3",
                         "0.0000001e5",
                         "-",
                         "e5",
                         "--1",
                         "0x",
                         "",
                         "1,5",
                         "16777217",
                         "-0",
                         "1e-46",
                         "+-1",
                         "0x-1",
                         "1e99999999999",
                         "0e99999999999",
                         "infinit",
                         "infi",
                         "infx",
                         "infinityx",
                         "0xinf",
                         "0xnan",
                         "-0x",
                         "0x.8"};
  for (const char* text : texts) {
    double wide = -7;
    float narrow = -7;
    std::sscanf(text, "%lf", &wide);
    std::sscanf(text, "%f", &narrow);
    const double scanned = Scan(kDouble, -7.0, text, nullptr);
    EXPECT_EQ(std::memcmp(&scanned, &wide, sizeof wide), 0) << text << ' ' << scanned;
    EXPECT_EQ(Scan(kFloat, -7.0f, text, "%lf"), narrow) << text;
  }
  EXPECT_EQ(Scan(kDouble, -7.0, "12345", "%3lf"), 123.0);
  EXPECT_EQ(Scan(kDouble, -7.0, "infinity", "%3lf"), HUGE_VAL);
  EXPECT_EQ(Scan(kDouble, -7.0, "infinity", "%7lf"), -7.0);
  EXPECT_EQ(Scan(kDouble, -7.0, "1", "%d"), -7.0);
}

TEST(NumberText, ScaledDoublesKeepEveryBit) {
  for (const char* format : {"ldexp(%la,%d)", "ldexp(%.17lg,%d)", "ldex%.16e %i"}) {
    for (const double value : {0.1, -1e300, 5e-324, 0.0, -0.0, 1.0, 3.14159265358979}) {
      const std::string text = Print(kDouble, value, format);
      const double back = Scan(kDouble, -7.0, text.c_str(), format);
      EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << text;
    }
  }
  EXPECT_EQ(Print(kDouble, 3.0, "ldexp(%lf,%d)"), "ldexp(0.750000,2)");
  EXPECT_EQ(Print(kDouble, 3.0, "ldexp(%d,%n"), "ldexp(%d,%n");
  EXPECT_EQ(Print(kDouble, 3.0, "LDEX %.1f"), "LDEX 3.0");
  EXPECT_EQ(Print(kFloat, 3.0f, "ldexp(%.0f,%d)"), "ldexp(3,%d)") << "float has no such mode";
  EXPECT_EQ(Scan(kDouble, -7.0, "ldexp(0.5,x)", "ldexp(%lf,%d)"), -7.0);
  EXPECT_EQ(Scan(kDouble, -7.0, "ldexp(1,9999999999)", "ldexp(%lf,%d)"), HUGE_VAL);
}

TEST(NumberText, CharArraysPrintWhole) {
  OtTypeMgr types;
  OtString target("old");
  char bytes[] = {'A', '\x07', '\0', '\xff', '~', '\x7f', ' '};
  EXPECT_STREQ(types.PrintToOtString(kChar, target, bytes, nullptr, 7).StrGet(),
               "A0x070x000xff~0x7f ");
  EXPECT_STREQ(types.PrintToOtString(kByte, target, bytes, "[%3d]", 2).StrGet(), "[ 65]0x07");
  EXPECT_STREQ(types.PrintToOtString(kChar, target, bytes, nullptr, 0).StrGet(), "");
  const std::string many(5000, 'x');
  std::string copy = many;
  EXPECT_EQ(types.PrintToOtString(kChar, target, copy.data(), nullptr, 5000).StrGet(), many);
}

TEST(NumberText, CharsScanByteByByte) {
  const struct {
    const char* text;
    const char* format;
    char bytes[3];
  } rows[] = {{"0x41", nullptr, {'A', 'x', '4'}},
              {"abc", nullptr, {'a', 'b', 'c'}},
              {"ab", nullptr, {'a', 'b', '?'}},
              {"", nullptr, {'?', '?', '?'}},
              {"0x1ff", nullptr, {'\xff', 'x', '1'}},
              {"0xz", nullptr, {'0', 'x', 'z'}},
              {"65,", "%d", {65, 5, '?'}},
              {"abc", "%s", {'?', '?', '?'}},
              {"abc", "%3c", {'a', 'b', 'c'}}};
  OtTypeMgr types;
  for (const auto& row : rows) {
    for (const bool wide : {false, true}) {
      OtString text(row.text);
      if (wide) text.MapToCodeSet(0xfd);
      char bytes[3] = {'?', '?', '?'};
      types.ScanFromOtString(kChar, bytes, text, row.format, 3);
      EXPECT_EQ(std::memcmp(bytes, row.bytes, 3), 0) << row.text << (wide ? " wide" : "");
    }
  }
}

TEST(NumberText, ArraysAppendWithCommas) {
  OtTypeMgr types;
  OtString target("old ");
  std::int16_t values[] = {1, 2, 3};
  EXPECT_STREQ(types.PrintToOtString(kShort, target, values, nullptr, 3).StrGet(), "old 1,2,3");
  EXPECT_STREQ(types.PrintToOtString(kShort, target, values, nullptr, 1).StrGet(), "1");
  OtString text("7");
  EXPECT_EQ(types.ScanFromOtString(kShort, nullptr, text, nullptr, 1), nullptr);
}

template <class T>
struct Nullable {
  T value;
  char isNull;
};

TEST(NumberText, NullableRowsPrintAndScanLikeTheirScalars) {
  EXPECT_EQ(Print(kNullUshort, Nullable<std::uint16_t>{65535, 0}, "%d"), "65535");
  EXPECT_EQ(Print(kNullInt, Nullable<int>{7, 0}, "%d%n"), "7%n");
  EXPECT_EQ(Print(kNullInt, Nullable<int>{0, 1}, nullptr), "{NULL}");
  struct alignas(8) NullableDouble : Nullable<double> {};
  EXPECT_EQ(Print(kNullDouble, NullableDouble{{3.0, 0}}, "ldexp(%.0f,%d)"), "ldexp(3,%d)");
  EXPECT_EQ(Scan(kNullDouble, NullableDouble{{7.0, 1}}, "ldexp(.5,3)", "ldexp(%lf,%d)").value, 4.0);
  auto scanned = Scan(kNullInt, Nullable<int>{5, 0}, "abc", nullptr);
  EXPECT_EQ(scanned.value, 5) << "what doesn't match leaves the value";
  EXPECT_EQ(scanned.isNull, 0);
  scanned = Scan(kNullInt, Nullable<int>{5, 0}, "{NULL}x", nullptr);
  EXPECT_EQ(scanned.isNull, 1);
}

TEST(NumberText, IgnoresTheLocale) {
  const char* chosen = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8"}) {
    if (!chosen) chosen = std::setlocale(LC_ALL, name);
  }
  if (!chosen) GTEST_SKIP() << "no locale with a decimal comma is installed";
  EXPECT_EQ(Print(kDouble, 1.5, "%.2f"), "1.50");
  EXPECT_EQ(Scan(kDouble, -7.0, "1.5", "%lf"), 1.5);
  EXPECT_EQ(Print<char>(kChar, '\xe9', nullptr), "0xe9");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
