"""What must hold of the orders before they are written, and a report of how they came out."""

from alphabets import OTHER
from orders import DIGIT, FIRST_VARIANT, most_words
from tailoring import FIRST_MARK


def check(database, orders, members):
    for code in database.chars:
        check_order((code,), orders.of[code])
    check_marks(database, orders)
    for code in range(0x200):
        assert code in orders.of, hex(code)
    assert all(mark >= FIRST_MARK for base, mark in database.composed if base < 0x80)
    for language in members:
        for string, order in own_orders(language).items():
            check_order(string, order)
        check_cases(database, language)
    for byte in range(0xc0, 0x100):
        check_byte(orders, byte)


MARKS = range(FIRST_VARIANT, 0x3f8)     # As the library's headers say.


def check_marks(database, orders):
    """Marks that are symbols, and nothing else that people see, have the words of marks."""
    for code in orders.symbols:
        elements = database.elements.get((code,), ())
        assert (orders.of[code].words[0] in MARKS) == (not any(e.primary for e in elements)), \
            hex(code)


def own_orders(language):
    orders = {(code,): order for code, order in language.own.items()}
    orders.update(language.strings)
    return orders


def check_order(name, order):
    assert 1 <= len(order.words) <= most_words(name), name
    assert len(order.words) == 1 or order.words[0] >= DIGIT, name
    assert all(0 < word < 0xfff0 for word in order.words) or name == (0,), name
    assert order.script <= OTHER, name
    if order.script == 0:
        assert order.words[0] < 0x4000, name


def check_cases(database, language):
    """Partners in case differ in the case field only."""
    turkish = {ord(letter) for letter in 'iIıİ'} if language.tag in ('tr', 'az') else ()
    for code, char in database.chars.items():
        partner = database.chars.get(char.lower)
        if partner is None or partner.upper != code or code in turkish:
            continue
        high = language.own.get(code) or language.orders.of[code]
        low = language.own.get(char.lower) or language.orders.of[char.lower]
        if 0x4000 <= high.words[0] < 0x8000 and high.script != OTHER:
            assert high.script == low.script and len(high.words) == len(low.words) and \
                all((a ^ b) & ~0x3000 == 0 for a, b in zip(high.words, low.words)), \
                (language.tag, chr(code), high, low)


def check_byte(orders, byte):
    """A printed key finds an accented letter by its word: no lower byte may have it."""
    word = orders.of[byte].words[0]
    if 0x4000 <= word < 0x8000 and word >> 7 & 31:
        assert all(orders.of[lower].words[0] != word for lower in range(0x80, byte)), hex(byte)


def report(database, orders, members, tables):
    lines = ['Characters with a record: %d' % len(orders.of),
             'Symbols numbered: %d; script 0x14: %d' % (len(orders.symbols), len(orders.others)),
             'Letters spelled as letter and mark: %s' % ' '.join(map(chr, orders.unnumbered)),
             'Records of two words: %d' % sum(len(o.words) == 2 for o in orders.of.values()), '',
             'Alphabet  primaries  slots  neighbours apart']
    for number, alphabet in sorted(orders.alphabets.items()):
        slots = [alphabet.slots[primary] for primary in alphabet.primaries]
        assert slots == sorted(slots), number
        apart = sum(a != b for a, b in zip(slots, slots[1:]))
        lines.append('%02x %14d %6d %12.1f%%' % (number, len(slots), len(set(slots)),
                                                100 * apart / (len(slots) - 1)))
    lines += ['', 'Language  tailored characters  contractions']
    lines += ['%-16s %6d %6d' % (language.tag, len(language.heads), len(language.strings))
              for language in members if language.heads]
    lines += ['', 'Records: %d; behind the pages and the base set: %d'
              % (len(tables.rows), tables.behind),
              'Contraction sets: %d; tailoring sets: %d; links: %d; record numbers: %d; units: %d'
              % (len(tables.contractions.rows), len(tables.tailorings.rows),
                 len(tables.links.rows), len(tables.numbers.values), len(tables.units.values))]
    return '\n'.join(lines) + '\n'
