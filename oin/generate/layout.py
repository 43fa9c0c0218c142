"""A language's own layout of its alphabet: all letters of the script in the order that the rules of
CLDR make of the default table, each with a word of its own. The common words stay as they are."""

import rules
from alphabets import letter_word
from orders import Order

SLOTS, ACCENTS = 128, 32
POSITIONAL = {'initial', 'medial', 'final', 'isolated'}


class Layout:
    def __init__(self, database, orders, common, script, tokens):
        self.db, self.orders, self.script = database, orders, script
        self.alphabet = orders.alphabets[script]
        self.codes = [code for code in orders.of if self._is_letter(code)]
        self.is_cased = any(database.chars[code].upper for code in self.codes)
        tokens = list(tokens)
        letters = rules.Letters(self._items(common))
        before = set(letters.strings)
        self.spelled = rules.apply(tokens, letters)
        self.named = {(ord(char),) for kind, token in tokens if kind == 'string'
                      for char in token} | (set(letters.strings) - before)
        self.words, self.used = {}, {}
        self._place(letters.groups())
        self.entities = {self._entity(code): self.words[code,] for code in self.codes
                         if (code,) in self.words and self._entity(code)}

    def _is_letter(self, code):
        order = self.orders.of[code]
        return order.script == self.script and code in self.orders.groups and \
            all(0x4000 <= word < 0x8000 for word in order.words)

    def _entity(self, code):
        items = self.orders.groups[code].items
        return items[0][:2] if len(items) == 1 else None

    def _items(self, common):
        keyed = []
        for code in self.codes:
            items = self.orders.groups[code].items
            if len(items) == 1 and items[0][0] in self.alphabet.slots \
                    and common.original(code) == code \
                    and self.db.chars[code].tag not in POSITIONAL:
                keyed.append((items[0] + (code,)))
        return rules.items(keyed)

    def _place(self, groups):
        """Slots in rising order; rare letters share that of the letter before them where there are
        too many."""
        rare = [i for i, group in enumerate(groups) if i and not self._is_living(group)]
        excess = max(0, len(groups) - SLOTS)
        shared = {rare[i * len(rare) // excess] for i in range(excess)}
        slot = -1
        for i, group in enumerate(groups):
            slot += i not in shared
            for variants in group:
                self._number(slot, variants)
        assert slot < SLOTS, slot

    def _is_living(self, group):
        return any(string in self.named or len(string) > 1 or string[0] in self.db.living
                   for variants in group for string in variants)

    def _number(self, slot, variants):
        """One accent number for a letter and its variants, which differ in the case field."""
        number = 0
        for i, string in enumerate(variants):
            if i % 4 == 0 or self.is_cased:
                number = self.used.get(slot, 0) if i == 0 or not self.is_cased else number
                self.used[slot] = number + 1
            self.words[string] = letter_word(self._case(string, i), number, slot)
        assert self.used[slot] <= ACCENTS, (slot, variants)

    def _case(self, string, place):
        if not self.is_cased:
            return 3 - place % 4
        cases = [self.orders.of[code].words[0] >> 12 & 3 for code in string]
        return 3 if all(cases) else 1 if any(cases) else 0

    def orders_of_characters(self):
        """Order of each character of the script."""
        for code in self.codes:
            if (code,) in self.words:
                yield code, Order(self.script, (self.words[code,],))
                continue
            own = []
            for word, item in zip(self.orders.of[code].words, self.orders.groups[code].items):
                entity = self.entities.get(item[:2], self.entities.get((item[0], ())))
                own.append(None if entity is None else entity & ~0x3000 | word & 0x3000)
            if own and None not in own:
                yield code, Order(self.script, tuple(own))
        for string, word in self.words.items():     # Marks that are letters here.
            if len(string) == 1 and string[0] not in self.codes:
                yield string[0], Order(self.script, (word,))

    def orders_of_strings(self):
        """Orders of strings that contract, and of letters that sort as several."""
        for string, word in self.words.items():
            if len(string) > 1:
                yield string, Order(self.script, (word,))
        for string, (letters, _) in self.spelled.items():
            words = [self.words[code,] for code in letters]
            slot = words[0] & 0x7f
            number = self.used[slot]
            self.used[slot] += 1
            assert number < ACCENTS and len(words) <= 2
            yield string, Order(self.script, (letter_word(3, number, slot),) + tuple(words[1:]))
