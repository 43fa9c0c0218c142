"""The type manager of an object database: its values, their stored forms, orders and keys.

>>> stored = ot95.encode("OtString", ["Orleans", "Tours"], "big-endian")
>>> ot95.decode(stored)
['Orleans', 'Tours']
>>> sorted(["Zorn", "Åmål", "Örebro", "Orsa"], key=ot95.collation("sv"))
['Orsa', 'Zorn', 'Åmål', 'Örebro']
>>> ot95.match("San*", ["Santiago", "Lima"])
['Santiago']

A value that a type can't hold, or bytes that hold no such value, raise ``ot95.Error``, a
``ValueError`` that says what was expected. The interpreter's lock is given up during each call of
the library, so that threads work at once.
"""
from ._collation import Collation, Range, collation, match
from ._library import Error
from ._records import DamagedRecord, Member, Records, parse_layout, records
from ._stored import (Damaged, Estimate, Stored, compare, convert, decode, encode, estimate, hash,
                      hash64, match_value, scan, sort_key, to_text, translate, verify)
from ._types import OLD_TABLE, Language, Option, Type, Versions, language, types, versions
from ._values import Identity, Moment

WILDCARDS = Option.WILDCARDS
IGNORE_CASE = Option.IGNORE_CASE
IGNORE_ACCENT = Option.IGNORE_ACCENT
IGNORE_SPACE = Option.IGNORE_SPACE
ORDER_ONLY = Option.ORDER_ONLY
IGNORE_SYMBOLS = Option.IGNORE_SYMBOLS

for _name in [Error, Damaged, DamagedRecord, Stored, Estimate, Collation, Range, Records, Member,
              Type, Language, Versions, Option, Moment, Identity]:
    _name.__module__ = "ot95"
del _name

__all__ = [
    "Collation", "Damaged", "DamagedRecord", "Error", "Estimate", "IGNORE_ACCENT", "IGNORE_CASE",
    "IGNORE_SPACE", "IGNORE_SYMBOLS", "Identity", "Language", "Member", "Moment", "OLD_TABLE",
    "ORDER_ONLY", "Option", "Range", "Records", "Stored", "Type", "Versions", "WILDCARDS",
    "collation", "compare", "convert", "decode", "encode", "estimate", "hash", "hash64", "language",
    "match", "match_value", "parse_layout", "records", "scan", "sort_key", "to_text", "translate", "types",
    "verify", "versions"]
