#ifndef OTTM_TEXTS_H
#define OTTM_TEXTS_H

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

#include "ot95/text.h"
#include "utf8text.h"

namespace ottm {

/// Code set and language of the texts on the command line.
struct TextOptions {
  unsigned codeSet = OT_CS_UNICODE;
  std::string language = "1";

  /// @param suffix tells a second pair of options apart from the first.
  void Declare(CLI::App& app, const std::string& suffix = "");
  unsigned char CodeSet() const { return static_cast<unsigned char>(codeSet); }
  unsigned char LanguageNumber() const;
  /// The value of an argument; "{NULL}" is the null text. Throws BadInput.
  OtString Value(const std::string& utf8) const;
  /// The same without a null: any text stands for itself.
  OtString Text(std::string_view utf8) const;
};

using ot95::tools::ToUtf8;

}  // namespace ottm

#endif
