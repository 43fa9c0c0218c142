#ifndef OT95_SRC_TEXT_COLLATION_SORTLEVELS_H
#define OT95_SRC_TEXT_COLLATION_SORTLEVELS_H

/// @file
/// The levels of a text's sort key behind its letters. `Out` is anything that a byte can be Put to.

#include "kit/sortkey.h"
#include "text/collation/orders.h"

namespace ot95 {

// First bytes of what may stand in a level: docs/sort-keys.md draws them all.
inline constexpr unsigned kEndOfKey = kEndOfText;  // The levels behind this one are empty.
inline constexpr unsigned kNextLevel = 2;
inline constexpr unsigned kMarkLevels = 3;    // Accents, case, symbols.
inline constexpr unsigned kBehindLevels = 3;  // As an end of a range: above both of them.
inline constexpr unsigned kLowerScript =
    3;  // Among letters: of a script that ranks below, which follows.
inline constexpr unsigned kFirstCode = 4;
inline constexpr unsigned kHigherScript = 0xff;

inline constexpr std::uint32_t kAccentBits = 0x1f;
inline constexpr std::uint32_t kMarkBits = 0x7f;    // Accent and case.
inline constexpr std::uint32_t kPlainMarks = 0x60;  // No accent, lower case.
/// The case of marks as a level ranks it: small before capital.
constexpr unsigned CaseRank(std::uint32_t marks) {
  return 3 - marks / 32;
}

// Letters of an alphabet, a byte each.
inline constexpr unsigned kFirstLetterByte = kFirstCode + 21;
inline constexpr unsigned kIdeographs = 0x13;  // The script of ideographs, syllables and kana.
inline constexpr std::uint32_t kLatin = 1;     // The script of what begins without naming one.
/// In the keys of letters, and of nothing below the ideographs.
inline constexpr std::uint32_t kLetterBit = 0x400000;
/// What the keys of such letters begin with, behind which the letter stands in one byte.
inline constexpr std::uint32_t kLetterHead = 0xffff8000;

/// A level in which most places hold the least value, 0: only the others are written, each with the
/// places passed over before it. Passing over more ranks lower.
///
/// @tparam values there are besides 0.
template <unsigned values, class Out>
class SparseLevel {
  static constexpr unsigned kMostSteps = 8;
  static constexpr unsigned kManySteps = 3;
  static constexpr unsigned kDirect = kManySteps + kMostSteps;

 public:
  explicit SparseLevel(Out& out) : out_(out) {}

  void Put(std::uint64_t passedOver, unsigned value) {
    if (passedOver >= kStep) [[unlikely]]
      passedOver = PutSteps(passedOver);
    out_.Put(ByteOf(static_cast<unsigned>(passedOver), value));
  }

  /// Places that the byte of a value can tell, and that byte.
  static constexpr unsigned kStep = (256 - kDirect) / values;
  static constexpr unsigned char ByteOf(unsigned passedOver, unsigned value) {
    return static_cast<unsigned char>(kDirect + (kStep - 1 - passedOver) * values + value - 1);
  }

 private:
  /// Steps of as many places as a value can't tell: so many at once, or a number of them.
  [[gnu::noinline]] std::uint64_t PutSteps(std::uint64_t passedOver) {
    constexpr std::uint64_t most = kMostSteps * kStep;
    for (; passedOver >= most; passedOver -= most) out_.Put(kManySteps);
    const auto steps = static_cast<unsigned>(passedOver / kStep);
    if (steps > 0) out_.Put(kDirect - steps);
    return passedOver % kStep;
  }

  Out& out_;
};

/// The symbols of a text, from the last. Of two runs of them the longer one ranks higher, and of
/// those that are alike in that the last difference decides.
template <class Out>
class SymbolLevel {
  // Kinds of runs, rising: a single symbol below, at, and above the two that names have; two; more.
  static constexpr unsigned kSpaceAlone = 2, kHyphenAlone = 4, kPair = 6, kLong = 7;
  static constexpr unsigned kSpace = 6, kHyphen = 0x74;  // as order words
  static constexpr std::uint64_t kShortest = 3;          // of the long ones

 public:
  using Runs = SparseLevel<kLong, Out>;

  /// The kind of a run that is all said with it: that of one space or hyphen. Otherwise 0.
  static constexpr unsigned KindAlone(unsigned word) {
    return word == kSpace ? kSpaceAlone : word == kHyphen ? kHyphenAlone : 0;
  }

  /// @param reals letters, digits and ideographs of the text.
  SymbolLevel(Out& out, std::uint64_t reals) : out_(out), level_(out), end_(reals + 1) {}

  /// @param run how many reals are before the symbol.
  /// @param index how many symbols of its own run are.
  void Put(std::uint64_t run, std::uint64_t index, unsigned word) {
    if (run != end_) {
      const unsigned kind = KindOfRun(index, word);
      level_.Put(end_ - 1 - run, kind);
      end_ = run;
      if (kind == kLong) PutLength(index + 1 - kShortest);
      if (kind == kSpaceAlone || kind == kHyphenAlone) return;
    }
    PutWord(word);
  }

 private:
  static unsigned KindOfRun(std::uint64_t lastIndex, unsigned word) {
    if (lastIndex > 0) return lastIndex == 1 ? kPair : kLong;
    if (word <= kSpace) return word < kSpace ? kSpaceAlone - 1 : kSpaceAlone;
    return word < kHyphen ? kHyphenAlone - 1 : word == kHyphen ? kHyphenAlone : kPair - 1;
  }

  // Words have 14 bits; those of ASCII are among the first.
  void PutWord(unsigned word) {
    constexpr unsigned shortWords = 0xc0;
    if (word < shortWords) {
      out_.Put(word);
    } else {
      out_.Put(shortWords + (word - shortWords) / 256);
      out_.Put((word - shortWords) & 0xff);
    }
  }

  void PutLength(std::uint64_t length) {
    out_.Put(static_cast<unsigned>(std::min<std::uint64_t>(length, 0xff)));
    if (length < 0xff) return;
    for (int shift = 24; shift >= 0; shift -= 8)
      out_.Put(static_cast<unsigned>(length >> shift & 0xff));
  }

  Out& out_;
  Runs level_;
  std::uint64_t end_;
};

/// What stands between levels: nothing before the first byte of one, so that empty ones at the end
/// are left out.
template <class Out>
class Separators {
 public:
  explicit Separators(Out& out) : out_(out) {}
  /// To the next level.
  void Next() { ++unopened_; }
  /// Before the first byte of a level.
  void Open() {
    for (; unopened_ > 0; --unopened_) out_.Put(kNextLevel);
  }

 private:
  Out& out_;
  unsigned unopened_ = 0;
};

}  // namespace ot95

#endif
