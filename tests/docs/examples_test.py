#!/usr/bin/python3
"""examples_test.py TOOL ROOT: the examples in README.md and docs/ print what the documents say.

An example is a ```console block: lines that begin with "$ build/release/vessa" are commands of the shell, what follows is
their output, to the next command or the end of the block. Other commands are not run. The times of a trace, such as
<0.000012>, may be others.
"""

import pathlib
import re
import shlex
import subprocess
import sys
import unittest

PROMPT = "$ build/release/vessa "
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def examples(text):
    """Pairs of a command's arguments and its output."""
    for block in BLOCK.findall(text):
        for part in re.split(r"^(?=\$ )", block, flags=re.MULTILINE):
            command, _, output = part.partition("\n")
            if command.startswith(PROMPT):
                yield command.removeprefix(PROMPT), output


def without_times(text):
    return re.sub(r"<\d+\.\d{6}>", "<time>", text)


class ExamplesTest(unittest.TestCase):
    maxDiff = None

    def test_examples_print_what_the_documents_say(self):
        count = 0
        for document in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]:
            for arguments, output in examples(document.read_text(encoding="utf-8")):
                with self.subTest(document.name, arguments=arguments):
                    command = ["/bin/bash", "-c", f"{shlex.quote(TOOL)} {arguments}"]
                    done = subprocess.run(
                        command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False
                    )
                    self.assertEqual(without_times(done.stdout), without_times(output))
                count += 1
        self.assertGreaterEqual(count, 5)

    def test_an_example_is_taken_apart(self):
        text = "```console\n$ build/release/vessa tag A\none\ntwo\n$ ls\nthree\n$ build/release/vessa tag B\nfour\n```\n"
        self.assertEqual(list(examples(text)), [("tag A", "one\ntwo\n"), ("tag B", "four\n")])


if __name__ == "__main__":
    TOOL, ROOT = sys.argv[1], pathlib.Path(sys.argv[2])
    unittest.main(argv=sys.argv[:1], verbosity=2)
