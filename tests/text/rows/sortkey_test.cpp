// Sort keys of texts: their bytes, and that these say what comparison says.

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "ot95/oin.h"
#include "sortkeys.h"
#include "text/mixedtexts.h"
#include "text/texts.h"

namespace {

constexpr char kStringId = 11;
constexpr unsigned short kPlain = OT_CMP_NO_WILDCARDS;
constexpr unsigned char kKeyForm = 0x80;

constexpr std::array<unsigned short, 10> kOptions = {
    0,
    0,
    OT_CMP_IGNORE_CASE,
    OT_CMP_IGNORE_ACCENT,
    OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT,
    OT_CMP_IGNORE_SPACE,
    OT_CMP_IGNORE_SYMBOLS,
    OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS,
    OT_CMP_IGNORE_CASE | OT_CMP_IGNORE_ACCENT | OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS,
    OT_CMP_ORDER_ONLY};

/// Characters that take their script from what stands before, that don't count, and such.
constexpr char16_t kOdd[] = u"\u00ad\ufff0\uffff\u2460\u200d\u0e32\u0e40";

/// Random texts in one code set, row and form, any languages.
class Texts {
 public:
  explicit Texts(unsigned seed) : random_(seed) {
    for (unsigned number = 1; number < 0x80; ++number) {
      const auto language = static_cast<unsigned char>(number);
      if (OtLanguageContext::QueryLanguage(language) != nullptr) languages_.push_back(language);
    }
    for (unsigned number = 1; number <= OT_CS_UNICODE; ++number) {
      const auto codeSet = static_cast<unsigned char>(number);
      if (OtLanguageContext::QueryCodeSet(codeSet)->number == number) codeSets_.push_back(codeSet);
    }
  }

  unsigned Number(std::size_t below) { return static_cast<unsigned>(random_() % below); }
  template <class Choices>
  auto OneOf(const Choices& choices) {
    return choices[Number(choices.size())];
  }

  OtString Random() { return Make(Units(), Number(5) == 0 ? OneOf(languages_) : language_); }
  /// Mostly like another.
  OtString Like(const OtString& other) {
    if (Number(4) == 0) return Random();
    std::u16string units = mixed_.Recased(mixed_.Like(UnitsOf(other)));
    if (Number(3) == 0) units += Units();
    return Make(units, Number(5) == 0 ? OneOf(languages_) : other.GetLanguageCode());
  }
  /// Letters of one alphabet in either case, with symbols here and there.
  OtString Name() {
    static const std::u16string alphabets[] = {u"aeinrstBGMS\u00e9\u00c9\u00f6\u00e7\u0161",
                                               u"\u0430\u0435\u0438\u043d\u0420\u0421\u0451",
                                               u"\u03b1\u03b5\u03b9\u03bd\u0391\u03a1\u03ac"};
    const std::u16string& alphabet = alphabets[Number(std::size(alphabets))];
    std::u16string units;
    for (unsigned n = Number(Number(10) == 0 ? 90 : 20); n != 0; --n) {
      units += Number(6) == 0 ? u"  -,.'1"[Number(7)] : OneOf(alphabet);
    }
    codeSet_ = OT_CS_UNICODE;
    return Make(units, language_);
  }
  OtString Pattern(const OtString& other) {
    return Make(mixed_.Pattern(UnitsOf(other)), other.GetLanguageCode());
  }

  /// Chooses what all texts are of until the next call.
  void Choose() {
    constexpr std::array<unsigned char, 6> often = {
        OT_CS_UNICODE, OT_CS_UNICODE, OT_CS_UNICODE, OT_CS_BASE8, 0, 2};
    codeSet_ = Number(3) == 0 ? OneOf(codeSets_) : OneOf(often);
    language_ = OneOf(languages_);
    few_ = Number(2) == 0;
  }

 private:
  std::u16string Units() {
    if (few_) return mixed_.Text(Number(50) == 0 ? 600 : 8);
    std::u16string units;
    for (unsigned n = Number(50) == 0 ? 400 : Number(10); n != 0; --n) {
      const unsigned kind = Number(8);
      units += static_cast<char16_t>(kind == 0   ? 1 + Number(0xffff)
                                     : kind == 1 ? 0x300 + Number(0x70)
                                     : kind == 2 ? 0x20 + Number(0x20)
                                     : kind == 3 ? 0x370 + Number(0x290)
                                     : kind == 4 ? kOdd[Number(std::size(kOdd) - 1)]
                                                 : 'a' + Number(4));
    }
    return units;
  }
  OtString Make(std::u16string units, unsigned char language) {
    if (codeSet_ <= OT_CS_LAST_NARROW) {
      for (char16_t& unit : units)
        unit = static_cast<char16_t>((unit & 0xff) != 0 ? unit & 0xff : 7);
    }
    OtString text(codeSet_, language);
    OtString source = codeSet_ > OT_CS_LAST_NARROW
                          ? OtString(reinterpret_cast<const unsigned short*>(units.c_str()))
                          : OtString(std::string(units.begin(), units.end()).c_str());
    source.SetCodeSetCode(codeSet_);
    text += source;
    text.SetLanguageCode(language);
    if (Number(60) == 0) text.SetNullValue();
    return text;
  }

  std::mt19937 random_;
  MixedTexts mixed_;
  std::vector<unsigned char> languages_;
  std::vector<unsigned char> codeSets_;
  unsigned char codeSet_ = OT_CS_UNICODE;
  unsigned char language_ = 1;
  bool few_ = true;
};

/// A text in one of its forms.
class Form {
 public:
  Form(OtTypeMgr& types, OtString& text, unsigned char format)
      : block_(Bytes(types, text, format)),
        value{kStringId, format == OT_FORMAT_MEMORY ? static_cast<void*>(&text) : block_.data(),
              format == OT_FORMAT_MEMORY ? 0 : block_.size(), 1, format} {}

 private:
  static std::vector<unsigned char> Bytes(OtTypeMgr& types, OtString& text, unsigned char format) {
    if (format == OT_FORMAT_MEMORY) return {};
    std::vector<unsigned char> bytes(
        types.DiskLenGet(kStringId, &text, format, 1, OT_FORMAT_MEMORY));
    bytes.resize(types.Translate(kStringId, bytes.data(), format, bytes.size(), &text,
                                 OT_FORMAT_MEMORY, sizeof text, 1));
    return bytes;
  }

  ExactBlock block_;

 public:
  KeyValue value;
};

std::string Shown(const OtString& text) {
  std::string shown = "set " + std::to_string(text.GetCodeSetCode()) + " language " +
                      std::to_string(text.GetLanguageCode()) + ":";
  for (const char16_t unit : UnitsOf(text)) {
    const unsigned char bytes[2] = {static_cast<unsigned char>(unit >> 8),
                                    static_cast<unsigned char>(unit)};
    shown += " " + Hex(bytes, 2);
  }
  return shown;
}

constexpr std::array<unsigned char, 5> kForms = {OT_FORMAT_MEMORY, OT_FORMAT_NATIVE,
                                                 OT_FORMAT_BIG_ENDIAN, OT_FORMAT_NATIVE | kKeyForm,
                                                 OT_FORMAT_BIG_ENDIAN | kKeyForm};

TEST(TextSortKey, OrdersAsComparisonDoes) {
  OtTypeMgr types;
  Texts texts(20240301);
  long equal = 0;
  for (long i = CasesOf(60000); i > 0; --i) {
    texts.Choose();
    OtString text1 = texts.Random();
    OtString text2 = texts.Like(text1);
    const auto cmpOp = static_cast<unsigned short>(kPlain | texts.OneOf(kOptions));
    const unsigned char format = texts.OneOf(kForms);
    const Form form1(types, text1, format), form2(types, text2, format);
    const Key key1 = KeyOf(types, form1.value, cmpOp), key2 = KeyOf(types, form2.value, cmpOp);
    int status = 0;
    const long result = Compare(types, form1.value, form2.value, cmpOp, status);
    SCOPED_TRACE(testing::Message()
                 << "op " << cmpOp << " form " << int{format} << ", " << Shown(text1) << ", "
                 << Shown(text2) << ": " << key1.Hex() << " " << key2.Hex());
    if (key1.status != 0 || key2.status != 0) {  // keys that lost their end
      ASSERT_TRUE((format & kKeyForm) != 0 && status == OT_ERR_END_OF_DATA);
      continue;
    }
    ASSERT_EQ(Sign(result), key1.Against(key2));
    const auto seed = static_cast<std::uint64_t>(i);
    const auto hash = [&](const KeyValue& of) {
      return types.Hash64(of.id, of.value, of.length, cmpOp, 1, format, seed, status);
    };
    ASSERT_EQ(hash(form1.value) == hash(form2.value), result == 0);
    equal += result == 0;
    const unsigned long room = texts.Number(key1.length + 2);
    const Key cut1 = KeyOf(types, form1.value, cmpOp, room);
    const Key cut2 = KeyOf(types, form2.value, cmpOp, room);
    ASSERT_EQ(cut1.length, key1.length);
    ASSERT_EQ(cut1.status, room < key1.length ? OT_ERR_END_OF_DATA : 0);
    ASSERT_TRUE(cut1.Against(cut2) == 0 || cut1.Against(cut2) == key1.Against(key2));
  }
  EXPECT_GT(equal, 100);
}

// Whatever way a form takes through the text.
TEST(TextSortKey, FormsHaveTheSameKey) {
  OtTypeMgr types;
  Texts texts(20240304);
  for (long i = CasesOf(30000); i > 0; --i) {
    texts.Choose();
    OtString text = texts.Number(2) == 0 ? texts.Name() : texts.Random();
    const auto cmpOp = static_cast<unsigned short>(kPlain | texts.OneOf(kOptions));
    const Key key = KeyOf(types, Form(types, text, OT_FORMAT_MEMORY).value, cmpOp);
    for (const unsigned char format : {kForms[1], kForms[2]}) {
      ASSERT_EQ(key.Hex(), KeyOf(types, Form(types, text, format).value, cmpOp).Hex())
          << "op " << cmpOp << " form " << int{format} << ", " << Shown(text);
    }
  }
}

TEST(TextSortKey, EveryMatchLiesInItsRange) {
  OtTypeMgr types;
  Texts texts(20240302);
  long matches = 0, outside = 0, inside = 0;
  for (long i = CasesOf(60000); i > 0; --i) {
    texts.Choose();
    OtString text = texts.Random();
    OtString operand = texts.Number(2) == 0 ? texts.Pattern(text) : texts.Like(text);
    const unsigned plain = texts.Number(3) == 0 ? kPlain : 0U;
    const auto cmpOp = static_cast<unsigned short>(plain | texts.OneOf(kOptions));
    const auto keyOp = static_cast<unsigned short>(
        kPlain | (texts.Number(2) == 0 ? cmpOp : texts.OneOf(kOptions)));
    const unsigned relation = 1 + texts.Number(7);
    const unsigned char format = kForms[texts.Number(3)];
    const Form form(types, text, format), operandForm(types, operand, format);
    const unsigned long room = texts.Number(3) == 0 ? 1 + texts.Number(12) : kMostKeyBytes;
    const Key key = KeyOf(types, form.value, keyOp, room);
    const Range range = RangeOf(types, operandForm.value, relation | cmpOp, keyOp, room);
    int status = 0;
    const int sign = Sign(Compare(types, form.value, operandForm.value, cmpOp, status));
    SCOPED_TRACE(testing::Message()
                 << "op " << cmpOp << " keys " << keyOp << " relation " << relation << " form "
                 << int{format} << " room " << room << ", " << Shown(text) << ", " << Shown(operand)
                 << ": " << key.Hex() << " in " << range.Text());
    ASSERT_EQ(range.status, 0);
    if (!IsIn(sign, relation)) {
      (range.Holds(key) ? inside : outside) += 1;
      continue;
    }
    ++matches;
    ASSERT_TRUE(range.Holds(key));
  }
  EXPECT_GT(matches, 1000);
  EXPECT_GT(outside, inside) << "a range that holds all helps nobody";
}

}  // namespace
