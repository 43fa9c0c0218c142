// UTF-8 outside, the library's texts inside.
#include "utf8text.h"

#include <utf8.h>

#include <charconv>
#include <cstring>
#include <iterator>
#include <vector>

#include "bad_input.h"
#include "message.h"

namespace ot95::tools {
namespace {

constexpr std::size_t kMostUnits = 32765;  // in the 65,532 bytes of a string, with a terminator

std::vector<unsigned short> ToUnits(std::string_view utf8) {
  std::vector<unsigned short> units;
  units.reserve(utf8.size() + 1);
  const auto bad = utf8::find_invalid(utf8.begin(), utf8.end());
  if (bad != utf8.end()) {
    throw BadInput("expected UTF-8, found " + Quoted({bad, bad + 1}) + " as character " +
                   std::to_string(utf8::distance(utf8.begin(), bad) + 1));
  }
  utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(units));
  if (units.size() > kMostUnits) throw BadInput("expected a text of at most 32765 characters");
  units.push_back(0);
  return units;
}

void ReplaceUnpaired(std::u16string& units) {
  const auto isHigh = [](char16_t u) { return u >= 0xd800 && u < 0xdc00; };
  const auto isLow = [](char16_t u) { return u >= 0xdc00 && u < 0xe000; };
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
      ++i;
    } else if (isHigh(units[i]) || isLow(units[i])) {
      units[i] = 0xfffd;
    }
  }
}

}  // namespace

OtString FromUtf8(std::string_view utf8, unsigned char codeSet, unsigned char language) {
  OtString text(OT_CS_UNICODE, language);
  text = ToUnits(utf8).data();
  text.SetLanguageCode(language);
  if (codeSet == 0) {
    text.SetCodeSet(0);
  } else if (codeSet != OT_CS_UNICODE) {
    text.MapToCodeSet(codeSet);
  }
  return text;
}

std::string ToUtf8(const OtString& text) {
  OtString wide(text);
  if (wide.GetCodeSetCode() == 0) {
    wide.SetCodeSet(OT_CS_UNICODE);
  } else {
    wide.MapToCodeSet(OT_CS_UNICODE);
  }
  std::u16string units(wide.Len(), u'\0');
  if (!units.empty()) std::memcpy(units.data(), wide.StrGet(), units.size() * 2);
  ReplaceUnpaired(units);
  std::string utf8;
  utf8::utf16to8(units.begin(), units.end(), std::back_inserter(utf8));
  return utf8;
}

unsigned char LanguageNumber(const std::string& language, const char* argument) {
  unsigned number = 0;
  const char* end = language.data() + language.size();
  const auto [rest, error] = std::from_chars(language.data(), end, number);
  if (error == std::errc() && rest == end && number < 254) {
    return static_cast<unsigned char>(number);
  }
  const unsigned char tagged = OtLanguageContext::LanguageOfTag(language.c_str());
  if (tagged == 0) {
    throw BadInput(std::string(argument) + ": expected 0 to 253 or an ISO 639-1 code, found " +
                   Quoted(language));
  }
  return tagged;
}

}  // namespace ot95::tools
