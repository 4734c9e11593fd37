#!/usr/bin/python3
"""Real files: the events of the loaded library are what an independent reader finds in the same bytes.

    realfiles_test.py SCRATCH COMMAND...    COMMAND runs events_of; SCRATCH takes unpacked and transcoded files
"""

import pathlib
import shutil
import subprocess
import sys
import unittest
import warnings

import independent_reader
import sample_files
from loaded_library import DID_NOT_RETURN, LoadedLibrary
from prescribed_failures import AS_OPENED, DCMCONV_REFUSES, OTHERWISE, REWRITTEN_FAILURES
from sample_files import DEFLATED, EXPLICIT, IMPLICIT, PAPYRUS, ROOT, Sample

# How long a call that spins is watched. All others answer within milliseconds.
SPIN_SECONDS = 3

# PS3.6 table A-1: the encapsulated syntaxes.
ENCAPSULATED = [
    f"1.2.840.10008.1.2.{tail}"
    for tail in (
        ["1.98"]
        + [f"4.{n}" for n in (*range(50, 67), 70, 80, 81, *range(90, 96), *range(100, 109))]
        + ["5", "6.1", "6.2", "7.1", "7.2", "7.3"]
    )
]


class Totals:
    streams = elements = value_bytes = 0


class ComparisonTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("ignore")  # pydicom's, about the odd files
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        cls.library = LoadedLibrary(COMMAND)
        cls.samples = [sample_files.open_sample(name, ROOT / name, SCRATCH) for name in sample_files.names()]

    @classmethod
    def tearDownClass(cls):
        cls.library.close()
        shutil.rmtree(SCRATCH, ignore_errors=True)

    def sample(self, name):
        return next(s for s in self.samples if s.name == name)

    def agree(self, sample):
        """The library says of the whole data set what the independent reader says."""
        expected = independent_reader.events(sample.data, sample.syntax, sample.implicit)
        answer = self.library.decompose(sample.path, sample.syntax, sample.offset)
        self.assertEqual((answer.status, answer.message), (0, ""))
        self.assertEqual(answer.lines, expected.lines)
        self.assertEqual(answer.position, sample.path.stat().st_size + 1)
        Totals.streams += 1
        Totals.elements += expected.elements
        Totals.value_bytes += expected.value_bytes

    def fail_as_prescribed(self, path, offset, syntax, outcome):
        message, last_event = outcome
        seconds = SPIN_SECONDS if message == DID_NOT_RETURN else 60
        answer = self.library.decompose(path, syntax, offset, seconds=seconds)
        self.assertEqual(answer.message, message)
        if message != DID_NOT_RETURN:
            self.assertEqual(answer.status, 1)
            self.assertEqual(answer.lines[-1] if answer.lines else None, last_event)


class RealFilesTest(ComparisonTest):
    def readable(self):
        """Samples that decompose to their end, deflated ones inflated."""
        for sample in self.samples:
            if sample.name not in AS_OPENED:
                yield sample_files.inflated(sample, SCRATCH) if sample.syntax == DEFLATED else sample

    def test_every_sample_is_either_read_or_listed_as_a_failure(self):
        self.assertGreaterEqual(len(self.samples), 170)
        self.assertEqual(set(AS_OPENED) - {s.name for s in self.samples}, set())

    def test_data_sets_agree(self):
        for sample in self.readable():
            with self.subTest(sample.name):
                self.agree(sample)

    def test_meta_groups_agree_and_leave_the_stream_at_the_data_set(self):
        for sample in self.samples:
            if not sample.meta:
                continue
            with self.subTest(sample.name):
                meta = sample.path.read_bytes()[132 : 132 + sample.meta]
                expected = independent_reader.events(meta, EXPLICIT, False)
                answer = self.library.decompose(sample.path, EXPLICIT, 132, only_group=2)
                self.assertEqual((answer.status, answer.message), (0, ""))
                self.assertEqual(answer.lines, expected.lines)
                self.assertEqual(answer.position, sample.offset + 1)
                Totals.streams += 1
                Totals.elements += expected.elements

    def test_samples_that_cannot_be_read_fail_as_prescribed(self):
        for name, outcome in AS_OPENED.items():
            with self.subTest(name):
                sample = self.sample(name)
                self.fail_as_prescribed(sample.path, sample.offset, sample.syntax, outcome)

    def test_samples_opened_otherwise_than_they_are_fail_as_prescribed(self):
        for (name, offset, syntax), outcome in OTHERWISE.items():
            with self.subTest(name, offset=offset, syntax=syntax):
                sample = self.sample(name)
                at = sample.offset if offset is None else offset
                self.fail_as_prescribed(sample.path, at, syntax, outcome)

    def test_what_is_read_before_the_end_of_a_cut_file_agrees(self):
        sample = self.sample("test_files/MR_truncated.dcm")
        expected = independent_reader.events(sample.data, sample.syntax, sample.implicit)
        answer = self.library.decompose(sample.path, sample.syntax, sample.offset)
        self.assertGreater(len(answer.lines), 200)
        self.assertEqual(answer.lines, expected.lines[: len(answer.lines)])

    def test_a_file_not_positioned_behind_its_preamble_is_read_as_it_lies(self):
        # 128 zero bytes are 16 elements (0000,0000) without VR and value. "DICM" 02 00 00 00 and "UL" 04 00 nn 00 00 00
        # are two more, with VRs that are no letters; from (0002,0001) on the reader is in step again, by chance.
        sample = self.sample("test_files/SC_rgb_small_odd.dcm")
        data = sample.path.read_bytes()
        self.assertEqual(data[:136], bytes(128) + b"DICM\2\0\0\0")
        answer = self.library.decompose(sample.path, EXPLICIT, 0)
        self.assertEqual(answer.status, 0)
        tags = [line.split(" ")[1] for line in answer.lines[1 : 1 + 3 * 18 : 3]]
        self.assertEqual(tags, ["00000000"] * 16 + ["49444D43", "4C550004"])
        self.assertEqual(answer.lines[1 + 3 * 18 :], independent_reader.events(data[144:], EXPLICIT, False).lines[1:])

    def test_implicit_data_sets_agree_under_the_papyrus_name(self):
        for sample in self.readable():
            if sample.syntax == IMPLICIT:
                with self.subTest(sample.name):
                    self.agree(Sample(sample.name, sample.path, sample.offset, PAPYRUS, 0))

    def test_fragments_agree_under_the_name_of_every_encapsulated_syntax(self):
        self.assertEqual(len(ENCAPSULATED), 42)
        sample = self.sample("test_files/JPEG2000.dcm")
        for syntax in ENCAPSULATED:
            with self.subTest(syntax):
                self.agree(Sample(sample.name, sample.path, sample.offset, syntax, 0))


class TranscodedFilesTest(ComparisonTest):
    """The same samples as DCMTK rewrites them."""

    def rewrite(self, sample, *command):
        """The sample rewritten by a tool of DCMTK; None where the tool refuses it."""
        path = SCRATCH / "rewritten.dcm"
        path.unlink(missing_ok=True)
        done = subprocess.run([*command, sample.path, path], stderr=subprocess.DEVNULL, check=False)
        if done.returncode != 0 or not path.exists():
            return None
        return sample_files.open_sample(sample.name, path, SCRATCH)

    def agree_rewritten(self, syntax, *options):
        before = Totals.streams
        for sample in self.samples:
            if sample.name in DCMCONV_REFUSES or (sample.name, *options) in REWRITTEN_FAILURES:
                continue
            with self.subTest(sample.name, options=options):
                rewritten = self.rewrite(sample, "dcmconv", *options)
                if sample.syntax in ENCAPSULATED and rewritten is None:
                    continue  # dcmconv holds no decoders
                self.assertIsNotNone(rewritten)
                self.assertEqual(rewritten.syntax, syntax)
                self.agree(sample_files.inflated(rewritten, SCRATCH) if syntax == DEFLATED else rewritten)
        self.assertGreater(Totals.streams - before, 120)  # most samples are native

    def test_explicit_with_defined_lengths_agrees(self):
        self.agree_rewritten(EXPLICIT, "+te", "+e")

    def test_explicit_with_undefined_lengths_agrees(self):
        self.agree_rewritten(EXPLICIT, "+te", "-e")

    def test_implicit_with_defined_lengths_agrees(self):
        self.agree_rewritten(IMPLICIT, "+ti", "+e")

    def test_implicit_with_undefined_lengths_agrees(self):
        self.agree_rewritten(IMPLICIT, "+ti", "-e")

    def test_deflated_and_inflated_again_agrees(self):
        self.agree_rewritten(DEFLATED, "+td", "+e")

    def test_private_sequences_of_undefined_length_fail_as_prescribed(self):
        for (name, *options), outcome in REWRITTEN_FAILURES.items():
            with self.subTest(name, options=options):
                rewritten = self.rewrite(self.sample(name), "dcmconv", *options)
                self.fail_as_prescribed(rewritten.path, rewritten.offset, rewritten.syntax, outcome)

    def test_encapsulated_by_each_encoder_agrees(self):
        encoders = {
            ("dcmcrle",): "1.2.840.10008.1.2.5",
            ("dcmcjpeg", "+e1"): "1.2.840.10008.1.2.4.70",
            ("dcmcjpeg", "+el"): "1.2.840.10008.1.2.4.57",
            ("dcmcjpls", "+el"): "1.2.840.10008.1.2.4.80",
        }
        for command, syntax in encoders.items():
            for name in ("CT_small.dcm", "MR_small.dcm", "SC_rgb_small_odd.dcm"):
                with self.subTest(name, command=command):
                    rewritten = self.rewrite(self.sample(f"test_files/{name}"), *command)
                    self.assertEqual(rewritten.syntax, syntax)
                    self.agree(rewritten)


if __name__ == "__main__":
    SCRATCH = pathlib.Path(sys.argv[1])
    COMMAND = sys.argv[2:]
    outcome = unittest.main(argv=sys.argv[:1], verbosity=2, exit=False)
    print(f"{Totals.streams} streams agree: {Totals.elements} elements, {Totals.value_bytes} bytes of values")
    sys.exit(0 if outcome.result.wasSuccessful() else 1)
