"""The list of released words, and the versions that tell when words have changed.

`orders.tsv` holds what every character, contraction and tailored letter sorts as; keys on disk hold
these words. Its first line says which collation they belong to, and whether that is released. Of a
released collation no word may be new, gone or other. Words change only in the next one: its number
goes to the file COLLATION, a line of why to the file CHANGES. While it is open its words are free
to change; `generate.py --release` closes it.
"""

import hashlib
import re
import struct

import codesets

OPEN, RELEASED = 'open', 'released'
GONE = '-'


class Refused(Exception):
    """Why the words can't be written."""


# Versions: 64 bits of a hash, never 0.

def version_of(data):
    digest = hashlib.blake2b(data, digest_size=8).digest()
    return int.from_bytes(digest, 'big') or 1


class Versions:
    """The version of each language: over all that its texts can meet, whoever gave it a word."""

    def __init__(self, common, members, walk, ranks, marks):
        """`ranks` has the words of ideographs by tag, `marks` all that the walk knows of marks."""
        self.nodes, self.memo = common.nodes, {}
        codes = sorted(common.orders.of)
        places = {code: place for place, code in enumerate(codes)}
        shared = [self._node(common.node(code)) for code in codes]
        silent = [code for code in sorted(common.db.chars) if common.orders.weighs_nothing(code)]
        heading = struct.pack('>%dH' % len(codes + silent), *codes, *silent)
        self.of = {}
        for language in members:
            own = list(shared)
            for code, node in language.heads.items():
                own[places[code]] = self._node(node)
            ranked = ranks.get(language.tag, ())
            self.of[language.tag] = version_of(struct.pack('>BB', walk, language.script) + marks
                                               + heading + b''.join(own)
                                               + struct.pack('>%dH' % len(ranked), *ranked))

    def _node(self, number):
        """Digest of a record and of all contractions that it heads."""
        if number not in self.memo:
            order = self.nodes.order(number)
            data = struct.pack('>BB%dH' % len(order.words), order.script, len(order.words),
                               *order.words)
            for char, child in sorted(self.nodes.children(number).items()):
                data += struct.pack('>H', char) + self._node(child)
            self.memo[number] = hashlib.blake2b(data, digest_size=8).digest()
        return self.memo[number]


def version_of_set(number):
    """The version of a code set's way into Unicode, and so to its orders."""
    if number in codesets.ONE_BYTE:
        rows = enumerate(codesets.to_unicode(number))
    else:
        rows = sorted(codesets.double_byte(number)[0].items())
    return version_of(b''.join(struct.pack('>HH', *row) for row in rows))


# The list.

def listed(common, members, versions):
    """All lines of the list but the first: code sets, languages, common words, those of each
    language."""
    lines = [f'set {number:02x}\t{facts[0]}\t-\t{version_of_set(number):016x}'
             for number, facts in sorted({**codesets.ONE_BYTE, **codesets.TWO_BYTE}.items())]
    lines += [f'language {language.number:02x}\t{language.tag}\t{language.script:02x}\t'
              f'{versions.of[language.tag]:016x}' for language in members]
    nodes = common.nodes
    lines += runs('-', (((code,), common.orders.of[code]) for code in sorted(common.orders.of)))
    lines += runs('-', (item for code in sorted(common.orders.of)
                        for item in paths(nodes, common.node(code), (code,))))
    for language in members:
        lines += runs(language.tag, (
            item for code, node in sorted(language.heads.items())
            for item in differences(nodes, node, common.node(code), (code,))))
    return lines


def paths(nodes, node, string):
    """Every contraction that begins with a string: characters and order."""
    for char, child in sorted(nodes.children(node).items()):
        longer = string + (char,)
        yield longer, nodes.order(child)
        yield from paths(nodes, child, longer)


def differences(nodes, own, other, string):
    """What a node of a language orders its own way; None where a contraction is no longer one."""
    if own == other:
        return
    if nodes.order(own) != nodes.order(other):
        yield string, nodes.order(own)
    mine, theirs = nodes.children(own), nodes.children(other)
    for char in sorted(set(mine) | set(theirs)):
        longer = string + (char,)
        if char not in mine:
            yield longer, None
        elif char in theirs:
            yield from differences(nodes, mine[char], theirs[char], longer)
        else:
            yield longer, nodes.order(mine[char])
            yield from paths(nodes, mine[char], longer)


def runs(tag, items):
    """One line for each string, or for a run of strings whose last characters and words rise by
    one."""
    lines, start, last = [], None, None
    for string, order in items:
        step = string[-1] - start[0][-1] if start else 0
        if start and order and len(order.words) == 1 and step == last - start[0][-1] + 1 \
                and string[:-1] == start[0][:-1] and order.script == start[1].script \
                and order.words[0] == start[1].words[0] + step:
            last = string[-1]
            continue
        if start:
            lines.append(line(tag, *start, last))
        start, last = None, string[-1]
        if order and len(order.words) == 1:
            start = string, order
        else:
            lines.append(line(tag, string, order, last))
    return lines + ([line(tag, *start, last)] if start else [])


def line(tag, string, order, last):
    name = ' '.join(f'{code:04x}' for code in string)
    if order is None:
        return f'{tag}\t{name}\t{GONE}\t{GONE}'
    words = ' '.join(f'{word:04x}' for word in order.words)
    if last != string[-1]:
        name, words = f'{name}..{last:04x}', words + '+'
    return f'{tag}\t{name}\t{order.script:02x}\t{words}'


def expand(lines):
    """Tag and string to script and words of every line, runs taken apart."""
    assigned = {}
    for text in lines:
        tag, string, script, words = text.rstrip('\n').split('\t')
        if not words.endswith('+'):
            assigned[tag, string] = script, words
            continue
        front, first, last = re.fullmatch(r'(.*?)([0-9a-f]+)\.\.([0-9a-f]+)', string).groups()
        start = int(words[:-1], 16)
        for place in range(int(last, 16) - int(first, 16) + 1):
            assigned[tag, f'{front}{int(first, 16) + place:04x}'] = script, f'{start + place:04x}'
    return assigned


def changes(old, new):
    """What two lists tell differently, a line each."""
    before, after = expand(old), expand(new)
    told = []
    for name in sorted(before.keys() | after.keys()):
        if before.get(name) != after.get(name):
            kind = 'new' if name not in before else 'gone' if name not in after else 'other'
            told.append(f'{kind}: {" ".join(name)}: {" ".join(before.get(name, ()))} -> '
                        f'{" ".join(after.get(name, ()))}')
    return told


# Numbers.

def read_number(path, name):
    """A number that the file COLLATION gives."""
    with open(path, encoding='utf-8') as file:
        found = re.search(rf'^{name} (\d+)$', file.read(), re.M)
    if not found:
        raise Refused(f'{path}: no line "{name} N"')
    return int(found[1])


def heading(number, state):
    return f'# collation {number} {state}\n'


def read_list(path):
    """Number, state and lines of a list; collation 0 where there is none yet."""
    try:
        with open(path, encoding='utf-8') as file:
            first, *lines = file
    except (OSError, ValueError):
        return 0, RELEASED, []
    found = re.fullmatch(r'# collation (\d+) (open|released)\n', first)
    if not found:
        raise Refused(f'{path}: its first line must say which collation it holds')
    return int(found[1]), found[2], lines


def is_announced(path, number):
    with open(path, encoding='utf-8') as file:
        return re.search(rf'^{number}\t\S.*$', file.read(), re.M) is not None


def admit(lines, number, frozen, announced):
    """The first line of the list that may be written. Throws Refused where words would change
    that were released."""
    old_number, state, old = read_list(frozen)
    if number == old_number and state == RELEASED:
        told = changes(old, lines)
        if told:
            raise Refused('\n'.join([f'{len(told)} released words would change; raise the number in '
                                     'COLLATION and say why in CHANGES:', *told[:10]]))
        return heading(number, RELEASED)
    if number != old_number + (state == RELEASED):
        raise Refused(f'collation {number} can\'t follow collation {old_number}, {state}')
    if not is_announced(announced, number):
        raise Refused(f'CHANGES has no line for collation {number}')
    return heading(number, OPEN)
