// A prefix becomes two keys: its own, and the same with a character above all others behind it.
// Options that ignore something widen both.

#include "text/rows/limits.h"

#include "ot95/bytes.h"
#include "text/collation/compare.h"
#include "text/rows/row.h"

namespace ot95 {
namespace {

constexpr unsigned char topByte = 0xff;
constexpr unsigned short topWord = 0xfffe;
constexpr unsigned short caseBits = 0x3000;
constexpr unsigned short accentBits = 0x0f80;

constexpr std::size_t Less(std::size_t length, std::size_t part) {
  return length > part ? length - part : 0;
}

// Orders of a text, no more counted than a key can hold.
std::size_t CountOrders(const TextSpan& span) {
  constexpr std::size_t most = OtINDEX_MAX_KEYLEN / 2;
  OrderWalk walk(span);
  std::size_t orders = 0;
  while (orders < most && walk.NextKey(true) != 0) ++orders;
  return orders;
}

}  // namespace

TextSpan TextLayout::Span(const unsigned char* text, std::size_t bytes, unsigned char codeSet,
                          unsigned char language) const {
  if (bytes == 0) return TextSpan::Terminated(nullptr, codeSet, language);
  // Raw bytes are compared as far as their span goes; all other text is walked to its terminator.
  if (codeSet == 0) bytes = static_cast<std::size_t>(std::find(text, text + bytes, 0) - text);
  return TextSpan::Bounded(reinterpret_cast<const char*>(text), bytes, codeSet, language,
                           IsReversed(form));
}

LineText TextOfKey(const void* key, std::size_t keyLength, const TextLayout& layout) {
  const auto* bytes = static_cast<const unsigned char*>(key);
  const std::size_t length = keyLength < 2 ? 0 : LoadLength(bytes, layout.form);
  const bool labelled = !layout.legacy && keyLength >= kHeaderSize;
  const unsigned char codeSet = labelled ? bytes[2] : 0;
  const unsigned char language = labelled ? bytes[3] : 0;
  const std::size_t stored = Less(length, layout.legacy ? 1 : kHeaderSize);
  const std::size_t present = Less(keyLength, layout.Header());
  LineText text;
  text.span = layout.Span(present != 0 ? bytes + layout.Header() : nullptr,
                          std::min(stored, present), codeSet, language);
  text.chars = static_cast<unsigned>(Less(keyLength, kHeaderSize) / CharWidth(codeSet));
  return text;
}

TextOperand::TextOperand(const void* value, unsigned char format, const TextLayout& layout,
                         unsigned short options)
    : layout_(layout), options_(options) {
  const auto* record = static_cast<const unsigned char*>(value);
  recordLength_ = LoadLength(record, layout.form);
  const bool oldForm = (format & kStoreKey) == 0 && IsOldForm(record, recordLength_);
  if (layout.legacy || oldForm) {
    text_ = record + 2;
    bytes_ = Less(recordLength_, 1);
  } else {
    if (recordLength_ >= 1) codeSet_ = record[2];
    if (recordLength_ >= 2) language_ = record[3];
    text_ = record + kHeaderSize;
    bytes_ = Less(recordLength_, kHeaderSize);
    if (IsWide(codeSet_)) bytes_ &= ~std::size_t{1};
  }
  if (!IsRaw() && (options & OT_CMP_IGNORE_CASE)) caseMask_ = caseBits;
  if (!IsRaw() && (options & OT_CMP_IGNORE_ACCENT)) accentMask_ = accentBits;
  if (!(options & OT_CMP_NO_WILDCARDS)) FindWildcard();
}

void TextOperand::FindWildcard() {
  unsigned short bytes = 0;
  wildChars_ = WildcardPlace(Text().span, false, noLimit, &bytes);
  if (wildChars_ >= 0) {
    wildBytes_ = bytes;
  } else if ((language_ & kMixedScripts) && (language_ & ~kMixedScripts) != 1) {
    // A key that ended at a change of script stands for all texts that begin so.
    wildBytes_ = static_cast<long>(bytes_);
    wildChars_ = static_cast<long>(bytes_ / CharWidth(codeSet_));
  }
}

bool TextOperand::IgnoresCharacters() const {
  return (options_ & (OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS)) != 0;
}

LineText TextOperand::Text() const {
  LineText text;
  text.span = layout_.Span(text_, bytes_, codeSet_, language_);
  if (wildChars_ >= 0) text.chars = static_cast<unsigned>(wildChars_);
  return text;
}

std::size_t TextOperand::PrefixBytes() const {
  return wildBytes_ > 0 ? static_cast<std::size_t>(wildBytes_) : bytes_;
}

// Keys of text hold two bytes for each order; raw bytes and order words are copied.
std::size_t TextOperand::KeyTextBytes() const {
  if (IsCopied()) return PrefixBytes();
  return 2 * CountOrders(layout_.Span(text_, PrefixBytes(), codeSet_, language_));
}

// Writes header and prefix, no further than `end`. @return where the text ends.
std::size_t TextOperand::WritePrefix(unsigned char* key, std::size_t end) const {
  if (!IsCopied()) {
    BuildKey(key, end, layout_.form,
             {layout_.Span(text_, PrefixBytes(), codeSet_, language_), true});
    return LoadLength(key, layout_.form);
  }
  std::size_t bytes = std::min(PrefixBytes(), end - layout_.Header());
  if (IsWide(codeSet_)) bytes &= ~std::size_t{1};
  StoreLength(key, recordLength_, layout_.form);
  if (!layout_.legacy) {
    key[2] = codeSet_;
    key[3] = language_;
  }
  if (bytes != 0) std::memcpy(key + layout_.Header(), text_, bytes);
  return layout_.Header() + bytes;
}

// The letters of one alphabet lose the bits that don't count, to the side of the limit.
void TextOperand::Widen(unsigned char* key, std::size_t textEnd, unsigned short clear,
                        unsigned short set) const {
  if ((clear | set) == 0 || (key[3] & ~kMixedScripts) >= kBeyondAlphabets) return;
  for (std::size_t at = kHeaderSize; at + 2 <= textEnd; at += 2) {
    const auto word = LoadAs<std::uint16_t>(key + at, layout_.form);
    if (!IsLetterWord(word)) continue;
    StoreAs<std::uint16_t>(key + at, static_cast<std::uint16_t>((word & ~clear) | set),
                           layout_.form);
  }
}

// Where accents are ignored, so are the marks that stand by themselves: they are no part of a
// limit.
// @return where the text ends.
std::size_t TextOperand::DropMarks(unsigned char* key, std::size_t textEnd) const {
  if (accentMask_ == 0 || (key[3] & ~kMixedScripts) >= kBeyondAlphabets) return textEnd;
  std::size_t end = kHeaderSize;
  for (std::size_t at = kHeaderSize; at + 2 <= textEnd; at += 2) {
    const auto word = LoadAs<std::uint16_t>(key + at, layout_.form);
    if (IsMarkWord(word)) continue;
    StoreAs<std::uint16_t>(key + end, word, layout_.form);
    end += 2;
  }
  return end;
}

// Whether no letter of a key has accents that could make it an upper limit: marks on other
// characters, which are ignored with accents, would pass it.
bool TextOperand::NeedsTop(const unsigned char* key, std::size_t textEnd) const {
  if (wildBytes_ > 0 || IgnoresCharacters()) return true;
  if (accentMask_ == 0) return false;
  for (std::size_t at = kHeaderSize; at + 2 <= textEnd; at += 2) {
    if (IsLetterWord(LoadAs<std::uint16_t>(key + at, layout_.form))) return false;
  }
  return true;
}

// Puts the top character behind the prefix of a pattern, or in place of what stands last where
// there is no room for it or where ignored characters may stand anywhere.
std::size_t TextOperand::PutTop(unsigned char* key, std::size_t textEnd, std::size_t end) const {
  const bool fits = textEnd + UnitWidth() <= end;
  if (textEnd == layout_.Header() || (wildBytes_ > 0 && fits)) textEnd += UnitWidth();
  if (IsRaw()) {
    key[textEnd - 1] = topByte;
  } else {
    StoreAs<std::uint16_t>(key + textEnd - 2, topWord, layout_.form);
  }
  return textEnd;
}

// The length of an old record stays that of the operand.
void TextOperand::Finish(unsigned char* key, std::size_t textEnd, std::size_t keyLength) const {
  if (!layout_.legacy) StoreLength(key, textEnd, layout_.form);
  if (textEnd + layout_.Terminator() > keyLength) return;
  key[textEnd] = 0;
  if (!layout_.legacy) key[textEnd + 1] = 0xff;
}

namespace {

// Where the text of a key may end: before its terminator, which a key that is cut goes without.
std::size_t TextRoom(std::size_t size, const TextLayout& layout) {
  return size > OtINDEX_MAX_KEYLEN ? OtINDEX_MAX_KEYLEN : size - layout.Terminator();
}

}  // namespace

void TextOperand::MakeLower(OtIdxBounds& limits) const {
  const std::size_t size = layout_.Header() + KeyTextBytes() + layout_.Terminator();
  unsigned char* key = NewKey(limits.lowerKey, limits.lowerKeyLength, size);
  if (key == nullptr) return;
  const std::size_t textEnd = DropMarks(key, WritePrefix(key, TextRoom(size, layout_)));
  Widen(key, textEnd, accentMask_, caseMask_);
  Finish(key, textEnd, limits.lowerKeyLength);
}

void TextOperand::MakeUpper(OtIdxBounds& limits, LineText& text) const {
  const std::size_t top = IsPattern() ? UnitWidth() : 0;
  std::size_t size = layout_.Header() + KeyTextBytes() + top + layout_.Terminator();
  if ((IgnoresCharacters() || accentMask_ != 0) && (size == kEmptyRecordSize || PrefixBytes() == 0))
    size += 2;
  unsigned char* key = NewKey(limits.upperKey, limits.upperKeyLength, size);
  if (key == nullptr) return;
  const std::size_t room = TextRoom(size, layout_);
  std::size_t textEnd = DropMarks(key, WritePrefix(key, room));
  Widen(key, textEnd, caseMask_, accentMask_);
  // Behind nothing but marks a pattern can go on in any alphabet.
  if (accentMask_ != 0 && textEnd == layout_.Header()) key[3] = kBeyondAlphabets;
  if (NeedsTop(key, textEnd)) textEnd = PutTop(key, textEnd, room);
  Finish(key, textEnd, limits.upperKeyLength);
  text = TextOfKey(key, limits.upperKeyLength, layout_);
  if (size > OtINDEX_MAX_KEYLEN) {
    text.chars = static_cast<unsigned>(Less(textEnd, kHeaderSize) / UnitWidth());
  } else {
    text.chars =
        wildChars_ >= 0 ? static_cast<unsigned>(wildChars_) + static_cast<unsigned>(top) : noLimit;
  }
}

}  // namespace ot95
