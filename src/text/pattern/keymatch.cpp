/// Matching of a pattern by finished keys, for texts in which every unit has one. Up to the first
/// star both sides go unit by unit. Behind it, what follows the last star is compared from the end
/// of the text, which decides most pairs; what stands between stars takes the first place it finds.

#include <algorithm>

#include "text/collation/alike.h"
#include "text/collation/compare.h"
#include "text/collation/walk.h"
#include "text/pattern/units.h"

namespace ot95 {
namespace {

/// In place of a key: the walk has to be asked.
constexpr std::uint32_t kUnclear = 3;

/// Where a text ends, from a place in it on.
template <class Unit>
const char* EndOf(const char* place, const TextSpan& text) {
  const auto passed = static_cast<std::size_t>(place - text.text);
  const char* end = text.text + PassText<sizeof(Unit)>(text.text, passed, text.readable);
  while (UnitOf<Unit>(end, text.end) != 0) end += sizeof(Unit);
  return end;
}

template <class Unit>
class KeyMatch {
 public:
  KeyMatch(KeysOf<Unit> keys, const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp)
      : keys_(keys), levels_(cmpOp), text_(text), pattern_(pattern) {}

  /// From two places on, before which nothing differs. @return kUndecided, or what decides.
  long Run(const char* text, const char* pattern) const {
    Differences differences;
    for (;; text += sizeof(Unit), pattern += sizeof(Unit)) {
      const std::uint32_t sought = SoughtAt(pattern, pattern_.text);
      if (sought == kStar) break;
      const std::uint32_t key = KeyAt(text, text_.text, text_.end);
      if (key == kUnclear || sought == kUnclear || !IsReal(key)) return kUndecided;
      if (sought == kAny) {
        if (key == 0) return -1;
        continue;
      }
      if (!IsReal(sought)) return kUndecided;
      differences.Note(key, sought);
      if (differences.primary != 0 || key == 0) return differences.Decide(levels_);
    }
    const int rest = MatchBehindStar(text, pattern + sizeof(Unit));
    if (rest != 0 || !differences.Fails(levels_)) return rest;
    // What differs before a star keeps the walk from trying all that could match behind it.
    const bool ends = UnitOf<Unit>(pattern + sizeof(Unit), pattern_.end) == 0;
    return ends ? differences.Decide(levels_) : kUndecided;
  }

 private:
  std::uint32_t KnownKey(unsigned unit) const {
    keys_.Make(unit);
    return keys_.At(unit);
  }

  /// The key of the character at a place; 0 at the end, kUnclear if it isn't the whole answer.
  std::uint32_t KeyAt(const char* place, const char* begin, std::uintptr_t end) const {
    const unsigned unit = UnitOf<Unit>(place, end);
    if (unit == 0) return 0;
    const std::uint32_t key = KnownKey(unit);
    if ((key & kLook) == 0 && !JoinsBehind(place, end, kJoins)) return key;
    const bool joins = (key & kJoinsOpener) != 0 && place != begin &&
                       (KnownKey(LoadAs<Unit>(place - sizeof(Unit))) & kOpens) != 0;
    const std::uint32_t behind = (key & kOpens) != 0 ? kJoins | kJoinsOpener : kJoins;
    if (joins || (key & kJoins) != 0 || (key & kKeyBits) == 0 || JoinsBehind(place, end, behind)) {
      return kUnclear;
    }
    return key & kKeyBits;
  }
  bool JoinsBehind(const char* place, std::uintptr_t end, std::uint32_t flags) const {
    return (KnownKey(UnitOf<Unit>(place + sizeof(Unit), end)) & flags) != 0;
  }

  static std::uint32_t UnitOfKey(std::uint32_t key) {
    const unsigned short order = OrderOfKey(key);
    if (key <= kUnclear) return key;
    return order == AsteriskWord() ? kStar : order == QuestionWord() ? kAny : key;
  }
  std::uint32_t SoughtAt(const char* place, const char* begin) const {
    return UnitOfKey(KeyAt(place, begin, pattern_.end));
  }

  bool Ignores(std::uint32_t key) const { return !IsReal(key) && levels_.Ignores(key); }

  /// Steps back to a unit that counts. @return it; 0 at the place where it ends.
  template <bool isPattern>
  std::uint32_t StepBack(const char*& end, const char* begin, const TextSpan& whole) const {
    while (end != begin) {
      end -= sizeof(Unit);
      const std::uint32_t key = KeyAt(end, whole.text, whole.end);
      const std::uint32_t unit = isPattern ? UnitOfKey(key) : key;
      if (unit <= kUnclear) return unit;
      if (!Ignores(unit)) return unit & levels_.mask;
    }
    return 0;
  }

  /// @return 0, or -1: a text that doesn't match behind a star sorts first.
  int MatchBehindStar(const char* text, const char* pattern) const {
    const char* patternEnd = EndOf<Unit>(pattern, pattern_);
    if (patternEnd == pattern) return 0;
    const char* textEnd = EndOf<Unit>(text, text_);
    for (;;) {
      const std::uint32_t sought = StepBack<true>(patternEnd, pattern, pattern_);
      if (sought == 0) return 0;
      if (sought == kStar) break;
      const std::uint32_t met = StepBack<false>(textEnd, text, text_);
      if (sought == kUnclear || met == kUnclear) return kUndecided;
      if (met == 0 || !Fits(met, sought)) return -1;
    }
    while (pattern <= patternEnd) {
      const int part = MatchPart(text, textEnd, pattern);
      if (part != 0) return part;
    }
    return 0;
  }

  /// The next unit of a text that counts; 0 at its end.
  std::uint32_t NextCounting(const char*& text, const char* textEnd) const {
    while (text != textEnd) {
      const std::uint32_t key = KeyAt(text, text_.text, text_.end);
      text += sizeof(Unit);
      if (key == kUnclear) return key;
      if (!Ignores(key)) return key & levels_.mask;
    }
    return 0;
  }

  /// Takes the part of a pattern before its next star to its first place in a text.
  int MatchPart(const char*& text, const char* textEnd, const char*& pattern) const {
    constexpr std::size_t kUnits = 64;
    std::uint32_t units[kUnits];
    std::uint32_t* end = units;
    for (;; pattern += sizeof(Unit)) {
      const std::uint32_t unit = SoughtAt(pattern, pattern_.text);
      if (unit == kStar) break;
      if (unit == kUnclear || end == units + kUnits) return kUndecided;
      if (unit == kAny || !Ignores(unit)) *end++ = unit == kAny ? unit : unit & levels_.mask;
    }
    pattern += sizeof(Unit);
    for (const char* begin = text; end != units;) {
      const char* place = begin;
      const std::uint32_t* unit = units;
      std::uint32_t met = NextCounting(place, textEnd);
      const char* const next = place;
      while (met > kUnclear && Fits(met, *unit) && ++unit != end)
        met = NextCounting(place, textEnd);
      if (unit == end) {
        text = place;
        break;
      }
      if (met <= kUnclear) return met == 0 ? -1 : kUndecided;
      begin = next;
    }
    return 0;
  }

  const KeysOf<Unit> keys_;
  const Levels levels_;
  const TextSpan& text_;
  const TextSpan& pattern_;
};

const char* BeginOf(const char* text) {
  return text;
}
const char* BeginOf(const TextSpan& text) {
  return text.text;
}

/// What else is known of a match: fits a register.
struct Known {
  TextLabels labels;  ///< Of terminated texts; the readable bytes are the text's.
  unsigned short cmpOp;
};

/// The two texts, as the loops read them.
struct Spans {
  const TextSpan& text;
  const TextSpan& pattern;

  template <class Unit>
  unsigned InText(std::size_t at) const {
    return UnitOf<Unit>(text.text + at, text.end);
  }
  template <class Unit>
  unsigned InPattern(std::size_t at) const {
    return UnitOf<Unit>(pattern.text + at, pattern.end);
  }
  std::size_t Readable(Known) const { return text.readable; }
  const TextSpan& Text(Known) const { return text; }
  const TextSpan& Pattern(Known) const { return pattern; }
};
struct Terminated {
  const char* text;
  const char* pattern;

  template <class Unit>
  unsigned InText(std::size_t at) const {
    return LoadAs<Unit>(text + at);
  }
  template <class Unit>
  unsigned InPattern(std::size_t at) const {
    return LoadAs<Unit>(pattern + at);
  }
  std::size_t Readable(Known known) const { return known.labels.readable; }
  TextSpan Text(Known known) const {
    const TextLabels labels = known.labels;
    return {text, kUnbounded, labels.readable, labels.codeSet, labels.language, false};
  }
  TextSpan Pattern(Known known) const {
    return TextSpan::Terminated(pattern, known.labels.codeSet, known.labels.language);
  }
};

// These two have their arguments in registers: a loop that ends in one of them needs no frame.

/// From a place in both texts on, before which nothing differs.
template <class Unit, class Texts>
[[gnu::noinline]] long MatchOn(KeysOf<Unit> keys, Texts texts, std::size_t at, Known known) {
  const TextSpan& text = texts.Text(known);
  const TextSpan& pattern = texts.Pattern(known);
  const KeyMatch<Unit> match(keys, text, pattern, known.cmpOp);
  const long sign = match.Run(text.text + at, pattern.text + at);
  return sign != kUndecided ? sign : WalkSpans(text, pattern, known.cmpOp);
}

/// From a star on: a part of letters that ends the pattern stands at the end of the text, or
/// doesn't.
template <class Unit, class Texts>
[[gnu::noinline]] long MatchTail(KeysOf<Unit> keys, Texts texts, std::size_t star, Known known) {
  const std::size_t tail = star + sizeof(Unit);
  const unsigned first = texts.template InPattern<Unit>(tail);
  if (first == 0) return 0;
  std::size_t patternEnd = tail + sizeof(Unit);
  while (texts.template InPattern<Unit>(patternEnd) != 0) patternEnd += sizeof(Unit);
  const auto& [text, pattern] = texts;
  std::size_t textEnd = PassText<sizeof(Unit)>(BeginOf(text), star, texts.Readable(known));
  while (texts.template InText<Unit>(textEnd) != 0) textEnd += sizeof(Unit);
  const std::uint32_t mask = MaskOf(known.cmpOp);
  std::uint32_t flags = keys.At(first) & kJoins;
  while (patternEnd != tail && textEnd != star && flags == 0) {
    patternEnd -= sizeof(Unit);
    textEnd -= sizeof(Unit);
    const std::uint32_t sought = keys.At(LoadAs<Unit>(BeginOf(pattern) + patternEnd));
    const std::uint32_t met = keys.At(LoadAs<Unit>(BeginOf(text) + textEnd));
    flags = (sought | met) & kLook;
    if (flags == 0 && ((sought ^ met) & mask) != 0) return -1;
  }
  if (patternEnd == tail && flags == 0) return 0;
  return MatchOn<Unit>(keys, texts, star, known);
}

/// Unit by unit, up to the first star, the first difference, or what isn't as plain.
template <class Unit, class Texts>
[[gnu::always_inline]] inline long MatchByKeys(const KeysOf<Unit> keys, const Texts texts,
                                               Known known) {
  for (std::size_t at = 0;; at += sizeof(Unit)) {
    const std::uint32_t key = keys.At(texts.template InText<Unit>(at));
    const std::uint32_t sought = keys.At(texts.template InPattern<Unit>(at));
    const unsigned short wildcard = (sought & kLook) != 0 ? OrderOfKey(sought) : 0;
    if (wildcard != 0 && wildcard == asterisk.Known()) {
      return MatchTail<Unit>(keys, texts, at, known);
    }
    const bool any = wildcard != 0 && wildcard == question.Known();
    if ((key & kLook) != 0 || ((sought & kLook) != 0 && !any) ||
        JoinsEither<Unit>(keys, texts.template InText<Unit>(at + sizeof(Unit)),
                          texts.template InPattern<Unit>(at + sizeof(Unit)))) {
      return MatchOn<Unit>(keys, texts, at, known);
    }
    if (any || key == sought) continue;
    if (((key ^ sought) & 0xffffff00) != 0) return key < sought ? -1 : 1;
    return MatchOn<Unit>(keys, texts, at, known);
  }
}

}  // namespace

long MatchWide(WideKeys keys, const char* text, const char* pattern, TextLabels labels,
               unsigned short cmpOp) {
  return MatchByKeys<std::uint16_t>(keys, Terminated{text, pattern}, {labels, cmpOp});
}

long MatchInStep(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp) {
  return WithKeys<long>(text, kUndecided, [&](auto unit, auto keys) {
    return MatchByKeys<decltype(unit)>(keys, Spans{text, pattern}, {{}, cmpOp});
  });
}

}  // namespace ot95
