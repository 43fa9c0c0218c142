"""Collation rules of CLDR for languages whose alphabet is laid out anew.

The letters of the script stand in one list, in the order of the default table; each says by which
level it differs from the one before it. The rules move letters, and put strings among them.
"""

import os
import re

PRIMARY, SECONDARY, TERTIARY, IDENTICAL = 1, 2, 3, 4
SIGNS = {'<': PRIMARY, '<<': SECONDARY, '<<<': TERTIARY, '=': IDENTICAL}
# What stands in a rule beside letters and leaves no trace: directions of writing.
MARKS_OF_DIRECTION = dict.fromkeys((0x200e, 0x200f, 0x61c))
TOKEN = re.compile(r'(&|<<<\*?|<<\*?|<\*?|=\*?)|\[([^]]*)\]|\'([^\']*)\'|\\u([0-9A-Fa-f]{4})'
                   r'|(/)|([^\s&<=\[\'\\/])')


def read(folder, tag, kind='standard'):
    """The rules of a language."""
    with open(os.path.join(folder, 'collation', tag + '.xml'), encoding='utf-8') as file:
        text = re.search(f'<collation type="{kind}".*?</collation>', file.read(), re.S)[0]
    return re.search(r'<!\[CDATA\[(.*?)\]\]>', text, re.S)[1]


def tokens(text):
    """Signs, settings in brackets, and strings."""
    text = re.sub(r'(?m)(^|\s)#.*$', ' ', text).translate(MARKS_OF_DIRECTION)
    string = ''
    for match in TOKEN.finditer(text):
        sign, setting, quoted, code, slash, char = match.groups()
        if sign or setting is not None:
            if string:
                yield 'string', string
            string = ''
            yield ('sign', sign) if sign else ('setting', setting)
        elif slash:
            string += '/'
        else:
            string += quoted if quoted is not None else chr(int(code, 16)) if code else char
    if string:
        yield 'string', string


def items(keyed):
    """Letters in the order of (primary, secondary weights, tertiary, code), each with the level of
    its difference from the one before."""
    result, last = [], (None, None)
    for primary, weights, _, code in sorted(keyed):
        level = PRIMARY if primary != last[0] else SECONDARY if weights != last[1] else TERTIARY
        result.append(((code,), level))
        last = (primary, weights)
    return result


class Letters:
    """Strings in order; `level` of each is that of its difference from the one before."""

    def __init__(self, items):
        self.strings = [string for string, _ in items]
        self.level = dict(items)

    def drop(self, string):
        if string in self.level:
            place = self.strings.index(string)
            level = self.level.pop(string)
            del self.strings[place]
            if place < len(self.strings):
                after = self.strings[place]
                self.level[after] = min(level, self.level[after])

    def put_behind(self, anchor, string, level):
        self.drop(string)
        place = self.strings.index(anchor) + 1
        while place < len(self.strings) and self.level[self.strings[place]] > level:
            place += 1
        self.strings.insert(place, string)
        self.level[string] = level

    def put_before(self, anchor, string, level):
        self.drop(string)
        place = self.strings.index(anchor)
        while self.level[self.strings[place]] > level:
            place -= 1
        front = self.strings[place]
        self.strings.insert(place, string)
        self.level[string] = self.level[front]
        self.level[front] = level

    def groups(self):
        """Letters of one primary rank: for each the strings of one accent, variants last."""
        result = []
        for string in self.strings:
            if self.level[string] == PRIMARY or not result:
                result.append([])
            if self.level[string] < TERTIARY or not result[-1]:
                result[-1].append([])
            result[-1][-1].append(string)
        return result


def apply(parts, letters):
    """@return strings that sort as several letters, each with these and the level of the
    difference."""
    spelled, anchor, before, level, spread = {}, None, 0, 0, False
    for kind, token in parts:
        if kind == 'setting':
            match = re.fullmatch(r'before ([12])', token)
            before = int(match[1]) if match else before
            if not match:
                anchor = None   # [last regular] and the like: not among letters.
        elif kind == 'sign':
            level, spread = SIGNS.get(token.rstrip('*'), 0), token.endswith('*')
            if token == '&':
                before = 0
        elif level == 0:
            anchor = tuple(map(ord, token))
        elif anchor is not None:
            for part in token if spread else [token]:
                anchor = place(letters, spelled, anchor, tuple(map(ord, part)), level, before)
                before = 0
    return spelled


def place(letters, spelled, anchor, string, level, before):
    if ord('/') in string or any(0xfb50 <= code < 0xff00 for code in string):
        return anchor           # Ligatures and presentation forms follow their letters.
    if anchor not in letters.level or anchor in spelled:
        if level > PRIMARY and all((code,) in letters.level or (code,) in spelled
                                   for code in anchor):
            spelled[string] = anchor, level
        return anchor
    if before:
        letters.put_before(anchor, string, level)
    else:
        letters.put_behind(anchor, string, level)
    return string
