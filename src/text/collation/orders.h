#ifndef OT95_SRC_TEXT_COLLATION_ORDERS_H
#define OT95_SRC_TEXT_COLLATION_ORDERS_H

/// @file
/// Collation orders. A text becomes a stream of 16-bit order words, each with a script byte that
/// ranks alphabets against each other; word and byte together make a comparable key. All that
/// compares, hashes or indexes text walks this stream.

#include <cstddef>
#include <cstdint>

#include "ot95/text.h"
#include "text/units.h"

namespace ot95 {

// Classes of order words, by their range.
inline constexpr unsigned short kFirstSymbol = 0x50;
inline constexpr unsigned short kFirstDigit = 0x3f00;
inline constexpr unsigned short kFirstLetter = 0x4000;
inline constexpr unsigned short kFirstHan = 0x8000;

constexpr bool IsLetterWord(unsigned order) {
  return order >= kFirstLetter && order < kFirstHan;
}

/// A combining mark that isn't part of a letter's word.
constexpr bool IsMarkWord(unsigned order) {
  return order >= OT_FIRST_MARK_ORDER && order <= OT_LAST_MARK_ORDER;
}

/// The script byte of characters beyond every alphabet.
inline constexpr unsigned char kBeyondAlphabets = 0x14;
/// In the script byte of a key: the key was ended by a change of script.
inline constexpr unsigned char kMixedScripts = 0x80;

// What parts of a key count on the levels of comparison.
inline constexpr std::uint32_t kPrimaryMask = 0xffffff80;
inline constexpr std::uint32_t kCaseMask = 0xffffffe0;    ///< Primary and case.
inline constexpr std::uint32_t kAccentMask = 0xffffff9f;  ///< Primary and accent.

/// The comparable key of an order: in a letter's, the letter outranks accent and case.
constexpr std::uint32_t ComposeOrderKey(unsigned short order, unsigned char script) {
  if (order == 0) return 0;
  const std::uint32_t head = static_cast<std::uint32_t>(script) << 24;
  const std::uint32_t word = order;
  if (script == kBeyondAlphabets || order >= kFirstHan || order < kFirstLetter) {
    return head | word << 8;
  }
  return head | (word & 0x407f) << 8 | (word >> 7 & 0x7f);
}

/// The order word in a key.
constexpr unsigned short OrderOfKey(std::uint32_t key) {
  return static_cast<unsigned short>((key >> 8 & 0xffff) | (key & 0x7f) << 7);
}

/// The order of a character alone, without contractions and tailoring.
unsigned short OrderOfUnit(unsigned short unit, unsigned char codeSet);

/// No byte of the text is out of bounds: it is trusted to be terminated.
inline constexpr std::uintptr_t kUnbounded = UINTPTR_MAX;

/// A text as comparison and hash read it.
struct TextSpan {
  const char* text;
  std::uintptr_t end;     ///< Address that counts as a terminator; kUnbounded: there is a real one.
  std::size_t readable;   ///< Bytes at `text` that may be read, whatever they hold; 0: unknown.
  unsigned char codeSet;  ///< Taken as it stands: 0xff is no default here.
  unsigned char language;  ///< 0xff is the default.
  bool reversed;           ///< Two-byte units have the other byte first.

  /// A terminated text; null is an empty one.
  static TextSpan Terminated(const char* text, unsigned char codeSet, unsigned char language,
                             bool reversed = false) {
    return {text != nullptr ? text : EmptyText(), kUnbounded, 0, codeSet, language, reversed};
  }
  /// The text of `bytes` bytes, or up to a terminator before; an odd last byte is dropped.
  static TextSpan Bounded(const char* text, std::size_t bytes, unsigned char codeSet,
                          unsigned char language, bool reversed);
  static TextSpan Of(const OtString& text) {
    // A text beyond the limit of strings is longer than its member says, never shorter.
    return {text.StrGet(),          kUnbounded, text.MemLen(), text.GetCodeSetCode(),
            text.GetLanguageCode(), false};
  }

  /// Whether the text is known to end within its readable bytes: one beyond the limit of strings
  /// doesn't.
  bool EndsInSight() const {
    if (end != kUnbounded) return true;
    const std::size_t width = CharWidth(codeSet);
    return readable >= width && LoadUnit(text + readable - width, IsWide(codeSet)) == 0;
  }

  bool IsNullValue() const {
    return language == OT_LANG_NULL || (codeSet == OT_CS_ORDER && language == 0);
  }
  /// The unit at a place, 0 behind the end.
  unsigned short UnitAt(const char* place) const {
    return reinterpret_cast<std::uintptr_t>(place) >= end
               ? static_cast<unsigned short>(0)
               : LoadUnit(place, IsWide(codeSet), reversed);
  }
};

/// In the place of what is pending while a walk is inside a run of combining marks.
extern const OtWCharList kMarksPending;

/// The walk from characters to keys. Where two or more combining marks follow each other, those
/// that a composed letter has in it included, they are met in canonical order: canonically equal
/// texts have the same keys. A run of more than 30 marks is taken as it stands. Cheap to copy;
/// allocates nothing.
class OrderWalk {
 public:
  OrderWalk() = default;  ///< Not a walk yet: room for a copy.
  explicit OrderWalk(const TextSpan& span);
  /// Over another text of the code set and language that `like` began with.
  OrderWalk(const OrderWalk& like, const TextSpan& span) : OrderWalk(like) {
    position_ = span.text;
    end_ = span.end;
  }

  /// The key of the next order, 0 at the end. Characters without a script byte of their own, and
  /// all if `wantScript` is false, take the one of the walk.
  std::uint32_t NextKey(bool wantScript);

  /// At the end of the text, with nothing pending.
  bool AtEnd() const { return pending_ == nullptr && CharacterAt(position_) == 0; }
  /// Nothing of an expansion is pending: the walk stands between two characters.
  bool BetweenCharacters() const { return pending_ == nullptr; }
  const char* position() const { return position_; }
  unsigned char script() const { return script_; }
  /// Goes on as behind a character of a script, which others take from it.
  void SetScript(unsigned char script) { script_ = script; }

 private:
  friend class ::OtStringIterator;
  friend class LevelWalk;
  struct Following;
  class Run;

  unsigned short CharacterAt(const char* place) const;
  bool MayContract(const OtOrderRecord& record, const char* next) const;
  [[gnu::noinline]] std::uint32_t NextKeyAtLength(bool wantScript);
  template <bool ordersMarks>
  std::uint32_t NextCharacterKey(bool wantScript);
  std::uint32_t NextKeyAsItStands(bool wantScript);
  bool BeginsRun(unsigned flags, unsigned short character, const char* next) const;
  std::uint32_t BeginRun(const char* start, const char* place, bool wantScript);
  std::uint32_t NextOfRun(bool wantScript);
  unsigned short MapToTable(unsigned short unit, unsigned char codeSet, bool mapped) const;
  std::uint32_t KeyOfRecord(const OtOrderRecord* record, unsigned char defaultScript,
                            bool wantScript);
  std::uint32_t KeyOfUnknown(unsigned short character, bool wantScript);
  std::uint32_t NextKeyWord();
  std::uint32_t NextPending(bool wantScript);
  std::uint32_t NextPendingCharacter(bool wantScript);
  void LeaveCharacter();

  const char* position_;
  std::uintptr_t end_;
  const OtOrderTable* table_;
  const std::uint16_t* toUnicode_;  // null: characters are the table's own, or two bytes wide
  const OtLanguage* language_;
  const OtWCharList* pending_;
  std::int32_t pendingIndex_;
  unsigned char pendingCodeSet_;
  unsigned char codeSet_;
  unsigned char languageNumber_;
  unsigned char defaultScript_;
  unsigned char script_;
  bool wide_;
  bool reversed_;
  bool mapped_;
  bool direct_;        // units are characters of the table, in the machine's order
  std::uint8_t work_;  // flags of records that aren't the whole answer, contractions apart
};

/// The character at a place as the order table knows it, 0 at the end.
inline unsigned short OrderWalk::CharacterAt(const char* place) const {
  if (reinterpret_cast<std::uintptr_t>(place) >= end_) return 0;
  if (!wide_) {
    const unsigned char byte = static_cast<unsigned char>(*place);
    return toUnicode_ != nullptr ? toUnicode_[byte] : byte;
  }
  const unsigned short unit = LoadUnit(place, true, reversed_);
  return mapped_ ? MapToTable(unit, codeSet_, true) : unit;
}

}  // namespace ot95

#endif
