"""Files of records: walked, as columns, damaged."""
import io
import pickle
from datetime import date, datetime

import numpy
import ot95
import pytest

LAYOUT = "OtString:name,long:people,OtDate:since,short:daysx2,OtNull_double:share"
ROWS = [("Lima", 7, date(1535, 1, 18), [1, 2], 0.5),
        (None, -3, None, [4, 5], None),
        ("Åmål", 0, date(1643, 1, 1), [0, 0], 1.0)]


def page(form="native"):
    """The records as a file of them."""
    members = ot95.parse_layout(LAYOUT)
    return b"".join(ot95.encode(member.type, value, form)
                    for row in ROWS for member, value in zip(members, row))


@pytest.mark.parametrize("form", ["native", "big-endian"])
@pytest.mark.parametrize("how", ["path", "file", "bytes"])
def test_are_walked(tmp_path, form, how):
    file = tmp_path / "places.bin"
    file.write_bytes(page(form))
    given = {"path": file, "file": io.BytesIO(page(form)), "bytes": page(form)}[how]
    found = ot95.records(given, LAYOUT, form)
    for _ in range(2):  # it can be walked more than once
        assert list(found.rows()) == ROWS
    assert next(iter(found)) == dict(zip(["name", "people", "since", "days", "share"], ROWS[0]))


def test_an_empty_file_has_no_records(tmp_path):
    (tmp_path / "empty").touch()
    found = ot95.records(tmp_path / "empty", LAYOUT)
    assert list(found) == []
    assert len(found.columns()["people"]) == 0


def test_columns_have_types_of_numpy():
    found = ot95.records(page(), LAYOUT).columns()
    assert found["name"].tolist() == ["Lima", None, "Åmål"]
    assert found["people"].dtype == "int32" and found["people"].sum() == 4
    assert found["since"].dtype == "M8[D]" and found["since"].mask.tolist() == [False, True, False]
    assert found["days"].shape == (3, 2) and found["days"].dtype == "int16"
    assert found["share"].sum() == 1.5
    times = b"".join(ot95.encode("OtDateTime", datetime(2000, 1, day)) for day in (1, 2))
    assert ot95.records(times, "OtDateTime:at").columns()["at"].dtype == "M8[us]"
    odd = ot95.records(ot95.encode("OtDate", ot95.Moment(2000, 2, 30)), "OtDate").columns()
    assert odd["OtDate"].tolist() == [ot95.Moment(2000, 2, 30)]


@pytest.mark.parametrize("form", ["native", "big-endian"])
def test_columns_of_numbers_are_views(form):
    """Both ways to columns say the same: NumPy's own, and value by value."""
    names = [name for name, kind in ot95.types.items() if kind.kind in (1, 2)
             and not kind.is_nullable]
    data = b"".join(ot95.encode(name, value, form) for value in (1, 100)
                    for name in names if name != "d_Interval")
    layout = ",".join(name for name in names if name != "d_Interval")
    found = ot95.records(data, layout, form)
    columns = found.columns()
    for name in columns:
        assert columns[name].tolist() == [1, 100], name
    plain = ot95.records(ot95.encode("long", [3, 4], form), "long", form).columns()["long"]
    assert plain.base is not None and plain.tolist() == [3, 4]


@pytest.mark.parametrize("cut, record, member", [(1, 2, "share"), (15, 2, "since"),
                                                   (50, 1, "since")])
def test_damage_has_a_place(cut, record, member):
    data = page()[:-cut]
    with pytest.raises(ot95.DamagedRecord) as error:
        list(ot95.records(data, LAYOUT))
    again = pickle.loads(pickle.dumps(error.value))
    assert (again.record, again.member) == (record, member)
    assert again.start <= again.end <= len(data)
    assert f"record {record}, which begins at offset {again.start}: in {member}" in str(again)
    with pytest.raises(ValueError):
        ot95.records(data, LAYOUT).columns()


@pytest.mark.parametrize("layout, expected", [
    ("short,nosuch:a", "layout, member 2: expected a name in ot95.types, found 'nosuch'"),
    ("short,", "layout, member 2: "),
    ("short:a,long:a", "member 2: expected a name of its own, found 'a'"),
    ("short:ax0", "member 1: expected a count of at least 1"),
])
def test_layouts_are_refused(layout, expected):
    with pytest.raises(ValueError) as error:
        ot95.records(b"", layout)
    assert expected in str(error.value)


def test_numbers_stay_whole():
    data = ot95.encode("OtInt64", [2**62 + 1, -1], "big-endian")
    column = ot95.records(data, "OtInt64:n", "big-endian").columns()["n"]
    assert column.dtype == numpy.int64 and column.tolist() == [2**62 + 1, -1]
