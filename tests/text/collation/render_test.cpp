// Orders made readable, and the printing and scanning of strings.

#include <gtest/gtest.h>

#include "ot95/typemgr.h"
#include "text/texts.h"

namespace {

constexpr char kStringId = 11;

TEST(Render, OrdersAsPhrasesAndCharacters) {
  const struct {
    unsigned short order;
    unsigned char script;
    const char* phrase;
    unsigned char character;
    const char* name;
  } rows[] = {
      {0, 1, "space", ' ', nullptr},
      {0x0d, 1, "undefined ordering indicator", ' ', nullptr},
      {0x4f, 1, "space", ' ', nullptr},
      {0x70, 1, "symbol _", '_', nullptr},
      {0x71, 1, "symbol ", 0x07, nullptr},
      {0xa0, 1, "symbol reverse solidus", '.', nullptr},
      {0xa8, 1, "symbol '", '\'', nullptr},
      {0xdb, 1, "symbol inverted question mark", '.', nullptr},
      {0x150, 1, "symbol ", 0x07, nullptr},
      {0x3f0a, 1, "digit 1", '1', nullptr},
      {0x3f0b, 1, "digit 1 with expand", '1', nullptr},
      {0x400c, 1, "upper letter A", 'A', nullptr},
      {0x700c, 1, "lower letter a", 'a', nullptr},
      {0x700d, 1, "lower letter a with extension", 'a', nullptr},
      {0x411c, 1, "upper letter E with accent acute", 0xc9, "\\'E"},
      {0x711c, 1, "lower letter e with accent acute", 0xe9, "\\'e"},
      {0x4f8c, 1, "upper letter A with ", 'A', nullptr},
      {0x440d, 1, "upper letter A with stroke with extension", 'A', nullptr},
      {0x8123, 1, "HAN character 0x8123\n", 0x7f, nullptr},
      {0x400c, 0x14, "HAN character 0x400c\n", 0x7f, nullptr},
      {0x400c, 0x94, "HAN character 0x400c\n", 0x7f, nullptr},
      {0x400c, 0x81, "upper letter A", 'A', nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.order);
    OtString phrase;
    EXPECT_EQ(OtConvertOrderToString(row.order, row.script, phrase), 0);
    EXPECT_STREQ(phrase.StrGet(), row.phrase);
    unsigned char character = 0;
    const char* name = nullptr;
    EXPECT_EQ(OtConvertOrderToChar(row.order, row.script, character, 1, &name), 0);
    EXPECT_EQ(character, row.character);
    EXPECT_STREQ(name, row.name);
  }
  unsigned char character = 0;
  OtConvertOrderToChar(0x411c, 1, character, 0, nullptr);
  EXPECT_EQ(character, 'E') << "accents aren't looked for";
}

TEST(Render, EveryAccentedByteHasItsName) {
  int named = 0;
  for (unsigned byte = 0xc0; byte < 0x100; ++byte) {
    const char text[] = {static_cast<char>(byte), 0};
    OtStringIterator it(text, OT_CS_BASE8, OT_LANG_NEUTRAL);
    unsigned char character = 0;
    const char* name = nullptr;
    OtConvertOrderToChar(it.GetNextOrder(1), 1, character, 1, &name);
    if (name == nullptr) continue;
    EXPECT_EQ(character, byte);
    EXPECT_EQ(name[0], '\\');
    ++named;
  }
  EXPECT_GE(named, 56);
}

OtString KeyText(const std::u16string& words, unsigned char script) {
  OtString key = TextOf(OT_CS_ORDER, words);
  key.SetLanguageCode(script);
  return key;
}

TEST(PrintString, Formats) {
  OtString null;
  null.SetNullValue();
  const struct {
    const char* name;
    OtString value;
    const char* format;
    const char* printed;
  } rows[] = {
      {"plain", "ab", "%s", "ab"},
      {"width", "ab", "<%5s>", "<   ab>"},
      {"left, cut", "abcdef", "<%-5.3s>", "<abc  >"},
      {"text around", "ab", "100%% %s!", "100% ab!"},
      {"another conversion is text", "ab", "%n%d", "%n%d"},
      {"one conversion at most", "ab", "%s%s", "ab%s"},
      {"null", null, "<%s>", "{NULL}"},
      {"wide", TextOf(OT_CS_UNICODE, u"\u00e9t\u00e9"), "<%s>", "<\xe9t\xe9>"},
      {"key", KeyText(u"\u700c\u711c", 1), "<%s>", "<a\xe9>"},
      {"key, mode 1", KeyText(u"\u700c\u711c", 1), "<%1M>", "<ae>"},
      {"key, mode 2", KeyText(u"\u700c\u711c", 1), "<%2M>", "<a\xe9>"},
      {"key, mode 3", KeyText(u"\u700c\u3f0a", 0x81), "<%3M>", "<lower letter a><digit 1><[MIX]>"},
      {"key, mode 4", KeyText(u"\u700c\u711c", 0x81), "<%4M>", "<a><\\'e>"},
      {"key, mode 4, without names", KeyText(u"\u44d4\u700c\u711c", 1), "%4M",
       "\x8a"
       "a\\'e"},
      {"the first mode counts", KeyText(u"\u700c", 1), "%2M%1M", "%2Ma"},
  };
  OtTypeMgr types;
  for (const auto& row : rows) {
    OtString value(row.value);
    OtString target = "before";
    types.PrintToOtString(kStringId, target, &value, row.format, 1);
    EXPECT_STREQ(target.StrGet(), row.printed) << row.name;
  }
}

TEST(PrintString, AHugeWidthIsCutToItsBuffer) {
  OtTypeMgr types;
  OtString value = "ab";
  OtString target;
  types.PrintToOtString(kStringId, target, &value, "%99999s", 1);
  EXPECT_EQ(target.Len(), 2 + 7 + 0x200 - 1);
}

TEST(ScanString, ABeginningOfNullIsNull) {
  OtTypeMgr types;
  const struct {
    const char* text;
    bool null;
  } rows[] = {
      {"ab", false}, {"{NULL}", true}, {"{NULL} and more", true}, {"{NUL", false}, {"", false}};
  for (const auto& row : rows) {
    OtString value = "before";
    OtString text = row.text;
    EXPECT_EQ(types.ScanFromOtString(kStringId, &value, text, nullptr, 1), &value);
    EXPECT_EQ(value.IsNullValue() != 0, row.null) << row.text;
    EXPECT_STREQ(value.StrGet(), row.null ? "" : row.text);
  }
  OtString text = "x";
  EXPECT_EQ(types.ScanFromOtString(kStringId, nullptr, text, nullptr, 1), nullptr);
}

}  // namespace
