"""Values of Python as stored bytes, and what is refused."""
import copy
import pickle
import threading
from datetime import date, datetime, time, timedelta, timezone

import ot95
import pytest
from ot95 import Identity, Moment

INDIA = timezone(timedelta(hours=5, minutes=30))
STORED = [
    ("char", -1, "ff"),
    ("short", [-2, 300], "fffe012c"),
    ("OtDWord", 2**32 - 1, "ffffffff"),
    ("double", 1.5, "3ff8000000000000"),
    ("OtInt64", -2**63, "0000000080000000"),
    ("OtBoolean", [True, False, None], "0100ff"),
    ("OtNull_short", [7, None], "000007010000"),
    ("OtSeal", 2**48 - 1, "ffffffffffff"),
    ("OtBlob", b"ab", "00000006000000026162"),
    ("OtDate", date(2000, 1, 2), "07d00102"),
    ("OtDate", None, "80008080"),
    ("OtDate", Moment(0, -1, 31), "0000ff1f"),
    ("OtTime", time(23, 59, 58), "173b3a"),
    ("OtDateTime", datetime(2000, 1, 2, 23, 59, 58), "07d00102173b3a"),
    ("d_Time", time(10, 30, 1, 250_000, INDIA), "051e0f3c0119"),
    ("d_Interval", timedelta(days=1), "47a8c000"),
    ("OtObjId", Identity(block=7, low=0x1020304, high=0), "00000007010203040000"),
    ("OtString", "é", "0006fd0100e900ff"),
    ("OtString", ["", None], None),
]


@pytest.mark.parametrize("name, value, stored", STORED, ids=str)
def test_is_stored(name, value, stored):
    made = ot95.encode(name, value, "big-endian")
    if stored is not None:
        assert made.hex() == stored
    assert ot95.verify(made) == len(made)
    assert ot95.decode(made) == value
    native = ot95.translate(made, to="native")
    assert ot95.decode(native) == value
    assert ot95.compare(name, native, value) == 0
    assert pickle.loads(pickle.dumps(made)).type == copy.copy(made).type == ot95.types[name]


REFUSED = [
    ("nothing", 1, "expected a name in ot95.types, found 'nothing'"),
    ("shrot", 1, "found 'shrot'; the nearest is 'short'"),
    ("short", 40000, "short: expected a number that the type can hold, found 40000"),
    ("short", [1, 40000, 2], "found 40000"),
    ("short", 2**70, "expected an int of 64 bits at most"),
    ("short", "7", "expected an int"),
    ("short", 1.5, "expected an int"),
    ("short", None, "short: expected a value that the type can hold, found None"),
    ("short", [], "expected at least one value"),
    ("float", "x", "expected a float"),
    ("OtBoolean", 1, "expected True or False"),
    ("OtSeal", -1, "expected a number that the type can hold"),
    ("OtDate", datetime(2000, 1, 2), "expected a datetime.date or an ot95.Moment"),
    ("OtDate", "2000-01-02", "expected a datetime.date"),
    ("OtDateTime", date(2000, 1, 2), "expected a datetime.datetime"),
    ("OtTime", time(1, 2, 3, 4), "expected whole seconds"),
    ("OtTime", time(1, 2, 3, 0, INDIA), "expected no time zone"),
    ("d_Time", time(1, 2, 3, 5), "expected whole hundredths"),
    ("d_Interval", "1s", "expected a datetime.timedelta"),
    ("OtObjId", (1, 2), "expected an ot95.Identity"),
    ("OtObjId", Identity(low=2**40), "expected fields of 32 bits"),
    ("OtBlob", "ab", "expected bytes"),
    ("OtString", 7, "expected a str"),
    ("OtString", "{NULL}", "expected None for the null"),
    ("OtString", "a\0b", "zero"),
    ("OtString", "\ud800", "without lone surrogates"),
    ("OtString", "x" * 40000, "32,765"),
]


@pytest.mark.parametrize("name, value, expected", REFUSED, ids=str)
def test_is_refused(name, value, expected):
    with pytest.raises(ValueError) as error:
        ot95.encode(name, value)
    assert expected in str(error.value)
    assert str(pickle.loads(pickle.dumps(error.value))) == str(error.value)


@pytest.mark.parametrize("call, expected", [
    (lambda: ot95.encode("OtString", "東", code_set="ISO-8859-1"), "expected characters of the"),
    (lambda: ot95.encode("OtString", "a", code_set="nothing"), "a code set's name"),
    (lambda: ot95.encode("OtString", "a", language="xx"), "a language's tag"),
    (lambda: ot95.encode("short", 1, "middle-endian"), "the nearest is 'big-endian'"),
    (lambda: ot95.decode("short", b"\1"), "short: the bytes end"),
    (lambda: ot95.decode("short"), "expected an ot95.Stored, or a type and bytes"),
    (lambda: ot95.decode("OtString", b"\6\0\xff\xff\xff\xff"), "OtString: "),
    (lambda: ot95.estimate("short", 1, "=="), "expected a relation"),
    (lambda: ot95.compare("short", ot95.encode("long", 1), 1), "expected a stored short"),
    (lambda: ot95.scan("OtDate", "2000-13-45"), "expected a text that says such a value"),
    (lambda: ot95.scan("short", "1", "%q%q%q"), "short: "),
    (lambda: ot95.collation("xx"), "a language's tag"),
    (lambda: ot95.collation("sv", ot95.WILDCARDS), "without ot95.WILDCARDS"),
    (lambda: ot95.types["shrot"], "the nearest is 'short'"),
], ids=str)
def test_bad_calls_say_what_was_expected(call, expected):
    with pytest.raises((ValueError, KeyError)) as error:
        call()
    assert expected in str(error.value)


@pytest.mark.parametrize("name, text, format, value", [
    ("OtDate", "Sun 02.Jan 2000", None, date(2000, 1, 2)),
    ("OtDate", "02/01/2000", "%d/%m/%Y", date(2000, 1, 2)),
    ("OtNull_long", "{NULL}", None, None),
    ("OtString", "Åmål", None, "Åmål"),
    ("OtDateTime", "2000-01-02T23:59:58", None, datetime(2000, 1, 2, 23, 59, 58)),
])
def test_texts_are_read(name, text, format, value):
    assert ot95.scan(name, text, format) == value


def test_texts_are_read_as_the_type_does():
    assert ot95.scan("short", "99999", lenient=True) == 99999 - 2**17  # it wraps


def test_fields_of_no_calendar_come_as_they_are():
    for stored, fields in [("07d0021e", Moment(2000, 2, 30)), ("00000101", Moment(0, 1, 1))]:
        found = ot95.decode("OtDate", bytes.fromhex(stored), "big-endian")
        assert found == fields and isinstance(found, Moment)
        assert ot95.encode("OtDate", found, "big-endian").hex() == stored
    assert ot95.decode("d_Time", bytes.fromhex("01e2173b0000"), "big-endian") == Moment(
        hour=23, minute=59, zone_hour=1, zone_minute=-30)


def test_texts_have_a_language_and_a_code_set():
    swedish = ot95.encode("OtString", "Åmål", language="sv", code_set="ISO-8859-1")
    assert ot95.decode(swedish) == "Åmål"
    assert ot95.compare("OtString", swedish, ot95.encode("OtString", "Zorn", language="sv")) == 1
    assert ot95.compare("OtString", "Åmål", "Zorn") == -1


def test_the_old_table_differs_in_texts():
    old = ot95.types["OtString"].id | ot95.OLD_TABLE
    assert ot95.encode(old, "ab") != ot95.encode("OtString", "ab")
    assert ot95.decode(ot95.encode(old, "ab")) == "ab"


def test_collations_keep_what_they_are():
    swedish = ot95.collation("sv", ot95.IGNORE_CASE)
    again = pickle.loads(pickle.dumps(swedish))
    assert again == swedish and {again: 1}[swedish] == 1 and again != ot95.collation("sv")
    assert again("Åmål") == swedish("åmål") and again.version == swedish.version
    assert (swedish.upper("åmål"), swedish.lower("ÅMÅL")) == ("ÅMÅL", "åmål")
    assert len(swedish("x" * 5000)) > 5000  # more than the room that is kept


def test_patterns_find_what_keys_surround():
    names = ["San José", "santiago", "Sandviken", "Lima", "Sao Paulo"]
    order = ot95.collation("es", ot95.IGNORE_CASE)
    lower, upper = order.range("san*")
    assert [name for name in names if lower <= order(name) < upper] == names[:3]
    assert ot95.match("san*", names, "es", ot95.IGNORE_CASE) == names[:3]


def test_threads_share_a_collation():
    order = ot95.collation("cs", ot95.IGNORE_CASE)
    texts = [f"ch{number}h" * (number % 90 + 1) for number in range(600)]
    wanted = [order(text) for text in texts]
    found = {}

    def work(number):
        found[number] = [order(text) for text in texts]

    threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert all(found[number] == wanted for number in range(4))


def test_versions():
    found = ot95.versions()
    assert len(found.library) == 5 and found.collation >= 1
    assert found.unicode.count(".") == 2 and found.interface >= 1
