/// The rarer parts of comparing bytes: where the texts part at a symbol, and where they go on in
/// another case.

#include "text/collation/comparebytes.h"

#include "text/collation/walk.h"

namespace ot95 {
namespace {

/// No key: a character that isn't the whole answer.
constexpr std::uint32_t kUnclear = UINT32_MAX;

/// The next key that isn't a symbol's. @param joined whether there are characters before the place.
std::uint32_t FirstReal(WideKeys keys, Utf8Place place, bool joined) {
  for (;; joined = true) {
    std::size_t length;
    const unsigned unit = place.Unit(length);
    if (unit == 0) return 0;
    if (unit == kNoUnit) return kUnclear;
    const std::uint32_t key = keys.At(unit);
    const std::uint32_t unclear = kJoins | kOpens | (joined ? kJoinsOpener : 0);
    if ((key & unclear) != 0 || (key & kKeyBits) == 0) return kUnclear;
    place.place += length;
    if (!BeginsAnew(keys, place)) return kUnclear;
    if (IsReal(key & kKeyBits)) return key & kKeyBits;
  }
}

/// Whether two characters of ASCII are alike but for case.
constexpr bool AreAlikeInAscii(unsigned byte1, unsigned byte2) {
  const unsigned small = byte1 | kCaseDistance;
  return byte1 == byte2 || ((byte1 ^ byte2) == kCaseDistance && small >= 'a' && small <= 'z');
}

}  // namespace

int SignBehindSymbols(WideKeys keys, Utf8Place one, Utf8Place two, bool joined) {
  const std::uint32_t key1 = FirstReal(keys, one, joined);
  if (key1 == kUnclear) return kUndecided;
  const std::uint32_t key2 = FirstReal(keys, two, joined);
  if (key2 == kUnclear || ((key1 ^ key2) & kPrimaryMask) == 0) return kUndecided;
  return key1 < key2 ? -1 : 1;
}

std::size_t PassAlike(Utf8Place one, Utf8Place two) {
  const std::size_t size = std::min(one.Left(), two.Left());
  std::size_t at = 0;
  while (at < size) {
    const unsigned byte1 = one.At(at);
    const unsigned byte2 = two.At(at);
    if ((byte1 | byte2) < 0x80) {
      if (!AreAlikeInAscii(byte1, byte2) || byte1 == 0) break;
      ++at;
      continue;
    }
    // Those of two bytes stand for themselves in both texts, or in none.
    if (std::min(byte1, byte2) < 0xc2 || std::max(byte1, byte2) >= 0xe0 || at + 1 == size) break;
    const unsigned next1 = one.At(at + 1);
    const unsigned next2 = two.At(at + 1);
    if (!IsContinuation(next1) || !IsContinuation(next2)) break;
    const unsigned unit1 = (byte1 & 0x1f) << 6 | (next1 & 0x3f);
    const unsigned unit2 = (byte2 & 0x1f) << 6 | (next2 & 0x3f);
    const bool alike = unit1 < OT_FIRST_MARK ? AreAlike<CaseFold::kLatin>(unit1, unit2)
                                             : AreAlike<CaseFold::kOthers>(unit1, unit2);
    if (!alike) break;
    at += 2;
  }
  return at;
}

}  // namespace ot95
