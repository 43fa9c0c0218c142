/// Comparison of two texts that run through the same records. Equal stretches are passed over
/// unseen, many bytes at a time; once the first difference of case is known, so are stretches that
/// differ in the case of ASCII letters alone. Where the texts part, most characters cost one record
/// on each side. Where a contraction can reach into that place, the walk begins again at a seam
/// before it.

#include <algorithm>
#include <array>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "levelwalk.h"

namespace ot95 {
namespace {

constexpr auto kAscii = [] {
  std::array<std::uint16_t, 0x80> units{};
  for (std::uint16_t unit = 0; unit < units.size(); ++unit) units[unit] = unit;
  return units;
}();

// How the characters of a code set reach their records, and what contractions know them as.
struct NarrowReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const OtOrderRecord& At(Unit unit) const { return table.AtByte(unit); }
  static unsigned short Value(Unit unit) { return unit; }
  const OtOrderRecord& OfValue(unsigned short value) const { return At(static_cast<Unit>(value)); }
  static bool HoldsAscii() { return true; }
};
struct WideReader {
  using Unit = std::uint16_t;
  const OtOrderTable& table;
  const OtOrderRecord& At(Unit unit) const { return table.AtWide(unit); }
  static unsigned short Value(Unit unit) { return unit; }
  const OtOrderRecord& OfValue(unsigned short value) const { return At(static_cast<Unit>(value)); }
  static bool HoldsAscii() { return true; }
};
struct MappedReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const std::uint16_t* toUnicode;
  const OtOrderRecord& At(Unit unit) const { return table.AtWide(toUnicode[unit]); }
  unsigned short Value(Unit unit) const { return toUnicode[unit]; }
  const OtOrderRecord& OfValue(unsigned short value) const { return table.AtWide(value); }
  bool HoldsAscii() const { return std::memcmp(toUnicode, kAscii.data(), sizeof kAscii) == 0; }
};

template <class Unit>
Unit LoadAs(const char* place) {
  Unit unit;
  std::memcpy(&unit, place, sizeof unit);
  return unit;
}

/// Units from here on can follow a head; ASCII letters have no other followers.
template <class Unit>
constexpr unsigned kFirstFollower = sizeof(Unit) == 1 ? 0x80 : OT_FIRST_MARK;

/// Whether two units are passed over together. @param folds the case of ASCII letters is no
/// difference; then nothing that can follow a head is passed over.
template <class Unit, bool folds>
bool AreAlike(Unit unit1, Unit unit2) {
  if (unit1 == 0) return false;
  if (!folds) return unit1 == unit2;
  if (unit1 == unit2) return unit1 < kFirstFollower<Unit>;
  return (unit1 ^ unit2) == 0x20 && static_cast<unsigned>((unit1 | 0x20) - 'a') < 26;
}

#if defined(__SSE2__)
constexpr std::size_t kBlock = 16;

template <class Unit>
__m128i EqualUnits(__m128i a, __m128i b) {
  return sizeof(Unit) == 1 ? _mm_cmpeq_epi8(a, b) : _mm_cmpeq_epi16(a, b);
}
/// The units of `a` that are at most `most`.
template <class Unit>
__m128i AtMost(__m128i a, unsigned most) {
  const __m128i rest = sizeof(Unit) == 1
                           ? _mm_subs_epu8(a, _mm_set1_epi8(static_cast<char>(most)))
                           : _mm_subs_epu16(a, _mm_set1_epi16(static_cast<short>(most)));
  return EqualUnits<Unit>(rest, _mm_setzero_si128());
}
template <class Unit>
__m128i All(char unit) {
  return sizeof(Unit) == 1 ? _mm_set1_epi8(unit) : _mm_set1_epi16(unit);
}

/// Bytes before the first unit of a block that isn't alike; kBlock if there is none.
template <class Unit, bool folds>
std::size_t AlikeInBlock(const char* place1, const char* place2) {
  const __m128i block1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(place1));
  const __m128i block2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(place2));
  __m128i alike = EqualUnits<Unit>(block1, block2);
  if (folds) {
    const __m128i caseBit = All<Unit>(0x20);
    const __m128i small = _mm_or_si128(block1, caseBit);
    const __m128i fromA = sizeof(Unit) == 1 ? _mm_sub_epi8(small, All<Unit>('a'))
                                            : _mm_sub_epi16(small, All<Unit>('a'));
    const __m128i otherCase = EqualUnits<Unit>(_mm_xor_si128(block1, block2), caseBit);
    alike = _mm_or_si128(_mm_and_si128(alike, AtMost<Unit>(block1, kFirstFollower<Unit> - 1)),
                         _mm_and_si128(otherCase, AtMost<Unit>(fromA, 25)));
  }
  const __m128i ends = EqualUnits<Unit>(block1, _mm_setzero_si128());
  const auto goesOn = static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(ends, alike)));
  return goesOn == 0xffff ? kBlock : static_cast<std::size_t>(__builtin_ctz(~goesOn));
}
#else
constexpr std::size_t kBlock = 8;

template <class Unit, bool folds>
std::size_t AlikeInBlock(const char* place1, const char* place2) {
  std::size_t at = 0;
  while (at < kBlock &&
         AreAlike<Unit, folds>(LoadAs<Unit>(place1 + at), LoadAs<Unit>(place2 + at))) {
    at += sizeof(Unit);
  }
  return at;
}
#endif

template <class Reader>
class InStep {
 public:
  InStep(const Reader& reader, const OtLanguage* language, unsigned char defaultScript,
         const TextSpan& text1, const TextSpan& text2, unsigned short cmpOp)
      : reader_(reader),
        text1_(text1),
        text2_(text2),
        place1_(text1.text),
        place2_(text2.text),
        language_(language),
        cmpOp_(cmpOp),
        defaultScript_(defaultScript),
        tailors_(language != nullptr && language->tailorsOrder != 0),
        script1_(defaultScript),
        script2_(defaultScript) {}

  int Run() {
    // What of a record asks for more than its key, and what tells that a walk can't begin there.
    const unsigned asks = OtOrderRecord::kAbsent | OtOrderRecord::kExpansion |
                          OtOrderRecord::kLowFollowers |
                          (tailors_ ? unsigned{OtOrderRecord::kTailoring} : 0U);
    const unsigned follows = OtOrderRecord::kAbsent | OtOrderRecord::kFollows |
                             (tailors_ ? unsigned{OtOrderRecord::kFollowsTailored} : 0U);
    for (;;) {
      const char* const start = place1_;
      Unit unit1 = UnitAt(place1_, text1_.end);
      Unit unit2 = UnitAt(place2_, text2_.end);
      const bool folds = folding_ && AreAlike<Unit, true>(unit1, unit2);
      if (folds || unit1 == unit2) {
        folds ? Skip<true>() : Skip<false>();
        unit1 = UnitAt(place1_, text1_.end);
        unit2 = UnitAt(place2_, text2_.end);
        if ((unit1 | unit2) == 0) return Decide();
      }
      const OtOrderRecord& record1 = reader_.At(unit1);
      const OtOrderRecord& record2 = reader_.At(unit2);
      const unsigned flags = record1.flags | record2.flags;
      bool goesOn = true;
      if (place1_ != start && (flags & follows) != 0) {
        goesOn = AdvanceFromSeam(start);
      } else if (NeedsNoLists(flags, asks, unit1, unit2)) {
        goesOn = Take(record1.Key(defaultScript_), record2.Key(defaultScript_));
      } else {
        goesOn = Advance();
      }
      if (!goesOn) return Decide();
    }
  }

 private:
  using Unit = typename Reader::Unit;

  int Decide() const {
    return differences_.primary != 0 ? differences_.primary : differences_.Decide(Levels(cmpOp_));
  }

  static Unit UnitAt(const char* place, std::uintptr_t end) {
    return reinterpret_cast<std::uintptr_t>(place) < end ? LoadAs<Unit>(place) : Unit{0};
  }
  unsigned short NextValue(const char* place, std::uintptr_t end) const {
    return reader_.Value(UnitAt(place + sizeof(Unit), end));
  }

  /// Whether both records are the whole answers. @param flags of one or the other.
  bool NeedsNoLists(unsigned flags, unsigned asks, Unit unit1, Unit unit2) const {
    if ((flags & (asks | OtOrderRecord::kContractions)) == 0) return true;
    // The terminator has no next unit.
    const unsigned short next1 = unit1 != 0 ? NextValue(place1_, text1_.end) : Unit{0};
    const unsigned short next2 = unit2 != 0 ? NextValue(place2_, text2_.end) : Unit{0};
    if ((flags & asks) == 0) {
      return (next1 | next2) < OT_FIRST_MARK || !(reader_.OfValue(next1).Follows(tailors_) ||
                                                  reader_.OfValue(next2).Follows(tailors_));
    }
    return tailors_ && language_->Leaves(reader_.Value(unit1), next1) &&
           language_->Leaves(reader_.Value(unit2), next2);
  }

  /// Goes on to where the texts part.
  template <bool folds>
  void Skip() {
    SkipBlocks<folds>();
    for (;;) {
      if (!AreAlike<Unit, folds>(UnitAt(place1_, text1_.end), UnitAt(place2_, text2_.end))) return;
      place1_ += sizeof(Unit);
      place2_ += sizeof(Unit);
    }
  }

  template <bool folds>
  void SkipBlocks() {
    const auto passed1 = static_cast<std::size_t>(place1_ - text1_.text);
    const auto passed2 = static_cast<std::size_t>(place2_ - text2_.text);
    if (text1_.readable <= passed1 || text2_.readable <= passed2) return;
    std::size_t left = std::min(text1_.readable - passed1, text2_.readable - passed2);
    for (; left >= kBlock; left -= kBlock) {
      const std::size_t alike = AlikeInBlock<Unit, folds>(place1_, place2_);
      place1_ += alike;
      place2_ += alike;
      if (alike != kBlock) return;
    }
    // The last block begins before this place; what was passed over is most often alike, too.
    const std::size_t back = kBlock - left;
    if (static_cast<std::size_t>(place1_ - text1_.text) < back ||
        static_cast<std::size_t>(place2_ - text2_.text) < back) {
      return;
    }
    const std::size_t alike = AlikeInBlock<Unit, folds>(place1_ - back, place2_ - back);
    if (alike <= back) return;
    place1_ += alike - back;
    place2_ += alike - back;
  }

  /// Whether a character can be part of what stands before it: of a contraction, or of a stretch
  /// that keeps the script byte before it.
  bool BelongsToBefore(Unit unit) const {
    const OtOrderRecord& record = reader_.At(unit);
    if (record.absent()) {
      return unit >= 0xfff0 || unit == AsteriskWord() || unit == QuestionWord();
    }
    return record.Follows(tailors_);
  }

  /// Whether a walk can begin at a place of a stretch that both texts have.
  bool IsSeam(const char* place, std::uintptr_t end, const char* start) const {
    const Unit unit = UnitAt(place, end);
    if (!BelongsToBefore(unit)) return true;
    if (!tailors_ || reader_.Value(unit) >= 0x80) return false;
    // No head is near enough to reach to this letter.
    for (int i = 1; i < OT_LONGEST_CONTRACTION && place != start; ++i) {
      place -= sizeof(Unit);
      if (!language_->Leaves(reader_.Value(LoadAs<Unit>(place)), 0)) return false;
    }
    return true;
  }

  /// From where the texts part: goes back to the seam before, and on until that place is behind.
  /// @return whether the walk goes on.
  [[gnu::noinline]] bool AdvanceFromSeam(const char* start) {
    const char* const parting = place1_;
    const char* const start2 = place2_ - (place1_ - start);
    while (place1_ != start &&
           !(IsSeam(place1_, text1_.end, start) && IsSeam(place2_, text2_.end, start2))) {
      place1_ -= sizeof(Unit);
      place2_ -= sizeof(Unit);
    }
    do {
      if (!Advance()) return false;
    } while (place1_ <= parting);
    return true;
  }

  /// The record that is the whole answer for the character at a place; null if there is none.
  const OtOrderRecord* RecordAlone(const char* place, std::uintptr_t end) const {
    const OtOrderRecord* record = &reader_.At(UnitAt(place, end));
    if (tailors_) {
      if (const OtOrderRecord* own = record->Tailored(language_)) record = own;
    }
    const unsigned flags = record->flags;
    if ((flags & (OtOrderRecord::kAbsent | OtOrderRecord::kExpansion)) != 0) return nullptr;
    if ((flags & OtOrderRecord::kContractions) != 0) {
      const Unit next = UnitAt(place + sizeof(Unit), end);
      const bool far =
          (flags & OtOrderRecord::kLowFollowers) != 0 || reader_.Value(next) >= OT_FIRST_MARK;
      if (far && reader_.At(next).Follows(tailors_)) return nullptr;
    }
    return record;
  }

  /// One character on both sides, or one pass of the plain walk. @return whether the walk goes on.
  [[gnu::noinline]] bool Advance() {
    const OtOrderRecord* record1 = RecordAlone(place1_, text1_.end);
    const OtOrderRecord* record2 = RecordAlone(place2_, text2_.end);
    if (record1 == nullptr || record2 == nullptr) return AdvancePlainly();
    return Take(record1->Key(defaultScript_), record2->Key(defaultScript_));
  }

  /// The keys at the two places. @return whether the walk goes on.
  bool Take(std::uint32_t key1, std::uint32_t key2) {
    if (!IsReal(key1) || !IsReal(key2)) return AdvanceOverSymbols();
    return Meet(key1, key2, place1_ + sizeof(Unit), place2_ + sizeof(Unit));
  }

  /// Two real characters, and the places behind them. @return whether the walk goes on.
  bool Meet(std::uint32_t key1, std::uint32_t key2, const char* next1, const char* next2) {
    if (((key1 ^ key2) & kPrimaryMask) != 0) {
      differences_.primary = Sign(key1, key2);
      return false;
    }
    if (key1 != key2) {
      differences_.Note(key1, key2);
      if (!folding_) folding_ = differences_.case_ != 0 && !tailors_ && reader_.HoldsAscii();
    }
    if (key1 == 0) return false;
    script1_ = static_cast<unsigned char>(key1 >> 24);
    script2_ = static_cast<unsigned char>(key2 >> 24);
    place1_ = next1;
    place2_ = next2;
    return true;
  }

  /// Over the symbols of one text or both, to their next real characters.
  [[gnu::noinline]] bool AdvanceOverSymbols() {
    const Levels levels(cmpOp_);
    bool alone = true;
    const auto nextKey = [&](const char*& place, std::uintptr_t end) {
      for (;;) {
        const OtOrderRecord* record = RecordAlone(place, end);
        if (record == nullptr) {
          alone = false;
          return std::uint32_t{0};
        }
        const std::uint32_t key = record->Key(defaultScript_);
        if (key != 0) place += sizeof(Unit);
        if (IsReal(key) || !levels.Ignores(key)) return key;
      }
    };
    const char* next1 = place1_;
    const char* next2 = place2_;
    std::uint32_t key1 = 0;
    std::uint32_t key2 = 0;
    const int symbol = PairSymbols(
        key1, [&] { return nextKey(next1, text1_.end); }, key2,
        [&] { return nextKey(next2, text2_.end); }, [&](std::uint32_t) { return !alone; });
    if (!alone) return AdvancePlainly();
    if (symbol != 0) differences_.symbol = symbol;
    return Meet(key1, key2, next1, next2);
  }

  [[gnu::noinline, gnu::cold]] bool AdvancePlainly() {
    LevelWalk walk(OrderWalk(text1_), OrderWalk(text2_), Levels(cmpOp_), false, -1);
    return walk.PassInStep(place1_, place2_, script1_, script2_, differences_);
  }

  const Reader reader_;
  const TextSpan& text1_;
  const TextSpan& text2_;
  const char* place1_;
  const char* place2_;
  const OtLanguage* language_;
  unsigned short cmpOp_;
  Differences differences_;
  unsigned char defaultScript_;
  bool tailors_;
  bool folding_ = false;  // a difference of case in ASCII letters says nothing new
  unsigned char script1_;
  unsigned char script2_;
};

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
  const unsigned char number =
      text1.language != OT_LANG_DEFAULT ? text1.language : OtLanguageContext::GetDefaultLanguage();
  const OtLanguage* language = OtLanguageContext::QueryLanguage(number);
  const auto run = [&](const auto& reader, unsigned char script) {
    return InStep(reader, language, script, text1, text2, cmpOp).Run();
  };
  if (text1.codeSet == OT_CS_UNICODE && language != nullptr) {
    return run(WideReader{*kOrderTables.unicode}, language->script);
  }
  const OtCodeSet& set = *OtLanguageContext::QueryCodeSet(text1.codeSet);
  const unsigned char script = set.DefaultScript(number);
  if (!IsWide(text1.codeSet)) {
    return set.orderTable != nullptr
               ? run(NarrowReader{*set.orderTable}, script)
               : run(MappedReader{*kOrderTables.unicode, set.UnicodeValues()}, script);
  }
  if (set.orderTable != nullptr) return run(WideReader{*set.orderTable}, script);
  LevelWalk walk(OrderWalk(text1), OrderWalk(text2), Levels(cmpOp), false, -1);
  while (walk.Pass()) {
  }
  return walk.Decide();
}

}  // namespace ot95
