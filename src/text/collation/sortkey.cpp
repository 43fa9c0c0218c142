// Sort keys of texts: letters, accents, case and symbols as levels of bytes, one behind another.

#include "text/collation/sortkey.h"

#include "text/collation/finished.h"
#include "text/collation/shortkey.h"
#include "text/collation/sortlevels.h"
#include "text/collation/walk.h"

namespace ot95 {

namespace {

constexpr unsigned kLetterCodes = 0x80;
constexpr unsigned kKanaCodes = 104;  // Those of the letters among the ideographs that have a byte.

/// Whether the low bits of a key are accent and case.
bool IsLetterKey(std::uint32_t key) {
  return (key & 0xc00000) == kLetterBit && key >> 24 != kBeyondAlphabets;
}

/// Hands on the keys of a text until `take` declines, which it may have to do twice for one key.
template <class Take>
void EachKey(const TextSpan& text, Take&& take) {
  TextSpan rest = text;
  std::uint32_t last = 0;
  rest.text = TakeAlone(text, [&](std::uint32_t key) {
    if (!take(key)) return false;
    last = key;
    return true;
  });
  rest.readable -= std::min(rest.readable, static_cast<std::size_t>(rest.text - text.text));
  OrderWalk walk(rest);
  if (last != 0) walk.SetScript(static_cast<unsigned char>(last >> 24));
  while (const std::uint32_t key = walk.NextKey(true)) {
    if (!take(key)) return;
  }
}

bool IsWildcard(std::uint32_t key) {
  const unsigned short order = OrderOfKey(key);
  return order == AsteriskWord() || order == QuestionWord();
}

/// Order words with their scripts: a script is named where it changes, in a way that ranks below or
/// above all words of the one before.
class ScriptedWords {
 public:
  explicit ScriptedWords(SortKeyWriter& out) : out_(out) {}

  /// The letter, digit or ideograph of a key.
  void Put(std::uint32_t key) {
    if (key >> 24 != script_) EnterScript(key >> 24);
    const unsigned word = key >> 8 & 0xffff;
    if (const unsigned letter = word - kFirstLetter; letter < letters_) [[likely]] {
      out_.Put(firstLetter_ + letter);
    } else {
      PutOther(word);
    }
  }

  /// All of a key, symbols too.
  void PutWhole(std::uint32_t key) {
    if (key >> 24 != script_) EnterScript(key >> 24);
    PutPlain(key >> 8 & 0xffff);
    if (IsLetterKey(key)) out_.Put(key & kMarkBits);
  }

 private:
  void EnterScript(std::uint32_t script) {
    out_.Put(script < script_ ? kLowerScript : kHigherScript);
    out_.Put(script);
    script_ = script;
    letters_ = script < kIdeographs ? kLetterCodes : script == kIdeographs ? kKanaCodes : 0;
    firstLetter_ = script == kIdeographs ? kKana : kLetters;
  }

  void PutOther(unsigned word) {
    if (script_ > kIdeographs) {
      PutPlain(word);
    } else if (script_ == kIdeographs) {
      PutAmongIdeographs(word);
    } else {
      PutInAlphabet(word);
    }
  }

  // Characters beyond all alphabets have any word.
  void PutPlain(unsigned word) {
    constexpr unsigned long lastCode = kHigherScript - 1;
    const unsigned high = word >> 8;
    if (kFirstCode + high < lastCode) {
      out_.Put(kFirstCode + high);
    } else {
      out_.Put(lastCode);
      out_.Put(high);
    }
    out_.Put(word & 0xff);
  }

  void PutAmongIdeographs(unsigned word) {
    if (word < kFirstLetter) {
      out_.Put(kDigits);
    } else if (word < kFirstHan) {
      out_.Put(kKana + kKanaCodes);
    } else {
      out_.Put(kHan + (word - kFirstHan) / 256);
    }
    out_.Put(word & 0xff);
  }

  // The ten digits have a byte each, and one more for what is between them and the next.
  void PutInAlphabet(unsigned word) {
    constexpr unsigned step = 10;
    if (word >= kFirstHan) {
      out_.Put(kStray);
      out_.PutNumber(static_cast<std::uint16_t>(word));
      return;
    }
    const unsigned offset = word - kFirstDigit;
    const unsigned digit = std::min(offset / step, step);
    const unsigned beyond = offset - digit * step;
    const bool isDigit = digit < step && beyond == 0;
    out_.Put(kDigits + 2 * digit + (digit < step && !isDigit ? 1 : 0));
    if (!isDigit) out_.Put(beyond);
  }

  static constexpr unsigned kDigits = kFirstCode;
  // Of an alphabet.
  static constexpr unsigned kLetters = kFirstLetterByte;
  static constexpr unsigned kStray = kLetters + kLetterCodes;
  // Of the script of ideographs.
  static constexpr unsigned kKana = kDigits + 1;
  static constexpr unsigned kHan = kKana + kKanaCodes + 1;
  static_assert(kHan + 0x7f < kHigherScript && kStray < kHigherScript);

  SortKeyWriter& out_;
  std::uint32_t script_ = kLatin;
  unsigned letters_ = kLetterCodes;
  unsigned firstLetter_ = kLetters;
};

/// What a walk meets of one kind, of which only a window is kept. The events of an ordinary text
/// all are in the first one.
struct EventLog {
  static constexpr std::size_t kWindow = 128;
  std::uint64_t events[kWindow];
  std::size_t from = 0;  // of the window
  std::size_t total = 0;

  void Add(std::uint64_t event) {
    const std::size_t at = total++ - from;
    if (at < kWindow) events[at] = event;
  }
  bool Holds(std::size_t index) const { return index - from < kWindow; }
};

/// A symbol: how many letters are before it, how many symbols of its own run, and its word.
struct SymbolEvent {
  std::uint64_t run, index;
  unsigned word;

  static constexpr int kRunShift = 40, kIndexShift = 16;
  std::uint64_t Packed() const { return run << kRunShift | index << kIndexShift | word; }
  static SymbolEvent Unpacked(std::uint64_t event) {
    return {event >> kRunShift, event >> kIndexShift & 0xffffff,
            static_cast<unsigned>(event & 0xffff)};
  }
};

/// Writes the levels of one text.
class TextKey {
 public:
  /// @param keyOp what the levels of the key leave out.
  TextKey(const TextSpan& text, unsigned short keyOp, SortKeyWriter& out)
      : text_(text), keyOp_(keyOp), out_(out), words_(out), separators_(out) {}

  /// The first level. @param wildcards whether they end it. @return whether it is all of the text.
  bool PutLetters(bool wildcards) {
    bool whole = true;
    EachKey(text_, [&](std::uint32_t key) {
      if (wildcards && IsWildcard(key)) return whole = false;
      TakeKey(key);
      return true;
    });
    return whole;
  }
  bool HasLetters() const { return reals_ != 0; }

  /// The levels behind that. @param count of them: accents, case, symbols.
  void PutMarks(unsigned count) {
    if (count > 0) PutAccents();
    if (count > 1) PutCases();
    if (count > 2) PutSymbols();
  }

  /// Empty levels at the end are left out ...
  void End() { out_.Put(kEndOfKey); }
  /// ... but for the end of a range, above all keys that begin so.
  void EndAbove() {
    separators_.Open();
    out_.Put(kBehindLevels);
  }

 private:
  void TakeKey(std::uint32_t key) {
    if (IsReal(key)) {
      words_.Put(key);
      NoteReal(key);
    } else {
      NoteSymbol(key);
    }
  }

  void NoteReal(std::uint32_t key) {
    ++reals_;
    if (!IsLetterKey(key)) return;
    const std::uint32_t marks = key & kMarkBits;
    if (marks != kPlainMarks) NoteMarks(letters_, marks);
    ++letters_;
  }
  [[gnu::noinline]] void NoteMarks(std::uint64_t place, std::uint32_t marks) {
    if ((marks & kAccentBits) != 0) accents_.Add(place << 8 | (marks & kAccentBits));
    if (marks < kPlainMarks) cases_.Add(place << 8 | CaseRank(marks));
  }
  void NoteSymbol(std::uint32_t key) {
    if (Levels(keyOp_).Ignores(key)) return;
    if (run_ != reals_) {
      run_ = reals_;
      symbolsInRun_ = 0;
    }
    symbols_.Add(SymbolEvent{run_, symbolsInRun_++, OrderOfKey(key)}.Packed());
  }

  /// An event, for which the text may have to be walked again.
  std::uint64_t At(EventLog& log, std::size_t index, bool backwards) {
    if (!log.Holds(index)) [[unlikely]] {
      constexpr std::size_t before = EventLog::kWindow - 1;
      log.from = !backwards ? index : index > before ? index - before : 0;
      NoteAgain();
    }
    return log.events[index - log.from];
  }
  [[gnu::noinline]] void NoteAgain() {
    accents_.total = cases_.total = symbols_.total = 0;
    reals_ = letters_ = symbolsInRun_ = 0;
    run_ = kNoRun;
    EachKey(text_, [this](std::uint32_t key) {
      IsReal(key) ? NoteReal(key) : NoteSymbol(key);
      return true;
    });
  }

  void PutAccents() {
    separators_.Next();
    if ((keyOp_ & OT_CMP_IGNORE_ACCENT) != 0 || accents_.total == 0) return;
    separators_.Open();
    SparseLevel<kAccentBits, SortKeyWriter> level(out_);
    std::uint64_t end = letters_;
    for (std::size_t i = accents_.total; i-- > 0;) {
      const std::uint64_t event = At(accents_, i, true);
      level.Put(end - 1 - (event >> 8), static_cast<unsigned>(event & 0xff));
      end = event >> 8;
    }
  }

  void PutCases() {
    separators_.Next();
    if ((keyOp_ & OT_CMP_IGNORE_CASE) != 0 || cases_.total == 0) return;
    separators_.Open();
    SparseLevel<3, SortKeyWriter> level(out_);
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < cases_.total; ++i) {
      const std::uint64_t event = At(cases_, i, false);
      level.Put((event >> 8) - start, static_cast<unsigned>(event & 0xff));
      start = (event >> 8) + 1;
    }
  }

  // Runs of symbols, from the last; of two the longer one ranks higher, and of those that are alike
  // in that the last difference decides.
  void PutSymbols() {
    separators_.Next();
    if (symbols_.total == 0) return;
    separators_.Open();
    SymbolLevel level(out_, reals_);
    for (std::size_t i = symbols_.total; i-- > 0;) {
      const SymbolEvent event = SymbolEvent::Unpacked(At(symbols_, i, true));
      level.Put(event.run, event.index, event.word);
    }
  }

  static constexpr std::uint64_t kNoRun = ~std::uint64_t{0};

  const TextSpan& text_;
  unsigned short keyOp_;
  SortKeyWriter& out_;
  ScriptedWords words_;
  std::uint64_t reals_ = 0;    // digits, letters, ideographs
  std::uint64_t letters_ = 0;  // those of them that have accents and case
  std::uint64_t run_ = kNoRun;
  std::uint64_t symbolsInRun_ = 0;
  Separators<SortKeyWriter> separators_;
  EventLog accents_;
  EventLog cases_;
  EventLog symbols_;
};

/// Raw text: its bytes. @return whether it is all of it; a wildcard ends it where they count.
bool PutRawText(const TextSpan& text, bool wildcards, SortKeyWriter& out) {
  for (const char* place = text.text;; ++place) {
    const unsigned short byte = text.UnitAt(place);
    if (byte == 0) return true;
    if (wildcards && (byte == '*' || byte == '?')) return false;
    PutTextByte(out, byte);
  }
}

void PutWholeKeys(const TextSpan& text, SortKeyWriter& out) {
  ScriptedWords words(out);
  EachKey(text, [&words](std::uint32_t key) {
    words.PutWhole(key);
    return true;
  });
  out.Put(kEndOfKey);
}

/// The whole key, if it can be had without a walk.
bool PutAtOnce(const TextSpan& text, unsigned short cmpOp, SortKeyWriter& out) {
  if (text.codeSet != OT_CS_UNICODE || text.reversed || text.end != kUnbounded) return false;
  const FinishedKeys* keys = FinishedKeys::Of(LanguageNumber(text));
  if (keys == nullptr || text.readable == 0) return false;
  const std::size_t size =
      PutShortKey(text.text, text.readable, *keys, cmpOp, out.Place(), out.Room());
  out.SetPlace(out.Place() + size);
  return size != 0;
}

bool AllowsWildcards(unsigned short cmpOp) {
  return (cmpOp & (OT_CMP_NO_WILDCARDS | OT_CMP_ORDER_ONLY)) == 0;
}
bool IsOrderOnly(unsigned short cmpOp) {
  return (cmpOp & OT_CMP_ORDER_ONLY) != 0;
}

}  // namespace

int PutTextKey(const TextSpan& text, unsigned short cmpOp, SortKeyWriter& out) {
  const bool wildcards = AllowsWildcards(cmpOp);
  if (text.IsNullValue()) {
    out.Put(kNullKey);
    return wildcards ? OT_ERR_NOT_SUPPORTED : 0;  // To patterns it is like an empty text.
  }
  if (text.codeSet == 0) {
    if (!PutRawText(text, wildcards, out)) return OT_ERR_NOT_SUPPORTED;
    out.Put(kEndOfText);
    return 0;
  }
  if (IsOrderOnly(cmpOp)) {
    PutWholeKeys(text, out);
    return 0;
  }
  if (!wildcards && PutAtOnce(text, cmpOp, out)) return 0;
  TextKey key(text, cmpOp, out);
  if (!key.PutLetters(wildcards)) return OT_ERR_NOT_SUPPORTED;
  key.PutMarks(kMarkLevels);
  key.End();
  return 0;
}

namespace {

/// How many levels behind the letters are equal in the keys of all texts that match, or that match
/// but for their place.
unsigned SharedLevels(const Levels& query, const Levels& keys, bool equal) {
  const auto shares = [equal](bool queryIgnores, bool keysIgnore) {
    return keysIgnore == queryIgnores || (equal && keysIgnore);
  };
  if (!shares(query.ignoreAccent, keys.ignoreAccent)) return 0;
  if (!shares(query.ignoreCase, keys.ignoreCase)) return 1;
  const bool symbols = shares(query.ignoreSpace, keys.ignoreSpace) &&
                       shares(query.ignoreSymbols, keys.ignoreSymbols);
  return symbols ? kMarkLevels : kMarkLevels - 1;
}

TextRange::Kind PutRawRange(const TextSpan& operand, bool wildcards, bool upper,
                            SortKeyWriter& out) {
  const bool whole = PutRawText(operand, wildcards, out);
  if (out.Size() == 0 && wildcards && !(whole && upper)) return TextRange::kNothing;
  if (!whole) return TextRange::kPrefix;
  out.Put(kEndOfText);
  return TextRange::kWhole;
}

}  // namespace

// Where wildcards count, a null is like an empty text, but stands below it.
TextRange::Kind TextRange::Put(bool upper, SortKeyWriter& out) const {
  const bool wildcards = AllowsWildcards(cmpOp);
  if (operand.IsNullValue()) {
    out.Put(kNullKey);
    return kWhole;
  }
  if (operand.codeSet == 0) return PutRawRange(operand, wildcards, upper, out);
  if (IsOrderOnly(cmpOp) || IsOrderOnly(keyOp)) {
    if (!IsOrderOnly(cmpOp & keyOp)) return kNothing;
    PutWholeKeys(operand, out);
    return kWhole;
  }
  TextKey key(operand, keyOp, out);
  const bool whole = key.PutLetters(wildcards);
  if (!key.HasLetters() && wildcards && !(whole && upper)) return kNothing;
  if (!whole) return kPrefix;
  const unsigned shared = SharedLevels(Levels(cmpOp), Levels(keyOp), equal);
  key.PutMarks(shared);
  if (shared < kMarkLevels && upper) {
    key.EndAbove();
    return kEnd;
  }
  key.End();
  return shared < kMarkLevels ? kEnd : kWhole;
}

}  // namespace ot95
