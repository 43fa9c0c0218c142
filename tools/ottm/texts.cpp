// Texts on the command line.
#include "texts.h"

#include "answer.h"
#include "ot95/typemgr.h"

namespace ottm {

void TextOptions::Declare(CLI::App& app, const std::string& suffix) {
  app.add_option("--code-set" + suffix, codeSet, "Code set of the text, 0 to 253 (253: Unicode)")
      ->check(CLI::Range(0, 253))
      ->capture_default_str();
  app.add_option("--language" + suffix, language, "Language: a number or an ISO 639-1 code")
      ->capture_default_str();
}

unsigned char TextOptions::LanguageNumber() const {
  return ot95::tools::LanguageNumber(language, "--language");
}

OtString TextOptions::Text(std::string_view utf8) const {
  return ot95::tools::FromUtf8(utf8, CodeSet(), LanguageNumber());
}

OtString TextOptions::Value(const std::string& utf8) const {
  if (utf8 == ToUtf8(OtTypeMgr::GetNullPrintString())) {
    OtString null;
    null.SetNullValue();
    return null;
  }
  return Text(utf8);
}

}  // namespace ottm
