"""Data sets out of nothing: any elements of the dictionary, nested, in ascending order, the same for the same seed; and
mutations of data sets that exist."""

import random
import struct

from pydicom.datadict import DicomDictionary

UNDEFINED = 0xFFFFFFFF
ITEM, ITEM_END, SEQUENCE_END = 0xFFFEE000, 0xFFFEE00D, 0xFFFEE0DD
PIXEL_DATA = 0x7FE00010

# Bytes of one value, by VR; 1 for text, whose values are printable here. VRs that are read with a length of 0 are left
# out, as are tags whose VR has to be chosen, and those without a keyword, of whose VRs PS3.6 says nothing.
WIDTHS = {vr: 1 for vr in ("AE", "AS", "CS", "DA", "DS", "DT", "IS", "LO", "LT", "PN", "SH", "ST", "TM", "UI", "UT")}
WIDTHS |= {"US": 2, "SS": 2, "OW": 2, "UL": 4, "SL": 4, "FL": 4, "AT": 4, "OF": 4, "FD": 8, "OB": 1, "UN": 1, "SQ": 0}
LONG_LENGTH = {"OB", "OW", "OF", "SQ", "UT", "UN"}
BINARY = {"OB", "UN"}

TAGS = sorted(
    (tag, vr)
    for tag, (vr, _, _, _, keyword) in DicomDictionary.items()
    if 8 <= tag >> 16 < 0x7FE0 and vr in WIDTHS and keyword
)


class DataSetMaker:
    def __init__(self, seed, implicit, encapsulated=False):
        self._random = random.Random(seed)
        self._implicit = implicit
        self._encapsulated = encapsulated

    def data_set(self):
        return self._elements(self._random.randrange(1, 25), depth=0) + self._pixels()

    def _elements(self, count, depth):
        chosen = sorted(self._random.sample(TAGS, count))
        return b"".join(self._element(tag, vr, depth) for tag, vr in chosen)

    def _element(self, tag, vr, depth):
        if vr == "SQ":
            return self._sequence(tag, depth)
        count = self._random.choice([0, 1, 1, 2, 3, 10, 500 if depth == 0 else 1])
        length = count * WIDTHS[vr] + count * WIDTHS[vr] % 2
        if WIDTHS[vr] > 1 or vr in BINARY:
            value = self._random.randbytes(length)
        else:
            value = bytes(self._random.randrange(0x20, 0x7F) for _ in range(length))
        return self._header(tag, vr, length) + value

    def _sequence(self, tag, depth):
        count = self._random.randrange(3) if depth < 4 else 0
        items = b"".join(self._item(depth + 1) for _ in range(count))
        if self._random.random() < 0.5:
            return self._header(tag, "SQ", len(items)) + items
        return self._header(tag, "SQ", UNDEFINED) + items + marker(SEQUENCE_END)

    def _item(self, depth):
        content = self._elements(self._random.randrange(4), depth)
        if self._random.random() < 0.5:
            return marker(ITEM, len(content)) + content
        return marker(ITEM, UNDEFINED) + content + marker(ITEM_END)

    def _pixels(self):
        if not self._encapsulated:
            return b""
        fragments = [b""] + [self._random.randbytes(2 * self._random.randrange(200)) for _ in range(3)]
        content = b"".join(marker(ITEM, len(fragment)) + fragment for fragment in fragments)
        return self._header(PIXEL_DATA, "OB", UNDEFINED) + content + marker(SEQUENCE_END)

    def _header(self, tag, vr, length):
        if self._implicit:
            return marker(tag, length)
        form = "<2xI" if vr in LONG_LENGTH else "<H"
        return struct.pack("<HH", tag >> 16, tag & 0xFFFF) + vr.encode() + struct.pack(form, length)


def marker(tag, length=0):
    """A tag and four bytes of length: items and delimitations, and all headers in implicit VR."""
    return struct.pack("<HHI", tag >> 16, tag & 0xFFFF, length)


# Bytes that mean something in a header.
TELLING = bytes([0x00, 0x01, 0x02, 0x04, 0x08, 0x10, 0xFE, 0xFF, 0xE0, 0x0D, 0xDD, 0x51, 0x53])


def mutate(data, headers, seed):
    """One to three small changes, most of them in one of the headers: pairs of offset and size."""
    chance = random.Random(seed)
    data = bytearray(data)
    for _ in range(chance.randrange(1, 4)):
        start, size = chance.choice(headers) if chance.random() < 0.8 else (0, len(data))
        at = min(start + chance.randrange(size), len(data) - 1)
        change = chance.randrange(6)
        if change == 0:
            data[at] ^= 1 << chance.randrange(8)
        elif change in (1, 2):
            data[at] = chance.choice(TELLING)
        elif change == 3:
            data[at] = (data[at] + chance.choice([2, 4, 8, 254, 252, 248])) & 0xFF
        elif change == 4:
            del data[at : at + chance.choice([2, 8, size])]
        else:
            data[start:start] = data[start : start + chance.choice([8, size, 2 * size])]
    return bytes(data)
