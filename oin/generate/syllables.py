"""Alphabets that share the byte beyond all alphabets, laid out for the language that writes them by
the rules of CLDR: Burmese and Khmer.

There every letter is its rank and nothing else, and symbols don't count last. In its own language
such an alphabet has a script byte of another one, behind whose letters its words stand: those of the
class of ideographs, which no other alphabet uses. They have neither accent nor case; what the rules
tell apart by these is a mark behind the word.
"""

import unicodedata

import rules
from alphabets import OTHER
from orders import FIRST_VARIANT, Order, most_words

BLOCKS = {'my': range(0x1000, 0x10a0), 'km': range(0x1780, 0x1800)}
FIRST_WORD = 0x8000
# Marks that no character has: those of variants in one place, those of letters that sort as others.
VARIANTS, SPELLINGS = 5, 3


def in_order(token):
    """The token with its marks in canonical order, but composed letters as they are."""
    kind, text = token
    ordered = unicodedata.normalize('NFD', text)
    return kind, ordered if sorted(ordered) == sorted(text) else text


class Syllables:
    def __init__(self, database, orders, common, script, tag, tokens):
        self.script = script
        codes = [code for code in BLOCKS[tag] if self._is_letter(orders, common, code)]
        letters = rules.Letters(rules.items((orders.groups[code].items[0] + (code,))
                                            for code in codes))
        spelled = rules.apply(map(in_order, tokens), letters)
        for string in spelled:
            letters.drop(string)
        self.words = {}
        for rank, group in enumerate(letters.groups()):
            self._place(FIRST_WORD + rank, group, letters.level)
        counts = {}
        for string, (anchor, level) in spelled.items():
            words = self._parse(anchor)
            if level != rules.IDENTICAL:
                number = counts[anchor] = counts.get(anchor, -1) + 1
                assert number < SPELLINGS, string
                words = words[:1] + (FIRST_VARIANT + VARIANTS + number,) + words[1:]
            self.words[string] = self._shortened(words, string)

    @staticmethod
    def _is_letter(orders, common, code):
        return code in orders.of and orders.of[code].script == OTHER \
            and len(orders.groups[code].items) == 1 and common.original(code) == code

    def _place(self, word, group, level):
        """One word for the letters of a rank, and marks that tell them apart."""
        number = -1
        for string in (string for variants in group for string in variants):
            number += level[string] != rules.IDENTICAL
            assert number <= VARIANTS, string
            self.words[string] = (word,) + ((FIRST_VARIANT + number - 1,) if number else ())

    def _parse(self, string):
        """The words of letters, as many as possible taken together each time."""
        words = ()
        while string:
            length = next(n for n in range(len(string), 0, -1) if string[:n] in self.words)
            words, string = words + self.words[string[:length]], string[length:]
        return words

    @staticmethod
    def _shortened(words, string):
        """Without the last variants where there is no room for them."""
        words = list(words)
        while len(words) > most_words(string):
            last = max(i for i, word in enumerate(words[2:], 2) if word < FIRST_WORD)
            del words[last]
        return tuple(words)

    def orders_of_characters(self):
        return ((string[0], Order(self.script, words)) for string, words in self.words.items()
                if len(string) == 1)

    def orders_of_strings(self):
        return ((string, Order(self.script, words)) for string, words in self.words.items()
                if len(string) > 1)
