// A text in UTF-8 as the library wants it.
#include "c/utf8.h"

#include <cstring>
#include <new>

#include "ot95c/ot95c.h"

namespace ot95::c {

int WideText::Take(const char* utf8, std::size_t size) {
  if (utf8 == nullptr && size != 0) return OT95_ERR_ARGUMENT;
  if (size > kInline) {
    if (size > 4 * kMostUnits) return OT95_ERR_TEXT;
    heap_.reset(new (std::nothrow) std::uint16_t[kHeader + size + 1]);
    if (heap_ == nullptr) return OT95_ERR_MEMORY;
    units_ = heap_.get() + kHeader;
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
  std::uint16_t* const end = size != 0 ? DecodeUtf8(bytes, bytes + size, units_) : units_;
  if (end == nullptr) return OT95_ERR_TEXT;
  *end = 0;
  count_ = static_cast<std::size_t>(end - units_);
  return count_ <= kMostUnits ? OT95_OK : OT95_ERR_TEXT;
}

int WideText::ToString(unsigned char codeSet, unsigned char language, OtString& text) const {
  text = OtString(OT_CS_UNICODE, language);
  text = units_;
  text.SetLanguageCode(language);
  if (text.Len() != count_) return OT95_ERR_MEMORY;
  if (codeSet == OT_CS_UNICODE) return OT95_OK;
  const auto change = [](OtString& string, unsigned char to) {
    if (to == OT_CS_NONE || string.GetCodeSetCode() == OT_CS_NONE) {
      string.SetCodeSet(to);
    } else {
      string.MapToCodeSet(to);
    }
  };
  change(text, codeSet);
  OtString back(text);
  change(back, OT_CS_UNICODE);
  if (back.GetCodeSetCode() != OT_CS_UNICODE) return OT95_ERR_MEMORY;
  const bool isSame = back.Len() == count_ && std::memcmp(back.StrGet(), units_, 2 * count_) == 0;
  return isSame ? OT95_OK : OT95_ERR_VALUE;
}

unsigned long WideText::BecomeRecord(unsigned char language) {
  const auto length = static_cast<std::uint16_t>(2 * count_ + 2 * kHeader);
  const unsigned char codeSet[] = {OT_CS_UNICODE, language};
  const unsigned char terminator[] = {0, 0xff};
  units_[-2] = length;
  std::memcpy(units_ - 1, codeSet, sizeof codeSet);
  std::memcpy(units_ + count_, terminator, sizeof terminator);
  return length + sizeof terminator;
}

}  // namespace ot95::c
