"""The loaded library: how a call fails, and how it gives bytes."""
import os
from pathlib import Path
from typing import Any, Callable

from ._declarations import ffi as ffi

_SONAME = "libot95Otms.so.9"
_FIRST_ROOM = 512


class Error(ValueError):
    """A value or bytes that the library refuses. ``str(error)`` tells what was expected.

    >>> ot95.encode("short", 99999)
    Traceback (most recent call last):
      ...
    ot95.Error: short: expected a number that the type can hold, found 99999
    """

    #: The status of the C interface, such as -8; 0 where the module itself refused.
    status: int

    def __init__(self, message: str, status: int = 0) -> None:
        super().__init__(message)
        self.status = status

    def __reduce__(self) -> Any:
        return Error, (str(self), self.status)


def _open() -> Any:
    """The library that OT95_LIBRARY names, the one of the module's own prefix, or the system's."""
    beside = Path(__file__).resolve().parents[3] / _SONAME
    named = os.environ.get("OT95_LIBRARY")
    try:
        return ffi.dlopen(named or (str(beside) if beside.exists() else _SONAME))
    except OSError as error:
        raise ImportError(f"{error}: expected {_SONAME} (Debian: libot95-9), or its path in "
                          "OT95_LIBRARY") from None


lib: Any = _open()


def text_of(status: int) -> str:
    return str(ffi.string(lib.ot95_strerror(status)).decode())


def check(status: int, what: str) -> None:
    """Raises what a status stands for; `what` says who is speaking."""
    if status == lib.OT95_OK:
        return
    if status == lib.OT95_ERR_MEMORY:
        raise MemoryError(f"{what}: {text_of(status)}")
    raise Error(f"{what}: {text_of(status)}", status)


def give(what: str, function: Callable[..., int], *arguments: Any) -> bytes:
    """The bytes that a function writes to a buffer, its last argument."""
    room = _FIRST_ROOM
    while True:
        data = ffi.new("char[]", room)
        out = ffi.new("ot95_buffer*", (data, room, 0))
        status = function(*arguments, out)
        if status != lib.OT95_ERR_ROOM or out.size <= room:
            check(status, what)
            return bytes(ffi.buffer(data, out.size))
        room = out.size


def described(kind: str, function: Callable[..., int], number: int, what: str) -> Any:
    """A structure that says its own size first and is filled in by a function."""
    out = ffi.new(kind + "*")
    out.struct_size = ffi.sizeof(kind)
    check(function(number, out), what)
    return out


def string(text: Any) -> str:
    return str(ffi.string(text).decode()) if text != ffi.NULL else ""
