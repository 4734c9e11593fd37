#!/usr/bin/python3
"""What is predicted of a file is what the library then does: outcome, message, offset and path.

    predictions_test.py SCRATCH COMMAND...    COMMAND runs outcomes_of; SCRATCH takes unpacked files
"""

import pathlib
import random
import shutil
import subprocess
import sys
import unittest
import warnings

sys.path.append(str(pathlib.Path(__file__).parents[2] / "realfiles"))
import sample_files  # noqa: E402

# Small samples of all kinds: sequences of defined and undefined length, private ones, encapsulated pixel data, explicit
# and implicit, without meta information.
CUT = [
    "charset_files/chrSQEncoding.dcm",
    "test_files/ExplVR_LitEndNoMeta.dcm",
    "test_files/SC_rgb_rle.dcm",
    "test_files/UN_sequence.dcm",
    "test_files/empty_charset_LEI.dcm",
    "test_files/meta_missing_tsyntax.dcm",
    "test_files/nested_priv_SQ.dcm",
    "test_files/priv_SQ.dcm",
    "test_files/reportsi.dcm",
    "test_files/rtplan.dcm",
]
SEED = 20220101
FLIPS = 2000
FLIPPED_BYTES = 3000  # at the start of a file: what comes later is mostly pixel data

SPIN_SECONDS = 0.15  # how long a call that spins is watched; all others answer within milliseconds
MOST_SPINS = 400
MOST_SECONDS = 120  # for thousands of answers

# Under wine each process is dear: a part of the variants and of the calls that spin.
IS_SLOW = any("wine" in word for word in sys.argv)


class Answer:
    def __init__(self, line, bytes_a_unit):
        self.outcome, self.offset, self.path, message = (line.split("\t") + ["", "", ""])[:4]
        units = [int(message[at : at + 2 * bytes_a_unit], 16) for at in range(0, len(message), 2 * bytes_a_unit)]
        self.message = "".join(map(character if bytes_a_unit == 1 else chr, units))

    def __eq__(self, other):
        return vars(self) == vars(other)

    def __repr__(self):
        return repr(vars(self))


def character(byte):
    """Of windows-1252; the bytes that it leaves open stand for themselves."""
    try:
        return bytes([byte]).decode("cp1252")
    except UnicodeDecodeError:
        return chr(byte)


def spins(question):
    """True when the library neither answers nor ends within the time that it is watched."""
    with subprocess.Popen(
        [*COMMAND, "--spin"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, encoding="latin-1"
    ) as process:
        process.stdin.write(question + "\n")
        process.stdin.close()
        process.stdout.readline()
        assert process.stdout.readline().strip() == "calling"
        try:
            process.wait(timeout=SPIN_SECONDS)
            return False
        except subprocess.TimeoutExpired:
            process.kill()
            return True


class PredictionsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("ignore")  # pydicom's, about the odd files
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        names = sample_files.names()
        cls.samples = {name: sample_files.open_sample(name, sample_files.ROOT / name, SCRATCH) for name in names}

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(SCRATCH, ignore_errors=True)

    def question(self, name, variant):
        sample = self.samples[name]
        syntax = "" if sample.meta else sample.syntax
        return f"{sample.path}\t{syntax}\t{variant}"

    def ask(self, questions, is_again=False):
        """The lines of all answers, which come within seconds unless a call spins that was predicted to return.

        A process that has answered all and does not end is asked again: wine has been seen to keep one."""
        try:
            run = subprocess.run(
                COMMAND,
                input="\n".join(questions) + "\n",
                capture_output=True,
                text=True,
                encoding="latin-1",
                check=False,
                timeout=MOST_SECONDS,
            )
        except subprocess.TimeoutExpired as expired:
            answered = (expired.stdout or b"").count(b"\n") // 2
            if answered == len(questions) and not is_again:
                return self.ask(questions, is_again=True)
            self.fail(f"no answer to {(questions + ['the end of all questions'])[answered]!r}")
        self.assertEqual(run.returncode, 0, run.stderr)
        return run.stdout.replace("\r", "").split("\n")

    def check(self, questions):
        """Asks all, and counts what was predicted."""
        if IS_SLOW:
            questions = questions[::10]
        lines = self.ask(questions)
        self.assertEqual(len(lines), 2 * len(questions) + 1, "the process ended before it had answered all")
        counts, spinning = {}, []
        for question, predicted, actual in zip(questions, lines[::2], lines[1::2]):
            prediction = Answer(predicted, 1)
            counts[prediction.outcome] = counts.get(prediction.outcome, 0) + 1
            if actual == "skipped":
                self.assertEqual(prediction.outcome, "does not return")
                spinning.append(question)
                continue
            with self.subTest(question):
                self.assertEqual(prediction, Answer(actual, 2))
        self.assertLessEqual(len(spinning), MOST_SPINS)
        for question in spinning[:: 10 if IS_SLOW else 1]:
            with self.subTest(question):
                self.assertTrue(spins(question))
        return counts

    def test_of_real_files(self):
        counts = self.check([self.question(name, "whole") for name in self.samples])
        print(f"real files: {counts}")
        self.assertGreater(sum(counts.values()), 5 if IS_SLOW else 80)

    def test_of_every_truncation(self):
        counts = {}
        for name in CUT:
            cuts = range(self.samples[name].path.stat().st_size)
            if self.samples[name].meta:
                cuts = cuts[132:]  # anything shorter is no file
            for outcome, count in self.check([self.question(name, f"cut {cut}") for cut in cuts]).items():
                counts[outcome] = counts.get(outcome, 0) + count
        print(f"truncations: {counts}")
        self.assertGreater(counts["does not return"], 0 if IS_SLOW else 10)
        self.assertGreater(counts["fails"], 500)

    def test_of_single_bit_flips(self):
        dice = random.Random(SEED)
        names = sorted(self.samples)
        questions = []
        for _ in range(FLIPS):
            name = dice.choice(names)
            size = min(self.samples[name].path.stat().st_size, FLIPPED_BYTES)
            start = 132 if self.samples[name].meta else 0
            questions.append(self.question(name, f"flip {dice.randrange(start, size)} {dice.randrange(8)}"))
        counts = self.check(questions)
        print(f"bit flips: {counts}")
        self.assertGreater(counts["succeeds"], 50)


if __name__ == "__main__":
    SCRATCH, COMMAND = pathlib.Path(sys.argv[1]), sys.argv[2:]
    unittest.main(argv=sys.argv[:1], verbosity=2)
