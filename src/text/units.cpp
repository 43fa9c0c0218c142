/// Units of text in bulk: copying, filling, and mapping between code sets.

#include "text/units.h"

#include <algorithm>
#include <array>

namespace ot95 {

void CopyReversed(const char* source, std::size_t count, char* target) {
  for (std::size_t i = 0; i < 2 * count; i += 2) {
    StoreWide(target + i, SwapBytes(LoadWide(source + i)));
  }
}

void FillUnits(const char* source, std::size_t count, char* target, bool wide) {
  if (count == 0) return;
  if (!wide) {
    std::memset(target, *source, count);
    return;
  }
  const std::uint16_t unit = LoadWide(source);
  for (std::size_t i = 0; i < 2 * count; i += 2) StoreWide(target + i, unit);
}

namespace {

using Piece = std::array<std::uint16_t, 256>;

/// The way of all sets that are neither Unicode nor bytes.
void MapUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
              char* target, unsigned char to) {
  const OtCodeSet* set = OtLanguageContext::QueryCodeSet(to);
  const std::size_t step = CharWidth(from);
  for (; count != 0; --count) {
    StoreUnit(target, set->MapChar(LoadUnit(source, IsWide(from), reversed), from), IsWide(to));
    source += step;
    target += CharWidth(to);
  }
}

const unsigned char* Bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}
unsigned char* Bytes(char* text) {
  return reinterpret_cast<unsigned char*>(text);
}

/// A wide source may stand at an odd address, and in either byte order.
void WideToBytes(const char* source, bool reversed, std::size_t count, const OtCodeSet& to,
                 char* target) {
  if (!reversed && reinterpret_cast<std::uintptr_t>(source) % alignof(std::uint16_t) == 0) {
    to.UnicodeToBytes(reinterpret_cast<const std::uint16_t*>(source), count, Bytes(target));
    return;
  }
  Piece piece;
  for (std::size_t done = 0; done < count; done += piece.size()) {
    const std::size_t units = std::min(piece.size(), count - done);
    CopyUnits(source + 2 * done, reversed, units, reinterpret_cast<char*>(piece.data()), true);
    to.UnicodeToBytes(piece.data(), units, Bytes(target) + done);
  }
}

void BytesToBytes(const OtCodeSet& from, const char* source, std::size_t count, const OtCodeSet& to,
                  char* target) {
  Piece piece;
  for (std::size_t done = 0; done < count; done += piece.size()) {
    const std::size_t units = std::min(piece.size(), count - done);
    from.BytesToUnicode(Bytes(source) + done, units, piece.data());
    to.UnicodeToBytes(piece.data(), units, Bytes(target) + done);
  }
}

/// Up to two units of the target for one letter of the source.
struct Step {
  std::size_t taken = 1, given = 1;
  std::uint16_t units[2] = {};
};

/// The way of the sets that spell letters with marks: into them and out of them.
class Speller {
 public:
  Speller(const char* source, unsigned char from, bool reversed, unsigned char to)
      : source_(source),
        from_(*OtLanguageContext::QueryCodeSet(from)),
        to_(*OtLanguageContext::QueryCodeSet(to)),
        unicode_(*OtLanguageContext::QueryCodeSet(OT_CS_UNICODE)),
        codeSet_(from),
        reversed_(reversed) {}

  /// What `count` units become. @return units written; a null target counts them only.
  std::size_t Run(std::size_t count, char* target, std::size_t room) const {
    std::size_t written = 0;
    for (std::size_t at = 0; at < count;) {
      const Step step = Take(at, count);
      if (step.given > room - written) break;
      for (std::size_t i = 0; target != nullptr && i < step.given; ++i) {
        StoreUnit(target + (written + i) * CharWidth(to_.number), step.units[i],
                  IsWide(to_.number));
      }
      at += step.taken;
      written += step.given;
    }
    return written;
  }

 private:
  std::uint16_t UnitAt(std::size_t at) const {
    return LoadUnit(source_ + at * CharWidth(codeSet_), IsWide(codeSet_), reversed_);
  }

  Step Take(std::size_t at, std::size_t count) const {
    Step step;
    const std::uint16_t unit = UnitAt(at);
    std::uint16_t letter = unicode_.MapChar(unit, codeSet_);
    if (from_.SpellsWithMarks() && at + 1 < count) {
      const std::uint16_t whole = from_.Spelled(static_cast<unsigned char>(unit),
                                                static_cast<unsigned char>(UnitAt(at + 1)));
      if (whole != 0) {
        letter = whole;
        step.taken = 2;
      }
    }
    unsigned char base = 0, mark = 0;
    if (to_.Spelling(letter, base, mark)) {
      step.given = 2;
      step.units[0] = base;
      step.units[1] = mark;
    } else {
      step.units[0] = to_.MapChar(letter, OT_CS_UNICODE);
    }
    return step;
  }

  const char* source_;
  const OtCodeSet &from_, &to_, &unicode_;
  unsigned char codeSet_;
  bool reversed_;
};

bool IsSpelled(unsigned char from, unsigned char to) {
  return from != to && (OtLanguageContext::QueryCodeSet(from)->SpellsWithMarks() ||
                        OtLanguageContext::QueryCodeSet(to)->SpellsWithMarks());
}

unsigned char Named(unsigned char codeSet) {
  return codeSet == 0 ? OtLanguageContext::GetNativeCodeSet() : codeSet;
}

}  // namespace

std::size_t ConvertedUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
                           unsigned char to) {
  from = Named(from);
  to = Named(to);
  if (!IsSpelled(from, to)) return count;
  return Speller(source, from, reversed, to).Run(count, nullptr, SIZE_MAX);
}

std::size_t ConvertUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
                         char* target, unsigned char to, std::size_t room) {
  from = Named(from);
  to = Named(to);
  if (IsSpelled(from, to)) return Speller(source, from, reversed, to).Run(count, target, room);
  count = std::min(count, room);
  const OtCodeSet& fromSet = *OtLanguageContext::QueryCodeSet(from);
  const OtCodeSet& toSet = *OtLanguageContext::QueryCodeSet(to);
  const bool fromUnicode = fromSet.number == OT_CS_UNICODE;
  const bool toUnicode = toSet.number == OT_CS_UNICODE;
  if (from == to || (fromUnicode && toUnicode)) {
    CopyUnits(source, reversed, count, target, IsWide(to));
  } else if (fromUnicode && !IsWide(to)) {
    WideToBytes(source, reversed, count, toSet, target);
  } else if (toUnicode && !IsWide(from)) {
    fromSet.BytesToUnicode(Bytes(source), count, reinterpret_cast<std::uint16_t*>(target));
  } else if (!IsWide(from) && !IsWide(to)) {
    BytesToBytes(fromSet, source, count, toSet, target);
  } else {
    MapUnits(source, from, reversed, count, target, to);
  }
  return count;
}

}  // namespace ot95
