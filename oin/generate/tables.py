"""Lays nodes and languages out as the arrays that the library reads."""

import codesets
from alphabets import OTHER
from ideographs import FIRST_FURTHER_WORD, FIRST_WORD, FURTHER, UNIFIED
from tailoring import FIRST_MARK, Nodes

CONTRACTIONS, TAILORING, EXPANSION, LOW_FOLLOWERS = 1, 2, 4, 8
FOLLOWS, FOLLOWS_TAILORED, COMBINES, ABSENT = 0x10, 0x20, 0x40, 0x80
FIRST_HAN = 0x8000
DECOMPOSES = 255    # In the place of a mark's combining class: it stands for others.


def order_key(word, script):
    """The comparable key of an order word: letter before accent and case."""
    if script != 0x14 and word & 0xc000 == 0x4000:
        return script << 24 | (word & 0x407f) << 8 | word >> 7 & 0x7f
    return script << 24 | word << 8 if word else 0


class Pool:
    """Rows that are shared when equal; number 0 is the empty one."""

    def __init__(self, empty):
        self.rows, self.numbers = [empty], {empty: 0}

    def number(self, row):
        if row not in self.numbers:
            self.numbers[row] = len(self.rows)
            self.rows.append(row)
        return self.numbers[row]


class Runs:
    """Runs of numbers in one array, equal runs once."""

    def __init__(self):
        self.values, self.places = [0], {}

    def place(self, run):
        if run not in self.places:
            self.places[run] = len(self.values)
            self.values.extend(run)
        return self.places[run]


class Tables:
    def __init__(self, database, common, languages):
        self.database, self.common, self.languages = database, common, languages
        self.wide = common.nodes
        self.narrow, self.narrow_memo = Nodes(), {}
        self.to_bytes = codesets.from_unicode(codesets.to_unicode(1))
        self.units, self.numbers = Runs(), Runs()
        self.lists = Pool((0, 0))
        self.contractions = Pool((0, 0, 0, 0))
        self.tailorings = Pool((0, 0, 0))
        self.links = Pool((0, 0, 0))
        self.records = []           # Numbers first, contents last: (nodes, node, head, flags).
        self.record_of = {}
        self._pages(sorted(common.orders.of))
        self._narrow_page()
        self._heads()
        self._fill()
        self._arrange()

    # Places.

    def _pages(self, chars):
        present = {code >> 8 for code in chars}
        self.pages, empty = [], None
        for page in range(256):
            if page not in present and empty is not None:
                self.pages.append(empty)
                continue
            number = len(self.records) >> 8
            self.pages.append(number)
            if page not in present:
                empty = number
            for code in range(page << 8, (page << 8) + 256):
                node = self.common.node(code) if code in self.common.orders.of else None
                if node is not None:
                    self.record_of.setdefault((self.wide, node), len(self.records))
                self.records.append((self.wide, node, code))

    def _narrow_page(self):
        self.narrow_first = len(self.records)
        for value in codesets.to_unicode(1):
            node = self._narrow(self.common.node(value))
            self.record_of.setdefault((self.narrow, node), len(self.records))
            self.records.append((self.narrow, node, value))

    def _narrow(self, node):
        """The node as it is among the bytes of the base set."""
        if node not in self.narrow_memo:
            children = {self.to_bytes[char]: self._narrow(child)
                        for char, child in self.wide.children(node).items()
                        if char in self.to_bytes}
            self.narrow_memo[node] = self.narrow.intern(self.wide.order(node), children)
        return self.narrow_memo[node]

    def _heads(self):
        """Records of each tailored character, one language after the other."""
        self.wide_heads, self.narrow_heads = {}, {}
        for language in self.languages:
            for code, node in language.heads.items():
                self.wide_heads.setdefault(code, []).append((language.number, node))
                if code in self.to_bytes:
                    own = self._narrow(node)
                    if own != self._narrow(self.common.node(code)):
                        self.narrow_heads.setdefault(code, []).append((language.number, own))

    # Contents.

    def _record(self, nodes, node):
        """Number of the record of a node; a new one behind the pages if no character has it."""
        if (nodes, node) not in self.record_of:
            self.record_of[nodes, node] = len(self.records)
            self.records.append((nodes, node, None))
        return self.record_of[nodes, node]

    def _fill(self):
        self._followers()
        self.rows, index = [], 0
        while index < len(self.records):    # Grows while it runs.
            self.rows.append(self._row(*self.records[index]))
            index += 1
        assert len(self.links.rows) < 0x10000

    def _arrange(self):
        """Pages that no list leads into go behind all other records, so that the numbers in lists
        need 16 bits only."""
        pages, self.behind = self.narrow_first >> 8, len(self.rows) - self.narrow_first - 256
        used = {number >> 8 for number in self.numbers.values} | {0, 1, 2}
        early, late = ([page for page in range(pages) if (page in used) == wanted]
                       for wanted in (True, False))
        front, rest = self._rows_of(early), self.rows[self.narrow_first:]
        rest += [(0, 0, ABSENT, 0)] * (-len(rest) % 256)
        self.late_first = len(front) + len(rest)
        moved = {page: i for i, page in enumerate(early)}
        moved.update((page, (self.late_first >> 8) + i) for i, page in enumerate(late))
        self.pages = [moved[page] for page in self.pages]
        self.numbers.values = [
            (moved[number >> 8] << 8) + (number & 255) if number < self.narrow_first
            else number - self.narrow_first + len(front) for number in self.numbers.values]
        self.rows, self.narrow_first = front + rest + self._rows_of(late), len(front)
        assert max(self.numbers.values) < 0x10000

    def _rows_of(self, pages):
        return [row for page in pages for row in self.rows[page << 8:(page + 1) << 8]]

    def _followers(self):
        self.follow, self.follow_tailored = {}, {}
        for nodes, heads in ((self.wide, self.wide_heads), (self.narrow, self.narrow_heads)):
            own = [node for pairs in heads.values() for _, node in pairs]
            common = [node for where, node, _ in self.records if where is nodes and node]
            self.follow[nodes] = self._reached(nodes, common)
            self.follow_tailored[nodes] = self._reached(nodes, own) - self.follow[nodes]
        self.follow[self.wide] |= set(self.database.classes)
        self.follow_tailored[self.wide] -= self.follow[self.wide]

    @staticmethod
    def _reached(nodes, start):
        seen, pending, chars = set(start), list(start), set()
        while pending:
            for char, child in nodes.children(pending.pop()).items():
                chars.add(char)
                if child not in seen:
                    seen.add(child)
                    pending.append(child)
        return chars

    def _row(self, nodes, node, code):
        if node is None:
            return 0, 0, ABSENT, 0
        order, children = nodes.order(node), nodes.children(node)
        flags = 0
        if code is not None:
            value = code if nodes is self.wide else self.to_bytes[code]
            flags |= FOLLOWS if value in self.follow[nodes] else 0
            flags |= FOLLOWS_TAILORED if value in self.follow_tailored[nodes] else 0
            if nodes is self.wide and (code in self.database.classes
                                       or code in self.database.marked):
                flags |= COMBINES
            if code in self.database.chars and self.common.orders.weighs_nothing(code):
                flags |= EXPANSION      # To no words at all.
        expansion = contraction = tailoring = 0
        if len(order.words) > 1:
            flags |= EXPANSION
            run = order.words[1:]
            expansion = self.lists.number((len(run), self.units.place(run)))
        if children:
            flags |= CONTRACTIONS | (LOW_FOLLOWERS if min(children) < FIRST_MARK else 0)
            contraction = self._contraction(nodes, children)
        heads = self.wide_heads if nodes is self.wide else self.narrow_heads
        if order.words[0] >= FIRST_HAN and order_is_ranked(order):
            flags |= TAILORING      # By a table of its own; no language is listed.
        if code in heads:
            flags |= TAILORING
            tailoring = self._tailoring(nodes, heads[code])
        link = self.links.number((expansion, contraction, tailoring))
        return order_key(order.words[0], order.script), link, flags, order.script

    def _contraction(self, nodes, children):
        chars = tuple(sorted(children))
        records = tuple(self._record(nodes, children[char]) for char in chars)
        place = self.numbers.place(records)
        assert place < 0x10000
        return self.contractions.number((len(chars), self.units.place(chars), chars[0], place))

    def _tailoring(self, nodes, pairs):
        masks = [0, 0]
        for number, _ in pairs:
            masks[number >> 6] |= 1 << (number & 63)
        records = tuple(self._record(nodes, node) for _, node in sorted(pairs))
        return self.tailorings.number((masks[0], masks[1], self.numbers.place(records)))


def order_is_ranked(order):
    """Whether languages may hand out the word of this ideograph in another order."""
    first, block = (FIRST_WORD, UNIFIED) if order.script != OTHER else (FIRST_FURTHER_WORD, FURTHER)
    return first <= order.words[0] < first + len(block)


def combining_classes(database):
    """Class of each combining mark."""
    return {code: DECOMPOSES if code in database.marked else number
            for code, number in database.classes.items()}
