#!/usr/bin/python3
"""json_model_test.py VESSA: the JSON model that the tool prints is the data set that pydicom reads.

Every sample file of pydicom is dumped, loaded with pydicom's own reader of that model and compared element by element
with what pydicom reads in the file. Files and values that cannot agree stand below, each with its reason.
"""

import json
import pathlib
import subprocess
import sys
import unittest

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
                self.compare(Dataset.from_json(json.loads(run.stdout)), read(path), path.name, count)
                files += 1
                compared += count[0]
        print(f"compared {compared} elements of {files} files")
        self.assertGreater(files, 80)

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
