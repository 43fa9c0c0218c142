"""Code sets by number, name and codec, and their tables to Unicode and back."""

import functools
import subprocess
import unicodedata

REPLACEMENT = 0xfffd

ONE_BYTE = {
    1: ('Windows-1252', 'cp1252'), 2: ('ISO-8859-1', 'iso8859_1'), 3: ('US-ASCII', 'ascii'),
    4: ('ISO-8859-15', 'iso8859_15'), 5: ('ISO-8859-2', 'iso8859_2'),
    6: ('Windows-1250', 'cp1250'), 7: ('ISO-8859-3', 'iso8859_3'),
    8: ('ISO-8859-4', 'iso8859_4'), 9: ('ISO-8859-5', 'iso8859_5'),
    0x0a: ('Windows-1251', 'cp1251'), 0x0b: ('KOI8-R', 'koi8_r'), 0x0c: ('KOI8-U', 'koi8_u'),
    0x0d: ('ISO-8859-6', 'iso8859_6'), 0x0e: ('Windows-1256', 'cp1256'),
    0x0f: ('ISO-8859-7', 'iso8859_7'), 0x10: ('Windows-1253', 'cp1253'),
    0x11: ('ISO-8859-8', 'iso8859_8'), 0x12: ('Windows-1255', 'cp1255'),
    0x13: ('ISO-8859-9', 'iso8859_9'), 0x14: ('Windows-1254', 'cp1254'),
    0x15: ('ISO-8859-10', 'iso8859_10'), 0x16: ('Windows-874', 'cp874'),
    0x17: ('ISO-8859-13', 'iso8859_13'), 0x18: ('Windows-1257', 'cp1257'),
    0x19: ('ISO-8859-16', 'iso8859_16'), 0x1a: ('Windows-1258', 'cp1258'),
    0x1b: ('ISO-8859-14', 'iso8859_14'), 0x1c: ('ISO-8859-11', 'iso8859_11'),
    0x1d: ('CP437', 'cp437'), 0x1e: ('CP850', 'cp850'), 0x1f: ('CP852', 'cp852'),
    0x20: ('CP855', 'cp855'), 0x21: ('CP857', 'cp857'), 0x22: ('CP858', 'cp858'),
    0x23: ('CP860', 'cp860'), 0x24: ('CP861', 'cp861'), 0x25: ('CP862', 'cp862'),
    0x26: ('CP863', 'cp863'), 0x27: ('CP865', 'cp865'), 0x28: ('CP866', 'cp866'),
    0x29: ('CP869', 'cp869'), 0x2a: ('CP737', 'cp737'), 0x2b: ('CP775', 'cp775'),
    0x30: ('Mac Roman', 'mac_roman'), 0x31: ('Mac Central European', 'mac_latin2'),
    0x32: ('Mac Croatian', 'mac_croatian'), 0x33: ('Mac Romanian', 'mac_romanian'),
    0x34: ('Mac Cyrillic', 'mac_cyrillic'), 0x35: ('Mac Greek', 'mac_greek'),
    0x36: ('Mac Turkish', 'mac_turkish'), 0x37: ('Mac Icelandic', 'mac_iceland'),
    0x38: ('Mac Arabic', 'mac_arabic'), 0x39: ('Mac Farsi', 'mac_farsi'),
    0x40: ('EBCDIC 037', 'cp037'), 0x41: ('EBCDIC 500', 'cp500'), 0x42: ('EBCDIC 273', 'cp273'),
    0x43: ('EBCDIC 1026', 'cp1026'), 0x44: ('EBCDIC 1140', 'cp1140'),
    0x45: ('EBCDIC 1047', 'iconv IBM1047'),
    **{0x46 + i: (f'EBCDIC {1141 + i}', f'iconv IBM{1141 + i}') for i in range(9)},
    0x50: ('CP864', 'cp864'), 0x51: ('VISCII', 'iconv VISCII'),
}
TWO_BYTE = {0xe1: ('CP932', 'cp932'), 0xe2: ('GBK', 'gbk'), 0xe3: ('Big5', 'cp950'),
            0xe4: ('CP949', 'cp949'), 0xe8: ('EUC-JP', 'euc_jp'), 0xe9: ('GB18030', 'gb18030'),
            0xea: ('Big5-HKSCS', 'big5hkscs')}
FIRST_BEYOND_ASCII = 0x40   # From here on sets have other characters in the place of ASCII's.
# Bytes that the codec has another way than the maker's own table.
CORRECTED = {0x42: {0xbc: 0xaf}}
# The euro of GBK, which came after the set, is a single byte.
FURTHER_PAIRS = {0xe2: {0x80: 0x20ac}}
# Lead bytes of characters that CP932 has twice: the others are taken from Unicode.
SECOND_CHOICE = {0xe1: (0xed, 0xee)}
VIETNAMESE = 0x1a       # Spells letters with marks of their own behind them.
SUBSTITUTE, EBCDIC_SUBSTITUTE = 0x1a, 0x3f
# The reverse tables of one-byte sets in daily use begin with these pages as they are, so that the
# letters of Europe and the Near East are found without a page number. Older sets, of the numbers
# from FIRST_OLD, go without, which saves half of their room.
KEPT_PAGES = 8
FIRST_OLD = 0x1d
WIDE_PAGE = 32      # The size with which the tables of two-byte sets take least room.


def decoded_bytes(codec):
    """What each byte is, as text; empty for a byte without meaning."""
    if not codec.startswith('iconv '):
        return [bytes([byte]).decode(codec, 'ignore') for byte in range(256)]
    text = subprocess.run(['iconv', '-f', codec.split()[1], '-t', 'utf-16be'], check=True,
                          input=bytes(range(256)), stdout=subprocess.PIPE).stdout
    assert len(text) == 512, codec
    return list(text.decode('utf-16be'))


@functools.lru_cache(None)
def to_unicode(number):
    name, codec = ONE_BYTE[number]
    values = []
    for byte, text in enumerate(decoded_bytes(codec)):
        value = ord(text) if len(text) == 1 else REPLACEMENT
        if value == REPLACEMENT and name.startswith('Windows') and 0x80 <= byte < 0xa0:
            value = byte
        values.append(CORRECTED.get(number, {}).get(byte, value))
    if number < FIRST_BEYOND_ASCII:
        assert values[:128] == list(range(128)), name
    return values


def substitute(number):
    return EBCDIC_SUBSTITUTE if ONE_BYTE[number][0].startswith('EBCDIC') else SUBSTITUTE


def from_unicode(values):
    """Reverse of a table of 256 values."""
    back = {}
    for byte, value in enumerate(values):
        if value != REPLACEMENT:
            back.setdefault(value, byte)
    return back


@functools.lru_cache(None)
def double_byte(number):
    """Value of the set to Unicode, and the reverse."""
    codec, forth, back = TWO_BYTE[number][1], {}, {}
    for lead in range(256):
        pairs = [lead << 8 | trail for trail in range(0x30, 0x100)] if lead else []
        for value in [lead] + pairs:
            data = bytes([value >> 8, value & 0xff]) if value > 0xff else bytes([value])
            try:
                text = data.decode(codec)
            except UnicodeDecodeError:
                continue
            if len(text) == 1 and ord(text) < 0x10000:
                forth[value] = ord(text)
    forth.update(FURTHER_PAIRS.get(number, {}))
    for value, unicode in forth.items():
        data = chr(unicode).encode(codec, 'ignore')
        back[unicode] = int.from_bytes(data, 'big') if len(data) in (1, 2) else value
    if number in SECOND_CHOICE:
        back = {}
        for value in sorted(forth, key=lambda v: (v >> 8 in SECOND_CHOICE[number], v)):
            back.setdefault(forth[value], value)
    assert all(forth.get(value) == unicode for unicode, value in back.items()), codec
    return forth, back


def spelled_letters():
    """Letters that a set spells with a mark behind them: (byte, mark's byte) to Unicode."""
    values = to_unicode(VIETNAMESE)
    marks = [byte for byte, value in enumerate(values) if unicodedata.combining(chr(value))]
    letters = {}
    for byte, value in enumerate(values):
        for mark in marks:
            text = unicodedata.normalize('NFC', chr(value) + chr(values[mark]))
            if byte not in marks and len(text) == 1:
                letters[byte, mark] = ord(text)
    return letters


def page_rows(values, width, size, missing=0):
    """A table of `width` values as pages of `size`."""
    empty = (missing,) * size
    present = {code // size for code in values if code < width}
    get = values.get
    for number in range(width // size):
        start = number * size
        yield tuple(get(code, missing) for code in range(start, start + size)) \
            if number in present else empty


def paged(values, width, size, missing=0, kept=0):
    """A table of `width` values as pages of `size`: page numbers and the pages in one row. The
    first `kept` pages stand at the head one by one; without any, page 0 is empty."""
    rows = list(page_rows(values, width, size, missing))
    pages = rows[:kept] if kept else [(missing,) * size]
    places = {}
    for place, page in enumerate(pages):
        places.setdefault(page, place)
    numbers = list(range(kept))
    for page in rows[kept:]:
        if page not in places:
            places[page] = len(pages)
            pages.append(page)
        numbers.append(places[page])
    return numbers, [value for page in pages for value in page]
