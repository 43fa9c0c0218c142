#ifndef OT95_TOOLS_SCANNER_H
#define OT95_TOOLS_SCANNER_H

#include <memory>
#include <optional>
#include <string>

#include "ot95/text.h"
#include "ot95/typemgr.h"

namespace ot95::tools {

/// Reads texts into elements of one type. A row's own scan takes what it finds: it wraps a number
/// that is too large, cuts a text that is too long, makes up a date where it finds none, and says
/// nothing. Here a text is taken only if the value means what the text says.
class Scanner {
 public:
  /// @param format of the texts. Without one they have the row's; dates and times also that of
  /// ISO 8601: 2000-12-31, 23:59:58, 2000-12-31T23:59:58 (a blank stands for T as well).
  /// @param isLenient takes whatever the row makes of a text that is refused else.
  Scanner(OtTypeMgr& manager, char type, std::optional<std::string> format, bool isLenient = false);
  ~Scanner();
  Scanner(const Scanner&) = delete;
  Scanner& operator=(const Scanner&) = delete;

  /// Throws BadInput that says what was expected.
  /// @param element a constructed value of the type.
  void Scan(void* element, const std::string& utf8, unsigned char codeSet, unsigned char language);

  /// Whether a type's values are texts, which print whole only by conversion.
  static bool IsText(OtTypeMgr& manager, char type);

 private:
  struct Source {
    const std::string& utf8;
    OtString text;
  };
  struct IsoForm {
    std::string text;
    const char* format;
  };

  const char* Format() const { return format_ ? format_->c_str() : nullptr; }
  std::string Name() const { return manager_.NameGet(type_, nullptr); }
  bool IsText() const { return IsText(manager_, type_); }
  static bool IsNullText(const std::string& utf8);
  bool IsNull(void* element) const;
  std::string Print(void* element, const char* format) const;
  void StartFrom(void* element, int start);
  std::string Stored(void* element) const;

  bool Takes(void* element, const Source& source);
  bool TakesAsFixed(void* element, const Source& source, const char* format);
  bool TakesAsText(void* element, const Source& source);
  bool TakesAsBlob(void* element, const Source& source);
  bool Means(void* element, const std::string& utf8, const char* format) const;
  bool MeansCharacter(void* element, const std::string& utf8) const;
  bool MeansNumber(void* element, const std::string& utf8) const;
  std::optional<IsoForm> AsIso(const std::string& utf8) const;

  std::string Expected(void* element);
  std::string WholeRange(void* element);
  std::string FurthestTaken(void* element, const std::string& prefix, bool isLowest);

  OtTypeMgr& manager_;
  char type_;
  std::optional<std::string> format_;
  bool isLenient_;
  const char* rowFormat_;
  void* starts_[2] = {};  ///< What a scan starts from; a type without them has none.
};

}  // namespace ot95::tools

#endif
