/// Sort keys of ordinary texts: Unicode, not long, of one alphabet, with what they need in
/// registers.

#include "text/collation/finished.h"
#include "text/collation/sortlevels.h"
#include "text/collation/walk.h"

namespace ot95 {

namespace {

constexpr std::size_t kMostUnits = 64;

/// Puts bytes where there is room for all that can come.
struct Bare {
  unsigned char* place;

  void Put(unsigned byte) { *place++ = static_cast<unsigned char>(byte); }
};

/// A letter that isn't small and plain: how many are before it, and its accent and case.
struct Marked {
  std::uint32_t place, marks;
};
/// A symbol: how many letters are before it, and its word.
struct Symbol {
  std::uint32_t run, word;
};

/// What the walk over a text leaves.
struct Notes {
  std::uint32_t letters = 0;
  std::uint32_t markedCount = 0;
  std::uint32_t symbolCount = 0;
  std::uint32_t accents = 0;  // all of them at once
  Marked marked[kMostUnits];
  Symbol symbols[kMostUnits];

  /// Whether some symbols are marks, which are ignored with accents.
  bool HasMarks() const {
    for (std::uint32_t i = 0; i < symbolCount; ++i) {
      if (IsMarkWord(symbols[i].word)) return true;
    }
    return false;
  }

  /// Bytes that the levels need at most: steps and a value for each mark, of both kinds; steps, a
  /// kind, a length and a word for each symbol; separators and the end.
  std::size_t LevelBytes() const { return 6 * markedCount + 6 * symbolCount + 4; }
};

/// Writes the letters and notes the rest. @return whether that is all there is to the text.
[[gnu::always_inline]] inline bool TakeLetters(const char* place, std::size_t most,
                                               const FinishedKeys& keys, unsigned char script,
                                               unsigned short keyOp, unsigned char* target,
                                               Notes& notes) {
  const std::uint32_t usual = std::uint32_t{script} << 24 | kLetterBit | kPlainMarks;
  constexpr std::uint32_t counts = kLetterHead | kMarkBits | kLook;
  const std::uint32_t* const first = keys.First();
  std::uint32_t letters = 0, marked = 0, symbols = 0, accents = 0;
  unsigned value = LoadWide(place);
  for (std::size_t i = 0; i < most; ++i) {
    const std::uint32_t key = value < kFirstKeys ? first[value] : keys.At(value);
    const std::uint32_t unusual = (key ^ usual) & counts;
    const bool isEnd = value == 0;
    place += sizeof(char16_t);
    if (unusual != 0) [[unlikely]] {
      if (isEnd) {
        notes.letters = letters;
        notes.markedCount = marked;
        notes.symbolCount = symbols;
        notes.accents = accents;
        return true;
      }
      if ((unusual & ~kMarkBits) == 0) {
        notes.marked[marked++] = {letters, key & kMarkBits};
        accents |= key & kAccentBits;
      } else if ((key & (kLook | kJoins | kOpens | kJoinsOpener)) == kLook) {  // a symbol
        const std::uint32_t symbol = key & kKeyBits;
        if (!Levels(keyOp).Ignores(symbol)) {
          notes.symbols[symbols++] = {letters, OrderOfKey(symbol)};
        }
        value = LoadWide(place);
        continue;
      } else {
        return false;
      }
    }
    value = LoadWide(place);
    target[letters++] = static_cast<unsigned char>(kFirstLetterByte + (key >> 8));
  }
  return false;
}

void PutAccents(Bare& out, const Notes& notes) {
  SparseLevel<kAccentBits, Bare> level(out);
  std::uint32_t end = notes.letters;
  for (std::uint32_t i = notes.markedCount; i-- > 0;) {
    const Marked letter = notes.marked[i];
    if ((letter.marks & kAccentBits) == 0) continue;
    level.Put(end - 1 - letter.place, letter.marks & kAccentBits);
    end = letter.place;
  }
}

[[gnu::always_inline]] inline void PutCases(Bare& out, Separators<Bare>& separators,
                                            const Notes& notes) {
  SparseLevel<3, Bare> level(out);
  std::uint32_t start = 0;
  for (std::uint32_t i = 0; i < notes.markedCount; ++i) {
    const Marked letter = notes.marked[i];
    if (letter.marks >= kPlainMarks) continue;
    separators.Open();
    level.Put(letter.place - start, CaseRank(letter.marks));
    start = letter.place + 1;
  }
}

void PutSymbols(Bare& out, const Notes& notes) {
  SymbolLevel<Bare> level(out, notes.letters);
  std::uint32_t first = notes.symbolCount;  // of its run
  for (std::uint32_t i = notes.symbolCount; i-- > 0;) {
    const Symbol symbol = notes.symbols[i];
    if (first > i) {
      first = i;
      while (first > 0 && notes.symbols[first - 1].run == symbol.run) --first;
    }
    level.Put(symbol.run, i - first, symbol.word);
  }
}

}  // namespace

bool PutShortKey(const TextSpan& text, const OtLanguage& language, unsigned short keyOp,
                 SortKeyWriter& out) {
  if (text.codeSet != OT_CS_UNICODE || text.reversed || text.end != kUnbounded) return false;
  if (language.script >= kIdeographs) return false;
  Notes notes;
  const std::size_t named = language.script != kLatin ? 2 : 0;  // bytes that name the script
  if (out.Room() <= named) return false;
  unsigned char* const target = out.Place() + named;
  const std::size_t room = out.Room() - named;
  const FinishedKeys* const keys = FinishedKeys::Of(language.number);
  if (keys == nullptr) return false;
  const std::size_t most = std::min(room, kMostUnits);
  if (!TakeLetters(text.text, most, *keys, language.script, keyOp, target, notes)) return false;
  if (notes.letters + notes.LevelBytes() > room) return false;
  if ((keyOp & OT_CMP_IGNORE_ACCENT) != 0 && notes.HasMarks()) return false;
  if (named != 0) {
    if (notes.letters == 0) return false;
    target[-2] = language.script < kLatin ? kLowerScript : kHigherScript;
    target[-1] = language.script;
  }
  Bare bare{target + notes.letters};
  Separators<Bare> separators(bare);
  separators.Next();
  if (notes.accents != 0 && (keyOp & OT_CMP_IGNORE_ACCENT) == 0) {
    separators.Open();
    PutAccents(bare, notes);
  }
  separators.Next();
  if ((keyOp & OT_CMP_IGNORE_CASE) == 0) PutCases(bare, separators, notes);
  separators.Next();
  if (notes.symbolCount != 0) {
    separators.Open();
    PutSymbols(bare, notes);
  }
  bare.Put(kEndOfKey);
  out.SetPlace(bare.place);
  return true;
}

}  // namespace ot95
