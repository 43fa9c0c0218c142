/// The string itself: lifetime, code sets, and the one engine behind every change of a text.

#include <algorithm>
#include <bit>
#include <memory>
#include <utility>

#include "kit/statics.h"
#include "ot95/config.h"
#include "ot95/fault.h"
#include "ot95/text.h"
#include "text/collation/compare.h"
#include "text/units.h"

namespace ot95 {
namespace {

/// Units before a zero unit. The first `known` bytes are readable, and looked at in words.
std::size_t WideLength(const char* text, std::size_t known) {
  constexpr std::uint64_t kOnes = 0x0001000100010001u;
  std::size_t at = 0;
  for (; at + 8 <= known; at += 8) {
    std::uint64_t units;
    std::memcpy(&units, text + at, sizeof units);
    const std::uint64_t zeros = (units - kOnes) & ~units & kOnes << 15;
    if (zeros == 0) continue;
    // The lowest mark is exact, and the lowest unit the first.
    if (std::endian::native != std::endian::little) break;
    return at / 2 + static_cast<std::size_t>(std::countr_zero(zeros) / 16);
  }
  while (LoadWide(text + at) != 0) at += 2;
  return at / 2;
}

}  // namespace

alignas(8) constexpr char kEmptyText[8] = {};

std::size_t TextLength(const char* text, unsigned char codeSet) {
  return IsWide(codeSet) ? WideLength(text, 0) : std::strlen(text);
}

void ReportTextSize() {
  const OtConfig* config = DefaultConfig(nullptr);
  unsigned short report = 0;
  const char* const sections[] = {"debug", nullptr};
  if (config != nullptr) config->GetValue("stringOverflow", &report, sections);
  if (config == nullptr || report != 0) OTDB_assert("String overflow", "otstring", 1104);
}

}  // namespace ot95

using ot95::CharWidth;
using ot95::IsWide;

/// The single place where a string gets another buffer. A text beyond the limit has a memLen_ cut
/// to 16 bits; all that touches the buffer measures the text itself.
void OtString::Adopt(char* buffer, std::size_t bytes) {
  delete[] buffer_;
  buffer_ = buffer;
  memLen_ = static_cast<unsigned short>(buffer != nullptr ? bytes : 0);
}

/// The first `head` bytes of the text, then those of a piece and a terminator: what nearly all
/// changes come to, and inline because the making of every string is one of them.
[[gnu::always_inline]] inline void OtString::Join(std::size_t head, const char* piece,
                                                  std::size_t bytes) {
  const std::size_t end = head + bytes;
  const std::size_t size = end + CharWidth(codeSet_);
  ot95::CheckTextSize(size);
  char* const fresh = ot95::NewText(size);
  if (fresh == nullptr) return;
  if (head != 0) std::memcpy(fresh, buffer_, head);
  std::memcpy(fresh + head, piece, bytes);
  ot95::StoreUnit(fresh + end, 0, IsWide(codeSet_));
  Adopt(fresh, size);
}

OtString::OtString(const OtString& other) : OtString(other.codeSet_, other.language_) {
  if (other.buffer_ != nullptr) Join(0, other.buffer_, other.Length() * CharWidth(codeSet_));
}

OtString::OtString(OtString&& other) noexcept : OtString(other.codeSet_, other.language_) {
  Destruct(other);
}

OtString::OtString(char character) : OtString(GetDefault8CodeSet(), GetDefaultLanguage()) {
  SetText(&character, codeSet_, character != 0);
}

OtString::OtString(unsigned short character)
    : OtString(GetDefault16CodeSet(), GetDefaultLanguage()) {
  SetText(&character, codeSet_, character != 0);
}

OtString::OtString(const char* text) : OtString(GetDefault8CodeSet(), GetDefaultLanguage()) {
  if (text != nullptr) Join(0, text, std::strlen(text));
}

OtString::OtString(const unsigned short* text)
    : OtString(GetDefault16CodeSet(), GetDefaultLanguage()) {
  const char* const place = reinterpret_cast<const char*>(text);
  if (place != nullptr) Join(0, place, 2 * ot95::WideLength(place, 0));
}

OtString::OtString(const char* text, unsigned short length)
    : OtString(GetDefault8CodeSet(), GetDefaultLanguage()) {
  SetText(text, codeSet_, length);
}

OtString::OtString(const unsigned short* text, unsigned short length)
    : OtString(GetDefault16CodeSet(), GetDefaultLanguage()) {
  SetText(text, codeSet_, length);
}

OtString& OtString::operator=(const OtString& other) {
  if (this == &other) return *this;
  // A text of this string's own is still needed while it is copied.
  OtString copy(other);
  Destruct(copy);
  return *this;
}

OtString& OtString::operator=(OtString&& other) noexcept {
  Destruct(other);
  return *this;
}

OtString& OtString::operator=(const char* text) {
  OtString copy(text);
  Destruct(copy);
  return *this;
}

OtString& OtString::operator=(const unsigned short* text) {
  OtString copy(text);
  Destruct(copy);
  return *this;
}

void OtString::Init() {
  buffer_ = nullptr;
  memLen_ = 0;
  codeSet_ = GetDefaultCodeSet();
  language_ = GetDefaultLanguage();
}

void OtString::Destroy() {
  Adopt(nullptr, 0);
  codeSet_ = 0;
  language_ = 0;
}

void OtString::Destruct(OtString& other) {
  if (this == &other) return;
  delete[] buffer_;
  buffer_ = std::exchange(other.buffer_, nullptr);
  memLen_ = std::exchange(other.memLen_, static_cast<unsigned short>(0));
  codeSet_ = other.codeSet_;
  language_ = other.language_;
}

char* OtString::StrGet() const {
  return buffer_ != nullptr ? buffer_ : const_cast<char*>(ot95::EmptyText());
}

std::size_t OtString::Length() const {
  if (buffer_ == nullptr) return 0;
  return IsWide(codeSet_) ? ot95::WideLength(buffer_, memLen_) : std::strlen(buffer_);
}

unsigned short OtString::Len() const {
  return static_cast<unsigned short>(Length());
}

const OtString& OtString::EmptyString() {
  return ot95::emptyString;
}

int OtString::IsEmpty() const {
  return ot95::LoadUnit(StrGet(), IsWide(codeSet_)) == 0;
}

int OtString::IsNullValue() const {
  return language_ == OT_LANG_NULL || (codeSet_ == OT_CS_ORDER && language_ == 0);
}

int OtString::SetNullValue() {
  Destroy();
  language_ = OT_LANG_NULL;
  return 0;
}

/// Whether characters of the source mean the same in this string.
bool OtString::TakesUnitsOf(const ot95::TextSource& source) const {
  return source.codeSet == codeSet_ || (source.codeSet == 0 && !IsWide(codeSet_));
}

/// Whether even the bytes of the source are those of its characters in this string.
bool OtString::TakesBytesOf(const ot95::TextSource& source) const {
  return TakesUnitsOf(source) && !source.reversed;
}

void OtString::SetText(const void* source, unsigned char codeSet, unsigned short length,
                       unsigned char format) {
  buffer_ = nullptr;
  if (source == nullptr || length == 0) return;
  const char* text = static_cast<const char*>(source);
  const std::size_t measured = length == 0xffff ? ot95::TextLength(text, codeSet) : length;
  const ot95::TextSource whole{text, codeSet, measured, ot95::IsReversed(format)};
  if (TakesBytesOf(whole)) {
    Join(0, text, measured * CharWidth(codeSet_));
  } else {
    Splice(SpliceMode::kAssign, whole, 0);
  }
}

void OtString::Splice(SpliceMode mode, const ot95::TextSource& source, std::size_t position,
                      std::size_t repeat) {
  if (mode != SpliceMode::kAssign &&
      (source.text == nullptr || ot95::LoadUnit(source.text, IsWide(source.codeSet)) == 0)) {
    return;
  }
  if (TakesUnitsOf(source)) {
    SpliceUnits(mode, source, position, repeat);
    return;
  }
  const std::size_t length = ot95::TextLength(source.text, source.codeSet);
  const std::size_t made =
      ot95::ConvertedUnits(source.text, source.codeSet, source.reversed, length, codeSet_);
  const std::unique_ptr<char[]> converted(ot95::NewText((made + 1) * CharWidth(codeSet_)));
  if (converted == nullptr) return;
  ot95::ConvertUnits(source.text, source.codeSet, source.reversed, length, converted.get(),
                     codeSet_);
  const std::size_t wanted = source.length >= length ? made : std::min(source.length, made);
  SpliceUnits(mode, {converted.get(), codeSet_, wanted}, position, repeat);
}

OtString& OtString::Append(const ot95::TextSource& source) {
  const std::size_t length = Length();
  if (TakesBytesOf(source)) {
    const std::size_t width = CharWidth(codeSet_);
    Join(length * width, source.text, source.length * width);
  } else {
    Splice(SpliceMode::kAssign, source, length);
  }
  return *this;
}

void OtString::SpliceUnits(SpliceMode mode, const ot95::TextSource& source, std::size_t position,
                           std::size_t repeat) {
  const std::size_t width = CharWidth(codeSet_);
  // The buffer may hold more than its text; that much is carried along.
  const std::size_t held =
      buffer_ == nullptr ? width : std::max<std::size_t>(memLen_, (Length() + 1) * width);
  const std::size_t head = position * width;
  const std::size_t piece = source.length * width;
  const std::size_t gap = piece * repeat;
  std::size_t tailFrom = head;  // where in the old text the rest begins
  if (mode == SpliceMode::kReplace) tailFrom += piece;
  const std::size_t tail = mode == SpliceMode::kAssign ? width : held - tailFrom;
  const std::size_t size = head + gap + tail;
  ot95::CheckTextSize(size);

  char* fresh = ot95::NewText(size);
  if (fresh == nullptr) return;
  const char* old = StrGet();
  std::memcpy(fresh, old, head);
  if (repeat == 1) {
    ot95::CopyUnits(source.text, source.reversed, source.length, fresh + head, width == 2);
  } else {
    ot95::FillUnits(source.text, gap / width, fresh + head, width == 2);
  }
  if (mode == SpliceMode::kAssign) {
    std::memset(fresh + head + gap, 0, width);
  } else {
    std::memcpy(fresh + head + gap, old + tailFrom, tail);
  }
  Adopt(fresh, size);
}

/// Maps the text to another code set, in a buffer exactly as large as it needs, and labels it so.
/// Without memory nothing changes: a text under the label of another width is no text.
void OtString::Convert(unsigned char codeSet) {
  const std::size_t length = Length();
  const std::size_t made = ot95::ConvertedUnits(buffer_, codeSet_, false, length, codeSet);
  const std::size_t size = (made + 1) * CharWidth(codeSet);
  ot95::CheckTextSize(size);
  char* fresh = ot95::NewText(size);
  if (fresh == nullptr) return;
  ot95::ConvertUnits(buffer_, codeSet_, false, length + 1, fresh, codeSet);
  Adopt(fresh, size);
  codeSet_ = codeSet;
}

int OtString::SetCodeSetCode(unsigned char codeSet) {
  if (CharWidth(codeSet) != CharWidth(codeSet_)) return OT_ERR_BAD_ARGUMENT;
  codeSet_ = codeSet;
  return 0;
}

void OtString::SetCodeSet(unsigned char codeSet) {
  if (buffer_ != nullptr && CharWidth(codeSet) != CharWidth(codeSet_)) return Convert(codeSet);
  codeSet_ = codeSet;
}

int OtString::MapToCodeSet(unsigned char codeSet) {
  if (codeSet == 0) return OT_ERR_BAD_ARGUMENT;
  if (buffer_ != nullptr && codeSet != codeSet_) {
    Convert(codeSet);
  } else {
    codeSet_ = codeSet;
  }
  return 0;
}

int OtString::CopyMapped(const OtString& source, unsigned char codeSet, short maxChars) {
  if (this == &source) return OT_ERR_BAD_ARGUMENT;
  codeSet_ = codeSet;
  language_ = source.language_;
  const std::size_t length = source.Length();
  const std::size_t available =
      ot95::ConvertedUnits(source.StrGet(), source.codeSet_, false, length, codeSet);
  const std::size_t room = maxChars < 0 ? available : static_cast<std::size_t>(maxChars);
  const std::size_t size = (room + 1) * CharWidth(codeSet);
  ot95::CheckTextSize(size);
  if (buffer_ == nullptr || memLen_ < size) {
    Adopt(ot95::NewText(size), size);
    if (buffer_ == nullptr) return 0;
  }
  const std::size_t count =
      ot95::ConvertUnits(source.StrGet(), source.codeSet_, false, length, buffer_, codeSet, room);
  // Whoever stores the string takes the whole buffer: nothing of an earlier text stays in it.
  const std::size_t used = count * CharWidth(codeSet);
  std::memset(buffer_ + used, 0, std::max<std::size_t>(memLen_, size) - used);
  return static_cast<int>(count);
}

void OtString::SetDefaultCodeSet(unsigned char codeSet) {
  OtLanguageContext::SetDefaultCodeSet(codeSet);
}
void OtString::SetDefaultLanguage(unsigned char language) {
  OtLanguageContext::SetDefaultLanguage(language);
}
void OtString::SetDefaultCmpOp(unsigned short cmpOp) {
  OtLanguageContext::SetDefaultCmpOp(cmpOp);
}

namespace ot95 {
namespace {

/// As it stands: made of a string's members, its call would cost the others registers.
OT95_KEPT_APART long CompareAnyTexts(const OtString& text1, const OtString& text2,
                                     unsigned short cmpOp) {
  return CompareSpans(TextSpan::Of(text1), TextSpan::Of(text2), cmpOp);
}

}  // namespace
}  // namespace ot95

/// Most comparisons are of texts of one code set and language, and most of those need no more than
/// the first letters that differ: these take no call.
long OtString::Compare(const OtString& other, unsigned short cmpOp) const {
  if (cmpOp == OT_CMP_DEFAULT) cmpOp = GetDefaultCmpOp();
  const bool alike = codeSet_ == other.codeSet_ && language_ == other.language_;
  if (!alike || memLen_ == 0 || other.memLen_ == 0 || (cmpOp & OT_CMP_ORDER_ONLY) != 0) {
    return ot95::CompareAnyTexts(*this, other, cmpOp);
  }
  const bool matches = (cmpOp & OT_CMP_NO_WILDCARDS) == 0;
  const unsigned short readable = std::min(memLen_, other.memLen_);
  const auto labels = [this](unsigned short bytes) -> ot95::TextLabels {
    return {bytes, codeSet_, language_};
  };
  if (codeSet_ == OT_CS_UNICODE) {
    const ot95::WideKeys keys{ot95::FinishedKeys::Known(language_)};
    if (keys.keys == nullptr) return ot95::CompareAnyTexts(*this, other, cmpOp);
    if (matches) return ot95::MatchWide(keys, buffer_, other.buffer_, labels(memLen_), cmpOp);
    return ot95::CompareTerminated(keys, buffer_, other.buffer_, labels(readable), cmpOp);
  }
  const ot95::ByteKeys keys{ot95::FinishedKeys::KnownBytes(codeSet_, language_)};
  if (keys.keys == nullptr || matches) return ot95::CompareAnyTexts(*this, other, cmpOp);
  std::size_t at = 0;
  const int sign = ot95::SignWhereApart<std::uint8_t>(keys, buffer_, other.buffer_, readable, at);
  if (sign < ot95::kUndecided) return sign;
  return ot95::CompareNarrow(keys, buffer_, other.buffer_, labels(readable), cmpOp, at);
}

long OtString::Compare(const char* other, unsigned short cmpOp) const {
  return CompareText(GetDefault8CodeSet(), GetDefaultLanguage(), other, cmpOp);
}

long OtString::Compare(const unsigned short* other, unsigned short cmpOp) const {
  return CompareText(GetDefault16CodeSet(), GetDefaultLanguage(),
                     reinterpret_cast<const char*>(other), cmpOp);
}

long OtString::CompareText(unsigned char codeSet, unsigned char language, const char* text,
                           unsigned short cmpOp) const {
  if (cmpOp == OT_CMP_DEFAULT) cmpOp = GetDefaultCmpOp();
  return OtStrCmp(codeSet_, language_, StrGet(), codeSet, language, text, cmpOp, -1,
                  OT_FORMAT_NATIVE);
}
