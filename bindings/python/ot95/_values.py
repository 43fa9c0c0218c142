"""Values of Python and the fields that C sees of them."""
import math
from datetime import date, datetime, time, timedelta, timezone, tzinfo
from operator import attrgetter
from typing import Any, Callable, Dict, NamedTuple, Optional, Tuple, Union

from ._library import Error, ffi
from ._types import (KIND_BYTES, KIND_IDENTITY, KIND_INTEGER, KIND_MOMENT, KIND_REAL, KIND_TEXT,
                     Type)


class Moment(NamedTuple):
    """Fields of a date or time that no calendar has, as they are stored.

    In a date to compare with, -1 stands for any:

    >>> ot95.match_value("OtDate", date(2000, 2, 29), ot95.Moment(-1, 2, -1))
    True
    """

    year: int = 0
    month: int = 0
    day: int = 0
    hour: int = 0
    minute: int = 0
    second: int = 0
    hundredth: int = 0
    zone_hour: int = 0
    zone_minute: int = 0


class Identity(NamedTuple):
    """Fields of an identifier or a reference. A type has some of them; the others are 0."""

    block: int = 0  #: A hint where to look; no part of identity.
    low: int = 0  #: The serial number: bits 0 to 31.
    high: int = 0  #: Bits 32 to 47.
    database: int = 0
    class_number: int = 0
    class_version: int = 0  #: References don't store it.


Value = Union[None, bool, int, float, str, bytes, date, time, datetime, timedelta, Moment, Identity]


#: The union of an ``ot95_value``, whose name is a word of Python's.
_of = attrgetter("as")


def _refuse(kind: Type, expected: str, value: object) -> Error:
    return Error(f"{kind.name}: expected {expected}, found {value!r}")


# Which fields the moments of a type have.
_DAY, _CLOCK, _PRECISE = 1, 2, 4
_MOMENTS = {"OtDate": _DAY, "OtTime": _CLOCK, "OtDateTime": _DAY | _CLOCK, "d_Date": _DAY,
            "d_Time": _CLOCK | _PRECISE, "d_Timestamp": _DAY | _CLOCK | _PRECISE}
_EXPECTED = {_DAY: (date, "a datetime.date"), _CLOCK: (time, "a datetime.time"),
             _DAY | _CLOCK: (datetime, "a datetime.datetime")}


def _zone(kind: Type, value: Union[time, datetime], precise: bool) -> Tuple[int, int]:
    """Hours and minutes ahead of UTC, of the same sign."""
    offset = value.utcoffset()
    if offset is None:
        if value.tzinfo is not None:
            raise _refuse(kind, "a time zone of a fixed offset", value)
        return 0, 0
    minutes = offset // timedelta(minutes=1)
    if not precise or timedelta(minutes=minutes) != offset:
        raise _refuse(kind, "a zone of whole minutes" if precise else "no time zone", value)
    hours = abs(minutes) // 60 * (1 if minutes >= 0 else -1)
    return hours, minutes - hours * 60


def _clock(kind: Type, value: Union[time, datetime], precise: bool) -> Tuple[int, ...]:
    """Hour to zone minute; hour and minute are held ahead of the clock by the zone."""
    unit = 10_000 if precise else 1_000_000
    if value.microsecond % unit != 0:
        raise _refuse(kind, "whole hundredths of a second" if precise else "whole seconds", value)
    hours, minutes = _zone(kind, value, precise)
    return (value.hour + hours, value.minute + minutes, value.second, value.microsecond // 10_000,
            hours, minutes)


def _put_moment(kind: Type, value: Any, to: Any) -> None:
    fields = _MOMENTS[kind.name]
    if not isinstance(value, Moment):
        wanted: Any
        wanted, expected = _EXPECTED[fields & (_DAY | _CLOCK)]
        if not isinstance(value, wanted) or (wanted is date and isinstance(value, datetime)):
            raise _refuse(kind, f"{expected} or an ot95.Moment", value)
        day = (value.year, value.month, value.day) if fields & _DAY else (0, 0, 0)
        clock = _clock(kind, value, bool(fields & _PRECISE)) if fields & _CLOCK else ()
        value = Moment(*day, *clock)
    _of(to).moment = tuple(value)


def _tzinfo(hours: int, minutes: int) -> Optional[tzinfo]:
    """The zone, and ValueError for one that would be stored otherwise."""
    if abs(minutes) > 59 or hours * minutes < 0:
        raise ValueError
    return timezone(timedelta(hours=hours, minutes=minutes)) if hours or minutes else None


def _get_moment(kind: Type, value: Any) -> Value:
    m = value.moment
    fields = _MOMENTS[kind.name]
    try:
        if fields == _DAY:
            return date(m.year, m.month, m.day)
        zone = _tzinfo(m.zone_hour, m.zone_minute)
        if zone is not None:  # as the clock shows it
            minutes = (m.hour - m.zone_hour) * 60 + m.minute - m.zone_minute
            hour, minute = divmod(minutes, 60)
        else:
            hour, minute = m.hour, m.minute
        clock = time(hour, minute, m.second, m.hundredth * 10_000, zone)
        if fields & _DAY:
            return datetime.combine(date(m.year, m.month, m.day), clock)
        return clock
    except (ValueError, OverflowError):
        return Moment(m.year, m.month, m.day, m.hour, m.minute, m.second, m.hundredth,
                      m.zone_hour, m.zone_minute)


def _put_integer(kind: Type, value: Any, to: Any) -> None:
    if kind.name == "OtBoolean" and not isinstance(value, bool):
        raise _refuse(kind, "True or False", value)
    try:
        _of(to).integer = value
    except (TypeError, OverflowError):
        raise _refuse(kind, "an int of 64 bits at most", value) from None


def _get_integer(kind: Type, value: Any) -> Value:
    return bool(value.integer) if kind.name == "OtBoolean" else int(value.integer)


def _put_real(kind: Type, value: Any, to: Any) -> None:
    if kind.name == "d_Interval" and isinstance(value, timedelta):
        value = value.total_seconds()
    try:
        _of(to).real = value
    except TypeError:
        expected = "a datetime.timedelta" if kind.name == "d_Interval" else "a float"
        raise _refuse(kind, expected, value) from None


def _get_real(kind: Type, value: Any) -> Value:
    seconds = float(value.real)
    if kind.name == "d_Interval" and math.isfinite(seconds):
        try:
            return timedelta(seconds=seconds)
        except OverflowError:
            pass
    return seconds


def _put_identity(kind: Type, value: Any, to: Any) -> None:
    if not isinstance(value, Identity):
        raise _refuse(kind, "an ot95.Identity", value)
    try:
        _of(to).identity = tuple(value)
    except OverflowError:
        raise _refuse(kind, "fields of 32 bits", value) from None


def _get_identity(kind: Type, value: Any) -> Value:
    i = value.identity
    return Identity(i.block, i.low, i.high, i.database, i.class_number, i.class_version)


def _put_bytes(kind: Type, value: Any, to: Any) -> Any:
    try:
        kept = ffi.from_buffer(value)
    except TypeError:
        raise _refuse(kind, "bytes", value) from None
    _of(to).bytes = (kept, len(kept))
    return kept


def _get_bytes(kind: Type, value: Any) -> Value:
    return bytes(ffi.buffer(value.bytes.data, value.bytes.size)) if value.bytes.size else b""


_PUT: Dict[int, Callable[[Type, Any, Any], Any]] = {
    KIND_INTEGER: _put_integer, KIND_REAL: _put_real, KIND_MOMENT: _put_moment,
    KIND_IDENTITY: _put_identity, KIND_BYTES: _put_bytes}
_GET: Dict[int, Callable[[Type, Any], Value]] = {
    KIND_INTEGER: _get_integer, KIND_REAL: _get_real, KIND_MOMENT: _get_moment,
    KIND_IDENTITY: _get_identity, KIND_BYTES: _get_bytes}


def is_text(kind: Type) -> bool:
    return kind.kind == KIND_TEXT


def put(kind: Type, value: Value, to: Any) -> Any:
    """Fills an ``ot95_value``. What is answered has to live as long as that does."""
    to.kind = kind.kind
    to.is_null = value is None
    return None if value is None else _PUT[kind.kind](kind, value, to)


def get(kind: Type, value: Any) -> Value:
    """What an ``ot95_value`` holds."""
    return None if value.is_null else _GET[kind.kind](kind, _of(value))


def utf8(kind: str, text: object) -> bytes:
    """The text as the C interface wants it."""
    if not isinstance(text, str):
        raise Error(f"{kind}: expected a str, found {text!r}")
    try:
        return text.encode()
    except UnicodeEncodeError:
        raise Error(f"{kind}: expected a text without lone surrogates, found {text!r}") from None
