"""Reads the character database, the default collation table and the letters in living use."""

import os
import re
import unicodedata
from collections import namedtuple

Char = namedtuple('Char', 'category combining numeric tag decomposition upper lower')
# One collation element: primary, secondary and tertiary weight.
Element = namedtuple('Element', 'primary secondary tertiary')

LIMIT = 0xfff0  # Characters from here up have no record.


def rows(path):
    """The fields of a file that separates them by semicolons, comments dropped."""
    with open(path, encoding='utf-8') as lines:
        for line in lines:
            line = line.split('#', 1)[0].strip()
            if line and not line.startswith('@'):
                yield [field.strip() for field in line.split(';')]


def code_range(text):
    first, _, last = text.partition('..')
    return range(int(first, 16), int(last or first, 16) + 1)


def simple(field):
    code = int(field, 16) if field else 0
    return code if code < 0x10000 else 0


def read_pair_symbols(path):
    """Symbols beyond the first plane: emoji and their like."""
    return [int(field[0], 16) for field in rows(path)
            if len(field[0]) > 4 and field[2][0] == 'S']


def read_characters(path):
    chars, start = {}, None
    for field in rows(path):
        code = int(field[0], 16)
        if code >= 0x10000:
            break
        tag, _, mapping = field[5].rpartition('> ')
        char = Char(field[2], int(field[3]), field[8], tag.lstrip('<'),
                    tuple(int(part, 16) for part in mapping.split()),
                    simple(field[12]), simple(field[13]))
        if field[1].endswith(', First>'):
            start = code
        elif field[1].endswith(', Last>'):
            for inner in range(start, code + 1):
                chars[inner] = char
        else:
            chars[code] = char
    return {code: char for code, char in chars.items()
            if code < LIMIT and char.category not in ('Cs', 'Co', 'Cn')}


def read_property(path):
    """Value of each character in a file of ranges."""
    values = {}
    for field in rows(path):
        for code in code_range(field[0]):
            values.setdefault(code, []).append(field[1])
    return values


def read_elements(path):
    """String of characters to its collation elements."""
    pattern = re.compile(r'\[[.*]([0-9A-F]{4,})\.([0-9A-F]{4})\.([0-9A-F]{4})\]')
    table = {}
    for field in rows(path):
        if len(field) == 2:
            key = tuple(int(part, 16) for part in field[0].split())
            if max(key) < 0x10000 or len(key) == 1:
                table[key] = tuple(Element(*(int(part, 16) for part in match))
                                   for match in pattern.findall(field[1]))
    return table


IOTA_BELOW = 0x345


def read_special_capitals(path):
    """Capitals of more than one character. An iota below stays below, as it does in the letters
    that have a capital with one."""
    capitals = {}
    for field in rows(path):
        if len(field) < 6 or not field[4]:
            title, upper = ([int(part, 16) for part in field[i].split()] for i in (2, 3))
            capitals[int(field[0], 16)] = tuple(title if IOTA_BELOW in title else upper)
    return capitals


def read_living(folder):
    """Characters that some living language's alphabet lists, in both cases, decomposed too."""
    living = set()
    pattern = re.compile(r'<exemplarCharacters>\[(.*?)\]</exemplarCharacters>', re.S)
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), encoding='utf-8') as file:
            match = pattern.search(file.read(400000))
        if match:
            text = re.sub(r'\\u([0-9A-F]{4})', lambda m: chr(int(m[1], 16)), match[1])
            for first, last in re.findall(r'(\S)-(\S)', text):
                living.update(chr(code) for code in range(ord(first), ord(last) + 1))
            living.update(text.replace('{', '').replace('}', ''))
    for char in list(living):
        living.update(char.upper() + char.lower() + unicodedata.normalize('NFD', char))
    return {ord(char) for char in living if len(char) == 1}


class Database:
    """All that is read; nothing is derived here but pairs of canonical decompositions."""

    def __init__(self, unicode_dir, cldr_dir):
        def at(name):
            return os.path.join(unicode_dir, name)
        self.chars = read_characters(at('UnicodeData.txt'))
        self.pair_symbols = read_pair_symbols(at('UnicodeData.txt'))
        self.scripts = {code: names[0] for code, names in read_property(at('Scripts.txt')).items()}
        properties = read_property(at('PropList.txt'))
        self.spaces = sorted(c for c, names in properties.items() if 'White_Space' in names)
        self.prefixed = {c for c, names in properties.items()
                         if 'Logical_Order_Exception' in names}
        core = read_property(at('DerivedCoreProperties.txt'))
        self.ignorable = {c for c, names in core.items() if 'Default_Ignorable_Code_Point' in names}
        self.elements = read_elements(at('allkeys.txt'))
        self.cldr = cldr_dir
        self.living = read_living(os.path.join(cldr_dir, 'main'))
        self.special_upper = read_special_capitals(at('SpecialCasing.txt'))
        self.folded = {int(field[0], 16): int(field[2], 16)
                       for field in rows(at('CaseFolding.txt')) if field[1] in 'CS'}
        self.pairs = {c: char.decomposition for c, char in self.chars.items()
                      if not char.tag and len(char.decomposition) == 2}
        self.pairs.update(hangul_pairs())
        self.composed = {pair: c for c, pair in self.pairs.items()}
        self.classes = {c: char.combining for c, char in self.chars.items() if char.combining}
        self.marked = self._marked()

    def _marked(self):
        """Characters that end in combining marks when they are taken apart: each with the
        character before the last mark, and that mark; 0 for one that is another's encoding."""
        rows = {c: pair for c, pair in self.pairs.items() if pair[1] in self.classes}
        for code, char in self.chars.items():
            if not char.tag and len(char.decomposition) == 1:
                target = char.decomposition[0]
                if target in rows or target in self.classes:
                    rows[code] = (target, 0)
        return rows

    def singleton(self, code):
        """The character that this one is only another encoding or another width of, or None."""
        char = self.chars.get(code)
        if char and len(char.decomposition) == 1 and char.tag in ('', 'wide', 'narrow'):
            return char.decomposition[0]
        return None


def hangul_pairs():
    pairs = {}
    for index in range(19 * 21 * 28):
        lead_vowel, tail = divmod(index, 28)
        if tail:
            pairs[0xac00 + index] = (0xac00 + lead_vowel * 28, 0x11a7 + tail)
        else:
            pairs[0xac00 + index] = (0x1100 + lead_vowel // 21, 0x1161 + lead_vowel % 21)
    return pairs
