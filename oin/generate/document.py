"""Writes docs/codesets.md: the persistent numbers of code sets and languages."""

import codesets
import names

SHOWN = 4       # Other names of a code set that are worth the place.
SCRIPTS = ('language\'s', 'Latin', 'Greek', 'Cyrillic', 'Georgian', 'Armenian', 'Hebrew', 'Arabic',
           'Devanagari', 'Bengali', 'Gurmukhi', 'Gujarati', 'Oriya', 'Tamil', 'Telugu', 'Kannada',
           'Malayalam', 'Sinhala', 'Thai', 'East Asian', 'other')
HEAD = '''\
# Numbers of code sets and languages

Made from the tables by `oin/generate/generate.py`; don't edit.

These numbers are stored: every text carries its code set and its language, one byte each. A number
that was given stays given. Programs find numbers by name with `OtLanguageContext::CodeSetOfName` and
`LanguageOfTag`, which know all names of IANA's registry of character sets and all BCP 47 tags;
`ottm codesets` and `ottm languages` print what the library has.

## Code sets

Up to 224 (e0) a character is one byte, above it two. 0 is raw 8-bit text, for which Windows-1252
stands in where a set is needed; 253 (fd) is Unicode; 254 (fe) marks order words inside an index key;
255 (ff) as an argument asks for the default and is never stored. An unknown number is read as
Windows-1252 or, above 224, as Unicode.

'''
NOTES = '''
- Two-byte sets hold units of 16 bits: the lead byte high, single bytes as 00xx. What a set spells with
  more bytes is replaced: the four-byte part of GB18030, the JIS X 0212 part of EUC-JP.
- The way down from Unicode takes the maker's preference where a set has a character twice: CP932 as
  Windows, the IBM extensions before NEC's selection of them.
- Windows-1258 spells Vietnamese letters with a tone behind them. Conversion of texts takes letters
  apart on the way down and puts them together on the way up.
- A character that a set doesn't have becomes its SUB control: 1a, in EBCDIC sets 3f, in Unicode fffd.
  Nothing is replaced by something that only looks alike.

## Languages

Numbers are below 128. How each language orders, and how far it agrees with others:
[languages.md](languages.md).

'''


def other_names(number, own, registered):
    """Names that say something else than the set's own, the shortest first."""
    known = {names.reduced(own)}
    shown = []
    for name in sorted(registered.get(number, ()), key=lambda text: (len(text), text)):
        if names.reduced(name) not in known and not name.lower().startswith(('cs', 'iso-ir', 'ccsid')):
            known.add(names.reduced(name))
            shown.append(name)
    return ', '.join(shown[:SHOWN])


def row(*cells):
    return '| ' + ' | '.join(map(str, cells)) + ' |\n'


def code_sets(registry):
    registered = names.registered_names(registry)
    text = row('Number', 'Name', 'Bytes', 'Also') + '|---|---|---|---|\n'
    sets = {**{number: (name, 1) for number, (name, _) in codesets.ONE_BYTE.items()},
            **{number: (name, 2) for number, (name, _) in codesets.TWO_BYTE.items()},
            names.UNICODE: ('Unicode', 2)}
    for number, (name, width) in sorted(sets.items()):
        text += row(f'{number} ({number:02x})', name, width, other_names(number, name, registered))
    return text


def languages(members, tags):
    text = row('Number', 'Tag', 'Language', 'Script', 'Also') + '|---|---|---|---|---|\n'
    for language in sorted(members, key=lambda member: member.number):
        others = sorted(tag for tag, number in tags.items() if number == language.number
                        and tag != names.tag_of(language.tag) and len(tag) < 8
                        and ('-' not in tag or tag.split('-')[0] == language.tag.split('-')[0]))
        text += row(f'{language.number} ({language.number:02x})', f'`{language.tag}`', language.name,
                    SCRIPTS[language.script], ', '.join(f'`{tag}`' for tag in others[:SHOWN + 4]))
    return text


def document(members, tags, registry):
    return HEAD + code_sets(registry) + NOTES + languages(members, tags)
