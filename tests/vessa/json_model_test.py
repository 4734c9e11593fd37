#!/usr/bin/python3
"""json_model_test.py VESSA: the JSON model that the tool prints is the data set that pydicom reads.

Every sample file of pydicom is dumped, loaded with pydicom's own reader of that model and compared element by element
with what pydicom reads in the file. Files and values that cannot agree stand below, each with its reason.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

import pydicom
from pydicom.dataset import Dataset
from pydicom.filewriter import correct_ambiguous_vr

SAMPLES = pathlib.Path(pydicom.__file__).parent / "data"
VESSA = sys.argv.pop(1) if len(sys.argv) > 1 else "vessa"

# Files whose syntax must be named, since they have no meta information.
SYNTAX = {"ExplVR_LitEndNoMeta.dcm": "explicit", "rtstruct.dcm": "implicit"}

BIG_ENDIAN = "the library reads little endian only"
# Files that the library does not read to their end, and the exit code of the tool.
UNREAD = {
    "ExplVR_BigEnd.dcm": (1, BIG_ENDIAN),
    "ExplVR_BigEndNoMeta.dcm": (2, "names no transfer syntax, and is big endian"),
    "no_meta.dcm": (2, "names no transfer syntax, and is big endian"),
    "meta_missing_tsyntax.dcm": (2, "names no transfer syntax, and has private sequences of undefined length"),
    "MR_small_bigendian.dcm": (1, BIG_ENDIAN),
    "MR_small_expb.dcm": (1, BIG_ENDIAN),
    "liver_expb_1frame.dcm": (1, BIG_ENDIAN),
    "rtdose_expb.dcm": (1, BIG_ENDIAN),
    "rtdose_expb_1frame.dcm": (1, BIG_ENDIAN),
    "DICOMDIR-bigEnd": (1, BIG_ENDIAN),
    "MR_truncated.dcm": (1, "ends inside a value"),
    "rtplan_truncated.dcm": (1, "ends inside a value"),
    "SC_rgb_jpeg.dcm": (1, "bytes behind the pixel data that are no elements"),
    "UN_sequence.dcm": (1, "UN of undefined length"),
    "nested_priv_SQ.dcm": (1, "private sequence of undefined length in an implicit VR syntax"),
    "DICOMDIR-nooffset": (124, "ends inside an item of defined length"),
    "README.txt": (2, "no DICOM file"),
    "README": (2, "no DICOM file"),
}

# Files whose model pydicom cannot load.
UNLOADED = {"badVR.dcm": "an integer string that is none: 1A"}


def sample_files():
    folders = (SAMPLES / "test_files", SAMPLES / "charset_files")
    for path in sorted(path for folder in folders for path in folder.rglob("*")):
        if path.is_file() and (path.suffix == ".dcm" or "dicomdirtests" in path.parts):
            yield path


def dump(path):
    options = ["--syntax", SYNTAX[path.name]] if path.name in SYNTAX else []
    return subprocess.run([VESSA, "dump", "--json", "--timeout", "1", *options, path], capture_output=True, check=False)


def read(path):
    """The data set as the model has it: no group lengths, no placeholder VRs, text decoded."""
    data_set = pydicom.dcmread(path, force=True)
    if data_set.is_implicit_VR:
        correct_ambiguous_vr(data_set, True)
    data_set.decode()
    return data_set


def value_text(element):
    """Values without the blanks that pad them: the model has none, pydicom keeps those before a backslash."""
    values = element.value if element.VM > 1 else [element.value]
    return [value.rstrip(" ") if isinstance(value, str) else value for value in values]


# PS3.18 table F.2.3-1: what the values of a VR are in JSON.
TEXT_VRS = {"AE", "AS", "AT", "CS", "DA", "DT", "LO", "LT", "SH", "ST", "TM", "UC", "UI", "UR", "UT"}
NUMBER_VRS = {"DS", "FD", "FL", "IS", "SL", "SS", "SV", "UL", "US", "UV"}
BYTE_VRS = {"OB", "OD", "OF", "OL", "OV", "OW", "UN"}
NAME_GROUPS = {"Alphabetic", "Ideographic", "Phonetic"}
BASE64 = re.compile(r"(?:[A-Za-z0-9+/]{4})*(?:[A-Za-z0-9+/]{2}==|[A-Za-z0-9+/]{3}=)?")


def model_errors(data_set, where="top"):
    """What PS3.18 annex F forbids in a data set of its model."""
    if not isinstance(data_set, dict):
        yield f"{where}: no object"
        return
    if list(data_set) != sorted(data_set):
        yield f"{where}: tags do not ascend"
    for tag, element in data_set.items():
        place = f"{where} {tag}"
        if not re.fullmatch(r"[0-9A-F]{8}", tag):
            yield f"{place}: no tag"
        if tag.endswith("0000"):
            yield f"{place}: a group length"
        yield from element_errors(element, place)


def element_errors(element, where):
    members = set(element) - {"vr"}
    vr = element.get("vr")
    if len(members) > 1 or not members <= {"Value", "InlineBinary", "BulkDataURI"}:
        yield f"{where}: members {sorted(element)}"
    elif vr in BYTE_VRS:
        if "Value" in members or ("InlineBinary" in members and not BASE64.fullmatch(element["InlineBinary"])):
            yield f"{where}: bytes are no base64"
    elif vr not in TEXT_VRS | NUMBER_VRS | {"PN", "SQ"}:
        yield f"{where}: VR {vr}"
    elif "Value" in members:
        if not isinstance(element["Value"], list) or not element["Value"]:
            yield f"{where}: Value is no array or has nothing in it"
        for number, value in enumerate(element["Value"], 1):
            yield from value_errors(vr, value, f"{where}[{number}]")
    elif members:
        yield f"{where}: {members} of {vr}"


def value_errors(vr, value, where):
    if value is None:
        return
    if vr == "SQ":
        yield from model_errors(value, where)
    elif vr == "PN":
        if not isinstance(value, dict) or not set(value) <= NAME_GROUPS:
            yield f"{where}: no person name"
    elif vr in TEXT_VRS:
        if not isinstance(value, str) or (vr == "AT" and not re.fullmatch(r"[0-9A-F]{8}", value)):
            yield f"{where}: no text of {vr}"
    elif isinstance(value, bool) or not isinstance(value, (int, float, str)):
        yield f"{where}: no number"  # texts stand for what JSON has no number for


class JsonModel(unittest.TestCase):
    def compare(self, ours, theirs, where, compared):
        tags = {tag for tag in theirs.keys() if tag.element != 0}
        self.assertEqual(set(ours.keys()), tags, where)
        for tag in sorted(tags):
            compared[0] += 1
            self.compare_element(ours[tag], theirs[tag], f"{where} {tag}", compared)

    def compare_element(self, ours, theirs, where, compared):
        if theirs.is_private and ours.VR == "UN" != theirs.VR:
            return  # pydicom knows the private elements of some vendors; the syntax does not say their VR
        if theirs.tag == 0x7FE00010 and (ours.VR, theirs.VR) == ("OB", "OW"):
            self.assertEqual(ours.value, theirs.value, where)  # 8-bit samples of an implicit VR syntax
            return
        self.assertEqual(ours.VR, theirs.VR, where)
        if theirs.VR != "SQ":
            self.assertEqual(value_text(ours), value_text(theirs), where)
            return
        self.assertEqual(len(ours.value), len(theirs.value), where)
        for number, (our_item, their_item) in enumerate(zip(ours.value, theirs.value), 1):
            self.compare(our_item, their_item, f"{where}[{number}]", compared)

    def test_is_the_data_set_that_pydicom_reads(self):
        files = compared = 0
        for path in sample_files():
            if path.name in UNREAD or path.name in UNLOADED:
                continue
            with self.subTest(file=path.name):
                run = dump(path)
                self.assertEqual(run.returncode, 0, run.stderr)
                count = [0]
                model = json.loads(run.stdout)
                self.assertEqual(list(model_errors(model))[:3], [])
                self.compare(Dataset.from_json(model), read(path), path.name, count)
                files += 1
                compared += count[0]
        print(f"compared {compared} elements of {files} files")
        self.assertGreater(files, 80)

    def test_names_the_files_of_values_that_are_written_apart(self):
        elements = 0
        with tempfile.TemporaryDirectory() as folder:
            for name in ("CT_small.dcm", "SC_rgb_rle.dcm", "priv_SQ.dcm"):
                path = SAMPLES / "test_files" / name
                run = subprocess.run(
                    [VESSA, "dump", "--json", "--bulk", f"{folder}/{name}", path], capture_output=True, check=True
                )
                model = json.loads(run.stdout)
                self.assertEqual(list(model_errors(model))[:3], [])
                self.assertNotIn(b"InlineBinary", run.stdout)
                loaded = Dataset.from_json(model, lambda uri: pathlib.Path(urllib.parse.unquote(uri)).read_bytes())
                count = [0]
                self.compare(loaded, read(path), name, count)
                elements += count[0]
        self.assertGreater(elements, 300)

    def test_finds_what_the_model_forbids(self):
        for wrong in (
            {"0010001": {"vr": "PN"}},
            {"00100020": {"vr": "LO"}, "00100010": {"vr": "PN"}},
            {"00100010": {"vr": "PN", "Value": ["Doe"]}},
            {"00100010": {"vr": "XX"}},
            {"00280010": {"vr": "US", "Value": []}},
            {"7FE00010": {"vr": "OW", "InlineBinary": "AA"}},
            {"7FE00010": {"vr": "OW", "Value": [1]}},
            {"00081140": {"vr": "SQ", "Value": [{"1": {}}]}},
        ):
            self.assertTrue(list(model_errors(wrong)), wrong)

    def test_is_json_where_pydicom_cannot_load_it(self):
        for name in UNLOADED:
            model = json.loads(dump(SAMPLES / "test_files" / name).stdout)
            self.assertGreater(len(model), 10)

    def test_is_refused_as_expected(self):
        for path in sample_files():
            if path.name in UNREAD:
                with self.subTest(file=path.name):
                    self.assertEqual(dump(path).returncode, UNREAD[path.name][0])


if __name__ == "__main__":
    pydicom.config.replace_un_with_known_vr = False
    unittest.main(verbosity=2, warnings="ignore")
