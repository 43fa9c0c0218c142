"""Case data: rows of capital, rest of the capital, small letter."""

import unicodedata

import codesets

NONE = (0, 0, 0)
DOTTED_CAPITAL, DOTLESS_SMALL = 0x130, 0x131


def row(code, database):
    """Simple mappings; where there is no simple capital, one of two characters if composing
    makes it that short. A transformed text has room for twice its length and no more."""
    char = database.chars[code]
    if char.combining:      # A mark stays one.
        return NONE
    if not char.upper and char.category == 'Ll':
        text = ''.join(map(chr, database.special_upper.get(code, ())))
        text = unicodedata.normalize('NFC', text)
        if len(text) == 2:
            return ord(text[0]), ord(text[1]), char.lower
    return char.upper, 0, char.lower


class Cases:
    """All rows, row 0 for no case; index per character and per byte of each one-byte set."""

    def __init__(self, database):
        self.rows, self.numbers = [NONE], {NONE: 0}
        self.of = {code: self._number(row(code, database)) for code in sorted(database.chars)}
        # The letters whose other case Turkish and Azerbaijani see elsewhere.
        self.turkish_small = self._number((DOTTED_CAPITAL, 0, 0))
        self.turkish_capital = self._number((0, 0, DOTLESS_SMALL))
        self.bytes = {}
        for number in codesets.ONE_BYTE:
            values = codesets.to_unicode(number)
            back = codesets.from_unicode(values)
            self.bytes[number] = [self._in_set(value, back) for value in values]

    def _number(self, data):
        if data not in self.numbers:
            self.numbers[data] = len(self.rows)
            self.rows.append(data)
        return self.numbers[data]

    def _in_set(self, value, back):
        """The row of a character in a set that must hold its other case; the rest of a capital
        is in the set's own units."""
        upper, tail, lower = self.rows[self.of.get(value, 0)]
        if any(part and part not in back for part in (upper, tail, lower)):
            return 0
        return self._number((upper, back[tail] if tail else 0, lower))
