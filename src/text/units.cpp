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

}  // namespace

void ConvertUnits(const char* source, unsigned char from, bool reversed, std::size_t count,
                  char* target, unsigned char to) {
  if (from == 0) from = OtLanguageContext::GetNativeCodeSet();
  if (to == 0) to = OtLanguageContext::GetNativeCodeSet();
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
}

}  // namespace ot95
