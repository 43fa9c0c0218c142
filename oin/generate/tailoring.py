"""Contractions, and what each language puts in the place of the common orders.

Every record is a node: its order, and by following character the node of both together. Equal
nodes are one: a language tailors a character exactly where its node is another than the common
one.
"""

import itertools
import re

from alphabets import (FREE_NUMBERS, LATIN, LATIN_LAST, NAMED_MARKS, latin_slot, letter_word,
                       with_accent)
import rules as rules_of_cldr
import syllables
from kana import repeated
from layout import Layout
from orders import DIGIT, LIGATURES, Order, most_words


# The voicing marks behind half-width kana, which take a place of their own.
HALF_WIDTH_MARKS = {0x3099: 0xff9e, 0x309a: 0xff9f}
IDEOGRAPHS = ('pinyin', 'strokes', 'JIS')   # Said for readers: these have no words of their own.
FROM_CLDR = 'CLDR'  # In the place of rules: the whole alphabet as CLDR has it.
FIRST_MARK = 0x300  # Heads in ASCII contract with nothing below it, save in some languages.


class Nodes:
    """Nodes by number; equal ones share a number."""

    def __init__(self):
        self.numbers, self.list = {}, []

    def intern(self, order, children):
        key = (order, tuple(sorted(children.items())))
        number = self.numbers.get(key)
        if number is None:
            number = self.numbers[key] = len(self.list)
            self.list.append(key)
        return number

    def order(self, number):
        return self.list[number][0]

    def children(self, number):
        return dict(self.list[number][1])

    def behind(self, order, number, most):
        """The node `number` with the words of `order` in front; None if that makes too many."""
        own = self.order(number)
        if len(order.words) + len(own.words) > most:
            return None
        children = {}
        for char, child in self.children(number).items():
            joined = self.behind(order, child, most)
            if joined is not None:
                children[char] = joined
        return self.intern(Order(order.script, order.words + own.words), children)


class Common:
    """The nodes of all characters before tailoring."""

    def __init__(self, database, orders, nodes):
        self.db, self.orders, self.nodes = database, orders, nodes
        self.marks = {}     # Base to the marks that compose with it.
        for composed, (base, mark) in database.pairs.items():
            self.marks.setdefault(base, {})[mark] = composed
        self.capitals = {}  # Capital and mark to a small letter that has no capital of its own.
        for composed, (base, mark) in database.pairs.items():
            capital = database.chars[base].upper if base in database.chars else 0
            if capital and database.chars[composed].category == 'Ll' \
                    and not database.chars[composed].upper \
                    and mark not in self.marks.get(capital, {}):
                self.capitals.setdefault(capital, {})[mark] = composed
        self.prefixed = {}  # Prefixed vowel to consonants, from the default table.
        for key in database.elements:
            if len(key) == 2 and key[0] in database.prefixed:
                self.prefixed.setdefault(key[0], []).append(key[1])
        self.memo = {}

    def node(self, code):
        if code not in self.memo:
            target = self.original(code)
            self.memo[code] = self.node(target) if target != code else \
                self.nodes.intern(self.orders.of[code], self._children(code))
        return self.memo[code]

    def original(self, code):
        """The character that this one is another encoding or the narrow form of."""
        target = self.db.singleton(code)
        same = target in self.orders.of and self.orders.of[target] == self.orders.of[code]
        return self.original(target) if same and self.db.chars[code].tag != 'wide' else code

    def composed(self, code):
        """What a character composes to, by the mark behind it."""
        marks = dict(self.marks.get(code, {}))
        for mark, narrow in HALF_WIDTH_MARKS.items():
            if mark in marks:
                marks[narrow] = marks[mark]
        return marks

    def capital(self, small, order_of):
        """The node of a capital that is written as another one and marks."""
        children = {mark: self.capital(composed, order_of)
                    for mark, composed in self.composed(small).items()}
        return self.nodes.intern(order_of(small).cased(0), children)

    def _children(self, code):
        children = {mark: self.node(composed) for mark, composed in self.composed(code).items()}
        children.update((mark, self.capital(small, self.orders.of.get))
                        for mark, small in self.capitals.get(code, {}).items())
        children.update((trail, self.nodes.intern(order, {}))
                        for trail, order in self.orders.pairs.get(code, {}).items())
        for consonant in self.prefixed.get(code, ()):
            consonant_order, vowel = self.orders.of[consonant], self.orders.of[code]
            words = consonant_order.words + vowel.words
            if len(words) == 2:
                children[consonant] = self.nodes.intern(Order(consonant_order.script, words), {})
        return children


def capital(code, database):
    return database.chars[code].upper or code


def cases(letters, database):
    """Each way to write a string of small letters in capitals: (string, case field)."""
    options = [sorted({code, capital(code, database)}, key=lambda c: c != code)
               for code in letters]
    for choice in itertools.product(*options):
        raised = [written != small for written, small in zip(choice, letters)]
        if not any(raised):
            case = 3
        elif all(raised):
            case = 0
        else:
            case = 1 if raised[0] else 2
        yield choice, case


class Language:
    """Orders of one language: `own` by character, `strings` by contraction."""

    def __init__(self, row, common):
        self.number, self.tag, self.name, self.script, rules = row
        self.db, self.orders, self.nodes = common.db, common.orders, common.nodes
        self.common = common
        self.own, self.strings = {}, {}
        self.taken = {}         # (alphabet, slot) to accent numbers that this language gave out.
        self.behind_count = {}
        self.reordered = []
        self.alone = set()      # Tailored letters whose composites stay with the small letter.
        for rule in rules.split():
            if rule == FROM_CLDR:
                self._lay_out()
            elif rule == 'kana':
                self._repeat_kana()
            elif rule not in IDEOGRAPHS:
                self._apply(*self._parse(rule))
        self._join_ligatures()
        self._follow()
        for letters in self.reordered:
            self._reorder(letters)
        self.memo = {}
        self.heads = self._tailored_heads()

    def _lay_out(self):
        tokens = rules_of_cldr.tokens(rules_of_cldr.read(self.db.cldr, self.tag))
        if self.tag in syllables.BLOCKS:
            layout = syllables.Syllables(self.db, self.orders, self.common, self.script, self.tag,
                                         tokens)
        else:
            layout = Layout(self.db, self.orders, self.common, self.script, tokens)
        self.own.update(layout.orders_of_characters())
        for string, order in layout.orders_of_strings():
            self._set(string, order)
        self.alone.update(self.own)

    # Rules.

    @staticmethod
    def _parse(rule):
        match = re.fullmatch(r'([^=>~:&+|^]*)([=>~:&+|^])(.+)', rule)
        left, sign, right = match.groups()
        return [ord(letter) for letter in left], sign, right

    def _apply(self, letters, sign, right):
        if sign == '=':
            self._place(letters, LATIN, self._latin_place(right), range(32))
        elif sign == '>':
            anchor = ord(right)
            self.behind_count[anchor] = self.behind_count.get(anchor, 0) + 1
            order = self.orders.of[anchor]
            slot = (order.words[0] & 0x7f) + self.behind_count[anchor]
            self._place(letters, order.script, slot, range(32))
        elif sign == '~':
            target = self._words([ord(c) for c in right])
            self._place(letters, target.script, target.words[0] & 0x7f, FREE_NUMBERS)
        elif sign == '^':
            self.reordered.append(right)
        else:
            self._spell(letters, sign, [ord(c) for c in right])

    @staticmethod
    def _latin_place(text):
        if text[0] == '@':
            return LATIN_LAST + int(text[1:])
        letter, _, extension = text.partition('.')
        return latin_slot(letter, int(extension))

    def _repeat_kana(self):
        accents = {}
        for pair, kana in repeated(self.db):
            first, again = self.orders.of[pair[0]], self.orders.of[kana].words[0]
            slot = again & 0x7f
            if slot not in accents:
                accents[slot] = self._free(first.script, slot, FREE_NUMBERS)
            self._set(pair, Order(first.script,
                                  first.words + (with_accent(again, accents[slot]),)))

    def _words(self, letters):
        return self.strings.get(tuple(letters)) or self.own.get(letters[0]) \
            or self.orders.of[letters[0]]

    def _free(self, script, slot, numbers):
        """The first of the numbers that neither the common orders nor this language use in the
        slot; None if there is none."""
        taken = self.taken.setdefault((script, slot), set())
        used = self.orders.alphabets[script].used.get(slot, set()) | taken
        for number in numbers:
            if number not in used:
                taken.add(number)
                return number
        return None

    def _place(self, letters, script, slot, numbers):
        accent = self._free(script, slot, numbers)
        assert accent is not None, (self.tag, letters)
        for written, case in cases(letters, self.db):
            self._set(written, Order(script, (letter_word(case, accent, slot),)))

    def _spell(self, letters, sign, target):
        """Letters that equal others (:), sort as two letters (&), as a doubled one (+), or as a
        capital whose small letter isn't the usual one (|)."""
        if sign == '|':
            order = self._words(target)
            self._set(tuple(letters), Order(order.script, (order.words[0] & ~0x3000,)))
            self.alone.add(letters[0])
            return
        for written, case in cases(letters, self.db):
            self._set(written, self._spelled(written, case, sign, target))
        if sign == ':' and len(letters) == 1 and len(target) == 2:
            title = self.db.chars[letters[0]].upper + 1     # ǅ stands behind Ǆ.
            title = title if self.db.chars[title].category == 'Lt' else letters[0] - 1
            self._set((title,), self._spelled((title,), 1, sign, target))

    def _spelled(self, written, case, sign, target):
        def cased(order, field):
            return tuple(word & ~0x3000 | field << 12 for word in order.words)
        if sign == ':':
            order = self._words(target)
            return Order(order.script, cased(order, case))
        if sign == '+':
            order = self._words(target)
            small = [ord(chr(c).lower()) for c in written]
            raised = [a != b for a, b in zip(written, small)]
            fields = []
            for part in ([raised[0]] + raised[2:], raised[1:]):
                fields.append(3 if not any(part) else 0 if all(part) else 1 if part[0] else 2)
            return Order(order.script, cased(order, fields[0]) + cased(order, fields[1]))
        first, second = (self.orders.of[c] for c in target)
        accent = self.orders.of[written[0]].words[0] >> 7 & 31 or \
            self._free(first.script, first.words[0] & 0x7f, FREE_NUMBERS)
        return Order(first.script,
                     (with_accent(cased(first, case)[0], accent), cased(second, case)[0]))

    def _set(self, written, order):
        if len(written) == 1:
            self.own[written[0]] = order
            return
        forms = [[(c,)] + ([self.db.pairs[c]] if c in self.db.pairs else []) for c in written]
        for choice in itertools.product(*forms):
            self.strings[sum(choice, ())] = order

    def _follow(self):
        """Composites of a tailored letter follow it to its place, in whatever order their marks
        are composed."""
        numbers, leaders = {}, {}
        for code in self.own:
            if code not in self.alone:
                base, marks = self._decomposed(code)
                leaders.setdefault(base, []).append((marks, code))
        for code in sorted(self.db.pairs):
            base, marks = self._decomposed(code)
            if code not in self.own and base in leaders:
                found = [(len(own), own, leader) for own, leader in leaders[base]
                         if set(own) < set(marks)]
                if found:
                    _, own, leader = max(found)
                    rest = tuple(mark for mark in marks if mark not in own)
                    self._follow_one(code, leader, rest, numbers)

    def _join_ligatures(self):
        """Ligatures of letters that contract here."""
        for code, letters in LIGATURES.items():
            order = self._plain(tuple(map(ord, letters)))
            if order.words != self.orders.of[code].words:
                self.own[code] = order

    def _decomposed(self, code):
        base, mark = self.db.pairs.get(code, (code, None))
        if mark is None:
            return code, ()
        letter, marks = self._decomposed(base)
        return letter, marks + (mark,)

    def _follow_one(self, code, leader, marks, numbers):
        order, first = self.own[leader], self.own[leader].words[0]
        if not 0x4000 <= first < 0x8000:
            return
        key = (order.script, first & ~0x3000, marks)
        if key not in numbers:
            plain = first >> 7 & 31 == 0 and len(marks) == 1
            named = [NAMED_MARKS[marks[0]]] if plain and marks[0] in NAMED_MARKS else []
            numbers[key] = self._free(order.script, first & 0x7f, named + FREE_NUMBERS)
        if numbers[key] is not None:
            words = (with_accent(first, numbers[key]),) + order.words[1:]
        else:
            words = order.words + self.orders.of[marks[-1]].words
        if len(words) <= 2:
            self.own[code] = Order(order.script, words)

    def _reorder(self, letters):
        """Hands the accent numbers of the letters out again in rising order; marks that are symbols
        exchange their words."""
        orders = [self._words([ord(c)]) for c in letters]
        if orders[0].words[0] < DIGIT:
            words = sorted(order.words for order in orders)
            self.own.update((ord(c), Order(order.script, own))
                            for c, order, own in zip(letters, orders, words))
            return
        for row in (letters, letters.upper()):
            current = [self._words([ord(c)]) for c in row]
            numbers = sorted(order.words[0] >> 7 & 31 for order in current)
            for letter, order, number in zip(row, current, numbers):
                words = (with_accent(order.words[0], number),) + order.words[1:]
                self.own[ord(letter)] = Order(order.script, words)

    # Nodes.

    def node(self, code):
        """The node of a character in this language, with all its contractions."""
        if code not in self.memo:
            target = self.common.original(code)
            if target != code and code not in self.own:
                self.memo[code] = self.node(target)
                return self.memo[code]
            explicit = self._continuations((code,))
            children = self._composites(code)
            composed = self.common.composed(code)   # Their strings begin with the composite, too.
            children.update((char, self._sequence((code, char))) for char in explicit
                            if char not in composed)
            self.memo[code] = self.nodes.intern(self._order(code), children)
        return self.memo[code]

    def _order(self, code):
        return self.own.get(code) or self.orders.of[code]

    def _composites(self, code):
        children = self.nodes.children(self.common.node(code))
        for mark, composed in self.common.composed(code).items():
            children[mark] = self.node(composed)
        for mark, small in self.common.capitals.get(code, {}).items():
            children[mark] = self.common.capital(small, self._order)
        return children

    def _continuations(self, start):
        return sorted({s[len(start)] for s in self.strings
                       if len(s) > len(start) and s[:len(start)] == start})

    def _sequence(self, string):
        """The node of several letters that contract, or that begin a contraction. A mark that
        composes with the last of them takes it out of the contraction again."""
        contracts = string in self.strings
        parts = [string[:-1], string[-1:]] if contracts else self._parts(string)
        last = parts[-1]
        tail = self._sequence(last) if len(last) > 1 else self._letter(last[0], not contracts)
        front = self._plain(sum(parts[:-1], ()))
        joined = self.nodes.behind(front, tail, most_words(string))
        children = self.nodes.children(joined) if joined is not None else {}
        children.update((char, self._sequence(string + (char,)))
                        for char in self._continuations(string))
        order = self.strings.get(string) or self.nodes.order(joined)
        return self.nodes.intern(order, children)

    def _letter(self, code, contracts):
        """The node of a letter behind others, with what contracts with it at once."""
        children = self._composites(code)
        if contracts:
            children.update((char, self._sequence((code, char)))
                            for char in self._continuations((code,))
                            if (code, char) in self.strings)
        return self.nodes.intern(self._order(code), children)

    def _parts(self, string):
        """Letters, as many as possible taken together each time."""
        parts = []
        while string:
            length = next((n for n in range(len(string), 1, -1) if string[:n] in self.strings), 1)
            parts.append(string[:length])
            string = string[length:]
        return parts

    def _plain(self, string):
        """The order of letters one behind the other."""
        orders = [self.strings.get(part) or self._order(part[0]) for part in self._parts(string)]
        return Order(orders[0].script, sum((order.words for order in orders), ()))

    def _tailored_heads(self):
        """Characters whose node is another than the common one."""
        candidates = set(self.own) | {string[0] for string in self.strings}
        pending = list(candidates)
        while pending:      # What a tailored composite is composed of is tailored as well.
            pair = self.db.pairs.get(pending.pop())
            if pair:
                front = {pair[0], capital(pair[0], self.db)} - candidates
                candidates |= front
                pending += front
        candidates.update(code for code in self.db.chars
                          if self.common.original(code) in candidates)
        return {code: self.node(code) for code in sorted(candidates)
                if self.node(code) != self.common.node(code)}


def own_ascii(language):
    """Bits of the ASCII characters that the language sorts its own way even before a character
    that is no combining mark."""
    nodes, bits = language.nodes, [0, 0]
    for code, node in language.heads.items():
        if code < 0x80 and (nodes.order(node) != language.orders.of[code]
                            or any(char < FIRST_MARK for char in nodes.children(node))):
            bits[code >> 6] |= 1 << (code & 63)
    return bits


def gaps(rows):
    """How many slots the languages need behind each letter."""
    needed = {}
    for row in rows:
        counts = {}
        for rule in row[4].split():
            if '>' in rule:
                counts[rule[-1]] = counts.get(rule[-1], 0) + 1
        for anchor, count in counts.items():
            needed[anchor] = max(needed.get(anchor, 0), count)
    return needed
