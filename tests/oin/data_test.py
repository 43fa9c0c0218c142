"""Generates the data of the internationalisation library again and compares it with what is
committed, where the packages that it comes from are installed; and plants changes of released words,
every one of which has to be refused."""

import filecmp
import os
import subprocess
import sys
import tempfile

SKIPPED = 77
UNICODE = '/usr/share/unicode'
CLDR = '/usr/share/unicode/cldr/common'
CHARSETS = '/usr/share/perl5/I18N/Charset.pm'
OIN = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'oin')
DATA = os.path.join(OIN, 'data')
DOCS = os.path.join(OIN, '..', 'docs')
FILES = ('oin_data.inc', 'oin_codes.inc', 'oin_wide.inc', 'oin_names.inc', 'oin_versions.inc',
         'orders.tsv', 'report.txt')

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(OIN, 'generate'))
import emit         # noqa: E402
import generate     # noqa: E402
import ideographs   # noqa: E402
import languages    # noqa: E402
import released     # noqa: E402
import tailoring    # noqa: E402
from ucd import Database    # noqa: E402


def source_is_known():
    """Whether the versions are those that the committed tables were made from."""
    try:
        with open(os.path.join(UNICODE, 'allkeys.txt'), encoding='utf-8') as keys:
            first = keys.readline()
        return ('allkeys-15.0.0' in first and os.path.isdir(os.path.join(CLDR, 'main'))
                and os.path.exists(CHARSETS))
    except OSError:
        return False


def regenerated():
    with tempfile.TemporaryDirectory() as made:
        subprocess.run([sys.executable, '-B', os.path.join(OIN, 'generate', 'generate.py'),
                        '--output', made, '--docs', made], check=True)
        strays = [name for folder, files in ((DATA, FILES), (DOCS, ('codesets.md',)))
                  for name in sum(filecmp.cmpfiles(made, folder, files, shallow=False)[1:], [])]
    for name in strays:
        print(name, 'is not what oin/generate/generate.py writes')
    return not strays


def is_told(lines):
    """Whether the document of orders tells the versions that the languages have."""
    with open(os.path.join(DOCS, 'languages.md'), encoding='utf-8') as file:
        document = file.read()
    versions = [text.split('\t') for text in lines if text.startswith('language ')]
    strays = [tag for _, tag, _, version in versions
              if f' | `{tag}` | ' not in document or f'`{version}`' not in document]
    if strays:
        print('docs/languages.md tells other orders, run make check-orders:', *strays)
    return not strays


class Plants:
    """A released collation 7, and what is tried on it."""

    def __init__(self):
        database = Database(UNICODE, CLDR)
        self.common, self.members = generate.read_languages(database, languages.LANGUAGES)
        self.ranks = {tag: ideographs.table(CLDR, tag) for tag in ideographs.SOURCES}
        self.marks = emit.marks(database).encode()
        self.lines = self.listed(self.members)
        self.failures = 0

    def listed(self, members):
        return generate.listed(self.common, members, DATA, self.ranks, self.marks)[0]

    def with_two_ideographs_swapped(self):
        first, second, *rest = self.ranks['ja']
        ranks = {**self.ranks, 'ja': [second, first, *rest]}
        return generate.listed(self.common, self.members, DATA, ranks, self.marks)[0]

    def spanish_with_ch(self):
        row, = (row for row in languages.LANGUAGES if row[1] == 'es')
        own = tailoring.Language(row[:4] + (row[4] + ' ch=c.1',) + row[5:], self.common)
        return self.listed([own if member.tag == 'es' else member for member in self.members])

    def without(self, tag, place):
        kept = [text for text in self.lines
                if not (text.startswith(tag + '\t') and place(text.split('\t')[1]))]
        assert len(kept) < len(self.lines)
        return kept

    def replaced(self, old, new):
        text = '\n'.join(self.lines)
        assert old in text
        return text.replace(old, new, 1).split('\n')

    def expect(self, name, told, frozen=None, lines=None, number=7, changes='7\twhatever\n'):
        """Holds `lines` against a released list; `told` is part of why they are refused, or the
        first line of what may be written."""
        with tempfile.TemporaryDirectory() as folder:
            for file, text in (('COLLATION', f'number {number}\nwalk 1\n'), ('CHANGES', changes),
                               ('orders.tsv', '\n'.join(frozen or self.lines) + '\n')):
                with open(os.path.join(folder, file), 'w', encoding='utf-8') as out:
                    out.write((released.heading(7, released.RELEASED)
                               if file == 'orders.tsv' else '') + text)
            try:
                answer = generate.admit(lines or self.lines, folder)[1]
            except released.Refused as refused:
                answer = 'refused: ' + str(refused)
        if told not in answer:
            print(f'{name}: expected "{told}", found "{answer}"')
            self.failures += 1

    def run(self):
        thai, new, refused = '0e', '8\twhy\n', 'refused: '
        self.expect('nothing changed', '# collation 7 released')
        changed = self.spanish_with_ch()
        self.expect('a letter more in Spanish', refused, lines=changed)
        self.expect('its contraction is told', 'new: es 0043 0048:', lines=changed)
        self.expect('a list without Thai', 'new: - 0e', frozen=self.without(
            '-', lambda name: name.startswith(thai)))
        self.expect('a list without a contraction', 'new: - 0061 030', frozen=self.without(
            '-', lambda name: name.startswith('0061 030')))
        self.expect('a list without a language', 'new: sv ', frozen=self.without(
            'sv', lambda name: True))
        self.expect('a word less now', 'gone: - 0e', lines=self.without(
            '-', lambda name: name.startswith(thai)))
        self.expect('another expansion', 'other: - 00df:', frozen=self.replaced(
            '\n-\t00df\t01\t', '\n-\t00df\t01\t7000 '))
        self.expect('another code set', 'other: set 42', frozen=self.replaced(
            'set 42\tEBCDIC 273\t-\t', 'set 42\tEBCDIC 273\t-\t1'))
        self.expect('two ideographs swapped', 'other: language 3f ja:',
                    lines=self.with_two_ideographs_swapped())
        self.expect('a number without a reason', refused + 'CHANGES', lines=changed, number=8)
        self.expect('the next number', '# collation 8 open', lines=changed, number=8, changes=new)
        self.expect('a number left out', refused, lines=changed, number=9, changes='9\twhy\n')
        self.expect('a number taken back', refused, lines=changed, number=6, changes='6\twhy\n')
        return self.failures == 0


def main():
    if not source_is_known():
        print('skipped: unicode-data 15.0.0, unicode-cldr-core and libi18n-charset-perl are not '
              'installed')
        return SKIPPED
    plants = Plants()
    return 0 if regenerated() and is_told(plants.lines) and plants.run() else 1


if __name__ == '__main__':
    sys.exit(main())
