"""Stored values: to bytes and back, and what the library does with them."""
import reprlib
import weakref
from typing import Any, List, NamedTuple, Optional, Sequence, Tuple, Union, cast

from ._library import Error, check, ffi, give, lib, text_of
from ._types import (AnyForm, AnyType, Type, code_set_of, form_of, language, relation_of,
                     type_of)
from ._values import Value, get, is_text, put, utf8

Given = Union[Value, Sequence[Value], "Stored"]


class Stored(bytes):
    """The bytes of stored values, which know what they are.

    ``encode`` gives one; ``Stored(data, type, form, elements)`` makes one of bytes that come from
    elsewhere. They aren't looked at before they are used.

    >>> page = ot95.Stored(b"\\x01\\x2c\\xff\\xfe", "short", "big-endian", 2)
    >>> ot95.decode(page)
    [300, -2]
    >>> pickle.loads(pickle.dumps(page)).elements
    2
    """

    type: Type
    form: int
    elements: int  #: How many values there are.

    def __new__(cls, data: Any, type: AnyType, form: AnyForm = "native",
                elements: int = 1) -> "Stored":
        self = super().__new__(cls, data)
        self.type, self.form, self.elements = type_of(type), form_of(form), elements
        return self

    def __reduce__(self) -> Tuple[Any, ...]:
        return Stored, (bytes(self), self.type, self.form, self.elements)

    def __repr__(self) -> str:
        shown = f"bytes.fromhex('{self.hex()}')" if len(self) <= 64 else f"<{len(self)} bytes>"
        return f"Stored({shown}, {self.type.name!r}, {self.form}, {self.elements})"


class Damaged(Error):
    """Bytes that can't be such values. ``end`` says how far they are good."""

    end: int

    def __init__(self, message: str, status: int = 0, end: int = 0) -> None:
        super().__init__(message, status)
        self.end = end

    def __reduce__(self) -> Any:
        return Damaged, (str(self), self.status, self.end)


class Estimate(NamedTuple):
    """What a planner is told of a comparison; see ``estimate``."""

    share: float  #: Of the index; without its ends an amount.
    stands_for_range: bool  #: Whether the operand stands for a range, as a pattern does.
    lower: Optional[bytes]  #: The key where a scan begins; None: at the start.
    upper: Optional[bytes]  #: The key where it ends; None: at the end.


#: What a structure of C points to lives as long as the structure.
_kept: "weakref.WeakKeyDictionary[Any, Any]" = weakref.WeakKeyDictionary()


def _array(stored: Stored) -> Any:
    data = ffi.from_buffer(stored)
    array = ffi.new("ot95_array*", (stored.type.id, stored.form, data, len(stored), stored.elements))
    _kept[array] = data
    return array


def _refused(kind: Type, values: List[Value], form: int) -> Error:
    """Names the one of the values that the type can't hold."""
    for value in values if len(values) > 1 else []:
        try:
            _encode_fields(kind, [value], form)
        except Error as error:
            return error
    what = "a number" if isinstance(values[0], (int, float)) else "a value"
    return Error(f"{kind.name}: expected {what} that the type can hold, found {values[0]!r}",
                 lib.OT95_ERR_VALUE)


def _encode_fields(kind: Type, values: List[Value], form: int) -> bytes:
    fields = ffi.new("ot95_value[]", len(values))
    kept = [put(kind, value, fields[i]) for i, value in enumerate(values)]
    try:
        return give(kind.name, lib.ot95_encode, kind.id, fields, len(values), form)
    except Error as error:
        if error.status != lib.OT95_ERR_VALUE:
            raise
        raise _refused(kind, values, form) from None
    finally:
        del kept


_TEXTS = {lib.OT95_ERR_VALUE: "characters of the code set",
          lib.OT95_ERR_TEXT: "a text without a zero, of 32,765 16-bit units at most"}


def _encode_texts(kind: Type, values: List[Value], form: int, options: Any) -> bytes:
    texts = []
    for value in values:
        if value == "{NULL}":
            raise Error(f"{kind.name}: expected None for the null, found '{{NULL}}'")
        if value is None and not kind.is_nullable:
            raise Error(f"{kind.name}: expected a str, found None")
        texts.append(b"{NULL}" if value is None else utf8(kind.name, value))
    kept = [ffi.from_buffer(text) for text in texts]
    spans = ffi.new("ot95_span[]", [(text, len(text)) for text in kept])
    try:
        return give(kind.name, lib.ot95_scan, kind.id, spans, len(texts), options, form)
    except Error as error:
        expected = _TEXTS.get(error.status)
        if expected is None:
            raise
        found = reprlib.repr(values[0] if len(values) == 1 else values)
        raise Error(f"{kind.name}: expected {expected}, found {found}", error.status) from None


def _scan_options(tag: Optional[str], code_set: Union[None, str, int]) -> Any:
    if tag is None and code_set is None:
        return ffi.NULL
    return ffi.new("ot95_scan_options*", (
        ffi.sizeof("ot95_scan_options"), 253 if code_set is None else code_set_of(code_set),
        1 if tag is None else language(tag).number, ffi.NULL, 0))


def encode(type: AnyType, value: Union[Value, Sequence[Value]], form: AnyForm = "native", *,
           language: Optional[str] = None, code_set: Union[None, str, int] = None) -> Stored:
    """Stores a value, or a list of them as an array.

    :param form: "native", "big-endian", or the number of a form.
    :param language: of texts, by its tag; the neutral one otherwise.
    :param code_set: of texts, by name or number; Unicode otherwise.
    :raises Error: a ValueError, for a value that the type or the code set can't hold.

    >>> ot95.encode("OtDate", date(2000, 1, 2), "big-endian").hex()
    '07d00102'
    >>> ot95.encode("OtNull_long", [7, None], "big-endian").hex()
    '00000000070100000000'
    """
    kind, number = type_of(type), form_of(form)
    values = value if isinstance(value, list) else [cast(Value, value)]
    if not values:
        raise Error(f"{kind.name}: expected at least one value, found []")
    if is_text(kind):
        data = _encode_texts(kind, values, number, _scan_options(language, code_set))
    else:
        data = _encode_fields(kind, values, number)
    return Stored(data, kind, number, len(values))


def _stored(type: Union[AnyType, Stored], data: Any, form: Optional[AnyForm],
            count: Optional[int]) -> Stored:
    """What decode, verify and translate are given: a Stored, or bytes and what they are."""
    if isinstance(type, Stored):
        return type
    if data is None:
        raise Error(f"expected an ot95.Stored, or a type and bytes, found {type!r}")
    if isinstance(data, Stored) and form is None and count is None:
        return Stored(data, type, data.form, data.elements)
    return Stored(data, type, "native" if form is None else form, 1 if count is None else count)


def _verify(stored: Stored) -> Tuple[int, int]:
    end = ffi.new("size_t*")
    return lib.ot95_verify(_array(stored), end), end[0]


def verify(type: Union[AnyType, Stored], data: Any = None, form: Optional[AnyForm] = None,
           count: Optional[int] = None) -> int:
    """Checks that bytes hold stored values, and answers where these end.

    :raises Damaged: a ValueError whose ``end`` says how far the bytes are good.

    >>> ot95.verify("short", b"\\1\\0\\2\\0rest", count=2)
    4
    >>> ot95.verify("OtString", b"\\x09\\0\\1")
    Traceback (most recent call last):
      ...
    ot95.Damaged: OtString: the bytes end before the values do, good up to offset 0
    """
    stored = _stored(type, data, form, count)
    status, end = _verify(stored)
    if status in (lib.OT95_ERR_ENDS, lib.OT95_ERR_DAMAGED):
        reason = text_of(status)
        raise Damaged(f"{stored.type.name}: {reason}, good up to offset {end}", status, end)
    check(status, stored.type.name)
    return end


def _decode_texts(array: Any, name: str) -> List[Value]:
    is_null = ffi.new("int*")
    values: List[Value] = []
    for i in range(array.count):
        check(lib.ot95_is_null(array, i, is_null), name)
        values.append(None if is_null[0] else
                      give(name, lib.ot95_print, array, i, ffi.NULL).decode())
    return values


def decode_array(kind: Type, array: Any) -> List[Value]:
    """The values of an ``ot95_array``."""
    if is_text(kind):
        return _decode_texts(array, kind.name)
    fields = ffi.new("ot95_value[]", array.count)
    check(lib.ot95_decode(array, fields), kind.name)
    return [get(kind, field) for field in fields]


def decode(type: Union[AnyType, Stored], data: Any = None, form: Optional[AnyForm] = None,
           count: Optional[int] = None) -> Any:
    """Reads stored values: one of them, or with ``count`` a list.

    Dates and times come as those of ``datetime``, or as an ``ot95.Moment`` where no calendar has
    them; nulls as None.

    >>> ot95.decode("OtDate", bytes.fromhex("07d00102"), "big-endian")
    datetime.date(2000, 1, 2)
    >>> ot95.decode(ot95.encode("OtString", ["Åmål", None]))
    ['Åmål', None]
    """
    stored = _stored(type, data, form, count)
    verify(stored)
    values = decode_array(stored.type, _array(stored))
    single = count is None and stored.elements == 1
    return values[0] if single else values


def translate(type: Union[AnyType, Stored], data: Any = None, to: AnyForm = "native",
              form: Optional[AnyForm] = None, count: Optional[int] = None) -> Stored:
    """Stores values in another form.

    >>> ot95.translate("long", b"\\7\\0\\0\\0", "big-endian").hex()
    '00000007'
    >>> ot95.translate(ot95.encode("OtString", "Ab1", "big-endian"), to="big-endian-key").hex()
    '000afe01400c70103f0a00ff'
    """
    stored = _stored(type, data, form, count)
    verify(stored)
    number = form_of(to)
    data = give(stored.type.name, lib.ot95_translate, _array(stored), number)
    return Stored(data, stored.type, number, stored.elements)


def convert(source: AnyType, target: AnyType, value: Given) -> Any:
    """A value, or a list, as the library converts it from one type to another.

    >>> ot95.convert("OtDate", "OtDateTime", date(2000, 1, 2))
    datetime.datetime(2000, 1, 2, 0, 0)
    """
    stored = operand(source, value, 1)
    kind = type_of(target)
    data = give(f"{stored.type.name} to {kind.name}", lib.ot95_convert, _array(stored), kind.id,
                stored.form)
    return decode(Stored(data, kind, stored.form, stored.elements),
                  count=stored.elements if isinstance(value, list) else None)


def operand(type: AnyType, value: Given, form: int) -> Stored:
    """A value of Python or stored bytes as an operand of a type."""
    if not isinstance(value, Stored):
        return encode(type, value, form)
    if value.type != type_of(type):
        raise Error(f"expected a stored {type_of(type).name}, found one of {value.type.name}")
    return value


def _pair(type: AnyType, a: Given, b: Given, form: AnyForm) -> Tuple[Any, Any]:
    number = next((x.form for x in (a, b) if isinstance(x, Stored)), form_of(form))
    return _array(operand(type, a, number)), _array(operand(type, b, number))


def compare(type: AnyType, a: Given, b: Given, options: int = 0, form: AnyForm = "native") -> int:
    """-1, 0 or 1, as the type orders its values.

    An operand is a value, a list of them, or an ``ot95.Stored``.

    >>> ot95.compare("OtString", "Orleans", "tours")
    -1
    >>> ot95.compare("OtString", "Orleans", "orl*", ot95.IGNORE_CASE | ot95.WILDCARDS)
    0
    """
    sign = ffi.new("int*")
    left, right = _pair(type, a, b, form)
    check(lib.ot95_compare(left, right, options, sign), type_of(type).name)
    return int(sign[0])


def match_value(type: AnyType, value: Given, pattern: Given, options: int = 0,
                form: AnyForm = "native") -> bool:
    """Whether a value is one that the pattern means: ``*`` and ``?`` in texts, -1 in dates.

    >>> ot95.match_value("OtString", "Orleans", "orl*", ot95.IGNORE_CASE)
    True
    """
    matches = ffi.new("int*")
    left, right = _pair(type, value, pattern, form)
    check(lib.ot95_match(left, right, options, matches), type_of(type).name)
    return bool(matches[0])


def hash(type: AnyType, value: Given, form: AnyForm = "native") -> int:
    """The 32-bit hash that databases hold.

    >>> ot95.hash("short", 1)
    1103515245
    """
    out = ffi.new("uint32_t*")
    check(lib.ot95_hash(_array(operand(type, value, form_of(form))), out), type_of(type).name)
    return int(out[0])


def hash64(type: AnyType, value: Given, options: int = 0, seed: int = 0) -> int:
    """A hash for tables and shards, the same on all machines: equal under the options, equal hash.

    >>> case = ot95.IGNORE_CASE
    >>> ot95.hash64("OtString", "Tours", case) == ot95.hash64("OtString", "TOURS", case)
    True
    """
    out = ffi.new("uint64_t*")
    check(lib.ot95_hash64(_array(operand(type, value, 1)), options, seed, out), type_of(type).name)
    return int(out[0])


def sort_key(type: AnyType, value: Given, options: int = 0) -> bytes:
    """The key of a value: keys order as bytes as ``compare`` orders values.

    >>> sorted([2, -1, 10], key=lambda number: ot95.sort_key("long", number))
    [-1, 2, 10]
    """
    name = type_of(type).name
    return give(name, lib.ot95_sort_key, _array(operand(type, value, 1)), options)


def _key_span(key: Optional[bytes]) -> Any:
    if key is None:
        return ffi.NULL
    data = ffi.from_buffer(key)
    span = ffi.new("ot95_span*", (data, len(key)))
    _kept[span] = data
    return span


def estimate(type: AnyType, value: Given, relation: str, options: int = 0, *,
             low: Optional[bytes] = None, high: Optional[bytes] = None,
             form: AnyForm = "native") -> Estimate:
    """What share of an index satisfies a relation with a value, and where a scan has to look.

    :param relation: ``= < <= > >= <>``
    :param low: the least key of the index, ``high`` the greatest, where they are known.

    >>> five = ot95.estimate("short", 5, ">", low=ot95.encode("short", 0),
    ...                      high=ot95.encode("short", 9))
    >>> round(five.share, 3), five.lower.hex(), five.upper
    (0.4, '0500', None)
    """
    out = ffi.new("ot95_estimate_result*")
    out.struct_size = ffi.sizeof("ot95_estimate_result")
    array = _array(operand(type, value, form_of(form)))
    check(lib.ot95_estimate(array, relation_of(relation) | options, _key_span(low),
                            _key_span(high), out), type_of(type).name)
    return Estimate(out.share, bool(out.stands_for_range),
                    bytes(ffi.buffer(out.lower, out.lower_size)) if out.lower_size else None,
                    bytes(ffi.buffer(out.upper, out.upper_size)) if out.upper_size else None)


def to_text(type: AnyType, value: Given, format: Optional[str] = None) -> str:
    """A value as the type prints it, in its own format or another one.

    >>> ot95.to_text("OtDate", date(2000, 1, 2), "%Y/%m/%d")
    '2000/01/02'
    """
    stored = operand(type, value, 1)
    kept = ffi.NULL if format is None else ffi.new("char[]", utf8("format", format))
    return give(stored.type.name, lib.ot95_print, _array(stored), 0, kept).decode()


def scan(type: AnyType, text: str, format: Optional[str] = None, *, lenient: bool = False) -> Any:
    """The value that a text says, in the type's own format, another one, or in ISO 8601 form.

    :param lenient: takes what the type makes of a text that it wraps, cuts or makes up.
    :raises Error: a ValueError, for a text that says no such value.

    >>> ot95.scan("OtDate", "2000-01-02")
    datetime.date(2000, 1, 2)
    >>> ot95.scan("short", "99999")
    Traceback (most recent call last):
      ...
    ot95.Error: short: expected a text that says such a value (%hd), found '99999'
    """
    kind = type_of(type)
    data = utf8(kind.name, text)
    kept = ffi.NULL if format is None else ffi.new("char[]", utf8("format", format))
    options = ffi.new("ot95_scan_options*", (ffi.sizeof("ot95_scan_options"), 253, 1, kept,
                                             0 if lenient else lib.OT95_STRICT))
    held = ffi.from_buffer(data)
    span = ffi.new("ot95_span*", (held, len(data)))
    try:
        stored = give(kind.name, lib.ot95_scan, kind.id, span, 1, options, 1)
    except Error as error:
        if error.status != lib.OT95_ERR_VALUE:
            raise
        raise Error(f"{kind.name}: expected a text that says such a value "
                    f"({format or kind.format}), found {text!r}", error.status) from None
    return decode(Stored(stored, kind))
