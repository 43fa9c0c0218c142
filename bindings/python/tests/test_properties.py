"""Laws that hold for any value."""
from datetime import date, datetime, time, timedelta, timezone

import ot95
from hypothesis import given, settings
from hypothesis import strategies as st

settings.register_profile("quiet", deadline=None, database=None, derandomize=True)
settings.load_profile("quiet")

WORDS = st.text(st.characters(blacklist_categories=["Cs"], blacklist_characters="\0"),
                max_size=60).filter(lambda text: text != "{NULL}")
SECONDS = st.times().map(lambda moment: moment.replace(microsecond=0))
ZONES = st.integers(-14 * 60, 14 * 60).filter(bool).map(
    lambda minutes: timezone(timedelta(minutes=minutes)))
CLOCKS = st.builds(
    lambda moment, zone: moment.replace(microsecond=moment.microsecond // 10_000 * 10_000,
                                        tzinfo=zone), st.times(), st.none() | ZONES)


def whole(bits, least=0):
    return st.integers(least, least + 2**bits - 1)


VALUES = {
    "char": whole(8, -2**7), "OtByte": whole(8), "short": whole(16, -2**15), "OtWord": whole(16),
    "long": whole(32, -2**31), "OtDWord": whole(32), "OtInt64": whole(64, -2**63),
    "OtNull_int": whole(32, -2**31) | st.none(), "OtSeal": whole(48),
    "double": st.floats(allow_nan=False), "float": st.floats(width=32, allow_nan=False),
    "OtBoolean": st.booleans() | st.none(), "OtBlob": st.binary(),
    "OtDate": st.dates() | st.none(), "OtTime": SECONDS | st.none(),
    "OtDateTime": st.builds(datetime.combine, st.dates(), SECONDS) | st.none(),
    "d_Date": st.dates(), "d_Time": CLOCKS,
    "d_Timestamp": st.builds(datetime.combine, st.dates(), CLOCKS),
    "OtString": WORDS | st.none(),
    "OtObjId": st.builds(ot95.Identity, whole(32), st.integers(1, 2**32 - 1),
                         whole(16), *[st.just(0)] * 3),
}
FORMS = st.sampled_from(["native", "big-endian"])
ANY = st.sampled_from(sorted(VALUES)).flatmap(
    lambda name: st.tuples(st.just(name), st.lists(VALUES[name], min_size=1, max_size=4)))
PAIR = st.sampled_from(sorted(VALUES)).flatmap(
    lambda name: st.tuples(st.just(name), VALUES[name], VALUES[name]))


@settings(max_examples=600)
@given(ANY, FORMS)
def test_values_come_back(given_values, form):
    name, values = given_values
    stored = ot95.encode(name, values, form)
    assert ot95.decode(stored) == (values if len(values) > 1 else values[0])
    assert ot95.decode(name, bytes(stored), form, len(values)) == values
    other = ot95.translate(stored, to="big-endian" if form == "native" else "native")
    assert ot95.decode(name, bytes(other), other.form, len(values)) == values
    assert bytes(ot95.translate(other, to=form)) == bytes(stored)


@settings(max_examples=400)
@given(PAIR)
def test_equal_values_hash_alike_and_keys_order_as_values_do(pair):
    name, a, b = pair
    sign = ot95.compare(name, a, b)
    assert ot95.compare(name, b, a) == -sign
    if sign == 0:
        assert ot95.hash64(name, a) == ot95.hash64(name, b)
    left, right = ot95.sort_key(name, a), ot95.sort_key(name, b)
    assert (left > right) - (left < right) == sign


@settings(max_examples=200)
@given(st.lists(WORDS), st.sampled_from(["", "sv", "de-phonebook", "cs", "ja"]),
       st.sampled_from([0, ot95.IGNORE_CASE, ot95.IGNORE_CASE | ot95.IGNORE_ACCENT]))
def test_sorted_texts_are_in_order(texts, tag, options):
    order = ot95.collation(tag, options)
    ordered = sorted(texts, key=order)
    for a, b in zip(ordered, ordered[1:]):
        assert order.compare(a, b) <= 0
        assert (order.hash(a) == order.hash(b)) == (order.compare(a, b) == 0)


@given(st.binary(max_size=40), st.sampled_from(sorted(ot95.types)), FORMS, st.integers(1, 3))
def test_any_bytes_are_read_or_refused(data, name, form, count):
    try:
        end = ot95.verify(name, data, form, count)
    except ot95.Damaged as error:
        assert 0 <= error.end <= len(data)
    else:
        values = ot95.decode(name, data, form, count)
        assert end <= len(data) and len(values) == count
