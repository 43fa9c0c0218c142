#ifndef OT95_SRC_TEXT_COLLATION_WALK_H
#define OT95_SRC_TEXT_COLLATION_WALK_H

/// @file
/// The walk that compares two texts in levels: letters first, then accents, case and symbols. The
/// second text can be a pattern with wildcards.

#include "text/collation/orders.h"
#include "text/collation/wildcards.h"

namespace ot95 {

/// -1, 0 or 1, by unsigned comparison: differences of keys would make cycles.
constexpr int Sign(std::uint32_t left, std::uint32_t right) {
  return (left > right) - (left < right);
}

/// Whether a key ends a run of symbols: the end of the text, digits, letters, ideographs, and all
/// beyond the alphabets.
constexpr bool IsReal(std::uint32_t key) {
  return (key & 0xffffff) >= std::uint32_t{kFirstDigit} << 8 || key == 0 ||
         key >= std::uint32_t{kBeyondAlphabets} << 24;
}

/// What of a key counts when a pattern is matched.
constexpr std::uint32_t MaskOf(unsigned short cmpOp) {
  return ((cmpOp & OT_CMP_IGNORE_CASE) != 0 ? kAccentMask : 0xffffffff) &
         ((cmpOp & OT_CMP_IGNORE_ACCENT) != 0 ? kCaseMask : 0xffffffff);
}

/// What a comparison-op word asks for.
struct Levels {
  explicit Levels(unsigned short cmpOp)
      : ignoreSpace((cmpOp & OT_CMP_IGNORE_SPACE) != 0),
        ignoreSymbols((cmpOp & OT_CMP_IGNORE_SYMBOLS) != 0),
        ignoreCase((cmpOp & OT_CMP_IGNORE_CASE) != 0),
        ignoreAccent((cmpOp & OT_CMP_IGNORE_ACCENT) != 0),
        wildcards((cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0),
        mask(MaskOf(cmpOp)) {}

  /// Whether a key that isn't real is passed over. Marks that don't compose are symbols and
  /// accents.
  bool Ignores(std::uint32_t key) const {
    const unsigned order = OrderOfKey(key);
    if (order < kFirstSymbol) return ignoreSpace;
    return ignoreSymbols || (ignoreAccent && IsMarkWord(order));
  }

  bool ignoreSpace;
  bool ignoreSymbols;
  bool ignoreCase;
  bool ignoreAccent;
  bool wildcards;
  std::uint32_t mask;  ///< What of a key counts when a pattern is matched.
};

/// The differences found so far, as signs. A primary one ends the walk.
struct Differences {
  int primary = 0;
  int accent = 0;  ///< The last one.
  int case_ = 0;   ///< The first one; at that place lower case sorts first.
  int symbol = 0;  ///< The last one.

  /// Takes up two keys that stand at the same place.
  void Note(std::uint32_t key1, std::uint32_t key2) {
    const std::uint32_t differing = key1 ^ key2;
    if ((differing & kPrimaryMask) != 0) primary = Sign(key1, key2);
    if (differing == 0) return;
    if (case_ == 0 && (differing & kCaseMask) != 0) {
      case_ = Sign(key2 & kCaseMask, key1 & kCaseMask);
    }
    if ((differing & kAccentMask) != 0) accent = Sign(key1 & kAccentMask, key2 & kAccentMask);
  }
  /// What decides in the end.
  int Decide(const Levels& levels) const {
    if (primary != 0) return primary;
    if (accent != 0 && !levels.ignoreAccent) return accent;
    if (case_ != 0 && !levels.ignoreCase) return case_;
    return symbol;
  }
  /// Whether a pattern that is sought behind a star has failed here.
  bool Fails(const Levels& levels) const {
    if (levels.ignoreAccent) return levels.ignoreCase ? primary != 0 : case_ != 0;
    return accent != 0 || (!levels.ignoreCase && case_ != 0);
  }
};

/// Takes both sides to their next real character, and pairs the symbols before them step by step.
/// @param next1,next2 deliver the keys of a side.
/// @param endsAll tells of a key of the second side that nothing is taken behind.
/// @return the last difference of a pair, as a sign.
template <class Next1, class Next2, class EndsAll>
int PairSymbols(std::uint32_t& key1, Next1&& next1, std::uint32_t& key2, Next2&& next2,
                EndsAll&& endsAll) {
  int difference = 0;
  bool runs1 = true;
  bool runs2 = true;
  while (runs1 || runs2) {
    unsigned short symbol1 = 0;
    unsigned short symbol2 = 0;
    if (runs1) {
      key1 = next1();
      runs1 = !IsReal(key1);
      if (runs1) symbol1 = OrderOfKey(key1);
    }
    if (runs2) {
      key2 = next2();
      if (endsAll(key2)) break;
      runs2 = !IsReal(key2);
      if (runs2) symbol2 = OrderOfKey(key2);
    }
    if (symbol1 != symbol2) difference = Sign(symbol1, symbol2);
  }
  return difference;
}

/// One of the two texts.
struct LevelSide {
  explicit LevelSide(const OrderWalk& start) : walk(start) {}

  OrderWalk walk;
  std::uint32_t taken = 0;  ///< Orders so far.
  std::uint32_t key = 0;    ///< Where the side stands in this pass.
};

/// The plain walk, pass by pass.
class LevelWalk {
 public:
  LevelWalk(const OrderWalk& text, const OrderWalk& pattern, const Levels& levels, bool keyText,
            long maxChars)
      : text_(text),
        pattern_(pattern),
        levels_(levels),
        keyText_(keyText),
        limit_(maxChars < 0 ? UINT32_MAX : static_cast<std::uint32_t>(maxChars)),
        limited_(maxChars >= 0) {}

  /// One pass without wildcards: up to the next real character on both sides.
  /// @return whether the walk goes on.
  bool Pass() {
    TakeSymbols<false>();
    if (keyText_) wantScript_ = false;
    differences_.Note(text_.key, pattern_.key);
    if (symbolDifference_ != 0) differences_.symbol = symbolDifference_;
    return differences_.primary == 0 && text_.key != 0 && pattern_.key != 0;
  }

  /// Passes from two places between characters to the next such places. The rest is brought along
  /// and taken back.
  bool PassInStep(const char*& place1, const char*& place2, unsigned char& script1,
                  unsigned char& script2, Differences& differences);

  /// Whether the counts of both sides are within a limit, so that the primary difference is told.
  bool Reports() const {
    return limited_ && levels_.ignoreSpace && text_.taken <= limit_ && pattern_.taken <= limit_;
  }
  int Primary() const { return differences_.primary; }
  int Decide() const { return differences_.Decide(levels_); }

 protected:
  static bool IsAsterisk(std::uint32_t key) {
    return key != 0 && OrderOfKey(key) == AsteriskWord();
  }
  static bool IsQuestion(std::uint32_t key) {
    return key != 0 && OrderOfKey(key) == QuestionWord();
  }

  /// The key of the next order that isn't skipped. Wildcards of the pattern never are.
  template <bool isPattern>
  std::uint32_t NextCounting(OrderWalk& walk, std::uint32_t& taken) {
    for (;;) {
      const std::uint32_t key = ++taken <= limit_ ? walk.NextKey(wantScript_) : 0;
      if (IsReal(key)) return key;
      if (!levels_.Ignores(key) || (isPattern && (IsAsterisk(key) || IsQuestion(key)))) return key;
    }
  }

  /// Takes both sides to their next real character. A wildcard ends this at once: what the text
  /// stands at then is what it meets.
  template <bool wildcards>
  void TakeSymbols() {
    symbolDifference_ = PairSymbols(
        text_.key, [this] { return NextCounting<false>(text_.walk, text_.taken); }, pattern_.key,
        [this] { return NextCounting<wildcards>(pattern_.walk, pattern_.taken); },
        [](std::uint32_t key) { return wildcards && (IsAsterisk(key) || IsQuestion(key)); });
  }

  LevelSide text_;
  LevelSide pattern_;
  Levels levels_;
  bool keyText_;  // a side is a key, which has one script byte for all of its orders
  bool wantScript_ = true;
  std::uint32_t limit_;
  bool limited_;
  int symbolDifference_ = 0;
  Differences differences_;
};

/// Matches a pattern: the walk with wildcards. @param shortcuts whether it may leave the plain way.
int MatchPattern(const LevelWalk& start, bool shortcuts, int* primaryOut);

}  // namespace ot95

#endif
