#ifndef OT95_SRC_TEXT_COLLATION_PLAINKEYS_H
#define OT95_SRC_TEXT_COLLATION_PLAINKEYS_H

/// @file
/// The short way from characters to keys, for those whose record is the whole answer. Whoever takes
/// it needs the long one for all others.

#include "text/collation/alikeunits.h"
#include "text/collation/walk.h"

namespace ot95 {

/// What was read of a text.
struct PlainStretch {
  const char* end;         ///< Behind the last character that was taken.
  std::uint32_t last = 0;  ///< Its key; 0 if none was taken.
  bool all = false;        ///< The text ends here.
};

/// Reads keys from texts of one code set and language.
template <class CodeUnit>
class PlainKeys {
 public:
  using Unit = CodeUnit;

  /// @param toUnicode of a one-byte set; null for Unicode.
  /// @param language null if nobody knows it.
  PlainKeys(const std::uint16_t* toUnicode, const OtLanguage* language, unsigned char defaultScript)
      : toUnicode_(toUnicode),
        language_(language),
        tailored_(language != nullptr && language->tailorsOrder != 0 ? kTailoredKey : 0),
        script_(std::uint32_t{defaultScript} << 24) {}

  /// The Unicode value at a place, 0 at the end.
  unsigned ValueAt(const char* place, std::uintptr_t end) const {
    if (reinterpret_cast<std::uintptr_t>(place) >= end) return 0;
    const UnitValue<Unit> unit = LoadAs<Unit>(place);
    return sizeof(Unit) == 1 ? toUnicode_[unit] : unit;
  }
  /// The key of a character of a walk that goes forward; 0 for one that takes the long way, and for
  /// the end. @param next the value behind it; anything behind the end.
  std::uint32_t Key(unsigned value, unsigned next) const {
    const std::uint32_t key = value < kPlainKeys ? keys_[value] : 0;
    if (key == 0 || (next >= OT_FIRST_MARK && !IsNoFollower(next))) return 0;
    const bool leaves =
        (key & tailored_) == 0 ||
        language_->Leaves(static_cast<unsigned short>(value), static_cast<unsigned short>(next));
    return leaves ? Whole(key) : 0;
  }
  std::uint32_t KeyAt(const char* place, std::uintptr_t end) const {
    const unsigned value = ValueAt(place, end);
    return value == 0 ? 0 : Key(value, ValueAt(place + sizeof(Unit), end));
  }
  /// The key of a character whatever is before it, if nothing behind it is a mark.
  std::uint32_t KeyAnywhere(unsigned value) const {
    const std::uint32_t key = PlainKey(static_cast<unsigned short>(value));
    return key == 0 || (key & tailored_) != 0 ? 0 : Whole(key);
  }

  /// How two texts sort that begin with letters of different rank, as most do that have nothing to
  /// do with each other; 0 for all others. @param letter2 set to the key of the second text's.
  [[gnu::always_inline]] inline int SignOfFirstLetters(const TextSpan& text1, const TextSpan& text2,
                                                       std::uint32_t& letter2) const {
    const unsigned value1 = ValueAt(text1.text, text1.end);
    const unsigned value2 = ValueAt(text2.text, text2.end);
    if (value1 == value2 || value1 >= kPlainKeys || value2 >= kPlainKeys) return 0;
    const std::uint32_t key1 = kOrderTables.plainKeys[value1];
    const std::uint32_t key2 = kOrderTables.plainKeys[value2];
    if ((key1 & key2 & kLetterKey) == 0 || (key1 ^ key2) < 2 * kTailoredKey) return 0;
    if (((key1 | key2) & tailored_) != 0) return 0;
    const unsigned next1 = ValueAt(text1.text + sizeof(Unit), text1.end);
    const unsigned next2 = ValueAt(text2.text + sizeof(Unit), text2.end);
    if ((next1 | next2) >= OT_FIRST_MARK && !(IsNoFollower(next1) && IsNoFollower(next2))) return 0;
    letter2 = key2;
    return key1 < key2 ? -1 : 1;
  }

  /// Hands on the keys from a place on, until one takes the long way or `take` declines.
  template <class Take>
  [[gnu::always_inline]] inline PlainStretch Run(const char* place, std::uintptr_t end,
                                                 Take&& take) const {
    const PlainKeys keys = *this;  // what `take` writes can't reach it
    const std::uint32_t unlike = 0xff000000 | tailored_;
    PlainStretch stretch{place};
    unsigned value = keys.ValueAt(place, end);
    if (value >= kPlainKeys) return stretch;
    while (value != 0) {
      const char* const nextPlace = stretch.end + sizeof(Unit);
      const unsigned next = keys.ValueAt(nextPlace, end);
      constexpr UnitRange kGreekAndCyrillic = {0x370, 0x482};
      if (next >= OT_FIRST_MARK && !kGreekAndCyrillic.Has(next)) [[unlikely]] {
        if (!IsNoFollower(next)) return stretch;
      }
      std::uint32_t key = keys.keys_[value];
      if (((key ^ keys.script_) & unlike) == 0) [[likely]] {  // a letter of the language's alphabet
        key &= ~kTailoredKey;
      } else {
        key = keys.Key(value, next);
        if (key == 0) return stretch;
      }
      if (!take(key)) return stretch;
      stretch.last = key;
      stretch.end = nextPlace;
      value = next;
    }
    stretch.all = true;
    return stretch;
  }

 private:
  /// With a script byte; without a branch, as it would be hard to foresee.
  std::uint32_t Whole(std::uint32_t key) const {
    return (key & ~kTailoredKey) | (script_ & (key < 0x1000000 ? 0xff000000 : 0));
  }

  const std::uint32_t* keys_ = kOrderTables.plainKeys;
  const std::uint16_t* toUnicode_;
  const OtLanguage* language_;
  std::uint32_t tailored_;  ///< In keys that the language may not share.
  std::uint32_t script_;
};

/// The language of a text, null if nobody knows it.
inline const OtLanguage* LanguageOf(const TextSpan& text) {
  return OtLanguageContext::QueryLanguage(
      text.language != OT_LANG_DEFAULT ? text.language : OtLanguageContext::GetDefaultLanguage());
}

/// Hands on the keys of a text's first characters without setting up a walk, which goes on where
/// they end. A text in a language that nobody knows has none.
template <class Take>
[[gnu::always_inline]] inline PlainStretch RunFromStart(const TextSpan& text, Take&& take) {
  const OtLanguage* language = LanguageOf(text);
  if (language == nullptr) return {text.text};
  const auto run = [&](const auto& keys) { return keys.Run(text.text, text.end, take); };
  if (text.codeSet == OT_CS_UNICODE) {
    return text.reversed ? run(PlainKeys<TurnedUnit>(nullptr, language, language->script))
                         : run(PlainKeys<std::uint16_t>(nullptr, language, language->script));
  }
  if (IsWide(text.codeSet)) return {text.text};
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(text.codeSet);
  return run(PlainKeys<std::uint8_t>(set->UnicodeValues(), language, language->script));
}

inline void OrderWalk::GoOnBehind(const PlainStretch& stretch) {
  position_ = stretch.end;
  if (stretch.last != 0) script_ = static_cast<unsigned char>(stretch.last >> 24);
}

template <class Take>
void OrderWalk::TakePlain(Take&& take) {
  if (!plain_ || pending_ != nullptr) return;
  const auto run = [&](const auto& keys) { GoOnBehind(keys.Run(position_, end_, take)); };
  if (!wide_) return run(PlainKeys<std::uint8_t>(plainMap_, language_, defaultScript_));
  if (reversed_) return run(PlainKeys<TurnedUnit>(nullptr, language_, defaultScript_));
  run(PlainKeys<std::uint16_t>(nullptr, language_, defaultScript_));
}

}  // namespace ot95

#endif
