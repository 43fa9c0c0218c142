#ifndef OT95_SRC_TEXT_COLLATION_SHORTKEY_H
#define OT95_SRC_TEXT_COLLATION_SHORTKEY_H

/// @file
/// Sort keys of ordinary texts in one pass: Unicode, not long, letters of one alphabet and symbols.
/// Letters go where they stay; what isn't usual is noted beside them.

#include "text/collation/finished.h"
#include "text/collation/sortlevels.h"
#include "text/collation/walk.h"

namespace ot95 {

/// Puts bytes where there is room for all that can come.
struct BarePlace {
  unsigned char* place;

  void Put(unsigned byte) { *place++ = static_cast<unsigned char>(byte); }
};

/// What isn't usual in a text.
struct KeyNotes {
  static constexpr std::size_t kMostUnits = 64;
  /// No number of letters.
  static constexpr std::uint32_t kNone = 0xffff;

  unsigned char* caseEnd = cases;
  std::uint16_t* accentEnd = accents;
  std::uint32_t* symbolEnd = symbols + 1;
  unsigned char cases[kMostUnits];        // as the level has them
  std::uint16_t accents[kMostUnits];      // letters before it, accent
  std::uint32_t symbols[kMostUnits + 1];  // letters before it, word; the first one stands for none

  /// Bytes that the levels need at most: two for steps, and a value, for an accent; steps, a kind,
  /// a length and a word for a symbol; separators and the end.
  std::size_t LevelBytes() const {
    return static_cast<std::size_t>(caseEnd - cases) +
           3 * static_cast<std::size_t>(accentEnd - accents) +
           6 * static_cast<std::size_t>(symbolEnd - symbols) + kMarkLevels + 1;
  }
  /// Most that a byte of text takes of a key: as part of a symbol.
  static constexpr std::size_t kMostOfByte = 3;

  [[gnu::noinline]] unsigned char* PutAccents(unsigned char* place, std::uint32_t letters) const {
    BarePlace out{place};
    SparseLevel<kAccentBits, BarePlace> level(out);
    for (const std::uint16_t* accent = accentEnd; accent-- != accents;) {
      const std::uint32_t before = *accent >> 8;
      level.Put(letters - 1 - before, *accent & 0xff);
      letters = before;
    }
    return out.place;
  }

  /// Symbols and the end.
  unsigned char* PutSymbols(unsigned char* place, std::uint32_t letters) {
    using Level = SymbolLevel<BarePlace>;
    symbols[0] = kNone << 16;
    std::uint32_t end = letters + 1;
    const std::uint32_t* symbol = symbolEnd;
    do {
      --symbol;
      const std::uint32_t run = *symbol >> 16;
      const std::uint32_t passedOver = end - 1 - run;  // huge within a run
      const unsigned kind = Level::KindAlone(*symbol & 0xffff);
      const bool alone = symbol[-1] >> 16 != run;
      if (kind != 0 && alone && passedOver < Level::Runs::kStep) {
        *place++ = Level::Runs::ByteOf(passedOver, kind);
      } else {
        place = PutOtherSymbol(place, end, symbol);
      }
      end = run;
    } while (symbol != symbols + 1);
    *place++ = kEndOfKey;
    return place;
  }
  [[gnu::noinline]] static unsigned char* PutOtherSymbol(unsigned char* place, std::uint32_t end,
                                                         const std::uint32_t* symbol) {
    BarePlace out{place};
    std::uint32_t index = 0;  // in its run
    while (symbol[-1 - static_cast<int>(index)] >> 16 == *symbol >> 16) ++index;
    SymbolLevel<BarePlace>(out, std::uint64_t{end} - 1).Put(*symbol >> 16, index, *symbol & 0xffff);
    return out.place;
  }
};

using CaseLevel = SparseLevel<3, BarePlace>;
static_assert(KeyNotes::kMostUnits <= CaseLevel::kStep);

/// Writes the letters of a terminated text and notes the rest. @return behind them, or null where
/// they aren't all there is to the text.
[[gnu::always_inline]] inline unsigned char* TakeLetters(const char* text, const FinishedKeys& keys,
                                                         std::uint32_t script, unsigned short keyOp,
                                                         unsigned char* const target,
                                                         KeyNotes& notes) {
  constexpr unsigned short ignoring =
      OT_CMP_IGNORE_SPACE | OT_CMP_IGNORE_SYMBOLS | OT_CMP_IGNORE_ACCENT;
  constexpr std::uint32_t contracts = kOpens | kJoinsOpener | kLook;
  const std::uint32_t usual = script << 24 | kLetterBit | kPlainMarks;
  // What is left of the key of a usual letter is its byte.
  const std::uint32_t base = usual - (kFirstLetterByte << 8);
  constexpr std::uint32_t others = 0xffff00ff;
  const std::uint32_t* const first = keys.First();
  unsigned char* place = target;
  unsigned char* behindCase = target;  // the last letter with a case of its own
  for (;;) {
    unsigned unit = LoadWide(text);
    text += sizeof(char16_t);
    while (unit < kFirstKeys) {
      const std::uint32_t letter = first[unit] - base;
      if ((letter & others) != 0) break;
      *place++ = static_cast<unsigned char>(letter >> 8);
      unit = LoadWide(text);
      text += sizeof(char16_t);
    }
    const std::uint32_t key = unit < kFirstKeys ? first[unit] : keys.At(unit);
    const std::uint32_t apart = (key ^ usual) & (kLetterHead | kLook);
    if (apart != 0) {
      if (unit == 0) return place;
      if ((key & (kLook | kJoins | kOpens | kJoinsOpener)) == kLook) {
        if ((keyOp & ignoring) == 0 || !Levels(keyOp).Ignores(key & kKeyBits)) {
          const auto letters = static_cast<std::uint32_t>(place - target);
          *notes.symbolEnd++ = letters << 16 | (key >> 8 & 0xffff);
        }
        continue;
      }
      // A letter that contractions may have in them can stand alone.
      if ((apart & ~contracts) != 0) return nullptr;
      if ((key & kOpens) != 0 && (keys.At(LoadWide(text)) & kJoinsOpener) != 0) return nullptr;
    }
    const std::uint32_t marks = key & kMarkBits;
    if (marks < kPlainMarks) {
      // As CaseLevel has it, in fewer steps.
      constexpr unsigned top = CaseLevel::ByteOf(0, CaseRank(0));
      const auto passedOver = static_cast<unsigned>(place - behindCase);
      *notes.caseEnd++ = static_cast<unsigned char>(top - (3 * passedOver + marks / 32));
      behindCase = place + 1;
    }
    if ((marks & kAccentBits) != 0) {
      const auto letters = static_cast<std::uint32_t>(place - target);
      *notes.accentEnd++ = static_cast<std::uint16_t>(letters << 8 | (marks & kAccentBits));
    }
    *place++ = static_cast<unsigned char>(kFirstLetterByte + (key >> 8));
  }
}

/// Writes the levels behind the letters. @return behind their end.
[[gnu::always_inline]] inline unsigned char* PutLevels(unsigned char* place, std::uint32_t letters,
                                                       unsigned short keyOp, KeyNotes& notes) {
  unsigned separators = 2;  // before the case
  if (notes.accentEnd != notes.accents && (keyOp & OT_CMP_IGNORE_ACCENT) == 0) {
    *place++ = kNextLevel;
    place = notes.PutAccents(place, letters);
    separators = 1;
  }
  if (notes.caseEnd != notes.cases && (keyOp & OT_CMP_IGNORE_CASE) == 0) {
    *place++ = kNextLevel;
    if (separators == 2) *place++ = kNextLevel;
    *place++ = notes.cases[0];
    for (const unsigned char* from = notes.cases + 1; from != notes.caseEnd; ++from) {
      *place++ = *from;
    }
    separators = 0;
  }
  if (notes.symbolEnd != notes.symbols + 1) {
    *place++ = kNextLevel;
    if (separators > 0) *place++ = kNextLevel;
    if (separators > 1) *place++ = kNextLevel;
    return notes.PutSymbols(place, letters);
  }
  *place++ = kEndOfKey;
  return place;
}

/// The key of an ordinary Unicode text in the machine's order, at once: letters of the language's
/// alphabet and symbols between them.
/// @param bytes of the text with its terminator; what they don't hold or end with is left alone.
/// @return its bytes; 0, where what was written counts for nothing, for a text that holds more, or
///   is long, or without room to spare.
[[gnu::always_inline]] inline std::size_t PutShortKey(const char* text, std::size_t bytes,
                                                      const FinishedKeys& keys,
                                                      unsigned short keyOp, unsigned char* target,
                                                      std::size_t room) {
  constexpr std::size_t named = 2;  // bytes that name the script
  if (bytes - 2 > 2 * KeyNotes::kMostUnits - 2 || room < KeyNotes::kMostUnits + named) return 0;
  const std::uint32_t script = keys.Script();
  if (script >= kIdeographs || LoadWide(text + bytes - 2) != 0) return 0;
  KeyNotes notes;
  unsigned char* const begin = target + (script != kLatin ? named : 0);
  unsigned char* const place = TakeLetters(text, keys, script, keyOp, begin, notes);
  if (place == nullptr) return 0;
  if (room<KeyNotes::kMostOfByte * bytes&& static_cast<std::size_t>(place - target) +
           notes.LevelBytes()>
          room) [[unlikely]] {
    return 0;
  }
  if (script != kLatin) {
    if (place == begin) return 0;
    target[0] = script < kLatin ? kLowerScript : kHigherScript;
    target[1] = static_cast<unsigned char>(script);
  }
  const auto letters = static_cast<std::uint32_t>(place - begin);
  return static_cast<std::size_t>(PutLevels(place, letters, keyOp, notes) - target);
}

}  // namespace ot95

#endif
