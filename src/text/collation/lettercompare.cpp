/// Comparison of letters with plain keys, unit by unit and in blocks; all else is for the walk in
/// step.

#include "text/collation/lettercompare.h"

#include "text/collation/compare.h"

namespace ot95 {
namespace {

using Unit = std::uint16_t;

/// Where, from `at` on, two texts part, or a place behind which little can be read.
template <CaseFold fold>
[[gnu::always_inline]] inline std::size_t PassAlikeUnits(const char* text1, const char* text2,
                                                         std::size_t at, std::size_t readable) {
  for (; at + 16 <= readable; at += 16) {
    const std::size_t alike = AlikeInBlock<Unit, fold, 16>(text1 + at, text2 + at);
    if (alike != 16) return at + alike;
  }
  if (at + 8 <= readable) {
    const std::size_t alike = AlikeInBlock<Unit, fold, 8>(text1 + at, text2 + at);
    if (alike != 8) return at + alike;
    at += 8;
  }
  if (at < readable && readable >= 8) {  // reaches back over units that were met before
    const std::size_t last = readable - 8;
    return std::max(at, last + AlikeInBlock<Unit, fold, 8>(text1 + last, text2 + last));
  }
  while (at < readable &&
         AreAlike<Unit, fold>(LoadAs<Unit>(text1 + at), LoadAs<Unit>(text2 + at))) {
    at += sizeof(Unit);
  }
  return at;
}

/// Kept apart, as few texts come here: what differs in case alone.
template <CaseFold fold>
[[gnu::noinline]] std::size_t PassFolded(const char* text1, const char* text2, std::size_t at,
                                         std::size_t readable) {
  return PassAlikeUnits<fold>(text1, text2, at, readable);
}

[[gnu::always_inline]] inline std::size_t PassAlike(CaseFold fold, const char* text1,
                                                    const char* text2, std::size_t at,
                                                    std::size_t readable) {
  if (fold == CaseFold::kNone) {
    return PassAlikeUnits<CaseFold::kNone>(text1, text2, at, readable);
  }
  return fold == CaseFold::kLatin ? PassFolded<CaseFold::kLatin>(text1, text2, at, readable)
                                  : PassFolded<CaseFold::kOthers>(text1, text2, at, readable);
}

/// Whether a language leaves a character as it is in all others.
bool Leaves(const OtLanguage& language, Unit unit) {
  if (unit < 0x80) return language.Leaves(unit, 0);
  return !kOrderTables.unicode->AtWide(unit).IsTailored(language);
}

/// Whether a head of the language's own may stand near enough before a place to reach it.
bool HasHead(const OtLanguage& language, const char* place, const char* start) {
  for (int i = 1; i < OT_LONGEST_CONTRACTION && place != start; ++i) {
    place -= sizeof(Unit);
    const auto unit = LoadAs<Unit>(place);
    if (!Leaves(language, unit)) return true;
    if ((PlainKey(unit) & kTailoredKey) == 0) return false;  // nothing reaches it
  }
  return false;
}

/// Whether plain keys that not all languages share are this one's, too.
[[gnu::noinline]] bool AreUntailored(const OtLanguage& language, unsigned unit1, unsigned unit2,
                                     const char* place, const char* start) {
  return Leaves(language, static_cast<Unit>(unit1)) && Leaves(language, static_cast<Unit>(unit2)) &&
         !HasHead(language, place, start);
}

constexpr std::uint32_t kUnclear = UINT32_MAX;

/// The key of the first real character from a place on. @param start what can reach the place
/// begins here.
std::uint32_t FirstReal(const char* place, const OtLanguage& language, const char* start) {
  for (;; place += sizeof(Unit)) {
    const auto unit = LoadAs<Unit>(place);
    if (unit == 0) return 0;
    std::uint32_t key = PlainKey(unit);
    if (key == 0 || !StandAlone(LoadAs<Unit>(place + sizeof(Unit)), 0)) return kUnclear;
    if ((key & kTailoredKey) != 0 && language.tailorsOrder != 0) {
      if (!Leaves(language, unit) || HasHead(language, place, start)) return kUnclear;
    }
    key &= ~kTailoredKey;
    if (key < 0x1000000) key |= std::uint32_t{language.script} << 24;
    if (IsReal(key)) return key;
  }
}

/// Where one text or both go on with symbols, or one ends: how what is behind them sorts. Any other
/// difference weighs less. @return 0 where this can't tell.
[[gnu::noinline]] int SignBehindSymbols(const char* text1, const char* text2, std::size_t at,
                                        std::size_t start, const OtLanguage& language) {
  const std::uint32_t key1 = FirstReal(text1 + at, language, text1 + start);
  const std::uint32_t key2 = FirstReal(text2 + at, language, text2 + start);
  if (key1 == kUnclear || key2 == kUnclear || ((key1 ^ key2) & kPrimaryMask) == 0) return 0;
  return Sign(key1, key2);
}

}  // namespace

int CompareUnicode(const char* text1, const char* text2, std::size_t readable, unsigned short cmpOp,
                   const OtLanguage& language) {
  if (readable == 0 || LoadAs<Unit>(text1) >= kPlainKeys) [[unlikely]]
    return CompareUnicodeBehind({}, text1, text2, readable, cmpOp, language);
  const std::uint32_t* const keys = kOrderTables.plainKeys;
  const std::uint32_t tailored = language.tailorsOrder != 0 ? kTailoredKey : 0;
  Differences differences;
  CaseFold fold = CaseFold::kNone;  // a difference of case says nothing new
  std::size_t met = 0;
  for (std::size_t at = 0; at < readable; met = at) {
    unsigned unit1 = LoadAs<Unit>(text1 + at);
    unsigned unit2 = LoadAs<Unit>(text2 + at);
    if (unit1 == unit2 || fold != CaseFold::kNone) {
      at = PassAlike(fold, text1, text2, at, readable);
      if (at >= readable) break;
      unit1 = LoadAs<Unit>(text1 + at);
      unit2 = LoadAs<Unit>(text2 + at);
      if ((unit1 | unit2) == 0) return differences.Decide(Levels(cmpOp));
    }
    if ((unit1 | unit2) >= kPlainKeys) break;
    const std::uint32_t key1 = keys[unit1];
    const std::uint32_t key2 = keys[unit2];
    if ((key1 & key2 & kLetterKey) == 0) {
      if (const int sign = SignBehindSymbols(text1, text2, at, met, language)) return sign;
      break;
    }
    if (((key1 | key2) & tailored) != 0 &&
        !AreUntailored(language, unit1, unit2, text1 + at, text1 + met)) {
      break;
    }
    at += sizeof(Unit);
    if (!StandAlone(LoadAs<Unit>(text1 + at), LoadAs<Unit>(text2 + at))) break;
    if (((key1 ^ key2) & kPrimaryMask & ~kTailoredKey) != 0) return key1 < key2 ? -1 : 1;
    differences.Note(key1 & ~kTailoredKey, key2 & ~kTailoredKey);
    if (differences.case_ != 0 && tailored == 0) {
      fold = unit1 < OT_FIRST_MARK ? CaseFold::kLatin : CaseFold::kOthers;
    }
  }
  const std::uint32_t last = met != 0 ? keys[LoadAs<Unit>(text1 + met - sizeof(Unit))] : 0;
  return CompareUnicodeBehind({met, static_cast<unsigned char>(last >> 24), differences}, text1,
                              text2, readable, cmpOp, language);
}

}  // namespace ot95
