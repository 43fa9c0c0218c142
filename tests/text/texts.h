#ifndef OT95_TESTS_TEXT_TEXTS_H
#define OT95_TESTS_TEXT_TEXTS_H

#include <cstring>
#include <string>

#include "ot95/fault.h"
#include "ot95/text.h"

/// The characters of a string, zero-extended.
inline std::u16string UnitsOf(const OtString& text) {
  std::u16string units;
  const bool wide = text.GetCodeSetCode() > 0xe0;
  for (const char* at = text.StrGet();; at += wide ? 2 : 1) {
    unsigned short unit = static_cast<unsigned char>(*at);
    if (wide) std::memcpy(&unit, at, sizeof unit);
    if (unit == 0) return units;
    units.push_back(unit);
  }
}

/// A string of a code set with these characters.
inline OtString TextOf(unsigned char codeSet, const std::u16string& units) {
  OtString text(codeSet, OT_LANG_NEUTRAL);
  if (codeSet > 0xe0) {
    OtString source(OT_CS_UNICODE, OT_LANG_NEUTRAL);
    source += OtString(reinterpret_cast<const unsigned short*>(units.c_str()));
    source.SetCodeSetCode(codeSet);
    return text += source;
  }
  OtString source(std::string(units.begin(), units.end()).c_str());
  source.SetCodeSetCode(codeSet);
  return text += source;
}

/// Counts the reports of impossible states while it lives.
class FaultCount {
 public:
  FaultCount() : before_(OTDB_SetAssertHandler(&Count)) { count_ = 0; }
  ~FaultCount() { OTDB_SetAssertHandler(before_); }
  int Get() const { return count_; }

 private:
  static void Count(const char* expression, const char* file, unsigned long line) {
    count_ += std::strcmp(expression, "String overflow") == 0 &&
              std::strcmp(file, "otstring") == 0 && line == 1104;
  }
  static inline int count_ = 0;
  OtAssertHandler before_;
};

#endif
