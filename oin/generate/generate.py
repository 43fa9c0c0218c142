#!/usr/bin/env python3
"""Generates the data of the internationalisation library.

Reads the Debian packages unicode-data, unicode-cldr-core and libi18n-charset-perl; writes
oin_data.inc, oin_codes.inc, oin_wide.inc, oin_names.inc, oin_versions.inc, orders.tsv and
report.txt. It fails if a word that was released would change, because
index keys on disk hold them; released.py tells how words come to change nevertheless.
"""

import argparse
import os
import sys

import casing
import check
import document
import emit
import ideographs
import languages
import names
import released
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
    parser.add_argument('--charsets', default='/usr/share/perl5/I18N/Charset.pm',
                        help="file that holds IANA's registry of character sets")
    data = os.path.join(here, '..', 'data')
    parser.add_argument('--output', default=data)
    parser.add_argument('--docs', default=os.path.join(here, '..', '..', 'docs'))
    parser.add_argument('--frozen', default=data,
                        help='folder of COLLATION, CHANGES and orders.tsv, whose words must stay')
    parser.add_argument('--release', action='store_true',
                        help='close the list of an open collation: its words are given out')
    return parser.parse_args()


def write(folder, name, text):
    with open(os.path.join(folder, name), 'w', encoding='utf-8', newline='\n') as file:
        file.write(text)


def read_languages(database, rows):
    """What all languages share, and each of them."""
    orders = Orders(database, tailoring.gaps(rows))
    common = tailoring.Common(database, orders, tailoring.Nodes())
    return common, [tailoring.Language(row, common) for row in rows]


def listed(common, members, folder, ranks, marks):
    """The lines of the list of words, and the versions of the languages."""
    walk = released.read_number(os.path.join(folder, 'COLLATION'), 'walk')
    order_versions = released.Versions(common, members, walk, ranks, marks)
    return released.listed(common, members, order_versions), order_versions


def admit(lines, folder):
    """The number of the collation, and the first line of its list."""
    number = released.read_number(os.path.join(folder, 'COLLATION'), 'number')
    return number, released.admit(lines, number, os.path.join(folder, 'orders.tsv'),
                                  os.path.join(folder, 'CHANGES'))


def main():
    options = arguments()
    database = Database(options.unicode, options.cldr)
    common, members = read_languages(database, languages.LANGUAGES)
    orders = common.orders
    check.check(database, orders, members)
    ranks = {tag: ideographs.table(options.cldr, tag) for tag in ideographs.SOURCES}
    marks = emit.marks(database)
    lines, order_versions = listed(common, members, options.frozen, ranks, marks.encode())
    try:
        number, heading = admit(lines, options.frozen)
    except released.Refused as refused:
        print(refused)
        return 1
    if options.release:
        heading = released.heading(number, released.RELEASED)
    tables = Tables(database, common, members)
    cases = casing.Cases(database)
    os.makedirs(options.output, exist_ok=True)
    case_text = emit.cases(cases, tables.units)
    write(options.output, 'oin_data.inc', emit.HEADER + emit.orders(tables)
          + marks + emit.ideographs(ranks.values()) + emit.languages(members, order_versions)
          + emit.units(tables.units))
    write(options.output, 'oin_codes.inc',
          emit.HEADER + case_text + emit.one_byte_sets(cases))
    write(options.output, 'oin_wide.inc', emit.HEADER + emit.two_byte_sets())
    write(options.output, 'oin_versions.inc', emit.HEADER + emit.versions(
        versions.unicode(options.unicode), versions.cldr(options.cldr), number))
    tags = names.of_languages(members, options.cldr)
    write(options.output, 'oin_names.inc', emit.HEADER + emit.names('Tag', tags)
          + emit.names('CodeSet', names.of_code_sets(options.charsets)))
    write(options.docs, 'codesets.md', document.document(members, tags, options.charsets))
    write(options.output, 'orders.tsv', heading + '\n'.join(lines) + '\n')
    write(options.output, 'report.txt', check.report(database, orders, members, tables))
    return 0


if __name__ == '__main__':
    sys.exit(main())
