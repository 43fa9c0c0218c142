#ifndef OT95_SRC_TEXT_LEGACY_COLLATION_H
#define OT95_SRC_TEXT_LEGACY_COLLATION_H

/// @file
/// The fixed collation of the legacy strings: each byte becomes a collation byte and a second byte,
/// which is 0, tells an accent (1 to 8), or stands for a further letter (above 8).

#include <array>
#include <cstddef>
#include <cstdint>

#include "ot95/istring.h"

namespace ot95 {

struct CollationPair {
  unsigned char first;
  unsigned char second;

  constexpr bool operator==(const CollationPair&) const = default;
  /// The second byte is a letter of its own.
  constexpr bool IsTwoLetters() const { return second > 8; }
};

/// All that the two classes of legacy strings differ in.
struct LegacyRules {
  std::array<CollationPair, 256> encoding;
  bool caseCanCount;      ///< OT_ISTR_CASE lets second bytes count in comparisons.
  bool matchesCollation;  ///< Wildcards match collation bytes, not plain ones.
  bool decodesKeys;       ///< A key that goes to memory becomes text again.
};

extern const LegacyRules iStringRules;
extern const LegacyRules caseIStringRules;

template <class T>
constexpr const LegacyRules& RulesOf = iStringRules;
template <>
inline constexpr const LegacyRules& RulesOf<OtCaseIString> = caseIStringRules;

/// A text that ends with its terminator or its length, whichever comes first.
struct LegacyText {
  const unsigned char* bytes;  ///< Null for a text that was never set.
  std::size_t length;
  unsigned char flags;

  bool IsKey() const { return (flags & OT_ISTR_KEY) != 0; }
  /// The byte at `index`, 0 behind the end. Callers don't pass a terminator.
  unsigned char At(std::size_t index) const { return index < length ? bytes[index] : 0; }
};

template <class T>
LegacyText TextOf(const T& string) {
  const std::size_t length = string.text ? ~std::size_t{0} : 0;
  return {reinterpret_cast<const unsigned char*>(string.text), length, string.flags};
}

/// One side of a comparison, collation byte by collation byte.
class CollationWalk {
 public:
  CollationWalk(const LegacyRules& rules, const LegacyText& text, bool caseCounts)
      : rules_(rules), text_(text), caseCounts_(caseCounts) {}

  /// 0 at the end of the text, behind a letter that is held back.
  unsigned char Next() {
    if (held_ != 0) {
      const unsigned char held = held_;
      held_ = 0;
      return held;
    }
    const unsigned char c = text_.At(at_);
    if (c == 0) return 0;
    ++at_;
    return text_.IsKey() ? c : Encoded(rules_.encoding[c]);
  }

 private:
  unsigned char Encoded(CollationPair pair) {
    if (pair.IsTwoLetters()) {
      held_ = pair.second;
      return static_cast<unsigned char>(pair.first - (caseCounts_ ? 1 : 0));
    }
    return static_cast<unsigned char>(pair.first + (caseCounts_ ? pair.second : 0));
  }

  const LegacyRules& rules_;
  const LegacyText& text_;
  std::size_t at_ = 0;
  unsigned char held_ = 0;
  bool caseCounts_;
};

/// The byte that a collation byte comes from, a capital where case is lost. `second` is the byte
/// behind it; `usedSecond` tells whether the two were one letter.
unsigned char DecodeChar(const LegacyRules& rules, unsigned char first, unsigned char second,
                         bool& usedSecond);

/// Compares at most `steps` collation bytes: the difference of the first that differ. A null text
/// orders before all others.
long CompareLegacy(const LegacyRules& rules, const LegacyText& a, const LegacyText& b,
                   std::size_t steps);

/// Place of the first wildcard or escape of a pattern; -1 without one.
long FindLegacyWildcard(const LegacyText& pattern);

/// Whether the text matches the pattern.
bool MatchLegacy(const LegacyRules& rules, const LegacyText& text, const LegacyText& pattern);

/// Hands the key bytes of `length` bytes of text to `take`, one by one. Accents are dropped.
template <class Take>
void EachKeyByte(const LegacyRules& rules, const unsigned char* text, std::size_t length,
                 Take&& take) {
  for (std::size_t i = 0; i < length; ++i) {
    const CollationPair pair = rules.encoding[text[i]];
    take(pair.first);
    if (pair.IsTwoLetters()) take(pair.second);
  }
}

}  // namespace ot95

#endif
