"""The versions of the sources, as they themselves tell them."""

import os
import re


def first_match(path, pattern):
    with open(path, encoding='utf-8') as lines:
        for line in lines:
            found = re.search(pattern, line)
            if found:
                return found.group(1)
    raise ValueError(f'{path}: no version')


def unicode(folder):
    return first_match(os.path.join(folder, 'allkeys.txt'), r'^@version (\S+)')


def cldr(folder):
    return first_match(os.path.join(folder, 'dtd', 'ldml.dtd'), r'version cldrVersion .*"(\S+)"')
