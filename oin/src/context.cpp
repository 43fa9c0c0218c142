// The way to the records, and the process-wide defaults_.

#include <string_view>

#include "data.h"

namespace {

constexpr unsigned short kAskForDefault = 0xffff;
constexpr unsigned kNoRules = 0xffff;

int SetNumber(unsigned char& member, unsigned char number) {
  if (number >= 0xfe) return OT_ERR_BAD_ARGUMENT;
  member = number;
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
  if (record == nullptr || ot95::kRulePlaces[language] == kNoRules) return "";
  return ot95::kRules + ot95::kRulePlaces[language];
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
  return tag == nullptr ? 0 : ot95::NumberOfTag(tag);
}

unsigned char OtLanguageContext::CodeSetOfName(const char* name) {
  return name == nullptr ? 0 : ot95::NumberOfName(name);
}

int OtLanguageContext::UseLocale(const char* locale) {
  if (locale == nullptr) return 0;
  const std::string_view text(locale);
  const unsigned char language = ot95::NumberOfTag(text.substr(0, text.find_first_of(".@")));
  unsigned char codeSet = 0;
  if (const std::size_t dot = text.find('.'); dot != std::string_view::npos) {
    codeSet = ot95::NumberOfName(text.substr(dot + 1, text.find('@', dot) - dot - 1));
  }
  if (language != 0) defaults_.language = language;
  if (codeSet != 0) defaults_.codeSet = codeSet;
  return (language != 0) + (codeSet != 0);
}

void ___OtI18NContext(int attach) {
  if (attach == 0) OtLanguageContext::defaults_ = {};
}
