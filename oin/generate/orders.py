"""Gives every character its order words and script byte, before any language has its say."""

from collections import namedtuple

import alphabets
from alphabets import EAST_ASIA, LATIN, OTHER, Alphabet, letter_word

# What a character sorts as: script byte, 0 for that of the language, and one or two words.
class Order(namedtuple('Order', 'script words')):
    def cased(self, field):
        """The same letters in another case."""
        return Order(self.script, tuple(word & ~CASE | field << 12 for word in self.words))


CASE = 0x3000       # The case field of a letter's word.

SHARED_SPACE = 0x0d  # Of all controls and format characters that leave no trace in a text.
SYMBOL, DIGIT, DIGIT_END = 0x50, 0x3f00, 0x3fff
FIRST_FREE_SYMBOL = 0x100
FIRST_VARIANT = 0x148   # Eight marks that no character has, for letters whose words have no accent.
# Characters that take more than two words, and how many they may take.
LONG, LONGEST = [(0x1023, 0x102a), (0x104c, 0x104f), (0x17a3, 0x17b3), (0xfb03, 0xfb04)], 5


def most_words(string):
    """How many words a string of characters may take; the room for keys is reckoned by it."""
    return sum(LONGEST if any(first <= code <= last for first, last in LONG) else 2
               for code in string)


# Symbol numbers that people see when an index key is printed.
SYMBOLS = {
    '_': 0x20, '\u00af': 0x22, '\u00ad': 0x23, '-': 0x24, ',': 0x25, ';': 0x26, ':': 0x27,
    '!': 0x28, '¡': 0x29, '?': 0x2a, '/': 0x2c, '.': 0x2e, '‥': 0x2f, '…': 0x30, '·': 0x31,
    '¸': 0x32, "'": 0x34, '‘': 0x35, '’': 0x36, '"': 0x37, '“': 0x38, '”': 0x39, '«': 0x3a,
    '»': 0x3b, '(': 0x3c, ')': 0x3e, '[': 0x40, ']': 0x41, '{': 0x42, '}': 0x43, '§': 0x44,
    '¶': 0x45, '©': 0x46, '®': 0x47, '@': 0x49, '¤': 0x4a, '¢': 0x4b, '$': 0x4c, '£': 0x4d,
    '¥': 0x4e, '*': 0x4f, '\\': 0x50, '&': 0x51, '#': 0x52, '%': 0x53, '‰': 0x54, '+': 0x55,
    '±': 0x57, '´': 0x58, '`': 0x59, '^': 0x5b, '¨': 0x5e, '~': 0x60, '÷': 0x62, '×': 0x63,
    '<': 0x65, '≤': 0x66, '=': 0x67, '≠': 0x68, '>': 0x69, '¬': 0x6a, '|': 0x6b, '¦': 0x6c,
    '°': 0x6d, 'µ': 0x6e, '¿': 0x8b}
DIGIT_FORMS = {'super': 1, 'sub': 3, 'circle': 5, 'compat': 7}
ROMAN = set(range(0x2160, 0x216c)) | set(range(0x2170, 0x217c))
LIGATURES = {0xfb00: 'ff', 0xfb01: 'fi', 0xfb02: 'fl', 0xfb03: 'ffi', 0xfb04: 'ffl',
             0xfb05: 'st', 0xfb06: 'st'}
NEGATIVE_CIRCLED = set(range(0x2776, 0x2780)) | set(range(0x24eb, 0x2500))

# Tertiary weights of the default table.
PLAIN, CAPITAL = 2, 8
CAPITAL_VARIANTS = {0x9, 0xa, 0xb, 0xc, 0x1d}
KANA_CASES = {0xd: 3, 0xe: 2, 0xf: 1, 0x10: 1, 0x11: 0, 0x12: 0, 0x13: 0}

HANGUL, HANGUL_BLOCK, FURTHER_JAMO, HAN_ORDER = 0x8000, 589, 0xabb7, 0xad80
COMPATIBILITY_HAN = 0xff80


def digit_words(value, form):
    word = DIGIT + 10 * value + form
    if value <= 25 and word <= DIGIT_END:
        return (word,)
    return digit_words(value // 10, form) + digit_words(value % 10, form)


class Groups:
    """Collation elements taken together: each primary with the secondaries behind it."""

    def __init__(self, elements):
        self.items = []     # (primary, secondary weights, tertiary)
        for element in elements:
            if element.primary:
                self.items.append((element.primary, (), element.tertiary))
            elif self.items and element.secondary:
                primary, weights, tertiary = self.items[-1]
                self.items[-1] = (primary, weights + (element.secondary,), tertiary)


class Orders:
    """The order of every character, in `of`; letters of alphabets by way of `alphabets`."""

    def __init__(self, database, gaps):
        self.db = database
        self.of = {}
        self.groups = {c[0]: Groups(e) for c, e in database.elements.items() if len(c) == 1}
        self.first_letter = self.groups[ord('a')].items[0][0]
        self.zero = self.groups[ord('0')].items[0][0]
        self.owners = self._owners()
        self.alphabets = self._alphabets(gaps)
        self._spaces()
        self._fixed_symbols()
        self._classify()
        self._number_symbols()
        self._number_others()
        self._pairs()
        self._aliases()
        self._multiple_words()
        self._fold()
        self._ligatures()

    def primary_of(self, letter):
        return self.groups[ord(letter)].items[0][0]

    def entity(self, code):
        return self.groups[code].items[0][:2]

    # Alphabets.

    def _owners(self):
        """Alphabet of each letter primary: that of a character which has it alone. Common
        characters among letters belong to the alphabet around them."""
        found = {}
        for code, groups in self.groups.items():
            if code in self.db.chars and len(groups.items) == 1 and not groups.items[0][1]:
                primary, _, tertiary = groups.items[0]
                if primary >= self.first_letter:
                    name = self.db.scripts.get(code, 'Common')
                    rank = (name in ('Common', 'Inherited'), tertiary, code)
                    found[primary] = min(found.get(primary, (rank, name)), (rank, name))
        owners, last = {}, 'Latin'
        for primary in sorted(found):
            name = found[primary][1]
            last = last if name in ('Common', 'Inherited') else name
            owners[primary] = (alphabets.SCRIPTS.get(last, OTHER), last)
        return owners

    def _alphabets(self, gaps):
        members, named = {}, {'Hangul', 'Han'}
        for primary, (number, name) in self.owners.items():
            if number != OTHER and name not in named:
                members.setdefault(number, []).append(primary)
        in_use = {self.entity(c) for c in self.db.living
                  if c in self.groups and self.groups[c].items}
        living = {primary for primary, _ in in_use}
        gap_of = {self.primary_of(letter): count for letter, count in gaps.items()}
        result = {}
        for number, primaries in members.items():
            own_gaps = {p: count for p, count in gap_of.items() if p in set(primaries)}
            result[number] = Alphabet(number, sorted(primaries), living, own_gaps)
        result[LATIN].place_latin(living, self.primary_of)
        names = {}
        for mark, number in alphabets.NAMED_MARKS.items():
            names[self.db.elements[(mark,)][0].secondary] = number
        names[alphabets.FORM_WEIGHT] = alphabets.FORM
        for number, alphabet in result.items():
            entities = {item[:2] for c, groups in self.groups.items() if c in self.db.chars
                        and self._is_spelled(c, groups) for item in groups.items
                        if item[0] in alphabet.slots}
            entities |= {(primary, ()) for primary in alphabet.primaries}
            alphabet.number_accents(sorted(entities), names, in_use)
        thorn = self.primary_of('þ')   # Numbered, so that a printed key finds its byte.
        result[LATIN].accents[(thorn, ())] = alphabets.FORM
        return result

    def _is_spelled(self, code, groups):
        """Whether the character is written with words of letters, one or two."""
        return (0 < len(groups.items) <= 2 and code not in self.db.spaces
                and chr(code) not in SYMBOLS and self._digit(code) is None)

    # The classes.

    def weighs_nothing(self, code):
        """Whether a walk passes over the character: it only tells how others are to be drawn."""
        char = self.db.chars[code]
        return code in self.db.ignorable and char.category[0] in 'CM' and \
            (self.of[code].words == (SHARED_SPACE,) or chr(code) in SYMBOLS)

    def _spaces(self):
        self.of[0] = Order(0, (0,))
        word = 0
        for code in (c for c in self.db.spaces if c in self.db.chars):
            word += 2 if word + 1 == SHARED_SPACE else 1
            self.of[code] = Order(0, (word,))
        for code in self.db.spaces:     # The quads are other encodings of the en and em spaces.
            if code in self.db.chars and not self.db.chars[code].tag:
                for target in self.db.chars[code].decomposition:
                    self.of[code] = self.of[target]
        for code, char in self.db.chars.items():
            silent = not any(any(e) for e in self.db.elements.get((code,), ((1,),)))
            invisible = (char.category in ('Cc', 'Cf') or code == 0x34f
                         or 0x180b <= code <= 0x180f or 0xfe00 <= code <= 0xfe0f
                         or char.category == 'Lo')
            if code not in self.of and silent and invisible and chr(code) not in SYMBOLS:
                self.of[code] = Order(0, (SHARED_SPACE,))

    def _fixed_symbols(self):
        for symbol, number in SYMBOLS.items():
            self.of[ord(symbol)] = Order(0, (SYMBOL + number,))

    def _classify(self):
        """Digits, letters, Hangul and Han get their words; what is left waits for a number."""
        self.symbols, self.others, self.later = [], [], []
        self._hangul_and_han()
        for code in sorted(self.db.chars):
            if code in self.of:
                continue
            target = self.db.singleton(code)
            if target is not None and target in self.db.chars:
                self.later.append(code)
                continue
            words = self._digit(code)
            if words is not None:
                self.of[code] = Order(0, words)
            else:
                self._letter_or_symbol(code)

    def _digit(self, code):
        char = self.db.chars[code]
        groups = self.groups.get(code)
        if not char.numeric or not groups or not groups.items:
            return None
        if char.tag == 'fraction':
            over, _, under = char.numeric.partition('/')
            if not under:       # A numerator that waits for its denominator.
                return digit_words(int(over), 1)
            return digit_words(int(over), 1) + digit_words(int(under), 3)
        if '/' in char.numeric or int(char.numeric) > 99:
            return None
        if code in ROMAN:
            return digit_words(int(char.numeric), 9)
        if not self.zero <= max(item[0] for item in groups.items) < self.first_letter:
            return None
        if char.category == 'Nd':
            return digit_words(int(char.numeric), 0)
        form = 5 if code in NEGATIVE_CIRCLED else DIGIT_FORMS.get(char.tag, 9)
        return digit_words(int(char.numeric), form)

    def _hangul_and_han(self):
        for index in range(19 * 588):
            lead, rest = divmod(index, 588)
            self.of[0xac00 + index] = Order(EAST_ASIA, (HANGUL + HANGUL_BLOCK * lead + 1 + rest,))
        self.jamo = {}
        for lead in range(19):
            self.jamo[self.groups[0x1100 + lead].items[0][0]] = HANGUL + HANGUL_BLOCK * lead
        rest = sorted(p for p, (_, name) in self.owners.items()
                      if name == 'Hangul' and p not in self.jamo)
        self.jamo.update({primary: FURTHER_JAMO + i for i, primary in enumerate(rest)})
        assert FURTHER_JAMO + len(rest) <= HAN_ORDER
        for code in range(0x4e00, 0xa000):
            self.of[code] = Order(EAST_ASIA, (code + 0x5f80,))
        for code in range(0x3400, 0x4dc0):
            self.of[code] = Order(OTHER, (code + 0x4c00,))
        word = COMPATIBILITY_HAN
        for code in range(0xf900, 0xfb00):
            if code in self.db.chars and self.db.singleton(code) not in self.of:
                self.of[code] = Order(EAST_ASIA, (word,))
                word += 1
        assert word <= 0xfff0

    @staticmethod
    def _single_han(elements):
        if len(elements) == 2 and 0xfb40 <= elements[0].primary <= 0xfb41:
            return (elements[0].primary - 0xfb40) << 15 | elements[1].primary & 0x7fff
        return None

    def _letter_or_symbol(self, code):
        char, groups = self.db.chars[code], self.groups.get(code)
        elements = self.db.elements.get((code,), ())
        is_letter = char.category[0] == 'L'
        enclosed = char.tag in ('circle', 'square') or 0x3200 <= code <= 0x33ff
        han = self._single_han(elements)
        if han in self.of and not enclosed and char.category != 'No':
            self.of[code] = self.of[han]
            return
        if 0x249c <= code <= 0x24b5:    # A letter in parentheses: a variant of the letter.
            primary, weights, tertiary = groups.items[1]
            self.of[code] = self._spell([(primary, weights, tertiary)], code)
            return
        spelled = None
        if groups is not None and han is None and char.category != 'Sc' \
                and not (enclosed and char.category != 'So'):
            spelled = self._spell(groups.items, code)
        if spelled is not None and (is_letter or not 0x3200 <= code <= 0x33ff):
            self.of[code] = spelled
        elif groups is not None and groups.items and groups.items[0][0] >= self.first_letter \
                and char.category not in ('So', 'No', 'Sc', 'Sk', 'Sm', 'Po'):
            self.others.append(code)
        elif is_letter and char.tag == 'compat' and len(char.decomposition) == 2 \
                and code not in self.db.pairs:
            self.later.append(code)
        elif is_letter and groups.items and groups.items[0][0] >= self.first_letter:
            self.others.append(code)
        else:
            self.symbols.append(code)

    def _spell(self, items, code):
        """One or two words for letters of one alphabet; None if that can't be."""
        if not 0 < len(items) <= 2 or items[0][0] not in self.owners:
            return None
        number, words = self.owners[items[0][0]][0], []
        form = any(alphabets.FORM_WEIGHT in weights for _, weights, _ in items)
        for primary, weights, tertiary in items:
            if self.owners.get(primary, (None,))[0] != number:
                return None
            if primary in self.jamo:
                words.append(self.jamo[primary])
                continue
            alphabet = self.alphabets.get(number)
            if alphabet is None or primary not in alphabet.slots:
                return None
            accent = alphabet.accents.get((primary, weights))
            if accent is None:
                self.later.append(code)
                return Order(0, ())
            words.append(letter_word(self._case(number, form, tertiary), accent,
                                     alphabet.slots[primary]))
        return Order(number, tuple(words))

    @staticmethod
    def _case(number, form, tertiary):
        if number == EAST_ASIA and tertiary in KANA_CASES:
            return KANA_CASES[tertiary]
        if tertiary == CAPITAL or tertiary in CAPITAL_VARIANTS:
            return 0 if tertiary == CAPITAL or form else 1
        return 3 if tertiary == PLAIN or form else 2

    def _sort_key(self, code):
        elements = self.db.elements.get((code,), ())
        return ([e.primary for e in elements if e.primary],
                [e.secondary for e in elements if e.secondary],
                [e.tertiary for e in elements if e.tertiary], code)

    def _number_symbols(self):
        number = FIRST_FREE_SYMBOL
        for code in sorted(self.symbols, key=self._sort_key):
            script = alphabets.SCRIPTS.get(self.db.scripts.get(code), 0)
            self.of[code] = Order(script, (SYMBOL + number,))
            number += 1
        assert SYMBOL + number <= DIGIT

    def _pairs(self):
        """Symbols beyond the first plane are numbered behind the others. Their halves have records,
        so that they can contract; these sort as halves without any do, by their value."""
        self.pairs, number = {}, FIRST_FREE_SYMBOL + len(self.symbols)
        for code in sorted(self.db.pair_symbols, key=self._sort_key):
            lead, trail = 0xd7c0 + (code >> 10), 0xdc00 + (code & 0x3ff)
            self.pairs.setdefault(lead, {})[trail] = Order(0, (SYMBOL + number,))
            self.of[lead] = Order(OTHER, (lead,))
            number += 1
        for trail in {trail for trails in self.pairs.values() for trail in trails}:
            self.of[trail] = Order(OTHER, (trail,))
        assert SYMBOL + number <= DIGIT

    def _number_others(self):
        for rank, code in enumerate(sorted(self.others, key=self._sort_key)):
            self.of[code] = Order(OTHER, (0x4000 + rank,))
        assert len(self.others) < 0x4000

    def _aliases(self):
        """Other encodings and widths of a character equal it."""
        for code in sorted(self.later):
            target = self.db.singleton(code)
            if target is not None:
                self.of[code] = self.of[target]

    def _fold(self):
        """Letters that the default table keeps apart from their other case. The words of other
        alphabets have no case: there both cases are one."""
        for code, small in self.db.folded.items():
            char = self.db.chars.get(code)
            if char is None or char.combining or chr(code) in SYMBOLS:
                continue
            target = self.of[small]
            if target.script == OTHER:
                self.of[code] = target
            elif [w & ~CASE for w in self.of[code].words] != [w & ~CASE for w in target.words]:
                self.of[code] = target.cased(0 if char.category == 'Lu' else 2)

    def _ligatures(self):
        """The ligatures of f and s are their letters."""
        for code, letters in LIGATURES.items():
            words = tuple(self.of[ord(letter)].words[0] for letter in letters)
            self.of[code] = Order(LATIN, words)

    def _multiple_words(self):
        """Letters that found no accent number: the letter and the mark as a symbol."""
        self.unnumbered = [c for c in sorted(self.later) if self.db.singleton(c) is None]
        for code in self.unnumbered:
            base, mark = self.db.chars[code].decomposition
            order = Order(self.of[base].script, self.of[base].words + self.of[mark].words)
            assert len(order.words) == 2, hex(code)
            self.of[code] = order
