// The walk from characters to orders, one case of each kind, and what is read from order words.

#include <gtest/gtest.h>

#include <vector>

#include "text/texts.h"

namespace {

struct Step {
  unsigned short order;
  unsigned char script;
  int moved;  // characters from the beginning
  bool operator==(const Step& other) const {
    return order == other.order && script == other.script && moved == other.moved;
  }
};

void PrintTo(const Step& step, std::ostream* out) {
  *out << std::hex << step.order << "/" << int{step.script} << "@" << step.moved;
}

std::vector<Step> Walk(const std::u16string& text, unsigned char language) {
  std::vector<Step> steps;
  OtStringIterator it(reinterpret_cast<const char*>(text.c_str()), OT_CS_UNICODE, language, 1);
  const char* start = it.GetPosition();
  while (const unsigned short order = it.GetNextOrder(1)) {
    steps.push_back({order, it.GetScript(), static_cast<int>(it.GetPosition() - start) / 2});
  }
  return steps;
}

TEST(Orders, Walk) {
  const unsigned char kSpanish = 0x61;
  const unsigned char kRussian = 23;
  const struct {
    const char* name;
    unsigned char language;
    std::u16string text;
    std::vector<Step> steps;
  } rows[] = {
      {"letters", 1, u"aB", {{0x700c, 1, 1}, {0x4010, 1, 2}}},
      {"accent", 1, u"\u00e9", {{0x711c, 1, 1}}},
      {"accent apart", 1, u"e\u0301x", {{0x711c, 1, 2}, {0x7068, 1, 3}}},
      {"head at the end", 1, u"e", {{0x701c, 1, 1}}},
      {"head with another follower", 1, u"ex", {{0x701c, 1, 1}, {0x7068, 1, 2}}},
      {"expansion", 1, u"\u00df", {{0x77d4, 1, 0}, {0x7054, 1, 1}}},
      {"digit", 1, u"7", {{0x3f46, 1, 1}}},
      {"digits take the language's script", kRussian, u"7", {{0x3f46, 3, 1}}},
      {"no letters of its own: two characters", 1, u"ch", {{0x7014, 1, 1}, {0x7028, 1, 2}}},
      {"no record", 1, u"\ue000", {{0xe000, 0x14, 1}}},
      {"top values keep the script", 1, u"\ue000\uffff", {{0xe000, 0x14, 1}, {0xffff, 0x14, 2}}},
      {"wildcards", 1, u"*?\\", {{0x9f, 1, 1}, {0x7a, 1, 2}, {0xa0, 1, 3}}},
  };
  for (const auto& row : rows) EXPECT_EQ(Walk(row.text, row.language), row.steps) << row.name;

  const auto spanish = Walk(u"chx", kSpanish);
  ASSERT_EQ(spanish.size(), 2u) << "ch is one letter";
  EXPECT_EQ(spanish[0].moved, 2);
  EXPECT_GT(spanish[0].order & 0x7f, 0x14) << "behind c";
}

TEST(Orders, ALineEndsWhereItEnds) {
  OtStringIterator it("a", 1, 1);
  it.GetNextOrder(0);
  const char* end = it.GetPosition();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(it.GetNextOrder(1), 0);
    EXPECT_EQ(it.GetPosition(), end);
  }
  const char16_t words[] = u"\u700c";
  OtStringIterator key(reinterpret_cast<const char*>(words), OT_CS_ORDER, 1, 2);
  EXPECT_EQ(key.GetNextOrder(1), 0x700c) << "low byte first, whatever the format";
  EXPECT_EQ(key.GetNextOrder(1), 0);
  EXPECT_EQ(key.GetNextOrder(1), 0);
  EXPECT_EQ(key.GetPosition(), reinterpret_cast<const char*>(words) + 2) << "no move at the end";
  EXPECT_EQ(OtStringIterator().GetNextOrder(1), 0);
}

TEST(Orders, WithoutScriptTheByteStays) {
  const char16_t text[] = u"\u03b1\ue000";
  OtStringIterator it(reinterpret_cast<const char*>(text), OT_CS_UNICODE, 1, 1);
  it.GetNextOrder(0);
  it.GetNextOrder(0);
  EXPECT_EQ(it.GetScript(), 1);
}

TEST(Orders, PendingCharactersComeFirst) {
  // The capital of the sharp s has a second character, which the iterator delivers by itself.
  OtString text = "\xdfx";
  OtStringIterator it(text);
  (*it).ToUpper(&it);
  EXPECT_EQ(it.GetNextOrder(1), 0x4054);
  EXPECT_EQ(it.GetNextOrder(1), 0x7068);
  EXPECT_EQ(it.GetNextOrder(1), 0);
}

TEST(Orders, TakeWordsApart) {
  unsigned short a = 9;
  unsigned short b = 9;
  unsigned short c = 9;
  unsigned short d = 9;
  EXPECT_EQ(OtExtractSymbolFromOrder(0x4f, a), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtExtractSymbolFromOrder(0x3f00, a), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(a, 9);
  EXPECT_EQ(OtExtractSymbolFromOrder(0x3eff, a), 0);
  EXPECT_EQ(a, 0x3eaf);
  EXPECT_EQ(OtExtractDigitFromOrder(0x4000, a, b), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtExtractDigitFromOrder(0x3f0b, a, b), 0);
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 1);
  EXPECT_EQ(OtExtractLetterFromOrder(0x8000, a, b, c, d), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtExtractLetterFromOrder(0x711d, a, b, c, d), 0);
  EXPECT_EQ(a, 3);
  EXPECT_EQ(b, 2);
  EXPECT_EQ(c, 7);
  EXPECT_EQ(d, 1);
}

TEST(Orders, AnyCharacterCanBeTheWildcard) {
  EXPECT_EQ(OtString::SetAsterisk(OtChar('%')), 0);
  EXPECT_EQ(OtStrCmp(1, 1, "abc", 1, 1, "a%", 0), 0);
  EXPECT_NE(OtStrCmp(1, 1, "abc", 1, 1, "a*", 0), 0);
  EXPECT_EQ(OtStrCmp(0, 1, "abc", 0, 1, "a*", 0), 0) << "raw bytes keep theirs";
  OtString::SetAsterisk(OtChar('\0'));
  EXPECT_EQ(OtString::GetAsterisk(), 0x9f) << "none is the default";
  EXPECT_EQ(OtString::GetQuestion(), 0x7a);
  EXPECT_EQ(OtString::GetEscape(), 0xa0);
}

}  // namespace
