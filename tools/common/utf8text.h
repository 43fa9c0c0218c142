#ifndef OT95_TOOLS_UTF8TEXT_H
#define OT95_TOOLS_UTF8TEXT_H

#include <string>
#include <string_view>

#include "ot95/text.h"

namespace ot95::tools {

/// A text of a code set and a language. Throws BadInput for what isn't UTF-8 or too long.
OtString FromUtf8(std::string_view utf8, unsigned char codeSet, unsigned char language);
/// The text in UTF-8; unpaired surrogates become U+FFFD.
std::string ToUtf8(const OtString& text);

/// A language by its number or its ISO 639-1 code. Throws BadInput that names `argument`.
unsigned char LanguageNumber(const std::string& language, const char* argument);

}  // namespace ot95::tools

#endif
