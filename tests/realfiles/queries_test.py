#!/usr/bin/python3
"""Real files: a query for each element, at every depth, answers what an independent reader finds there, and the items
of each sequence are enumerated to their end.

    queries_test.py SCRATCH COMMAND...    COMMAND runs answers_of; SCRATCH takes the data sets
"""

import pathlib
import shutil
import subprocess
import sys
import unittest
import warnings

import pydicom.datadict

import independent_reader
import sample_files
from prescribed_failures import AS_OPENED
from sample_files import DEFLATED

CHUNK = independent_reader.CHUNK
TOO_LONG = "1 Data is too long to be returned from a query when no result stream is passed -  decomposing stream"
NOTHING = "0"
HEADER = bytes(128) + b"DICM"


def signed(number):
    return number - (1 << 32) if number >= 1 << 31 else number


def reference_to(path):
    """(300A,00B0)[3].(0010,0010): a path as users write it, with tags by their numbers."""
    steps = [f"({tag >> 16:04X},{tag & 0xFFFF:04X})" for tag in path[::2]]
    items = [f"[{item}]" for item in path[1::2]] + [""]
    return ".".join(step + item for step, item in zip(steps, items))


def is_known_sequence(tag):
    return pydicom.datadict.dictionary_has_tag(tag) and pydicom.datadict.dictionary_VR(tag) == "SQ"


class DataSet:
    """What the event lines of one data set hold: elements by their path, sequences with their items."""

    def __init__(self, lines):
        self.answers = {}  # path: (VR, value); of fragments only the first, which is the offset table
        self.items = {}  # path of a sequence: number of its items
        self.unreachable = set()  # paths behind a greater one: an ascending reader has given up before
        self._path = []
        self._greatest = ()
        self._vr = None
        for line in lines:
            self._take(line.split(" "))

    def _take(self, words):
        event = words[0]
        if event == "StartElement":
            self._path.append(int(words[1], 16))
            self._vr = words[2]
        elif event == "StartSequence":
            self.items.setdefault(tuple(self._path), 0)
            self._path.append(0)
        elif event == "StartItem" and len(self._path) % 2 == 0:
            self._path[-1] += 1
            self.items[tuple(self._path[:-1])] = self._path[-1]
        elif event == "Data":
            self._data(int(words[2]), bytes.fromhex(words[3]) if len(words) > 3 else b"")
        elif event in ("EndElement", "EndSequence"):
            self._path.pop()

    def _data(self, chunk_number, chunk):
        path = tuple(self._path)
        if path < self._greatest:
            self.unreachable.add(path)
        self._greatest = max(self._greatest, path)
        if chunk_number > 1 and path not in self._closed:
            self.answers[path][1].extend(chunk)
        elif path not in self.answers:
            self.answers[path] = (self._vr, bytearray(chunk))
            self._closed = self._closed - {path}
        else:
            self._closed = self._closed | {path}  # a second fragment, or a second element of that tag

    _closed = frozenset()


class QueriesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("ignore")
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        cls.library = subprocess.Popen(COMMAND, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        cls.asked = 0

    @classmethod
    def tearDownClass(cls):
        cls.library.stdin.close()
        cls.library.wait()
        cls.library.stdout.close()
        shutil.rmtree(SCRATCH, ignore_errors=True)
        print(f"{cls.asked} questions asked")

    def answer(self, kind, syntax, file, properties):
        type(self).asked += 1
        self.library.stdin.write(f"{kind}\t{syntax}\t{file}\t{properties}\n")
        self.library.stdin.flush()
        return self.library.stdout.readline().rstrip("\r\n")

    def ask(self, kind, sample, path):
        file = self.headed_path if kind == "headed" else self.data_path
        return self.answer(kind, sample.syntax, file, ",".join(str(signed(p)) for p in path))

    def data_sets(self):
        """Samples that decompose to their end, each with its data set in a file of its own."""
        for name in sample_files.names():
            if name in AS_OPENED:
                continue
            sample = sample_files.open_sample(name, sample_files.ROOT / name, SCRATCH)
            if sample.syntax == DEFLATED:
                sample = sample_files.inflated(sample, SCRATCH)
            self.data_path = SCRATCH / "data_set"
            self.data_path.write_bytes(sample.data)
            self.headed_path = SCRATCH / "headed"
            self.headed_path.write_bytes(HEADER + sample.data)
            yield sample, DataSet(independent_reader.events(sample.data, sample.syntax, sample.implicit).lines)

    def check_reference(self, path):
        """What users write leads to the path. True when it does, which needs known sequences on the way."""
        answer = self.answer("reference", "", "", reference_to(path))
        if not answer.startswith("0"):
            self.assertFalse(all(map(is_known_sequence, path[:-1:2])), reference_to(path) + ": " + answer)
            return False
        self.assertEqual(answer, " ".join(["0", *(str(signed(p)) for p in path)]))
        return True

    def check_element(self, sample, path, vr, value):
        whole = f"0 {vr} {value.hex().upper()}"
        chunk = whole if len(value) <= CHUNK else TOO_LONG
        self.assertEqual(self.ask("stream", sample, path), chunk)
        self.assertEqual(self.ask("file", sample, path), chunk)
        self.assertEqual(self.ask("whole", sample, path), whole)
        self.assertEqual(self.ask("headed", sample, path), whole)

    def test_every_element_is_found(self):
        elements = unreachable = references = 0
        for sample, data_set in self.data_sets():
            with self.subTest(sample.name):
                for path, (vr, value) in data_set.answers.items():
                    if path in data_set.unreachable:
                        unreachable += 1
                        self.assertEqual(self.ask("stream", sample, path), NOTHING)
                    else:
                        elements += 1
                        references += self.check_reference(path)
                        self.check_element(sample, path, vr, bytes(value))
        print(f"{elements} elements found, {references} of them by a reference; {unreachable} out of order and not found")
        self.assertGreater(elements, 5000)
        self.assertGreater(references, 5000)

    def test_every_sequence_is_enumerated(self):
        sequences = 0
        for sample, data_set in self.data_sets():
            if data_set.unreachable:
                continue
            with self.subTest(sample.name):
                for path, count in data_set.items.items():
                    numbers = " ".join(str(n) for n in range(1, count + 1))
                    self.assertEqual(self.ask("items", sample, (*path, 0)), f"0 {numbers}".rstrip())
                    sequences += 1
        print(f"{sequences} sequences enumerated")
        self.assertGreater(sequences, 100)

    def test_what_is_not_there_is_not_found(self):
        for sample, data_set in self.data_sets():
            with self.subTest(sample.name):
                for path in ((0x00080002,), (0x7FE10010,), (0xFFFCFFFC,)):
                    if path not in data_set.answers:
                        self.assertEqual(self.ask("stream", sample, path), NOTHING)


if __name__ == "__main__":
    SCRATCH, COMMAND = pathlib.Path(sys.argv[1]), sys.argv[2:]
    unittest.main(argv=sys.argv[:1], verbosity=2)
