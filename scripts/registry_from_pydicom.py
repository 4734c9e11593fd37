#!/usr/bin/python3
"""Writes dicom/registry.tsv, the rows of the data dictionary, from the facts that pydicom carries.

pydicom 2.3.1 (Debian 12: python3-pydicom) holds edition 2022a of the standard: PS3.6 tables 6-1 (data elements),
7-1 (file meta elements), 8-1 (directory elements) and 9-1 (dynamic RTP payload elements), and the command elements
(group 0000) of PS3.7. No build needs this script; it stays here to show where the rows come from, and to make them
again for another edition.

    scripts/registry_from_pydicom.py            writes dicom/registry.tsv
    scripts/registry_from_pydicom.py --check    compares instead; exit code 1 when they differ,
                                                77 (skipped) without pydicom 2.3.1

A row is "tag, keyword, VR, VM", separated by tabs. The 4899 rows that a keyword can find come first, sorted by keyword
as bytes; then, in tag order, the 94 that none finds: 88 of repeating groups and 6 without a keyword of their own.
"""

import argparse
import pathlib
import sys
from collections import Counter

PYDICOM_VERSION = "2.3.1"
SKIPPED = 77
REGISTRY = pathlib.Path(__file__).resolve().parent.parent / "dicom" / "registry.tsv"

# What the dictionary says instead of the standard's alternatives: one code of two letters.
PLACEHOLDER_VRS = {
    "US or SS": "XS",
    "US or SS or OW": "XS",
    "US or OW": "XS",
    "OB or OW": "OX",
    "NONE": "NA",  # items and delimiters
}

# In table 6-1 of PS3.6 2022a, but not in pydicom's.
MISSING_ROWS = {0x00060001: ("CurrentFrameFunctionalGroupsSequence", "SQ", "1")}

# Table 6-1 prints "1-n or 1" here; pydicom shortens it.
MULTIPLICITIES = {0x00281200: "1-n or 1", 0x00283006: "1-n or 1"}

# Retired elements that have no keyword in the standard. The first three still have VR and VM there; the others have
# none ("See Note"), whatever VR pydicom fills in.
NAMELESS_ROWS = {
    0x00180061: ("Anonymous", "DS", "1"),
    0x04000315: ("Anonymous", "FL", "1"),
    0x300A0782: ("Anonymous", "US", "1"),
    0x00080202: ("Invalid", "UN", "1"),
    0x00189445: ("Invalid", "UN", "1"),
    0x00280020: ("Invalid", "UN", "1"),
}

# What must come out; a change of edition or of pydicom shows here first.
EXPECTED = {
    "command elements": 46,
    "rows found by keyword": 4899,
    "rows of 60FFxxxx": 40,
    "rows of 50FFxxxx": 26,
    "rows of 0028": 9,
    "rows of 1000": 6,
    "rows of 7FFFxxxx": 5,
    "rows of 0020": 1,
    "rows of 1010": 1,
    "rows Anonymous": 3,
    "rows Invalid": 3,
    "VR XS": 27,
    "VR OX": 11,
    "VR NA": 3,
}


def make_row(tag, entry):
    vr, vm, _name, _retired, keyword = entry
    return (tag, keyword, PLACEHOLDER_VRS.get(vr, vr), MULTIPLICITIES.get(tag, vm))


def keyword_rows(dictionary):
    rows = [make_row(tag, entry) for tag, entry in dictionary.items() if tag not in NAMELESS_ROWS]
    rows += [(tag, *facts) for tag, facts in MISSING_ROWS.items()]
    return sorted(rows, key=lambda row: row[1].encode("ascii"))


def repeating_rows(repeaters):
    """A pattern such as 60xx3000 stands in the dictionary under its highest member, 60FF3000."""
    return [make_row(int(pattern.replace("x", "F"), 16), entry) for pattern, entry in repeaters.items()]


def counts(found_by_keyword, repeating, nameless):
    every = found_by_keyword + repeating + nameless
    vrs = Counter(vr for _tag, _keyword, vr, _vm in every)
    groups = Counter(f"{tag >> 16:04X}" for tag, *_ in repeating)
    result = {
        "command elements": sum(tag >> 16 == 0 for tag, *_ in found_by_keyword),
        "rows found by keyword": len(found_by_keyword),
    }
    for group, amount in groups.items():
        suffix = "xxxx" if group.endswith("FF") else ""
        result[f"rows of {group}{suffix}"] = amount
    for keyword, amount in Counter(keyword for _tag, keyword, *_ in nameless).items():
        result[f"rows {keyword}"] = amount
    for vr in ("XS", "OX", "NA"):
        result[f"VR {vr}"] = vrs[vr]
    return result


def check_counts(actual):
    if actual != EXPECTED:
        wrong = {name: (EXPECTED.get(name), actual.get(name))
                 for name in EXPECTED.keys() | actual.keys() if EXPECTED.get(name) != actual.get(name)}
        sys.exit(f"unexpected numbers of rows (expected, found): {wrong}")


def registry_text(dictionary, repeaters):
    if missing := NAMELESS_ROWS.keys() - dictionary.keys():
        sys.exit(f"nameless elements that pydicom does not have: {missing}")
    if present := MISSING_ROWS.keys() & dictionary.keys():
        sys.exit(f"elements to add that pydicom has: {present}")
    found_by_keyword = keyword_rows(dictionary)
    repeating = repeating_rows(repeaters)
    nameless = [(tag, *facts) for tag, facts in NAMELESS_ROWS.items()]
    check_counts(counts(found_by_keyword, repeating, nameless))
    rows = found_by_keyword + sorted(repeating + nameless)
    return "".join(f"{tag:08X}\t{keyword}\t{vr}\t{vm}\n" for tag, keyword, vr, vm in rows)


def load_pydicom():
    try:
        import pydicom
        from pydicom import _dicom_dict
    except ImportError:
        print("pydicom is not installed", file=sys.stderr)
        sys.exit(SKIPPED)
    if pydicom.__version__ != PYDICOM_VERSION:
        print(f"pydicom {PYDICOM_VERSION} is needed, {pydicom.__version__} is here", file=sys.stderr)
        sys.exit(SKIPPED)
    return _dicom_dict.DicomDictionary, _dicom_dict.RepeatersDictionary


def main():
    parser = argparse.ArgumentParser(description="Write dicom/registry.tsv from pydicom's dictionary.")
    parser.add_argument("--check", action="store_true", help="compare with the file instead of writing it")
    arguments = parser.parse_args()
    text = registry_text(*load_pydicom()).encode("ascii")
    if not arguments.check:
        REGISTRY.write_bytes(text)
    elif REGISTRY.read_bytes() != text:
        sys.exit(f"{REGISTRY} is not what this script makes")


if __name__ == "__main__":
    main()
