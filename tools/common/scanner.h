#ifndef OT95_TOOLS_SCANNER_H
#define OT95_TOOLS_SCANNER_H

#include <optional>
#include <string>

#include "ot95/scanner.h"

namespace ot95::tools {

/// Reads texts into elements of one type, strictly, and says what it expected where it can't.
class Scanner {
 public:
  /// @param format of the texts, see OtStrictScanner.
  /// @param isLenient takes whatever the row makes of a text that is refused else.
  Scanner(OtTypeMgr& manager, char type, std::optional<std::string> format, bool isLenient = false);

  /// Throws BadInput that says what was expected.
  /// @param element a constructed value of the type.
  void Scan(void* element, const std::string& utf8, unsigned char codeSet, unsigned char language);

  /// Whether a type's values are texts, which print whole only by conversion.
  static bool IsText(OtTypeMgr& manager, char type);

 private:
  const char* Format() const { return format_ ? format_->c_str() : nullptr; }
  std::string Expected(void* element);
  std::string WholeRange(void* element);
  std::string FurthestTaken(void* element, const std::string& prefix, bool isLowest);

  OtTypeMgr& manager_;
  char type_;
  std::optional<std::string> format_;
  bool isLenient_;
  OtStrictScanner strict_;
};

}  // namespace ot95::tools

#endif
