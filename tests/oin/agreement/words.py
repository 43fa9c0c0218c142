"""Gathers lists of real words, one file TAG.txt a language, to hold orders against.

    words.py FOLDER            the word lists of Debian packages, fetched with apt-get download and
                               unpacked below FOLDER, without installing them, or those of ICU
    words.py --names FOLDER    the names of countries, languages and scripts that iso-codes has
                               installed

Every file is UTF-8, one word a line, in Unicode's composed form, each word once.
"""

import argparse
import glob
import gzip
import os
import re
import struct
import subprocess
import sys
import unicodedata

# Package of each language; CLDR and iso-codes stand in where no package has a list.
PACKAGES = {
    'en': 'wamerican', 'de': 'wngerman', 'fr': 'wfrench', 'es': 'wspanish', 'it': 'witalian',
    'pt': 'wportuguese', 'nl': 'wdutch', 'sv': 'wswedish', 'da': 'wdanish', 'nb': 'wnorwegian',
    'fi': 'dict-freedict-fin-eng', 'is': 'hunspell-is', 'pl': 'hunspell-pl', 'cs': 'hunspell-cs',
    'sk': 'hunspell-sk', 'hu': 'hunspell-hu', 'hr': 'hunspell-hr', 'sl': 'hunspell-sl',
    'sr': 'hunspell-sr', 'sr-Latn': 'hunspell-sr', 'ro': 'hunspell-ro', 'bg': 'wbulgarian',
    'uk': 'hunspell-uk', 'be': 'hunspell-be', 'ru': 'hunspell-ru', 'el': 'hunspell-el',
    'mk': 'dict-freedict-mkd-bul', 'tr': 'hunspell-tr', 'et': 'myspell-et', 'lv': 'hunspell-lv',
    'lt': 'hunspell-lt', 'cy': 'aspell-cy', 'ga': 'wirish', 'sq': 'myspell-sq', 'ca': 'wcatalan',
    'eu': 'hunspell-eu', 'gl': 'wgalician-minimos', 'vi': 'hunspell-vi', 'id': 'hunspell-id',
    'af': 'hunspell-af', 'fo': 'wfaroese', 'eo': 'wesperanto', 'he': 'hunspell-he',
    'ar': 'hunspell-ar', 'fa': 'myspell-fa', 'hi': 'hunspell-hi', 'bn': 'hunspell-bn',
    'pa': 'aspell-pa', 'gu': 'hunspell-gu', 'or': 'aspell-or', 'ta': 'aspell-ta',
    'te': 'hunspell-te', 'kn': 'aspell-kn', 'ml': 'hunspell-ml', 'si': 'hunspell-si',
    'th': 'hunspell-th', 'hy': 'myspell-hy', 'kk': 'hunspell-kk', 'ja': 'mecab-ipadic',
    'ko': 'hunspell-ko', 'zh-Hans': 'python3-jieba', 'zh-Hant': 'rime-essay',
    'bs': 'hunspell-bs', 'uz': 'hunspell-uz', 'hsb': 'aspell-hsb',
    'de-phonebook': 'wngerman', 'es-traditional': 'wspanish', 'sv-traditional': 'wswedish',
}
# Languages that write without blanks, by ICU's own lists of words; the program that prints them is
# that of the environment.
DICTIONARIES = {'my': 'burmesedict', 'km': 'khmerdict'}
PROGRAM = os.environ.get('OT95_AGREEMENT', '')
UNPACKER = 'aspell'     # Unpacks the word lists of its own.
# Words in another script of the same list are left out.
ALPHABETS = {'sr': 'CYRILLIC', 'sr-Latn': 'LATIN'}
# Names under which CLDR and iso-codes know a language.
ELSEWHERE = {'und': 'root', 'zh-Hans': 'zh', 'zh-Hant': 'zh_Hant', 'sr-Latn': 'sr_Latn',
             'nb': 'no'}
TRANSLATIONS = {'zh-Hans': 'zh_CN', 'zh-Hant': 'zh_TW', 'sr-Latn': 'sr@latin', 'nb': 'nb_NO',
                'bn': 'bn', 'uz': 'uz'}
CLDR = '/usr/share/unicode/cldr/common/main'
LOCALES = '/usr/share/locale'
LISTS = ('iso_3166-1', 'iso_3166-2', 'iso_3166-3', 'iso_639-2', 'iso_639-3', 'iso_639-5',
         'iso_4217', 'iso_15924')
MOST = 400000           # Words of a language; of a longer list every so many.
LONGEST = 60


def fetch(package, folder):
    """Where the files of a package stand, unpacked once."""
    place = os.path.join(folder, package)
    if not os.path.isdir(place):
        subprocess.run(['apt-get', 'download', '-qq', '-o', 'APT::Sandbox::User=root', package], cwd=folder, check=True)
        archive = glob.glob(os.path.join(folder, package + '_*.deb'))[0]
        subprocess.run(['dpkg-deb', '-x', archive, place + '.part'], check=True)
        os.remove(archive)
        os.rename(place + '.part', place)
    return place


def files(place, *patterns):
    return sorted(path for pattern in patterns
                  for path in glob.glob(os.path.join(place, pattern), recursive=True)
                  if os.path.isfile(path) and not os.path.islink(path))


def decoded(data, encoding=None):
    for name in (encoding, 'utf-8', 'iso8859-1'):
        try:
            return data.decode(name or 'utf-8')
        except (UnicodeDecodeError, LookupError):
            pass
    return ''


def setting(path, pattern):
    """What a dictionary's description says behind a key."""
    try:
        with open(path, 'rb') as file:
            match = re.search(pattern.encode(), file.read(), re.M)
    except OSError:
        return None
    return match[1].decode('ascii') if match else None


def read(path):
    with open(path, 'rb') as file:
        data = file.read()
    return gzip.decompress(data) if path.endswith(('.gz', '.dz')) else data


def hunspell(path):
    encoding = setting(os.path.splitext(path)[0] + '.aff', r'^\W*SET\s+([-\w]+)')
    for line in decoded(read(path), encoding).splitlines()[1:]:
        yield re.split(r'(?<!\\)/|\t', line)[0]


def aspell(path, unpacker):
    tag = re.match(r'[a-z]+', os.path.basename(path))[0]
    place = glob.glob(os.path.join(os.path.dirname(path), '..', '**', tag + '.dat'), recursive=True)
    place += glob.glob(path.split('/share/')[0] + f'/**/{tag}.dat', recursive=True)
    description = place[0] if place else ''
    encoding = setting(description, r'^data-encoding\s+([-\w]+)') or \
        setting(description, r'^charset\s+([-\w]+)')
    tool = os.path.join(unpacker, 'usr/bin/prezip-bin')
    data = read(path)
    words = subprocess.run([tool, '-d'], input=data, stdout=subprocess.PIPE, check=False).stdout
    for line in decoded(words or data, encoding).splitlines():
        yield line.split('/')[0]


def of_package(package, folder):
    place = fetch(package, folder)
    lists = files(place, 'usr/share/dict/*')
    if lists:
        for path in lists:
            encoding = 'cp1251' if package == 'wbulgarian' else None
            yield from decoded(read(path), encoding).splitlines()
    for path in files(place, '**/*.dic') if not lists else ():
        if os.path.exists(os.path.splitext(path)[0] + '.aff'):
            yield from hunspell(path)
    for path in files(place, '**/*.cwl', '**/*.cwl.gz', '**/*.wl.gz'):
        yield from aspell(path, fetch(UNPACKER, folder))
    for path in files(place, '**/dic/ipadic/*.csv'):
        for line in read(path).decode('euc_jp', 'ignore').splitlines():
            yield line.split(',')[0]
    for path in files(place, '**/jieba/dict.txt', '**/essay.txt'):
        for line in decoded(read(path)).splitlines():
            yield re.split(r'[ \t]', line)[0]
    for path in files(place, '**/dictd/*.index*'):
        for line in decoded(read(path)).splitlines():
            yield line.split('\t')[0]


def of_dictionary(name):
    if not PROGRAM:
        sys.exit('OT95_AGREEMENT has to name the program that prints the words of ICU')
    words = subprocess.run([PROGRAM, '--dictionary', name], stdout=subprocess.PIPE, check=True)
    return words.stdout.decode('utf-8').splitlines()


def of_cldr(tag):
    """What CLDR calls languages, countries, currencies, units in a language."""
    path = os.path.join(CLDR, ELSEWHERE.get(tag, tag) + '.xml')
    if os.path.exists(path):
        with open(path, encoding='utf-8') as file:
            text = file.read()
        for inner in re.findall(r'<(?:language|territory|script|variant|displayName|exemplarCity|'
                                r'month|day|unitPattern|annotation)\b[^>]*>([^<]+)<', text):
            yield re.sub(r'\{\d\}', '', inner)
    if tag == 'und':
        for other in ('en', 'de', 'fr', 'pl', 'ru', 'el', 'he', 'ar', 'hi', 'th', 'ka', 'hy'):
            yield from of_cldr(other)


def catalogue(path):
    """The translations in a compiled catalogue, without its heading."""
    with open(path, 'rb') as file:
        data = file.read()
    order = '<' if data[:4] == b'\xde\x12\x04\x95' else '>'
    count, originals, translations = struct.unpack_from(order + '3I', data, 8)
    for i in range(count):
        length, = struct.unpack_from(order + 'I', data, originals + 8 * i)
        size, place = struct.unpack_from(order + '2I', data, translations + 8 * i)
        if length:
            yield data[place:place + size].decode('utf-8')


def of_translations(tag):
    """The installed translations of iso-codes."""
    language = TRANSLATIONS.get(tag, tag.split('-')[0])
    if tag == 'und':
        for other in ('de', 'fr', 'pl', 'ru', 'el', 'he', 'ar', 'hi', 'th', 'ka', 'hy'):
            yield from of_translations(other)
    for name in LISTS:
        path = os.path.join(LOCALES, language, 'LC_MESSAGES', name + '.mo')
        if os.path.exists(path):
            yield from catalogue(path)
    if tag == 'en':
        yield from english_names()


def english_names():
    for path in sorted(glob.glob('/usr/share/iso-codes/json/iso_*.json')):
        with open(path, encoding='utf-8') as file:
            yield from re.findall(r'"name": "([^"\\]+)"', file.read())


def chosen(words, tag):
    """The words in composed form, each once; of a long list every so many."""
    alphabet = ALPHABETS.get(tag)
    kept = set()
    for word in words:
        word = unicodedata.normalize('NFC', word.strip())
        if word and len(word) <= LONGEST and not word.startswith('00') \
                and (alphabet is None or all(unicodedata.name(c, '').startswith(alphabet)
                                             for c in word if c.isalpha())):
            kept.add(word)
    kept = sorted(kept)
    return kept[::len(kept) // MOST + 1]


def gather(tag, folder, names):
    if names:
        return chosen(of_translations(tag), tag)
    words = []
    if tag in PACKAGES:
        words = chosen(of_package(PACKAGES[tag], os.path.join(folder, 'packages')), tag)
    if tag in DICTIONARIES:
        words = chosen(of_dictionary(DICTIONARIES[tag]), tag)
    if len(words) < 2000 or tag in DICTIONARIES:
        words += chosen(list(of_cldr(tag)) + list(of_translations(tag)), tag)
        words = sorted(set(words))
    return words


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--names', action='store_true', help='names of iso-codes only')
    parser.add_argument('folder')
    parser.add_argument('tags', nargs='*', help='languages; all that have a source')
    options = parser.parse_args()
    os.makedirs(os.path.join(options.folder, 'packages'), exist_ok=True)
    for tag in options.tags:
        path = os.path.join(options.folder, tag + '.txt')
        if os.path.exists(path):
            continue
        words = gather(tag, options.folder, options.names)
        with open(path + '.part', 'w', encoding='utf-8') as file:
            file.writelines(word + '\n' for word in words)
        os.rename(path + '.part', path)
        if not options.names:
            print(f'{tag}: {len(words)} words', file=sys.stderr)


if __name__ == '__main__':
    main()
