// Texts that are equal however they are written: canonically equal ones in every language, by
// Unicode's own list where the package unicode-data is installed, and letters in either case.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "bytes_testing.h"
#include "ot95/typemgr.h"
#include "text/texts.h"

namespace {

using Text = std::u16string;

const char* Bytes(const Text& text) {
  return reinterpret_cast<const char*>(text.c_str());
}

std::string Shown(const Text& text) {
  std::ostringstream out;
  for (const char16_t unit : text) out << std::hex << unsigned{unit} << ' ';
  return out.str();
}

std::vector<unsigned char> AllLanguages() {
  std::vector<unsigned char> numbers;
  for (unsigned char n = 1; n < 0x80; ++n) {
    if (OtLanguageContext::QueryLanguage(n) != nullptr) numbers.push_back(n);
  }
  return numbers;
}

constexpr char kStringId = 11;
constexpr unsigned long kRoom = 0x200;

std::string KeyOf(const Text& text, unsigned char language) {
  OtString string(reinterpret_cast<const unsigned short*>(text.c_str()));
  string.SetLanguageCode(language);
  unsigned char key[kRoom];
  OtTypeMgr types;
  const unsigned long size = types.Translate(kStringId, key, 0x81, kRoom, &string, 8, 0, 1);
  return std::string(reinterpret_cast<char*>(key), size);
}

std::string SortKeyOf(const Text& text, unsigned char language) {
  OtString string(reinterpret_cast<const unsigned short*>(text.c_str()));
  string.SetLanguageCode(language);
  unsigned char key[kRoom];
  int status = 0;
  const unsigned long size =
      OtTypeMgr().SortKey(kStringId, key, kRoom, &string, 0, OT_CMP_NO_WILDCARDS, 1, 8, status);
  EXPECT_EQ(status, 0);
  return std::string(reinterpret_cast<char*>(key), size);
}

// What tells two texts apart that should be equal; nothing if they are.
std::string Difference(const Text& text1, const Text& text2, unsigned char language) {
  const auto compare = [&](unsigned short op) {
    return OtStrCmp(OT_CS_UNICODE, language, Bytes(text1), OT_CS_UNICODE, language, Bytes(text2),
                    op);
  };
  const auto hash = [&](const Text& text) {
    return HashString(OT_CS_UNICODE, language, Bytes(text), -1, OT_FORMAT_NATIVE);
  };
  std::string found;
  if (compare(OT_CMP_NO_WILDCARDS) != 0) found += " compare";
  if (compare(OT_CMP_ORDER_ONLY) != 0) found += " orders";
  if (hash(text1) != hash(text2)) found += " hash";
  if (KeyOf(text1, language) != KeyOf(text2, language)) found += " key";
  if (SortKeyOf(text1, language) != SortKeyOf(text2, language)) found += " sort key";
  return found.empty() ? found : Shown(text1) + "~ " + Shown(text2) + "differ in" + found;
}

// The five forms of each line of Unicode's own test that stays within the first plane.
std::vector<std::vector<Text>> NormalizationLines() {
  std::vector<std::vector<Text>> lines;
  FILE* pipe = popen("bzip2 -dc /usr/share/unicode/NormalizationTest.txt.bz2 2>/dev/null", "r");
  if (pipe == nullptr) return lines;
  char line[2000];
  while (std::fgets(line, sizeof line, pipe) != nullptr) {
    std::vector<Text> forms(1);
    bool within = true;
    std::istringstream words(std::string(line, std::string(line).find('#')));
    for (std::string part; std::getline(words, part, ';') && forms.size() <= 5;) {
      std::istringstream codes(part);
      for (unsigned code = 0; codes >> std::hex >> code;) {
        within = within && code < 0x10000;
        forms.back() += static_cast<char16_t>(code);
      }
      forms.emplace_back();
    }
    forms.pop_back();
    if (forms.size() == 5 && within) lines.push_back(forms);
  }
  pclose(pipe);
  return lines;
}

TEST(Equality, OfCanonicallyEqualTextsInEveryLanguage) {
  const auto lines = NormalizationLines();
  if (lines.empty()) GTEST_SKIP() << "the package unicode-data isn't installed";
  ASSERT_GT(lines.size(), 16000U);
  for (const unsigned char language : AllLanguages()) {
    int unequal = 0;
    for (const auto& forms : lines) {
      for (const std::size_t other : {1U, 2U}) {
        const std::string difference = Difference(forms[0], forms[other], language);
        if (!difference.empty() && ++unequal <= 3) {
          ADD_FAILURE() << "language " << int{language} << ": " << difference;
        }
      }
      const std::string difference = Difference(forms[3], forms[4], language);
      if (!difference.empty() && ++unequal <= 3) {
        ADD_FAILURE() << "language " << int{language} << ": " << difference;
      }
    }
    EXPECT_EQ(unequal, 0) << "language " << int{language};
  }
}

TEST(Equality, OfWordsHoweverTheyAreWritten) {
  constexpr unsigned short kPlain = OT_CMP_NO_WILDCARDS;
  constexpr unsigned short kNoAccents = kPlain | OT_CMP_IGNORE_ACCENT;
  constexpr unsigned short kNoCase = kPlain | OT_CMP_IGNORE_CASE;
  const struct {
    const char* name;
    const char* language;
    Text text1, text2;
    unsigned short op;
  } rows[] = {
      {"Greek in capitals", "el", u"\u039c\u03b1\u0390\u03bf\u03c5",
       u"\u039c\u0391\u03aa\u0301\u039f\u03a5", kNoCase},
      {"the same decomposed", "el", u"\u03bc\u03b1\u03b9\u0308\u0301\u03bf\u03c5",
       u"\u039c\u0391\u0399\u0308\u0301\u039f\u03a5", kNoCase},
      {"an iota below", "el", u"\u1f84", u"\u1f8c", kNoCase},
      {"Yoruba", "und", u"\u1eb9\u0301k\u1ecd\u0301", u"eko", kNoAccents},
      {"Yoruba with the other mark first", "und", u"\u1eb9\u0301", u"e\u0301\u0323", kPlain},
      {"Hebrew points", "he", u"\u05e9\u05c1\u05b8\u05dc\u05d5\u05b9\u05dd",
       u"\u05e9\u05dc\u05d5\u05dd", kNoAccents},
      {"Arabic harakat", "ar", u"\u0645\u064f\u062d\u064e\u0645\u0651\u064e\u062f",
       u"\u0645\u062d\u0645\u062f", kNoAccents},
      {"shadda in either order", "ar", u"\u0645\u064e\u0651", u"\u0645\u0651\u064e", kPlain},
      {"soft hyphen", "de", u"Schiff\u00adfahrt", u"Schifffahrt", kPlain},
      {"byte order mark", "und",
       u"\ufeff"
       u"a",
       u"a", kPlain},
      {"variation selector", "und", u"\u2764\ufe0f", u"\u2764", kPlain},
      {"joiners", "fa", u"\u0645\u06cc\u200c\u0631\u0648\u062f", u"\u0645\u06cc\u0631\u0648\u062f",
       kPlain},
      {"half-width kana", "ja", u"\uff76\uff9e\uff70", u"\u30ac\u30fc", kPlain},
      {"half-width kana in another language", "de", u"\uff8a\uff9f", u"\u30d1", kPlain},
      {"ligatures", "en", u"\ufb01\ufb02\ufb00", u"fiflff", kPlain},
      {"ligatures of three letters", "tr", u"su\ufb03x \ufb04", u"suffix ffl", kPlain},
      {"ligatures of letters that contract", "cy", u"\ufb00\ufb03\ufb04", u"ffffiffl", kPlain},
      {"a mark on the last letter of a contraction", "hu", u"ccs\u0301", u"cc\u015b", kPlain},
      {"a mark between two that contract", "my", u"\u1031\u102c\u1004\u103a\u1037",
       u"\u1031\u102c\u1004\u1037\u103a", kPlain},
      {"marks that contract in this order only", "my", u"\u102f\u1019\u103a\u1037\u1038",
       u"\u102f\u1019\u1037\u103a\u1038", kPlain},
      {"a letter written apart", "my", u"\u1025\u102e", u"\u1026", kPlain},
      {"a letter that sorts as others", "km", u"\u17a5", u"\u17a2\u17b7", kNoAccents},
      {"a letter of the language below another mark", "sv", u"a\u0323\u030a", u"\u00e5\u0323",
       kPlain},
      {"a letter inside a contraction", "hr", u"dz\u0316\u030c", u"d\u017e\u0316", kPlain},
      {"the angstrom sign", "sv", u"\u212b\u0301", u"A\u030a\u0301", kPlain},
  };
  for (const auto& row : rows) {
    const unsigned char language = OtLanguageContext::LanguageOfTag(row.language);
    if (row.op == kPlain) {
      EXPECT_EQ(Difference(row.text1, row.text2, language), "") << row.name;
      continue;
    }
    EXPECT_EQ(OtStrCmp(OT_CS_UNICODE, language, Bytes(row.text1), OT_CS_UNICODE, language,
                       Bytes(row.text2), row.op),
              0)
        << row.name;
    EXPECT_NE(OtStrCmp(OT_CS_UNICODE, language, Bytes(row.text1), OT_CS_UNICODE, language,
                       Bytes(row.text2), kPlain),
              0)
        << row.name;
  }
}

TEST(Equality, OfOneByteTextsAndTheirWideForm) {
  constexpr unsigned char kWindows1258 = 0x1a;
  const char viet[] = "Vi\xea\xf2t";
  const Text wide = u"Vi\u1ec7t";
  const unsigned char vietnamese = OtLanguageContext::LanguageOfTag("vi");
  EXPECT_EQ(OtStrCmp(kWindows1258, vietnamese, viet, OT_CS_UNICODE, vietnamese, Bytes(wide),
                     OT_CMP_NO_WILDCARDS),
            0);
  EXPECT_EQ(HashString(kWindows1258, vietnamese, viet, -1, OT_FORMAT_NATIVE),
            HashString(OT_CS_UNICODE, vietnamese, Bytes(wide), -1, OT_FORMAT_NATIVE));
}

TEST(Equality, AVeryLongRunOfMarksIsTakenAsItStands) {
  for (const std::size_t more : {0U, 1U}) {
    const Text marks = Text(15, u'\u0301') + Text(15 + more, u'\u0316');
    const Text sorted = Text(15 + more, u'\u0316') + Text(15, u'\u0301');
    EXPECT_EQ(Difference(u"x" + marks, u"x" + sorted, 1).empty(), more == 0);
    EXPECT_EQ(Difference(u"o" + marks, u"o" + sorted, 1).empty(), more == 0);
  }
}

TEST(Equality, PlacesInsideARunOfMarks) {
  // The walk counts characters as they stand, and waits for what is delivered before its turn.
  const Text text = u"a\u0315\u0316\u0300x";
  OtStringIterator it(Bytes(text), OT_CS_UNICODE, 1, 1);
  const char* start = it.GetPosition();
  std::vector<long> places;
  while (it.GetNextOrder(1) != 0) places.push_back((it.GetPosition() - start) / 2);
  EXPECT_EQ(places, (std::vector<long>{1, 1, 4, 5})) << "a grave, two marks, x";
  OtStringIterator back(Bytes(text), OT_CS_UNICODE, 1, 1);
  back.GetNextOrder(1);
  --back;
  EXPECT_EQ(back.GetNextOrder(1), 0x718c) << "it begins anew";
}

// The micron is a symbol, and the iota below a mark; the sharp s has an accent that its capitals
// don't have, and the dotless i is a letter of its own.
constexpr char16_t kApart[] = u"\u00b5\u0345\u00df\u0131";

// The simple foldings of Unicode, and the capitals that ToUpper makes.
TEST(Equality, OfBothCasesWhereCaseIsIgnored) {
  std::ifstream file("/usr/share/unicode/CaseFolding.txt");
  if (!file) GTEST_SKIP() << "the package unicode-data isn't installed";
  const auto same = [](const Text& text1, const Text& text2) {
    return OtStrCmp(OT_CS_UNICODE, 1, Bytes(text1), OT_CS_UNICODE, 1, Bytes(text2),
                    OT_CMP_NO_WILDCARDS | OT_CMP_IGNORE_CASE) == 0;
  };
  int foldings = 0;
  for (std::string line; std::getline(file, line);) {
    unsigned code = 0;
    unsigned folded = 0;
    char status = 0;
    if (std::sscanf(line.c_str(), "%x; %c; %x;", &code, &status, &folded) != 3) continue;
    if ((status != 'C' && status != 'S') || code > 0xffff || folded > 0xffff) continue;
    const Text large(1, static_cast<char16_t>(code));
    const Text small(1, static_cast<char16_t>(folded));
    const bool apart = std::u16string_view(kApart).find(large[0]) != Text::npos;
    EXPECT_EQ(same(large, small), !apart) << Shown(large) << "~ " << Shown(small);
    ++foldings;
  }
  EXPECT_GT(foldings, 1100);
  for (unsigned code = 1; code < 0xd800; ++code) {
    const Text text(1, static_cast<char16_t>(code));
    OtString capital(reinterpret_cast<const unsigned short*>(text.c_str()));
    const bool apart = code != 0x345 && std::u16string_view(kApart).find(text[0]) != Text::npos;
    EXPECT_EQ(same(text, UnitsOf(capital.ToUpper())), !apart) << Shown(text);
  }
}

}  // namespace
