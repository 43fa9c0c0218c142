#ifndef OT95_SRC_TEXT_COLLATION_COMPAREBYTES_H
#define OT95_SRC_TEXT_COLLATION_COMPAREBYTES_H

/// @file
/// Comparison of two texts in UTF-8 by their finished keys, without making units of them. Bytes
/// that are equal are passed over unseen; where the texts part, a character of each side is
/// decoded, whose finished key decides or lets go on.

#include <bit>
#include <string_view>

#include "text/collation/alike.h"
#include "text/collation/instep.h"

namespace ot95 {

/// Bytes from here on begin characters that may join what is before them.
inline constexpr unsigned kFirstMarkByte = 0xc0 | OT_FIRST_MARK >> 6;
/// In the place of a unit: none that a finished key tells of.
inline constexpr unsigned kNoUnit = 0x10000;

constexpr bool IsContinuation(unsigned byte) {
  return (byte & 0xc0) == 0x80;
}

/// One of the two texts, from where the comparison has come to.
struct Utf8Place {
  const char* place;
  const char* end;

  std::size_t Left() const { return static_cast<std::size_t>(end - place); }
  unsigned At(std::size_t offset) const { return static_cast<unsigned char>(place[offset]); }

  /// The character at the place, 0 at the end, and its bytes.
  [[gnu::always_inline]] unsigned Unit(std::size_t& length) const {
    length = 0;
    if (place == end) return 0;
    length = 1;
    const unsigned first = At(0);
    if (first < 0x80) [[likely]]
      return first != 0 ? first : kNoUnit;
    const std::size_t left = Left();
    if (first < 0xe0) {
      length = 2;
      if (first < 0xc2 || left < 2 || !IsContinuation(At(1))) return kNoUnit;
      return (first & 0x1f) << 6 | (At(1) & 0x3f);
    }
    length = 3;
    if (first >= 0xf0 || left < 3 || !IsContinuation(At(1)) || !IsContinuation(At(2)))
      return kNoUnit;
    const unsigned unit = (first & 0xf) << 12 | (At(1) & 0x3f) << 6 | (At(2) & 0x3f);
    return unit < 0x800 || (unit & 0xf800) == 0xd800 ? kNoUnit : unit;
  }
};

/// Whether what begins at a place can't be part of the character before it. What isn't UTF-8 may be
/// taken for any character.
[[gnu::always_inline]] inline bool BeginsAnew(WideKeys keys, Utf8Place place) {
  if (place.place == place.end) return true;
  const unsigned first = place.At(0);
  if (first < kFirstMarkByte) [[likely]]
    return true;
  unsigned unit = first & 0x1f;
  if (first < 0xe0) {
    if (place.Left() < 2) return false;
  } else {
    if (first >= 0xf0 || place.Left() < 3) return false;
    unit = (first & 0xf) << 6 | (place.At(1) & 0x3f);
  }
  unit = unit << 6 | (place.At(first < 0xe0 ? 1 : 2) & 0x3f);
  return (keys.At(unit) & kJoins) == 0;
}

/// Bytes before the first that differs in two words; all of them if none does.
template <class Word>
[[gnu::always_inline]] inline std::size_t SameBytes(const char* place1, const char* place2) {
  Word word1, word2;
  std::memcpy(&word1, place1, sizeof word1);
  std::memcpy(&word2, place2, sizeof word2);
  const Word differing = word1 ^ word2;
  if (differing == 0) return sizeof(Word);
  if constexpr (std::endian::native == std::endian::little) {
    return static_cast<std::size_t>(std::countr_zero(differing)) / 8;
  } else {
    return static_cast<std::size_t>(std::countl_zero(differing)) / 8;
  }
}

/// Bytes that two places share, at most `size`; those of a word at the end are looked at with some
/// that were before.
template <class Word>
[[gnu::always_inline]] inline std::size_t SharedInWords(const char* place1, const char* place2,
                                                        std::size_t size) {
  constexpr std::size_t kWord = sizeof(Word);
  std::size_t at = 0;
  for (; at + kWord <= size; at += kWord) {
    const std::size_t same = SameBytes<Word>(place1 + at, place2 + at);
    if (same != kWord) return at + same;
  }
  return at == size ? size
                    : size - kWord + SameBytes<Word>(place1 + size - kWord, place2 + size - kWord);
}
[[gnu::always_inline]] inline std::size_t SharedBytes(const char* place1, const char* place2,
                                                      std::size_t size) {
  if (size >= 8) return SharedInWords<std::uint64_t>(place1, place2, size);
  if (size >= 4) return SharedInWords<std::uint32_t>(place1, place2, size);
  std::size_t at = 0;
  while (at < size && place1[at] == place2[at]) ++at;
  return at;
}

/// Passes over what both share, up to a character in which they differ. @return bytes.
[[gnu::always_inline]] inline std::size_t PassShared(Utf8Place one, Utf8Place two) {
  const std::size_t size = std::min(one.Left(), two.Left());
  std::size_t at = SharedBytes(one.place, two.place, size);
  if (at < size) {
    while (at != 0 && IsContinuation(one.At(at))) --at;
  }
  return at;
}

/// Where one text or both go on with symbols, or one ends: how what is behind them sorts.
/// @param joined whether there are characters before the places. @return a sign, or kUndecided.
int SignBehindSymbols(WideKeys keys, Utf8Place one, Utf8Place two, bool joined);

/// Passes over characters of one byte or two that are alike but for case, once no difference of
/// case counts any more. @return bytes.
std::size_t PassAlike(Utf8Place one, Utf8Place two);

/// How two texts sort that begin with letters of different rank in ASCII; 0 for all others.
/// @param size1,size2 not 0.
[[gnu::always_inline]] inline int SignOfFirstByte(WideKeys keys, const char* text1,
                                                  std::size_t size1, const char* text2,
                                                  std::size_t size2) {
  const auto byte = [](const char* place) { return static_cast<unsigned char>(*place); };
  const unsigned byte1 = byte(text1);
  const unsigned byte2 = byte(text2);
  if (byte1 == byte2 || (byte1 | byte2) >= 0x80) return 0;
  const std::uint32_t key1 = keys.keys->First()[byte1];
  const std::uint32_t key2 = keys.keys->First()[byte2];
  if (((key1 ^ key2) & 0xffffff00) == 0 || ((key1 | key2) & kLook) != 0) return 0;
  if (size1 > 1 && byte(text1 + 1) >= kFirstMarkByte) return 0;
  if (size2 > 1 && byte(text2 + 1) >= kFirstMarkByte) return 0;
  return key1 < key2 ? -1 : 1;
}

/// The letter that a text begins with.
struct FirstLetter {
  static constexpr std::size_t kReadable = 6;  ///< Bytes that hold it and what is behind it.

  unsigned unit;
  const char* next;

  [[gnu::always_inline]] static FirstLetter Of(const char* text) {
    const auto byte = [text](int at) -> unsigned { return static_cast<unsigned char>(text[at]); };
    const unsigned first = byte(0);
    if (first < 0x80) return {first, text + 1};
    const unsigned second = byte(1) ^ 0x80;
    if (first < 0xe0) {
      const bool isGood = first >= 0xc2 && second < 0x40;
      return {isGood ? (first & 0x1f) << 6 | second : 0, text + 2};
    }
    const unsigned third = byte(2) ^ 0x80;
    const unsigned unit = (first & 0xf) << 12 | (second & 0x3f) << 6 | (third & 0x3f);
    const bool isGood = first < 0xf0 && (second | third) < 0x40 && unit >= 0x800;
    return {isGood && (unit & 0xf800) != 0xd800 ? unit : 0, text + 3};
  }
  /// Whether what is behind it can't be part of it.
  [[gnu::always_inline]] bool EndsHere(WideKeys keys) const {
    return BeginsAnew(keys, {next, next + kReadable / 2});
  }
};

/// How two texts sort that begin with letters of different rank in any script; 0 for all others.
/// @param text1,text2 of FirstLetter::kReadable bytes at least.
[[gnu::always_inline]] inline int SignOfFirstLetter(WideKeys keys, const char* text1,
                                                    const char* text2) {
  const FirstLetter one = FirstLetter::Of(text1);
  const FirstLetter two = FirstLetter::Of(text2);
  const std::uint32_t key1 = keys.At(one.unit);
  const std::uint32_t key2 = keys.At(two.unit);
  if (((key1 ^ key2) & 0xffffff00) == 0 || ((key1 | key2) & kLook) != 0) return 0;
  if (!one.EndsHere(keys) || !two.EndsHere(keys)) return 0;
  return key1 < key2 ? -1 : 1;
}

/// Compares two texts up to where they are decided. @return a sign, or kUndecided where that takes
/// a closer look, for which both have to be made units of. So it is for bytes that aren't UTF-8 or
/// are zero, if they are met at all.
[[gnu::always_inline]] inline int CompareUtf8(WideKeys keys, std::string_view text1,
                                              std::string_view text2, unsigned short cmpOp) {
  Utf8Place one{text1.data(), text1.data() + text1.size()};
  Utf8Place two{text2.data(), text2.data() + text2.size()};
  int accent = 0;
  int case_ = 0;
  for (;;) {
    const std::size_t shared = PassShared(one, two);
    one.place += shared;
    two.place += shared;
    std::size_t length1, length2;
    const unsigned unit1 = one.Unit(length1);
    const unsigned unit2 = two.Unit(length2);
    if ((unit1 | unit2) == 0) break;
    if (((unit1 | unit2) & kNoUnit) != 0) return kUndecided;
    const std::uint32_t key1 = keys.At(unit1);
    const std::uint32_t key2 = keys.At(unit2);
    const Utf8Place next1{one.place + length1, one.end};
    const Utf8Place next2{two.place + length2, two.end};
    if (((key1 | key2) & kLook) != 0) {
      if (unit1 == 0 && (key2 & kLook) == 0 && BeginsAnew(keys, next2)) return -1;
      if (unit2 == 0 && (key1 & kLook) == 0 && BeginsAnew(keys, next1)) return 1;
      return SignBehindSymbols(keys, one, two, one.place != text1.data());
    }
    if (!BeginsAnew(keys, next1) || !BeginsAnew(keys, next2)) return kUndecided;
    if (((key1 ^ key2) & 0xffffff00) != 0) return key1 < key2 ? -1 : 1;
    one = next1;
    two = next2;
    const int accents = static_cast<int>(key1 & 0x1f) - static_cast<int>(key2 & 0x1f);
    if (accents != 0) accent = accents;
    if (case_ == 0) {
      case_ = static_cast<int>(key2 & 0x60) - static_cast<int>(key1 & 0x60);
    } else if (!keys.keys->Tailors()) {
      const std::size_t alike = PassAlike(one, two);
      one.place += alike;
      two.place += alike;
    }
  }
  return static_cast<int>(SignOfMarks(accent, case_, 0, cmpOp));
}

}  // namespace ot95

#endif
