"""Names that people have for code sets and languages: those of the registries, by number.

Names of code sets come from IANA's registry of character sets, which the package
libi18n-charset-perl holds, and from Python's list of aliases; tags of languages from CLDR's lists of
aliases and likely scripts. All are kept in small letters: code sets without punctuation, tags with
hyphens between their parts.
"""

import encodings.aliases
import os
import re

import codesets

UNICODE = 0xfd
# Registered names and codecs of the sets, where their own name isn't one; the first is the set's
# own, others are sets that it holds whole.
REGISTERED = {
    0x16: ('windows-874',), 0x1c: ('TIS-620', 'ISO-8859-11'), 0x22: ('IBM00858',),
    0x30: ('macintosh',), 0x44: ('IBM01140',),
    **{0x46 + i: (f'IBM0{1141 + i}',) for i in range(9)}, 0x45: ('IBM1047',),
    0xe1: ('Windows-31J', 'Shift_JIS'), 0xe2: ('GBK', 'GB2312'),
    0xe4: ('KS_C_5601-1987', 'EUC-KR'), 0xe8: ('EUC-JP',),
    UNICODE: ('ISO-10646-UCS-2', 'UTF-16'),
}
CODECS = {0xe1: ('shift_jis',), 0xe2: ('gb2312',), 0xe3: ('big5',), 0xe4: ('euc_kr',)}
PREFIXES = ('windows', 'ebcdic', 'cp', 'ibm')
# Collations that are languages of their own here.
COLLATIONS = {'de-u-co-phonebk': 'de-phonebook', 'es-u-co-trad': 'es-traditional',
              'sv-u-co-trad': 'sv-traditional', 'zh-u-co-pinyin': 'zh-hans',
              'zh-u-co-stroke': 'zh-hant'}


def reduced(name):
    return ''.join(re.findall('[a-z0-9]+', name.lower()))


def read_registry(path):
    """Names of each registered set."""
    with open(path, encoding='iso8859-1') as file:
        records = re.findall(r'<record(.+?)</record>', file.read(), re.S)
    return [re.findall(r'<(?:name|alias|preferred_alias)>(.+?)</', record) for record in records]


def own_names():
    sets = {number: facts[0] for number, facts in {**codesets.ONE_BYTE, **codesets.TWO_BYTE}.items()}
    return {**sets, UNICODE: 'Unicode'}


def registered_names(registry):
    """What the registry calls each set, those that it holds whole included."""
    found, records = {}, read_registry(registry)
    for number, name in own_names().items():
        wanted = REGISTERED.get(number, (name, 'ibm' + reduced(name).lstrip('ebcdicp')))
        wanted = {reduced(one) for one in wanted}
        found[number] = [one for record in records if wanted & {reduced(one) for one in record}
                         for one in record]
    return found


def of_code_sets(registry):
    """Reduced name to number."""
    numbers = {}
    for number, name in own_names().items():    # Its own name, and the number in it.
        numbers[reduced(name)] = number
        for prefix in PREFIXES:
            if reduced(name).startswith(prefix):
                numbers[reduced(name)[len(prefix):]] = number
    for number, registered in registered_names(registry).items():
        for name in registered:
            numbers.setdefault(reduced(name), number)
    for number, (_, codec) in {**codesets.ONE_BYTE, **codesets.TWO_BYTE}.items():
        codecs = (codec,) + CODECS.get(number, ())
        for alias, target in encodings.aliases.aliases.items():
            if target in codecs and not alias.startswith('x_mac'):
                numbers.setdefault(reduced(alias), number)
        for one in codecs:
            numbers.setdefault(reduced(one.removeprefix('iconv ')), number)
    return numbers


def tag_of(text):
    return text.replace('_', '-').lower()


def of_languages(members, cldr):
    """Tag to number; a tag that isn't there has that of its beginning."""
    numbers = {tag_of(language.tag): language.number for language in members}
    if 'zh-hans' in numbers:
        numbers['zh'] = numbers['zh-hans']
    numbers.setdefault('no', numbers['nb'])
    numbers.setdefault('nn', numbers['nb'])     # Its other written form orders alike.
    own = dict(numbers)
    folder = os.path.join(cldr, 'supplemental')
    with open(os.path.join(folder, 'supplementalMetadata.xml'), encoding='utf-8') as file:
        aliases = re.findall(r'<languageAlias type="(\w+)" replacement="(\w+)"', file.read())
    with open(os.path.join(folder, 'likelySubtags.xml'), encoding='utf-8') as file:
        likely = re.findall(r'<likelySubtag from="(\w+)" to="([a-z]+)_(\w+)_\w+"', file.read())
    for tag, replacement in aliases:
        if tag_of(replacement) in own:
            numbers.setdefault(tag_of(tag), own[tag_of(replacement)])
    for tag, language, script in likely:    # Where a country writes another script.
        number = own.get(tag_of(f'{language}_{script}'))
        if number and tag_of(tag) not in numbers and tag.startswith(language + '_'):
            numbers[tag_of(tag)] = number
    parts = {tag: number for tag, number in numbers.items() if tag.count('-') == 1}
    for tag, replacement in aliases:    # Another code of a language takes the same parts.
        for name, number in parts.items():
            if '_' not in tag and name.startswith(replacement + '-'):
                numbers.setdefault(tag + name[len(replacement):], number)
    for tag, name in COLLATIONS.items():
        if name in own:
            numbers[tag] = own[name]
    return numbers
