/// Comparison of two texts that run through the same records. Equal stretches are passed over
/// unseen, many bytes at a time. Where the texts part, the walk begins again at a seam before that
/// place, at a character that no contraction can reach into; from there on most characters cost
/// one record on each side.

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "levelwalk.h"

namespace ot95 {
namespace {

// How the characters of a code set reach their records, and what contractions know them as.
struct NarrowReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const OtOrderRecord& At(Unit unit) const { return table.AtByte(unit); }
  static unsigned short Value(Unit unit) { return unit; }
};
struct WideReader {
  using Unit = std::uint16_t;
  const OtOrderTable& table;
  const OtOrderRecord& At(Unit unit) const { return table.AtWide(unit); }
  static unsigned short Value(Unit unit) { return unit; }
};
struct MappedReader {
  using Unit = std::uint8_t;
  const OtOrderTable& table;
  const std::uint16_t* toUnicode;
  const OtOrderRecord& At(Unit unit) const { return table.AtWide(toUnicode[unit]); }
  unsigned short Value(Unit unit) const { return toUnicode[unit]; }
};

template <class Unit>
Unit LoadAs(const char* place) {
  Unit unit;
  std::memcpy(&unit, place, sizeof unit);
  return unit;
}

#if defined(__SSE2__)
constexpr std::size_t kBlock = 16;

/// Bytes before the first unit of a block that differs or is zero; kBlock if there is none.
template <class Unit>
std::size_t EqualInBlock(const char* place1, const char* place2) {
  const __m128i block1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(place1));
  const __m128i block2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(place2));
  const __m128i zero = _mm_setzero_si128();
  const bool narrow = sizeof(Unit) == 1;
  const __m128i equal = narrow ? _mm_cmpeq_epi8(block1, block2) : _mm_cmpeq_epi16(block1, block2);
  const __m128i ends = narrow ? _mm_cmpeq_epi8(block1, zero) : _mm_cmpeq_epi16(block1, zero);
  const auto goesOn = static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(ends, equal)));
  return goesOn == 0xffff ? kBlock : static_cast<std::size_t>(__builtin_ctz(~goesOn));
}
#else
constexpr std::size_t kBlock = 8;

template <class Unit>
std::size_t EqualInBlock(const char* place1, const char* place2) {
  std::size_t at = 0;
  for (; at < kBlock; at += sizeof(Unit)) {
    const Unit unit = LoadAs<Unit>(place1 + at);
    if (unit != LoadAs<Unit>(place2 + at) || unit == 0) break;
  }
  return at;
}
#endif

template <class Reader>
class InStep {
 public:
  InStep(const Reader& reader, const OtCodeSet& set, const OtLanguage* language,
         unsigned char languageNumber, const TextSpan& text1, const TextSpan& text2,
         unsigned short cmpOp)
      : reader_(reader),
        text1_(text1),
        text2_(text2),
        place1_(text1.text),
        place2_(text2.text),
        language_(language),
        cmpOp_(cmpOp),
        // As DefaultScript answers for all sets of characters.
        defaultScript_(language != nullptr ? language->script : set.DefaultScript(languageNumber)),
        tailors_(language != nullptr && language->tailorsOrder != 0),
        script1_(defaultScript_),
        script2_(defaultScript_) {}

  int Run() {
    for (;;) {
      const char* const parting =
          UnitAt(place1_, text1_.end) == UnitAt(place2_, text2_.end) ? SkipEqual() : place1_;
      // The way back to the parting isn't skipped again.
      do {
        if (!Advance()) return Decide();
      } while (place1_ <= parting);
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

  /// Goes on to where the texts part, and back to the seam before. @return where they part.
  const char* SkipEqual() {
    const char* const start = place1_;
    SkipBlocks();
    SkipUnits();
    const char* const parting = place1_;
    Unit unit1 = UnitAt(place1_, text1_.end);
    Unit unit2 = UnitAt(place2_, text2_.end);
    while (place1_ != start && (BelongsToBefore(unit1) || BelongsToBefore(unit2))) {
      place1_ -= sizeof(Unit);
      place2_ -= sizeof(Unit);
      unit1 = unit2 = LoadAs<Unit>(place1_);
    }
    return parting;
  }

  void SkipBlocks() {
    const auto passed1 = static_cast<std::size_t>(place1_ - text1_.text);
    const auto passed2 = static_cast<std::size_t>(place2_ - text2_.text);
    if (text1_.readable < passed1 + kBlock || text2_.readable < passed2 + kBlock) return;
    std::size_t left = std::min(text1_.readable - passed1, text2_.readable - passed2);
    for (; left >= kBlock; left -= kBlock) {
      const std::size_t equal = EqualInBlock<Unit>(place1_, place2_);
      place1_ += equal;
      place2_ += equal;
      if (equal != kBlock) return;
    }
  }

  void SkipUnits() {
    for (;;) {
      const Unit unit = UnitAt(place1_, text1_.end);
      if (unit == 0 || unit != UnitAt(place2_, text2_.end)) return;
      place1_ += sizeof(Unit);
      place2_ += sizeof(Unit);
    }
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

  /// The record that is the whole answer for the character at a place; null if there is none.
  const OtOrderRecord* RecordAlone(Unit unit, const char* place, std::uintptr_t end) const {
    const OtOrderRecord* record = &reader_.At(unit);
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
  bool Advance() {
    const OtOrderRecord* record1 = RecordAlone(UnitAt(place1_, text1_.end), place1_, text1_.end);
    const OtOrderRecord* record2 = RecordAlone(UnitAt(place2_, text2_.end), place2_, text2_.end);
    if (record1 == nullptr || record2 == nullptr) return AdvancePlainly();
    const std::uint32_t key1 = record1->Key(defaultScript_);
    const std::uint32_t key2 = record2->Key(defaultScript_);
    if (!IsReal(key1) || !IsReal(key2)) return AdvancePlainly();
    if (((key1 ^ key2) & kPrimaryMask) != 0) {
      differences_.primary = Sign(key1, key2);
      return false;
    }
    differences_.Note(key1, key2);
    if (key1 == 0) return false;
    script1_ = static_cast<unsigned char>(key1 >> 24);
    script2_ = static_cast<unsigned char>(key2 >> 24);
    place1_ += sizeof(Unit);
    place2_ += sizeof(Unit);
    return true;
  }

  [[gnu::noinline]] bool AdvancePlainly() {
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
  const OtCodeSet& set = *OtLanguageContext::QueryCodeSet(text1.codeSet);
  const unsigned char number =
      text1.language != OT_LANG_DEFAULT ? text1.language : OtLanguageContext::GetDefaultLanguage();
  const OtLanguage* language = OtLanguageContext::QueryLanguage(number);
  const auto run = [&](const auto& reader) {
    return InStep(reader, set, language, number, text1, text2, cmpOp).Run();
  };
  if (set.orderTable != nullptr) {
    return IsWide(text1.codeSet) ? run(WideReader{*set.orderTable})
                                 : run(NarrowReader{*set.orderTable});
  }
  if (!IsWide(text1.codeSet)) {
    const OtCodeSet& unicode = *OtLanguageContext::QueryCodeSet(OT_CS_UNICODE);
    return run(MappedReader{*unicode.orderTable, set.UnicodeValues()});
  }
  LevelWalk walk(OrderWalk(text1), OrderWalk(text2), Levels(cmpOp), false, -1);
  while (walk.Pass()) {
  }
  return walk.Decide();
}

}  // namespace ot95
