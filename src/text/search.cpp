/// Searching: places of a text in another by collation, replacement, and lists.
///
/// Characters and orders don't pair off: a sharp s has the orders of two letters, while in Czech
/// "ch" has one. So a place matches if a stretch of whole characters from it on, with as many
/// orders as the pattern has, compares as equal.

#include <algorithm>

#include "ot95/text.h"
#include "text/collation/compare.h"
#include "text/collation/walk.h"

using ot95::CharWidth;
using ot95::TextAccess;
using ot95::TextSpan;

namespace {

constexpr char kStar = '*';

/// The search of a text for one pattern.
class Search {
 public:
  Search(const OtString& text, const OtString& sought, unsigned short op);

  /// Goes to the first match from `start` on; false if there is none.
  bool Find(std::size_t start);

  // The match, in characters.
  std::size_t place = 0;
  std::size_t end = 0;

 private:
  void Measure(const OtString& pattern);
  TextSpan From(std::size_t start) const;
  bool Equals(std::size_t start, std::size_t stretchEnd) const;
  // Where a match ends that begins at `start`; `start` itself if there is none.
  std::size_t EndOfMatch(std::size_t start) const;
  std::size_t EndByOrders(std::size_t start) const;
  bool Skips(std::uint32_t key) const;
  std::uint32_t NextCounting(ot95::OrderWalk& walk) const;
  bool Differ(std::uint32_t key1, std::uint32_t key2) const;

  TextSpan text_;
  TextSpan pattern_;
  ot95::OrderWalk walk_;  // from the start of the text
  ot95::OrderWalk soughtWalk_;
  OtString open_;  // the pattern with a star behind it
  std::size_t width_;
  std::size_t length_;
  std::size_t places_;  // matches begin below this one
  unsigned short cmpOp_;
  ot95::Levels levels_;
  bool matchesRest_;
  bool byOrders_ = false;
  bool skips_ = false;       // some orders don't count
  bool keysDecide_ = false;  // one difference of keys is enough
  // How many of the pattern's orders count, and how many others are before and behind these.
  std::size_t counting_ = 0;
  std::size_t leading_ = 0;
  std::size_t trailing_ = 0;
};

// An empty pattern is nowhere, unless wildcards make it one that matches all. OT_CMP_DEFAULT always
// looks for the pattern alone, whatever op stands behind it.
Search::Search(const OtString& text, const OtString& sought, unsigned short op)
    : text_(TextSpan::Terminated(text.StrGet(), text.GetCodeSetCode(), text.GetLanguageCode())),
      pattern_(TextSpan::Of(sought)),
      walk_(text_),
      soughtWalk_(pattern_),
      open_(OT_CS_NONE, 0),
      width_(CharWidth(text_.codeSet)),
      length_(TextAccess::Length(text)),
      places_(length_),
      cmpOp_(op != OT_CMP_DEFAULT ? op : OtString::GetDefaultCmpOp()),
      levels_(cmpOp_),
      matchesRest_((op & OT_CMP_NO_WILDCARDS) == 0) {
  if (matchesRest_) {
    open_ = sought;
    open_ << kStar;
    pattern_ = TextSpan::Of(open_);
  } else if (sought.IsEmpty()) {
    places_ = 0;
  } else {
    Measure(sought);
  }
}

void Search::Measure(const OtString& pattern) {
  byOrders_ = text_.codeSet != 0 || pattern_.codeSet != 0;
  if (!byOrders_) {
    counting_ = TextAccess::Length(pattern);
    return;
  }
  skips_ = (cmpOp_ & OT_CMP_ORDER_ONLY) == 0 &&
           (levels_.ignoreSpace || levels_.ignoreSymbols || levels_.ignoreAccent);
  // The script byte of a key's words is not that of each.
  keysDecide_ =
      !levels_.wildcards && text_.codeSet != OT_CS_ORDER && pattern_.codeSet != OT_CS_ORDER;
  ot95::OrderWalk walk(soughtWalk_);
  while (const std::uint32_t key = walk.NextKey(true)) {
    const unsigned short order = ot95::OrderOfKey(key);
    const bool wildcard =
        levels_.wildcards && (order == ot95::AsteriskWord() || order == ot95::QuestionWord());
    if (Skips(key) && !wildcard) {
      ++(counting_ == 0 ? leading_ : trailing_);
    } else {
      ++counting_;
      trailing_ = 0;
    }
  }
  if (counting_ != 0) return;
  // A pattern of nothing that counts meets as many orders as it has, of whatever kind.
  counting_ = leading_;
  skips_ = false;
  keysDecide_ = false;
}

bool Search::Skips(std::uint32_t key) const {
  return skips_ && !ot95::IsReal(key) && levels_.Ignores(key);
}

/// The next key of the pattern that counts.
std::uint32_t Search::NextCounting(ot95::OrderWalk& walk) const {
  std::uint32_t key = 0;
  do key = walk.NextKey(true);
  while (Skips(key));
  return key;
}

/// Whether two keys at the same place keep texts from being equal.
bool Search::Differ(std::uint32_t key1, std::uint32_t key2) const {
  if (ot95::IsReal(key1) || ot95::IsReal(key2)) return ((key1 ^ key2) & levels_.mask) != 0;
  return ot95::OrderOfKey(key1) != ot95::OrderOfKey(key2);
}

TextSpan Search::From(std::size_t start) const {
  TextSpan rest = text_;
  rest.text += start * width_;
  return rest;
}

bool Search::Equals(std::size_t start, std::size_t stretchEnd) const {
  const TextSpan stretch =
      TextSpan::Bounded(text_.text + start * width_, (stretchEnd - start) * width_, text_.codeSet,
                        text_.language, false);
  return ot95::CompareSpans(stretch, pattern_, cmpOp_) == 0;
}

std::size_t Search::EndOfMatch(std::size_t start) const {
  if (byOrders_) return EndByOrders(start);
  // Raw bytes are their own orders, and a pattern with a star behind it takes all that follows.
  const std::size_t matchEnd = matchesRest_ ? length_ : std::min(start + counting_, length_);
  const long limit = matchesRest_ ? -1 : static_cast<long>(counting_);
  return ot95::CompareSpans(From(start), pattern_, cmpOp_, limit) == 0 ? matchEnd : start;
}

/// Takes as many counting orders as the pattern has. Others belong to a match between those that
/// count, and at an end as far as the pattern has the like there.
std::size_t Search::EndByOrders(std::size_t start) const {
  ot95::OrderWalk walk(walk_, From(start));
  ot95::OrderWalk sought(soughtWalk_);
  std::size_t counted = 0;
  std::size_t skipped = 0;
  std::size_t reached = start;
  std::size_t boundary = start;
  bool between = true;  // no mark of what counts is still to come
  while (const std::uint32_t key = walk.NextKey(true)) {
    if (Skips(key)) {
      if (counted == 0 && ++skipped > leading_) return start;
      if (counted == counting_ && ++skipped > trailing_ && between) break;
    } else {
      if (counted++ == counting_) break;
      if (keysDecide_ && Differ(key, NextCounting(sought))) return start;
      skipped = 0;
    }
    reached = static_cast<std::size_t>(walk.position() - text_.text) / width_;
    between = walk.BetweenCharacters();
    if (between) boundary = reached;
  }
  // Inside of an expansion, what has been reached may be more than its first orders stand for: the
  // Hungarian "nn" that no "y" follows is taken up as one, and is two letters.
  for (std::size_t matchEnd = reached; matchEnd > start && matchEnd >= boundary; --matchEnd) {
    if (Equals(start, matchEnd)) return matchEnd;
  }
  return start;
}

bool Search::Find(std::size_t start) {
  for (place = start; place < places_; ++place) {
    const char* const at = text_.text + place * width_;
    if (place != 0 && ot95::SplitsPair(at, text_.codeSet)) continue;
    end = EndOfMatch(place);
    if (end != place) return true;
  }
  return false;
}

}  // namespace

short OtString::Find(const OtString& pattern, unsigned short start, unsigned short cmpOp) const {
  Search search(*this, pattern, cmpOp);
  return search.Find(start) ? static_cast<short>(search.place) : static_cast<short>(-1);
}

short OtString::Find(char c, unsigned short start, unsigned short cmpOp) const {
  return Find(OtString(c), start, cmpOp);
}

short OtString::Find(unsigned short c, unsigned short start, unsigned short cmpOp) const {
  return Find(OtString(c), start, cmpOp);
}

short OtString::SubStringPos(const OtString& pattern, unsigned short cmpOp) const {
  return Find(pattern, 0, cmpOp);
}

// What is inserted isn't searched, and what follows a match isn't changed: all are found in the old
// text, first to know the room and then to fill it.
OtString& OtString::ReplaceAll(const OtString& from, const OtString& to, unsigned short start) {
  Search search(*this, from, OT_CMP_DEFAULT);
  const auto forEachMatch = [&](auto&& take) {
    for (std::size_t at = start; search.Find(at); at = search.end) take(search.place, search.end);
  };
  std::size_t matches = 0;
  std::size_t removed = 0;
  forEachMatch([&](std::size_t place, std::size_t end) {
    ++matches;
    removed += end - place;
  });
  if (matches == 0) return *this;

  OtString inserted(codeSet_, language_);
  inserted += to;
  const std::size_t width = CharWidth(codeSet_);
  const std::size_t length = Length();
  const std::size_t piece = inserted.Length() * width;
  const std::size_t size = (length - removed + 1) * width + matches * piece;
  ot95::CheckTextSize(size);
  char* const fresh = ot95::NewText(size);
  if (fresh == nullptr) return *this;

  char* target = fresh;
  std::size_t done = 0;
  forEachMatch([&](std::size_t place, std::size_t end) {
    target = std::copy(buffer_ + done * width, buffer_ + place * width, target);
    target = std::copy_n(inserted.StrGet(), piece, target);
    done = end;
  });
  std::copy(buffer_ + done * width, buffer_ + (length + 1) * width, target);
  Adopt(fresh, size);
  return *this;
}

OtString& OtString::ReplaceAll(char from, char to, unsigned short start) {
  return ReplaceAll(OtString(from), OtString(to), start);
}

OtString& OtString::ReplaceAll(unsigned short from, unsigned short to, unsigned short start) {
  return ReplaceAll(OtString(from), OtString(to), start);
}

int OtSplitList(OtString& list, OtString& item, const OtString& separator, unsigned short& pos) {
  // A place behind a text beyond what `pos` can say would begin its end anew for ever.
  const std::size_t length = std::min<std::size_t>(TextAccess::Length(list), 0xffff);
  const auto cut = [](std::size_t place) {
    return static_cast<unsigned short>(std::min<std::size_t>(place, 0xffff));
  };
  Search search(list, separator, OT_CMP_DEFAULT);
  bool found = search.Find(pos);
  // A separator at the very start is passed over.
  if (found && search.place == 0) {
    pos = cut(search.end);
    found = search.Find(pos);
  }
  std::size_t place = search.place;
  std::size_t next = search.end;
  if (!found || place >= length) {
    if (pos >= length) return OT_ERR_NO_MORE_ITEMS;
    place = length;
    next = length + 1;
  }
  OtString part = TextAccess::Copy(list, pos, place - pos);
  part.Trim();
  pos = cut(next);
  item = part;
  return 0;
}
