/// Texts run through an operation on each character: the case of letters, and whatever a caller
/// has in mind.

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "ot95/text.h"
#include "text/casechange.h"
#include "text/units.h"

namespace {

/// A text in the making. A capital may be longer than its letter, so it grows when it has to; in
/// the end it is exactly as large as what was written.
class GrowingText {
 public:
  explicit GrowingText(std::size_t bytes) : data_(ot95::NewText(bytes)) {
    if (data_ != nullptr) size_ = bytes;
  }
  ~GrowingText() { delete[] data_; }
  GrowingText(const GrowingText&) = delete;
  GrowingText& operator=(const GrowingText&) = delete;

  explicit operator bool() const { return data_ != nullptr; }

  char* At(std::size_t place) { return data_ + place; }

  /// Makes room for at least `bytes` bytes, of which `used` hold text; false without memory.
  bool Reserve(std::size_t bytes, std::size_t used) {
    if (bytes <= size_) return true;
    return Resize(std::max(bytes, 2 * size_), used);
  }

  char* Release(std::size_t used) {
    if (used != size_) Resize(used, used);
    return std::exchange(data_, nullptr);
  }

 private:
  bool Resize(std::size_t bytes, std::size_t used) {
    char* fresh = ot95::NewText(bytes);
    if (fresh == nullptr) return false;
    if (used != 0) std::memcpy(fresh, data_, used);
    delete[] std::exchange(data_, fresh);
    size_ = bytes;
    return true;
  }

  char* data_;
  std::size_t size_ = 0;
};

/// The other case of the characters met last, in one code set and language. Names of one kind use
/// few characters: nearly every one is found here.
class CaseCache {
 public:
  /// Forgets everything if it was about another operation, code set or language.
  void Select(ot95::CaseOp op, unsigned char codeSet, unsigned char language) {
    if (filled_ && op == op_ && codeSet == codeSet_ && language == language_) return;
    filled_ = true;
    op_ = op;
    codeSet_ = codeSet;
    language_ = language;
    plainAscii_ = codeSet == OT_CS_UNICODE && Ascii('i') == Ascii('I');
    // No entry may seem to be that of its own place.
    for (std::uint32_t i = 0; i < kEntries; ++i) entries_[i] = ~i << 16;
  }

  /// Gives four two-byte characters their other case if they are ASCII, with letters that change as
  /// everywhere but in Turkish, and none is zero; otherwise false.
  bool ChangeFour(char* place) const {
    std::uint64_t word;
    std::memcpy(&word, place, sizeof word);
    // A unit of zero borrows from its high bits, which no other ASCII unit does.
    if (((word | (word - kEach)) & kEach * 0xff80) != 0 || !plainAscii_) return false;
    const std::uint64_t first = op_ == ot95::CaseOp::kUpper ? 'a' : 'A';
    const std::uint64_t fromFirst = word + kEach * (0x80 - first);
    const std::uint64_t fromBehindLast = word + kEach * (0x80 - first - 26);
    word ^= (fromFirst & ~fromBehindLast & kEach * 0x80) >> 2;
    std::memcpy(place, &word, sizeof word);
    return true;
  }

  bool Find(std::uint16_t unit, std::uint16_t& other) const {
    const std::uint32_t entry = entries_[unit % kEntries];
    other = static_cast<std::uint16_t>(entry);
    return entry >> 16 == unit;
  }

  /// Whether a character's small form depends on its place.
  bool IsSigma(std::uint16_t unit) const {
    return op_ == ot95::CaseOp::kLower && ot95::IsCapitalSigma(unit, codeSet_);
  }
  ot95::InWord PartOfWord(std::uint16_t unit) const {
    return ot95::PartOfWord(unit, codeSet_, language_);
  }
  std::uint16_t SmallSigma(bool atEnd) const { return ot95::SmallSigma(codeSet_, atEnd); }

  /// Asks the tables; a character with a longer capital isn't kept.
  ot95::CaseChange Ask(std::uint16_t unit) {
    const ot95::CaseChange change = ot95::ChangeCase(op_, unit, codeSet_, language_);
    if (change.tail == nullptr) {
      entries_[unit % kEntries] = std::uint32_t{unit} << 16 | change.unit;
    }
    return change;
  }

 private:
  static constexpr std::uint64_t kEach = 0x0001000100010001u;  // 1 in each of four units
  static constexpr std::size_t kEntries = 256;

  std::uint16_t Ascii(std::uint16_t letter) const {
    return ot95::ChangeCase(op_, letter, codeSet_, language_).unit;
  }

  std::array<std::uint32_t, kEntries> entries_;
  bool filled_ = false;
  bool plainAscii_ = false;
  ot95::CaseOp op_ = ot95::CaseOp::kUpper;
  unsigned char codeSet_ = 0;
  unsigned char language_ = 0;
};

thread_local CaseCache caseCache;

/// Kept apart: where the cache is known to be the thread's own, its address is asked for again and
/// again.
OT95_KEPT_APART CaseCache& CacheOfThread() {
  return caseCache;
}

/// The small sigma of a place: the final one if a letter stands before it in its word and none
/// behind.
template <bool kWide>
std::uint16_t SigmaAt(const CaseCache& cache, const char* text, const char* at) {
  constexpr std::ptrdiff_t kWidth = kWide ? 2 : 1;
  auto before = ot95::InWord::kPassed, behind = ot95::InWord::kPassed;
  for (const char* place = at; before == ot95::InWord::kPassed;) {
    if (place == text) break;
    before = cache.PartOfWord(ot95::LoadUnit(place -= kWidth, kWide));
  }
  for (const char* place = at; behind == ot95::InWord::kPassed;) {
    behind = cache.PartOfWord(ot95::LoadUnit(place += kWidth, kWide));
  }
  return cache.SmallSigma(before == ot95::InWord::kLetter && behind != ot95::InWord::kLetter);
}

/// Changes characters where they stand, up to the terminator or to the first whose other case is
/// longer. The first `known` bytes may be looked at in words. @return how many were changed.
template <bool kWide>
std::size_t ChangeInPlace(CaseCache& cache, char* const text, std::size_t known) {
  constexpr std::size_t kWidth = kWide ? 2 : 1;
  constexpr std::ptrdiff_t kFour = 4 * kWidth;
  const char* const end = text + known;
  const char* nextFour = text;  // where words are worth another try
  for (char* at = text;; at += kWidth) {
    if constexpr (kWide) {
      if (at >= nextFour) {
        while (end - at >= kFour && cache.ChangeFour(at)) at += kFour;
        nextFour = at + kFour;
      }
    }
    const std::uint16_t unit = ot95::LoadUnit(at, kWide);
    std::uint16_t other;
    if (!cache.Find(unit, other)) {
      const std::size_t done = static_cast<std::size_t>(at - text) / kWidth;
      if (unit == 0) return done;
      if (cache.IsSigma(unit)) {
        other = SigmaAt<kWide>(cache, text, at);
      } else {
        const ot95::CaseChange change = cache.Ask(unit);
        if (change.tail != nullptr) return done;
        other = change.unit;
      }
    }
    ot95::StoreUnit(at, other, kWide);
  }
}

/// Writes a text anew, with room for capitals that are longer than their letters.
template <bool kWide>
class CaseWriter {
 public:
  CaseWriter(CaseCache& cache, std::size_t length) : cache_(cache), text_((length + 1) * kWidth) {}

  /// Gives `string` its other case; the first `done` of its characters have it already.
  void Rewrite(OtString& string, std::size_t done, std::size_t length) {
    if (!text_) return;
    std::size_t at = done * kWidth;
    const char* source = string.StrGet();
    const char* const end = source + length * kWidth;
    if (done != 0) std::memcpy(text_.At(0), source, at);
    for (source += at; source != end; source += kWidth) {
      const std::uint16_t unit = ot95::LoadUnit(source, kWide);
      std::uint16_t other;
      if (cache_.Find(unit, other)) {
        at = Put(other, at);
      } else if ((at = PutAsked(unit, at, static_cast<std::size_t>(end - source))) == 0) {
        return;
      }
    }
    at = Put(0, at);
    ot95::TextAccess::Adopt(string, text_.Release(at), at);
  }

 private:
  static constexpr std::size_t kWidth = kWide ? 2 : 1;

  std::size_t Put(std::uint16_t unit, std::size_t at) {
    ot95::StoreUnit(text_.At(at), unit, kWide);
    return at + kWidth;
  }

  /// What follows a capital is a character like the others: if it has a longer capital too, that
  /// takes the place of what still waits. @return the place behind; 0 without memory.
  std::size_t PutAsked(std::uint16_t unit, std::size_t at, std::size_t bytesLeft) {
    ot95::CaseChange change = cache_.Ask(unit);
    const OtWCharList* pending = nullptr;
    std::int32_t next = 0;
    for (;;) {
      if (change.tail != nullptr) {
        pending = change.tail;
        next = 0;
        const std::size_t more = static_cast<std::size_t>(pending->count) + 1;
        if (!text_.Reserve(at + bytesLeft + more * kWidth, at)) return 0;
      }
      at = Put(change.unit, at);
      if (pending == nullptr || next >= pending->count) return at;
      change = cache_.Ask(pending->begin()[next++]);
    }
  }

  CaseCache& cache_;
  GrowingText text_;
};

/// A buffer of the right size stays, which saves more time than the change itself takes.
template <bool kWide>
void ChangeText(CaseCache& cache, OtString& string, char* text) {
  constexpr std::size_t kWidth = kWide ? 2 : 1;
  const std::size_t done = ChangeInPlace<kWide>(cache, text, string.MemLen());
  const bool whole = ot95::LoadUnit(text + done * kWidth, kWide) == 0;
  if (whole && string.MemLen() == static_cast<unsigned short>((done + 1) * kWidth)) return;
  const std::size_t length = ot95::TextAccess::Length(string);
  CaseWriter<kWide>(cache, length).Rewrite(string, done, length);
}

void ChangeCase(ot95::CaseOp op, OtString& string) {
  char* const text = string.StrGet();
  if (text == ot95::EmptyText()) return;
  unsigned char language = string.GetLanguageCode();
  if (language == OT_LANG_DEFAULT) language = OtString::GetDefaultLanguage();
  CaseCache& cache = CacheOfThread();
  cache.Select(op, string.GetCodeSetCode(), language);
  ot95::IsWide(string.GetCodeSetCode()) ? ChangeText<true>(cache, string, text)
                                        : ChangeText<false>(cache, string, text);
}

}  // namespace

std::size_t ot95::ChangeCaseInPlace(CaseOp op, unsigned char language, char* text,
                                    std::size_t units) {
  CaseCache& cache = CacheOfThread();
  cache.Select(op, OT_CS_UNICODE, language);
  return ChangeInPlace<true>(cache, text, 2 * units);
}

OtChar OtToUpper::operator()(OtChar c, OtStringIterator* source) {
  return c.ToUpper(source);
}

OtChar OtToLower::operator()(OtChar c, OtStringIterator* source) {
  return c.ToLower(source);
}

// The same as by Transform with these operations, without asking anew for every character.
OtString& OtString::ToUpper() {
  ChangeCase(ot95::CaseOp::kUpper, *this);
  return *this;
}

OtString& OtString::ToLower() {
  ChangeCase(ot95::CaseOp::kLower, *this);
  return *this;
}

OtString& OtString::Transform(OtCharOperation& op) {
  if (buffer_ == nullptr) return *this;
  const std::size_t width = ot95::CharWidth(codeSet_);
  GrowingText text(2 * (Length() + 1) * width);
  if (!text) return *this;
  std::size_t at = 0;
  OtStringIterator source(*this);
  OtStringIterator target(text.At(0), codeSet_, language_, OT_FORMAT_NATIVE);
  const auto put = [&](const OtChar& c) {
    if (!text.Reserve(at + 2 * width, at)) return;
    target.position_ = text.At(at);
    *target = c;
    at += width;
  };
  while (!source.IsEOS()) {
    put(op(*source, &source));
    ++source;
  }
  put(*source);
  Adopt(text.Release(at), at);
  return *this;
}
