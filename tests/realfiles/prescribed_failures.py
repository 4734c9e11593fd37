"""The samples that do not decompose to their end, one by one: what the call says and the last event it sent.

Each was worked out from the bytes of the file, as the comment beside it tells.
"""

from loaded_library import DID_NOT_RETURN

STEP = " decomposing stream"
BIG_ENDIAN_REFUSED = f"DecomposeStream: Expected a supported transfer syntax, got: 1.2.840.10008.1.2.2 - {STEP}"
ODD_LENGTH = f"DecomposeElement reading VR and data length: Datalength is an odd number - {STEP}"
CUT = STEP  # the stream ended inside an element: a bare status, so the step alone


# As a host opens them: the syntax that the meta group names (or, without one, the right one).
AS_OPENED = {
    # Explicit VR big endian is not decomposed; the call ends before its first event.
    "test_files/ExplVR_BigEnd.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/ExplVR_BigEndNoMeta.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/MR_small_bigendian.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/MR_small_expb.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/dicomdirtests/DICOMDIR-bigEnd": (BIG_ENDIAN_REFUSED, None),
    "test_files/liver_expb_1frame.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/rtdose_expb.dcm": (BIG_ENDIAN_REFUSED, None),
    "test_files/rtdose_expb_1frame.dcm": (BIG_ENDIAN_REFUSED, None),
    # The meta group has no (0002,0010).
    "test_files/meta_missing_tsyntax.dcm": (f"DecomposeStream: Expected a supported transfer syntax, got:  - {STEP}", None),
    # Cut in the middle of the pixel data: 8192 bytes are named, 8130 are there.
    "test_files/MR_truncated.dcm": (CUT, "StartElement 7FE00010 OW 8192"),
    # Cut in the value of (300A,012C), two sequences deep: 50 bytes are named, 29 are there.
    "test_files/rtplan_truncated.dcm": (CUT, "StartElement 300A012C DS 50"),
    # The offsets were taken out and the lengths left: the last item, of 248 bytes, has 224, and they end with an
    # element. An item of defined length ends by position alone, which is never reached.
    "test_files/dicomdirtests/DICOMDIR-nooffset": (DID_NOT_RETURN, None),
    # Sequences that their writers called UN, with undefined length: legal, and taken for encapsulated data.
    "test_files/UN_sequence.dcm": (
        f"DecomposeData_UndefLength: Expected an encapsulated transfer syntax tag, got: 4453100C - {STEP}",
        "StartElement 4453100C UN 4294967295",
    ),
    "test_files/nested_priv_SQ.dcm": (
        f"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2 - {STEP}",
        "StartElement 00010001 UN 4294967295",
    ),
    # Named JPEG, which is explicit VR, and written in implicit VR: (0008,0008) gets the VR 18 00 and no bytes; its
    # value "DERIVED\\SECONDARY..." is read as the tag 4544,4952, VR "VE" and the length 0x5C44, beyond the end.
    "test_files/SC_rgb_jpeg.dcm": (CUT, "StartElement 45444952 VE 23620"),
}

# Opened otherwise than they are: (name, offset or None for the sample's own, syntax) -> outcome.
OTHERWISE = {
    # Without inflating, the first bytes ED DD CF 6E DC D6 15 C7 are a tag, a VR and the length 0xC715.
    ("test_files/image_dfl.dcm", None, "1.2.840.10008.1.2.1.99"): (ODD_LENGTH, "StartContent 1.2.840.10008.1.2.1.99"),
    # With its stray blank: 20 08 00 05 is the tag, 00 43 the VR, 53 0A the length 0x0A53.
    ("test_files/no_meta.dcm", 0, "1.2.840.10008.1.2.1"): (ODD_LENGTH, "StartContent 1.2.840.10008.1.2.1"),
    # Big endian taken for little: 00 08 00 05 "CS" 00 0A is (0800,0500) CS with 2560 bytes.
    ("test_files/ExplVR_BigEndNoMeta.dcm", 0, "1.2.840.10008.1.2.1"): (CUT, "StartElement 08000500 CS 2560"),
    # The implicit data set behind the JPEG name: all is well up to the pixel data, which implicit VR cannot encapsulate.
    ("test_files/SC_rgb_jpeg.dcm", None, "1.2.840.10008.1.2"): (
        "DecomposeElement reading VR and data length: Element specifies undefined length but VR 'OX' does not allow it"
        f" - {STEP}",
        "EndElement 00282114",
    ),
    # The syntax that the missing name stood for.
    ("test_files/meta_missing_tsyntax.dcm", None, "1.2.840.10008.1.2"): (
        f"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2 - {STEP}",
        "StartElement 00010001 UN 4294967295",
    ),
    # A padding byte is part of the name.
    ("test_files/CT_small.dcm", None, "1.2.840.10008.1.2.1 "): (
        f"DecomposeStream: Expected a supported transfer syntax, got: 1.2.840.10008.1.2.1  - {STEP}",
        None,
    ),
}

# What dcmconv does not rewrite, besides encapsulated pixel data: cut, named wrongly, or begun with a stray byte.
DCMCONV_REFUSES = {
    "test_files/MR_truncated.dcm",
    "test_files/SC_rgb_jpeg.dcm",
    "test_files/no_meta.dcm",
    "test_files/rtplan_truncated.dcm",
}

# Private sequences in implicit VR with undefined length: legal, and taken for encapsulated data, since nothing in the
# stream says that they are sequences. The last event names the first of them.
_UNDEFINED_UN = f"DecomposeData_UndefLength: Expected an encapsulated transfer syntax, got: 1.2.840.10008.1.2 - {STEP}"
REWRITTEN_FAILURES = {
    (name, "+ti", "-e"): (_UNDEFINED_UN, f"StartElement {tag} UN 4294967295")
    for name, tag in {
        "test_files/UN_sequence.dcm": "4453100C",
        "test_files/meta_missing_tsyntax.dcm": "00010001",
        "test_files/nested_priv_SQ.dcm": "00010001",
        "test_files/dicomdirtests/98892001/CT2N/6293": "00491001",
        "test_files/dicomdirtests/98892001/CT2N/6924": "00491001",
        "test_files/dicomdirtests/98892001/CT5N/2062": "00491001",
        "test_files/dicomdirtests/98892001/CT5N/2392": "00491001",
        "test_files/dicomdirtests/98892001/CT5N/2693": "00491001",
        "test_files/dicomdirtests/98892001/CT5N/3023": "00491001",
        "test_files/dicomdirtests/98892001/CT5N/3353": "00491001",
    }.items()
}
