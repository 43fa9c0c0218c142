#include "text/legacy/collation.h"

namespace ot95 {
namespace {

using Encoding = std::array<CollationPair, 256>;

// Collation bytes of the letters A to Z, in either case.
constexpr unsigned char letters[26] = {0x54, 0x5b, 0x5e, 0x61, 0x69, 0x6f, 0x71, 0x73, 0x79,
                                       0x7f, 0x81, 0x83, 0x85, 0x87, 0x90, 0x97, 0x99, 0x9b,
                                       0x9d, 0x9f, 0xa5, 0xab, 0xad, 0xaf, 0xb3, 0xb7};

// Both bytes of the characters from 0xc0 to 0xff.
constexpr CollationPair accented[64] = {
    {0x54, 3}, {0x54, 2}, {0x54, 4}, {0x54, 5}, {0x54, 1}, {0xbd, 0}, {0xb9, 0}, {0x5e, 1},
    {0x69, 3}, {0x69, 2}, {0x69, 4}, {0x69, 1}, {0x79, 3}, {0x79, 2}, {0x79, 4}, {0x79, 1},
    {0x63, 0}, {0x89, 0}, {0x90, 3}, {0x90, 2}, {0x90, 4}, {0x90, 5}, {0x90, 1}, {0x4c, 0},
    {0xbb, 0}, {0xa5, 3}, {0xa5, 2}, {0xa5, 4}, {0xa5, 1}, {0xb3, 2}, {0xbf, 0}, {0x9d, 0x9d},
    {0x54, 3}, {0x54, 2}, {0x54, 4}, {0x54, 5}, {0x54, 1}, {0xbd, 0}, {0xb9, 0}, {0x5e, 1},
    {0x69, 3}, {0x69, 2}, {0x69, 4}, {0x69, 1}, {0x79, 3}, {0x79, 2}, {0x79, 4}, {0x79, 1},
    {0x63, 0}, {0x89, 0}, {0x90, 3}, {0x90, 2}, {0x90, 4}, {0x90, 5}, {0x90, 1}, {0x4d, 0},
    {0xbb, 0}, {0xa5, 3}, {0xa5, 2}, {0xa5, 4}, {0xa5, 1}, {0xb3, 2}, {0xbf, 0}, {0xb3, 1}};

constexpr CollationPair bigOe = {0x90, 0x69};  // 0x8c

constexpr CollationPair EncodeLow(unsigned c) {
  const unsigned letter = (c & ~0x20U) - 'A';
  if (letter < 26) return {letters[letter], 0};
  if (c >= 0x7b) return {static_cast<unsigned char>(c - 0x7b + 0x47), 0};
  if (c == 0x60) return {0x41, 0};
  if (c >= 0x5b) return {static_cast<unsigned char>(c - 0x5b + 0x42), 0};
  return {static_cast<unsigned char>(c), 0};  // '@'
}

constexpr CollationPair EncodeChar(unsigned c, CollationPair smallOe) {
  if (c >= 0xc0) return accented[c - 0xc0];
  if (c >= 0xa0) return {static_cast<unsigned char>(c + 0x10), 0};
  if (c == 0x8c) return bigOe;
  if (c == 0x9c) return smallOe;
  if (c == 0x9f) return {0xb3, 1};
  if (c >= 0x80) return {static_cast<unsigned char>(c + 0x60), 0};
  if (c >= 0x40) return EncodeLow(c);
  return {static_cast<unsigned char>(c), 0};
}

constexpr Encoding MakeEncoding(CollationPair smallOe) {
  Encoding encoding{};
  for (unsigned c = 0; c < 256; ++c) encoding[c] = EncodeChar(c, smallOe);
  return encoding;
}

enum class Agreement { none, equal, endsMatch };

// Whether a byte of the pattern meets a byte of the text. A key holds less than a text: the accent
// of a plain pattern can't be held against it, nor all of a pattern's two letters in one.
Agreement Meet(const LegacyRules& rules, const LegacyText& text, unsigned char textByte,
               const LegacyText& pattern, unsigned char patternByte) {
  if (!rules.matchesCollation) {
    return textByte == patternByte ? Agreement::equal : Agreement::none;
  }
  const CollationPair ofText = text.IsKey() ? CollationPair{textByte, 0} : rules.encoding[textByte];
  const CollationPair ofPattern =
      pattern.IsKey() ? CollationPair{patternByte, 0} : rules.encoding[patternByte];
  if (ofText == ofPattern) return Agreement::equal;
  if (ofText.first != ofPattern.first || !text.IsKey() || pattern.IsKey()) return Agreement::none;
  return ofPattern.IsTwoLetters() ? Agreement::endsMatch : Agreement::equal;
}

unsigned char Unescaped(unsigned char c) {
  switch (c) {
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return c;
  }
}

}  // namespace

constinit const LegacyRules iStringRules = {.encoding = MakeEncoding({0x8a, 0x64}),
                                            .caseCanCount = false,
                                            .matchesCollation = false,
                                            .decodesKeys = false};
constinit const LegacyRules caseIStringRules = {.encoding = MakeEncoding(bigOe),
                                                .caseCanCount = true,
                                                .matchesCollation = true,
                                                .decodesKeys = true};

unsigned char DecodeChar(const LegacyRules& rules, unsigned char first, unsigned char second,
                         bool& usedSecond) {
  const auto find = [&rules](unsigned from, unsigned to, auto&& matches) {
    while (from <= to && !matches(rules.encoding[from])) ++from;
    return from <= to ? from : 0;
  };
  const auto isPair = [=](CollationPair pair) {
    return pair.IsTwoLetters() && pair == CollationPair{first, second};
  };
  const auto isFirst = [=](CollationPair pair) { return pair.first == first; };
  unsigned c = find(0x80, 0xff, isPair);
  usedSecond = c != 0;
  if (c == 0) c = find(0x40, 0x7f, isFirst);
  if (c == 0) c = find(0xc0, 0xff, isFirst);
  if (c != 0) return static_cast<unsigned char>(c);
  if (first >= 0xe0) return static_cast<unsigned char>(first - 0x60);
  if (first >= 0xb0 && first < 0xd0) return static_cast<unsigned char>(first - 0x10);
  return first;
}

long CompareLegacy(const LegacyRules& rules, const LegacyText& a, const LegacyText& b,
                   std::size_t steps) {
  if (!a.bytes || !b.bytes) return (a.bytes != nullptr) - (b.bytes != nullptr);
  if (steps > 0 && (a.At(0) == 0 || b.At(0) == 0)) return a.At(0) - b.At(0);
  // The left side says for both whether case counts.
  const bool caseCounts = rules.caseCanCount && (a.flags & OT_ISTR_CASE);
  CollationWalk walkA(rules, a, caseCounts);
  CollationWalk walkB(rules, b, caseCounts);
  for (; steps > 0; --steps) {
    const unsigned char byteA = walkA.Next();
    const unsigned char byteB = walkB.Next();
    if (byteA != byteB) return byteA - byteB;
    if (byteA == 0) break;
  }
  return 0;
}

long FindLegacyWildcard(const LegacyText& pattern) {
  if (!pattern.bytes) return -1;
  for (std::size_t i = 0; pattern.At(i) != 0; ++i) {
    const unsigned char c = pattern.At(i);
    if (c == '*' || c == '?' || c == '\\') return static_cast<long>(i);
  }
  return -1;
}

// Only the last star is ever tried again: what an earlier one passed can't serve better elsewhere.
bool MatchLegacy(const LegacyRules& rules, const LegacyText& text, const LegacyText& pattern) {
  constexpr std::size_t none = ~std::size_t{0};
  std::size_t at = 0, place = 0;  // in the pattern, in the text
  std::size_t starAt = none, starPlace = 0;
  for (;;) {
    unsigned char c = pattern.At(at);
    const unsigned char t = text.At(place);
    if (c == 0 && t == 0) return true;
    if (c != 0) ++at;
    if (c == '*') {
      starAt = at;
      starPlace = place;
      continue;
    }
    if (c == '?') {
      if (rules.matchesCollation && text.IsKey()) return true;
      if (t == 0) return false;
      ++place;
      continue;
    }
    if (c == '\\') {
      c = Unescaped(pattern.At(at));
      if (c == 0) return false;
      ++at;
    }
    const Agreement agreement = Meet(rules, text, t, pattern, c);
    if (agreement == Agreement::endsMatch) return true;
    if (agreement == Agreement::equal) {
      if (t != 0) ++place;
    } else {
      if (t == 0 || starAt == none) return false;
      at = starAt;
      place = ++starPlace;
    }
  }
}

}  // namespace ot95
