"""Places of letters: which alphabet a letter belongs to, its slot there, its accent numbers.

A slot is the low seven bits of a letter's word: letter number times four plus extension.
"""

SCRIPTS = {'Latin': 1, 'Greek': 2, 'Coptic': 2, 'Cyrillic': 3, 'Georgian': 4, 'Armenian': 5,
           'Hebrew': 6, 'Arabic': 7, 'Devanagari': 8, 'Bengali': 9, 'Gurmukhi': 0xa,
           'Gujarati': 0xb, 'Oriya': 0xc, 'Tamil': 0xd, 'Telugu': 0xe, 'Kannada': 0xf,
           'Malayalam': 0x10, 'Sinhala': 0x11, 'Thai': 0x12,
           'Hiragana': 0x13, 'Katakana': 0x13, 'Bopomofo': 0x13, 'Hangul': 0x13, 'Han': 0x13}
LATIN, EAST_ASIA, OTHER = 1, 0x13, 0x14

# Combining marks whose accent numbers have names; everything else is numbered slot by slot.
NAMED_MARKS = {0x327: 1, 0x301: 2, 0x300: 3, 0x302: 4, 0x303: 5, 0x308: 6, 0x30a: 7, 0x338: 8,
               0x335: 8, 0x30c: 9, 0x304: 10, 0x306: 11, 0x307: 12, 0x328: 13, 0x30b: 14}
FORM_WEIGHT, FORM = 0x11c, 15
# Numbers for what has no name, in the order in which they are given out.
FREE_NUMBERS = list(range(16, 32)) + list(range(1, 16))

# Runs of Latin letters behind z begin at these, each in the slot named; between the last of
# them that continental alphabets know and the clicks lie the slots for their own last letters.
LATIN_TAIL = [('ʒ', 114), ('þ', 115), ('ƿ', 116), ('ʔ', 117),
              ('ǀ', 124), ('ǁ', 125), ('ǂ', 126), ('ǃ', 127)]
LATIN_LAST = 118


def latin_slot(letter, extension=0):
    return (ord(letter) - ord('a') + 3) * 4 + extension


class Alphabet:
    """Slots and accent numbers of one script byte."""

    def __init__(self, number, primaries, living, gaps):
        self.number = number
        self.primaries = primaries      # In rising order.
        self.slots = {}                 # Primary to slot.
        self.accents = {}               # (primary, secondary weights) to accent number.
        self.used = {}                  # Slot to the set of numbers in use.
        if number != LATIN:
            self._place(living, gaps)

    def _place(self, living, gaps):
        """Slots in rising order; gaps[primary] slots stay free behind it, and rare neighbours
        share a slot where the alphabet has too many letters."""
        rare = [p for i, p in enumerate(self.primaries)
                if p not in living and i and self.primaries[i - 1] not in gaps]
        excess = len(self.primaries) + sum(gaps.values()) - 128
        shared = set(rare[i * len(rare) // excess] for i in range(excess)) if excess > 0 else set()
        slot = -1
        for primary in self.primaries:
            if primary not in shared:
                slot += 1
            self.slots[primary] = slot
            slot += gaps.get(primary, 0)
        assert slot < 128, (self.number, slot)

    def place_latin(self, living, primary_of):
        """a to z have extension 0; what lies between two of them has extensions 2 and 3, cut
        before the second letter in living use."""
        bases = {primary_of(chr(code)): latin_slot(chr(code)) for code in range(97, 123)}
        tail = {primary_of(letter): slot for letter, slot in LATIN_TAIL}
        slot, alive = 0, 0
        for primary in self.primaries:
            if primary in bases:
                slot, alive = bases[primary], 0
            elif primary in tail:
                slot = tail[primary]
            elif slot < tail[primary_of('ʒ')]:
                if slot % 4 == 0:
                    slot += 2
                if primary in living:
                    alive += 1
                    if alive == 2 and slot % 4 == 2 and slot < 112:
                        slot += 1
            self.slots[primary] = slot

    def number_accents(self, entities, names, living):
        """Gives each letter with its marks an accent number that is its own within the slot.
        `entities` are (primary, secondary weights) in the order of the default table; where a
        slot has too many, letters with several marks that no living language uses stay out."""
        by_slot = {}
        for entity in entities:
            by_slot.setdefault(self.slots[entity[0]], []).append(entity)
        for slot, members in by_slot.items():
            used = self.used.setdefault(slot, set())
            leader = min(primary for primary, _ in members)
            late = []
            for entity in members:
                number = self._named(entity, leader, names)
                if number is None or number in used:
                    late.append(entity)
                else:
                    self._give(entity, number, used)
            free = [number for number in FREE_NUMBERS if number not in used]
            spare = [e for e in late if len(e[1]) > 1 and e not in living]
            dropped = spare[max(0, len(spare) - max(0, len(late) - len(free))):]
            late = [entity for entity in late if entity not in dropped]
            assert len(late) <= len(free), ('letters without a number', self.number, late)
            for entity, number in zip(late, free):
                self._give(entity, number, used)

    @staticmethod
    def _named(entity, leader, names):
        primary, weights = entity
        if primary != leader:
            return None
        if not weights:
            return 0
        return names.get(weights[0]) if len(weights) == 1 else None

    def _give(self, entity, number, used):
        used.add(number)
        self.accents[entity] = number


def letter_word(case, accent, slot):
    assert 0 <= case < 4 and 0 <= accent < 32 and 0 <= slot < 128
    return 0x4000 | case << 12 | accent << 7 | slot


def with_accent(word, accent):
    return word & ~0xf80 | accent << 7
