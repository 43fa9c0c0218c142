"""Records as columns of NumPy arrays."""
from datetime import date, datetime, timedelta
from functools import lru_cache
from typing import Any, Dict, List, Optional, Tuple

import numpy

from ._records import Member, Records
from ._stored import encode
from ._types import KIND_INTEGER, KIND_REAL, Type

Array = numpy.ndarray[Any, Any]


def columns(records: Records) -> Dict[str, Array]:
    """One array for each member; see ``Records.columns``."""
    packed = _packed(records)
    if packed is not None:
        return {member.name: packed[member.name] for member in records.layout}
    rows = list(records.rows())
    return {member.name: _column(member, [row[i] for row in rows])
            for i, member in enumerate(records.layout)}


# What tells how a type stores a number: NumPy has the same bytes, or the type is read value by value.
_PROBES: Dict[int, Tuple[Any, ...]] = {KIND_INTEGER: (1, 2, 0x41), KIND_REAL: (1.5, -2.25, 1e10)}


@lru_cache(maxsize=None)
def _dtype(kind: Type, form: int) -> Optional[numpy.dtype[Any]]:
    """The type of NumPy that has the same values in the same bytes, if there is one."""
    if kind.kind not in _PROBES or kind.is_nullable or form not in (1, 2) or \
            kind.stored_size not in (1, 2, 4, 8) or kind.name == "d_Interval":
        return None
    letter, values = "f", list(_PROBES[kind.kind])
    if kind.kind == KIND_INTEGER:
        letter = "i" if _holds(kind, -1) else "u"
        values.append(-1 if letter == "i" else (1 << 8 * kind.stored_size) - 1)
    found = numpy.dtype(f"{'>' if form == 2 else '='}{letter}{kind.stored_size}")
    alike = numpy.array(values, found).tobytes() == encode(kind, values, form)
    return found if alike else None


def _holds(kind: Type, value: int) -> bool:
    try:
        encode(kind, value)
    except ValueError:
        return False
    return True


def _packed(records: Records) -> Optional[Array]:
    """The records without a copy, where every member is a number that NumPy stores alike."""
    fields: List[Any] = []
    for member in records.layout:
        found = _dtype(member.type, records.form)
        if found is None:
            return None
        shape = (member.elements,) if member.elements > 1 else ()
        fields.append((member.name, found, shape))
    packed = numpy.dtype(fields)
    if len(records.data) % packed.itemsize != 0:
        return None  # the walk tells where it ends too early
    return numpy.frombuffer(records.data, packed)


def _column(member: Member, values: List[Any]) -> Array:
    flat = values if member.elements == 1 else [value for row in values for value in row]
    array = _typed(member.type, flat)
    return array if member.elements == 1 else array.reshape(-1, member.elements)


def _typed(kind: Type, values: List[Any]) -> Array:
    wanted = _wanted(kind, values)
    if wanted is None:
        array = numpy.empty(len(values), object)
        array[:] = values
        return array
    if not kind.is_nullable:
        return numpy.array(values, wanted)
    mask = [value is None for value in values]
    blank = numpy.zeros(1, wanted)[0]
    data = numpy.array([blank if value is None else value for value in values], wanted)
    masked: Array = numpy.ma.array(data, mask=mask)  # type: ignore[no-untyped-call]
    return masked


def _wanted(kind: Type, values: List[Any]) -> Any:
    """NumPy's type for the values, or None where it can't hold one of them."""
    found = {type(value) for value in values if value is not None}
    if kind.name == "OtBoolean":
        return "?"
    if kind.kind == KIND_INTEGER or (kind.kind == KIND_REAL and found <= {float}):
        return _dtype(kind, 1) or ("i8" if kind.kind == KIND_INTEGER else "f8")
    if found == {date}:
        return "M8[D]"
    if found == {datetime} and not any(value.tzinfo for value in values if value is not None):
        return "M8[us]"
    return "m8[us]" if found == {timedelta} else None
