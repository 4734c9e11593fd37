"""DICOM files that are damaged in the ways of docs/known-limits.md, byte by byte.

`FILES`: number of the case -> Damaged. What the file should say is what `reference` has as its value.
"""

import dataclasses
import struct
import zlib

IMPLICIT = "1.2.840.10008.1.2"
EXPLICIT = "1.2.840.10008.1.2.1"
BIG_ENDIAN = "1.2.840.10008.1.2.2"
DEFLATED = "1.2.840.10008.1.2.1.99"
LONG_LENGTH = ("OB", "OD", "OF", "OL", "OV", "OW", "SQ", "SV", "UC", "UN", "UR", "UT", "UV")
UNDEFINED = 0xFFFFFFFF
ITEM, ITEM_END, SEQUENCE_END = 0xFFFEE000, 0xFFFEE00D, 0xFFFEE0DD


@dataclasses.dataclass
class Damaged:
    content: bytes  #: the whole file
    reference: str  #: the attribute that shows whether it can be read
    value: str  #: of it


def tag_bytes(tag):
    return struct.pack("<HH", tag >> 16, tag & 0xFFFF)


def implicit(tag, value, length=None):
    return tag_bytes(tag) + struct.pack("<I", len(value) if length is None else length) + value


def explicit(tag, vr, value, length=None):
    length = len(value) if length is None else length
    form = "<2xI" if vr in LONG_LENGTH else "<H"
    return tag_bytes(tag) + vr.encode() + struct.pack(form, length) + value


def big_endian(tag, vr, value):
    return struct.pack(">I", tag) + vr.encode() + struct.pack(">H", len(value)) + value


def file_of(data_set, syntax=EXPLICIT):
    uid = syntax.encode() + b"\0" * (len(syntax) % 2)
    meta = (
        explicit(0x00020001, "OB", b"\0\1")
        + explicit(0x00020002, "UI", SECONDARY_CAPTURE)
        + explicit(0x00020003, "UI", b"1.2.3.4.")
        + explicit(0x00020010, "UI", uid)
        + explicit(0x00020012, "UI", b"1.2.")
    )
    return bytes(128) + b"DICM" + explicit(0x00020000, "UL", struct.pack("<I", len(meta))) + meta + data_set


def deflated(data_set):
    packer = zlib.compressobj(wbits=-15)
    packed = packer.compress(data_set) + packer.flush()
    return packed + b"\0" * (len(packed) % 2)


SECONDARY_CAPTURE = b"1.2.840.10008.5.1.4.1.1.7\0"
HEAD = explicit(0x00080016, "UI", SECONDARY_CAPTURE) + explicit(0x00080018, "UI", b"1.2.3.4.")
IMPLICIT_HEAD = implicit(0x00080016, SECONDARY_CAPTURE) + implicit(0x00080018, b"1.2.3.4.")
NAME = explicit(0x00100010, "PN", b"Doe^John")
IMPLICIT_NAME = implicit(0x00100010, b"Doe^John")
IMAGE = explicit(0x00081155, "UI", b"1.2.5.6.")


def images(content, length=None):
    return HEAD + explicit(0x00081140, "SQ", content, length)


def named(content, syntax=EXPLICIT):
    return Damaged(file_of(content, syntax), "PatientName", "Doe^John")


def with_image(content):
    return Damaged(file_of(content), "ReferencedImageSequence[1].ReferencedSOPInstanceUID", "1.2.5.6.")


UNKNOWN_ITEMS = (
    implicit(ITEM, implicit(0x00081155, b"1.2."), UNDEFINED) + implicit(ITEM_END, b"") + implicit(SEQUENCE_END, b"")
)

FILES = {
    3: named(HEAD + NAME + explicit(0x00102000, "LT", b"ab", 8)),
    4: with_image(images(implicit(ITEM, IMAGE, len(IMAGE) + 10), len(IMAGE) + 18)),
    13: with_image(images(implicit(ITEM, IMAGE, UNDEFINED), UNDEFINED)),
    16: named(images(implicit(ITEM, IMAGE, UNDEFINED) + implicit(ITEM_END, b"", 0x424F) + implicit(SEQUENCE_END, b""),
                     UNDEFINED) + NAME),
    20: Damaged(file_of(HEAD + explicit(0x00100010, "PN", b"odd")), "PatientName", "odd"),
    25: named(HEAD + explicit(0x00091110, "UN", UNKNOWN_ITEMS, UNDEFINED) + NAME),
    30: named(HEAD + explicit(0x00100010, "ZZ", b"Doe^John")),
    31: named(HEAD + explicit(0x00080119, "UC", b"Long") + NAME),
    32: named(IMPLICIT_HEAD + IMPLICIT_NAME, EXPLICIT),
    34: named(HEAD + NAME + bytes(12)),
    35: named(big_endian(0x00080018, "UI", b"1.2.3.4.") + big_endian(0x00100010, "PN", b"Doe^John"), BIG_ENDIAN),
    73: named(HEAD + explicit(0x00100020, "LO", b"4711") + NAME),
    77: named(IMPLICIT_HEAD + IMPLICIT_NAME, IMPLICIT),
    83: named(deflated(HEAD + NAME), DEFLATED),
    91: Damaged(file_of(HEAD + explicit(0x00100010, "PN", b"odd")), "PatientName", "odd"),
}  # fmt: skip
