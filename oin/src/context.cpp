// The way to the records, and the process-wide defaults_.

#include <string>
#include <string_view>

#include "data.h"

namespace {

constexpr unsigned short kAskForDefault = 0xffff;
constexpr unsigned kLanguagePlaces = 128;
constexpr unsigned kNoRules = 0xffff;

int SetNumber(unsigned char& member, unsigned char number) {
  if (number >= 0xfe) return OT_ERR_BAD_ARGUMENT;
  member = number;
  return 0;
}

// Small ASCII letters, whatever the locale of the C library.
char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool SameTag(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

// Tags in use beside those of the languages themselves.
constexpr struct {
  std::string_view tag;
  unsigned char number;
} kOtherTags[] = {{"no", 11},    {"nn", 11},    {"zh", 65},    {"zh_CN", 65},
                  {"zh_SG", 65}, {"zh_TW", 66}, {"zh_HK", 66}, {"zh_MO", 66}};

unsigned char NumberOfTag(std::string_view tag) {
  for (unsigned number = 1; number < kLanguagePlaces; ++number) {
    const OtLanguage& language = ot95::kOrderTables.languages[number];
    if (language.number != 0 && SameTag(tag, language.tag)) return language.number;
  }
  for (const auto& other : kOtherTags) {
    if (SameTag(tag, other.tag)) return other.number;
  }
  return 0;
}

// A name without case, punctuation and maker's prefix: "cp1252" and "Windows-1252" are one.
std::string Reduced(std::string_view name) {
  std::string text;
  for (const char c : name) {
    const char small = Lower(c);
    if ((small >= 'a' && small <= 'z') || (small >= '0' && small <= '9')) text += small;
  }
  for (const std::string_view prefix : {"windows", "ebcdic", "cp"}) {
    if (text.size() > prefix.size() && text.compare(0, prefix.size(), prefix) == 0) {
      return text.substr(prefix.size());
    }
  }
  return text;
}

unsigned char NumberOfName(std::string_view name) {
  const std::string wanted = Reduced(name);
  if (wanted.empty()) return 0;
  for (unsigned number = 1; number < OT_CS_ORDER; ++number) {
    const OtCodeSet* set = ot95::FindCodeSet(static_cast<unsigned char>(number));
    if (set != nullptr && Reduced(set->name) == wanted) return set->number;
  }
  return 0;
}

}  // namespace

constinit OtLanguageContext::Defaults OtLanguageContext::defaults_;

const OtCodeSet* OtLanguageContext::QueryCodeSet(unsigned char codeSet) {
  if (const OtCodeSet* set = ot95::FindCodeSet(codeSet)) return set;
  return ot95::FindCodeSet(codeSet <= OT_CS_LAST_NARROW ? OT_CS_BASE8 : OT_CS_UNICODE);
}

std::uint64_t OtLanguageContext::OrderVersion(unsigned char language) {
  const OtLanguage* record =
      QueryLanguage(language == OT_LANG_DEFAULT ? GetDefaultLanguage() : language);
  return (record != nullptr ? record : QueryLanguage(OT_LANG_NEUTRAL))->orderVersion;
}

const char* OtLanguageContext::OrderRules(unsigned char language) {
  const OtLanguage* record = QueryLanguage(language);
  if (record == nullptr || ot95::kOrderTables.rulePlaces[language] == kNoRules) return "";
  return ot95::kOrderTables.rules + ot95::kOrderTables.rulePlaces[language];
}

int OtLanguageContext::SetDefaultCodeSet(unsigned char codeSet) {
  return SetNumber(defaults_.codeSet, codeSet);
}

int OtLanguageContext::SetDefaultLanguage(unsigned char language) {
  return SetNumber(defaults_.language, language);
}

int OtLanguageContext::SetDefaultCmpOp(unsigned short cmpOp) {
  if (cmpOp == kAskForDefault) return OT_ERR_BAD_ARGUMENT;
  defaults_.cmpOp = cmpOp;
  return 0;
}

unsigned char OtLanguageContext::LanguageOfTag(const char* tag) {
  return tag == nullptr ? 0 : NumberOfTag(tag);
}

unsigned char OtLanguageContext::CodeSetOfName(const char* name) {
  return name == nullptr ? 0 : NumberOfName(name);
}

int OtLanguageContext::UseLocale(const char* locale) {
  if (locale == nullptr) return 0;
  const std::string_view text(locale);
  const std::string_view place = text.substr(0, text.find_first_of(".@"));
  unsigned char language = NumberOfTag(place);
  if (language == 0) language = NumberOfTag(place.substr(0, place.find('_')));
  unsigned char codeSet = 0;
  if (const std::size_t dot = text.find('.'); dot != std::string_view::npos) {
    codeSet = NumberOfName(text.substr(dot + 1, text.find('@', dot) - dot - 1));
  }
  if (language != 0) defaults_.language = language;
  if (codeSet != 0) defaults_.codeSet = codeSet;
  return (language != 0) + (codeSet != 0);
}

void ___OtI18NContext(int attach) {
  if (attach == 0) OtLanguageContext::defaults_ = {};
}
