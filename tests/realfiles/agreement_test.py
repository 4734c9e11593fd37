#!/usr/bin/python3
"""Data sets that nobody has looked at: what the loaded library reads, independent readers read as well.

    agreement_test.py SCRATCH MAKE_SEEDS COMMAND...    COMMAND runs events_of; SCRATCH takes the data sets

Made and mutated data sets and those with which the fuzzer begins, the same on every run. Where the library succeeds and a reader accepts the data set, both must
have found the same: pydicom tags, VRs, lengths, nesting and values; dcmdump tags, lengths and nesting. A data set that
PS3.5 does not allow may be read in several ways: `different_readings` says which of its faults a reader takes otherwise.
"""

import collections
import pathlib
import re
import shutil
import subprocess
import sys
import unittest
import warnings

import data_set_maker
import different_readings
import event_tree
import independent_reader
import peers
import sample_files
from loaded_library import LoadedLibrary

MADE = 60  # of each kind
MUTANTS = 100  # of each sample
SPIN_SECONDS = 0.3
SEED_PREFIX = 2  # the number of a syntax, and what is the fuzz target's own

# Samples of every kind: explicit and implicit, sequences with and without lengths, fragments, private elements.
MUTATED = [
    "test_files/MR_small.dcm",
    "test_files/MR_small_implicit.dcm",
    "test_files/rtplan.dcm",
    "test_files/rtstruct.dcm",
    "test_files/reportsi.dcm",
    "test_files/test-SR.dcm",
    "test_files/JPEG2000.dcm",
    "test_files/SC_rgb_rle_2frame.dcm",
    "test_files/rtdose_1frame.dcm",
    "charset_files/chrSQEncoding.dcm",
]


def sorted_listing(nodes, depth=0):
    """What dcmdump lists of them: each data set in ascending order, and of several elements of one tag the first."""
    listing = []
    if not any(node.is_item for node in nodes):
        nodes = sorted({node.tag: node for node in reversed(nodes)}.values(), key=lambda node: node.tag)
    for node in nodes:
        listing.append((depth, node.tag, node.length))
        listing += sorted_listing(node.children, depth + 1)
    return listing


class AgreementTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("ignore")  # pydicom's, about the odd files
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        cls.library = LoadedLibrary(COMMAND)
        cls.samples = {
            name: sample_files.open_sample(name, sample_files.ROOT / name, SCRATCH) for name in MUTATED
        }

    @classmethod
    def tearDownClass(cls):
        cls.library.close()
        shutil.rmtree(SCRATCH, ignore_errors=True)

    def setUp(self):
        self.counts = collections.Counter()

    def head_of(self, syntax):
        """Preamble and meta group of a sample in that syntax."""
        sample = next(s for s in self.samples.values() if s.syntax == syntax and s.meta > 0)
        return sample.path.read_bytes()[: sample.offset]

    def decompose(self, head, data, syntax):
        self.path = SCRATCH / "data_set.dcm"
        self.path.write_bytes(head + data)
        return self.library.decompose(self.path, syntax, len(head), seconds=SPIN_SECONDS)

    def compare(self, head, data, syntax):
        """Asks all three about one data set. Counts what came of it."""
        self.counts["data sets"] += 1
        answer = self.decompose(head, data, syntax)
        if answer.status != 0:
            return
        self.counts["read by the library"] += 1
        implicit = syntax in sample_files.IMPLICIT_LITTLE_ENDIAN
        lines = whole_lines(answer.lines)
        tree = event_tree.tree(lines, implicit)
        self.agree("pydicom", pydicom_lines(data, syntax, implicit), lines, tree)
        self.agree("dcmdump", peers.structure(self.path), sorted_listing(tree), tree)

    def agree(self, reader, theirs, ours, tree):
        if theirs is None:
            self.counts[f"refused by {reader}"] += 1
        elif theirs == ours:
            self.counts[f"as {reader} has it"] += 1
        else:
            reasons = different_readings.of(reader, tree)
            self.assertNotEqual(reasons, [], first_difference(reader, theirs, ours))
            self.counts[f"otherwise by {reader}: {reasons[0]}"] += 1

    def report(self, title):
        print(f"{title}:")
        for what, count in sorted(self.counts.items()):
            print(f"  {count:5} {what}")

    def test_made_data_sets_agree(self):
        jpeg_2000 = self.samples["test_files/JPEG2000.dcm"].syntax
        for syntax in (sample_files.EXPLICIT, sample_files.IMPLICIT, jpeg_2000):
            head = self.head_of(syntax)
            for seed in range(MADE):
                with self.subTest(syntax, seed=seed):
                    implicit, encapsulated = syntax == sample_files.IMPLICIT, syntax == jpeg_2000
                    maker = data_set_maker.DataSetMaker(f"{syntax} {seed}", implicit, encapsulated)
                    self.compare(head, maker.data_set(), syntax)
        self.report("made")
        for outcome in ("read by the library", "as pydicom has it", "as dcmdump has it"):
            self.assertEqual(self.counts[outcome], 3 * MADE)

    def test_seeds_of_the_fuzzer_agree(self):
        subprocess.run([MAKE_SEEDS, SCRATCH / "seeds"], check=True)
        seeds = map(pathlib.Path.read_bytes, (SCRATCH / "seeds" / "decompose").iterdir())
        data_sets = sorted({(seed[0], seed[SEED_PREFIX:]) for seed in seeds})
        syntaxes = [sample_files.EXPLICIT, sample_files.IMPLICIT, self.samples["test_files/JPEG2000.dcm"].syntax]
        for number, data in data_sets:
            with self.subTest(syntaxes[number], data=data[:64]):
                self.compare(self.head_of(syntaxes[number]), data, syntaxes[number])
        self.report("seeds")
        self.assertGreater(self.counts["as pydicom has it"], 10)
        self.assertGreater(self.counts["as dcmdump has it"], 10)

    def test_mutated_data_sets_agree(self):
        for name, sample in self.samples.items():
            head = sample.path.read_bytes()[: sample.offset] or self.head_of(sample.syntax)
            answer = self.decompose(head, sample.data, sample.syntax)
            tree = event_tree.tree(answer.lines, sample.implicit)
            headers = [(node.start, node.value - node.start) for _, node in event_tree.walk(tree)]
            for seed in range(MUTANTS):
                with self.subTest(name, seed=seed):
                    data = data_set_maker.mutate(sample.data, headers, f"{name} {seed}")
                    self.compare(head, data, sample.syntax)
        self.report("mutated")
        total = self.counts["data sets"]
        self.assertEqual(total, len(MUTATED) * MUTANTS)
        self.assertGreater(self.counts["as pydicom has it"], total // 10)
        self.assertGreater(self.counts["as dcmdump has it"], total // 10)


def whole_lines(lines):
    """The events of an answer; a VR may hold what looks like the end of a line."""
    whole = []
    for line in lines:
        if line.startswith(("Start", "Data ", "End")):
            whole.append(line)
        else:
            whole[-1] += "\n" + line
    return whole


# A host takes a VR to end at its first zero byte.
ZERO_IN_VR = re.compile(r"^(StartElement \w{8} [^\0]?)\0.? (\d+)$", re.DOTALL)


def pydicom_lines(data, syntax, implicit):
    """The events as pydicom has them; None where it refuses the data set."""
    try:
        lines = independent_reader.events(data, syntax, implicit).lines
    except Exception:  # whatever a reader throws at damaged bytes
        return None
    return [ZERO_IN_VR.sub(r"\1 \2", line).replace("\r", "\n") for line in lines]


def first_difference(reader, theirs, ours):
    for at, (their, our) in enumerate(zip(theirs, ours)):
        if their != our:
            return f"{reader} has {their}, the library {our}, at {at}, behind {ours[max(at - 3, 0) : at]}"
    return f"{reader} has {len(theirs)} of them, the library {len(ours)}: {(theirs + ours)[min(len(theirs), len(ours)) :][:2]}"


if __name__ == "__main__":
    SCRATCH = pathlib.Path(sys.argv[1])
    MAKE_SEEDS = sys.argv[2]
    COMMAND = sys.argv[3:]
    unittest.main(argv=sys.argv[:1], verbosity=2)
