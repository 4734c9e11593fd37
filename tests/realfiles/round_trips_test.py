#!/usr/bin/python3
"""Round trips: what the tool writes is, for other programs, the data set that it has read.

    round_trips_test.py SCRATCH VESSA

Every sample of pydicom that the library reads is imported into a store, and exported with implicit and explicit VRs,
deflated, and in its own syntax. pydicom and DCMTK compare each result with the original, GDCM and dcmftest read it.
The samples that cannot make the way are listed, each with its reason.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import unittest
import warnings

import pydicom
from pydicom.filewriter import correct_ambiguous_vr

import peers
import sample_files
from loaded_library import DID_NOT_RETURN
from prescribed_failures import AS_OPENED
from sample_files import BARE, DEFLATED, EXPLICIT, IMPLICIT, ROOT

CALL_FAILED, WRONG_USAGE, DID_NOT_RETURN_CODE = 1, 2, 124
COMPRESSED = "the pixel data are compressed, and stay so"
DIRECTORY = "it is a directory of files, whose offsets would no longer be right"

# The library writes sequences with undefined lengths. Where VRs are implicit, nothing tells a private one from an element
# of VR UN: the library refuses what it has written, and DCMTK reads it with a word about CP-246.
UNDEFINED_UN = "Expected an encapsulated transfer syntax"
ABOUT_CP_246 = re.compile(r"W: Found element \(....,....\) with VR UN and undefined length, reading a sequence with .*")


def run(*arguments):
    command = [VESSA, "--timeout", "3", *map(str, arguments)]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def read(path, warned):
    """The data set of a file, every value converted; `warned` takes what pydicom has to say about it."""
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        data_set = pydicom.dcmread(path, force=True)
        if data_set.is_implicit_VR:
            correct_ambiguous_vr(data_set, True)
        for element in data_set.iterall():
            element.value  # converts it
    warned.update(str(warning.message) for warning in caught)
    return data_set


def bare_file(sample):
    """The sample's file; one of its own where the data set does not begin the file and nothing says where it does."""
    if sample.meta or not sample.offset:
        return sample.path
    path = SCRATCH / sample.path.name
    path.write_bytes(sample.data)
    return path


def has_private_sequence(data_set):
    return any(element.tag.is_private and element.VR == "SQ" for element in data_set.iterall())


class Original:
    """A sample as others see it before it is imported."""

    def __init__(self, sample):
        self.sample = sample
        self.path = bare_file(sample)
        self.warned = set()
        self.data_set = read(self.path, self.warned)
        self.dump = peers.Dump(self.path)
        self.gdcm = peers.gdcm_complaints(self.path)
        self.is_directory = "DirectoryRecordSequence" in self.data_set
        self.is_compressed = pydicom.uid.UID(sample.syntax).is_encapsulated and "PixelData" in self.data_set

    def why_not_in(self, target):
        if self.is_directory:
            return DIRECTORY
        return COMPRESSED if self.is_compressed and target != self.sample.syntax else None


class RoundTrips(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        cls.addClassCleanup(shutil.rmtree, SCRATCH, True)
        cls.store = SCRATCH / "store"
        cls.samples = [sample_files.open_sample(name, ROOT / name, SCRATCH) for name in sample_files.names()]

    def setUp(self):
        self.exports = self.values = self.fragments = self.refused = 0
        self.lines = self.other_vrs = 0
        self.unverified = set()

    # --- pydicom ---

    def compare(self, original, written, where):
        """Same elements, same values; group lengths are not written again."""
        tags = {tag for tag in original.keys() if tag.element != 0}
        self.assertEqual(tags, set(written.keys()), where)
        for tag in tags:
            ours, theirs = written[tag], original[tag]
            if ours.VR == "SQ" and theirs.VR == "SQ":
                self.assertEqual(len(theirs.value), len(ours.value), f"{where} {tag}")
                for number, items in enumerate(zip(theirs.value, ours.value)):
                    self.compare(*items, f"{where} {tag}[{number}]")
            elif ours.VR == theirs.VR:
                self.assertEqual(theirs.value, ours.value, f"{where} {tag}")

    def compare_bytes(self, original, written, where):
        """The bytes of every value, before pydicom makes anything of them; fragments with their headers."""
        for tag in (tag for tag in original.keys() if tag.element != 0):
            ours, theirs = written.get_item(tag), original.get_item(tag)
            if not ours.value and not theirs.value:  # pydicom reads nothing as one or another kind of it
                continue
            if isinstance(ours.value, bytes) and isinstance(theirs.value, bytes):
                self.assertEqual(theirs.value, ours.value, f"{where} {tag}")
                self.values += 1
            elif original[tag].VR == "SQ" and written[tag].VR == "SQ":
                for number, items in enumerate(zip(original[tag].value, written[tag].value)):
                    self.compare_bytes(*items, f"{where} {tag}[{number}]")
            else:  # what pydicom converts at once
                self.assertEqual(original[tag].value, written[tag].value, f"{where} {tag}")

    def compare_fragments(self, original, written, where):
        self.assertTrue(written["PixelData"].is_undefined_length, where)
        self.assertEqual(original.PixelData, written.PixelData, where)
        self.fragments += 1

    def check_with_pydicom(self, original, path, target):
        warned = set()
        written = read(path, warned)
        self.assertEqual(written.file_meta.TransferSyntaxUID, target)
        self.assertLessEqual(warned, original.warned)
        self.compare(original.data_set, written, path.name)
        self.compare_bytes(pydicom.dcmread(original.path, force=True), pydicom.dcmread(path), path.name)
        if original.is_compressed:
            self.compare_fragments(original.data_set, written, path.name)

    # --- DCMTK and GDCM ---

    def check_with_dcmtk(self, original, path, target):
        """The same listing, but that an element without a VR on one side may be printed by another on the other."""
        self.assertTrue(peers.is_dicom_file(path))
        written = peers.Dump(path)
        self.assertTrue(written.opened)
        complaints = written.complaints - original.dump.complaints
        if target == IMPLICIT and has_private_sequence(original.data_set):
            complaints = {complaint for complaint in complaints if not ABOUT_CP_246.fullmatch(complaint)}
        self.assertEqual(complaints, set())
        self.lines += len(written.lines)
        may_differ = target == IMPLICIT or original.sample.implicit
        for ours, theirs in peers.differences(written, original.dump):
            self.assertTrue(may_differ and peers.differ_in_vr_alone(ours, theirs), f"\n{ours}\n{theirs}")
            self.other_vrs += 1

    def check_with_gdcm(self, original, path):
        said = peers.gdcm_complaints(path)
        self.assertIsNotNone(said)
        self.assertLessEqual(said, original.gdcm or set())

    # --- The way ---

    def export(self, original, target):
        """Verified by the tool itself, where the library can read what it writes."""
        output = SCRATCH / "out.dcm"
        arguments = ("export", "sample", output, "--syntax", target, "--store", self.store)
        process = run(*arguments, "--verify")
        if target == IMPLICIT and UNDEFINED_UN in process.stderr:
            self.assertTrue(has_private_sequence(original.data_set))
            self.assertFalse(output.exists())
            self.unverified.add(original.sample.name)
            process = run(*arguments)
        return process, output

    def check_convert(self, original, exported, target):
        """In memory, in one call, come the same bytes."""
        output = SCRATCH / "converted.dcm"
        named = ["--input-syntax", original.sample.syntax] if original.sample.name in BARE else []
        process = run("convert", original.path, output, "--syntax", target, "--verify", *named)
        self.assertEqual(process.returncode, 0, process.stderr)
        self.assertEqual(output.read_bytes(), exported.read_bytes())

    def make_the_way(self, sample):
        original = Original(sample)
        named = ["--syntax", sample.syntax] if sample.name in BARE else []
        process = run("import", original.path, "--id", "sample", "--replace", "--store", self.store, *named)
        self.assertEqual(process.returncode, 0, process.stderr)
        for target in sorted({IMPLICIT, EXPLICIT, DEFLATED, sample.syntax}):
            with self.subTest(sample.name, target=target):
                process, output = self.export(original, target)
                reason = original.why_not_in(target)
                if reason:
                    self.assertEqual(process.returncode, WRONG_USAGE)
                    self.assertIn(reason, process.stderr)
                    self.assertFalse(output.exists())
                    self.refused += 1
                    continue
                self.assertEqual(process.returncode, 0, process.stderr)
                self.check_with_pydicom(original, output, target)
                self.check_with_dcmtk(original, output, target)
                self.check_with_gdcm(original, output)
                if target == EXPLICIT:
                    self.check_convert(original, output, target)
                output.unlink()
                self.exports += 1

    def test_exports_are_the_data_sets_that_were_imported(self):
        readable = [sample for sample in self.samples if sample.name not in AS_OPENED]
        for sample in readable:
            with self.subTest(sample.name):
                self.make_the_way(sample)
        print(f"{len(readable)} of {len(self.samples)} samples imported, {self.exports} exports: {self.values} values "
              f"and {self.fragments} encapsulated pixel data byte for byte, {self.lines} lines of dcmdump, of which "
              f"{self.other_vrs} with a VR of one side alone; {self.refused} exports refused, as compressed pixel data "
              f"stay so and directories hold offsets; not verified by the library, for private sequences: "
              f"{', '.join(sorted(self.unverified))}")
        self.assertGreater(self.exports, 380)

    def test_samples_that_cannot_be_read_are_not_stored(self):
        """Those of prescribed_failures.py, each with the library's message."""
        for name, (message, _) in AS_OPENED.items():
            with self.subTest(name):
                sample = next(sample for sample in self.samples if sample.name == name)
                named = ["--syntax", sample.syntax] if sample.name in BARE else []
                process = run("import", sample.path, "--id", "unread", "--store", self.store, *named)
                if message == DID_NOT_RETURN:
                    self.assertEqual(process.returncode, DID_NOT_RETURN_CODE)
                elif not sample.syntax:
                    self.assertEqual(process.returncode, WRONG_USAGE)
                    self.assertIn("transfer syntax", process.stderr)
                else:
                    self.assertEqual(process.returncode, CALL_FAILED)
                    self.assertIn(message, process.stderr)
                self.assertNotEqual(run("globals", "unread", "--store", self.store).returncode, 0)
        print(f"{len(AS_OPENED)} samples left out:", *(f"\n  {name}: {why}" for name, (why, _) in AS_OPENED.items()))


if __name__ == "__main__":
    SCRATCH = pathlib.Path(sys.argv.pop(1))
    VESSA = sys.argv.pop(1)
    unittest.main(verbosity=2)
