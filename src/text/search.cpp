/// Searching: places of a text in another by collation, replacement, and lists.

#include <algorithm>

#include "ot95/text.h"
#include "text/units.h"

using ot95::CharWidth;
using ot95::TextAccess;

namespace {

constexpr std::size_t kNotFound = ot95::TextAccess::kNotFound;
constexpr char kStar = '*';

/// The most orders that a comparison can be told to take.
constexpr std::size_t kMaxOrders = 0x7fff;

}  // namespace

/// One search of a text: what is sought, and the places where it may begin.
struct OtString::Search {
  Search(const OtString& text, const OtString& sought, unsigned short op);

  OtString open;            ///< The pattern with a star behind it.
  const OtString* pattern;  ///< As compared.
  std::size_t end = 0;      ///< Places are below this one.
  unsigned short cmpOp;
  short maxChars = -1;
  std::size_t longSize = 0;  ///< Characters of a pattern that is longer than maxChars can say.
};

// An empty pattern is nowhere, unless wildcards make it one that matches all.
OtString::Search::Search(const OtString& text, const OtString& sought, unsigned short op)
    : open(OT_CS_NONE, 0), pattern(&sought), cmpOp(op) {
  const std::size_t length = text.Length();
  const std::size_t size = sought.Length();
  // The default op is asked for after this: it always looks for the pattern alone.
  const bool matchesRest = (op & OT_CMP_NO_WILDCARDS) == 0;
  if (op == OT_CMP_DEFAULT) cmpOp = GetDefaultCmpOp();
  if (matchesRest) {
    open = sought;
    open << kStar;
    pattern = &open;
    end = length;
    return;
  }
  if (size == 0) return;
  if (size <= kMaxOrders) {
    maxChars = static_cast<short>(size);
  } else {
    longSize = size;
  }
  // A pattern with wildcards may be longer than what it matches.
  if ((cmpOp & OT_CMP_NO_WILDCARDS) == 0) {
    end = length;
  } else if (size <= length) {
    end = length - size + 1;
  }
}

/// The first place from `start` on where the text matches; kNotFound for none.
std::size_t OtString::FindFrom(const Search& search, std::size_t start) const {
  const std::size_t width = CharWidth(codeSet_);
  const OtString& pattern = *search.pattern;
  for (std::size_t place = start; place < search.end; ++place) {
    if (search.longSize != 0) {
      if (CopyAt(place, search.longSize).Compare(pattern, search.cmpOp) == 0) return place;
      continue;
    }
    const long difference =
        OtStrCmp(codeSet_, language_, buffer_ + place * width, pattern.codeSet_, pattern.language_,
                 pattern.StrGet(), search.cmpOp, search.maxChars, OT_FORMAT_NATIVE);
    if (difference == 0) return place;
  }
  return kNotFound;
}

std::size_t OtString::FindPlace(const OtString& pattern, std::size_t start,
                                unsigned short cmpOp) const {
  return FindFrom(Search(*this, pattern, cmpOp), start);
}

short OtString::Find(const OtString& pattern, unsigned short start, unsigned short cmpOp) const {
  return static_cast<short>(FindPlace(pattern, start, cmpOp));
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

// What is inserted isn't searched, and what follows a place isn't changed: all places are found in
// the old text, first to know the room and then to fill it.
OtString& OtString::ReplaceAll(const OtString& from, const OtString& to, unsigned short start) {
  const Search search(*this, from, OT_CMP_DEFAULT);
  const std::size_t sought = from.Length();
  const auto forEachPlace = [&](auto&& take) {
    for (std::size_t at = FindFrom(search, start); at != kNotFound;
         at = FindFrom(search, at + sought)) {
      take(at);
    }
  };
  std::size_t places = 0;
  std::size_t last = 0;
  forEachPlace([&](std::size_t place) {
    ++places;
    last = place;
  });
  if (places == 0) return *this;

  OtString inserted(codeSet_, language_);
  inserted += to;
  const std::size_t width = CharWidth(codeSet_);
  const std::size_t length = Length();
  const std::size_t piece = inserted.Length() * width;
  // Under wildcards the last match may be shorter than what was sought.
  const std::size_t removed = (places - 1) * sought + std::min(sought, length - last);
  const std::size_t size = (length - removed + 1) * width + places * piece;
  ot95::CheckTextSize(size);
  char* const fresh = ot95::NewText(size);
  if (fresh == nullptr) return *this;

  char* target = fresh;
  std::size_t done = 0;
  forEachPlace([&](std::size_t place) {
    target = std::copy(buffer_ + done * width, buffer_ + place * width, target);
    target = std::copy_n(inserted.StrGet(), piece, target);
    done = std::min(place + sought, length);
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
  const std::size_t end = std::min<std::size_t>(TextAccess::Length(list), 0xffff);
  std::size_t place = TextAccess::Find(list, separator, pos);
  while (place == 0) place = TextAccess::Find(list, separator, ++pos);
  if (place >= end) {
    if (pos >= end) return OT_ERR_NO_MORE_ITEMS;
    place = end;
  }
  OtString found = TextAccess::Copy(list, pos, place - pos);
  found.Trim();
  pos = static_cast<unsigned short>(std::min<std::size_t>(place + 1, 0xffff));
  item = found;
  return 0;
}
