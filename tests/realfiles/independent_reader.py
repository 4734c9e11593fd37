"""Reads data sets with pydicom and tells them as the events that a content handler should see.

pydicom parses; this file only puts what it found into the order and words of the events. What pydicom does not keep
(the length of an item) is taken from the bytes at the place where pydicom found the item.
"""

import io
import struct

from pydicom import config, encaps
from pydicom.datadict import get_entry
from pydicom.filebase import DicomBytesIO
from pydicom.filereader import data_element_generator, read_sequence

UNDEFINED = 0xFFFFFFFF
CHUNK = 32648
PIXEL_DATA = 0x7FE00010

# Bytes as they stand: no guessing of VRs, no second opinion on UN.
config.settings.infer_sq_for_un_vr = False
config.replace_un_with_known_vr = False
config.assume_implicit_vr_switch = False

# VRs that PS3.6 leaves open have one placeholder each.
PLACEHOLDERS = {"US or SS": "XS", "US or SS or OW": "XS", "US or OW": "XS", "OB or OW": "OX", "NONE": "NA", "": "NA"}


def implicit_vr(tag):
    """The VR that the dictionary gives an element of an implicit VR stream. Private ones are UN, but LO where the low
    12 bits of the element are those of a private creator (that, too, is what hosts have always met)."""
    group, element = tag >> 16, tag & 0xFFFF
    if group & 1:
        return "LO" if group >= 9 and 0x10 <= element & 0xFFF <= 0x100 else "UN"
    try:
        vr = get_entry(tag)[0]
    except KeyError:
        return "UN"
    return PLACEHOLDERS.get(vr, vr)


class Listing:
    """Event lines of one data set, and how many elements and value bytes they hold."""

    def __init__(self):
        self.lines = []
        self.elements = 0
        self.value_bytes = 0

    def element(self, tag, vr, length):
        self.lines.append(f"StartElement {tag:08X} {vr} {length}")
        self.elements += 1

    def value(self, tag, value):
        chunks = [value[at : at + CHUNK] for at in range(0, len(value), CHUNK)] or [b""]
        for number, chunk in enumerate(chunks, start=1):
            self.lines.append(f"Data {tag:08X} {number} {chunk.hex().upper()}".rstrip())
        self.value_bytes += len(value)

    def item(self, tag, length, write_content):
        self.lines.append(f"StartItem {tag:08X} {length}")
        write_content()
        self.lines.append(f"EndItem {tag:08X} {length}")


def events(data, syntax, implicit):
    """The events of `data`, a whole data set in little endian, as a Listing."""
    listing = Listing()
    listing.lines.append(f"StartContent {syntax}")
    elements = data_element_generator(io.BytesIO(data), implicit, True)
    _write_elements(listing, elements, data, implicit)
    listing.lines.append("EndContent")
    return listing


def meta_length(data):
    """Bytes of the file meta group (0002) at the start of `data`."""
    stream = io.BytesIO(data)
    for _ in data_element_generator(stream, False, True, stop_when=lambda tag, vr, length: tag >> 16 != 2):
        pass
    return stream.tell()


def _write_elements(listing, elements, data, implicit):
    for element in elements:
        tag = int(element.tag)
        vr = implicit_vr(tag) if implicit else element.VR
        undefined = getattr(element, "is_undefined_length", False) or getattr(element, "length", 0) == UNDEFINED
        if vr == "SQ":
            _write_sequence(listing, tag, element, data, implicit, undefined)
        elif undefined:
            _write_fragments(listing, tag, vr, element.value)
        else:
            listing.element(tag, vr, element.length)
            listing.value(tag, element.value or b"")
        listing.lines.append(f"EndElement {tag:08X}")


def _write_sequence(listing, tag, element, data, implicit, undefined):
    """A sequence of undefined length comes parsed out of `data`; one of defined length comes as its bytes."""
    if undefined:
        items, length = element.value, UNDEFINED
    else:
        data, length = element.value or b"", element.length
        items = read_sequence(io.BytesIO(data), implicit, True, length, "iso8859") if length else []
    listing.element(tag, "SQ", length)
    if length == 0:
        return
    listing.lines.append("StartSequence")
    for item in items:
        (item_length,) = struct.unpack_from("<L", data, item.seq_item_tell + 4)
        elements = item._dict.values()  # unconverted, in stream order
        listing.item(tag, item_length, lambda e=elements: _write_elements(listing, e, data, implicit))
    listing.lines.append("EndSequence")


def _write_fragments(listing, tag, vr, value):
    """Encapsulated pixel data (PS3.5 section A.4): each fragment is an item; the delimiter is told as one too."""
    listing.element(tag, vr, UNDEFINED)
    stream = DicomBytesIO(value)
    stream.is_little_endian = True
    for fragment in encaps.generate_pixel_data_fragment(stream):
        listing.item(0xFFFEE000, len(fragment), lambda f=fragment: listing.value(tag, f))
    listing.item(0xFFFEE0DD, 0, lambda: listing.value(0xFFFEE0DD, b""))
