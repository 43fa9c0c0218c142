#include "texts.h"

#include <utf8.h>

#include <charconv>
#include <iterator>
#include <vector>

#include "answer.h"
#include "ot95/typemgr.h"

namespace ottm {
namespace {

constexpr std::size_t kMostUnits = 32765;  // in the 65,532 bytes of a string, with a terminator

std::u16string ToUnits(std::string_view utf8) {
  std::u16string units;
  try {
    utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(units));
  } catch (const utf8::exception&) {
    throw BadInput("TEXT: expected UTF-8");
  }
  if (units.size() > kMostUnits) throw BadInput("TEXT: expected at most 32765 characters");
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

void TextOptions::Declare(CLI::App& app, const std::string& suffix) {
  app.add_option("--code-set" + suffix, codeSet, "Code set of the text, 0 to 253 (253: Unicode)")
      ->check(CLI::Range(0, 253))
      ->capture_default_str();
  app.add_option("--language" + suffix, language, "Language: a number or an ISO 639-1 code")
      ->capture_default_str();
}

unsigned char TextOptions::LanguageNumber() const {
  unsigned number = 0;
  const char* end = language.data() + language.size();
  const auto [rest, error] = std::from_chars(language.data(), end, number);
  if (error == std::errc() && rest == end && number < 254) {
    return static_cast<unsigned char>(number);
  }
  const unsigned char tagged = OtLanguageContext::LanguageOfTag(language.c_str());
  if (tagged == 0) {
    throw BadInput("--language: expected 0 to 253 or an ISO 639-1 code, found '" + language + "'");
  }
  return tagged;
}

OtString TextOptions::Text(std::string_view utf8) const {
  const std::u16string units = ToUnits(utf8);
  std::vector<unsigned short> terminated(units.begin(), units.end());
  terminated.push_back(0);
  OtString text(OT_CS_UNICODE, LanguageNumber());
  text = terminated.data();
  text.SetLanguageCode(LanguageNumber());
  if (codeSet == 0) {
    text.SetCodeSet(0);
  } else {
    text.MapToCodeSet(static_cast<unsigned char>(codeSet));
  }
  return text;
}

OtString TextOptions::Value(const std::string& utf8) const {
  if (utf8 == ToUtf8(OtTypeMgr::GetNullPrintString())) {
    OtString null;
    null.SetNullValue();
    return null;
  }
  return Text(utf8);
}

std::string ToUtf8(const OtString& text) {
  OtString wide(text);
  if (wide.GetCodeSetCode() == 0) {
    wide.SetCodeSet(OT_CS_UNICODE);
  } else {
    wide.MapToCodeSet(OT_CS_UNICODE);
  }
  std::u16string units(wide.Len(), u'\0');
  std::memcpy(units.data(), wide.StrGet(), units.size() * 2);
  ReplaceUnpaired(units);
  std::string utf8;
  utf8::utf16to8(units.begin(), units.end(), std::back_inserter(utf8));
  return utf8;
}

}  // namespace ottm
