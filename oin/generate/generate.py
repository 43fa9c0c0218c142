#!/usr/bin/env python3
"""Generates the data of the internationalisation library.

Reads the Debian packages unicode-data and unicode-cldr-core; writes oin_data.inc, oin_codes.inc,
oin_wide.inc, oin_versions.inc, orders.tsv and report.txt. With --frozen it fails if an order that has been given
out would change, because index keys on disk hold them.
"""

import argparse
import os
import sys

import casing
import check
import emit
import ideographs
import languages
import tailoring
import versions
from orders import Orders
from tables import Tables
from ucd import Database


def arguments():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--unicode', default='/usr/share/unicode', help='folder of UnicodeData.txt')
    parser.add_argument('--cldr', default='/usr/share/unicode/cldr/common',
                        help='folder of main/*.xml')
    parser.add_argument('--output', default=os.path.join(here, '..', 'data'))
    parser.add_argument('--frozen', help='a list of orders that must stay')
    return parser.parse_args()


def write(folder, name, text):
    with open(os.path.join(folder, name), 'w', encoding='utf-8', newline='\n') as file:
        file.write(text)


def expand(lines):
    """Language, string, script and words of every assignment, runs taken apart."""
    for line in lines:
        tag, string, script, words = line.rstrip('\n').split('\t')
        first, _, last = string.partition('..')
        if not last:
            yield tag, string, script, words
            continue
        start = int(words.rstrip('+'), 16)
        for place in range(int(last, 16) - int(first, 16) + 1):
            yield tag, f'{int(first, 16) + place:04x}', script, f'{start + place:04x}'


def lost(path, assigned):
    """What a frozen list holds and the new assignments don't."""
    with open(path, encoding='utf-8') as file:
        return sorted(set(expand(file)) - set(expand(assigned.splitlines())))


def main():
    options = arguments()
    database = Database(options.unicode, options.cldr)
    orders = Orders(database, tailoring.gaps(languages.LANGUAGES))
    common = tailoring.Common(database, orders, tailoring.Nodes())
    members = [tailoring.Language(row, common) for row in languages.LANGUAGES]
    check.check(database, orders, members)
    assigned = emit.assignments(orders.of, members)
    if options.frozen:
        changed = lost(options.frozen, assigned)
        if changed:
            print(f'{len(changed)} orders would change, such as:', *changed[:10], sep='\n')
            return 1
    tables = Tables(database, common, members)
    ranks = [ideographs.table(options.cldr, tag) for tag in ideographs.SOURCES]
    cases = casing.Cases(database)
    os.makedirs(options.output, exist_ok=True)
    case_text = emit.cases(cases, tables.units)
    write(options.output, 'oin_data.inc', emit.HEADER + emit.orders(tables)
          + emit.marks(database) + emit.ideographs(ranks) + emit.languages(members) + emit.units(tables.units))
    write(options.output, 'oin_codes.inc',
          emit.HEADER + case_text + emit.one_byte_sets(cases))
    write(options.output, 'oin_wide.inc', emit.HEADER + emit.two_byte_sets())
    write(options.output, 'oin_versions.inc', emit.HEADER + emit.versions(
        versions.unicode(options.unicode), versions.cldr(options.cldr)))
    write(options.output, 'orders.tsv', assigned)
    write(options.output, 'report.txt', check.report(database, orders, members, tables))
    return 0


if __name__ == '__main__':
    sys.exit(main())
