#ifndef OT95_SRC_TEXT_PATTERN_UNITS_H
#define OT95_SRC_TEXT_PATTERN_UNITS_H

/// @file
/// Patterns as units: keys, of which only what counts is left, and wildcards.

#include <algorithm>
#include <cstdint>

namespace ot95 {

// In place of keys, which all have a script byte.
inline constexpr std::uint32_t kStar = 1;
inline constexpr std::uint32_t kAny = 2;

// Words of the halves of a character beyond the first plane: their values.
inline constexpr unsigned kFirstLead = 0xd800;
inline constexpr unsigned kFirstTrail = 0xdc00;

/// Whether a key is that of a half: one of 0x400 words from `first` on, beyond every alphabet.
constexpr bool IsHalf(std::uint32_t key, unsigned first) {
  return (key >> 24 & 0x7f) == 0x14 && (key >> 8 & 0xfc00) == first;
}

constexpr bool IsAnyHalf(std::uint32_t key) {
  return IsHalf(key, kFirstLead) || IsHalf(key, kFirstTrail);
}

inline bool Fits(std::uint32_t key, std::uint32_t unit) {
  return unit == kAny || key == unit;
}

/// Whether the text [text, textEnd) is anything followed by what the pattern describes. The part
/// behind the last star can only stand at the end; the others take the first place they find.
inline bool MatchesBehindStar(const std::uint32_t* text, const std::uint32_t* textEnd,
                              const std::uint32_t* pattern, const std::uint32_t* patternEnd) {
  for (; patternEnd != pattern && patternEnd[-1] != kStar; --patternEnd, --textEnd) {
    if (textEnd == text || !Fits(textEnd[-1], patternEnd[-1])) return false;
  }
  while (pattern != patternEnd) {
    const std::uint32_t* star = std::find(pattern, patternEnd, kStar);
    text = std::search(text, textEnd, pattern, star, Fits);
    if (text == textEnd && pattern != star) return false;
    text += star - pattern;
    pattern = star + 1;
  }
  return true;
}

}  // namespace ot95

#endif
