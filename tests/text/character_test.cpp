// Characters by value and at a place, and the iterator that walks them.

#include <gtest/gtest.h>

#include <vector>

#include "text/texts.h"

namespace {

using Place = std::vector<char>;

TEST(Char, AssignmentWritesInTheFormOfThePlace) {
  const OtChar euro(static_cast<unsigned short>(0x20ac));
  const OtChar narrow('\xe9');
  const struct {
    const char* name;
    unsigned char codeSet, format;
    OtChar source;
    Place bytes;
  } rows[] = {
      {"wide, native", OT_CS_UNICODE, 1, euro, {'\xac', '\x20', '#'}},
      {"wide, in memory", OT_CS_UNICODE, 8, euro, {'\xac', '\x20', '#'}},
      {"wide, flags above a native form", OT_CS_UNICODE, 0x81, euro, {'\xac', '\x20', '#'}},
      {"wide, big-endian", OT_CS_UNICODE, 2, euro, {'\x20', '\xac', '#'}},
      {"wide, flags above big-endian", OT_CS_UNICODE, 0x82, euro, {'\x20', '\xac', '#'}},
      {"wide from a byte", OT_CS_UNICODE, 1, narrow, {'\xe9', '\0', '#'}},
      {"byte from wide",
       OT_CS_BASE8,
       1,
       OtChar(static_cast<unsigned short>(0xe9)),
       {'\xe9', '#', '#'}},
      {"raw byte", OT_CS_NONE, 1, narrow, {'\xe9', '#', '#'}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Place bytes(3, '#');
    OtChar place(bytes.data(), row.codeSet, 9, row.format);
    place = row.source;
    EXPECT_EQ(bytes, row.bytes);
    EXPECT_EQ(place.GetCodeSetCode(), row.codeSet);
    EXPECT_EQ(place.GetLanguageCode(), 9);
    EXPECT_EQ(place.GetFormat(), row.format);
  }
}

TEST(Char, WidthDecidesWhatAUnitStores) {
  Place bytes{'#', '#'};
  OtChar narrow(bytes.data(), OT_CS_BASE8);
  narrow = static_cast<unsigned short>(0x4142);
  EXPECT_EQ(bytes, (Place{'\x42', '#'}));
  OtChar wide(bytes.data(), OT_CS_UNICODE, 1, OT_FORMAT_BIG_ENDIAN);
  wide = '\xe9';
  EXPECT_EQ(bytes, (Place{'\0', '\xe9'}));
  EXPECT_EQ(wide.GetValue(), 0xe9);
  EXPECT_EQ(OtChar(static_cast<unsigned short>(0x4142), OT_CS_BASE8).GetValue(), 0x42);
}

TEST(Char, ValuesAreCopies) {
  OtString text("ab");
  OtChar place(text, 0);
  OtChar value(place);
  value = OtChar('z');
  EXPECT_EQ(UnitsOf(text), u"ab");
  EXPECT_EQ(value.GetValue(), 'z');
  text[1] = OtChar(static_cast<unsigned short>(0x20ac));  // mapped to the string's code set
  EXPECT_EQ(UnitsOf(text), u"a\x80");
  EXPECT_EQ(OtChar(place).GetFormat(), OT_FORMAT_NATIVE);
  EXPECT_EQ(OtChar('a', 0xff, 0xff).GetLanguageCode(), OtString::GetDefaultLanguage());
}

TEST(Char, AStringWithoutBufferHasNoPlaces) {
  OtString none;
  none[0] = 'x';
  OtStringIterator at(none);
  *at = OtChar('x');
  EXPECT_EQ(UnitsOf(OtString()), u"");
  EXPECT_TRUE(at.IsEOS());
  OtString text("ab");
  for (int index : {3, -1, 70000}) EXPECT_EQ(text[index].GetValue(), 0) << index;
  EXPECT_EQ(text[2].GetValue(), 0) << "the terminator";
}

TEST(Char, MapToKnowsItselfAndNothing) {
  const OtChar c('\xe9', 1, 9);
  EXPECT_EQ(c.MapTo(0).GetCodeSetCode(), 1);
  EXPECT_EQ(c.MapTo(1).GetValue(), 0xe9);
  EXPECT_EQ(c.MapTo(OT_CS_UNICODE).GetValue(), 0xe9);
  EXPECT_EQ(c.MapTo(OT_CS_UNICODE).GetLanguageCode(), 9);
  EXPECT_EQ(OtChar('\xe9', OT_CS_NONE).MapTo(OT_CS_UNICODE).GetValue(), 0xe9) << "native stands in";
}

TEST(Char, Classes) {
  const struct {
    unsigned short unit;
    const char* classes;  ///< Of " sdah": space, symbol, digit, alphabet, Han.
  } rows[] = {{0, " "},   {' ', " "},  {0x3000, " "}, {'-', "s"},    {'*', "s"},    {'7', "d"},
              {'q', "a"}, {0xe9, "a"}, {0x416, "a"},  {0x4e00, "h"}, {0xac00, "h"}, {0x3400, "h"}};
  for (const auto& row : rows) {
    const OtChar c(row.unit);
    const std::string found = std::string(c.IsSpace() ? " " : "") + (c.IsSymbol() ? "s" : "") +
                              (c.IsDigit() ? "d" : "") + (c.IsAlpha() ? "a" : "") +
                              (c.IsHan() ? "h" : "");
    EXPECT_EQ(found, row.classes) << std::hex << row.unit;
  }
}

TEST(Char, ComparisonSeesTheCharacterAlone) {
  OtString chain("ch");
  chain.SetLanguageCode(0x61);  // a language in which "ch" is one letter
  EXPECT_TRUE(chain[0] == OtChar('c', 1, 0x61));
  char swapped[] = {0, 'a', 0, 'b'};
  EXPECT_TRUE(OtChar(static_cast<const char*>(swapped), OT_CS_UNICODE, 1, 2) == 'a');
  EXPECT_LT(OtChar('a').Compare(OtChar('b')), 0);
  EXPECT_TRUE(OtChar('b') > OtChar('a'));
  EXPECT_TRUE(OtChar('a') != 'A');
  EXPECT_EQ(OtChar('a').Compare(OtChar('A'), OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE), 0);
  EXPECT_TRUE(OtChar('a') == static_cast<unsigned short>('a'));
}

/// The list of the one further character of a capital.
const OtWCharList& OneEntry() {
  return OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)->GetUnicodeProps(0xdf, 1)->upperTail;
}

TEST(Iterator, MovesByTheWidthOfTheCodeSet) {
  OtString text = TextOf(OT_CS_UNICODE, u"abc");
  OtStringIterator at(text);
  EXPECT_EQ((*at++).GetValue(), 'a');
  EXPECT_EQ((*++at).GetValue(), 'c');
  EXPECT_EQ((*at--).GetValue(), 'c');
  at.Step(0);
  EXPECT_EQ((*at).GetValue(), 'a');
  at.Step(7);
  EXPECT_EQ(at.GetPosition(), text.StrGet() + 2);
  *at = OtChar('X');
  EXPECT_EQ(UnitsOf(text), u"aXc");
  OtStringIterator other(text);
  EXPECT_TRUE(other != at);
  other = at;
  EXPECT_TRUE(other == at);
  OtStringIterator none;
  EXPECT_TRUE((++none).IsEOS());
  EXPECT_EQ((*none).GetValue(), 0);
}

TEST(Iterator, DeliversWhatIsPendingBeforeItGoesOn) {
  OtString text("xy");
  OtStringIterator at(text);
  at.SetOverflow(&OneEntry(), OT_CS_UNICODE);
  ++at;  // an entry is left: nothing moves
  EXPECT_EQ(at.GetPosition(), text.StrGet());
  OtStringIterator copy(at);
  EXPECT_EQ((*copy).GetValue(), 'x') << "what is pending stays with the original";
  const OtChar pending = *at;
  EXPECT_EQ(pending.GetValue(), 'S');
  EXPECT_EQ(pending.GetCodeSetCode(), OT_CS_UNICODE);
  EXPECT_EQ((*at).GetValue(), 'x') << "the list is used up";
  OtStringIterator end(text);
  end.Step(1);
  end.Step(1);
  EXPECT_TRUE(end.IsEOS());
  end.SetOverflow(&OneEntry());
  EXPECT_EQ((*end).GetCodeSetCode(), 1);
  EXPECT_FALSE(end.IsEOS()) << "until a step has dropped the list";
  ++at;
  EXPECT_EQ(at.GetPosition(), text.StrGet() + 1);
}

TEST(Iterator, OwnsTheTextOfOneCharacter) {
  OtChar c(static_cast<unsigned short>(0x20ac));
  OtStringIterator at(c);
  EXPECT_EQ((*at).GetValue(), 0x20ac);
  EXPECT_TRUE((++at).IsEOS());
  --at;
  OtString text("z");
  at = OtStringIterator(text);
  EXPECT_EQ((*at).GetValue(), 'z');
  // It is freed wherever the iterator has moved to, and not under a copy that goes back.
  OtStringIterator stepped(c), walked(c), replaced(c), back(c);
  ++stepped;
  EXPECT_NE(walked.GetNextOrder(1), 0);
  ++replaced;
  replaced = OtStringIterator(text);
  EXPECT_EQ((*replaced).GetValue(), 'z');
  const OtStringIterator before = back++;
  back = before;
  EXPECT_EQ((*back).GetValue(), 0x20ac);
}

TEST(Case, OfATextIsThatOfItsCharacters) {
  const unsigned char german = 3, turkish = 28;
  std::u16string bytes, units;
  for (char16_t c = 1; c < 256; ++c) bytes.push_back(c);
  for (unsigned c = 1; c < 0xffff; ++c) units.push_back(static_cast<char16_t>(c));
  const unsigned char sets[] = {0, 1, 2, 5, 19, 0x40, 0x99, 0xf0, 0xfd, 0xfe};
  for (unsigned char codeSet : sets) {
    for (unsigned char language : {german, turkish}) {
      SCOPED_TRACE(testing::Message() << int{codeSet} << " in language " << int{language});
      FaultCount faults;  // all characters at once are more than a text may hold
      OtString text = TextOf(codeSet, codeSet > 0xe0 ? units : bytes);
      text.SetLanguageCode(language);
      OtString fast(text), slow(text);
      OtToUpper upper;
      EXPECT_EQ(UnitsOf(fast.ToUpper()), UnitsOf(slow.Transform(upper)));
      EXPECT_EQ(fast.MemLen(), slow.MemLen());
      OtToLower lower;
      EXPECT_EQ(UnitsOf(text.ToLower()), UnitsOf(OtString(text).Transform(lower)));
    }
  }
}

TEST(Case, ASigmaEndsAWordInItsOwnForm) {
  constexpr unsigned char kGreekWindows = 0x10, kGreek = 27;
  const struct {
    const char* name;
    unsigned char codeSet;
    std::u16string text, lower;
  } rows[] = {
      {"at the end", OT_CS_UNICODE, u"ΟΔΟΣ", u"οδος"},
      {"within", OT_CS_UNICODE, u"ΣΑΣΑ", u"σασα"},
      {"before a blank and a stop", OT_CS_UNICODE, u"ΟΔΟΣ ΣΟΦΟΣ. Α", u"οδος σοφος. α"},
      {"before an accent", OT_CS_UNICODE, u"ΑΣ\u0301", u"ας\u0301"},
      {"before an apostrophe in its word", OT_CS_UNICODE, u"ΑΣ'Α", u"ασ'α"},
      {"small letters stay", OT_CS_UNICODE, u"Ασ", u"ασ"},
      {"bytes", kGreekWindows, u"\xcf\xc4\xcf\xd3", u"\xef\xe4\xef\xf2"},
  };
  for (const auto& row : rows) {
    OtString text = TextOf(row.codeSet, row.text);
    text.SetLanguageCode(kGreek);
    OtToLower lower;
    EXPECT_EQ(UnitsOf(OtString(text).Transform(lower)), row.lower) << row.name;
    EXPECT_EQ(UnitsOf(text.ToLower()), row.lower) << row.name;
  }
  OtString alone = TextOf(OT_CS_UNICODE, u"Σ x");  // The sign of a sum is no word.
  EXPECT_EQ(UnitsOf(alone.ToLower()), u"σ x");
}

TEST(Case, NamedTexts) {
  const struct {
    const char* name;
    unsigned char language;
    std::u16string text, upper;
  } rows[] = {
      {"plain", 1, u"Abc-9", u"ABC-9"},
      {"accents", 1, u"\u00e9\u0436\u03c3", u"\u00c9\u0416\u03a3"},
      {"longer", 3, u"stra\u00dfe", u"STRASSE"},
      {"longer at both ends", 3, u"\u00df\u00df", u"SSSS"},
      {"Turkish", 28, u"i\u0131I", u"\u0130II"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    OtString text = TextOf(OT_CS_UNICODE, row.text);
    text.SetLanguageCode(row.language);
    EXPECT_EQ(UnitsOf(text.ToUpper()), row.upper);
    EXPECT_EQ(text.MemLen(), 2 * (row.upper.size() + 1));
  }
  EXPECT_EQ(OtChar(static_cast<unsigned short>(0xdf)).ToUpper(nullptr).GetValue(), 'S');
  EXPECT_EQ(UnitsOf(OtString("stra\xdf"
                             "e")
                        .ToUpper()),
            u"STRASSE");
  OtString raw(
      "stra\xdf"
      "e");
  raw.SetCodeSetCode(OT_CS_NONE);
  EXPECT_EQ(UnitsOf(raw.ToUpper()),
            u"STRA\xdf"
            u"E")
      << "raw bytes know ASCII alone";
  EXPECT_EQ(OtString().ToUpper().MemLen(), 0);
}

/// Follows each character of the text by a list of as many units as asked for.
struct Lengthen : OtCharOperation {
  explicit Lengthen(std::int32_t more) : list(more, 0) {}
  OtChar operator()(OtChar c, OtStringIterator* source) override {
    if (left-- == 0) {
      left = list.count;
      source->SetOverflow(&list, OT_CS_DEFAULT);
    }
    return c.GetValue() != 0 ? c : OtChar('0');
  }
  OtWCharList list;
  std::int32_t left = 0;
};

TEST(Case, ATransformMayLengthenWithoutBounds) {
  for (unsigned char codeSet : {OT_CS_BASE8, OT_CS_UNICODE}) {
    for (std::int32_t more : {1, 2, 7}) {
      OtString text = TextOf(codeSet, u"abcdefghij");
      Lengthen lengthen(more);
      text.Transform(lengthen);
      EXPECT_EQ(text.Len(), 10 * (more + 1));
      EXPECT_EQ(text.MemLen(), (10 * (more + 1) + 1) * (codeSet > 0xe0 ? 2 : 1));
    }
  }
}

}  // namespace
