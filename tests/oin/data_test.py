"""Generates the data of the internationalisation library again and compares it with what is
committed, where the two packages that it comes from are installed."""

import filecmp
import os
import subprocess
import sys
import tempfile

SKIPPED = 77
UNICODE = '/usr/share/unicode'
CLDR = '/usr/share/unicode/cldr/common'
OIN = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'oin')
FILES = ('oin_data.inc', 'oin_codes.inc', 'oin_wide.inc', 'oin_versions.inc', 'orders.tsv',
         'report.txt')


def source_is_known():
    """Whether the versions are those that the committed tables were made from."""
    try:
        with open(os.path.join(UNICODE, 'allkeys.txt'), encoding='utf-8') as keys:
            first = keys.readline()
        return 'allkeys-15.0.0' in first and os.path.isdir(os.path.join(CLDR, 'main'))
    except OSError:
        return False


def main():
    if not source_is_known():
        print('skipped: unicode-data 15.0.0 and unicode-cldr-core are not installed')
        return SKIPPED
    data = os.path.join(OIN, 'data')
    with tempfile.TemporaryDirectory() as made:
        subprocess.run([sys.executable, '-B', os.path.join(OIN, 'generate', 'generate.py'),
                        '--output', made, '--frozen', os.path.join(data, 'orders.tsv')],
                       check=True)
        same, different, missing = filecmp.cmpfiles(made, data, FILES, shallow=False)
    for name in different + missing:
        print(name, 'is not what oin/generate/generate.py writes')
    return 0 if len(same) == len(FILES) else 1


if __name__ == '__main__':
    sys.exit(main())
