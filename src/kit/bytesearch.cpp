// Search for bytes. The usual search, which jumps from one first byte to the next, runs at the
// speed of memory until its comparisons add up to more than the text deserves; the rest is left to
// the two-way algorithm (Crochemore and Perrin), which is linear for every pattern and needs no
// table.

#include "kit/bytesearch.h"

#include <algorithm>
#include <cstring>

#include "kit/walks.h"

namespace ot95 {
namespace {

// Where a pattern is cut in two so that its local period there is its period, and that period.
struct Factorisation {
  std::size_t cut;
  std::size_t period;
};

// The greatest suffix of the pattern, by the order of bytes or by its reverse.
Factorisation GreatestSuffix(const unsigned char* pattern, std::size_t length, bool reversed) {
  std::size_t start = 0, candidate = 1, offset = 0, period = 1;
  while (candidate + offset < length) {
    const unsigned char a = pattern[candidate + offset];
    const unsigned char b = pattern[start + offset];
    if (a == b) {
      if (++offset == period) candidate += period, offset = 0;
    } else if (reversed ? a > b : a < b) {
      candidate += offset + 1, offset = 0, period = candidate - start;
    } else {
      start = candidate++, offset = 0, period = 1;
    }
  }
  return {start, period};
}

Factorisation CriticalFactorisation(const unsigned char* pattern, std::size_t length) {
  const Factorisation up = GreatestSuffix(pattern, length, false);
  const Factorisation down = GreatestSuffix(pattern, length, true);
  return up.cut > down.cut ? up : down;
}

std::size_t TwoWay(const unsigned char* text, std::size_t length, const unsigned char* pattern,
                   std::size_t patternLength) {
  auto [cut, period] = CriticalFactorisation(pattern, patternLength);
  // A periodic pattern remembers how much of its front is known to match after a shift.
  const bool periodic =
      cut + period <= patternLength && std::memcmp(pattern, pattern + period, cut) == 0;
  if (!periodic) period = std::max(cut, patternLength - cut) + 1;
  std::size_t known = 0;
  for (std::size_t place = 0; patternLength <= length - place;) {
    const unsigned char* window = text + place;
    std::size_t right = std::max(cut, known);
    while (right < patternLength && pattern[right] == window[right]) ++right;
    if (right < patternLength) {
      place += right - cut + 1;
      known = 0;
    } else {
      std::size_t left = cut;
      while (left > known && pattern[left - 1] == window[left - 1]) --left;
      if (left <= known) return place;
      place += period;
      known = periodic ? patternLength - period : 0;
    }
    if (place > length) break;
  }
  return noPlace;
}

}  // namespace

std::size_t FindBytes(const unsigned char* text, std::size_t length, const unsigned char* pattern,
                      std::size_t patternLength) {
  if (patternLength == 0) return 0;
  if (patternLength > length) return noPlace;
  const std::size_t last = length - patternLength;
  std::size_t place = 0;
  // Bytes that were compared in vain are paid from a budget that grows with the bytes passed.
  for (std::size_t spent = 0; spent <= 4 * place + 1024;) {
    const void* first = std::memchr(text + place, pattern[0], last - place + 1);
    if (!first) return noPlace;
    place = static_cast<std::size_t>(static_cast<const unsigned char*>(first) - text);
    const std::size_t equal = FirstDifference(text + place, pattern, patternLength);
    if (equal == patternLength) return place;
    if (place == last) return noPlace;
    ++place;
    spent += equal;
  }
  const std::size_t found = TwoWay(text + place, length - place, pattern, patternLength);
  return found == noPlace ? noPlace : found + place;
}

}  // namespace ot95
