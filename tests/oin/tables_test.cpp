// The internationalisation library: orders, languages, code sets, case data, defaults.

#include "ot95/oin.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "oin/walk.h"
#include "ot95/oin_version.h"

namespace {

using oin_walk::Keys;
using oin_walk::kNoCase;
using oin_walk::kPrimary;
using oin_walk::Masked;

const OtCodeSet& Set(unsigned number) {
  return *OtLanguageContext::QueryCodeSet(static_cast<unsigned char>(number));
}

const OtCodeSet& Unicode() {
  return Set(OT_CS_UNICODE);
}

std::vector<unsigned char> Languages(bool tailoringOnly) {
  std::vector<unsigned char> numbers;
  for (unsigned n = 0; n < 256; ++n) {
    const OtLanguage* language = OtLanguageContext::QueryLanguage(static_cast<unsigned char>(n));
    if (language != nullptr && (!tailoringOnly || language->tailorsOrder != 0 || n == 1)) {
      numbers.push_back(language->number);
    }
  }
  return numbers;
}

// Records.

TEST(OrderRecords, WordsOfWellKnownCharacters) {
  const struct {
    const char* name;
    unsigned short character, order;
    int script;
  } rows[] = {
      {"A", 'A', 0x400c, 1},
      {"a", 'a', 0x700c, 1},
      {"z", 'z', 0x7070, 1},
      {"E acute is E with accent 2", 0xc9, 0x411c, 1},
      {"c cedilla", 0xe7, 0x7094, 1},
      {"o stroke", 0xf8, 0x7444, 1},
      {"asterisk", '*', 0x9f, 0},
      {"question mark", '?', 0x7a, 0},
      {"backslash", '\\', 0xa0, 0},
      {"apostrophe", '\'', 0x84, 0},
      {"acute accent", 0xb4, 0xa8, 0},
      {"micron", 0xb5, 0xbe, 0},
      {"tab", 9, 1, 0},
      {"blank", ' ', 6, 0},
      {"control", 1, 0x0d, 0},
      {"digit 1", '1', 0x3f0a, 0},
      {"arabic digit 1", 0x661, 0x3f0a, 0},
      {"superscript 2", 0xb2, 0x3f15, 0},
      {"circled 3", 0x2462, 0x3f23, 0},
      {"Cyrillic a", 0x430, 0x7000, 3},
      {"Hangul ga", 0xac00, 0x8001, 0x13},
      {"first Han", 0x4e00, 0xad80, 0x13},
      {"last Han", 0x9fff, 0xff7f, 0x13},
      {"Han extension", 0x3400, 0x8000, 0x14},
      {"hiragana a", 0x3042, 0x6000, 0x13},
      {"fullwidth A is A", 0xff21, 0x400c, 1},
      {"Kelvin is K", 0x212a, 0x4034, 1},
  };
  for (const auto& row : rows) {
    const OtOrderRecord* record = Unicode().orderTable->Lookup(row.character);
    ASSERT_NE(record, nullptr) << row.name;
    EXPECT_EQ(record->order(), row.order) << row.name;
    EXPECT_EQ(record->scriptRef() != nullptr ? *record->scriptRef() : 0, row.script) << row.name;
  }
}

bool IsRecordless(unsigned c) {
  return (c >= 0xe000 && c < 0xf900) || c >= 0xfff0 || c == 0x378 || c == 0x2e9a;
}

TEST(OrderRecords, EveryRecordKeepsTheRanges) {
  for (unsigned c = 0; c < 0x10000; ++c) {
    const OtOrderRecord* record = Unicode().orderTable->Lookup(static_cast<unsigned short>(c));
    ASSERT_TRUE(record != nullptr || c >= 0x200) << std::hex << c;
    ASSERT_TRUE(record == nullptr || !IsRecordless(c)) << std::hex << c;
    if (record == nullptr) continue;
    ASSERT_EQ(record->order() == 0, c == 0) << std::hex << c;
    ASSERT_LT(record->order(), 0xfff0) << std::hex << c;
    ASSERT_LE(record->script, 0x14) << std::hex << c;
    ASSERT_TRUE(record->script != 0 || record->order() < 0x4000) << std::hex << c;
    ASSERT_EQ(record->expansion()->count > 0,
              record->hasExpansion() != 0 && !record->WeighsNothing())
        << std::hex << c;
  }
}

TEST(OrderRecords, ClassesAreThoseOfTheCharacter) {
  const struct {
    const char* name;
    unsigned first, last, low, high;
  } rows[] = {
      {"ASCII digits", '0', '9', 0x3f00, 0x3fff},
      {"Devanagari digits", 0x966, 0x96f, 0x3f00, 0x3fff},
      {"fullwidth digits", 0xff10, 0xff19, 0x3f00, 0x3fff},
      {"Han", 0x4e00, 0x9fff, 0x8000, 0xffff},
      {"Han extension", 0x3400, 0x4dbf, 0x8000, 0xffff},
      {"Hangul", 0xac00, 0xd7a3, 0x8000, 0xffff},
      {"compatibility Han", 0xf900, 0xfa6d, 0x8000, 0xffff},
      {"blanks", 0x2000, 0x200a, 1, 0x4f},
      {"controls", 1, 0x1f, 1, 0x4f},
      {"small Latin", 'a', 'z', 0x4000, 0x7fff},
      {"Ethiopic", 0x1200, 0x1248, 0x4000, 0x7fff},
      {"box drawing", 0x2500, 0x257f, 0x50, 0x3eff},
      {"currency", 0x20a0, 0x20c0, 0x50, 0x3eff},
      {"length mark", 0x30fc, 0x30fc, 0x50, 0x3eff},
      {"combining marks", 0x300, 0x33f, 0x50, 0x3eff},
  };
  for (const auto& row : rows) {
    for (unsigned c = row.first; c <= row.last; ++c) {
      const OtOrderRecord* record = Unicode().orderTable->Find(static_cast<unsigned short>(c));
      ASSERT_NE(record, nullptr) << row.name << std::hex << c;
      ASSERT_TRUE(record->order() >= row.low && record->order() <= row.high)
          << row.name << ' ' << c;
    }
  }
}

TEST(OrderRecords, AnAccentedByteIsFoundByItsOwnWord) {
  const OtOrderTable& table = *Set(1).orderTable;
  for (unsigned byte = 0xc0; byte < 0x100; ++byte) {
    const unsigned short word = table.AtByte(static_cast<unsigned char>(byte)).order();
    if (word < 0x4000 || (word >> 7 & 31) == 0) continue;
    unsigned found = 0x80;
    while (table.AtByte(static_cast<unsigned char>(found)).order() != word) ++found;
    EXPECT_EQ(found, byte);
  }
}

// The tables' own lists, of every record that can be reached from `record`.
// @param words how many the characters up to this one may have.
void CheckLists(const OtOrderTable& table, const OtOrderRecord& record, const OtLanguage* language,
                int words, int depth = 0) {
  ASSERT_LT(depth, 6);
  ASSERT_LT(record.WeighsNothing() ? 0 : record.expansion()->count, words);
  const OtWCharList* chars = record.contractionChars();
  if (record.hasContractions() == 0) {
    EXPECT_EQ(chars->count, 0);
    return;
  }
  EXPECT_GT(chars->count, 0);
  unsigned short last = 0;
  for (int i = 0; i < chars->count; ++i) {
    unsigned short follower = 0;
    const OtOrderRecord* pair = nullptr;
    ASSERT_EQ(chars->GetAt(i, &follower), 0);
    ASSERT_EQ(record.contractionRecords().GetAt(i, &pair), 0);
    ASSERT_LT(last, follower);
    last = follower;
    ASSERT_EQ(record.Contracted(follower), pair);
    ASSERT_TRUE(table.At(follower).Follows(language != nullptr)) << std::hex << follower;
    CheckLists(table, *pair, language, words + OtMostWords(follower), depth + 1);
  }
  unsigned short untouched = 0x1234;
  EXPECT_EQ(chars->GetAt(chars->count, &untouched), OT_ERR_NO_MORE_ITEMS);
  EXPECT_EQ(chars->GetAt(-1, &untouched), OT_ERR_NO_MORE_ITEMS);
  EXPECT_EQ(untouched, 0x1234);
}

TEST(OrderRecords, FastFormsAgreeWithTheLists) {
  for (const unsigned char number : {OT_CS_BASE8, OT_CS_UNICODE}) {
    const OtOrderTable& table = *Set(number).orderTable;
    for (unsigned c = 0; c < (number == OT_CS_BASE8 ? 0x100 : 0x10000); ++c) {
      const OtOrderRecord* record = table.Find(static_cast<unsigned short>(c));
      ASSERT_EQ(record, table.Lookup(static_cast<unsigned short>(c)));
      if (record == nullptr) continue;
      CheckLists(table, *record, nullptr, OtMostWords(c));
      for (const unsigned char n : Languages(true)) {
        const OtLanguage* language = OtLanguageContext::QueryLanguage(n);
        const OtOrderRecord* own = record->Tailored(language);
        ASSERT_EQ(own == nullptr ? record : own, oin_walk::Tailor(record, language));
        if (own != nullptr) CheckLists(table, *own, language, OtMostWords(c));
      }
    }
  }
}

// Languages.

std::u16string FromUtf8(const char* text) {
  std::u16string units;
  while (*text != 0) {
    const auto lead = static_cast<unsigned char>(*text++);
    const auto more = [&text](unsigned high) {
      return high << 6 | (static_cast<unsigned char>(*text++) & 0x3fU);
    };
    const unsigned value = lead >= 0xe0   ? more(more(lead & 15U))
                           : lead >= 0xc0 ? more(lead & 31U)
                                          : lead;
    units += static_cast<char16_t>(value);
  }
  return units;
}

TEST(Languages, AlphabetsStandInTheirOrder) {
  // Words of the language; each is less than the next in the letters themselves.
  const struct {
    const char *tag, *words;
  } rows[] = {
      {"und", "a b e f z þ ǀ"},
      {"de", "of ög oz p"},
      {"sv", "az d o v w z å ä ö"},
      {"sv-traditional", "va wb vc z å ä ö"},
      {"fi", "z å ä ö"},
      {"da", "a az z æ ø å"},
      {"nb", "z æ ø å aab"},
      {"is", "a á b d ð e é i í o ó u ú y ý z þ æ ö å"},
      {"es", "n nz ñ o"},
      {"es-traditional", "c cz ch d l lz ll m n nz ñ o"},
      {"pl", "a ą b c ć e ę l ł n ń o ó p s ś z ź ż"},
      {"cs", "c č d h hz ch i r ř s š z ž"},
      {"sk", "a ä b c č h ch i o ô p z ž"},
      {"hu", "c cz cs d dy dz dzs e g gz gy l ly n ny o ö p s sz t ty u ü z zs"},
      {"hr", "c č ć d dy dž đ e l lz lj m n nz nj o s š z ž"},
      {"sl", "c č ć d đ e s š z ž"},
      {"ro", "a ă â b i î j s ș t ț u"},
      {"uk", "г ґ д и і ї й"},
      {"be", "е ё ж у ў ф"},
      {"mk", "д ѓ е к ќ у"},
      {"kk", "е ё ж ұ ү ф ы і ь"},
      {"tr", "c ç d g ğ h ı i j o ö p s ş t u ü v"},
      {"az", "e ə f h x ı i k q l z w"},
      {"et", "s š z ž t u v w õ ä ö ü x y"},
      {"lv", "c č d g ģ h k ķ l ļ m n ņ o r ŗ s š t z ž"},
      {"lt", "c č d s š t z ž"},
      {"cy", "c ch d dd e f ff g ng h l ll m p ph r rh s t th"},
      {"sq", "c ç d dh e ë f g gj h l ll m n nj o r rr s sh t th u x xh y z zh"},
      {"mt", "b ċ c f ġ g għ h ħ i y ż z"},
      {"eo", "c ĉ d g ĝ h ĥ i j ĵ s ŝ t u ŭ v"},
      {"vi", "a ă â b d đ e ê o ô ơ p u ư v"},
      {"hi", "ॐ ं ः अ"},
      {"bn", "ঔ ং ঃ ঁ ক"},
      {"si", "ඖ ං ඃ ක ඥ ඤ"},
      {"ar", "ب ت ث ن ه و ي"},
      {"fa", "آ ا ء ب ن و ه ی"},
      {"ur", "ا آ ب بھ پ پھ ت تھ ل لھ م مھ ں و ہ ھ ی ے"},
      {"ps", "آ ا ء ت ټ ج ځ د ډ ک ګ ن ڼ ه و ی"},
      {"und", "一 上 中 京 北 阿"},
      {"zh-Hans", "阿 北 京 上 一 中 㐀"},
      {"zh-Hant", "一 人 上 中 北 京"},
      {"ja", "亜 阿 哀 一 京 上 中 北 倂"},
      {"or", "ଔ ଁ ଂ ଃ କ ହ କ୍ଷ"},
      {"ta", "ஔ ஂ ஃ க் க ங் ங ஹ் ஹ க்ஷ் க்ஷ"},
      {"kn", "ಔ ಂ ಃ ೱ ೲ ಕ"},
      {"pa", "ਰ ੜ ੍"},
      {"bs", "c č ć d dy dž đ e l lz lj"},
      {"sr-Latn", "n nz nj o"},
      {"uz", "y z zz oʻ gʻ sh ch"},
      {"ig", "b bz ch d g gz gb gh gw h i ị k kp kw n ṅ nw ny o ọ s sh u ụ"},
      {"hsb", "c č ć d e ě f h hz ch i k ł l r ř s š z ž ź"},
      {"dsb", "n ń o r ŕ s š ś t z ž ź"},
      {"my", "က ကကျ ကာ ကာက ကော ကောင့် ကို ကက် ကက်က ကောက် ကိုက် ကင် ကုမ် ကုမ့် ကုမ်း ကျ ခ အ အာ အိ"},
      {"km", "ក កក កុំ កះ ក្ក ខ រ រ្យ ឫ ល ឭ អ អា អៅ"},
  };
  for (const auto& row : rows) {
    const unsigned char language = OtLanguageContext::LanguageOfTag(row.tag);
    ASSERT_NE(language, 0) << row.tag;
    std::istringstream words(row.words);
    std::string word, last;
    std::vector<std::uint32_t> before;
    while (words >> word) {
      const auto keys = Masked(Keys(FromUtf8(word.c_str()), Unicode(), language), kPrimary);
      EXPECT_LT(before, keys) << row.tag << ": " << last << " before " << word;
      before = keys;
      last = word;
    }
  }
}

TEST(Languages, LettersThatDifferAsByAnAccent) {
  const struct {
    const char *tag, *less, *greater;
  } rows[] = {
      {"de", "o", "ö"},       {"de-phonebook", "oe", "ö"},
      {"sv", "ä", "æ"},       {"sv", "y", "ü"},
      {"da", "ä", "æ"},       {"lt", "i", "y"},
      {"lv", "i", "y"},       {"lt", "ę", "ė"},
      {"vi", "à", "ả"},       {"vi", "ả", "ã"},
      {"vi", "ã", "á"},       {"vi", "á", "ạ"},
      {"vi", "ằ", "ẳ"},       {"vi", "ắ", "ặ"},
      {"vi", "â", "ậ"},       {"ro", "â", "ậ"},
      {"vi", "ẵ", "ắ"},       {"hu", "ö", "ő"},
      {"hi", "ं", "ँ"},         {"und", "o", "ø"},
      {"sv", "ö", "ő"},       {"sv", "ö", "œ"},
      {"sv", "ä", "ę"},       {"da", "ö", "ő"},
      {"nb", "ø", "œ"},       {"sv", "th", "þ"},
      {"ar", "ء", "أ"},       {"ar", "أ", "ا"},
      {"ar", "ة", "ت"},       {"ar", "ى", "ي"},
      {"fa", "ا", "ٱ"},       {"ur", "ا", "أ"},
      {"ml", "മ്", "ം"},       {"or", "ଯ", "ୟ"},
      {"hy", "եվ", "և"},      {"ja", "ああ", "あー"},
      {"ja", "がが", "がゞ"}, {"und", "d", "ð"},
      {"da", "å", "aa"},      {"fr", "oe", "œ"},
  };
  for (const auto& row : rows) {
    const unsigned char language = OtLanguageContext::LanguageOfTag(row.tag);
    const auto less = Keys(FromUtf8(row.less), Unicode(), language);
    const auto greater = Keys(FromUtf8(row.greater), Unicode(), language);
    EXPECT_EQ(Masked(less, kPrimary), Masked(greater, kPrimary)) << row.tag << ' ' << row.less;
    if (std::string(row.tag) != "da") {
      EXPECT_LT(Masked(less, kNoCase), Masked(greater, kNoCase)) << row.tag << ' ' << row.less;
    }
    EXPECT_NE(less, greater) << row.tag << ' ' << row.less;
  }
}

TEST(Languages, AVersionTellsWhoOrdersAlike) {
  const auto version = [](const char* tag) {
    return OtLanguageContext::OrderVersion(OtLanguageContext::LanguageOfTag(tag));
  };
  std::map<std::uint64_t, std::string> rules;
  for (const unsigned char number : Languages(false)) {
    const std::uint64_t own = OtLanguageContext::OrderVersion(number);
    const std::string rule = OtLanguageContext::OrderRules(number) +
                             std::to_string(OtLanguageContext::QueryLanguage(number)->script);
    EXPECT_NE(own, 0U);
    EXPECT_EQ(rules.emplace(own, rule).first->second, rule) << unsigned{number};
  }
  EXPECT_EQ(version("en"), version("und"));
  EXPECT_NE(version("es"), version("und"));
  EXPECT_NE(version("ru"), version("und"));  // Digits and symbols are of its script.
  EXPECT_EQ(OtLanguageContext::OrderVersion(100), version("und"));  // Nobody's number.
  EXPECT_EQ(OtLanguageContext::OrderVersion(OT_LANG_DEFAULT), version("und"));
  EXPECT_GE(OtGetTableVersions().collation, 1U);
  EXPECT_STREQ(OtLanguageContext::OrderRules(5), "ñ=n.1");
  EXPECT_STREQ(OtLanguageContext::OrderRules(2), "");
}

TEST(Languages, EqualSpellings) {
  const struct {
    const char *tag, *one, *other;
  } rows[] = {
      {"hu", "ccs", "cscs"}, {"hu", "ddzs", "dzsdzs"}, {"hu", "Ggy", "Gygy"}, {"ro", "ş", "ș"},
      {"hr", "ǆ", "dž"},     {"hr", "ǈ", "Lj"},        {"und", "Å", "Å"},     {"th", "เก", "กเ"},
  };
  for (const auto& row : rows) {
    const unsigned char language = OtLanguageContext::LanguageOfTag(row.tag);
    EXPECT_EQ(Keys(FromUtf8(row.one), Unicode(), language),
              Keys(FromUtf8(row.other), Unicode(), language))
        << row.tag << ' ' << row.one;
  }
}

TEST(Languages, CaseFieldOfContractions) {
  const unsigned char czech = OtLanguageContext::LanguageOfTag("cs");
  const struct {
    const char16_t* text;
    unsigned caseField;
  } rows[] = {{u"ch", 3}, {u"cH", 2}, {u"Ch", 1}, {u"CH", 0}};
  for (const auto& row : rows) {
    const auto keys = Keys(row.text, Unicode(), czech);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys[0] >> 5 & 3, row.caseField);
  }
  EXPECT_EQ(Keys(u"cz", Unicode(), czech).size(), 2U);  // The follower isn't consumed.
  EXPECT_EQ(Keys(u"c", Unicode(), czech).size(), 1U);
}

TEST(Languages, CasePartnersDifferInCaseOnly) {
  for (const unsigned char language : Languages(true)) {
    for (unsigned c = 1; c < 0xfff0; ++c) {
      const auto code = static_cast<unsigned short>(c);
      const OtUnicodeProps* props = Unicode().GetUnicodeProps(code, language);
      if (props == nullptr || props->lower == 0) continue;
      const OtUnicodeProps* back = Unicode().GetUnicodeProps(props->lower, language);
      if (back == nullptr || back->upper != code) continue;
      const OtOrderRecord* record = Unicode().orderTable->Find(code);
      if (record->script == 0x14) continue;
      ASSERT_EQ(Masked(Keys({static_cast<char16_t>(code)}, Unicode(), language), kNoCase),
                Masked(Keys({static_cast<char16_t>(props->lower)}, Unicode(), language), kNoCase))
          << int{language} << ' ' << std::hex << c;
    }
  }
}

// Whether the language has its own record for the character, as a byte or in Unicode.
bool IsTailored(unsigned byte, unsigned char language) {
  const OtCodeSet& base = Set(OT_CS_BASE8);
  const OtLanguage* speech = OtLanguageContext::QueryLanguage(language);
  const auto code = base.UnicodeValues()[byte];
  return base.orderTable->At(static_cast<unsigned short>(byte)).Tailored(speech) != nullptr ||
         Unicode().orderTable->At(code).Tailored(speech) != nullptr;
}

TEST(Languages, BytesSortLikeTheirCharacters) {
  const OtCodeSet& base = Set(OT_CS_BASE8);
  for (const unsigned char language : Languages(true)) {
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
      const unsigned first = pair >> 8, second = pair & 0xff;
      if (first == 0 || second == 0) continue;
      // Without records of its own the language does as the neutral one.
      if (language != OT_LANG_NEUTRAL && !IsTailored(first, language) &&
          !IsTailored(second, language)) {
        continue;
      }
      const std::u16string bytes = {static_cast<char16_t>(first), static_cast<char16_t>(second)};
      const std::u16string chars = {static_cast<char16_t>(base.UnicodeValues()[first]),
                                    static_cast<char16_t>(base.UnicodeValues()[second])};
      ASSERT_EQ(Keys(bytes, base, language), Keys(chars, Unicode(), language))
          << int{language} << ' ' << std::hex << pair;
    }
  }
}

// Canonical decompositions of two characters, from the character database.
std::map<unsigned, std::u16string> ReadDecompositions(const char* path) {
  std::map<unsigned, std::u16string> result;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> fields;
    std::istringstream split(line);
    for (std::string field; std::getline(split, field, ';');) fields.push_back(field);
    const unsigned code = static_cast<unsigned>(std::stoul(fields[0], nullptr, 16));
    unsigned first = 0, second = 0;
    if (code < 0xfff0 && std::sscanf(fields[5].c_str(), "%x %x", &first, &second) == 2) {
      result[code] = {static_cast<char16_t>(first), static_cast<char16_t>(second)};
    }
  }
  for (unsigned i = 0; i < 11172; ++i) {
    const auto lead = static_cast<char16_t>(i % 28 != 0 ? 0xac00 + i / 28 * 28 : 0x1100 + i / 588);
    const auto tail = static_cast<char16_t>(i % 28 != 0 ? 0x11a7 + i % 28 : 0x1161 + i / 28 % 21);
    result[0xac00 + i] = {lead, tail};
  }
  return result;
}

TEST(Languages, DecomposedTextEqualsComposedText) {
  auto pairs = ReadDecompositions("/usr/share/unicode/UnicodeData.txt");
  if (pairs.size() < 12000) GTEST_SKIP() << "the package unicode-data isn't installed";
  for (const unsigned char language : Languages(true)) {
    for (const auto& [code, pair] : pairs) {
      const std::u16string composed = {static_cast<char16_t>(code)};
      ASSERT_EQ(Keys(composed, Unicode(), language), Keys(pair, Unicode(), language))
          << int{language} << ' ' << std::hex << code;
      const auto inner = pairs.find(pair[0]);
      if (inner == pairs.end()) continue;
      const std::u16string whole = inner->second + pair[1];
      ASSERT_EQ(Keys(composed, Unicode(), language), Keys(whole, Unicode(), language))
          << int{language} << ' ' << std::hex << code;
    }
  }
}

TEST(Languages, LeavesAsciiOnlyWhereNothingChanges) {
  int left = 0;
  for (const unsigned char n : Languages(false)) {
    const OtLanguage& language = *OtLanguageContext::QueryLanguage(n);
    for (char16_t c = 1; c < 0x80; ++c) {
      for (char16_t next = 1; next < 0x400; ++next) {
        if (!language.Leaves(c, next)) continue;
        const OtOrderRecord& record = Unicode().orderTable->AtWide(c);
        const OtOrderRecord* own = oin_walk::Tailor(&record, &language);
        ASSERT_EQ(own->key, record.key) << language.tag << ' ' << int{c};
        ASSERT_EQ(own->hasExpansion(), 0) << language.tag << ' ' << int{c};
        ASSERT_EQ(own->Contracted(next), nullptr) << language.tag << ' ' << int{c};
        ++left;
      }
    }
  }
  EXPECT_GT(left, 0);
  EXPECT_TRUE(ot95::NeutralLanguage().Leaves('c', 'h'));
  EXPECT_FALSE(ot95::NeutralLanguage().Leaves('c', 0x30c));
  EXPECT_FALSE(OtLanguageContext::QueryLanguage(15)->Leaves('c', 'h'));
}

TEST(Languages, NumbersTagsAndScripts) {
  const struct {
    const char* tag;
    unsigned char number, script;
    bool tailors;
  } rows[] = {
      {"de", 3, 1, false},
      {"SV", 9, 1, true},
      {"no", 11, 1, true},
      {"ru", 23, 3, false},
      {"el", 27, 2, false},
      {"th", 59, 0x12, false},
      {"ja", 63, 0x13, true},
      {"zh", 65, 0x13, true},
      {"ko", 64, 0x13, false},
      {"dsb", 73, 1, true},
      {"my", 74, 0x12, true},
      {"km-KH", 75, 0x12, true},
      {"de-phonebook", 0x60, 1, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(OtLanguageContext::LanguageOfTag(row.tag), row.number) << row.tag;
    const OtLanguage* language = OtLanguageContext::QueryLanguage(row.number);
    ASSERT_NE(language, nullptr) << row.tag;
    EXPECT_EQ(language->script, row.script) << row.tag;
    EXPECT_EQ(language->tailorsOrder != 0, row.tailors) << row.tag;
  }
  EXPECT_EQ(OtLanguageContext::LanguageOfTag("xx"), 0);
  EXPECT_EQ(OtLanguageContext::LanguageOfTag(""), 0);
  EXPECT_EQ(OtLanguageContext::LanguageOfTag(nullptr), 0);
  for (const unsigned number : {0U, 0x5fU, 0x80U, 0xfeU, 0xffU}) {
    EXPECT_EQ(OtLanguageContext::QueryLanguage(static_cast<unsigned char>(number)), nullptr);
  }
}

TEST(Languages, EverySetKnowsTheScriptOfTheLanguage) {
  for (unsigned set = 0; set < 256; ++set) {
    for (unsigned language = 0; language < 256; ++language) {
      const auto number = static_cast<unsigned char>(language);
      const OtLanguage* record = OtLanguageContext::QueryLanguage(number);
      const int script = set == OT_CS_ORDER ? number : record == nullptr ? 1 : record->script;
      ASSERT_EQ(Set(set).DefaultScript(number), script) << set << ' ' << language;
    }
  }
}

// Code sets.

TEST(CodeSets, EveryNumberHasARecord) {
  for (unsigned n = 0; n < 256; ++n) {
    const OtCodeSet& set = Set(n);
    const bool narrow = n <= OT_CS_LAST_NARROW;
    EXPECT_EQ(set.UnicodeValues() != nullptr, narrow) << n;
    EXPECT_EQ(set.orderTable != nullptr, set.number == OT_CS_BASE8 || set.number == OT_CS_UNICODE);
    EXPECT_TRUE(set.number == n || set.number == (narrow ? OT_CS_BASE8 : OT_CS_UNICODE)) << n;
  }
}

TEST(CodeSets, MapsThereAndBack) {
  const struct {
    const char* name;
    unsigned char set;
    unsigned short value, unicode;
  } rows[] = {
      {"euro in Windows-1252", 1, 0x80, 0x20ac},
      {"unassigned Windows byte", 1, 0x81, 0x81},
      {"euro in ISO-8859-15", 4, 0xa4, 0x20ac},
      {"z caron", 5, 0xbe, 0x17e},
      {"Cyrillic", 0x0a, 0xc0, 0x410},
      {"KOI8", 0x0b, 0xe1, 0x410},
      {"Greek", 0x0f, 0xe1, 0x3b1},
      {"Thai", 0x16, 0xa1, 0xe01},
      {"CP437", 0x1d, 0xe1, 0xdf},
      {"Mac Roman", 0x30, 0x80, 0xc4},
      {"EBCDIC A", 0x40, 0xc1, 'A'},
      {"Japanese", 0xe1, 0x82a0, 0x3042},
      {"halfwidth katakana", 0xe1, 0xb1, 0xff71},
      {"GBK", 0xe2, 0xb0a1, 0x554a},
      {"Big5", 0xe3, 0xa440, 0x4e00},
      {"Korean", 0xe4, 0xb0a1, 0xac00},
      {"ASCII in Korean", 0xe4, 'x', 'x'},
      {"the ladder form of high, by its second code", 0xe1, 0xfbfc, 0x9ad9},
      {"roman one, by its first", 0xe1, 0x8754, 0x2160},
      {"because", 0xe1, 0x81e6, 0x2235},
      {"euro in GBK", 0xe2, 0x80, 0x20ac},
      {"macron in EBCDIC 273", 0x42, 0xbc, 0xaf},
      {"euro in EBCDIC 1141", 0x46, 0x9f, 0x20ac},
      {"bracket in EBCDIC 1047", 0x45, 0xad, '['},
      {"percent sign of CP864", 0x50, 0x25, 0x66a},
      {"VISCII in the place of a control", 0x51, 2, 0x1eb2},
      {"Mac Cyrillic", 0x34, 0x80, 0x410},
      {"EUC-JP", 0xe8, 0xa4a2, 0x3042},
      {"EUC-JP, half width", 0xe8, 0x8eb1, 0xff71},
      {"GB18030", 0xe9, 0xa2e3, 0x20ac},
      {"Hong Kong", 0xea, 0xfbfd, 0x5ef4},
      {"none is the native set", 0, 0xe9, 0xe9},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Unicode().MapChar(row.value, row.set), row.unicode) << row.name;
    EXPECT_EQ(Set(row.set).MapChar(row.unicode, OT_CS_UNICODE), row.value) << row.name;
  }
}

TEST(CodeSets, WhatCantBeMappedIsNeitherZeroNorAWildcard) {
  const struct {
    const char* name;
    unsigned char to;
    unsigned short value;
    unsigned char from;
    unsigned short expected;
  } rows[] = {
      {"zero", 1, 0, OT_CS_UNICODE, 0},
      {"zero of orders", OT_CS_UNICODE, 0, OT_CS_ORDER, 0},
      {"no counterpart", 1, 0x430, OT_CS_UNICODE, 0x1a},
      {"EBCDIC", 0x40, 0x430, OT_CS_UNICODE, 0x3f},
      {"no best fit", 3, 0xe9, 1, 0x1a},
      {"two-byte set", 0xe1, 0xac00, OT_CS_UNICODE, 0x1a},
      {"undefined byte", OT_CS_UNICODE, 0xae, 0x0f, 0xfffd},
      {"order", OT_CS_UNICODE, 0x400c, OT_CS_ORDER, 0xfffd},
      {"order to bytes", 1, 0x400c, OT_CS_ORDER, 0x1a},
      {"sign-extended byte", OT_CS_UNICODE, 0xffe9, 1, 0xe9},
      {"Unicode stands in for set 0xff", OT_CS_UNICODE, 0x430, 0xff, 0x430},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Set(row.to).MapChar(row.value, row.from), row.expected) << row.name;
  }
}

TEST(CodeSets, BulkMappingEqualsCharacterByCharacter) {
  std::mt19937 random(7);
  for (unsigned n = 1; n <= OT_CS_LAST_NARROW; ++n) {
    const OtCodeSet& set = Set(n);
    if (set.number != n) continue;
    for (const std::size_t size : {0U, 1U, 15U, 16U, 40U, 257U}) {
      std::vector<unsigned char> bytes(size), back(size);
      std::vector<std::uint16_t> units(size), mixed(size);
      for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(size == 40 ? random() & 0x7f : random());
        mixed[i] = static_cast<std::uint16_t>(random() >> (random() & 1 ? 22 : 16));
      }
      set.BytesToUnicode(bytes.data(), size, units.data());
      for (std::size_t i = 0; i < size; ++i) {
        ASSERT_EQ(units[i], Unicode().MapChar(bytes[i], set.number)) << set.name;
      }
      mixed.insert(mixed.end(), units.begin(), units.end());
      back.resize(mixed.size());
      set.UnicodeToBytes(mixed.data(), mixed.size(), back.data());
      for (std::size_t i = 0; i < mixed.size(); ++i) {
        ASSERT_EQ(back[i], set.MapChar(mixed[i], OT_CS_UNICODE)) << set.name;
      }
    }
  }
}

TEST(CodeSets, Names) {
  const struct {
    const char* name;
    unsigned char number;
  } rows[] = {{"ISO-8859-1", 2},
              {"iso8859-15", 4},
              {"CP1252", 1},
              {"windows-1251", 0x0a},
              {"koi8r", 0x0b},
              {"cp037", 0x40},
              {"Unicode", 0xfd},
              {"cp932", 0xe1},
              {"UTF-8", 0},
              {"", 0},
              {"-", 0},
              {"latin1", 2},
              {"ASCII", 3},
              {"us", 3},
              {"Shift_JIS", 0xe1},
              {"SJIS", 0xe1},
              {"EUC-KR", 0xe4},
              {"IBM037", 0x40},
              {"macintosh", 0x30},
              {"IBM01141", 0x46},
              {"ibm1141", 0x46},
              {"TIS-620", 0x1c},
              {"csVISCII", 0x51},
              {"ujis", 0xe8},
              {"GB2312", 0xe2},
              {"hebrew", 0x11},
              {"nonsense", 0},
              {"cp", 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(OtLanguageContext::CodeSetOfName(row.name), row.number) << row.name;
  }
  EXPECT_EQ(OtLanguageContext::CodeSetOfName(nullptr), 0);
}

TEST(Languages, Tags) {
  const struct {
    const char *tag, *own;
  } rows[] = {{"de-DE", "de"},
              {"pt-BR", "pt"},
              {"zh-TW", "zh-Hant"},
              {"zh-Hant-TW", "zh-Hant"},
              {"zh-Hans-HK", "zh-Hans"},
              {"zh_HK", "zh-Hant"},
              {"ZH", "zh-Hans"},
              {"cmn-Hant", "zh-Hant"},
              {"iw", "he"},
              {"in", "id"},
              {"mo", "ro"},
              {"deu", "de"},
              {"nn-NO", "nb"},
              {"no", "nb"},
              {"sr-RS", "sr"},
              {"DE-Phonebook", "de-phonebook"},
              {"sl-rozaj-biske", "sl"},
              {"de-AT-u-co-phonebk", "de-phonebook"},
              {"es-u-co-trad", "es-traditional"},
              {"de-u-co-eor", "de"}};
  for (const auto& row : rows) {
    EXPECT_EQ(OtLanguageContext::LanguageOfTag(row.tag), OtLanguageContext::LanguageOfTag(row.own))
        << row.tag;
    EXPECT_NE(OtLanguageContext::LanguageOfTag(row.own), 0) << row.own;
  }
  for (const char* tag : {"", "-", "tlh", "e", "deutsch", "x-de"}) {
    EXPECT_EQ(OtLanguageContext::LanguageOfTag(tag), 0) << tag;
  }
}

// Case data.

constexpr unsigned char kTurkish = 28;

TEST(CaseData, Rows) {
  const struct {
    const char* name;
    unsigned char set, language;
    unsigned short value, upper, tail, lower;
  } rows[] = {
      {"a", OT_CS_UNICODE, 1, 'a', 'A', 0, 0},
      {"A", 1, 1, 'A', 0, 0, 'a'},
      {"sharp s", OT_CS_UNICODE, 1, 0xdf, 'S', 'S', 0},
      {"sharp s in EBCDIC has its tail in EBCDIC", 0x42, 3, 0xa1, 'S', 0xe2, 0},
      {"y diaeresis", 1, 1, 0xff, 0x178, 0, 0},
      {"y diaeresis without its capital", 2, 1, 0xff, 0, 0, 0},
      {"micron", 1, 1, 0xb5, 0, 0, 0},
      {"sign-extended e acute", 1, 1, 0xffe9, 0xc9, 0, 0},
      {"iota with dialytika and tonos", OT_CS_UNICODE, 27, 0x390, 0x3aa, 0x301, 0},
      {"the same without room for the tail", 0x0f, 27, 0xc0, 0, 0, 0},
      {"three capitals are too many", OT_CS_UNICODE, 1, 0xfb03, 0, 0, 0},
      {"ligature", OT_CS_UNICODE, 1, 0xfb01, 'F', 'I', 0},
      {"titlecase", OT_CS_UNICODE, 1, 0x1c5, 0x1c4, 0, 0x1c6},
      {"Turkish i", OT_CS_UNICODE, 28, 'i', 0x130, 0, 0},
      {"Turkish I", OT_CS_UNICODE, 28, 'I', 0, 0, 0x131},
      {"Azerbaijani i", OT_CS_UNICODE, 29, 'i', 0x130, 0, 0},
      {"Turkish i in its own set", 0x13, 28, 'i', 0x130, 0, 0},
      {"Turkish i in the base set", 1, 28, 'i', 0, 0, 0},
      {"dotless i", OT_CS_UNICODE, 28, 0x131, 'I', 0, 0},
      {"Cyrillic in KOI8", 0x0b, 23, 0xc1, 0x410, 0, 0},
      {"Greek in CP932", 0xe1, 1, 0x83bf, 0x391, 0, 0},
      {"no case", OT_CS_UNICODE, 1, '1', 0, 0, 0},
      {"orders", OT_CS_ORDER, 1, 'a', 0, 0, 0},
      {"surrogate", OT_CS_UNICODE, 1, 0xd800, 0, 0, 0},
  };
  for (const auto& row : rows) {
    const OtUnicodeProps* props = Set(row.set).GetUnicodeProps(row.value, row.language);
    EXPECT_EQ(props != nullptr, (row.upper | row.lower) != 0) << row.name;
    if (props == nullptr) continue;
    EXPECT_EQ(props->upper, row.upper) << row.name;
    EXPECT_EQ(props->lower, row.lower) << row.name;
    unsigned short tail = 0;
    EXPECT_EQ(props->upperTail.GetAt(0, &tail) == 0, row.tail != 0) << row.name;
    EXPECT_EQ(tail, row.tail) << row.name;
  }
}

TEST(CaseData, OtherCaseAlwaysFitsTheSet) {
  for (unsigned n = 1; n < OT_CS_UNICODE; ++n) {
    const OtCodeSet& set = Set(n);
    if (set.number != n) continue;
    for (const unsigned char language : {OT_LANG_NEUTRAL, kTurkish}) {
      for (unsigned value = 0; value < (n <= OT_CS_LAST_NARROW ? 0x100 : 0x10000); ++value) {
        const auto unit = static_cast<unsigned short>(value);
        const OtUnicodeProps* props = set.GetUnicodeProps(unit, language);
        if (props == nullptr) continue;
        ASSERT_LE(props->upperTail.count, 1);
        for (const unsigned short other : {props->upper, props->lower}) {
          ASSERT_TRUE(other == 0 || set.MapChar(other, OT_CS_UNICODE) != set.substitute)
              << set.name << ' ' << value;
        }
      }
    }
  }
}

// Defaults.

class Defaults : public testing::Test {
 protected:
  void TearDown() override { ___OtI18NContext(0); }
};

// Read while the statics of this file are made.
const unsigned short kEarlyCmpOp = OtLanguageContext::GetDefaultCmpOp();
const unsigned short kEarlyOrder =
    OtLanguageContext::QueryCodeSet(OT_CS_BASE8)->orderTable->Lookup('A')->order();

TEST_F(Defaults, AreConstants) {
  EXPECT_EQ(kEarlyCmpOp, 0x10);
  EXPECT_EQ(kEarlyOrder, 0x400c);
  EXPECT_EQ(OtLanguageContext::GetDefaultCodeSet(), OT_CS_BASE8);
  EXPECT_EQ(OtLanguageContext::GetNativeCodeSet(), OT_CS_BASE8);
  EXPECT_EQ(OtLanguageContext::GetDefault8CodeSet(), OT_CS_BASE8);
  EXPECT_EQ(OtLanguageContext::GetDefault16CodeSet(), OT_CS_UNICODE);
  EXPECT_EQ(OtLanguageContext::GetDefaultLanguage(), OT_LANG_NEUTRAL);
}

TEST_F(Defaults, FollowTheSetters) {
  EXPECT_EQ(OtLanguageContext::SetDefaultCodeSet(0xe1), 0);
  EXPECT_EQ(OtLanguageContext::GetDefault8CodeSet(), OT_CS_BASE8);
  EXPECT_EQ(OtLanguageContext::GetDefault16CodeSet(), 0xe1);
  EXPECT_EQ(OtLanguageContext::SetDefaultCodeSet(5), 0);
  EXPECT_EQ(OtLanguageContext::GetDefault8CodeSet(), 5);
  EXPECT_EQ(OtLanguageContext::GetDefault16CodeSet(), OT_CS_UNICODE);
  EXPECT_EQ(OtLanguageContext::SetDefaultCodeSet(OT_CS_ORDER), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtLanguageContext::SetDefaultCodeSet(OT_CS_DEFAULT), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtLanguageContext::GetDefaultCodeSet(), 5);
  EXPECT_EQ(OtLanguageContext::SetDefaultLanguage(9), 0);
  EXPECT_EQ(OtLanguageContext::SetDefaultLanguage(OT_LANG_NULL), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtLanguageContext::GetDefaultLanguage(), 9);
  EXPECT_EQ(OtLanguageContext::SetDefaultCmpOp(0), 0);
  EXPECT_EQ(OtLanguageContext::SetDefaultCmpOp(0xffff), OT_ERR_BAD_ARGUMENT);
  EXPECT_EQ(OtLanguageContext::GetDefaultCmpOp(), 0);
}

TEST_F(Defaults, TakeWhatALocaleSays) {
  const struct {
    const char* locale;
    int taken;
    unsigned char language, codeSet;
  } rows[] = {
      {"de_DE.ISO-8859-1", 2, 3, 2},
      {"sv_SE.UTF-8", 1, 9, 1},
      {"zh_TW.Big5", 2, 66, 0xe3},
      {"fr@euro", 1, 4, 1},
      {"C", 0, 1, 1},
      {"", 0, 1, 1},
      {"ru_RU.KOI8-R@x", 2, 23, 0x0b},
      {".cp1250", 1, 1, 6},
      {"xx_YY.nothing", 0, 1, 1},
  };
  for (const auto& row : rows) {
    ___OtI18NContext(0);
    EXPECT_EQ(OtLanguageContext::UseLocale(row.locale), row.taken) << row.locale;
    EXPECT_EQ(OtLanguageContext::GetDefaultLanguage(), row.language) << row.locale;
    EXPECT_EQ(OtLanguageContext::GetDefaultCodeSet(), row.codeSet) << row.locale;
  }
  EXPECT_EQ(OtLanguageContext::UseLocale(nullptr), 0);
}

}  // namespace
