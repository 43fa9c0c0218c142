/// Comparison of two texts that run through the same records. Stretches that are alike are passed
/// over unseen. Where the texts part, most characters cost one record on each side. Where a
/// contraction can reach into that place, the walk begins again at a seam before it.

#include <array>

#include "text/collation/alikeunits.h"
#include "text/collation/compare.h"
#include "text/collation/plainkeys.h"
#include "text/collation/walk.h"

namespace ot95 {
namespace {

constexpr auto kAscii = [] {
  std::array<std::uint16_t, 0x80> units{};
  for (std::uint16_t unit = 0; unit < units.size(); ++unit) units[unit] = unit;
  return units;
}();

// How the characters of a code set reach their records, and what contractions know them as.
template <class CodeUnit>
struct WideReader {
  using Unit = CodeUnit;
  static constexpr const std::uint16_t* toUnicode = nullptr;
  const OtOrderTable& table;
  const OtOrderRecord& At(std::uint16_t unit) const { return table.AtWide(unit); }
  const OtOrderRecord& OfValue(unsigned short value) const { return At(value); }
  static unsigned short Value(std::uint16_t unit) { return unit; }
  static std::uint32_t Plain(std::uint16_t unit) { return PlainKey(unit); }
  static bool HoldsAscii() { return true; }
};
struct NarrowReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const std::uint16_t* toUnicode;
  const OtOrderRecord& At(Unit unit) const { return table.AtByte(unit); }
  const OtOrderRecord& OfValue(unsigned short value) const { return At(static_cast<Unit>(value)); }
  static unsigned short Value(Unit unit) { return unit; }
  std::uint32_t Plain(Unit unit) const { return PlainKey(toUnicode[unit]); }
  static bool HoldsAscii() { return true; }
};
struct MappedReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const std::uint16_t* toUnicode;
  const OtOrderRecord& At(Unit unit) const { return table.AtWide(toUnicode[unit]); }
  const OtOrderRecord& OfValue(unsigned short value) const { return table.AtWide(value); }
  unsigned short Value(Unit unit) const { return toUnicode[unit]; }
  std::uint32_t Plain(Unit unit) const { return PlainKey(toUnicode[unit]); }
  bool HoldsAscii() const { return std::memcmp(toUnicode, kAscii.data(), sizeof kAscii) == 0; }
};

bool Tailors(const OtLanguage* language) {
  return language != nullptr && language->tailorsOrder != 0;
}

/// Whether a plain key at each of two places counts: nothing that follows makes more of its letter.
template <class Reader>
[[gnu::always_inline]] inline bool NoMarkFollows(const Reader& reader, Places at,
                                                 std::uintptr_t end1, std::uintptr_t end2) {
  using Unit = typename Reader::Unit;
  const unsigned next1 = reader.Value(UnitAt<Unit>(at.one + sizeof(Unit), end1));
  const unsigned next2 = reader.Value(UnitAt<Unit>(at.two + sizeof(Unit), end2));
  return (next1 | next2) < OT_FIRST_MARK || (IsNoFollower(next1) && IsNoFollower(next2));
}

template <class Reader>
class InStep {
 public:
  InStep(const Reader& reader, const OtLanguage* language, unsigned char defaultScript,
         const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp)
      : reader_(reader),
        text1_(text1),
        text2_(text2),
        language_(language),
        cmpOp_(cmpOp),
        defaultScript_(defaultScript),
        tailors_(Tailors(language)),
        script1_(defaultScript),
        script2_(defaultScript) {}

  /// @param met what of the texts was compared before.
  int Run(const LettersMet& met) {
    Places at = {text1_.text + met.bytes, text2_.text + met.bytes};
    if (met.bytes != 0) GoOnBehind(met);
    do {
      const char* const start = at.one;
      Value unit1 = Unit1(at);
      Value unit2 = Unit2(at);
      if (unit1 == unit2 || folds_) {
        at = folds_ ? PassAlike<Unit, CaseFold::kAll>(at, text1_, text2_)
                    : PassAlike<Unit, CaseFold::kNone>(at, text1_, text2_);
        unit1 = Unit1(at);
        unit2 = Unit2(at);
        if ((unit1 | unit2) == 0) break;
      }
      const std::uint32_t key1 = reader_.Plain(unit1);
      const std::uint32_t key2 = reader_.Plain(unit2);
      const bool plain = (key1 & key2 & kLetterKey) != 0 &&
                         NoMarkFollows(reader_, at, text1_.end, text2_.end) &&
                         (!tailors_ || IsUntailored(key1, key2, at, start));
      if (plain) {
        const std::uint32_t letters = ~kTailoredKey;
        at = Meet(key1 & letters, key2 & letters) ? at.Behind(sizeof(Unit)) : kEnd;
      } else {
        at = AdvanceByRecords(at, start);
      }
    } while (at.one != nullptr);
    return differences_.primary != 0 ? differences_.primary : differences_.Decide(Levels(cmpOp_));
  }

 private:
  using Unit = typename Reader::Unit;
  using Value = UnitValue<Unit>;

  /// In the place of what comes next: the differences are all found.
  static constexpr Places kEnd = {nullptr, nullptr};

  void GoOnBehind(const LettersMet& met) {
    differences_ = met.differences;
    FoldIfTold();
    if (met.script != 0) script1_ = script2_ = met.script;
  }
  void FoldIfTold() {
    if (!folds_) folds_ = differences_.case_ != 0 && !tailors_ && reader_.HoldsAscii();
  }

  Value Unit1(Places at) const { return UnitAt<Unit>(at.one, text1_.end); }
  Value Unit2(Places at) const { return UnitAt<Unit>(at.two, text2_.end); }

  /// Whether two plain keys are the language's, too.
  bool IsUntailored(std::uint32_t key1, std::uint32_t key2, Places at, const char* start) const {
    if (((key1 | key2) & kTailoredKey) == 0) return true;
    return language_->Leaves(reader_.Value(Unit1(at)), 0) &&
           language_->Leaves(reader_.Value(Unit2(at)), 0) && !HasHead(at.one, start);
  }

  /// Whether a record that may be part of what stands before it has to be looked at from there.
  /// @param flags of the records at a place before which the texts are alike from `start` on.
  bool MayBeReached(unsigned flags, const char* place, const char* start) const {
    constexpr unsigned kByAll =
        OtOrderRecord::kAbsent | OtOrderRecord::kFollows | OtOrderRecord::kExpansion;
    if ((flags & kByAll) != 0) return true;
    return tailors_ && (flags & OtOrderRecord::kFollowsTailored) != 0 && HasHead(place, start);
  }

  /// Whether a head of the language's own may be near enough before a place to reach it.
  bool HasHead(const char* place, const char* start) const {
    for (int i = 1; i < OT_LONGEST_CONTRACTION && place != start; ++i) {
      place -= sizeof(Unit);
      const Value unit = LoadAs<Unit>(place);
      if (!language_->Leaves(reader_.Value(unit), 0)) return true;
      if (!reader_.At(unit).Follows(true)) return false;
    }
    return false;
  }

  /// Whether a character can be part of what stands before it: of a contraction, or of a stretch
  /// that keeps the script byte before it.
  bool BelongsToBefore(Value unit) const {
    const OtOrderRecord& record = reader_.At(unit);
    if (record.absent()) {
      const unsigned short value = reader_.Value(unit);
      return value >= 0xfff0 || value == AsteriskWord() || value == QuestionWord();
    }
    return record.Follows(tailors_) || record.WeighsNothing();
  }

  /// Whether a text goes on with symbols and something real behind them.
  bool RealFollows(const char* place, std::uintptr_t end) const {
    bool found = false;
    PlainKeys<Unit>(reader_.toUnicode, language_, defaultScript_)
        .Run(place, end, [&found](std::uint32_t key) {
          found = IsReal(key);
          return !found;
        });
    return found;
  }

  /// What Run does at a place with other characters than letters with plain keys.
  [[gnu::noinline]] Places AdvanceByRecords(Places at, const char* start) {
    const Value unit1 = Unit1(at);
    const Value unit2 = Unit2(at);
    const OtOrderRecord& record1 = reader_.At(unit1);
    const OtOrderRecord& record2 = reader_.At(unit2);
    const unsigned flags = record1.flags | record2.flags;
    if (flags == 0) return Take(at, record1.Key(defaultScript_), record2.Key(defaultScript_));
    const auto isPlain = [this](Value unit) { return unit == 0 || reader_.Plain(unit) != 0; };
    if (!tailors_ && isPlain(unit1) && isPlain(unit2)) {
      const bool longer1 = unit2 == 0 && RealFollows(at.one, text1_.end);
      const bool longer2 = unit1 == 0 && RealFollows(at.two, text2_.end);
      if (!longer1 && !longer2) return AdvanceOverSymbols(at);
      differences_.primary = longer1 ? 1 : -1;
      return kEnd;
    }
    const bool reached = at.one != start && MayBeReached(flags, at.one, start);
    return reached ? AdvanceFromSeam(at, start) : Advance(at);
  }

  /// From where the texts part: goes back to the seam before, and on until that place is behind.
  Places AdvanceFromSeam(Places at, const char* start) {
    const char* const parting = at.one;
    while (at.one != start && (BelongsToBefore(Unit1(at)) || BelongsToBefore(Unit2(at)))) {
      at = at.Behind(-static_cast<std::ptrdiff_t>(sizeof(Unit)));
    }
    do {
      at = Advance(at);
    } while (at.one != nullptr && at.one <= parting);
    return at;
  }

  /// In place of a key: the character's record isn't the whole answer.
  static constexpr std::uint32_t kNotAlone = UINT32_MAX;

  /// The key of the character at a place by its record alone.
  [[gnu::always_inline]] inline std::uint32_t KeyAlone(const char* place,
                                                       std::uintptr_t end) const {
    const Value unit = UnitAt<Unit>(place, end);
    const OtOrderRecord* record = &reader_.At(unit);
    const unsigned common = record->flags;
    const OtOrderRecord* own = tailors_ ? record->Tailored(language_) : nullptr;
    if (own != nullptr) record = own;
    const unsigned flags = record->flags;
    if ((flags & (OtOrderRecord::kAbsent | OtOrderRecord::kExpansion)) != 0) return kNotAlone;
    if (unit != 0) {
      const unsigned short next = reader_.Value(UnitAt<Unit>(place + sizeof(Unit), end));
      if (next >= OT_FIRST_MARK) {
        if (NeedsNext(common | flags, next, place, end)) return kNotAlone;
      } else if ((flags & OtOrderRecord::kLowFollowers) != 0) {
        if (reader_.OfValue(next).Follows(tailors_)) return kNotAlone;
      }
    }
    const std::uint32_t key = record->Key(defaultScript_);
    return tailors_ && own == nullptr ? RankedKey(key, *language_) : key;
  }

  /// Whether a character has to be looked at together with what follows: it may contract, or marks
  /// are behind it whose order isn't that of the text.
  bool NeedsNext(unsigned flags, unsigned short next, const char* place, std::uintptr_t end) const {
    const OtOrderRecord& follower = reader_.OfValue(next);
    if ((flags & OtOrderRecord::kContractions) != 0) return follower.Follows(tailors_);
    if (!follower.IsMark()) return false;
    if ((flags & OtOrderRecord::kCombines) != 0) return true;
    const unsigned short third = reader_.Value(UnitAt<Unit>(place + 2 * sizeof(Unit), end));
    return third >= OT_FIRST_MARK && reader_.OfValue(third).IsMark();
  }

  /// One character on both sides, or one pass of the plain walk.
  [[gnu::noinline]] Places Advance(Places at) {
    const std::uint32_t key1 = KeyAlone(at.one, text1_.end);
    const std::uint32_t key2 = KeyAlone(at.two, text2_.end);
    return key1 == kNotAlone || key2 == kNotAlone ? AdvancePlainly(at) : Take(at, key1, key2);
  }

  /// The keys of the characters at the two places.
  Places Take(Places at, std::uint32_t key1, std::uint32_t key2) {
    if (!IsReal(key1) || !IsReal(key2)) return AdvanceOverSymbols(at);
    return Meet(key1, key2) ? at.Behind(sizeof(Unit)) : kEnd;
  }

  /// The keys of two real characters. @return whether the walk goes on behind them.
  bool Meet(std::uint32_t key1, std::uint32_t key2) {
    if (((key1 ^ key2) & kPrimaryMask) != 0) {
      differences_.primary = Sign(key1, key2);
      return false;
    }
    if (key1 != key2) {
      differences_.Note(key1, key2);
      FoldIfTold();
    }
    script1_ = static_cast<unsigned char>(key1 >> 24);
    script2_ = static_cast<unsigned char>(key2 >> 24);
    return key1 != 0;
  }

  /// Over the symbols of one text or both, to their next real characters.
  [[gnu::noinline]] Places AdvanceOverSymbols(const Places at) {
    const Levels levels(cmpOp_);
    bool alone = true;
    const PlainKeys<Unit> plain(reader_.toUnicode, language_, defaultScript_);
    const auto nextKey = [&](const char*& place, std::uintptr_t end) {
      for (;;) {
        std::uint32_t key = plain.KeyAt(place, end);
        if (key == 0) {
          if (UnitAt<Unit>(place, end) == 0) return key;
          key = KeyAlone(place, end);
          if (key == kNotAlone) {
            alone = false;
            return std::uint32_t{0};
          }
        }
        place += sizeof(Unit);
        if (IsReal(key) || !levels.Ignores(key)) return key;
      }
    };
    Places next = at;
    std::uint32_t key1 = 0;
    std::uint32_t key2 = 0;
    const int symbol = PairSymbols(
        key1, [&] { return nextKey(next.one, text1_.end); }, key2,
        [&] { return nextKey(next.two, text2_.end); }, [&](std::uint32_t) { return !alone; });
    if (!alone) return AdvancePlainly(at);
    if (symbol != 0) differences_.symbol = symbol;
    return Meet(key1, key2) ? next : kEnd;
  }

  [[gnu::noinline, gnu::cold]] Places AdvancePlainly(Places at) {
    LevelWalk walk(OrderWalk(text1_), OrderWalk(text2_), Levels(cmpOp_), false, -1);
    return walk.PassInStep(at.one, at.two, script1_, script2_, differences_) ? at : kEnd;
  }

  const Reader reader_;
  const TextSpan& text1_;
  const TextSpan& text2_;
  const OtLanguage* language_;
  unsigned short cmpOp_;
  Differences differences_;
  unsigned char defaultScript_;
  bool tailors_;
  bool folds_ = false;  // a difference of case says nothing new
  unsigned char script1_;
  unsigned char script2_;
};

template <class Reader>
[[gnu::noinline]] int CompareFromStart(const TextSpan& text1, const TextSpan& text2,
                                       unsigned short cmpOp, const OtLanguage* language,
                                       unsigned char script, Reader reader) {
  return InStep(reader, language, script, text1, text2, cmpOp).Run({});
}

template <class Reader>
int CompareByRecords(const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp,
                     const OtLanguage* language, unsigned char script, Reader reader) {
  std::uint32_t letter2 = 0;
  const int sign = PlainKeys<typename Reader::Unit>(reader.toUnicode, language, script)
                       .SignOfFirstLetters(text1, text2, letter2);
  if (sign != 0) return sign;
  return CompareFromStart(text1, text2, cmpOp, language, script, reader);
}

/// In any code set.
[[gnu::noinline]] int CompareAnySet(const TextSpan& text1, const TextSpan& text2,
                                    unsigned short cmpOp, const OtLanguage* language) {
  const OtCodeSet& set = *OtLanguageContext::QueryCodeSet(text1.codeSet);
  const unsigned char script =
      language != nullptr ? language->script : set.DefaultScript(text1.language);
  const auto run = [&](const auto& reader) {
    return CompareByRecords(text1, text2, cmpOp, language, script, reader);
  };
  if (!IsWide(text1.codeSet)) {
    return set.orderTable != nullptr
               ? run(NarrowReader{*set.orderTable, set.UnicodeValues()})
               : run(MappedReader{*kOrderTables.unicode, set.UnicodeValues()});
  }
  if (set.orderTable != nullptr) {
    return text1.reversed ? run(WideReader<TurnedUnit>{*set.orderTable})
                          : run(WideReader<std::uint16_t>{*set.orderTable});
  }
  LevelWalk walk(OrderWalk(text1), OrderWalk(text2), Levels(cmpOp), false, -1);
  while (walk.Pass()) {
  }
  return walk.Decide();
}

}  // namespace

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

int CompareInStep(const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp) {
  const OtLanguage* language = LanguageOf(text1);
  const bool terminated = text1.end == kUnbounded && text2.end == kUnbounded;
  if (text1.codeSet != OT_CS_UNICODE || text1.reversed || language == nullptr || !terminated) {
    return CompareAnySet(text1, text2, cmpOp, language);
  }
  return CompareUnicode(text1.text, text2.text, std::min(text1.readable, text2.readable), cmpOp,
                        *language);
}

int CompareUnicodeBehind(const LettersMet& met, const char* text1, const char* text2,
                         std::size_t readable, unsigned short cmpOp, const OtLanguage& language) {
  const auto span = [&](const char* text) -> TextSpan {
    return {text, kUnbounded, readable, OT_CS_UNICODE, language.number, false};
  };
  const TextSpan span1 = span(text1);
  const TextSpan span2 = span(text2);
  return InStep(WideReader<std::uint16_t>{*kOrderTables.unicode}, &language, language.script, span1,
                span2, cmpOp)
      .Run(met);
}

}  // namespace ot95
