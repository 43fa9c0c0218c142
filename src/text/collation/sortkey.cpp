#include "text/collation/sortkey.h"

#include <bit>

#include "text/collation/plainkeys.h"

namespace ot95 {

namespace {

// First bytes of what may stand in a level: docs/sort-keys.md draws them all.
constexpr unsigned kEndOfKey = kEndOfText;  // The levels behind this one are empty.
constexpr unsigned kNextLevel = 2;
constexpr unsigned kMarkLevels = 3;    // Accents, case, symbols.
constexpr unsigned kBehindLevels = 3;  // As an end of a range: above both of them.
constexpr unsigned kLowerScript = 3;  // Among letters: of a script that ranks below, which follows.
constexpr unsigned kFirstCode = 4;
constexpr unsigned kHigherScript = 0xff;

constexpr unsigned kIdeographs = 0x13;  // The script of ideographs, syllables and kana.
constexpr unsigned kLetterCodes = 0x80;
constexpr unsigned kKanaCodes = 104;  // Those of the letters among the ideographs that have a byte.
constexpr std::uint32_t kLatin = 1;   // The script of what begins without naming one.

constexpr std::uint32_t kAccentBits = 0x1f;
constexpr std::uint32_t kMarkBits = 0x7f;    // Accent and case.
constexpr std::uint32_t kPlainMarks = 0x60;  // No accent, lower case.

/// Whether the low bits of a key are accent and case.
bool IsLetterKey(std::uint32_t key) {
  return (key & 0xc00000) == kLetterKey && key >> 24 != kBeyondAlphabets;
}

/// Hands on the keys of a text until `take` declines, which it may have to do twice for one key.
template <class Take>
void EachKeyBehind(const PlainStretch& stretch, const TextSpan& text, Take&& take) {
  OrderWalk walk(text);
  walk.GoOnBehind(stretch);
  for (;;) {
    walk.TakePlain(take);
    const std::uint32_t key = walk.NextKey(true);
    if (key == 0 || !take(key)) return;
  }
}
template <class Take>
void EachKey(const TextSpan& text, Take&& take) {
  const PlainStretch stretch = RunFromStart(text, take);
  if (!stretch.all) EachKeyBehind(stretch, text, take);
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

  /// What the keys of letters begin with that are a byte in the script of the last one, and that
  /// byte for the first of them. Such keys may be put without asking.
  static constexpr std::uint32_t kLetterHead = 0xffff8000;
  std::uint32_t LetterHead() const {
    return letters_ == kLetterCodes ? script_ << 24 | kLetterKey : kLetterHead;
  }
  static constexpr unsigned kFirstLetterByte = kFirstCode + 21;

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

/// A level in which most places hold the least value, 0: only the others are written, each with the
/// places passed over before it. Passing over more ranks lower.
///
/// @tparam values there are besides 0.
template <unsigned values>
class SparseLevel {
 public:
  explicit SparseLevel(SortKeyWriter& out) : out_(out) {}

  void Put(std::uint64_t passedOver, unsigned value) {
    if (passedOver >= kStep) [[unlikely]]
      passedOver = PutSteps(passedOver);
    out_.Put(kDirect + (kStep - 1 - static_cast<unsigned>(passedOver)) * values + value - 1);
  }

 private:
  static constexpr unsigned kMostSteps = 8;
  static constexpr unsigned kManySteps = 3;
  static constexpr unsigned kDirect = kManySteps + kMostSteps;
  static constexpr unsigned kStep = (256 - kDirect) / values;

  /// Steps of as many places as a value can't tell: so many at once, or a number of them.
  [[gnu::noinline]] std::uint64_t PutSteps(std::uint64_t passedOver) {
    constexpr std::uint64_t most = kMostSteps * kStep;
    for (; passedOver >= most; passedOver -= most) out_.Put(kManySteps);
    const auto steps = static_cast<unsigned>(passedOver / kStep);
    if (steps > 0) out_.Put(kDirect - steps);
    return passedOver % kStep;
  }

  SortKeyWriter& out_;
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
      : text_(text), keyOp_(keyOp), out_(out), words_(out) {}

  /// The first level. @param wildcards whether they end it. @return whether it is all of the text.
  bool PutLetters(bool wildcards) {
    PlainStretch stretch{text_.text};
    const OtLanguage* language = LanguageOf(text_);
    const bool isPlain = text_.codeSet == OT_CS_UNICODE && !text_.reversed && language != nullptr;
    if (isPlain && !wildcards && PutPlainLetters(*language, stretch)) return true;
    return PutLettersBehind(stretch, wildcards);
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
    OpenLevel();
    out_.Put(kBehindLevels);
  }

 private:
  /// The letters of Unicode text for as long as no key takes the long way. @return whether all do.
  bool PutPlainLetters(const OtLanguage& language, PlainStretch& stretch) {
    const PlainKeys<std::uint16_t> keys(nullptr, &language, language.script);
    for (;;) {
      const char* const place = PutUsual(stretch.end, language);
      if (place != stretch.end) stretch = {place, words_.LetterHead()};
      const std::uint32_t key = keys.KeyAt(place, text_.end);
      if (key == 0) return keys.ValueAt(place, text_.end) == 0;
      TakeKey(key);
      stretch = {place + sizeof(std::uint16_t), key};
    }
  }

  /// What most of a text consists of, with all that takes at hand: letters of the script of the one
  /// before that are the same in every language. @return behind them.
  [[gnu::always_inline]] inline const char* PutUsual(const char* from, const OtLanguage& language) {
    const std::uint32_t usual = words_.LetterHead() | kPlainMarks;
    const std::uint32_t counts =
        ScriptedWords::kLetterHead | kMarkBits | (language.tailorsOrder != 0 ? kTailoredKey : 0);
    const std::size_t units =
        text_.end == kUnbounded
            ? SIZE_MAX
            : (text_.end - reinterpret_cast<std::uintptr_t>(from)) / sizeof(std::uint16_t);
    const std::size_t most = std::min(out_.Room(), units);
    unsigned value = most != 0 ? LoadWide(from) : kPlainKeys;
    if (value >= kPlainKeys) return from;
    const std::uint32_t* const keys = kOrderTables.plainKeys;
    unsigned char* const start = out_.Place();
    std::size_t taken = 0;
    while (taken < most) {
      const std::uint32_t key = keys[value];
      const std::uint32_t unusual = (key ^ usual) & counts;
      value = taken + 1 < units ? LoadWide(from + 2 * taken + 2) : 0;
      if (value >= OT_FIRST_MARK) break;
      if (unusual != 0) [[unlikely]] {
        if ((unusual & ~kMarkBits) != 0) break;
        NoteMarks(letters_ + taken, key & kMarkBits);
      }
      start[taken++] = static_cast<unsigned char>(ScriptedWords::kFirstLetterByte + (key >> 8));
    }
    reals_ += taken;
    letters_ += taken;
    out_.SetPlace(start + taken);
    return from + 2 * taken;
  }

  /// The letters behind a stretch that was taken.
  [[gnu::noinline]] bool PutLettersBehind(const PlainStretch& stretch, bool wildcards) {
    bool whole = true;
    EachKeyBehind(stretch, text_, [&](std::uint32_t key) {
      if (wildcards && IsWildcard(key)) return whole = false;
      TakeKey(key);
      return true;
    });
    return whole;
  }

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
    if (marks < kPlainMarks) cases_.Add(place << 8 | (3 - marks / 32));
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

  void OpenLevel() {
    for (; unopened_ > 0; --unopened_) out_.Put(kNextLevel);
  }

  void PutAccents() {
    ++unopened_;
    if ((keyOp_ & OT_CMP_IGNORE_ACCENT) != 0 || accents_.total == 0) return;
    OpenLevel();
    SparseLevel<kAccentBits> level(out_);
    std::uint64_t end = letters_;
    for (std::size_t i = accents_.total; i-- > 0;) {
      const std::uint64_t event = At(accents_, i, true);
      level.Put(end - 1 - (event >> 8), static_cast<unsigned>(event & 0xff));
      end = event >> 8;
    }
  }

  void PutCases() {
    ++unopened_;
    if ((keyOp_ & OT_CMP_IGNORE_CASE) != 0 || cases_.total == 0) return;
    OpenLevel();
    SparseLevel<3> level(out_);
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
    ++unopened_;
    if (symbols_.total == 0) return;
    OpenLevel();
    SparseLevel<kRunKinds> level(out_);
    std::uint64_t end = reals_ + 1;
    for (std::size_t i = symbols_.total; i-- > 0;) {
      const SymbolEvent event = SymbolEvent::Unpacked(At(symbols_, i, true));
      const bool beginsRun = event.run != end;
      if (beginsRun) {
        const unsigned kind = KindOfRun(event);
        level.Put(end - 1 - event.run, kind);
        end = event.run;
        if (kind == kRunKinds) PutLength(event.index + 1 - kLongRun);
        if (kind == kSpaceAlone || kind == kHyphenAlone) continue;
      }
      PutSymbol(event.word);
    }
  }

  // Kinds of runs, rising: a single symbol below, at, and above the two that names have; two; more.
  static constexpr unsigned kSpaceAlone = 2, kHyphenAlone = 4, kPair = 6, kRunKinds = 7;
  static constexpr unsigned kSpace = 6, kHyphen = 0x74;  // as order words
  static constexpr std::uint64_t kLongRun = 3;
  static unsigned KindOfRun(const SymbolEvent& last) {
    if (last.index > 0) return last.index == 1 ? kPair : kRunKinds;
    if (last.word <= kSpace) return last.word < kSpace ? kSpaceAlone - 1 : kSpaceAlone;
    return last.word < kHyphen ? kHyphenAlone - 1 : last.word == kHyphen ? kHyphenAlone : kPair - 1;
  }

  // Words have 14 bits; those of ASCII are among the first.
  void PutSymbol(unsigned word) {
    constexpr unsigned shortWords = 0xc0;
    if (word < shortWords) {
      out_.Put(word);
    } else {
      out_.Put(shortWords + (word - shortWords) / 256);
      out_.Put((word - shortWords) & 0xff);
    }
  }

  void PutLength(std::uint64_t length) {
    if (length < 0xff) {
      out_.Put(static_cast<unsigned>(length));
    } else {
      out_.Put(0xff);
      out_.PutNumber(static_cast<std::uint32_t>(length));
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
  unsigned unopened_ = 0;  // levels that were passed by and hold nothing so far
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
