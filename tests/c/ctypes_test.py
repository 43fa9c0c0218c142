#!/usr/bin/env python3
"""Drives the C interface from Python, by ctypes alone: OT95_LIBRARY names the library."""
import ctypes
import os
import sys
import unittest

if "OT95_LIBRARY" not in os.environ:
    sys.exit(77)  # a build that Python can't load

OT95 = ctypes.CDLL(os.environ["OT95_LIBRARY"])
OT95.ot95_strerror.restype = ctypes.c_char_p
BIG_ENDIAN, IGNORE_CASE = 2, 0x20
ERR_ENDS, ERR_ROOM = -4, -6


class Buffer(ctypes.Structure):
    _fields_ = [("data", ctypes.c_void_p), ("room", ctypes.c_size_t), ("size", ctypes.c_size_t)]


class Span(ctypes.Structure):
    _fields_ = [("data", ctypes.c_char_p), ("size", ctypes.c_size_t)]


class Array(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("form", ctypes.c_uint), ("bytes", ctypes.c_char_p),
                ("size", ctypes.c_size_t), ("count", ctypes.c_size_t)]


def check(status):
    if status != 0:
        raise ValueError(OT95.ot95_strerror(status).decode())


def give(function, *arguments):
    """The bytes that a function gives when it is asked for their size, and then for them."""
    out = Buffer(None, 0, 0)
    status = function(*arguments, ctypes.byref(out))
    if status != ERR_ROOM:
        check(status)
    room = ctypes.create_string_buffer(out.size)
    out = Buffer(ctypes.addressof(room), out.size, 0)
    check(function(*arguments, ctypes.byref(out)))
    return room.raw


def type_of(name):
    number = ctypes.c_int()
    check(OT95.ot95_type_by_name(name.encode(), ctypes.byref(number)))
    return number.value


def scan(kind, *texts):
    spans = (Span * len(texts))(*(Span(text.encode(), len(text.encode())) for text in texts))
    stored = give(OT95.ot95_scan, kind, spans, ctypes.c_size_t(len(texts)), None, BIG_ENDIAN)
    return Array(kind, BIG_ENDIAN, stored, len(stored), len(texts))


class CInterface(unittest.TestCase):
    def test_values_are_stored_and_printed(self):
        for name, texts, stored in [("short", ["-2", "300"], "fffe012c"),
                                    ("OtString", ["é"], "0006fd0100e900ff")]:
            array = scan(type_of(name), *texts)
            for index, text in enumerate(texts):
                printed = give(OT95.ot95_print, ctypes.byref(array), ctypes.c_size_t(index), None)
                self.assertEqual(printed.decode(), text)
            values = give(OT95.ot95_translate, ctypes.byref(array), BIG_ENDIAN)
            self.assertEqual(values.hex(), stored)

    def test_damage_is_told(self):
        array = scan(type_of("OtString"), "abc")
        array.size -= 1
        self.assertEqual(OT95.ot95_verify(ctypes.byref(array), None), ERR_ENDS)

    def test_names_sort_by_key(self):
        collation = ctypes.c_void_p()
        check(OT95.ot95_collation_open(b"sv", IGNORE_CASE, ctypes.byref(collation)))
        names = ["Zorn", "Örebro", "orsa", "Åmål"]

        def key(name):
            name = name.encode()
            return give(OT95.ot95_collation_key, collation, name, ctypes.c_size_t(len(name)))

        self.assertEqual(sorted(names, key=key), ["orsa", "Zorn", "Åmål", "Örebro"])
        OT95.ot95_free(collation)

    def test_statuses_have_a_meaning(self):
        with self.assertRaisesRegex(ValueError, "no such type"):
            type_of("nothing")


if __name__ == "__main__":
    unittest.main()
