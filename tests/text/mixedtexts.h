#ifndef OT95_TESTS_TEXT_MIXEDTEXTS_H
#define OT95_TESTS_TEXT_MIXEDTEXTS_H

// Random texts that mix all kinds of characters, and others like them.

#include <random>
#include <string>

/// Characters of every kind: letters that head and follow contractions in Czech, Hungarian and
/// Spanish, accents composed and not, expansions, digits, symbols, several alphabets, prefixed
/// vowels, ideographs, characters without a record.
inline const std::u16string kCharacters =
    u"aAbBcCdDhHlLnNsSyYzZeEoOuU\u00e9\u00c9\u00e8\u00f6\u00df\u00e6\u0153\u010d\u0161\u0151"
    u"\u0301\u0302\u0323 -+.'\u00a0\u2014"
    u"019\u00b2\u2460\u1ea1\u1ea0\u1eaf\u0110\u03b1\u0391\u03ac\u0431\u0411\u0451"
    u"\u0e40\u0e01\u0e02\u0e32\u05d0\u0627\uac00\ud55c\u4e00\u9fa5\u3042\u30a2\ufff0\uffff\ue000"
    u"\xd83d\xde00\xd840\xdc0b\u0301\u0316\u0315\u0345\u0344\u0340\u1e0a\u1fb3\u0483\u05b0\u05bc"
    u"\u200d\u00ad";

/// With the other byte of each unit first.
inline std::u16string Turned(std::u16string text) {
  for (char16_t& unit : text) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  return text;
}

class MixedTexts {
 public:
  std::u16string Text(std::size_t maxLength) {
    std::u16string text;
    for (std::size_t n = random_() % (maxLength + 1); n != 0; --n) text += Character();
    return text;
  }
  /// Changes a few places, so that equal stretches remain.
  std::u16string Like(std::u16string text) {
    for (std::size_t n = random_() % 3 + 1; n != 0; --n) {
      const std::size_t at = random_() % (text.size() + 1);
      switch (random_() % 4) {
        case 0:
          text.insert(at, 1, Character());
          break;
        case 1:
          text.erase(at, 1);
          break;
        default:
          if (at < text.size()) text[at] = Character();
      }
    }
    return text;
  }
  /// Writes some letters in the other case.
  std::u16string Recased(std::u16string text) {
    const std::u16string others = u"\u00e9\u00c9\u00e8\u00f6\u03b1\u0391\u0431\u0411";
    for (char16_t& unit : text) {
      const bool ascii = static_cast<unsigned>((unit | 0x20) - u'a') < 26;
      if ((ascii || others.find(unit) != others.npos) && random_() % 2 == 0) unit ^= 0x20;
    }
    return text;
  }
  /// Puts wildcards in the place of some characters, or of several.
  std::u16string Pattern(std::u16string text) {
    for (std::size_t n = random_() % 3 + 1; n != 0; --n) {
      const std::size_t at = random_() % (text.size() + 1);
      if (random_() % 3 == 0) {
        text.replace(at, 1, 1, u'?');
      } else {
        text.replace(at, random_() % 6, 1, u'*');
      }
    }
    return text;
  }
  unsigned Number() { return static_cast<unsigned>(random_()); }

 private:
  char16_t Character() {
    // Mostly the letters in front, so that contractions happen.
    const std::size_t few = random_() % 2 == 0 ? 24 : kCharacters.size();
    return kCharacters[random_() % few];
  }
  std::mt19937 random_{20240229};
};

#endif
