"""Orders of ideographs by language: by pronunciation, by strokes, by the national code set.

The words of ideographs stay those of the common order, which is that of their codes; a language
only hands them out in another order. So a rank is a word, found by the word of the common order.
"""

import os
import re

FIRST_WORD, FIRST_FURTHER_WORD = 0xad80, 0x8000
UNIFIED, FURTHER = range(0x4e00, 0xa000), range(0x3400, 0x4dc0)
# File and type of the collation that a language follows.
SOURCES = {'ja': ('ja.xml', 'standard'), 'zh-Hans': ('zh.xml', 'pinyin'),
           'zh-Hant': ('zh.xml', 'stroke')}


def listed(folder, tag):
    """The characters of a collation's long lists, in their order."""
    name, kind = SOURCES[tag]
    with open(os.path.join(folder, 'collation', name), encoding='utf-8') as file:
        text = file.read()
    text = re.search(f'<collation type=["\']{kind}["\'].*?</collation>', text, re.S)[0]
    text = text[text.index('&[last regular]'):]
    for line in text.splitlines():
        for part in re.findall(r'<\*([^<#&]*)', line):
            yield from (ord(char) for char in part)


def words(codes, block, first):
    """The words of a block's characters, by code: listed ones first."""
    known = dict.fromkeys(code for code in codes if code in block)
    known.update(dict.fromkeys(block))
    rank = {code: first + place for place, code in enumerate(known)}
    return [rank[code] for code in block]


def table(folder, tag):
    codes = list(listed(folder, tag))
    assert sum(code in UNIFIED for code in codes) > 6000, tag
    return words(codes, UNIFIED, FIRST_WORD) + words(codes, FURTHER, FIRST_FURTHER_WORD)
