#ifndef OT95_SCANNER_H
#define OT95_SCANNER_H

/// @file
/// Texts into values, as long as the value says what the text did.
///
/// @code
///   OtTypeMgr types;
///   OtStrictScanner scanner(types, 1);  // short
///   short value = 7;
///   const bool fits = scanner.Scan(&value, OtString("300"), "300", 3);      // fits == true
///   const bool wraps = scanner.Scan(&value, OtString("99999"), "99999", 5);  // wraps == false
/// @endcode

#include <cstddef>

#include "ot95/text.h"
#include "ot95/typemgr.h"

/// Reads texts into elements of one type. A row's own scan takes what it finds: it wraps a number
/// that is too large, cuts a text that is too long, makes up a date where it finds none, and says
/// nothing. Here a text is taken only if the value means what the text says.
class OT95_EXPORT OtStrictScanner {
 public:
  /// @param manager has to outlive the scanner.
  /// @param type an identifier that the manager knows.
  /// @param format of the texts, copied. Null for the row's; dates and times then also have that of
  ///   ISO 8601: 2000-12-31, 23:59:58, 2000-12-31T23:59:58 (a blank stands for T as well), or the
  ///   same without hyphens and colons.
  OtStrictScanner(OtTypeMgr& manager, char type, const char* format = nullptr);
  ~OtStrictScanner();
  OtStrictScanner(const OtStrictScanner&) = delete;
  OtStrictScanner& operator=(const OtStrictScanner&) = delete;

  /// Scans a text. @return whether the element, a constructed value of the type, now means what the
  /// text says; if it doesn't it may hold anything. False also where memory is short, which
  /// OtMemoryShortages tells.
  /// @param text in its code set and language.
  /// @param utf8,size the same in UTF-8.
  bool Scan(void* element, const OtString& text, const char* utf8, std::size_t size);

  /// Gives an element the value that a scan starts from, which no text has a part in.
  void Reset(void* element) const;

  /// How a type's texts look in ISO 8601 form, by an example; null if they have none.
  static const char* IsoExample(OtTypeMgr& manager, char type);

 private:
  class Impl;
  Impl* impl_;  // null where memory was short
};

#endif
