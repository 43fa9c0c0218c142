"""Files of records: an iterator of dicts, and columns."""
import mmap
import os
import re
from typing import IO, TYPE_CHECKING, Any, Dict, Iterator, List, NamedTuple, Tuple, Union

from ._library import Error, check, ffi, lib, text_of
from ._stored import Damaged, decode_array
from ._types import AnyForm, Type, form_of, type_of

if TYPE_CHECKING:
    import numpy

_MEMBER = re.compile(r"(?P<type>.*?)(?::(?P<name>.*?))?(?:x(?P<count>\d+))?\Z")


class Member(NamedTuple):
    """A member of a record: values of a type whose stored forms stand one behind another."""

    name: str
    type: Type
    elements: int = 1


def parse_layout(text: str) -> Tuple[Member, ...]:
    """Reads ``TYPE[:NAME][xCOUNT],...``, as ``ottm inspect`` does.

    >>> [member.name for member in ot95.parse_layout("OtString:name,long,shortx2")]
    ['name', 'long', 'short']
    """
    members: List[Member] = []
    for place, part in enumerate(text.split(","), 1):
        found = _MEMBER.match(part)
        assert found  # it matches any text
        try:
            kind = type_of(found["type"])
        except Error as error:
            raise Error(f"layout, member {place}: {error}") from None
        taken = [member.name for member in members]
        name = found["name"] or (kind.name if kind.name not in taken else f"{kind.name}#{place}")
        if name in taken:
            raise Error(f"layout, member {place}: expected a name of its own, found {name!r}")
        count = int(found["count"] or 1)
        if count == 0:
            raise Error(f"layout, member {place}: expected a count of at least 1")
        members.append(Member(name, kind, count))
    return tuple(members)


class DamagedRecord(Damaged):
    """Where a file stops being records: ``record`` from 0, ``start`` its offset, ``member``."""

    def __init__(self, message: str, status: int = 0, end: int = 0, record: int = 0,
                 start: int = 0, member: str = "") -> None:
        super().__init__(message, status, end)
        self.record, self.start, self.member = record, start, member

    def __reduce__(self) -> Any:
        return DamagedRecord, (str(self), self.status, self.end, self.record, self.start,
                               self.member)


class Records:
    """The records of a file, to be had of ``ot95.records``. It can be walked more than once."""

    def __init__(self, data: Any, layout: Tuple[Member, ...], form: int) -> None:
        self.data, self.layout, self.form = data, layout, form

    def __iter__(self) -> Iterator[Dict[str, Any]]:
        names = [member.name for member in self.layout]
        for values in self.rows():
            yield dict(zip(names, values))

    def rows(self) -> Iterator[Tuple[Any, ...]]:
        """The records as tuples, which is what ``executemany`` of a database wants."""
        walk = _Walk(self)
        while walk.offset < walk.size:
            yield walk.next()

    def columns(self) -> "Dict[str, numpy.ndarray[Any, Any]]":
        """All records as one NumPy array for each member.

        Numbers, dates and times have NumPy's own types, masked arrays where there are nulls;
        others are objects. A member of several values is an array of two dimensions.
        """
        from . import _columns
        return _columns.columns(self)

    def __repr__(self) -> str:
        names = ", ".join(member.name for member in self.layout)
        return f"<records of {len(self.data)} bytes: {names}>"


class _Walk:
    """One walk over records."""

    def __init__(self, records: Records) -> None:
        self.layout, self.form = records.layout, records.form
        self.bytes = ffi.from_buffer(records.data)
        self.size = len(self.bytes)
        self.offset = self.record = 0
        self.members = ffi.new("ot95_member[]", [(member.type.id, member.elements)
                                                 for member in self.layout])
        self.arrays = ffi.new("ot95_array[]", len(self.layout))
        self.end = ffi.new("size_t*")

    def next(self) -> Tuple[Any, ...]:
        status = lib.ot95_record(self.members, len(self.layout), self.form,
                                 self.bytes + self.offset, self.size - self.offset, self.arrays,
                                 self.end)
        if status != lib.OT95_OK:
            self._damage(status)
        values = []
        for i, member in enumerate(self.layout):
            found = decode_array(member.type, self.arrays + i)
            values.append(found[0] if member.elements == 1 else found)
        self.offset += self.end[0]
        self.record += 1
        return tuple(values)

    def _damage(self, status: int) -> None:
        if status not in (lib.OT95_ERR_ENDS, lib.OT95_ERR_DAMAGED):
            check(status, f"record {self.record}")
        member, at = self._damaged_member()
        raise DamagedRecord(
            f"record {self.record}, which begins at offset {self.offset}: in {member.name} "
            f"({member.type.name}) {text_of(status)}, good up to offset {at}", status, at,
            self.record, self.offset, member.name)

    def _damaged_member(self) -> Tuple[Member, int]:
        """The first member that isn't good, and up to which offset it is."""
        at = self.offset
        for member in self.layout:
            array = ffi.new("ot95_array*", (member.type.id, self.form, self.bytes + at,
                                            self.size - at, member.elements))
            status = lib.ot95_verify(array, self.end)
            at += self.end[0]
            if status != lib.OT95_OK:
                break
        return member, at


def _contents(file: Union[str, "os.PathLike[str]", IO[bytes], bytes]) -> Any:
    if isinstance(file, (bytes, bytearray, memoryview)):
        return file
    if not isinstance(file, (str, os.PathLike)):
        return file.read()
    with open(file, "rb") as opened:
        if os.fstat(opened.fileno()).st_size == 0:
            return b""  # which can't be mapped
        try:
            return mmap.mmap(opened.fileno(), 0, access=mmap.ACCESS_READ)
        except OSError:
            return opened.read()


def records(file: Union[str, "os.PathLike[str]", IO[bytes], bytes], layout: str,
            form: AnyForm = "native") -> Records:
    """The records of a binary file, each checked before it is read.

    :param file: a path, an open file, or bytes.
    :param layout: ``TYPE[:NAME][xCOUNT],...``, as of ``ottm inspect``.
    :raises DamagedRecord: a ValueError, while the records are walked, with the place.

    >>> page = ot95.encode("OtString", "Lima") + ot95.encode("long", 7)
    >>> list(ot95.records(page, "OtString:name,long:people"))
    [{'name': 'Lima', 'people': 7}]
    """
    return Records(_contents(file), parse_layout(layout), form_of(form))
