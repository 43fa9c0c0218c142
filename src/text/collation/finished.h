#ifndef OT95_SRC_TEXT_COLLATION_FINISHED_H
#define OT95_SRC_TEXT_COLLATION_FINISHED_H

/// @file
/// Texts as the loops over finished keys read them: units of one or two bytes, in either order, up
/// to a terminator or an end.

#include <type_traits>

#include "ot95/oin_keys.h"
#include "text/collation/orders.h"

namespace ot95 {

/// A two-byte unit of a text whose units have the other byte first.
enum class TurnedUnit : std::uint16_t {};

/// A unit in the machine's order.
template <class Unit>
[[gnu::always_inline]] inline unsigned LoadAs(const char* place) {
  if constexpr (sizeof(Unit) == 1) {
    return static_cast<unsigned char>(*place);
  } else if constexpr (std::is_same_v<Unit, TurnedUnit>) {
    return SwapBytes(LoadWide(place));
  } else {
    return LoadWide(place);
  }
}

/// The same, 0 at the end of a text.
template <class Unit>
[[gnu::always_inline]] inline unsigned UnitOf(const char* place, std::uintptr_t end) {
  return reinterpret_cast<std::uintptr_t>(place) < end ? LoadAs<Unit>(place) : 0;
}

/// The keys of the units of a text.
struct WideKeys {
  const FinishedKeys* keys;
  std::uint32_t At(unsigned unit) const { return keys->At(unit); }
  /// Whether a unit has a key at all, which may have to be made. Ask if a key is flagged.
  bool Make(unsigned unit) const { return keys->Make(unit); }
};
struct ByteKeys {
  const std::uint32_t* keys;
  std::uint32_t At(unsigned byte) const { return keys[byte]; }
  static bool Make(unsigned) { return true; }
};
template <class Unit>
using KeysOf = std::conditional_t<sizeof(Unit) == 1, ByteKeys, WideKeys>;

/// Whether either of two units that stand behind others can be part of these.
template <class Unit>
[[gnu::always_inline]] inline bool JoinsEither(KeysOf<Unit> keys, unsigned unit1, unsigned unit2) {
  if constexpr (sizeof(Unit) == 2) {
    if ((unit1 | unit2) < OT_FIRST_MARK) [[likely]]
      return false;
  }
  return ((keys.At(unit1) | keys.At(unit2)) & kJoins) != 0;
}

/// Whether a character is the letter, digit or ideograph that its key says.
template <class Unit>
[[gnu::always_inline]] inline bool StandsAlone(KeysOf<Unit> keys, std::uint32_t key,
                                               unsigned next) {
  return (key & kLook) == 0 && !JoinsEither<Unit>(keys, next, next);
}

/// TakeKeys with the keys known. @param bounded whether the text may end without a terminator.
/// @param makes whether keys are made; a caller for whom another way does that takes no call.
template <class Unit, bool bounded, bool makes = true, class Take>
[[gnu::always_inline]] inline bool TakeKeysOf(const KeysOf<Unit> keys, const TextSpan& text,
                                              Take&& take) {
  const auto unitAt = [end = text.end](const char* place) {
    return bounded ? UnitOf<Unit>(place, end) : LoadAs<Unit>(place);
  };
  std::uint32_t flags = 0;
  const auto takeKey = [&](std::uint32_t key) {
    flags |= key;
    take(key);
  };
  const char* place = text.text;
  unsigned unit = unitAt(place);
  if constexpr (sizeof(Unit) == 2) {  // most texts hold nothing else
    const std::uint32_t* const first = keys.keys->First();
    for (; unit - 1 < kFirstKeys - 1; unit = unitAt(place += sizeof(Unit))) takeKey(first[unit]);
  }
  for (; unit != 0; unit = unitAt(place += sizeof(Unit))) takeKey(keys.At(unit));
  if ((flags & (kJoins | kOpens)) == 0) [[likely]]
    return true;
  if (!makes) return false;
  for (place = text.text; (unit = unitAt(place)) != 0; place += sizeof(Unit)) keys.Make(unit);
  return false;
}

/// The number of a text's language.
inline unsigned char LanguageNumber(const TextSpan& text) {
  return text.language != OT_LANG_DEFAULT ? text.language : OtLanguageContext::GetDefaultLanguage();
}

/// Calls `act` with a unit of the text's kind and the keys of its language and code set.
/// @return what it answers, or `otherwise` where there are no such keys.
template <class Result, class Act>
[[gnu::always_inline]] inline Result WithKeys(const TextSpan& text, Result otherwise, Act&& act) {
  const unsigned char language = LanguageNumber(text);
  if (text.codeSet == OT_CS_UNICODE) {
    const FinishedKeys* keys = FinishedKeys::Of(language);
    if (keys == nullptr) return otherwise;
    return text.reversed ? act(TurnedUnit{}, WideKeys{keys}) : act(std::uint16_t{}, WideKeys{keys});
  }
  const std::uint32_t* keys = FinishedKeys::OfBytes(text.codeSet, language);
  return keys == nullptr ? otherwise : act(std::uint8_t{}, ByteKeys{keys});
}

/// Hands on the key of each unit of a text, flags and all. @return whether they are the whole
/// answer; where they aren't for want of keys, these are made for another time.
template <class Take>
[[gnu::always_inline]] inline bool TakeKeys(const TextSpan& text, Take&& take) {
  return WithKeys(text, false, [&](auto unit, auto keys) {
    using Unit = decltype(unit);
    return text.end == kUnbounded ? TakeKeysOf<Unit, false>(keys, text, take)
                                  : TakeKeysOf<Unit, true>(keys, text, take);
  });
}

/// Hands on the keys of the characters that a text begins with, as long as each stands for itself
/// and `take` doesn't decline one. @return where the first one stands that wasn't taken.
template <class Take>
[[gnu::always_inline]] inline const char* TakeAlone(const TextSpan& text, Take&& take) {
  return WithKeys(text, text.text, [&](auto first, auto keys) {
    using Unit = decltype(first);
    const char* place = text.text;
    while (const unsigned unit = UnitOf<Unit>(place, text.end)) {
      const std::uint32_t key = keys.At(unit);
      const unsigned next = UnitOf<Unit>(place + sizeof(Unit), text.end);
      if ((key & (kJoins | kOpens)) != 0 || JoinsEither<Unit>(keys, next, next)) {
        keys.Make(unit);
        break;
      }
      if (!take(key & kKeyBits)) break;
      place += sizeof(Unit);
    }
    return place;
  });
}

}  // namespace ot95

#endif
