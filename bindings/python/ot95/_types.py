"""What there is: types, languages, forms and options, under their names."""
import difflib
from enum import IntFlag
from functools import lru_cache
from typing import Dict, Iterator, Mapping, NamedTuple, Tuple, Union

from ._library import Error, described, ffi, lib, string


class Option(IntFlag):
    """What a comparison leaves out of account. Options add up:

    >>> ot95.compare("OtString", "Été", "ete", ot95.IGNORE_CASE | ot95.IGNORE_ACCENT)
    0
    """

    NONE = 0
    WILDCARDS = 0x10000  #: The second value is a pattern with ``*`` and ``?``.
    IGNORE_CASE = 0x20
    IGNORE_ACCENT = 0x40
    IGNORE_SPACE = 0x80
    ORDER_ONLY = 0x100  #: All differences at once, from the left.
    IGNORE_SYMBOLS = 0x200


#: Added to a type's number: as databases before format 4 had it. That differs for texts.
OLD_TABLE = 0x100

#: The forms of stored values that have a name. A number stands for any other.
FORMS: Mapping[str, int] = {"native": 1, "big-endian": 2, "native-key": 0x81,
                            "big-endian-key": 0x82}
RELATIONS: Mapping[str, int] = {"=": 1, "<": 2, "<=": 3, ">": 4, ">=": 5, "<>": 6}

KIND_INTEGER, KIND_REAL, KIND_MOMENT, KIND_IDENTITY, KIND_BYTES, KIND_TEXT = range(1, 7)


class Type(NamedTuple):
    """A type of values, as the library describes it."""

    name: str
    id: int  #: The identifier that databases hold.
    kind: int  #: How C sees its values: ``OT95_KIND_...`` of the C interface.
    format: str  #: Of its text, where none is given.
    stored_size: int  #: Bytes of one stored value; 0 where that depends on the value.
    null_size: int  #: Bytes of one stored null.
    is_nullable: bool


class Language(NamedTuple):
    """A language whose order the library knows."""

    number: int  #: What stored texts hold.
    tag: str
    name: str  #: In English.


class Versions(NamedTuple):
    """The versions of the library that is loaded, and of its tables."""

    library: Tuple[int, ...]
    interface: int
    collation: int
    unicode: str
    cldr: str
    sort_key: int


AnyType = Union[str, int, Type]
AnyForm = Union[str, int]


def _known(name: object, names: Mapping[str, int], what: str) -> str:
    near = difflib.get_close_matches(str(name), list(names), 1)
    return f"expected {what}, found {name!r}" + (f"; the nearest is {near[0]!r}" if near else "")


@lru_cache(maxsize=None)
def _describe(number: int) -> Type:
    if not 0 <= number < 1 << 16:
        raise Error(f"expected a type's number, found {number}")
    row = described("ot95_type", lib.ot95_type_describe, number, f"type {number}")
    return Type(string(row.name), row.id, row.kind, string(row.format), row.stored_size,
                row.null_size, bool(row.is_nullable))


class Types(Mapping[str, Type]):
    """The table of types by name.

    >>> ot95.types["OtDate"].stored_size
    4
    >>> [name for name in ot95.types if ot95.types[name].kind == 4]
    ['OtObjId', 'OtClassId', 'OtRef']
    """

    def __init__(self) -> None:
        count = ffi.new("size_t*")
        lib.ot95_type_count(count)
        rows = [_describe(number) for number in range(count[0] - 1)]  # the last is no type
        self._numbers: Dict[str, int] = {row.name: row.id for row in rows}

    def __getitem__(self, name: str) -> Type:
        if name not in self._numbers:
            raise KeyError(_known(name, self._numbers, "a name in ot95.types"))
        return _describe(self._numbers[name])

    def __iter__(self) -> Iterator[str]:
        return iter(self._numbers)

    def __len__(self) -> int:
        return len(self._numbers)

    def __repr__(self) -> str:
        return f"<{len(self)} types of ot95>"


types = Types()


def type_of(name: AnyType) -> Type:
    """The row of a type by its name, its number, or itself."""
    if isinstance(name, Type):
        return name
    if isinstance(name, int):
        return _describe(name)
    try:
        return types[name]
    except KeyError as error:
        raise Error(error.args[0]) from None


def form_of(name: AnyForm) -> int:
    if isinstance(name, int):
        return name
    if name not in FORMS:
        raise Error(_known(name, FORMS, f"a form ({', '.join(FORMS)} or a number)"))
    return FORMS[name]


def relation_of(name: str) -> int:
    if name not in RELATIONS:
        raise Error(f"expected a relation ({' '.join(RELATIONS)}), found {name!r}")
    return RELATIONS[name]


def language(tag: str) -> Language:
    """A language by its tag.

    >>> ot95.language("sv").name
    'Swedish'
    """
    number = ffi.new("unsigned*")
    if lib.ot95_language_by_tag(tag.encode(), number) != lib.OT95_OK:
        raise Error(f"expected a language's tag such as 'sv' (see ottm languages), found {tag!r}",
                    lib.OT95_ERR_LANGUAGE)
    row = described("ot95_language", lib.ot95_language_describe, number[0], tag)
    return Language(row.number, string(row.tag), string(row.name))


def code_set_of(name: Union[str, int]) -> int:
    """The number of a code set by its name."""
    if isinstance(name, int):
        return name
    number = ffi.new("unsigned*")
    if lib.ot95_code_set_by_name(name.encode(), number) != lib.OT95_OK:
        raise Error("expected a code set's name such as 'ISO-8859-2' (see ottm codesets), found "
                    f"{name!r}", lib.OT95_ERR_LANGUAGE)
    return int(number[0])


def versions() -> Versions:
    """The versions of the library that is loaded, and of its tables.

    >>> ot95.versions().interface >= 1
    True
    """
    out = ffi.new("ot95_versions*")
    out.struct_size = ffi.sizeof("ot95_versions")
    lib.ot95_version(out)
    return Versions(tuple(out.library), out.interface_number, out.collation, string(out.unicode),
                    string(out.cldr), out.sort_key)
