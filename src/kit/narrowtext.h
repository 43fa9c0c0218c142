#ifndef OT95_SRC_KIT_NARROWTEXT_H
#define OT95_SRC_KIT_NARROWTEXT_H

// A text as one-byte characters, whatever it was: what every scan reads.

#include <cstddef>
#include <cstring>
#include <optional>

#include "ot95/text.h"

namespace ot95 {

/// The one-byte text that scanners and number readers see: the string's own bytes, or those of a
/// local copy of a two-byte string, mapped to the default 8-bit code set. The string must outlive
/// this.
class NarrowText {
 public:
  explicit NarrowText(const OtString& text) {
    const OtString* narrow = &text;
    if (text.GetCodeSetCode() > 0xe0) {
      // Made in a narrow code set by name, because the default one may be wide.
      copy_.emplace(OtString::GetDefault8CodeSet(), text.GetLanguageCode());
      *copy_ += text;
      narrow = &*copy_;
    }
    bytes_ = narrow->StrGet();
  }

  const char* Bytes() const { return bytes_; }  ///< Terminated; never null.
  std::size_t Length() const { return std::strlen(bytes_); }

 private:
  std::optional<OtString> copy_;
  const char* bytes_;
};

}  // namespace ot95

#endif
