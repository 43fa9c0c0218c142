// The 64-bit integer against the machine's own.

#include "ot95/int64.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ot95/fault.h"
#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace {

constexpr char kId = 26;
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

constexpr OtInt64 Make(std::int64_t value) {
  return OtInt64(static_cast<unsigned long>(value & 0xffffffff), static_cast<long>(value >> 32));
}

std::int64_t Native(const OtInt64& value) {
  return static_cast<std::int64_t>(std::uint64_t{static_cast<std::uint32_t>(value.high)} << 32 |
                                   value.low);
}

// What compiles to native arithmetic is known to the compiler.
static_assert(std::is_trivially_copyable_v<OtInt64> && std::is_standard_layout_v<OtInt64>);
static_assert(Make(kMax) + OtInt64(1) == Make(kMin) && -Make(kMin) == Make(kMin));
static_assert(Make(kMin) / OtInt64(-1) == Make(kMin) && Make(kMin) % OtInt64(-1) == OtInt64(0));
static_assert(OtInt64(-1).low == 0xffffffff && OtInt64(-1).high == -1);
static_assert(OtInt64(0x7fffffffffffffffL) == Make(kMax) && Make(kMin) + 1 == -kMax);
static_assert(OtInt64(-1LL) == OtInt64(~0ULL) && Make(kMax) == 0x7fffffffffffffffULL);
static_assert(OtInt64(0xffffffffu).high == 0 && OtInt64(7ul, -2l).high == -2);

TEST(Int64, WrapsAsTheMachineDoes) {
  const std::int64_t corners[] = {0,          1,         -1,   2,        -2,         10,
                                  kMin,       kMin + 1,  kMax, kMax - 1, 0xffffffff, -0x100000000,
                                  0x7fffffff, 0x80000000};
  std::mt19937_64 random(20);
  const auto pick = [&] {
    const std::uint64_t bits = random();
    return bits % 4 == 0 ? corners[(bits >> 8) % std::size(corners)]
                         : static_cast<std::int64_t>(random()) >> (bits >> 8 & 63);
  };
  for (int round = 0; round < 200000; ++round) {
    const std::int64_t x = pick();
    const std::int64_t y = pick();
    const auto ux = static_cast<std::uint64_t>(x);
    const auto uy = static_cast<std::uint64_t>(y);
    const OtInt64 a = Make(x);
    const OtInt64 b = Make(y);
    SCOPED_TRACE(std::to_string(x) + " and " + std::to_string(y));
    ASSERT_EQ(Native(a + b), static_cast<std::int64_t>(ux + uy));
    ASSERT_EQ(Native(a - b), static_cast<std::int64_t>(ux - uy));
    ASSERT_EQ(Native(a * b), static_cast<std::int64_t>(ux * uy));
    ASSERT_EQ(Native(a | b), x | y);
    ASSERT_EQ(Native(a & b), x & y);
    ASSERT_EQ(Native(~a), ~x);
    ASSERT_EQ(std::make_tuple(a == b, a != b, a<b, a> b, a <= b, a >= b),
              std::make_tuple(x == y, x != y, x<y, x> y, x <= y, x >= y));
    if (y == 0 || (x == kMin && y == -1)) continue;
    ASSERT_EQ(Native(a / b), x / y);
    ASSERT_EQ(Native(a % b), x % y);
  }
}

TEST(Int64, CompoundOperatorsReturnCopies) {
  OtInt64 value(7);
  static_assert(std::is_same_v<decltype(value += value), OtInt64>);
  static_assert(std::is_same_v<decltype(++value), OtInt64>);
  EXPECT_EQ(Native(++value), 8);
  EXPECT_EQ(Native(value *= OtInt64(-3)), -24);
  EXPECT_EQ(Native(value /= OtInt64(5)), -4);
  EXPECT_EQ(Native(value %= OtInt64(3)), -1);
  EXPECT_EQ(Native(value <<= 4), -16);
  EXPECT_EQ(Native(value >>= 1), -8);
  EXPECT_EQ(Native(value -= OtInt64(2)), -10);
  EXPECT_EQ(Native(--value), -11);
  EXPECT_EQ(Native(value.Abs()), 11);
  EXPECT_EQ(Native(Make(kMin).Abs()), kMin);
}

TEST(Int64, ShiftsPastTheWidth) {
  for (const unsigned count : {0u, 1u, 31u, 32u, 63u, 64u, 65u, 0xffffffffu}) {
    const bool inside = count < 64;
    EXPECT_EQ(Native(Make(-5) << count), inside ? Native(Make(-5) * (OtInt64(1) << count)) : 0);
    EXPECT_EQ(Native(Make(kMin) >> count), inside ? kMin >> count : -1) << count;
    EXPECT_EQ(Native(Make(kMax) >> count), inside ? kMax >> count : 0) << count;
  }
}

std::string reported;

TEST(Int64, DivisionByZeroIsReportedAndGivesZero) {
  const OtAssertHandler before =
      OTDB_SetAssertHandler([](const char* expression, const char* file, unsigned long line) {
        reported = std::string(expression) + "|" + file + "|" + std::to_string(line);
      });
  for (const std::int64_t dividend : {std::int64_t{0}, std::int64_t{7}, kMin}) {
    for (const int remainder : {0, 1}) {
      reported.clear();
      EXPECT_EQ(Native(Make(dividend).Division(OtInt64(0), remainder)), 0) << dividend;
      EXPECT_EQ(reported, "0 && \"OtInt64 divide by zero\"|src\\otint64|737");
    }
  }
  OTDB_SetAssertHandler(before);
}

TEST(Int64, DoublesGoThroughSevenDigits) {
  const struct {
    double from;
    std::int64_t to;
  } rows[] = {{0.5, 0},
              {-0.5, 0},
              {1.5, 1},
              {-1.5, -1},
              {1.9999999, 2},
              {-1.9999999, -2},
              {0.99999999, 0},
              {9.9999996, 10},
              {1234567.4, 1234567},
              {1234567.8, 1234568},
              {1234567.5, 1234568},
              {123456789.0, 123456800},
              {-123456789.0, -123456800},
              {1e18, 1000000000000000000},
              {9223372036854774784.0, 9223372000000000000},
              {9223372036854775807.0, kMax},
              {-1.0e19, -kMax},
              {HUGE_VAL, kMax},
              {-HUGE_VAL, -kMax},
              {std::nan(""), 0}};
  for (const auto& row : rows) EXPECT_EQ(Native(OtInt64(row.from)), row.to) << row.from;
}

std::string Printed(std::int64_t value, const char* format, const char* before = "") {
  OtString text(before);
  return Make(value).PrintToOtString(text, format).StrGet();
}

TEST(Int64, Prints) {
  const struct {
    std::int64_t value;
    const char* format;
    const char* text;
  } rows[] = {{5, nullptr, "5"},
              {kMin, "%S", "-9223372036854775808"},
              {kMin, "%i", "-9223372036854775808"},
              {kMax, "%d", "9223372036854775807"},
              {-255, "%x", "-0xff"},
              {-255, "%X", "-0XFF"},
              {8, "%o", "010"},
              {0, "%o", "00"},
              {0, "%x", "0x0"},
              {kMin, "%o", "01000000000000000000000"},
              {kMin, "%x", "0x8000000000000000"},
              {kMin, "%X", "0X8000000000000000"},
              {7, "%%d", "%7"},
              {7, "%5d %", "%5d %"},
              {7, "<%S|%x>", "<7|0x7>"},
              {7, "%n%s%ld", "%n%s%ld"},
              {7, "", ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(Printed(row.value, row.format), row.text) << (row.format ? row.format : "null");
  }
  EXPECT_EQ(Printed(5, "%S", "a"), "a5") << "printing appends";
  std::string many;
  for (int i = 0; i < 300; ++i) many += "%S,";
  EXPECT_EQ(Printed(-12, many.c_str()).size(), 300u * 4) << "a long format isn't cut";
}

TEST(Int64, Scans) {
  constexpr std::int64_t old = 99;
  const struct {
    const char* text;
    const char* format;
    std::int64_t value;
  } rows[] = {{"5", nullptr, 5},
              {"-17", "%d", -17},
              {"+17", "%i", 17},
              {"0x1F", "%S", 31},
              {"0X1f", "%S", 31},
              {"017", "%S", 15},
              {"0", "%S", 0},
              {"-", "%S", 0},
              {"-0x10", "%x", -16},
              {"010", "%o", 8},
              {"0x8000000000000000", "%x", kMin},
              {"-9223372036854775808", "%S", kMin},
              {"18446744073709551617", "%S", 1},  // Digits wrap.
              {"12,34", "%S,%S", 34},
              {"<7>", "<%S>", 7},
              {"7%", "%S%", 7},
              {"12,", "%S,%S", 0},   // No digits read as 0.
              {"1257", "%S57", 12},  // The terminator ends the digits.
              {"abc", "abc", old},
              {"abc", "abd", -1},
              {"", "%S", old},
              {"5", "", old},
              {"0", "%d", -1},
              {"0", "%x", -1},
              {"10", "%o", -1},
              {"ff", "%x", -1},
              {"09", "%S", -1},
              {"0x1G", "%S", -1},
              {"12abc", "%S", -1},
              {"-+5", "%S", -1},
              {"--5", "%S", -1},
              {" 5", "%S", -1},
              {"5x", "%Sy", -1},
              {"5", "%S,", -1},
              {"5,", "%S", -1},
              {"5", "%5d", -1}};
  for (const auto& row : rows) {
    const bool isDefault = row.format && std::string_view(row.format) == "%S";
    for (const char* format : {row.format, isDefault ? nullptr : row.format}) {
      OtInt64 value = Make(old);
      value.ScanFromOtString(OtString(row.text), format);
      EXPECT_EQ(Native(value), row.value)
          << '"' << row.text << "\" by " << (format ? format : "null");
    }
  }
}

TEST(Int64, ScansWideText) {
  OtString text("-0x12");
  ASSERT_EQ(text.MapToCodeSet(0xfd), 0);
  OtInt64 value(0);
  value.ScanFromOtString(text, "%x");
  EXPECT_EQ(Native(value), -18);
}

TEST(Int64, StoresTheLowWordFirst) {
  OtTypeMgr types;
  OtInt64 values[2] = {Make(0x0102030405060708), Make(-2)};
  const struct {
    unsigned char format;
    std::vector<unsigned char> bytes;
  } rows[] = {
      {1, {8, 7, 6, 5, 4, 3, 2, 1, 0xfe, 255, 255, 255, 255, 255, 255, 255}},
      {2, {5, 6, 7, 8, 1, 2, 3, 4, 255, 255, 255, 0xfe, 255, 255, 255, 255}},
  };
  for (const auto& row : rows) {
    std::vector<unsigned char> disk(16);
    EXPECT_EQ(types.Store(kId, disk.data(), values, row.format, 2), 16u);
    EXPECT_EQ(disk, row.bytes) << int{row.format};
    OtInt64 loaded[2] = {0, 0};
    EXPECT_EQ(types.Load(kId, loaded, disk.data(), row.format, 2), 16u);
    EXPECT_TRUE(loaded[0] == values[0] && loaded[1] == values[1]) << int{row.format};
    int status = -1;
    constexpr std::uint32_t folded = (0x05060708 ^ 0x01020304) ^ 0xfffffffe ^ 0xffffffff;
    EXPECT_EQ(types.Hash(kId, 16, disk.data(), 2, row.format, status),
              static_cast<std::uint32_t>(folded * 1103515245u));
    EXPECT_EQ(types.Cmp(kId, disk.data(), disk.data() + 8, 0, 1, row.format), 1);
  }
}

TEST(Int64, ComparesNoFurtherThanTheLengths) {
  OtTypeMgr types;
  // Exactly as many bytes as are said, so that an over-read is seen.
  std::vector<unsigned char> one = {1, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0};
  std::vector<unsigned char> two = {1, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0};
  int status = -1;
  EXPECT_EQ(types.Cmp(kId, 11, one.data(), 16, two.data(), 0, 2, 1, status), 0);
  EXPECT_EQ(status, 0) << "missing bytes read as 0";
  EXPECT_EQ(types.Cmp(kId, 8, one.data(), 16, two.data(), 0, 2, 1, status), 0);
  EXPECT_EQ(status, OT_ERR_END_OF_DATA);
}

}  // namespace
