/// Runs of combining marks. Canonically equal texts differ in the order of marks of different
/// classes, and in how many of them are composed with the letter before; what the walk meets is the
/// same for all of them.

#include <algorithm>

#include "text/collation/orders.h"

namespace ot95 {

constinit const OtWCharList kMarksPending(0, 0);

namespace {

/// A longer run is no text of any language.
constexpr int kLongestRun = 30;
/// In the place of a count: the walk is inside a run that is taken as it stands.
constexpr std::int32_t kAsItStands = -1;

bool IsMark(unsigned short character) {
  return character >= OT_FIRST_MARK && CombiningClass(character) != 0;
}

/// The class of the last mark in a character that ends in marks.
unsigned LastClass(unsigned short character) {
  const MarkedCharacter* marked = FindMarked(character);
  while (marked != nullptr && marked->mark == 0) marked = FindMarked(marked->front);
  return marked != nullptr ? CombiningClass(marked->mark) : 0;
}

}  // namespace

/// A letter and the marks behind it, in canonical order.
class OrderWalk::Run {
 public:
  /// @param place of the letter, or of a mark that no letter goes before.
  Run(const OrderWalk& walk, const char* place) : walk_(walk), end_(place) {
    Add(Take());
    const bool hasLetter = !IsMark(units_[0].unit);
    while (IsMark(walk.CharacterAt(end_))) Add(Take());
    SortMarks(units_ + (hasLetter ? 1 : 0));
  }

  /// Hands the records of the run to `emit`, one after the other.
  /// @param record of what stands before the letter and may contract with it; null: nothing does.
  template <class Emit>
  void ForEachRecord(const OtOrderRecord* record, Emit&& emit) {
    if (record == nullptr) {
      if (!IsMark(units_[0].unit)) record = TakeRecord(0);
    } else if (const OtOrderRecord* pair = ContractedLetter(*record)) {
      record = pair;
      taken_[0] = true;
    } else {
      emit(*record);
      record = TakeRecord(0);
    }
    if (record != nullptr) emit(*WithMarks(record));
    for (int i = 0; i < count_; ++i) {
      if (taken_[i]) continue;
      const OtOrderRecord* mark = TakeRecord(i);
      for (; i + 1 < count_ && !taken_[i + 1]; ++i) {
        const OtOrderRecord* pair = mark->Contracted(units_[i + 1].unit);
        if (pair == nullptr) break;
        mark = pair;
        taken_[i + 1] = true;
      }
      emit(*mark);
    }
  }

  const char* end() const { return end_; }
  /// Characters before the first of which something wasn't handed on yet.
  std::ptrdiff_t Passed() const {
    std::ptrdiff_t passed = length_;
    for (int i = 0; i < count_; ++i) {
      if (!taken_[i]) passed = std::min<std::ptrdiff_t>(passed, units_[i].place);
    }
    return passed;
  }

 private:
  struct RunUnit {
    unsigned short unit;
    std::uint8_t place;  // of the character that it comes from
  };
  /// Each mark may stand for two, and a letter come apart into four.
  static constexpr int kUnits = 2 * kLongestRun + 8;

  unsigned short Take() {
    const unsigned short character = walk_.CharacterAt(end_);
    end_ += walk_.wide_ ? 2 : 1;
    ++length_;
    return character;
  }

  void Add(unsigned short character) {
    const MarkedCharacter* marked = FindMarked(character);
    if (marked == nullptr) return Put(character);
    Add(marked->front);
    if (marked->mark != 0) Put(marked->mark);
  }
  void Put(unsigned short unit) {
    units_[count_++] = {unit, static_cast<std::uint8_t>(length_ - 1)};
  }

  /// Stably, by insertion: most runs are short, and none may ask for memory.
  void SortMarks(RunUnit* first) {
    for (RunUnit* next = first; next < units_ + count_; ++next) {
      const RunUnit moved = *next;
      RunUnit* place = next;
      while (place != first && CombiningClass(place[-1].unit) > CombiningClass(moved.unit)) {
        *place = place[-1];
        --place;
      }
      *place = moved;
    }
  }

  const OtOrderRecord* RecordOf(int i) const {
    const OtOrderRecord* record = &walk_.table_->At(units_[i].unit);
    const OtOrderRecord* own = record->Tailored(walk_.language_);
    return own != nullptr ? own : record;
  }
  const OtOrderRecord* TakeRecord(int i) {
    taken_[i] = true;
    return RecordOf(i);
  }

  /// The record of `head` and the letter together; null if the letter stays alone, also because it
  /// contracts with marks that don't follow it at once.
  const OtOrderRecord* ContractedLetter(const OtOrderRecord& head) {
    const OtOrderRecord* pair = head.Contracted(units_[0].unit);
    if (pair == nullptr || pair->Contracted(units_[1].unit) != nullptr) return pair;
    const OtOrderRecord* letter = RecordOf(0);
    return ForEachMark(letter, [](int) {}) == letter ? pair : nullptr;
  }

  const OtOrderRecord* WithMarks(const OtOrderRecord* record) {
    return ForEachMark(record, [this](int i) { taken_[i] = true; });
  }

  /// What the letter makes of the marks that contract with it, each of which is told to `take`: a
  /// mark that doesn't only stands in the way of those of its own class.
  template <class Take>
  const OtOrderRecord* ForEachMark(const OtOrderRecord* record, Take&& take) const {
    unsigned between = 0;
    for (int i = 1; i < count_; ++i) {
      const unsigned markClass = CombiningClass(units_[i].unit);
      const OtOrderRecord* pair =
          markClass != between ? record->Contracted(units_[i].unit) : nullptr;
      if (pair != nullptr) {
        record = pair;
        take(i);
      } else {
        between = markClass;
      }
    }
    return record;
  }

  const OrderWalk& walk_;
  const char* end_;
  RunUnit units_[kUnits];
  bool taken_[kUnits] = {};
  int count_ = 0;
  int length_ = 0;  // in characters
};

/// Whether the character with the marks behind it, which begin at `next`, has to be seen in
/// canonical order: it begins a run of two or more of them, or its own belong behind the next one.
/// @param flags of the character's record, with kContractions if more can follow what has been
/// made of it.
bool OrderWalk::BeginsRun(unsigned flags, unsigned short character, const char* next) const {
  constexpr unsigned kWithNext = OtOrderRecord::kContractions | OtOrderRecord::kCombines;
  if ((flags & kWithNext) == 0) return false;
  const unsigned short mark = CharacterAt(next);
  if (!IsMark(mark)) return false;
  constexpr unsigned kMark = OtOrderRecord::kCombines | OtOrderRecord::kFollows;
  if ((flags & kMark) == kMark) return true;
  const unsigned markClass = CombiningClass(mark);
  if (markClass == kDecomposes || IsMark(CharacterAt(next + (wide_ ? 2 : 1)))) return true;
  return (flags & OtOrderRecord::kCombines) != 0 && LastClass(character) > markClass;
}

/// At `start` stands a character that contracts up to `place`, where a run begins.
std::uint32_t OrderWalk::BeginRun(const char* start, const char* place, bool wantScript) {
  const std::ptrdiff_t width = wide_ ? 2 : 1;
  if (!IsMark(CharacterAt(place))) place += width;
  int marks = 0;
  while (marks <= kLongestRun && IsMark(CharacterAt(place + marks * width))) ++marks;
  position_ = start;
  pending_ = &kMarksPending;
  pendingIndex_ = marks > kLongestRun ? kAsItStands : 0;
  return NextOfRun(wantScript);
}

/// The next key of what has a run of marks in it. Nothing of a run is kept between two keys but how
/// many there were, and how far the place has moved for them: behind the characters of which
/// nothing is left to deliver.
std::uint32_t OrderWalk::NextOfRun(bool wantScript) {
  const std::ptrdiff_t width = wide_ ? 2 : 1;
  if (pendingIndex_ == kAsItStands) {
    pending_ = nullptr;
    const std::uint32_t key = NextKeyAsItStands(wantScript);
    if (pending_ == nullptr && IsMark(CharacterAt(position_))) {
      pending_ = &kMarksPending;
      pendingIndex_ = kAsItStands;
    }
    return key;
  }
  const int delivered = pendingIndex_ & 0xff;
  const char* const start = position_ - (pendingIndex_ >> 8) * width;
  const char* place = start;
  const OtOrderRecord* head = nullptr;  // of the characters before the run
  for (;; place += width) {
    const unsigned short character = CharacterAt(place);
    const OtOrderRecord* record = &table_->At(character);
    const OtOrderRecord* other =
        head == nullptr ? record->Tailored(language_) : head->Contracted(character);
    if (other == nullptr) other = record;
    if (BeginsRun(record->flags | other->hasContractions(), character, place + width)) break;
    head = other;
  }
  Run run(*this, place);
  int count = 0;
  std::uint32_t key = 0;
  std::ptrdiff_t passed = 0;  // with the record before
  std::ptrdiff_t moved = 0;
  run.ForEachRecord(head, [&](const OtOrderRecord& record) {
    const int first = count++;
    if (first == delivered) key = KeyOfRecord(&record, defaultScript_, wantScript);
    if (record.hasExpansion()) {
      for (const std::uint16_t word : *record.expansion()) {
        if (count++ == delivered) key = ComposeOrderKey(word, script_);
      }
    }
    const std::ptrdiff_t behind = (place - start) / width + run.Passed();
    // Until all words of a record are delivered, the walk stays on its last character.
    if (first <= delivered && delivered < count)
      moved = delivered + 1 == count ? behind : std::max(passed, behind - 1);
    passed = behind;
  });
  if (delivered + 1 == count) {
    position_ = run.end();
    pending_ = nullptr;
    return key;
  }
  position_ = start + moved * width;
  pendingIndex_ = static_cast<std::int32_t>(moved << 8 | (delivered + 1));
  return key;
}

}  // namespace ot95
