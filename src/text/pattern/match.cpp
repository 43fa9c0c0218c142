/// Matching a pattern of orders.
///
/// The text is passed once. Behind a star, the pattern's next unit is sought; each place of the
/// text that has it becomes a candidate, a copy of the pattern's walk that then goes along with the
/// text and drops out where it no longer fits. When the pattern itself fails, the oldest candidate
/// takes its place: the text never goes back.

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "ot95/fault.h"
#include "text/collation/walk.h"
#include "text/pattern/units.h"

namespace ot95 {
namespace {

/// A place of the text where the part behind the last star may have begun.
struct StarCandidate {
  OrderWalk pattern;
  std::uint32_t taken;
  bool asksAgain;  ///< Its question mark has met the first half of a pair.
};

/// First in, first out; a few stand on the stack, as more are rare.
class CandidateList {
 public:
  CandidateList() = default;
  CandidateList(const CandidateList&) = delete;
  CandidateList& operator=(const CandidateList&) = delete;
  ~CandidateList() {
    if (items_ != few_) std::free(items_);
  }

  void Clear() { first_ = last_ = 0; }
  bool Empty() const { return first_ == last_; }
  StarCandidate TakeFirst() { return items_[first_++]; }

  void Add(const StarCandidate& candidate) {
    if (last_ == room_ && !MakeRoom()) return;
    items_[last_++] = candidate;
  }

  template <class Survives>
  void Keep(Survives&& survives) {
    StarCandidate* end =
        std::remove_if(items_ + first_, items_ + last_,
                       [&survives](StarCandidate& candidate) { return !survives(candidate); });
    last_ = static_cast<std::size_t>(end - items_);
    if (Empty()) Clear();
  }

 private:
  bool MakeRoom() {
    if (first_ != 0) {
      std::copy(items_ + first_, items_ + last_, items_);
      last_ -= first_;
      first_ = 0;
      return true;
    }
    const std::size_t bytes = 2 * room_ * sizeof(StarCandidate);
    auto* more = static_cast<StarCandidate*>(std::malloc(bytes));
    if (more == nullptr) {
      OtCallMemoryHandler(bytes);
      return false;
    }
    std::copy(items_, items_ + last_, more);
    if (items_ != few_) std::free(items_);
    items_ = more;
    room_ *= 2;
    return true;
  }

  static constexpr std::size_t kFew = 8;
  StarCandidate few_[kFew];
  StarCandidate* items_ = few_;
  std::size_t room_ = kFew;
  std::size_t first_ = 0;
  std::size_t last_ = 0;
};

class PatternMatch : private LevelWalk {
 public:
  PatternMatch(const LevelWalk& start, bool shortcuts)
      : LevelWalk(start), shortcuts_(shortcuts && !limited_ && !keyText_) {}

  int Run(int* primaryOut) {
    bool goesOn = true;
    while (goesOn) {
      goesOn = NextPass();
      if (primaryOut != nullptr && !endedInStar_ && Reports()) *primaryOut = Primary();
    }
    return Decide();
  }

 private:
  bool NextPass() {
    if (asksAgain_) {
      text_.key = NextCounting<false>(text_.walk, text_.taken);
    } else {
      TakeStops();
    }
    if (keyText_) wantScript_ = false;
    beginsPair_ = BeginsPair();
    if (seeking_ && text_.key != 0 && (seekAny_ || (text_.key & levels_.mask) == seekKey_)) {
      candidates_.Add({savedPattern_, savedTaken_, false});
    }
    if (IsAsterisk(pattern_.key)) {
      if (shortcuts_ && !differences_.Fails(levels_) && MatchRest()) return false;
      if (!BeginSeeking()) return false;
    }
    StepCandidates();
    NoteDifference();
    asksAgain_ = beginsPair_ && IsQuestion(pattern_.key);
    if (symbolDifference_ != 0) differences_.symbol = symbolDifference_;
    if (seeking_ && text_.key != 0 && differences_.Fails(levels_)) BackTrack();
    return differences_.primary == 0 && text_.key != 0 && (pattern_.key != 0 || seeking_);
  }

  /// Behind a star symbols are sought like all else, one stop of each side in a pass.
  void TakeStops() {
    if (!seeking_) {
      TakeSymbols<true>();
      return;
    }
    symbolDifference_ = 0;
    text_.key = NextCounting<false>(text_.walk, text_.taken);
    pattern_.key = NextCounting<true>(pattern_.walk, pattern_.taken);
  }

  /// At a star. @return false when the pattern ends with it: a match, though what came before the
  /// star still counts.
  bool BeginSeeking() {
    candidates_.Clear();
    savedCase_ = differences_.case_;
    savedAccent_ = differences_.accent;
    do {
      savedPattern_ = pattern_.walk;
      savedTaken_ = pattern_.taken;
      pattern_.key = NextCounting<true>(pattern_.walk, pattern_.taken);
    } while (IsAsterisk(pattern_.key));
    if (pattern_.key == 0) {
      if (symbolDifference_ != 0) differences_.symbol = symbolDifference_;
      endedInStar_ = true;
      return false;
    }
    seeking_ = true;
    seekKey_ = pattern_.key & levels_.mask;
    seekAny_ = IsQuestion(pattern_.key);
    return true;
  }

  /// Whether the text stands at a character of two halves, which one question mark meets.
  bool BeginsPair() const {
    if (!IsHalf(text_.key, kFirstLead)) return false;
    OrderWalk next = text_.walk;
    return IsHalf(next.NextKey(wantScript_), kFirstTrail);
  }

  void StepCandidates() {
    if (candidates_.Empty()) return;
    candidates_.Keep([this](StarCandidate& candidate) {
      if (candidate.asksAgain) {
        candidate.asksAgain = false;
        return text_.key != 0;
      }
      const std::uint32_t key = NextCounting<true>(candidate.pattern, candidate.taken);
      candidate.asksAgain = beginsPair_ && IsQuestion(key);
      return ((key ^ text_.key) & levels_.mask) == 0 || (text_.key != 0 && IsQuestion(key));
    });
  }

  void NoteDifference() {
    if (IsQuestion(pattern_.key)) {
      differences_.primary = text_.key != 0 ? 0 : -1;
    } else {
      differences_.Note(text_.key, pattern_.key);
    }
  }

  void BackTrack() {
    asksAgain_ = false;
    if (candidates_.Empty()) {
      pattern_.walk = savedPattern_;
      pattern_.taken = savedTaken_;
    } else {
      const StarCandidate candidate = candidates_.TakeFirst();
      asksAgain_ = candidate.asksAgain;
      if (asksAgain_) pattern_.key = std::uint32_t{QuestionWord()} << 8;
      pattern_.walk = candidate.pattern;
      pattern_.taken = candidate.taken;
    }
    differences_.case_ = savedCase_;
    differences_.accent = savedAccent_;
    differences_.primary = 0;
  }

  /// At a star before which nothing differs that counts: the rest matches, or the text sorts first.
  /// @return false, with nothing changed, for texts of more units than fit.
  bool MatchRest() {
    constexpr std::size_t kUnits = 64;
    std::uint32_t pattern[kUnits];
    std::uint32_t text[kUnits];
    LevelSide patternSide = pattern_;
    std::uint32_t* patternEnd = pattern;
    while ((patternSide.key = NextCounting<true>(patternSide.walk, patternSide.taken)) != 0) {
      if (patternEnd == std::end(pattern)) return false;
      AddUnit(pattern, patternEnd,
              IsAsterisk(patternSide.key)   ? kStar
              : IsQuestion(patternSide.key) ? kAny
                                            : patternSide.key & levels_.mask);
    }
    // Half a pair is found in a whole one by the walk alone.
    if (std::any_of(pattern, patternEnd, IsAnyHalf)) return false;
    std::uint32_t* textEnd = text;
    if (std::any_of(pattern, patternEnd, [](std::uint32_t unit) { return unit != kStar; })) {
      LevelSide textSide = text_;
      while (textSide.key != 0) {
        if (textEnd == std::end(text)) return false;
        AddUnit(text, textEnd, textSide.key & levels_.mask);
        textSide.key = NextCounting<false>(textSide.walk, textSide.taken);
      }
    }
    if (symbolDifference_ != 0) differences_.symbol = symbolDifference_;
    differences_.primary = MatchesBehindStar(text, textEnd, pattern, patternEnd) ? 0 : -1;
    return true;
  }

  /// Adds a unit, the second half of a pair to its first: no real key is as large.
  static void AddUnit(const std::uint32_t* begin, std::uint32_t*& end, std::uint32_t unit) {
    if (IsHalf(unit, kFirstTrail) && end != begin && IsHalf(end[-1], kFirstLead)) {
      end[-1] = 0x80000000 | (end[-1] & 0x3ff00) << 2 | (unit & 0x3ff00) >> 8;
    } else {
      *end++ = unit;
    }
  }

  bool shortcuts_;
  bool asksAgain_ = false;
  bool beginsPair_ = false;
  bool endedInStar_ = false;
  bool seeking_ = false;
  bool seekAny_ = false;
  std::uint32_t seekKey_ = 0;
  OrderWalk savedPattern_;  // before what is sought
  std::uint32_t savedTaken_ = 0;
  int savedCase_ = 0;
  int savedAccent_ = 0;
  CandidateList candidates_;
};

}  // namespace

int MatchPattern(const LevelWalk& start, bool shortcuts, int* primaryOut) {
  return PatternMatch(start, shortcuts).Run(primaryOut);
}

}  // namespace ot95
