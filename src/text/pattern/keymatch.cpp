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

  /// From two places on. @param differences of what stands before. @return kUndecided, or what
  /// decides.
  long Run(const char* text, const char* pattern, Differences differences) const {
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

/// The two texts, as the loops read them.
struct Spans {
  const TextSpan& text;
  const TextSpan& pattern;

  const char* Text() const { return text.text; }
  const char* Pattern() const { return pattern.text; }
  template <class Unit>
  unsigned InText(const char* place) const {
    return UnitOf<Unit>(place, text.end);
  }
  template <class Unit>
  unsigned InPattern(const char* place) const {
    return UnitOf<Unit>(place, pattern.end);
  }
  std::size_t Readable() const { return text.readable; }
  const TextSpan& TextSpanOf() const { return text; }
  const TextSpan& PatternSpanOf() const { return pattern; }
};
struct Terminated {
  const char* text;
  const char* pattern;
  TextLabels labels;

  const char* Text() const { return text; }
  const char* Pattern() const { return pattern; }
  template <class Unit>
  static unsigned InText(const char* place) {
    return LoadAs<Unit>(place);
  }
  template <class Unit>
  static unsigned InPattern(const char* place) {
    return LoadAs<Unit>(place);
  }
  std::size_t Readable() const { return labels.readable; }
  TextSpan TextSpanOf() const {
    return {text, kUnbounded, labels.readable, labels.codeSet, labels.language, false};
  }
  TextSpan PatternSpanOf() const {
    return TextSpan::Terminated(pattern, labels.codeSet, labels.language);
  }
};

/// From two places on, whatever stands there.
template <class Unit, class Texts>
[[gnu::noinline]] long MatchOn(KeysOf<Unit> keys, Texts texts, unsigned short cmpOp,
                               const char* inText, const char* inPattern, int accent, int case_) {
  const TextSpan& text = texts.TextSpanOf();
  const TextSpan& pattern = texts.PatternSpanOf();
  const long sign =
      KeyMatch<Unit>(keys, text, pattern, cmpOp).Run(inText, inPattern, {0, accent, case_, 0});
  return sign != kUndecided ? sign : WalkSpans(text, pattern, cmpOp);
}

/// From a star on, before which nothing differs: a part of letters that ends the pattern stands at
/// the end of the text, or doesn't.
template <class Unit, class Texts>
[[gnu::noinline]] long MatchTail(KeysOf<Unit> keys, Texts texts, unsigned short cmpOp,
                                 const char* inText, const char* star) {
  const char* const tail = star + sizeof(Unit);
  const unsigned first = texts.template InPattern<Unit>(tail);
  if (first == 0) return 0;
  const char* patternEnd = tail + sizeof(Unit);
  while (texts.template InPattern<Unit>(patternEnd) != 0) patternEnd += sizeof(Unit);
  const auto passed = static_cast<std::size_t>(inText - texts.Text());
  const char* textEnd =
      texts.Text() + PassText<sizeof(Unit)>(texts.Text(), passed, texts.Readable());
  while (texts.template InText<Unit>(textEnd) != 0) textEnd += sizeof(Unit);
  const std::uint32_t mask = MaskOf(cmpOp);
  std::uint32_t flags = keys.At(first) & kJoins;
  while (patternEnd != tail && textEnd != inText && flags == 0) {
    patternEnd -= sizeof(Unit);
    textEnd -= sizeof(Unit);
    const std::uint32_t sought = keys.At(LoadAs<Unit>(patternEnd));
    const std::uint32_t met = keys.At(LoadAs<Unit>(textEnd));
    flags = (sought | met) & kLook;
    if (flags == 0 && ((sought ^ met) & mask) != 0) return -1;
  }
  if (patternEnd == tail && flags == 0) return 0;
  return MatchOn<Unit>(keys, texts, cmpOp, inText, star, 0, 0);
}

/// Unit by unit, up to the first star or what isn't as plain.
template <class Unit, class Texts>
[[gnu::always_inline]] inline long MatchByKeys(const KeysOf<Unit> keys, const Texts texts,
                                               unsigned short cmpOp) {
  const char* inText = texts.Text();
  const char* inPattern = texts.Pattern();
  int accent = 0;
  int case_ = 0;
  for (;; inText += sizeof(Unit), inPattern += sizeof(Unit)) {
    const std::uint32_t key = keys.At(texts.template InText<Unit>(inText));
    const std::uint32_t sought = keys.At(texts.template InPattern<Unit>(inPattern));
    const unsigned short wildcard = (sought & kLook) != 0 ? OrderOfKey(sought) : 0;
    if (wildcard != 0 && wildcard == asterisk.Known() && (accent | case_) == 0) {
      return MatchTail<Unit>(keys, texts, cmpOp, inText, inPattern);
    }
    const bool any = wildcard != 0 && wildcard == question.Known();
    if ((key & kLook) != 0 || ((sought & kLook) != 0 && !any)) break;
    if (JoinsEither<Unit>(keys, texts.template InText<Unit>(inText + sizeof(Unit)),
                          texts.template InPattern<Unit>(inPattern + sizeof(Unit)))) {
      break;
    }
    if (any) continue;
    if (((key ^ sought) & 0xffffff00) != 0) return key < sought ? -1 : 1;
    const int accents = static_cast<int>(key & 0x1f) - static_cast<int>(sought & 0x1f);
    const int cases = static_cast<int>(sought & 0x60) - static_cast<int>(key & 0x60);
    if (accents != 0) accent = accents;
    if (case_ == 0) case_ = cases;
  }
  return MatchOn<Unit>(keys, texts, cmpOp, inText, inPattern, (accent > 0) - (accent < 0),
                       (case_ > 0) - (case_ < 0));
}

}  // namespace

long MatchWide(WideKeys keys, const char* text, const char* pattern, TextLabels labels,
               unsigned short cmpOp) {
  return MatchByKeys<std::uint16_t>(keys, Terminated{text, pattern, labels}, cmpOp);
}

long MatchInStep(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp) {
  return WithKeys<long>(text, kUndecided, [&](auto unit, auto keys) {
    return MatchByKeys<decltype(unit)>(keys, Spans{text, pattern}, cmpOp);
  });
}

}  // namespace ot95
