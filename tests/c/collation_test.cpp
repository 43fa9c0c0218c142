// Texts in UTF-8 under a collation, against the same texts as strings: the ways between the two
// take short cuts of their own.
#include <gtest/gtest.h>

#include <memory>

#include "arrays.h"
#include "sortkeys.h"
#include "text/mixedtexts.h"

namespace {

constexpr char kStrings = 11;
constexpr unsigned kOptions[] = {0,
                                 OT95_IGNORE_CASE,
                                 OT95_IGNORE_ACCENT,
                                 OT95_IGNORE_CASE | OT95_IGNORE_ACCENT,
                                 OT95_IGNORE_SPACE | OT95_IGNORE_SYMBOLS,
                                 OT95_ORDER_ONLY};

/// A text in both forms. Halves of pairs, which UTF-8 can't hold, are replaced.
struct Both {
  std::string utf8;
  OtString units;

  Both(std::u16string text, unsigned char language) : units(OT_CS_UNICODE, language) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const auto isHalf = [&](std::size_t at, char16_t first) {
        return at < text.size() && (text[at] & 0xfc00) == first;
      };
      if (isHalf(i, 0xd800) && isHalf(i + 1, 0xdc00)) {
        Put(0x10000u + ((text[i] & 0x3ffu) << 10) + (text[i + 1] & 0x3ffu));
        ++i;
      } else {
        if ((text[i] & 0xf800) == 0xd800) text[i] = 0xfffd;
        Put(text[i]);
      }
    }
    const std::vector<unsigned short> terminated(text.c_str(), text.c_str() + text.size() + 1);
    units = terminated.data();
    units.SetLanguageCode(language);
  }

 private:
  void Put(std::uint32_t character) {
    const int following = character < 0x80      ? 0
                          : character < 0x800   ? 1
                          : character < 0x10000 ? 2
                                                : 3;
    constexpr unsigned kLeads[] = {0, 0xc0, 0xe0, 0xf0};
    utf8 += static_cast<char>(kLeads[following] | character >> 6 * following);
    for (int left = following; left-- > 0;) {
      utf8 += static_cast<char>(0x80 | (character >> 6 * left & 0x3f));
    }
  }
};

/// A collation, and what the classes say under it.
class Pair {
 public:
  Pair(unsigned char language, unsigned options)
      : language_(language), op_(static_cast<unsigned short>(options | OT_CMP_NO_WILDCARDS)) {
    ot95_collation_open(OtLanguageContext::QueryLanguage(language)->tag, options, &collation_);
  }
  ~Pair() { ot95_free(collation_); }
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;

  void Check(const Both& a, const Both& b) const {
    int sign = 7;
    EXPECT_EQ(ot95_collation_compare(collation_, a.utf8.data(), a.utf8.size(), b.utf8.data(),
                                     b.utf8.size(), &sign),
              OT95_OK);
    EXPECT_EQ(sign, Sign(a.units.Compare(b.units, op_)));
    if ((op_ & OT_CMP_ORDER_ONLY) == 0) {
      int matches = 7;
      const auto wildcards = static_cast<unsigned short>(op_ & ~OT_CMP_NO_WILDCARDS);
      ot95_collation_match(collation_, a.utf8.data(), a.utf8.size(), b.utf8.data(), b.utf8.size(),
                           &matches);
      EXPECT_EQ(matches, a.units.Compare(b.units, wildcards) == 0);
    }
    CheckAlone(a);
  }

 private:
  static std::string Utf8Of(const OtString& text) {
    return Both(std::u16string(reinterpret_cast<const char16_t*>(text.StrGet()), text.Len()), 1)
        .utf8;
  }
  void CheckAlone(const Both& a) const {
    const auto give = [&](auto function) {
      return Give([&](ot95_buffer* out) {
               return function(collation_, a.utf8.data(), a.utf8.size(), out);
             })
          .bytes;
    };
    const KeyValue value{kStrings, &a.units, 0, 1, OT_FORMAT_MEMORY};
    const Key key = KeyOf(types_, value, op_);
    EXPECT_EQ(give(ot95_collation_key), std::string(key.bytes.begin(), key.bytes.end()));
    uint64_t hash = 0;
    int status = 0;
    ot95_collation_hash(collation_, a.utf8.data(), a.utf8.size(), 9, &hash);
    EXPECT_EQ(hash, types_.Hash64(kStrings, &a.units, 0, op_, 1, OT_FORMAT_MEMORY, 9, status));
    OtString upper(a.units), lower(a.units);
    EXPECT_EQ(give(ot95_collation_upper), Utf8Of(upper.ToUpper()));
    EXPECT_EQ(give(ot95_collation_lower), Utf8Of(lower.ToLower()));
  }

  OtTypeMgr types_;
  unsigned char language_;
  unsigned short op_;
  ot95_collation* collation_ = nullptr;
};

TEST(Collation, AnswersAsTheClasses) {
  std::vector<std::unique_ptr<Pair>> pairs;
  std::vector<unsigned char> languages;
  for (unsigned number = 1; number < 0x80; ++number) {
    const OtLanguage* language =
        OtLanguageContext::QueryLanguage(static_cast<unsigned char>(number));
    if (language == nullptr || language->number != number) continue;
    for (const unsigned options : kOptions) {
      languages.push_back(language->number);
      pairs.push_back(std::make_unique<Pair>(language->number, options));
    }
  }
  MixedTexts texts;
  for (long i = CasesOf(40000); i != 0 && !testing::Test::HasFailure(); --i) {
    const std::size_t chosen = texts.Number() % pairs.size();
    const std::u16string a = texts.Text(14);
    const std::u16string b = i % 4 == 0   ? texts.Text(14)
                             : i % 4 == 1 ? texts.Recased(a)
                             : i % 4 == 2 ? texts.Pattern(a)
                                          : texts.Like(texts.Recased(a));
    SCOPED_TRACE(Both(a, 1).utf8 + " and " + Both(b, 1).utf8 + " in language " +
                 std::to_string(languages[chosen]) + ", case " + std::to_string(i));
    pairs[chosen]->Check(Both(a, languages[chosen]), Both(b, languages[chosen]));
  }
}

TEST(Collation, RefusesWhatIsNotUtf8WhereItMatters) {
  ot95_collation* collation = nullptr;
  ot95_collation_open("sv", 0, &collation);
  const std::string bad[] = {"\x80",
                             "\xc3",
                             "\xc0\x80",
                             "\xe0\x80\x80",
                             "\xed\xa0\x80",
                             "\xf4\x90\x80\x80",
                             std::string(1, '\0'),
                             "\xff"};
  for (const std::string& text : bad) {
    for (const std::string start : {"", "abc", "\xc3\xa9"}) {
      const std::string a = start + text, b = start + "x";
      int sign = 7;
      // At the place that decides it is seen from either side.
      EXPECT_EQ(ot95_collation_compare(collation, a.data(), a.size(), b.data(), b.size(), &sign),
                OT95_ERR_TEXT)
          << Hex(a.data(), a.size());
      EXPECT_EQ(ot95_collation_compare(collation, b.data(), b.size(), a.data(), a.size(), &sign),
                OT95_ERR_TEXT);
      EXPECT_EQ(sign, 7);
      EXPECT_EQ(Give([&](ot95_buffer* out) {
                  return ot95_collation_key(collation, a.data(), a.size(), out);
                }).status,
                OT95_ERR_TEXT);
    }
  }
  ot95_free(collation);
}

}  // namespace
