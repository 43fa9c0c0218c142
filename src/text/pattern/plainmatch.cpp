/// Matching of a pattern without any walk, for texts whose characters all have plain keys. Up to
/// the first star both sides go unit by unit; behind it, what follows the last star is compared
/// from the end of the text, which decides most pairs.

#include "text/collation/alikeunits.h"
#include "text/collation/compare.h"
#include "text/collation/plainkeys.h"
#include "text/collation/walk.h"
#include "text/pattern/units.h"

namespace ot95 {
namespace {

bool IsWildcard(std::uint32_t key) {
  return OrderOfKey(key) == AsteriskWord() || OrderOfKey(key) == QuestionWord();
}

/// In place of a key: the long way has to be taken.
constexpr std::uint32_t kNotPlain = 3;

template <class Unit>
class PlainMatch {
 public:
  PlainMatch(const PlainKeys<Unit>& keys, const TextSpan& text, const TextSpan& pattern,
             unsigned short cmpOp)
      : keys_(keys),
        levels_(cmpOp),
        text_(text),
        pattern_(pattern),
        asterisk_(AsteriskWord()),
        question_(QuestionWord()) {}

  /// @return kUndecided, or what decides.
  int Run(const char* place, const char* inPattern) const {
    Differences differences;
    for (;; place += sizeof(Unit), inPattern += sizeof(Unit)) {
      const std::uint32_t sought = PatternUnit(inPattern);
      if (sought == kStar) {
        const int rest = MatchBehindStar(place, inPattern + sizeof(Unit));
        if (rest != 0 || !differences.Fails(levels_)) return rest;
        // What differs before a star keeps the walk from trying all that could match behind it.
        return PatternUnit(inPattern + sizeof(Unit)) == 0 ? differences.Decide(levels_)
                                                          : kUndecided;
      }
      const std::uint32_t key = KeyAt(place, text_.end);
      if (key == kNotPlain || !IsReal(key) || sought == kNotPlain) return kUndecided;
      if (sought == kAny) {
        if (key == 0) return -1;
        continue;
      }
      if (!IsReal(sought)) return kUndecided;
      differences.Note(key, sought);
      if (differences.primary != 0 || key == 0) return differences.Decide(levels_);
    }
  }

 private:
  static constexpr std::size_t kUnits = 64;

  /// Units of a text or a pattern, no more than a few.
  struct Units {
    std::uint32_t units[kUnits];
    std::size_t count = 0;
    bool complete = true;

    void Add(std::uint32_t unit) {
      if (count == kUnits || unit == kNotPlain) complete = false;
      if (complete) units[count++] = unit;
    }
    const std::uint32_t* begin() const { return units; }
    const std::uint32_t* end() const { return units + count; }
  };

  std::uint32_t KeyAt(const char* place, std::uintptr_t end) const {
    const std::uint32_t key = keys_.KeyAt(place, end);
    return key != 0 || keys_.ValueAt(place, end) == 0 ? key : kNotPlain;
  }

  std::uint32_t UnitOfKey(std::uint32_t key) const {
    const unsigned short order = OrderOfKey(key);
    return order == asterisk_ ? kStar : order == question_ ? kAny : key;
  }
  std::uint32_t PatternUnit(const char* place) const {
    const std::uint32_t key = KeyAt(place, pattern_.end);
    return key <= kNotPlain ? key : UnitOfKey(key);
  }

  bool Ignores(std::uint32_t key) const { return !IsReal(key) && levels_.Ignores(key); }

  /// Where a text ends, from a place in it on.
  const char* EndOf(const char* place, const TextSpan& text) const {
    return PassAlike<Unit, CaseFold::kNone>({place, place}, text, text).one;
  }

  /// Steps back to a unit that counts. @return it; 0 at the place where it ends.
  template <bool isPattern>
  std::uint32_t StepBack(const char*& end, const char* begin) const {
    while (end != begin) {
      end -= sizeof(Unit);
      const std::uint32_t key = keys_.KeyAnywhere(keys_.ValueAt(end, kUnbounded));
      if (key == 0) return kNotPlain;
      const std::uint32_t unit = isPattern ? UnitOfKey(key) : key;
      if (unit <= kNotPlain) return unit;
      if (!Ignores(unit)) return unit & levels_.mask;
    }
    return 0;
  }

  /// @return 0, or -1: a text that doesn't match behind a star sorts first.
  int MatchBehindStar(const char* text, const char* pattern) const {
    const char* patternEnd = EndOf(pattern, pattern_);
    if (patternEnd == pattern) return 0;
    const char* textEnd = EndOf(text, text_);
    for (;;) {
      const std::uint32_t sought = StepBack<true>(patternEnd, pattern);
      if (sought == 0) return 0;
      if (sought == kStar) break;
      const std::uint32_t met = StepBack<false>(textEnd, text);
      if (sought == kNotPlain || met == kNotPlain) return kUndecided;
      if (met == 0 || !Fits(met, sought)) return -1;
    }
    return MatchBetweenStars(text, textEnd, pattern, patternEnd + sizeof(Unit));
  }

  /// The part of a pattern between two stars, the second one included.
  int MatchBetweenStars(const char* text, const char* textEnd, const char* pattern,
                        const char* patternEnd) const {
    Units sought;
    for (; pattern != patternEnd && sought.complete; pattern += sizeof(Unit)) {
      const std::uint32_t unit = PatternUnit(pattern);
      if (unit <= kNotPlain)
        sought.Add(unit);
      else if (!Ignores(unit))
        sought.Add(unit & levels_.mask);
    }
    Units met;
    for (; text != textEnd && met.complete; text += sizeof(Unit)) {
      const std::uint32_t key = KeyAt(text, text_.end);
      if (key == kNotPlain)
        met.Add(key);
      else if (!Ignores(key))
        met.Add(key & levels_.mask);
    }
    if (!sought.complete || !met.complete) return kUndecided;
    return MatchesBehindStar(met.begin(), met.end(), sought.begin(), sought.end()) ? 0 : -1;
  }

  const PlainKeys<Unit> keys_;
  const Levels levels_;
  const TextSpan& text_;
  const TextSpan& pattern_;
  unsigned short asterisk_;
  unsigned short question_;
};

}  // namespace

int MatchPlain(const TextSpan& text, const TextSpan& pattern, unsigned short cmpOp) {
  const unsigned char number =
      text.language != OT_LANG_DEFAULT ? text.language : OtLanguageContext::GetDefaultLanguage();
  const OtLanguage* language = OtLanguageContext::QueryLanguage(number);
  if (language == nullptr) return kUndecided;
  const auto run = [&](const auto& keys) {
    std::uint32_t sought = 0;
    const int sign = keys.SignOfFirstLetters(text, pattern, sought);
    if (sign != 0 && !IsWildcard(sought)) return sign;
    return PlainMatch(keys, text, pattern, cmpOp).Run(text.text, pattern.text);
  };
  if (text.codeSet == OT_CS_UNICODE) {
    return text.reversed ? run(PlainKeys<TurnedUnit>(nullptr, language, language->script))
                         : run(PlainKeys<std::uint16_t>(nullptr, language, language->script));
  }
  if (IsWide(text.codeSet)) return kUndecided;
  const OtCodeSet& set = *OtLanguageContext::QueryCodeSet(text.codeSet);
  return run(PlainKeys<std::uint8_t>(set.UnicodeValues(), language, language->script));
}

}  // namespace ot95
