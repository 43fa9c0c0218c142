#ifndef OT95_SRC_C_UTF8_H
#define OT95_SRC_C_UTF8_H

/// @file
/// Texts in UTF-8 as terminated units, records and strings.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ot95/text.h"
#include "text/collation/orders.h"
#include "text/utf8.h"

namespace ot95::c {

constexpr std::size_t kMostUnits = 32765;  ///< Of a string, with its terminator in 65,532 bytes.

/// A text from UTF-8 as terminated units. Up to 256 bytes of it need no allocation.
class WideText {
 public:
  /// @return OT95_ERR_TEXT, OT95_ERR_MEMORY, OT95_ERR_ARGUMENT for a null pointer.
  int Take(const char* utf8, std::size_t size);

  const std::uint16_t* units() const { return units_; }
  std::uint16_t* units() { return units_; }
  std::size_t count() const { return count_; }
  /// As the library wants it.
  const char* text() const { return reinterpret_cast<const char*>(units_); }
  TextSpan Span(unsigned char language) const {
    return {text(), kUnbounded, 2 * count_ + 2, OT_CS_UNICODE, language, false};
  }
  /// The text as a string of a code set. @return OT95_ERR_VALUE if that lacks one of the
  /// characters.
  int ToString(unsigned char codeSet, unsigned char language, OtString& text) const;

  /// Puts the frame of a stored string around the text, which then has another terminator.
  /// @return bytes of the record.
  unsigned long BecomeRecord(unsigned char language);
  const void* record() const { return units_ - kHeader; }

 private:
  static constexpr std::size_t kInline = 256;
  static constexpr std::size_t kHeader = 2;  // in units, as the terminator's one

  std::uint16_t* units_ = inline_ + kHeader;
  std::size_t count_ = 0;
  std::unique_ptr<std::uint16_t[]> heap_;
  std::uint16_t inline_[kHeader + kInline + 1];
};

}  // namespace ot95::c

#endif
