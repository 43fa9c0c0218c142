/// Comparison of two texts that run through the same keys. What is equal is passed over unseen.
/// Where the texts part, most pairs are decided, or go on, by a finished key on each side. Flagged
/// keys are looked at closer: from the last seam, where a character begins on both sides whatever
/// was before it, symbols are passed key by key, and all else by passes of the walk.

#include "text/collation/instep.h"

#include "text/collation/alike.h"
#include "text/collation/walk.h"

namespace ot95 {
namespace {

/// No key: a character that isn't the whole answer.
constexpr std::uint32_t kUnclear = UINT32_MAX;

/// The key of the character at a place, which moves behind it; 0 at the end. @param joined whether
/// a low character before the place may open a contraction.
template <class Unit>
[[gnu::always_inline]] inline std::uint32_t NextAlone(KeysOf<Unit> keys, const char*& place,
                                                      std::uintptr_t end, bool joined) {
  const unsigned unit = UnitOf<Unit>(place, end);
  if (unit == 0) return 0;
  const std::uint32_t key = keys.At(unit);
  const unsigned next = UnitOf<Unit>(place + sizeof(Unit), end);
  if (JoinsEither<Unit>(keys, next, next)) return kUnclear;
  if ((key & (kJoins | kOpens | kJoinsOpener)) != 0) {
    if ((key & kJoins) != 0 || (key & kKeyBits) == 0) return kUnclear;
    if ((key & kOpens) != 0 && (keys.At(next) & kJoinsOpener) != 0) return kUnclear;
    if ((key & kJoinsOpener) != 0 && joined &&
        (keys.At(LoadAs<Unit>(place - sizeof(Unit))) & kOpens) != 0) {
      return kUnclear;
    }
  }
  place += sizeof(Unit);
  return key & kKeyBits;
}

template <class Unit>
[[gnu::noinline]] std::uint32_t NextAloneApart(KeysOf<Unit> keys, const char*& place,
                                               std::uintptr_t end, bool joined) {
  return NextAlone<Unit>(keys, place, end, joined);
}

/// The same with little code for what has no flags but those of a symbol.
template <class Unit>
[[gnu::always_inline]] inline std::uint32_t NextUsual(KeysOf<Unit> keys, const char*& place,
                                                      std::uintptr_t end, bool joined) {
  const unsigned unit = UnitOf<Unit>(place, end);
  if (unit == 0) return 0;
  const std::uint32_t key = keys.At(unit);
  const unsigned next = UnitOf<Unit>(place + sizeof(Unit), end);
  const bool plain = sizeof(Unit) == 1 || next < OT_FIRST_MARK;
  const std::uint32_t behind = sizeof(Unit) == 1 ? keys.At(next) & kJoins : 0;
  const std::uint32_t flags = (key & (kJoins | kOpens | kJoinsOpener)) | behind;
  if (!plain || flags != 0) [[unlikely]]
    return NextAloneApart<Unit>(keys, place, end, joined);
  place += sizeof(Unit);
  return key & kKeyBits;
}

/// One of the two texts, where the comparison has come to.
struct Side {
  const char* place;
  const char* known = nullptr;  ///< Here `script` is that of the key before.
  unsigned char script = 0;
};

/// How far both have come.
struct Progress {
  Side one;
  Side two;
  std::size_t alike;  ///< Bytes before both places, from a seam on, that differ in case at most.
  Differences differences;
};

/// The two texts as the loop reads them; the rest of what is known of them costs spans.
struct Spans {
  const TextSpan& span1;
  const TextSpan& span2;

  const char* Begin1() const { return span1.text; }
  const char* Begin2() const { return span2.text; }
  std::uintptr_t End1() const { return span1.end; }
  std::uintptr_t End2() const { return span2.end; }
  const TextSpan& Span1() const { return span1; }
  const TextSpan& Span2() const { return span2; }
  std::size_t Readable(const char* place1, const char* place2) const {
    return std::min(Left(span1, place1), Left(span2, place2));
  }

 private:
  static std::size_t Left(const TextSpan& span, const char* place) {
    const auto passed = static_cast<std::size_t>(place - span.text);
    return passed < span.readable ? span.readable - passed : 0;
  }
};
struct Terminated {
  const char* begin1;
  const char* begin2;
  TextLabels labels;

  const char* Begin1() const { return begin1; }
  const char* Begin2() const { return begin2; }
  static std::uintptr_t End1() { return kUnbounded; }
  static std::uintptr_t End2() { return kUnbounded; }
  TextSpan Span1() const { return Span(begin1); }
  TextSpan Span2() const { return Span(begin2); }
  std::size_t Readable(const char* place1, const char* place2) const {
    const auto passed = static_cast<std::size_t>(std::max(place1 - begin1, place2 - begin2));
    return passed < labels.readable ? labels.readable - passed : 0;
  }

 private:
  TextSpan Span(const char* begin) const {
    return {begin, kUnbounded, labels.readable, labels.codeSet, labels.language, false};
  }
};

/// The look at what flagged keys stand for.
template <class Unit>
class Closely {
 public:
  Closely(KeysOf<Unit> keys, const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp)
      : keys_(keys), text1_(text1), text2_(text2), levels_(cmpOp) {}

  /// Takes both sides to behind their next real characters. @return whether it goes on there.
  bool Pass(Progress& progress) const {
    Side& one = progress.one;
    Side& two = progress.two;
    for (std::size_t alike = progress.alike;
         alike != 0 && (JoinsBefore(one, text1_) || JoinsBefore(two, text2_));
         alike -= sizeof(Unit)) {
      one.place -= sizeof(Unit);
      two.place -= sizeof(Unit);
    }
    const char* place1 = one.place;
    const char* place2 = two.place;
    std::uint32_t key1 = 0;
    std::uint32_t key2 = 0;
    const int symbol = PairSymbols(
        key1, [&] { return NextCounting(place1, one.place, text1_); }, key2,
        [&] { return NextCounting(place2, two.place, text2_); },
        [](std::uint32_t) { return false; });
    if (key1 == kUnclear || key2 == kUnclear) return PassByWalk(progress);
    if (symbol != 0) progress.differences.symbol = symbol;
    progress.differences.Note(key1, key2);
    Leave(one, place1, key1);
    Leave(two, place2, key2);
    return progress.differences.primary == 0 && key1 != 0;
  }

 private:
  static void Leave(Side& side, const char* place, std::uint32_t key) {
    side.place = side.known = place;
    side.script = static_cast<unsigned char>(key >> 24);
  }
  std::uint32_t KeyBefore(const Side& side) const {
    return keys_.At(LoadAs<Unit>(side.place - sizeof(Unit)));
  }

  /// Whether the character at a side's place may be part of what is before it.
  bool JoinsBefore(const Side& side, const TextSpan& text) const {
    const std::uint32_t key = keys_.At(UnitOf<Unit>(side.place, text.end));
    return (key & kJoins) != 0 || ((key & kJoinsOpener) != 0 && (KeyBefore(side) & kOpens) != 0);
  }

  /// Of the next character that isn't skipped.
  std::uint32_t NextCounting(const char*& place, const char* seam, const TextSpan& text) const {
    for (;;) {
      std::uint32_t key = NextAlone<Unit>(keys_, place, text.end, place != seam);
      if (key == kUnclear) key = NextByWalk(place, text);
      if (IsReal(key) || !levels_.Ignores(key)) return key;
    }
  }

  /// Of a contraction or another character of one key that doesn't depend on what is before it.
  [[gnu::noinline]] std::uint32_t NextByWalk(const char*& place, const TextSpan& text) const {
    if ((keys_.At(UnitOf<Unit>(place, text.end)) & kKeyBits) == 0) return kUnclear;
    TextSpan rest = text;
    rest.text = place;
    OrderWalk walk(rest);
    const std::uint32_t key = walk.NextKey(true);
    if (!walk.BetweenCharacters()) return kUnclear;
    place = walk.position();
    return key;
  }

  /// Readies a side for a walk. The keys that it lacks are made for the next time.
  void Ready(Side& side, const TextSpan& text, const OrderWalk& walk) const {
    const unsigned unit = UnitOf<Unit>(side.place, text.end);
    if (keys_.Make(unit) && unit != 0)
      keys_.Make(UnitOf<Unit>(side.place + sizeof(Unit), text.end));
    if (side.place == side.known) return;
    side.script = side.place == text.text
                      ? walk.script()
                      : static_cast<unsigned char>((KeyBefore(side) & kKeyBits) >> 24);
  }

  [[gnu::noinline]] bool PassByWalk(Progress& progress) const {
    Side& one = progress.one;
    Side& two = progress.two;
    const OrderWalk walk1(text1_);
    const OrderWalk walk2(text2_);
    Ready(one, text1_, walk1);
    Ready(two, text2_, walk2);
    LevelWalk walk(walk1, walk2, levels_, false, -1);
    const bool goesOn =
        walk.PassInStep(one.place, two.place, one.script, two.script, progress.differences);
    one.known = one.place;
    two.known = two.place;
    return goesOn;
  }

  KeysOf<Unit> keys_;
  const TextSpan& text1_;
  const TextSpan& text2_;
  Levels levels_;
};

/// Where two texts meet again behind symbols.
struct Meeting {
  const char* place1;  ///< Behind the letters in which they do.
  const char* place2;
  std::uint32_t key1 = 0;  ///< Of these letters; 0 for the end of both.
  std::uint32_t key2 = 0;
  int symbol = 0;  ///< How the symbols before differ.
};

/// In the place of a sign: both texts go on with the same letter, or both end.
constexpr int kMet = 0;

/// Where one text or both go on with symbols, or one ends: how what is behind them sorts, for any
/// other difference weighs less. @param joined whether there are characters before the places.
/// @return kUndecided where something is unclear on the way.
template <class Unit>
[[gnu::noinline]] int MeetBehindSymbols(KeysOf<Unit> keys, Meeting& met, std::uintptr_t end1,
                                        std::uintptr_t end2, bool joined, unsigned short cmpOp) {
  constexpr unsigned short ignoring =
      OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS | OT_CMP_IGNORE_ACCENT;
  const auto counting = [keys, cmpOp](const char*& place, const char* seam, std::uintptr_t end) {
    for (;;) {
      const std::uint32_t key = NextUsual<Unit>(keys, place, end, place != seam);
      if (IsReal(key) || (cmpOp & ignoring) == 0 || !Levels(cmpOp).Ignores(key)) return key;
    }
  };
  const char* const seam1 = joined ? nullptr : met.place1;
  const char* const seam2 = joined ? nullptr : met.place2;
  met.symbol = PairSymbols(
      met.key1, [&] { return counting(met.place1, seam1, end1); }, met.key2,
      [&] { return counting(met.place2, seam2, end2); }, [](std::uint32_t) { return false; });
  if (met.key1 == kUnclear || met.key2 == kUnclear) return kUndecided;
  if (((met.key1 ^ met.key2) & kPrimaryMask) == 0) return kMet;
  return met.key1 < met.key2 ? -1 : 1;
}

/// Whether letters that differ in case alone can be passed over in blocks.
inline bool Folds(WideKeys keys) {
  return !keys.keys->Tailors();
}
inline bool Folds(ByteKeys) {
  return false;
}

template <class Unit, class Texts>
long GoOnClosely(KeysOf<Unit> keys, Texts texts, unsigned short cmpOp, Progress& progress);

/// In the place of a sign: what comes next needs a closer look.
constexpr int kCloser = 3;

/// The loop, from where `progress` stands, null for the beginning. What needs a closer look is kept
/// apart, so that it holds its state in registers. @param bounded whether a text may end without a
/// terminator. @param start bytes from there on that are equal.
template <class Unit, bool bounded, class Texts>
[[gnu::always_inline]] inline long CompareByKeys(const KeysOf<Unit> keys, const Texts texts,
                                                 unsigned short cmpOp, Progress* progress,
                                                 std::size_t start = 0) {
  constexpr bool kFolds = std::is_same_v<Unit, std::uint16_t>;
  const char* one = progress == nullptr ? texts.Begin1() : progress->one.place;
  const char* two = progress == nullptr ? texts.Begin2() : progress->two.place;
  std::size_t size = texts.Readable(one, two);
  const auto load1 = [&](std::size_t at) {
    return bounded ? UnitOf<Unit>(one + at, texts.End1()) : LoadAs<Unit>(one + at);
  };
  const auto load2 = [&](std::size_t at) {
    return bounded ? UnitOf<Unit>(two + at, texts.End2()) : LoadAs<Unit>(two + at);
  };
  int accent = progress == nullptr ? 0 : progress->differences.accent;
  int case_ = progress == nullptr ? 0 : progress->differences.case_;
  int symbol = progress == nullptr ? 0 : progress->differences.symbol;
  CaseFold fold = CaseFold::kNone;
  for (std::size_t seam = 0, at = start;; seam = at) {
    if (kFolds && fold != CaseFold::kNone) {
      at = fold == CaseFold::kLatin ? PassAlike<CaseFold::kLatin>(one, two, at, size)
                                    : PassAlike<CaseFold::kOthers>(one, two, at, size);
    }
    unsigned unit1 = load1(at);
    unsigned unit2 = load2(at);
    if (unit1 == unit2) {
      if (unit1 == 0) break;
      at = PassEqual<sizeof(Unit)>(one, two, at, size);
      while ((unit1 = load1(at)) == (unit2 = load2(at)) && unit1 != 0) at += sizeof(Unit);
      if (unit1 == unit2) break;
    }
    std::uint32_t key1 = keys.At(unit1);
    std::uint32_t key2 = keys.At(unit2);
    if (((key1 | key2) & kLook) != 0 ||
        JoinsEither<Unit>(keys, load1(at + sizeof(Unit)), load2(at + sizeof(Unit)))) {
      if (unit1 == 0 && StandsAlone<Unit>(keys, key2, load2(at + sizeof(Unit)))) return -1;
      if (unit2 == 0 && StandsAlone<Unit>(keys, key1, load1(at + sizeof(Unit)))) return 1;
      Meeting met{one + at, two + at};
      const int sign =
          MeetBehindSymbols<Unit>(keys, met, texts.End1(), texts.End2(), at != seam, cmpOp);
      if (sign == kUndecided) {
        const Differences differences{0, accent, case_, symbol};
        if (progress == nullptr) {
          Progress here{{one + at}, {two + at}, at - seam, differences};
          return GoOnClosely<Unit>(keys, texts, cmpOp, here);
        }
        progress->one.place = one + at;
        progress->two.place = two + at;
        progress->alike = at - seam;
        progress->differences = differences;
        return kCloser;
      }
      if (sign != kMet) return sign;
      if (met.symbol != 0) symbol = met.symbol;
      if (met.key1 == 0) break;
      key1 = met.key1;
      key2 = met.key2;
      one = met.place1;
      two = met.place2;
      size = texts.Readable(one, two);
      at = 0;
    } else if (((key1 ^ key2) & 0xffffff00) != 0) {
      return key1 < key2 ? -1 : 1;
    } else {
      at += sizeof(Unit);
    }
    const int accents = static_cast<int>(key1 & 0x1f) - static_cast<int>(key2 & 0x1f);
    const int cases = static_cast<int>(key2 & 0x60) - static_cast<int>(key1 & 0x60);
    if (accents != 0) accent = accents;
    if (case_ == 0) {
      case_ = cases;
    } else if (Folds(keys)) {
      fold = unit1 < OT_FIRST_MARK ? CaseFold::kLatin : CaseFold::kOthers;
    }
  }
  return SignOfMarks(accent, case_, symbol, cmpOp);
}

/// From a place that needs a closer look to the end.
template <class Unit, class Texts>
[[gnu::noinline]] long GoOnClosely(KeysOf<Unit> keys, Texts texts, unsigned short cmpOp,
                                   Progress& progress) {
  constexpr bool kBounded = std::is_same_v<Texts, Spans>;
  const TextSpan& span1 = texts.Span1();
  const TextSpan& span2 = texts.Span2();
  const Closely<Unit> closely(keys, span1, span2, cmpOp);
  for (;;) {
    const bool goesOn = closely.Pass(progress);
    const Differences& found = progress.differences;
    if (found.primary != 0) return found.primary;
    if (!goesOn) return SignOfMarks(found.accent, found.case_, found.symbol, cmpOp);
    const long sign = CompareByKeys<Unit, kBounded>(keys, texts, cmpOp, &progress);
    if (sign != kCloser) return sign;
  }
}

}  // namespace

[[gnu::noinline]] long SignOfMarks(int accent, int case_, int symbol, unsigned short cmpOp) {
  const int decides = accent != 0 && (cmpOp & OT_CMP_IGNORE_ACCENT) == 0 ? accent
                      : case_ != 0 && (cmpOp & OT_CMP_IGNORE_CASE) == 0  ? case_
                                                                         : symbol;
  return (decides > 0) - (decides < 0);
}

long CompareWide(WideKeys keys, const char* text1, const char* text2, TextLabels labels,
                 unsigned short cmpOp, std::size_t at) {
  return CompareByKeys<std::uint16_t, false>(keys, Terminated{text1, text2, labels}, cmpOp, nullptr,
                                             at);
}

long CompareNarrow(ByteKeys keys, const char* text1, const char* text2, TextLabels labels,
                   unsigned short cmpOp, std::size_t at) {
  return CompareByKeys<std::uint8_t, false>(keys, Terminated{text1, text2, labels}, cmpOp, nullptr,
                                            at);
}

/// What is kept in registers is little: all that needs more is left to the loop.
long CompareAlike(WideKeys keys, const char* text1, const char* text2, TextLabels labels,
                  unsigned short cmpOp, const std::size_t start) {
  constexpr std::size_t width = sizeof(std::uint16_t);
  const bool single = LoadWide(text1 + start + width) == LoadWide(text2 + start + width);
  int accent = 0;
  int case_ = 0;
  for (std::size_t at = start; single; at += width) {
    unsigned unit1 = LoadWide(text1 + at);
    unsigned unit2 = LoadWide(text2 + at);
    if (unit1 == unit2) {
      at = PassEqual<width>(text1, text2, at, labels.readable);
      unit1 = LoadWide(text1 + at);
      unit2 = LoadWide(text2 + at);
      if (unit1 == unit2) {
        if (unit1 != 0) break;
        const bool byAccent = accent != 0 && (cmpOp & OT_CMP_IGNORE_ACCENT) == 0;
        const int decides = byAccent ? accent : (cmpOp & OT_CMP_IGNORE_CASE) == 0 ? case_ : 0;
        return (decides > 0) - (decides < 0);
      }
    }
    const std::uint32_t key1 = keys.At(unit1);
    const std::uint32_t key2 = keys.At(unit2);
    if (((key1 | key2) & kLook) != 0) break;
    if (JoinsEither<std::uint16_t>(keys, LoadWide(text1 + at + width),
                                   LoadWide(text2 + at + width))) {
      break;
    }
    if (((key1 ^ key2) & 0xffffff00) != 0) return key1 < key2 ? -1 : 1;
    const int accents = static_cast<int>(key1 & 0x1f) - static_cast<int>(key2 & 0x1f);
    const int cases = static_cast<int>(key2 & 0x60) - static_cast<int>(key1 & 0x60);
    if (accents != 0) accent = accents;
    if (case_ != 0 && cases != 0) break;
    case_ |= cases;
  }
  return CompareWide(keys, text1, text2, labels, cmpOp, start);
}

long CompareInStep(const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp) {
  return WithKeys<long>(text1, kUndecided, [&](auto unit, auto keys) {
    return CompareByKeys<decltype(unit), true>(keys, Spans{text1, text2}, cmpOp, nullptr);
  });
}

bool LevelWalk::PassInStep(const char*& place1, const char*& place2, unsigned char& script1,
                           unsigned char& script2, Differences& differences) {
  text_.walk.position_ = place1;
  pattern_.walk.position_ = place2;
  text_.walk.script_ = script1;
  pattern_.walk.script_ = script2;
  differences_ = differences;
  bool goesOn = true;
  do {
    goesOn = Pass();
  } while (goesOn && !(text_.walk.BetweenCharacters() && pattern_.walk.BetweenCharacters()));
  place1 = text_.walk.position_;
  place2 = pattern_.walk.position_;
  script1 = text_.walk.script_;
  script2 = pattern_.walk.script_;
  differences = differences_;
  return goesOn;
}

}  // namespace ot95
