/// From characters to collation orders: the walk, and the classes of order words.

#include "text/collation/orders.h"

#include "text/collation/wildcards.h"

namespace ot95 {
namespace {

/// The record that tailoring and contractions make of a character's. `following` is asked for the
/// characters behind it.
template <class Following>
const OtOrderRecord* Resolve(const OtOrderRecord* record, const OtLanguage* language,
                             Following&& following) {
  if (const OtOrderRecord* own = record->Tailored(language)) record = own;
  while (record->hasContractions()) {
    const OtOrderRecord* pair = record->Contracted(following.Peek());
    if (pair == nullptr) break;
    following.Take();
    record = pair;
  }
  return record;
}

}  // namespace

TextSpan TextSpan::Bounded(const char* text, std::size_t bytes, unsigned char codeSet,
                           unsigned char language, bool reversed) {
  if (text == nullptr) return Terminated(nullptr, codeSet, language, reversed);
  const std::size_t whole = IsWide(codeSet) ? bytes & ~std::size_t{1} : bytes;
  return {text, reinterpret_cast<std::uintptr_t>(text) + whole, whole, codeSet, language, reversed};
}

OrderWalk::OrderWalk(const TextSpan& span)
    : position_(span.text),
      end_(span.end),
      toUnicode_(nullptr),
      pending_(nullptr),
      pendingIndex_(0),
      pendingCodeSet_(0),
      codeSet_(span.codeSet),
      languageNumber_(span.language != OT_LANG_DEFAULT ? span.language
                                                       : OtLanguageContext::GetDefaultLanguage()),
      wide_(IsWide(span.codeSet)),
      reversed_(span.reversed) {
  language_ = OtLanguageContext::QueryLanguage(languageNumber_);
  const bool tailors = language_ != nullptr && language_->tailorsOrder != 0;
  work_ = OtOrderRecord::kAbsent | OtOrderRecord::kExpansion |
          (tailors ? OtOrderRecord::kTailoring : 0);
  if (codeSet_ == OT_CS_UNICODE && language_ != nullptr) {  // most texts
    table_ = &kUnicodeOrders;
    defaultScript_ = language_->script;
    mapped_ = false;
  } else {
    const OtCodeSet* set = OtLanguageContext::QueryCodeSet(codeSet_);
    table_ = set->orderTable;
    defaultScript_ = set->DefaultScript(languageNumber_);
    mapped_ = table_ == nullptr;
    if (mapped_) {
      table_ = &kUnicodeOrders;
      toUnicode_ = set->UnicodeValues();
    }
  }
  script_ = defaultScript_;
  direct_ = !mapped_ && !reversed_ && codeSet_ != OT_CS_ORDER;
}

/// A unit as the order table knows it.
unsigned short OrderWalk::MapToTable(unsigned short unit, unsigned char codeSet,
                                     bool mapped) const {
  if (!mapped || unit == 0) return unit;
  return OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)
      ->MapChar(unit, codeSet != 0 ? codeSet : OtLanguageContext::GetNativeCodeSet());
}

/// What stands behind the character that is being resolved: first what is pending, then the text.
struct OrderWalk::Following {
  OrderWalk& walk;
  bool mapped;

  unsigned short Peek() const {
    if (walk.pending_ == nullptr) return walk.CharacterAt(walk.position_);
    unsigned short unit = 0;
    walk.pending_->GetAt(walk.pendingIndex_, &unit);
    return walk.MapToTable(unit, walk.pendingCodeSet_, mapped);
  }
  void Take() {
    if (walk.pending_ == nullptr) {
      walk.position_ += CharWidth(walk.codeSet_);
    } else {
      ++walk.pendingIndex_;
    }
  }
};

/// Whether the character at `next` has to be looked up among those that follow a head, or may be a
/// mark that has its place before one of the head's own.
inline bool OrderWalk::MayContract(const OtOrderRecord& record, const char* next) const {
  if ((record.flags & OtOrderRecord::kLowFollowers) != 0) return true;
  if (!wide_) return false;  // no byte is a combining mark
  return reinterpret_cast<std::uintptr_t>(next) < end_ && LoadWide(next) >= OT_FIRST_MARK;
}

/// Most characters have a record that is the whole answer.
std::uint32_t OrderWalk::NextKey(bool wantScript) {
  if (!direct_ || !wantScript || pending_ != nullptr ||
      reinterpret_cast<std::uintptr_t>(position_) >= end_) {
    return NextKeyAtLength(wantScript);
  }
  const OtOrderRecord& record = wide_ ? table_->AtWide(LoadWide(position_))
                                      : table_->AtByte(static_cast<unsigned char>(*position_));
  const char* const next = position_ + (wide_ ? 2 : 1);
  constexpr unsigned kWithNext = OtOrderRecord::kContractions | OtOrderRecord::kCombines;
  if ((record.flags & work_) != 0 ||
      ((record.flags & kWithNext) != 0 && MayContract(record, next))) {
    return NextKeyAtLength(true);
  }
  const std::uint32_t key = record.Key(defaultScript_);
  if (key == 0) return 0;
  script_ = static_cast<unsigned char>(key >> 24);
  position_ = next;
  return key;
}

std::uint32_t OrderWalk::NextKeyAtLength(bool wantScript) {
  if (pending_ == &kMarksPending) return NextOfRun(wantScript);
  if (pending_ != nullptr || codeSet_ == OT_CS_ORDER) return NextPending(wantScript);
  return NextCharacterKey<true>(wantScript);
}

std::uint32_t OrderWalk::NextKeyAsItStands(bool wantScript) {
  return NextCharacterKey<false>(wantScript);
}

/// @tparam ordersMarks whether marks are met in canonical order.
template <bool ordersMarks>
[[gnu::always_inline]] inline std::uint32_t OrderWalk::NextCharacterKey(bool wantScript) {
  constexpr unsigned kWithNext = OtOrderRecord::kContractions | OtOrderRecord::kCombines;
  const std::ptrdiff_t width = wide_ ? 2 : 1;
  unsigned short character = CharacterAt(position_);
  const OtOrderRecord* record = &table_->At(character);
  while (record->hasExpansion() && record->WeighsNothing()) [[unlikely]] {
      position_ += width;
      character = CharacterAt(position_);
      record = &table_->At(character);
    }
  if (character == 0) return 0;
  if (record->absent()) {
    position_ += width;
    return KeyOfUnknown(character, wantScript);
  }
  const char* const start = position_;
  position_ += width;
  const unsigned flags = record->flags;
  if (const OtOrderRecord* own = record->Tailored(language_)) record = own;
  if (((flags | record->flags) & kWithNext) != 0) {
    unsigned short next = CharacterAt(position_);
    if (ordersMarks && next >= OT_FIRST_MARK &&
        BeginsRun(flags | record->hasContractions(), character, position_)) {
      return BeginRun(start, start, wantScript);
    }
    while (const OtOrderRecord* pair = record->Contracted(next)) {
      const char* const place = position_;
      position_ += width;
      const unsigned short third = CharacterAt(position_);
      if (ordersMarks && third >= OT_FIRST_MARK) {
        const OtOrderRecord& follower = table_->At(next);
        if (!follower.IsMark() &&
            BeginsRun(follower.flags | pair->hasContractions(), next, position_)) {
          return BeginRun(start, place, wantScript);
        }
      }
      record = pair;
      next = third;
    }
  }
  if (record->hasExpansion()) {
    // The walk stays on the last character until all of its words are delivered.
    position_ -= wide_ ? 2 : 1;
    pending_ = record->expansion();
    pendingIndex_ = 0;
    pendingCodeSet_ = OT_CS_ORDER;
  }
  return KeyOfRecord(record, defaultScript_, wantScript);
}

std::uint32_t OrderWalk::KeyOfRecord(const OtOrderRecord* record, unsigned char defaultScript,
                                     bool wantScript) {
  if (wantScript) {
    const unsigned char* script = record->scriptRef();
    script_ = script != nullptr ? *script : defaultScript;
  }
  std::uint32_t key = record->key;
  if (record->hasTailoring() && language_ != nullptr) key = RankedKey(key, *language_);
  return ComposeOrderKey(OrderOfKey(key), script_);
}

/// A character without a record orders by its value, above all alphabets.
std::uint32_t OrderWalk::KeyOfUnknown(unsigned short character, bool wantScript) {
  const bool keepsScript =
      character >= 0xfff0 || character == AsteriskWord() || character == QuestionWord();
  if (wantScript && !keepsScript) script_ = kBeyondAlphabets;
  return ComposeOrderKey(character, script_);
}

/// The next word of a text that consists of order words.
std::uint32_t OrderWalk::NextKeyWord() {
  const unsigned short word = reinterpret_cast<std::uintptr_t>(position_) >= end_
                                  ? static_cast<unsigned short>(0)
                                  : LoadUnit(position_, true, reversed_);
  if (word != 0 && pending_ == nullptr) position_ += 2;
  return ComposeOrderKey(word, script_);
}

std::uint32_t OrderWalk::NextPending(bool wantScript) {
  if (pending_ != nullptr && pendingIndex_ >= pending_->count) {
    pending_ = nullptr;
    // An exhausted list is dropped where it is seen.
    if (codeSet_ != OT_CS_ORDER) return NextKey(wantScript);
  }
  if (codeSet_ == OT_CS_ORDER) return NextKeyWord();
  if (pendingCodeSet_ != OT_CS_ORDER) return NextPendingCharacter(wantScript);
  unsigned short word = 0;
  pending_->GetAt(pendingIndex_++, &word);
  LeaveCharacter();
  return ComposeOrderKey(word, script_);
}

/// Pending characters, not words, have been put there from outside.
std::uint32_t OrderWalk::NextPendingCharacter(bool wantScript) {
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(pendingCodeSet_);
  const bool mapped = set->orderTable == nullptr;
  const OtOrderTable& table = mapped ? kUnicodeOrders : *set->orderTable;
  unsigned short character = 0;
  pending_->GetAt(pendingIndex_++, &character);
  character = MapToTable(character, pendingCodeSet_, mapped);
  if (character == 0) return 0;
  const OtOrderRecord* record = table.Find(character);
  if (record == nullptr) {
    LeaveCharacter();
    return KeyOfUnknown(character, wantScript);
  }
  record = Resolve(record, language_, Following{*this, mapped});
  const std::uint32_t key = KeyOfRecord(record, set->DefaultScript(languageNumber_), wantScript);
  if (record->hasExpansion()) {
    pending_ = record->expansion();
    pendingIndex_ = 0;
    pendingCodeSet_ = OT_CS_ORDER;
  } else {
    LeaveCharacter();
  }
  return key;
}

/// Behind the last of what was pending at a character, the text goes on behind that character.
void OrderWalk::LeaveCharacter() {
  if (pendingIndex_ < pending_->count) return;
  pending_ = nullptr;
  if (CharacterAt(position_) != 0) position_ += wide_ ? 2 : 1;
}

unsigned short OrderOfUnit(unsigned short unit, unsigned char codeSet) {
  const OtOrderTable* table = OtLanguageContext::QueryCodeSet(codeSet)->orderTable;
  if (table == nullptr) {
    table = &kUnicodeOrders;
    const unsigned char from = codeSet != 0 ? codeSet : OtLanguageContext::GetNativeCodeSet();
    unit = OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)->MapChar(unit, from);
  }
  const OtOrderRecord* record = table->Find(unit);
  return record != nullptr ? record->order() : unit;
}

}  // namespace ot95

int OtExtractSymbolFromOrder(unsigned short order, unsigned short& symbol) {
  if (order < ot95::kFirstSymbol || order >= ot95::kFirstDigit) return OT_ERR_BAD_ARGUMENT;
  symbol = static_cast<unsigned short>(order - ot95::kFirstSymbol);
  return 0;
}

int OtExtractDigitFromOrder(unsigned short order, unsigned short& digit, unsigned short& expand) {
  if (order < ot95::kFirstDigit || order >= ot95::kFirstLetter) return OT_ERR_BAD_ARGUMENT;
  digit = static_cast<unsigned short>(((order & 0xfffe) - ot95::kFirstDigit) / 10);
  expand = order & 1;
  return 0;
}

int OtExtractLetterFromOrder(unsigned short order, unsigned short& caseField,
                             unsigned short& accent, unsigned short& letter,
                             unsigned short& extension) {
  if (order >= ot95::kFirstHan) return OT_ERR_BAD_ARGUMENT;
  caseField = order >> 12 & 3;
  accent = order >> 7 & 0x1f;
  letter = order >> 2 & 0x1f;
  extension = order & 3;
  return 0;
}
