"""Japanese marks that stand for the kana before them: the long vowel mark for its vowel, the
iteration marks for the kana itself."""

import unicodedata

LONG, SMALL_LONG = 0x30fc, 0xff70
# Iteration marks: those of a plain kana, and those of a voiced one.
PLAIN, VOICED = (0x309d, 0x30fd), (0x309e, 0x30fe)
VOICING = 0x3099
KANA = [*range(0x3041, 0x3097), *range(0x30a1, 0x30fb), *range(0x31f0, 0x3200)]
VOWELS = {'HIRAGANA': dict(zip('AIUEO', 'あいうえお')),
          'KATAKANA': dict(zip('AIUEO', 'アイウエオ'))}


def repeated(database):
    """Pairs of a kana and a mark behind it, with the kana that the mark stands for."""
    for code in KANA:
        name = unicodedata.name(chr(code))
        vowel = VOWELS[name.split()[0]].get(name[-1])
        if vowel and ' N' != name[-2:]:
            yield (code, LONG), ord(vowel)
            yield (code, SMALL_LONG), ord(vowel)
        plain, mark = database.pairs.get(code, (code, None))
        plain = plain if mark == VOICING else code
        voiced = database.composed.get((plain, VOICING))
        for sign in PLAIN:
            yield (code, sign), plain
        for sign in VOICED:
            if voiced:
                yield (code, sign), voiced
