"""Code sets by number, name and codec, and their tables to Unicode and back."""

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
    0x30: ('Mac Roman', 'mac_roman'),
    0x40: ('EBCDIC 037', 'cp037'), 0x41: ('EBCDIC 500', 'cp500'), 0x42: ('EBCDIC 273', 'cp273'),
    0x43: ('EBCDIC 1026', 'cp1026'), 0x44: ('EBCDIC 1140', 'cp1140'),
}
TWO_BYTE = {0xe1: ('CP932', 'cp932'), 0xe2: ('GBK', 'gbk'), 0xe3: ('Big5', 'cp950'),
            0xe4: ('CP949', 'cp949')}
FIRST_EBCDIC = 0x40
SUBSTITUTE, EBCDIC_SUBSTITUTE = 0x1a, 0x3f
# The reverse tables of one-byte sets begin with these pages as they are, so that the letters of
# Europe and the Near East are found without a page number.
KEPT_PAGES = 8


def to_unicode(number):
    name, codec = ONE_BYTE[number]
    values = []
    for byte in range(256):
        text = bytes([byte]).decode(codec, 'replace')
        value = ord(text) if len(text) == 1 else REPLACEMENT
        if value == REPLACEMENT and name.startswith('Windows') and 0x80 <= byte < 0xa0:
            value = byte
        values.append(value)
    if number < FIRST_EBCDIC:
        assert values[:128] == list(range(128)), name
    return values


def from_unicode(values):
    """Reverse of a table of 256 values."""
    back = {}
    for byte, value in enumerate(values):
        if value != REPLACEMENT:
            back.setdefault(value, byte)
    return back


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
    for value, unicode in forth.items():
        data = chr(unicode).encode(codec, 'ignore')
        if len(data) in (1, 2):
            back[unicode] = int.from_bytes(data, 'big')
    return forth, back


def paged(values, width, size, missing=0, kept=0):
    """A table of `width` values as pages of `size`: page numbers and the pages in one row. The
    first `kept` pages stand at the head one by one; without any, page 0 is empty."""
    rows = [tuple(values.get(start + i, missing) for i in range(size))
            for start in range(0, width, size)]
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
