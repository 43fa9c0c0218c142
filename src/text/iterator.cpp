/// Movement of the iterator over a text, and the characters that wait to be delivered before it
/// goes on.

#include <new>
#include <utility>

#include "ot95/text.h"
#include "text/collation/orders.h"
#include "text/units.h"

namespace {

/// Room for a character and a terminator of either width.
constexpr std::size_t kOwnedBytes = 4;

unsigned char Or(unsigned char given, unsigned char standIn) {
  return given != 0xff ? given : standIn;
}

}  // namespace

OtStringIterator::OtStringIterator(char* position, unsigned char codeSet, unsigned char language,
                                   unsigned char format, unsigned char script)
    : position_(position),
      codeSet_(codeSet),
      language_(language),
      script_(script),
      overflow_(nullptr),
      overflowIndex_(0),
      overflowCodeSet_(0),
      format_(format),
      owned_(nullptr) {}

/// Over a text, with the script of its code set and language.
OtStringIterator::OtStringIterator(unsigned char codeSet, unsigned char language,
                                   unsigned char format, char* position)
    : OtStringIterator(position, codeSet, Or(language, OtLanguageContext::GetDefaultLanguage()),
                       format, 0) {
  script_ = OtLanguageContext::QueryCodeSet(codeSet_)->DefaultScript(language_);
}

OtStringIterator::OtStringIterator() : OtStringIterator(nullptr, 0, 0, OT_FORMAT_NATIVE, 0) {}

// What is pending stays with the original: it would otherwise be delivered twice.
OtStringIterator::OtStringIterator(const OtStringIterator& other)
    : OtStringIterator(other.position_, other.codeSet_, other.language_, other.format_,
                       other.script_) {}

OtStringIterator::OtStringIterator(OtString& text)
    : OtStringIterator(text.GetCodeSetCode(), text.GetLanguageCode(), OT_FORMAT_MEMORY,
                       text.StrGet()) {}

OtStringIterator::OtStringIterator(const char* text, unsigned char codeSet, unsigned char language,
                                   unsigned char format)
    : OtStringIterator(Or(codeSet, OtLanguageContext::GetDefault8CodeSet()), language,
                       Or(format, OT_FORMAT_NATIVE), const_cast<char*>(text)) {}

OtStringIterator::OtStringIterator(unsigned short* text, unsigned char codeSet,
                                   unsigned char language, unsigned char format)
    : OtStringIterator(Or(codeSet, OtLanguageContext::GetDefault16CodeSet()), language,
                       Or(format, OT_FORMAT_NATIVE), reinterpret_cast<char*>(text)) {}

OtStringIterator::OtStringIterator(OtChar& character)
    : OtStringIterator(character.GetCodeSetCode(), character.GetLanguageCode(), OT_FORMAT_NATIVE,
                       ot95::Noted(new (std::nothrow) char[kOwnedBytes]())) {
  if (position_ == nullptr) return;
  ot95::StoreUnit(position_, character.GetValue(), ot95::IsWide(codeSet_));
  owned_ = position_;
}

OtStringIterator::~OtStringIterator() {
  delete[] owned_;
}

OtStringIterator& OtStringIterator::operator=(const OtStringIterator& other) {
  if (this == &other) return *this;
  // A copy of this iterator stands in the text that this one owns: going back to it keeps the text.
  const auto place = reinterpret_cast<std::uintptr_t>(other.position_);
  const auto owned = reinterpret_cast<std::uintptr_t>(owned_);
  if (place < owned || place >= owned + kOwnedBytes) delete[] std::exchange(owned_, nullptr);
  position_ = other.position_;
  codeSet_ = other.codeSet_;
  language_ = other.language_;
  script_ = other.script_;
  overflow_ = other.overflow_;
  overflowIndex_ = other.overflowIndex_;
  overflowCodeSet_ = other.overflowCodeSet_;
  format_ = other.format_;
  return *this;
}

bool OtStringIterator::HasPending() const {
  return overflow_ != nullptr && overflowIndex_ < overflow_->count;
}

void OtStringIterator::Move(int characters) {
  if (position_ != nullptr) position_ += ot95::IsWide(codeSet_) ? 2 * characters : characters;
}

OtStringIterator& OtStringIterator::operator++() {
  if (HasPending()) return *this;
  overflow_ = nullptr;
  Move(1);
  return *this;
}

OtStringIterator OtStringIterator::operator++(int) {
  OtStringIterator before;
  before = *this;
  ++*this;
  return before;
}

OtStringIterator& OtStringIterator::operator--() {
  // What was met of a run of marks is counted from where the run began.
  if (overflow_ == &ot95::kMarksPending) overflow_ = nullptr;
  Move(-1);
  return *this;
}

OtStringIterator OtStringIterator::operator--(int) {
  OtStringIterator before;
  before = *this;
  --*this;
  return before;
}

void OtStringIterator::Step(unsigned short forward) {
  if (forward != 0) {
    ++*this;
  } else {
    --*this;
  }
}

int OtStringIterator::IsEOS() const {
  if (overflow_ != nullptr) return 0;
  return position_ == nullptr || ot95::LoadUnit(position_, ot95::IsWide(codeSet_)) == 0;
}

OtChar OtStringIterator::operator*() {
  unsigned short unit = 0;
  if (HasPending() && overflow_->GetAt(overflowIndex_++, &unit) == 0) {
    return OtChar(nullptr, unit, overflowCodeSet_, language_, OT_FORMAT_NATIVE);
  }
  return OtChar(position_, 0, codeSet_, language_, format_);
}

void OtStringIterator::SetOverflow(const OtWCharList* list, unsigned char codeSet) {
  overflow_ = list;
  overflowIndex_ = 0;
  overflowCodeSet_ = Or(codeSet, codeSet_);
}

void OtStringIterator::Transform(OtStringIterator& target, OtCharOperation& op) {
  while (!IsEOS()) {
    *target = op(**this, this);
    ++target;
    ++*this;
  }
  *target = **this;
  ++target;
  ++*this;
}

unsigned short OtStringIterator::GetNextOrder(unsigned short wantScript) {
  if (position_ == nullptr && overflow_ == nullptr) return 0;
  // Key text is read low byte first whatever the format says.
  const bool reversed = codeSet_ != OT_CS_ORDER && ot95::IsReversed(format_);
  const char* text = position_ != nullptr ? position_ : ot95::EmptyText();
  ot95::OrderWalk walk({text, ot95::kUnbounded, 0, codeSet_, language_, reversed});
  walk.script_ = script_;
  walk.pending_ = overflow_;
  walk.pendingIndex_ = overflowIndex_;
  walk.pendingCodeSet_ = overflowCodeSet_;
  const std::uint32_t key = walk.NextKey(wantScript != 0);
  if (position_ != nullptr) position_ += walk.position_ - text;
  overflow_ = walk.pending_;
  overflowIndex_ = static_cast<short>(walk.pendingIndex_);
  overflowCodeSet_ = walk.pendingCodeSet_;
  if (wantScript != 0) script_ = walk.script_;
  return ot95::OrderOfKey(key);
}
