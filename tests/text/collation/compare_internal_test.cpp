// The comparison in levels: against an obvious reference over random texts, its short cuts against
// the plain walk, and the rules that single pairs show.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "bytes_testing.h"
#include "ot95/sort.h"
#include "text/collation/alike.h"
#include "text/collation/compare.h"
#include "text/mixedtexts.h"
#include "text/texts.h"

namespace {

using ot95::TextSpan;

int SignOf(long value) {
  return value < 0 ? -1 : value > 0;
}

TextSpan SpanOf(const std::u16string& text, unsigned char language) {
  return TextSpan::Terminated(reinterpret_cast<const char*>(text.c_str()), OT_CS_UNICODE, language);
}

TextSpan BoundedSpan(ExactBlock& block, unsigned char language, bool reversed) {
  return TextSpan::Bounded(reinterpret_cast<char*>(block.data()), block.size(), OT_CS_UNICODE,
                           language, reversed);
}

OtString StringOf(const std::u16string& text, unsigned char language) {
  OtString string(reinterpret_cast<const unsigned short*>(text.c_str()));
  string.SetLanguageCode(language);
  return string;
}

/// A real character's key, and the symbols and spaces before it.
struct Place {
  std::vector<unsigned> symbols;
  std::uint32_t key;
};

std::vector<Place> PlacesOf(const std::u16string& text, unsigned char language, unsigned short op) {
  std::vector<Place> places(1);
  OtStringIterator it(reinterpret_cast<const char*>(text.c_str()), OT_CS_UNICODE, language, 1);
  for (;;) {
    const unsigned short order = it.GetNextOrder(1);
    if (order == 0 || order >= 0x3f00 || it.GetScript() >= 0x14) {
      places.back().key = ot95::ComposeOrderKey(order, it.GetScript());
      if (order == 0) return places;
      places.emplace_back();
    } else if (ot95::IsMarkWord(order) && (op & OT_CMP_IGNORE_ACCENT)) {
      continue;
    } else if (!(op & (order < 0x50 ? OT_CMP_IGNORE_SPACE : OT_CMP_IGNORE_SYMBOLS))) {
      places.back().symbols.push_back(order);
    }
  }
}

template <class T>
int Order(T left, T right) {
  return (left > right) - (left < right);
}

int ReferenceCompare(const std::u16string& text1, const std::u16string& text2,
                     unsigned char language, unsigned short op) {
  const auto places1 = PlacesOf(text1, language, op);
  const auto places2 = PlacesOf(text2, language, op);
  int accent = 0;
  int lower = 0;
  int symbol = 0;
  for (std::size_t i = 0; i < std::min(places1.size(), places2.size()); ++i) {
    const Place& place1 = places1[i];
    const Place& place2 = places2[i];
    for (std::size_t s = 0; s < std::max(place1.symbols.size(), place2.symbols.size()); ++s) {
      const unsigned symbol1 = s < place1.symbols.size() ? place1.symbols[s] : 0;
      const unsigned symbol2 = s < place2.symbols.size() ? place2.symbols[s] : 0;
      if (symbol1 != symbol2) symbol = Order(symbol1, symbol2);
    }
    const int primary = Order(place1.key >> 7, place2.key >> 7);
    if (primary != 0) return primary;
    if (lower == 0) lower = Order(place2.key & 0xffffffe0, place1.key & 0xffffffe0);
    const int accents = Order(place1.key & 0xffffff9f, place2.key & 0xffffff9f);
    if (accents != 0) accent = accents;
  }
  if (accent != 0 && !(op & OT_CMP_IGNORE_ACCENT)) return accent;
  if (lower != 0 && !(op & OT_CMP_IGNORE_CASE)) return lower;
  return symbol;
}

constexpr unsigned short kOps[] = {0x10, 0x30, 0x50, 0x70, 0x90, 0x210, 0x2f0};

TEST(Levels, EqualAnObviousReference) {
  MixedTexts pairs;
  for (int i = 0; i < 60000; ++i) {
    const std::u16string text1 = pairs.Text(40);
    std::u16string text2 = i % 8 == 0 ? pairs.Text(12) : pairs.Like(text1);
    if (i % 3 == 0) text2 = pairs.Recased(text2);
    const unsigned char languages[] = {1, 15, 17, 23, 59, 0x61};
    const unsigned char language = languages[pairs.Number() % std::size(languages)];
    const unsigned short op = kOps[pairs.Number() % std::size(kOps)];
    SCOPED_TRACE(::testing::Message() << Hex(text1.data(), 2 * text1.size()) << " ~ "
                                      << Hex(text2.data(), 2 * text2.size()) << " language "
                                      << int{language} << " op " << op);
    const int expected = ReferenceCompare(text1, text2, language, op);
    const TextSpan span1 = SpanOf(text1, language);
    const TextSpan span2 = SpanOf(text2, language);
    ASSERT_EQ(ot95::CompareSpansPlainly(span1, span2, op), expected);
    ASSERT_EQ(ot95::CompareSpans(span1, span2, op), expected) << "terminated";
    ExactBlock block1(text1.data(), 2 * text1.size());
    ExactBlock block2(text2.data(), 2 * text2.size());
    ExactBlock turnedBlock1(Turned(text1).data(), 2 * text1.size());
    ExactBlock turnedBlock2(Turned(text2).data(), 2 * text2.size());
    const TextSpan bounded1 = BoundedSpan(block1, language, false);
    const TextSpan bounded2 = BoundedSpan(block2, language, false);
    ASSERT_EQ(ot95::CompareSpans(bounded1, bounded2, op), expected) << "bounded";
    ASSERT_EQ(ot95::CompareSpans(bounded1, span2, op), expected) << "mixed";
    const TextSpan turned1 = BoundedSpan(turnedBlock1, language, true);
    const TextSpan turned2 = BoundedSpan(turnedBlock2, language, true);
    ASSERT_EQ(ot95::CompareSpans(turned1, turned2, op), expected) << "the other byte first";
    ASSERT_EQ(ot95::CompareSpans(span1, turned2, op), expected) << "one with the other byte first";
    const OtString string1 = StringOf(text1, language);
    ASSERT_EQ(string1.Compare(StringOf(text2, language), op), expected) << "strings";
  }
}

/// All ways of one comparison against the plain one.
void ExpectAllWays(const std::u16string& text1, const std::u16string& text2, unsigned char language,
                   unsigned short op) {
  const TextSpan span1 = SpanOf(text1, language);
  const TextSpan span2 = SpanOf(text2, language);
  const int expected = SignOf(ot95::CompareSpansPlainly(span1, span2, op));
  const std::u16string turned1 = Turned(text1);
  const std::u16string turned2 = Turned(text2);
  const auto bounded = [language](const std::u16string& units, bool reversed) {
    return TextSpan::Bounded(reinterpret_cast<const char*>(units.data()), 2 * units.size(),
                             OT_CS_UNICODE, language, reversed);
  };
  const bool same =
      SignOf(ot95::CompareSpans(span1, span2, op)) == expected &&
      SignOf(ot95::CompareSpans(bounded(text1, false), bounded(text2, false), op)) == expected &&
      SignOf(ot95::CompareSpans(bounded(turned1, true), bounded(turned2, true), op)) == expected &&
      SignOf(StringOf(text1, language).Compare(StringOf(text2, language), op)) == expected;
  ASSERT_TRUE(same) << Hex(text1.data(), 2 * text1.size()) << " ~ "
                    << Hex(text2.data(), 2 * text2.size()) << " language " << int{language}
                    << " op " << op;
}

std::vector<unsigned char> KnownLanguages() {
  std::vector<unsigned char> known;
  for (unsigned char number = 1; number < 0x80; ++number) {
    if (OtLanguageContext::QueryLanguage(number) != nullptr) known.push_back(number);
  }
  return known;
}

// Every character of a script's common ones beside another, behind a head that ends in a letter
// which contracts in some language. A step through the heads keeps this to seconds; all of them are
// met over the languages.
TEST(Levels, PairsOfCharactersBehindEqualHeads) {
  const std::u16string heads = u"abcdzsylnghcscdzsnyaelmorscchsz\u0101e\u0301dzsgyabcdefgh";
  std::mt19937 random(11);
  const auto character = [&random]() -> char16_t {
    constexpr char16_t kStarts[] = {0x20,  0xa0,  0x100,  0x180,  0x300,  0x370,  0x400,  0x480,
                                    0x5d0, 0xe00, 0x1e00, 0x2000, 0x3040, 0x4e00, 0xfb00, 0xff00};
    return static_cast<char16_t>(kStarts[random() % std::size(kStarts)] + random() % 0x80);
  };
  for (const unsigned char language : KnownLanguages()) {
    for (std::size_t length = 0; length <= 40; ++length) {
      for (int i = 0; i < 24; ++i) {
        const std::u16string head = heads.substr(random() % 12, length);
        const std::u16string tails[] = {{}, {character()}, {u'h'}, {u's', character()}};
        const std::u16string& tail = tails[random() % std::size(tails)];
        const unsigned short op = kOps[random() % std::size(kOps)];
        ExpectAllWays(head + character() + tail, head + character() + tail, language, op);
        ExpectAllWays(head + tail, head + character() + tail, language, op);
      }
    }
  }
}

// Two characters of ASCII and Latin-1 in every language that has letters of its own.
TEST(Levels, AllPairsOfLatinCharacters) {
  for (const unsigned char language : KnownLanguages()) {
    if (!OtLanguageContext::QueryLanguage(language)->tailorsOrder) continue;
    for (char16_t first = u'\''; first < 0x180; first = static_cast<char16_t>(first + 3)) {
      for (char16_t second = u'\''; second < 0x180; second = static_cast<char16_t>(second + 2)) {
        const std::u16string text1 = {u'c', first, u'h', second};
        const std::u16string text2 = {u'c', second, u'h'};
        const TextSpan span1 = SpanOf(text1, language);
        const TextSpan span2 = SpanOf(text2, language);
        ASSERT_EQ(SignOf(ot95::CompareSpans(span1, span2, 0x10)),
                  SignOf(ot95::CompareSpansPlainly(span1, span2, 0x10)))
            << std::hex << unsigned{first} << " " << unsigned{second} << " " << unsigned{language};
      }
    }
  }
}

// Texts of several code sets, languages and scripts, many of them alike, in the order that a stable
// sort by comparison gives.
TEST(Sorting, EqualsAStableSortByComparison) {
  MixedTexts mixed;
  for (const unsigned short op : std::initializer_list<unsigned short>{0x10, 0x70, 0x2f0, 0x110}) {
    std::vector<OtString> strings;
    const unsigned char languages[] = {1, 1, 1, 15, 17, 23, 59, 63, OT_LANG_NULL};
    for (std::size_t i = 0; i < 4000; ++i) {
      std::u16string text = mixed.Text(i % 3 == 0 ? 40 : 9);
      if (i % 4 == 0) text.insert(0, u"abcdefghijklmnopqrstuvwxyz", i % 27);
      if (i % 50 == 0) text = u"\u4e00\u4e8c\u4e09" + text;
      strings.push_back(StringOf(text, languages[i % 37 < 9 ? i % 37 : 0]));
      if (i % 8 == 0) strings.back().MapToCodeSet(static_cast<unsigned char>(1 + i % 5));
      if (i % 11 == 0) strings.push_back(strings[mixed.Number() % strings.size()]);
    }
    std::vector<const OtString*> texts;
    for (const OtString& string : strings) texts.push_back(&string);
    std::vector<unsigned long> expected(texts.size());
    std::iota(expected.begin(), expected.end(), 0UL);
    std::stable_sort(expected.begin(), expected.end(), [&](unsigned long a, unsigned long b) {
      return texts[a]->Compare(*texts[b], op) < 0;
    });
    std::vector<unsigned long> order(texts.size());
    OtSortTexts(texts.data(), texts.size(), order.data(), op);
    ASSERT_EQ(order, expected) << "op " << op;
  }
}

std::uint32_t ReferenceHash(OtStringIterator it) {
  std::uint32_t hash = 0;
  while (const unsigned short order = it.GetNextOrder(1)) {
    hash = hash * 9 + ot95::ComposeOrderKey(order, it.GetScript());
  }
  return hash;
}

TEST(Levels, HashesFollowTheWalk) {
  MixedTexts texts;
  for (int i = 0; i < 20000; ++i) {
    const std::u16string text = texts.Text(20);
    const unsigned char languages[] = {1, 15, 17, 23, 59, 0x61, 0};
    const unsigned char language = languages[texts.Number() % std::size(languages)];
    const char* units = reinterpret_cast<const char*>(text.c_str());
    ASSERT_EQ(HashString(OT_CS_UNICODE, language, units, -1, OT_FORMAT_NATIVE),
              ReferenceHash(OtStringIterator(units, OT_CS_UNICODE, language, 1)))
        << Hex(text.data(), 2 * text.size()) << " language " << int{language};
    const std::u16string turned = Turned(text);
    ASSERT_EQ(HashString(OT_CS_UNICODE, language, reinterpret_cast<const char*>(turned.c_str()), -1,
                         OT_FORMAT_BIG_ENDIAN),
              HashString(OT_CS_UNICODE, language, units, -1, OT_FORMAT_NATIVE));
    std::string bytes;
    for (const char16_t unit : text) bytes += static_cast<char>(unit % 255 + 1);
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 2, 5, 15}) {
      ASSERT_EQ(HashString(codeSet, language, bytes.c_str(), -1, OT_FORMAT_NATIVE),
                ReferenceHash(OtStringIterator(bytes.c_str(), codeSet, language, 1)))
          << Hex(bytes.data(), bytes.size()) << " in " << int{codeSet} << " language "
          << int{language};
    }
  }
}

TEST(Levels, EveryCharacterHashesAsTheWalkSays) {
  for (char16_t unit = 1; unit < 0x700; ++unit) {
    for (const char16_t next : u"h\u0301\u017e") {
      const char16_t text[] = {u'c', unit, next, 0};
      const char* units = reinterpret_cast<const char*>(text);
      for (unsigned char language = 0; language < 0x80;
           language = static_cast<unsigned char>(language + 7)) {
        ASSERT_EQ(HashString(OT_CS_UNICODE, language, units, -1, OT_FORMAT_NATIVE),
                  ReferenceHash(OtStringIterator(units, OT_CS_UNICODE, language, 1)))
            << std::hex << unsigned{unit} << " " << unsigned{next} << " language "
            << unsigned{language};
      }
    }
  }
}

template <ot95::CaseFold fold>
void CheckFold() {
  const ot95::FinishedKeys& keys = *ot95::FinishedKeys::Of(OT_LANG_NEUTRAL);
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    SCOPED_TRACE(unit);
    const std::uint32_t key = keys.At(unit);
    const bool joins = (key & ot95::kJoins) != 0 && (key & ot95::kKeyBits) != 0;
    ASSERT_FALSE(joins && ot95::AreAlike<fold>(unit, unit));
    const unsigned behind = (unit + ot95::kCaseDistance) & 0xffff;
    if (!ot95::AreAlike<fold>(unit, behind)) continue;
    ASSERT_EQ((keys.At(unit) | keys.At(behind)) & ot95::kLook, 0U);
    ASSERT_EQ((keys.At(unit) ^ keys.At(behind)) & ot95::kAccentMask, 0U);
  }
}

TEST(Levels, WhatIsPassedOverDiffersInCaseAlone) {
  CheckFold<ot95::CaseFold::kLatin>();
  CheckFold<ot95::CaseFold::kOthers>();
}

TEST(Levels, OneByteTextsAgreeWithTheirWideForm) {
  std::mt19937 random(7);
  for (int i = 0; i < 30000; ++i) {
    const unsigned char codeSets[] = {1, 5, 9, 0x0f};
    const unsigned char codeSet = codeSets[random() % std::size(codeSets)];
    std::string narrow1;
    for (std::size_t n = random() % 40; n != 0; --n) {
      narrow1 += static_cast<char>(random() % 3 == 0 ? random() % 255 + 1 : 'a' + random() % 26);
    }
    std::string narrow2 = narrow1;
    if (!narrow2.empty())
      narrow2[random() % narrow2.size()] = static_cast<char>(random() % 255 + 1);
    OtString text1(narrow1.c_str());
    OtString text2(narrow2.c_str());
    text1.SetCodeSetCode(codeSet);
    text2.SetCodeSetCode(codeSet);
    OtString wide1(text1);
    OtString wide2(text2);
    wide1.MapToCodeSet(OT_CS_UNICODE);
    wide2.MapToCodeSet(OT_CS_UNICODE);
    const unsigned short op = kOps[random() % std::size(kOps)];
    const long expected = wide1.Compare(wide2, op);
    ASSERT_EQ(SignOf(text1.Compare(text2, op)), SignOf(expected))
        << Hex(narrow1.data(), narrow1.size()) << " ~ " << Hex(narrow2.data(), narrow2.size());
    ASSERT_EQ(SignOf(text1.Compare(wide2, op)), SignOf(expected)) << "mixed widths";
    ASSERT_EQ(text1.Compare(wide1, op), 0) << "its own wide form";
  }
}

// Behind an equal head the second bytes part, one of which may be unassigned.
TEST(Levels, EveryByteOfEverySetComparesAsItsWideForm) {
  for (unsigned codeSet = 1; codeSet <= OT_CS_LAST_NARROW; ++codeSet) {
    const OtCodeSet& set = *OtLanguageContext::QueryCodeSet(static_cast<unsigned char>(codeSet));
    if (set.number != codeSet) continue;
    for (unsigned byte = 1; byte < 256; ++byte) {
      for (const unsigned other : {byte ^ 1, 0xffU, 0xd2U, 0x81U}) {
        if (other == 0) continue;
        const unsigned char head = 0xc8;
        const char texts[][3] = {{static_cast<char>(head), static_cast<char>(byte), 0},
                                 {static_cast<char>(head), static_cast<char>(other), 0}};
        OtString narrow[2], wide[2];
        for (int i = 0; i < 2; ++i) {
          narrow[i] = texts[i];
          narrow[i].SetCodeSetCode(set.number);
          wide[i] = narrow[i];
          wide[i].MapToCodeSet(OT_CS_UNICODE);
        }
        ASSERT_EQ(SignOf(narrow[0].Compare(narrow[1], 0x10)),
                  SignOf(wide[0].Compare(wide[1], 0x10)))
            << set.name << ' ' << std::hex << byte << " ~ " << other;
      }
    }
  }
}

TEST(Levels, SinglePairs) {
  const struct {
    const char* name;
    unsigned char codeSet;
    const char* text;
    const char* pattern;
    unsigned short op;
    short maxChars;
    int sign;
  } rows[] = {
      {"prefix", 1, "abc", "abcd", 0, -1, -1},
      {"longer", 1, "abc", "ab", 0, -1, 1},
      {"a star as the symbol it is", 1, "*", "*", 0x10, -1, 0},
      {"no pattern", 1, "abc", "a*", 0x10, -1, 1},
      {"symbols ignored", 1, "a-b", "ab", 0x210, -1, 0},
      {"symbols count last", 1, "a-b", "ab", 0x10, -1, 1},
      {"case before symbols", 1, "a-b", "Ab", 0x10, -1, -1},
      {"first case difference decides", 1, "aB", "Ab", 0x10, -1, -1},
      {"last accent difference decides", 1, "r\xe9sume", "resum\xe9", 0x10, -1, -1},
      {"accent before case", 1, "E", "\xe9", 0x10, -1, -1},
      {"both ignored", 1, "\xc9", "e", 0x70, -1, 0},
      {"equal up to the limit", 1, "abcd", "abcx", 0x10, 3, 0},
      {"limit of none", 1, "a", "b", 0x10, 0, 0},
      {"any negative limit is none", 1, "abcd", "abcx", 0x10, -9, -1},
      {"whole keys: accents as they come", 1, "r\xe9sume", "resum\xe9", 0x100, -1, 1},
      {"whole keys: limit", 1, "abcd", "abcx", 0x100, 3, 0},
      {"whole keys: symbols count", 1, "a-b", "ab", 0x100, -1, -1},
      {"raw text has no case", 0, "a", "A", 0x30, -1, 1},
      {"raw text is unsigned", 0, "\xe9", "z", 0x10, -1, 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SignOf(OtStrCmp(row.codeSet, 1, row.text, row.codeSet, 1, row.pattern, row.op,
                              row.maxChars)),
              row.sign)
        << row.name;
  }
}

TEST(Levels, NullValues) {
  const unsigned char null = OT_LANG_NULL;
  for (unsigned short op : {OT_CMP_NO_WILDCARDS, OT_CMP_ORDER_ONLY}) {
    EXPECT_LT(OtStrCmp(0, null, "", 1, 1, "", op), 0);
    EXPECT_GT(OtStrCmp(1, 1, "", 0, null, "", op), 0);
    EXPECT_EQ(OtStrCmp(0, null, "", OT_CS_ORDER, 0, "\0", op), 0);
  }
  EXPECT_EQ(OtStrCmp(0, null, "", 1, 1, "*", 0), 0) << "a pattern can match it";
  EXPECT_EQ(OtStrCmp(1, 1, nullptr, 1, 1, "", 0x10), 0) << "no text is an empty one";
  EXPECT_LT(OtStrCmp(0, 0, nullptr, 0, 0, "*", 0), 0) << "raw text that isn't there has no match";
  EXPECT_EQ(OtStrCmp(0, 0, "", 0, 0, "*", 0), 0);
  for (const char* empty : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(OtStrCmp(0, 0, nullptr, 0, 0, empty, 0), 0);
  }
  EXPECT_EQ(OtStrCmp(0, 0, nullptr, 0, 0, "*", 0, 0), 0) << "nothing is compared";
  EXPECT_GT(OtStrCmp(0, 0, nullptr, 0, null, "*", 0), 0);
  EXPECT_GT(OtStrCmp(1, 1, "*", 1, 1, "!"), 0) << "whole keys unless told";
}

TEST(Levels, KeysOfManyScriptsMakeNoCycle) {
  const unsigned char scripts[] = {0x01, 0x50, 0x90};
  const char word[] = "\x0c\x40\0";
  for (unsigned char low : scripts) {
    for (unsigned char high : scripts) {
      EXPECT_EQ(SignOf(OtStrCmp(OT_CS_ORDER, low, word, OT_CS_ORDER, high, word, 0x10)),
                Order(low, high));
    }
  }
}

TEST(Levels, TellThePrimaryDifferenceUnderALimit) {
  int primary = 5;
  OtStrCmp(1, 1, "\xe9", 1, 1, "e", 0x90, 3, 1, &primary);
  EXPECT_EQ(primary, 0);
  OtStrCmp(1, 1, "f", 1, 1, "e", 0x90, 3, 1, &primary);
  EXPECT_GT(primary, 0);
  primary = 5;
  OtStrCmp(1, 1, "f", 1, 1, "e", 0x90, -1, 1, &primary);
  OtStrCmp(1, 1, "f", 1, 1, "e", 0x10, 3, 1, &primary);
  OtStrCmp(1, 1, "eef", 1, 1, "eee", 0x90, 2, 1, &primary);
  EXPECT_EQ(primary, 0) << "only the equal passes within the limit are told";
}

}  // namespace
