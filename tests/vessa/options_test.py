#!/usr/bin/python3
"""options_test.py VESSA: every option that a --help names stands in the command line of some test."""

import pathlib
import re
import subprocess
import sys
import unittest

VESSA = sys.argv.pop(1)
TESTS = pathlib.Path(__file__).parent

# "  -r,--recursive   Read all ..." and "  --syntax TEXT   Transfer syntax ..."
OPTION = re.compile(r"^  (-[a-zA-Z],)?(--[a-z-]+)\b", re.MULTILINE)
COMMAND = re.compile(r"^  ([a-z]+) {2,}", re.MULTILINE)


def help_of(*command):
    return subprocess.run([VESSA, *command, "--help"], capture_output=True, text=True, check=True).stdout


def commands():
    return COMMAND.findall(help_of().partition("Subcommands:")[2])


def options(text):
    """The names of each option: one or two."""
    return [tuple(filter(None, (short.rstrip(","), long))) for short, long in OPTION.findall(text)]


class Options(unittest.TestCase):
    def test_are_all_used_by_a_test(self):
        sources = "".join(
            path.read_text(encoding="utf-8") for path in TESTS.iterdir() if path.suffix in (".py", ".cpp")
        )
        seen = set()
        for command in [(), *((name,) for name in commands())]:
            for names in options(help_of(*command)):
                seen.add(names)
                is_used = any(f'"{name}"' in sources or f"{name} " in sources for name in names)
                self.assertTrue(is_used, f"{' '.join(command)} {names}")
        self.assertGreater(len(seen), 25)

    def test_come_with_an_example_for_every_command(self):
        names = commands()
        self.assertGreater(len(names), 15)
        for name in names:
            self.assertRegex(help_of(name), rf"Examples?:\n  vessa {name}\b")


if __name__ == "__main__":
    unittest.main(verbosity=2)
