#!/usr/bin/env python3
"""The release is one number, wherever it is said."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PLACES = {
    "obs/include/ot95/version.h": r'define OT95_RELEASE "([\d.]+)"',
    "CHANGELOG.md": r"^## \[([\d.]+)\]",
    "debian/changelog": r"^ot95 \(([\d.]+)\)",
    "docs/ottm.1": r"^\.TH .* ([\d.]+)\"",
    "docs/otdb.1": r"^\.TH .* ([\d.]+)\"",
}


class Release(unittest.TestCase):
    def test_is_the_same_everywhere(self):
        said = {}
        for path, pattern in PLACES.items():
            found = re.search(pattern, (ROOT / path).read_text(encoding="utf-8"), re.M)
            self.assertIsNotNone(found, path)
            said[path] = found[1]
        self.assertEqual(len(set(said.values())), 1, said)


if __name__ == "__main__":
    unittest.main()
