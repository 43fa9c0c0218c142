// The string itself: how it is made, what it holds, its code sets, its numbers, its limits.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "ot95/config.h"
#include "ot95/typemgr.h"
#include "text/texts.h"

namespace {

bool memoryIsShort = false;

}  // namespace

/// Texts are allocated by this form alone.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return memoryIsShort ? nullptr : ::operator new[](size);
}

namespace {

const unsigned short kWideAb[] = {'a', 'b', 0};

/// The process's settings stay as they are once there: all tests use this one.
void Configure(const char* settings) {
  static OtConfig config;
  ASSERT_EQ(config.ReadText(settings), 0);
  DefaultConfig(&config);
}

/// Puts back the defaults that a test changes.
class Defaults : public testing::Test {
 protected:
  ~Defaults() override {
    OtString::SetDefaultCodeSet(codeSet_);
    OtString::SetDefaultLanguage(language_);
    ___OtTypeMgrOptions() = options_;
  }

 private:
  unsigned char codeSet_ = OtString::GetDefaultCodeSet();
  unsigned char language_ = OtString::GetDefaultLanguage();
  long options_ = ___OtTypeMgrOptions();
};

using String = Defaults;

TEST_F(String, ConstructorsTakeCodeSetLanguageAndText) {
  OtString relabelled("x");
  relabelled.SetLanguageCode(9);
  const char inner[] = {'a', 0, 'b'};
  const struct {
    const char* name;
    OtString text;
    unsigned char codeSet, language;
    std::u16string units;
    unsigned short memLen;
  } rows[] = {
      {"default", OtString(), 1, 1, u"", 0},
      {"code set and language", OtString(0xff, 0xff), 0xff, 0xff, u"", 0},
      {"copy", OtString(relabelled), 1, 9, u"x", 2},
      {"copy without buffer", OtString(OtString(0xfd, 7)), 0xfd, 7, u"", 0},
      {"char", OtString('a'), 1, 1, u"a", 2},
      {"zero char", OtString('\0'), 1, 1, u"", 0},
      {"wide character", OtString(static_cast<unsigned short>(0x20ac)), 0xfd, 1, u"\u20ac", 4},
      {"zero wide character", OtString(static_cast<unsigned short>(0)), 0xfd, 1, u"", 0},
      {"text", OtString("ab"), 1, 1, u"ab", 3},
      {"empty text", OtString(""), 1, 1, u"", 1},
      {"null text", OtString(static_cast<const char*>(nullptr)), 1, 1, u"", 0},
      {"wide text", OtString(kWideAb), 0xfd, 1, u"ab", 6},
      {"counted", OtString("abc", 2), 1, 1, u"ab", 3},
      {"counted, none", OtString("abc", 0), 1, 1, u"", 0},
      {"counted, all", OtString("abc", 0xffff), 1, 1, u"abc", 4},
      {"counted past a zero", OtString(inner, 3), 1, 1, u"a", 4},
      {"copy ends at a zero", OtString(static_cast<const OtString&>(OtString(inner, 3))), 1, 1,
       u"a", 2},
      {"wide counted", OtString(kWideAb, 1), 0xfd, 1, u"a", 4},
      {"short", OtString(static_cast<short>(-5)), 1, 1, u"-5", 3},
      {"int", OtString(2147483647), 1, 1, u"2147483647", 11},
      {"unsigned int", OtString(0xffffffffu), 1, 1, u"-1", 3},
      {"long", OtString(std::numeric_limits<std::int32_t>::min() + 0L), 1, 1, u"-2147483648", 12},
      {"unsigned long", OtString(4294967295UL), 1, 1, u"4294967295", 11},
      {"long long", OtString(-9223372036854775807LL), 1, 1, u"-9223372036854775807", 21},
      {"unsigned long long", OtString(~0ULL), 1, 1, u"18446744073709551615", 21},
      {"appended", OtString("") << -1LL << ~0ULL, 1, 1, u"-118446744073709551615", 23},
      {"double", OtString(0.1), 1, 1, u"0.1", 4},
      {"double, fifteen digits", OtString(1.0 / 3), 1, 1, u"0.333333333333333", 18},
      {"double, exponent", OtString(-1e100), 1, 1, u"-1e+100", 8},
      {"double, infinite", OtString(HUGE_VAL), 1, 1, u"inf", 4},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.text.GetCodeSetCode(), row.codeSet);
    EXPECT_EQ(row.text.GetLanguageCode(), row.language);
    EXPECT_EQ(UnitsOf(row.text), row.units);
    EXPECT_EQ(row.text.Len(), row.units.size());
    EXPECT_EQ(row.text.MemLen(), row.memLen);
    EXPECT_EQ(row.text.IsEmpty(), row.units.empty());
    EXPECT_EQ(!row.text, row.units.empty());
  }
}

TEST_F(String, DefaultsChooseCodeSetsByWidth) {
  OtString::SetDefaultCodeSet(OT_CS_UNICODE);
  OtString::SetDefaultLanguage(9);
  EXPECT_EQ(OtString().GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ(OtString("a").GetCodeSetCode(), OT_CS_BASE8);
  EXPECT_EQ(OtString(kWideAb).GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ(OtString("a").GetLanguageCode(), 9);
  EXPECT_EQ(UnitsOf(OtString() << "ab" << 7), u"ab7");
  EXPECT_EQ(OtString::EmptyString().GetCodeSetCode(), 1) << "made at load, with the first defaults";
}

TEST_F(String, NullIsAStateOfItsOwn) {
  OtString text("abc");
  EXPECT_EQ(text.SetNullValue(), 0);
  EXPECT_TRUE(text.IsNullValue());
  EXPECT_EQ(text.GetCodeSetCode(), 0);
  EXPECT_EQ(text.Len(), 0);
  EXPECT_TRUE(OtString(OT_CS_ORDER, 0).IsNullValue());
  EXPECT_FALSE(OtString(OT_CS_ORDER, 1).IsNullValue());
  EXPECT_FALSE(OtString(OT_CS_NONE, 0).IsNullValue());
  text = "abc";
  EXPECT_FALSE(text.IsNullValue());
  text.Destroy();
  EXPECT_EQ(text.GetCodeSetCode(), 0);
  EXPECT_EQ(text.GetLanguageCode(), 0);
  EXPECT_FALSE(text.IsNullValue());
  text.Init();
  EXPECT_EQ(text.GetCodeSetCode(), OtString::GetDefaultCodeSet());
}

TEST_F(String, AssignmentAndMoves) {
  OtString wide(kWideAb);
  wide.SetLanguageCode(9);
  OtString text("xyz");
  text = wide;
  EXPECT_EQ(text.GetLanguageCode(), 9);
  EXPECT_EQ(UnitsOf(text), u"ab");
  text = text.StrGet();  // the first byte of a wide 'a', and its zero
  EXPECT_EQ(UnitsOf(text), u"a");
  EXPECT_EQ(text.GetCodeSetCode(), 1);
  text = "hello";
  text = text.StrGet() + 2;
  EXPECT_EQ(UnitsOf(text), u"llo");
  text.Destruct(wide);
  EXPECT_EQ(UnitsOf(text), u"ab");
  EXPECT_EQ(wide.MemLen(), 0);
  EXPECT_EQ(wide.GetCodeSetCode(), OT_CS_UNICODE);
  text.Destruct(text);
  text = static_cast<const OtString&>(text);
  EXPECT_EQ(UnitsOf(text), u"ab");
}

TEST_F(String, CodeSetsRelabelOrConvert) {
  OtString text("\xe9");
  EXPECT_EQ(text.SetCodeSetCode(OT_CS_UNICODE), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(text.MapToCodeSet(0), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(UnitsOf(text), u"\xe9");
  text.SetCodeSet(0x40);  // as wide as before: a label only
  EXPECT_EQ(UnitsOf(text), u"\xe9");
  text.SetCodeSet(1);
  EXPECT_EQ(text.MapToCodeSet(OT_CS_UNICODE), 0);
  EXPECT_EQ(UnitsOf(text), u"\u00e9");
  EXPECT_EQ(text.MemLen(), 4);
  text.SetCodeSet(0);  // mapped to the native set, labelled 0
  EXPECT_EQ(text.GetCodeSetCode(), 0);
  EXPECT_EQ(UnitsOf(text), u"\xe9");
  EXPECT_EQ(text.SetCodeSetCode(0x40), 0);
  for (const int unknown : {0xe5, 0xfc, 0xff}) {  // Unicode stands in
    OtString wide = TextOf(static_cast<unsigned char>(unknown), u"\u00e9t\u00e9");
    EXPECT_EQ(wide.MapToCodeSet(1), 0);
    EXPECT_EQ(UnitsOf(wide), u"\xe9t\xe9") << unknown;
  }
  OtString none(1, 1);
  none.SetCodeSet(OT_CS_UNICODE);
  EXPECT_EQ(none.MemLen(), 0);
}

TEST_F(String, LettersThatASetSpellsWithMarksComeApartAndTogether) {
  constexpr unsigned char kVietnamese = 0x1a, kViscii = 0x51;
  const struct {
    const char* name;
    const char16_t *unicode, *bytes;
    const char16_t* again;  // From the bytes, where that isn't the text itself.
  } rows[] = {{"Viet", u"Việt", u"Vi\xea\xf2t", nullptr},
              {"several", u"Đường ở Huế", u"\xd0\xfd\xf5\xccng \xf5\xd2 Hu\xea\xec", nullptr},
              {"a byte of its own", u"àé", u"\xe0\xe9", nullptr},
              {"marks by themselves", u"a\u0300\u0323", u"a\xcc\xf2", u"\u00e0\u0323"},
              {"a mark at the start", u"\u0301x", u"\xecx", nullptr},
              {"no letter of it", u"ж", u"\x1a", u"\x1a"}};
  for (const auto& row : rows) {
    const std::u16string again = row.again != nullptr ? row.again : row.unicode;
    OtString text = TextOf(OT_CS_UNICODE, row.unicode), copy, joined(kVietnamese, 1);
    EXPECT_EQ(text.MapToCodeSet(kVietnamese), 0);
    EXPECT_EQ(UnitsOf(text), row.bytes) << row.name;
    EXPECT_EQ(text.MemLen(), std::u16string(row.bytes).size() + 1) << row.name;
    joined += TextOf(OT_CS_UNICODE, row.unicode);
    EXPECT_EQ(UnitsOf(joined), row.bytes) << row.name;
    EXPECT_EQ(copy.CopyMapped(text, OT_CS_UNICODE), static_cast<int>(again.size())) << row.name;
    EXPECT_EQ(UnitsOf(copy), again) << row.name;
    text.SetCodeSet(OT_CS_UNICODE);
    EXPECT_EQ(UnitsOf(text), again) << row.name;
  }
  OtString cut, viscii = TextOf(kVietnamese, u"Vi\xea\xf2t");
  EXPECT_EQ(cut.CopyMapped(TextOf(OT_CS_UNICODE, u"Việt"), kVietnamese, 3), 2) << "no half letter";
  EXPECT_EQ(UnitsOf(cut), u"Vi");
  viscii.MapToCodeSet(kViscii);
  EXPECT_EQ(UnitsOf(viscii), u"Vi\xaet");
}

TEST_F(String, ConversionWithoutMemoryLeavesTheTextAsItWas) {
  const struct {
    const char* name;
    void (*convert)(OtString&);
  } rows[] = {{"SetCodeSet", [](OtString& text) { text.SetCodeSet(OT_CS_UNICODE); }},
              {"MapToCodeSet", [](OtString& text) { text.MapToCodeSet(OT_CS_UNICODE); }},
              {"to a set as wide", [](OtString& text) { text.MapToCodeSet(5); }}};
  for (const auto& row : rows) {
    OtString text("caf\xe9");
    memoryIsShort = true;
    row.convert(text);
    memoryIsShort = false;
    EXPECT_EQ(text.GetCodeSetCode(), 1) << row.name;
    EXPECT_EQ(UnitsOf(text), u"caf\xe9") << row.name;
    row.convert(text);
    EXPECT_NE(text.GetCodeSetCode(), 1) << row.name;
  }
}

TEST_F(String, ConversionInBulkEqualsThatOfEachCharacter) {
  const unsigned char sets[] = {1, 2, 5, 10, 0x40, 0x99, 0xe5, 0xf0, 0xff, 0xfd, OT_CS_ORDER};
  std::u16string bytes, units;
  for (char16_t c = 1; c < 256; ++c) bytes.push_back(c);
  for (unsigned c = 1; c < 0x10000; c += 13) units.push_back(static_cast<char16_t>(c));
  for (unsigned char from : sets) {
    for (unsigned char to : sets) {
      SCOPED_TRACE(testing::Message() << int{from} << " to " << int{to});
      const std::u16string& all = from > 0xe0 ? units : bytes;
      OtString text = TextOf(from, all);
      ASSERT_EQ(text.MapToCodeSet(to), 0);
      const std::u16string mapped = UnitsOf(text);
      ASSERT_EQ(mapped.size(), all.size());
      for (std::size_t i = 0; i < all.size(); ++i) {
        const OtChar c(static_cast<unsigned short>(all[i]), from);
        ASSERT_EQ(mapped[i], c.MapTo(to).GetValue()) << "of " << std::hex << c.GetValue();
      }
    }
  }
}

TEST_F(String, CopyMappedFillsItsBuffer) {
  OtString text("a long text of before");
  const unsigned short before = text.MemLen();
  EXPECT_EQ(text.CopyMapped(text, 1), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(text.CopyMapped(OtString(kWideAb), 1), 2);
  EXPECT_EQ(text.MemLen(), before);
  EXPECT_EQ(std::string(text.StrGet(), before), "ab" + std::string(before - 2u, '\0'));
  EXPECT_EQ(text.CopyMapped(OtString("abc"), OT_CS_UNICODE, 100), 3);
  EXPECT_EQ(text.MemLen(), 202);
  EXPECT_EQ(UnitsOf(text), u"abc");
  EXPECT_EQ(std::string(text.StrGet() + 6, 196), std::string(196, '\0'));
  EXPECT_EQ(text.CopyMapped(OtString("abc"), 1, 2), 2);
  EXPECT_EQ(UnitsOf(text), u"ab");
  EXPECT_EQ(OtString(text).MemLen(), 3) << "a copy takes the text alone";
  EXPECT_EQ(text.CopyMapped(OtString(), 1, 0), 0);
}

TEST_F(String, NumbersInText) {
  constexpr std::int32_t kMax = 2147483647;
  constexpr std::int32_t kMin = -kMax - 1;
  const struct {
    const char* text;
    std::int32_t anyBase, decimal;
    double real;
    bool refused;
  } rows[] = {
      {"", 0, 0, 0, true},
      {"42", 42, 42, 42, false},
      {" \t42", 42, 42, 42, true},
      {"+7", 7, 7, 7, true},
      {"-17x", -17, -17, -17, false},
      {"--5", 0, 0, 0, false},
      {"0x1F", 31, 0, 31, false},
      {"0x", 0, 0, 0, false},
      {"-0X10", -16, 0, -16, false},
      {"017", 15, 17, 17, false},
      {"08", 0, 8, 8, false},
      {"3000000000", kMax, kMax, 3e9, false},
      {"-3000000000", kMin, kMin, -3e9, false},
      {"2147483648", kMax, kMax, 2147483648.0, false},
      {"-2147483648", kMin, kMin, -2147483648.0, false},
      {"99999999999999999999999", kMax, kMax, 99999999999999999999999.0, false},
      {"1.5e3,5", 1, 1, 1500, false},
      {"abc", 0, 0, 0, true},
      {"1e400", 1, 1, HUGE_VAL, false},
      {"-1e99999999999999999999", -1, -1, -HUGE_VAL, false},
      {"1e-400", 1, 1, 0, false},
      {"0.00001e320", 0, 0, std::numeric_limits<double>::infinity(), false},
      {"0x1p-3", 1, 0, 0.125, false},
      {"inf", 0, 0, HUGE_VAL, true},
      {"infinit", 0, 0, HUGE_VAL, true},
      {"0xinf", 0, 0, 0, false},
      {"0xnan", 0, 0, 0, false},
      {"-0x", 0, 0, -0.0, false},
      {"-0x.", 0, 0, -0.0, false},
      {"0x.8", 0, 0, 0.5, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const OtString text(row.text);
    long number = 5;
    EXPECT_EQ(static_cast<int>(text), row.anyBase);
    EXPECT_EQ(static_cast<long>(text), row.anyBase);
    EXPECT_EQ(static_cast<short>(text), static_cast<short>(row.anyBase));
    EXPECT_EQ(text.Strtol(number), row.refused ? -1 : 0);
    EXPECT_EQ(number, row.refused ? 0 : row.anyBase);
    EXPECT_EQ(text.Atol(number), row.refused ? -1 : 0);
    EXPECT_EQ(number, row.refused ? 0 : row.decimal);
    ___OtTypeMgrOptions() = 1;
    EXPECT_EQ(static_cast<int>(text), row.decimal);
    ___OtTypeMgrOptions() = 0;
    EXPECT_EQ(static_cast<double>(text), row.real);
    EXPECT_EQ(std::signbit(static_cast<double>(text)), std::signbit(row.real));
  }
}

TEST_F(String, NumbersInWideText) {
  const struct {
    std::u16string text;
    std::int32_t whole;
    double real;
  } rows[] = {
      {u"", 0, 0},
      {u"42", 42, 42},
      {u"-1", ('-' - '0') * 10 + 1, ('-' - '0') * 10 + 1},
      {u"0x1", ('x' - '0') * 10 + 1, ('x' - '0') * 10 + 1},
      {u"4294967297", 1, 4294967297.0},
      {u"2.9", ((2 * 10) + '.' - '0') * 10 + 9, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.text));
    const OtString text = TextOf(OT_CS_UNICODE, row.text);
    EXPECT_EQ(static_cast<int>(text), row.whole);
    EXPECT_EQ(static_cast<double>(text), row.real);
  }
  // Digits behind the point, and what is none, add nothing however many they are.
  const std::u16string behind(40, u'9');
  EXPECT_EQ(static_cast<double>(TextOf(OT_CS_UNICODE, u"1." + behind + u":")), 1);
}

TEST_F(String, LengthsAboveTheLimitAreReportedAndKept) {
  const struct {
    const char* name;
    unsigned char codeSet;
    std::size_t length;
    int reports;
  } rows[] = {{"narrow, fits", 1, 65531, 0},         {"narrow, one more", 1, 65532, 1},
              {"narrow, memLen 0", 1, 65535, 1},     {"narrow, past 16 bits", 1, 65600, 1},
              {"wide, fits", 0xfd, 32765, 0},        {"wide, one more", 0xfd, 32766, 1},
              {"wide, past 16 bits", 0xfd, 33000, 1}};
  Configure("[debug]\nstringOverflow=1\n");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::size_t width = row.codeSet > 0xe0 ? 2 : 1;
    const std::u16string all(row.length, u'x');
    const std::string bytes(row.length, 'x');
    FaultCount faults;
    OtString text = width == 2 ? OtString(reinterpret_cast<const unsigned short*>(all.c_str()))
                               : OtString(bytes.c_str());
    EXPECT_EQ(faults.Get(), row.reports);
    EXPECT_EQ(text.MemLen(), static_cast<unsigned short>((row.length + 1) * width));
    EXPECT_EQ(text.Len(), static_cast<unsigned short>(row.length));
    text.ToUpper();
    EXPECT_EQ(UnitsOf(text), std::u16string(row.length, u'X'));
    text.Insert("ab", 1);
    text.Replace("c", 2);
    text.Cut(0, 1);
    EXPECT_EQ(UnitsOf(text), u"ac" + std::u16string(row.length - 1, u'X'));
    text.MapToCodeSet(width == 2 ? 1 : 0xfd);
    EXPECT_EQ(UnitsOf(text).size(), row.length + 1);
  }
}

TEST_F(String, ConfigurationDecidesAboutTheReport) {
  const std::string large(70000, 'x');
  const struct {
    const char* settings;
    int reports;
  } rows[] = {{"", 0}, {"[debug]\nstringOverflow=0\n", 0}, {"[debug]\nstringOverflow=1\n", 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.settings);
    Configure(row.settings);
    FaultCount faults;
    const OtString text(large.c_str());
    EXPECT_EQ(faults.Get(), row.reports);
  }
}

}  // namespace
