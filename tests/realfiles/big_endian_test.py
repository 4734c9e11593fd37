#!/usr/bin/python3
"""Originals in big endian: composing them to little endian is DCMTK's conversion, but for what is never swapped.

    big_endian_test.py SCRATCH COMMAND...    COMMAND runs composed_of; SCRATCH takes what DCMTK converts

Every sample that DCMTK writes in explicit VR big endian, or that is in it, is stored as its bytes stand and composed with
implicit and with explicit VRs. Values of the VRs with a swap unit above 1 are DCMTK's; those of SS and AT are copied as
they stand, on purpose; all others are the same bytes on all sides.
"""

import collections
import io
import pathlib
import shutil
import subprocess
import sys
import unittest
import warnings

import pydicom
from pydicom.filereader import data_element_generator, read_sequence

import sample_files
from independent_reader import meta_length
from sample_files import BIG_ENDIAN, EXPLICIT, IMPLICIT, ROOT

PIXEL_DATA = 0x7FE00010
SWAPPED = {"US", "OW", "SL", "UL", "FL", "OF", "FD"}
COPIED_ON_PURPOSE = {"SS", "AT"}
ITS_OPTION = {IMPLICIT: "+ti", EXPLICIT: "+te"}

# Samples that dcmconv does not read or write, besides those with encapsulated pixel data.
NOT_CONVERTED = {
    "test_files/MR_truncated.dcm": "cut",
    "test_files/rtplan_truncated.dcm": "cut",
}


class Encoded:
    """A data set in bytes: (tag, VR, value) of each element but group lengths, unconverted; the value of a sequence is the
    list of its items. VRs are those of the bytes, None where they hold none."""

    def __init__(self, data, implicit, little_endian):
        self._form = (implicit, little_endian)
        elements = data_element_generator(io.BytesIO(data), *self._form)
        self.elements = list(self._values(elements))

    @classmethod
    def of_file(cls, path):
        meta = pydicom.filereader.read_file_meta_info(str(path))
        data = path.read_bytes()
        syntax = pydicom.uid.UID(meta.TransferSyntaxUID)
        start = 132 + meta_length(data[132:])
        return cls(data[start:], syntax.is_implicit_VR, syntax.is_little_endian)

    def _values(self, elements):
        for element in elements:
            if element.tag.element != 0:
                yield int(element.tag), element.VR, self._value(element)

    def _value(self, element):
        value = element.value
        if element.VR == "SQ" and isinstance(value, bytes):
            value = read_sequence(io.BytesIO(value), *self._form, len(value), "iso8859") if value else []
        if isinstance(value, pydicom.Sequence):
            return [list(self._values(item._dict.values())) for item in value]  # unconverted, but for character sets
        if isinstance(value, (str, pydicom.multival.MultiValue)):
            text = value if isinstance(value, str) else "\\".join(value)
            return (text + " " * (len(text) % 2)).encode()
        return value or b""


class Storing:
    """Lines for composed_of: the nodes of one data set."""

    def __init__(self):
        self.lines = []
        self.nodes = 0

    def set(self, value, *subscripts):
        self.lines.append("\t".join(("node", value.hex(), *map(str, subscripts))))

    def elements(self, elements, *level):
        for tag, vr, value in elements:
            self.nodes += 1
            node = self.nodes
            self.set(str(node).encode(), *level, tag)
            self.set(vr.encode(), node, "v")
            if vr == "SQ":
                for number, item in enumerate(value or [], start=1):
                    self.set(b"", node, "c", number)
                    self.elements(item, node, "c", number)
            elif tag == PIXEL_DATA and level[0] == 0:
                self.lines.append(f"pixels\t{value.hex()}")
            else:
                self.set(value, node, "d")


class BigEndianTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("ignore")
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        cls.addClassCleanup(shutil.rmtree, SCRATCH, True)
        cls.samples = [sample_files.open_sample(name, ROOT / name, SCRATCH) for name in sample_files.names()]

    def setUp(self):
        self.compared = collections.Counter()
        self.files = 0

    @staticmethod
    def dcmconv(source, target, *options):
        process = subprocess.run(["dcmconv", *options, source, target], capture_output=True, check=False)
        return process.returncode == 0

    def in_big_endian(self, sample):
        """A file of the sample in explicit VR big endian; none where DCMTK does not write it."""
        path = SCRATCH / "big.dcm"
        if sample.syntax == BIG_ENDIAN and sample.meta:
            return sample.path
        reading = {BIG_ENDIAN: ["-f", "-tb"], EXPLICIT: ["-f", "-te"], IMPLICIT: ["-f", "-ti"]}
        options = [] if sample.meta else reading[sample.syntax]
        return path if self.dcmconv(sample.path, path, *options, "+tb") else None

    @staticmethod
    def composed(elements, syntax):
        storing = Storing()
        storing.elements(elements, 0, "c", 0)
        request = "\n".join([*storing.lines, f"compose\t{syntax}\t{BIG_ENDIAN}", ""])
        answer = subprocess.run(COMMAND, input=request, capture_output=True, text=True, check=True).stdout
        return bytes.fromhex(answer[2:]) if answer.startswith("0 ") else answer

    def compare(self, original, converted, composed, where):
        self.assertEqual([(tag, len(value)) for tag, _, value in composed],
                         [(tag, len(value)) for tag, _, value in original], where)
        self.assertEqual([tag for tag, _, _ in converted], [tag for tag, _, _ in original], where)
        for (tag, vr, ours), (_, _, theirs), (_, _, here) in zip(original, converted, composed):
            place = f"{where} {tag:08X} {vr}"
            if vr == "SQ":
                for number, items in enumerate(zip(ours, theirs, here), start=1):
                    self.compare(*items, f"{place}[{number}]")
                continue
            self.assertEqual(here, theirs if vr in SWAPPED else ours, place)
            if vr not in SWAPPED | COPIED_ON_PURPOSE:
                self.assertEqual(ours, theirs, place)
            self.compared[vr] += 1

    def check(self, sample, path, syntax):
        original = Encoded.of_file(path).elements
        converted = SCRATCH / "converted.dcm"
        self.assertTrue(self.dcmconv(path, converted, ITS_OPTION[syntax], "-e"))  # sequences of undefined length
        composed = self.composed(original, syntax)
        self.assertIsInstance(composed, bytes, composed)
        here = Encoded(composed, syntax == IMPLICIT, True).elements
        self.compare(original, Encoded.of_file(converted).elements, here, sample.name)

    def test_originals_in_big_endian_are_composed_to_what_dcmtk_makes_of_them(self):
        left_out = collections.Counter()
        for sample in self.samples:
            with self.subTest(sample.name):
                path = self.in_big_endian(sample)
                if path is None:
                    compressed = sample.syntax and pydicom.uid.UID(sample.syntax).is_encapsulated
                    self.assertTrue(compressed or sample.name in NOT_CONVERTED, sample.name)
                    left_out["compressed" if compressed else NOT_CONVERTED[sample.name]] += 1
                    continue
                for syntax in (IMPLICIT, EXPLICIT):
                    self.check(sample, path, syntax)
                self.files += 1
        print(f"{self.files} data sets twice, values by VR: {dict(sorted(self.compared.items()))}; "
              f"left out: {dict(left_out)}")
        self.assertGreater(self.files, 100)
        self.assertLessEqual({"US", "OW", "UL", "FL", "FD", "SS", "AT"}, set(self.compared))


if __name__ == "__main__":
    SCRATCH = pathlib.Path(sys.argv[1])
    COMMAND = sys.argv[2:]
    unittest.main(argv=sys.argv[:1], verbosity=2)
