#!/usr/bin/python3
"""ways_round_test.py TOOL ROOT: the commands of docs/known-limits.md put right what they are said to put right.

Each command is run on a file that is damaged in the way of its case. What the library makes of the file before and
after, the tool tells: afterwards it reads the file to its end, and finds what was put there.
"""

import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

from damaged_files import FILES

SURPRISE = re.compile(r"^#### Case (\d+): .*?\n(.*?)(?=^#|\Z)", re.MULTILINE | re.DOTALL)
COMMAND = re.compile(r"^\$ ((?:dcmconv|gdcmconv) .*)$", re.MULTILINE)

# Cases in which the library already says what is in the file, in its own way, so that only the outcome counts.
READ_BEFORE = {
    30,  # the value comes, with a VR that is none
    77,  # the tool positions a stream behind group 0002 itself
    83,  # the tool inflates as a host does
}


def commands(text):
    """Pairs of a case and a command line."""
    for number, section in SURPRISE.findall(text):
        for command in COMMAND.findall(section):
            yield int(number), command


class WaysRoundTest(unittest.TestCase):
    def run_tool(self, *arguments):
        return subprocess.run([TOOL, "--timeout", "1", *arguments], capture_output=True, encoding="latin-1", check=False)

    def reads(self, path, damaged):
        """True when the file is read to its end and holds the value; also VRs count."""
        if self.run_tool("dump", path).returncode != 0:
            return False
        return self.run_tool("query", path, damaged.reference).stdout.strip() == damaged.value

    def test_each_command_puts_its_case_right(self):
        count = 0
        for number, command in commands((ROOT / "docs/known-limits.md").read_text(encoding="utf-8")):
            with self.subTest(case=number, command=command), tempfile.TemporaryDirectory() as folder:
                damaged = FILES[number]
                before, after = pathlib.Path(folder, "in.dcm"), pathlib.Path(folder, "out.dcm")
                before.write_bytes(damaged.content)
                if number not in READ_BEFORE:
                    self.assertFalse(self.reads(before, damaged))
                subprocess.run(shlex.split(command), cwd=folder, capture_output=True, check=True)
                self.assertTrue(self.reads(after, damaged), self.run_tool("dump", after))
            count += 1
        self.assertGreaterEqual(count, 15)

    def test_every_damaged_file_belongs_to_a_command(self):
        told = {number for number, _ in commands((ROOT / "docs/known-limits.md").read_text(encoding="utf-8"))}
        self.assertEqual(told, set(FILES))


if __name__ == "__main__":
    TOOL, ROOT = sys.argv[1], pathlib.Path(sys.argv[2])
    unittest.main(argv=sys.argv[:1], verbosity=2)
