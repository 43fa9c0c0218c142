"""Holds the order of every language against ICU on the names of countries, languages and scripts
that iso-codes has installed; `make check-orders` does the same on lists of words."""

import os
import subprocess
import sys
import tempfile

SKIPPED = 77
HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'agreement')
PROGRAM = os.environ.get('OT95_AGREEMENT', '')
NAMES = '/usr/share/iso-codes'


def run(*arguments):
    result = subprocess.run([PROGRAM, *arguments], stdout=subprocess.PIPE, check=False)
    return result.returncode, result.stdout.decode('utf-8')


def main():
    if not os.path.exists(PROGRAM) or not os.path.isdir(NAMES):
        print('skipped: ICU or iso-codes is not installed')
        return SKIPPED
    least = os.path.join(HERE, 'names.thresholds')
    accept = ['--accept'] if '--accept' in sys.argv else []
    with tempfile.TemporaryDirectory() as names:
        tags = run('--tags')[1].split()
        subprocess.run([sys.executable, '-B', os.path.join(HERE, 'words.py'), '--names', names,
                        *tags], check=True)
        status, table = run('--thresholds', least, *accept, names)
        print(table)
        # The order of another language has to be refused, or the measure measures nothing.
        for tag, other in (('sv', 'und'), ('cs', 'pl'), ('und', 'lt'), ('de', 'et')):
            if run('--thresholds', least, '--order-as', other, names, tag)[0] != 1:
                print(f'{tag} names in the order of {other} pass')
                return 1
    return status


if __name__ == '__main__':
    sys.exit(main())
