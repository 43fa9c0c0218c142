// Patterns: the walk against a textbook matcher on all small pairs, and its short cuts against it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bytes_testing.h"
#include "text/collation/compare.h"
#include "text/mixedtexts.h"

namespace {

using ot95::TextSpan;
using Ops = std::vector<unsigned short>;

int SignOf(long value) {
  return value < 0 ? -1 : value > 0;
}

std::vector<std::string> AllTexts(const std::string& alphabet, std::size_t maxLength) {
  std::vector<std::string> texts = {""};
  for (std::size_t begin = 0, length = 0; length < maxLength; ++length) {
    const std::size_t end = texts.size();
    for (; begin < end; ++begin) {
      for (char c : alphabet) texts.push_back(texts[begin] + c);
    }
  }
  return texts;
}

constexpr std::uint32_t kStar = 1;
constexpr std::uint32_t kAny = 2;

/// What of a text counts under an op, key by key; of a pattern, with its wildcards.
std::vector<std::uint32_t> Units(const std::string& text, unsigned short op, bool isPattern) {
  std::vector<std::uint32_t> units;
  OtStringIterator it(text.c_str(), 1, 1, 1);
  std::uint32_t mask = 0xffffffff;
  if (op & OT_CMP_IGNORE_CASE) mask &= 0xffffff9f;
  if (op & OT_CMP_IGNORE_ACCENT) mask &= 0xffffffe0;
  while (unsigned short order = it.GetNextOrder(1)) {
    if (isPattern && order == OtString::GetAsterisk()) {
      units.push_back(kStar);
    } else if (isPattern && order == OtString::GetQuestion()) {
      units.push_back(kAny);
    } else if (!(order < 0x50 && (op & OT_CMP_IGNORE_SPACE)) &&
               !(order >= 0x50 && order < 0x3f00 && (op & OT_CMP_IGNORE_SYMBOLS))) {
      units.push_back(ot95::ComposeOrderKey(order, it.GetScript()) & mask);
    }
  }
  return units;
}

bool Matches(const std::uint32_t* text, const std::uint32_t* textEnd, const std::uint32_t* pattern,
             const std::uint32_t* patternEnd) {
  if (pattern == patternEnd) return text == textEnd;
  if (*pattern == kStar) {
    return Matches(text, textEnd, pattern + 1, patternEnd) ||
           (text != textEnd && Matches(text + 1, textEnd, pattern, patternEnd));
  }
  return text != textEnd && (*pattern == kAny || *pattern == *text) &&
         Matches(text + 1, textEnd, pattern + 1, patternEnd);
}

void CheckAllPairs(const std::vector<std::string>& texts, const std::vector<std::string>& patterns,
                   unsigned short op) {
  std::vector<std::vector<std::uint32_t>> textUnits;
  for (const std::string& text : texts) textUnits.push_back(Units(text, op, false));
  for (const std::string& pattern : patterns) {
    const std::vector<std::uint32_t> units = Units(pattern, op, true);
    const TextSpan patternSpan = TextSpan::Terminated(pattern.c_str(), 1, 1);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const TextSpan text = TextSpan::Terminated(texts[i].c_str(), 1, 1);
      const bool expected = Matches(textUnits[i].data(), textUnits[i].data() + textUnits[i].size(),
                                    units.data(), units.data() + units.size());
      const long plain = ot95::CompareSpansPlainly(text, patternSpan, op);
      ASSERT_EQ(plain == 0, expected) << texts[i] << " ~ " << pattern << " op " << op;
      ASSERT_EQ(SignOf(ot95::CompareSpans(text, patternSpan, op)), SignOf(plain))
          << texts[i] << " ~ " << pattern << " op " << op;
    }
  }
}

TEST(Wildcards, EqualATextbookMatcherOnAllSmallPairs) {
  const auto texts = AllTexts("ab -*", 4);
  const auto patterns = AllTexts("ab -*?", 4);
  for (unsigned short op : Ops{0, OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS}) {
    CheckAllPairs(texts, patterns, op);
  }
  CheckAllPairs(AllTexts("ab-", 5), AllTexts("ab-*?", 4), OT_CMP_IGNORE_SYMBOLS);
}

TEST(Wildcards, EqualATextbookMatcherOverCaseAndAccents) {
  const auto texts = AllTexts("aA\xe1-", 4);
  const auto patterns = AllTexts("aA\xe1*?", 4);
  for (unsigned short op : Ops{0, 0x20, 0x40, 0x60, 0x2e0}) CheckAllPairs(texts, patterns, op);
}

TEST(Wildcards, ShortCutsEqualTheWalkOverMixedTexts) {
  MixedTexts texts;
  for (int i = 0; i < 30000; ++i) {
    const std::u16string text = texts.Text(16);
    std::u16string pattern = texts.Pattern(i % 4 == 0 ? texts.Like(text) : text);
    if (i % 5 == 0) pattern = texts.Recased(pattern);
    const unsigned char languages[] = {1, 15, 17, 23, 59, 0x61};
    const unsigned char language = languages[texts.Number() % std::size(languages)];
    const unsigned short ops[] = {0, 0x20, 0x40, 0x60, 0x80, 0x200, 0x2e0};
    const unsigned short op = ops[texts.Number() % std::size(ops)];
    SCOPED_TRACE(::testing::Message() << Hex(text.data(), 2 * text.size()) << " ~ "
                                      << Hex(pattern.data(), 2 * pattern.size()) << " language "
                                      << int{language} << " op " << op);
    ExactBlock textBlock(text.data(), 2 * text.size());
    ExactBlock patternBlock(pattern.data(), 2 * pattern.size());
    ExactBlock turnedText(Turned(text).data(), 2 * text.size());
    ExactBlock turnedPattern(Turned(pattern).data(), 2 * pattern.size());
    const auto bounded = [language](ExactBlock& block, bool reversed = false) {
      return TextSpan::Bounded(reinterpret_cast<char*>(block.data()), block.size(), OT_CS_UNICODE,
                               language, reversed);
    };
    const auto terminated = [language](const std::u16string& units) {
      return TextSpan::Terminated(reinterpret_cast<const char*>(units.c_str()), OT_CS_UNICODE,
                                  language);
    };
    const int plain = SignOf(ot95::CompareSpansPlainly(terminated(text), terminated(pattern), op));
    ASSERT_EQ(SignOf(ot95::CompareSpans(bounded(textBlock), bounded(patternBlock), op)), plain);
    ASSERT_EQ(SignOf(ot95::CompareSpans(terminated(text), terminated(pattern), op)), plain);
    ASSERT_EQ(
        SignOf(ot95::CompareSpans(bounded(turnedText, true), bounded(turnedPattern, true), op)),
        plain);
  }
}

TEST(Wildcards, ACharacterOfTwoHalvesIsOne) {
  const struct {
    const char* name;
    std::u16string text, pattern;
    bool matches;
  } rows[] = {
      {"one question mark", u"a\xd840\xdc0b z", u"a? z", true},
      {"not two", u"a\xd840\xdc0b", u"a??", false},
      {"behind a star", u"ab\xd840\xdc0bz", u"*b?z", true},
      {"two of them", u"\xd840\xdc0b\xd840\xdc0c", u"??", true},
      {"star and question mark", u"x\xd840\xdc0bz\xd840\xdc0b!", u"*\xd840\xdc0b?z*?!", false},
      {"the pair itself", u"a\xd840\xdc0b", u"*\xd840\xdc0b", true},
      {"half behind a star", u"a\xd840\xdc0b", u"*\xdc0b", true},
      {"half of another", u"a\xd840\xdc0b", u"*\xd840\xdc0c", false},
      {"a half alone is one, too", u"a\xd840z", u"a?z", true},
      {"an emoji", u"a\xd83d\xde00", u"a?", true},
  };
  for (const auto& row : rows) {
    const auto span = [](const std::u16string& text) {
      return TextSpan::Terminated(reinterpret_cast<const char*>(text.c_str()), OT_CS_UNICODE, 1);
    };
    EXPECT_EQ(ot95::CompareSpans(span(row.text), span(row.pattern), 0) == 0, row.matches)
        << row.name;
    EXPECT_EQ(ot95::CompareSpansPlainly(span(row.text), span(row.pattern), 0) == 0, row.matches)
        << row.name << ", walking";
  }
}

TEST(Wildcards, CandidatesBeyondTheStack) {
  const std::string text(200, 'a');
  const struct {
    const char* name;
    std::string text, pattern;
    bool matches;
  } rows[] = {
      {"many candidates", text + "b", "*" + std::string(60, 'a') + "b", true},
      {"all of them fail", text + "c", "*" + std::string(60, 'a') + "b", false},
      {"question first", text + "b", "*?" + std::string(60, 'a') + "b*", true},
      {"two stars", text + "b" + text, "*aab*" + std::string(100, 'a'), true},
      {"too long a tail", text + "b" + text, "*b*" + std::string(201, 'a'), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const TextSpan span = TextSpan::Terminated(row.text.c_str(), 1, 1);
    const TextSpan pattern = TextSpan::Terminated(row.pattern.c_str(), 1, 1);
    EXPECT_EQ(ot95::CompareSpans(span, pattern, 0) == 0, row.matches);
    EXPECT_EQ(ot95::CompareSpansPlainly(span, pattern, 0) == 0, row.matches);
  }
}

TEST(Wildcards, LimitsCutBothSides) {
  const auto texts = AllTexts("ab", 4);
  for (const std::string& text : texts) {
    for (const std::string& pattern : AllTexts("ab*?", 3)) {
      for (long limit = 1; limit < 5; ++limit) {
        // Up to the limit, a pattern is a shorter pattern, and a text a shorter text.
        const std::string cutText = text.substr(0, static_cast<std::size_t>(limit));
        const std::string cutPattern = pattern.substr(0, static_cast<std::size_t>(limit));
        const auto units = Units(cutPattern, 0, true);
        const auto textUnits = Units(cutText, 0, false);
        const bool expected = Matches(textUnits.data(), textUnits.data() + textUnits.size(),
                                      units.data(), units.data() + units.size());
        const long result =
            ot95::CompareSpans(TextSpan::Terminated(text.c_str(), 1, 1),
                               TextSpan::Terminated(pattern.c_str(), 1, 1), 0, limit);
        ASSERT_EQ(result == 0, expected) << text << " ~ " << pattern << " limit " << limit;
      }
    }
  }
}

TEST(Wildcards, PlaceOfTheFirst) {
  const struct {
    const char* name;
    unsigned char codeSet;
    const char* pattern;
    bool ignoreQuestion;
    unsigned long limit;
    long place;
    unsigned short bytes;
  } rows[] = {
      {"asterisk", 1, "ab*c", false, 0xffff, 2, 2},
      {"question", 1, "a?*c", false, 0xffff, 1, 1},
      {"question ignored", 1, "a?*c", true, 0xffff, 2, 2},
      {"none", 1, "abc", false, 0xffff, -1, 0xffff},
      {"behind the limit", 1, "ab*c", false, 2, -1, 0xffff},
      {"an expansion has two orders", 1, "\xdf*", false, 0xffff, 2, 1},
      {"raw", 0, "ab?c", false, 0xffff, 2, 2},
      {"raw, behind the limit", 0, "ab*c", false, 2, -1, 0xffff},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    unsigned short bytes = 7;
    EXPECT_EQ(ot95::WildcardPlace(TextSpan::Terminated(row.pattern, row.codeSet, 1),
                                  row.ignoreQuestion, row.limit, &bytes),
              row.place);
    EXPECT_EQ(bytes, row.bytes);
  }
}

// Raw bytes have their own matcher. A question mark directly behind a star is a byte to it.
bool RawMatches(const char* text, const char* pattern) {
  if (*pattern == 0) return *text == 0;
  if (*pattern == '*') {
    while (*pattern == '*') ++pattern;
    if (*pattern == 0) return true;
    for (; *text != 0; ++text) {
      if (*text == *pattern && RawMatches(text + 1, pattern + 1)) return true;
    }
    return false;
  }
  return *text != 0 && (*pattern == '?' || *pattern == *text) && RawMatches(text + 1, pattern + 1);
}

TEST(RawWildcards, EqualATextbookMatcherOnAllSmallPairs) {
  for (const std::string& text : AllTexts("ab*?", 5)) {
    for (const std::string& pattern : AllTexts("ab*?", 4)) {
      const long result = OtStrCmp(0, 1, text.c_str(), 0, 1, pattern.c_str(), 0x60);
      ASSERT_EQ(result == 0, RawMatches(text.c_str(), pattern.c_str())) << text << " ~ " << pattern;
    }
  }
}

TEST(RawWildcards, Limits) {
  const struct {
    const char *name, *text, *pattern;
    long limit;
    int sign;
  } rows[] = {
      {"a used up text matches", "abcd", "abx", 2, 0},
      {"even before a shorter pattern's end", "abcd", "ab", 2, 0},
      {"one more byte doesn't", "abcd", "abx", 3, -1},
      {"the scan stops at the limit", "abcd", "a*d", 3, -1},
      {"backing up gives bytes back", "aabab", "*abab", 5, 0},
      {"negative is none", "abcd", "abx", -7, -1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SignOf(OtStrCmp(0, 1, row.text, 0, 1, row.pattern, 0, static_cast<short>(row.limit))),
              row.sign)
        << row.name;
  }
  EXPECT_EQ(ot95::OtByteCompare("ab\xff", "abc", 0), 0xff - 'c');
  EXPECT_EQ(ot95::OtByteCompare("abc", "abd", 2), 0);
  EXPECT_EQ(ot95::OtByteCompare(nullptr, "", 0), 0);
}

}  // namespace
