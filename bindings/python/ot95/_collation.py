"""Texts without a record: the order of a language."""
from typing import Any, Iterable, List, NamedTuple, Optional, Tuple

from ._library import Error, check, ffi, give, lib
from ._types import language
from ._values import utf8

_ROOM = 1024


class Range(NamedTuple):
    """Keys from ``lower`` up to, but not with, ``upper``; None stands for no such end."""

    lower: Optional[bytes]
    upper: Optional[bytes]


class Collation:
    """The order of a language, to be had of ``ot95.collation``.

    Calling it gives a text's sort key, which is what ``key=`` of ``sorted``, ``min`` or
    ``list.sort`` wants. It doesn't change, can be pickled, and threads may share it.
    """

    def __init__(self, tag: str = "", options: int = 0) -> None:
        if tag:
            language(tag)
        if options & 0x10000:
            raise Error("expected options without ot95.WILDCARDS: match has them by itself")
        out = ffi.new("ot95_collation**")
        check(lib.ot95_collation_open(tag.encode(), options, out), f"collation {tag!r}")
        self.tag, self.options = tag, int(options)
        self._handle = ffi.gc(out[0], lib.ot95_free)
        self._rooms: List[Any] = []  # one for each thread that is in __call__

    def __call__(self, text: str) -> bytes:
        """The sort key of a text; the same as ``key``."""
        data = utf8("collation", text)
        try:
            room = self._rooms.pop()
        except IndexError:
            memory = ffi.new("char[]", _ROOM)
            room = ffi.new("ot95_buffer*", (memory, _ROOM, 0)), memory
        out = room[0]
        status = lib.ot95_collation_key(self._handle, data, len(data), out)
        if status == 0:
            key = bytes(ffi.buffer(room[1], out.size))
        else:
            key = give("collation", lib.ot95_collation_key, self._handle, data, len(data))
        self._rooms.append(room)
        return key

    def key(self, text: str) -> bytes:
        """The sort key of a text: keys order as bytes as ``compare`` orders texts.

        >>> ot95.collation("sv").key("Åmål") > ot95.collation("sv").key("Zorn")
        True
        """
        return self(text)

    def compare(self, a: str, b: str) -> int:
        """-1, 0 or 1.

        >>> ot95.collation("de", ot95.IGNORE_CASE).compare("strasse", "STRASSE")
        0
        """
        sign = ffi.new("int*")
        left, right = utf8("collation", a), utf8("collation", b)
        check(lib.ot95_collation_compare(self._handle, left, len(left), right, len(right), sign),
              "collation")
        return int(sign[0])

    def match(self, pattern: str, text: str) -> bool:
        """Whether a text matches a pattern with ``*`` and ``?``.

        >>> ot95.collation("pt", ot95.IGNORE_ACCENT).match("Sao*", "São Tomé")
        True
        """
        matches = ffi.new("int*")
        left, right = utf8("collation", text), utf8("pattern", pattern)
        check(lib.ot95_collation_match(self._handle, left, len(left), right, len(right), matches),
              "collation")
        return bool(matches[0])

    def range(self, pattern: str) -> Range:
        """The bytes between which the keys of all texts lie that match a pattern.

        >>> lower, upper = ot95.collation("sv").range("San*")
        >>> lower <= ot95.collation("sv")("Santiago") < upper
        True
        """
        data = utf8("pattern", pattern)
        size = 4 * len(data) + _ROOM
        ends = []
        for _ in range(2):
            memory = ffi.new("char[]", size)
            ends.append((ffi.new("ot95_buffer*", (memory, size, 0)), memory))
        (lower, low), (upper, up) = ends
        check(lib.ot95_collation_range(self._handle, data, len(data), lower, upper), "pattern")
        return Range(bytes(ffi.buffer(low, lower.size)) if lower.size else None,
                     bytes(ffi.buffer(up, upper.size)) if upper.size else None)

    def hash(self, text: str, seed: int = 0) -> int:
        """A 64-bit hash that texts share which compare as equal.

        >>> case = ot95.collation("fr", ot95.IGNORE_CASE)
        >>> case.hash("Tours") == case.hash("TOURS")
        True
        """
        out = ffi.new("uint64_t*")
        data = utf8("collation", text)
        check(lib.ot95_collation_hash(self._handle, data, len(data), seed, out), "collation")
        return int(out[0])

    def upper(self, text: str) -> str:
        """In upper case, as the language has it.

        >>> ot95.collation("tr").upper("izmir")
        'İZMİR'
        """
        return self._case(lib.ot95_collation_upper, text)

    def lower(self, text: str) -> str:
        """In lower case, as the language has it."""
        return self._case(lib.ot95_collation_lower, text)

    def _case(self, function: Any, text: str) -> str:
        data = utf8("collation", text)
        return give("collation", function, self._handle, data, len(data)).decode()

    @property
    def version(self) -> int:
        """The version of the order. Keys that were made under another one are out of order."""
        out = ffi.new("uint64_t*")
        number = language(self.tag).number if self.tag else 1
        check(lib.ot95_order_version(number, out), "collation")
        return int(out[0])

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Collation) and self._named() == other._named()

    def __hash__(self) -> int:
        return hash(self._named())

    def __reduce__(self) -> Tuple[Any, ...]:
        return Collation, self._named()

    def __repr__(self) -> str:
        return f"ot95.collation({self.tag!r}, {self.options:#x})"

    def _named(self) -> Tuple[str, int]:
        return self.tag, self.options


def collation(tag: str = "", options: int = 0) -> Collation:
    """The order of a language, by its tag; of none by default.

    >>> sorted(["Örebro", "Zorn", "Åmål", "orsa"], key=ot95.collation("sv", ot95.IGNORE_CASE))
    ['orsa', 'Zorn', 'Åmål', 'Örebro']
    """
    return Collation(tag, options)


def match(pattern: str, texts: Iterable[str], tag: str = "", options: int = 0) -> List[str]:
    """The texts that match a pattern with ``*`` and ``?``, in the order in which they come.

    >>> ot95.match("San*", ["Santiago", "Lima", "San José"])
    ['Santiago', 'San José']
    """
    order = Collation(tag, options)
    return [text for text in texts if order.match(pattern, text)]
