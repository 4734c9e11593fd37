#!/usr/bin/python3
"""The check of the known limits finds what it is there to find."""

import pathlib
import tempfile
import unittest

import known_limits

SOURCE = "TEST_F(Stream,\n       IsEmpty) {}\nTEST(Stream, Ends) {}\n"


def row(number, test="`Stream.IsEmpty`, `Stream.Ends` in [a_test](../tests/a_test.cpp)"):
    return f"| {number} | input | outcome | {test} |\n"


class KnownLimitsTest(unittest.TestCase):
    def findings_of(self, page):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in {"docs/known-limits.md": page, "tests/a_test.cpp": SOURCE}.items():
                (root / name).parent.mkdir()
                (root / name).write_text(text, encoding="utf-8")
            return list(known_limits.findings(root))

    def setUp(self):
        self.told = "#### Case 7: told\n\nHow to tell: look.\n\nWay round: none.\n"
        self.whole = self.told + "\n## All cases\n\n" + "".join(map(row, known_limits.CASES))

    def test_accepts_a_page_with_every_case_and_its_test(self):
        self.assertEqual(self.findings_of(self.whole), [])

    def test_finds_a_case_that_is_missing_or_stands_twice(self):
        self.assertEqual(len(self.findings_of(self.whole.replace(row(8), ""))), 1)
        self.assertEqual(len(self.findings_of(self.whole + row(8))), 1)

    def test_finds_a_case_without_a_test(self):
        self.assertEqual(len(self.findings_of(self.whole.replace(row(8), row(8, "nothing")))), 1)

    def test_finds_a_test_that_does_not_exist(self):
        self.assertEqual(len(self.findings_of(self.whole.replace(row(8), row(8).replace("IsEmpty", "IsFull")))), 1)
        self.assertEqual(len(self.findings_of(self.whole.replace(row(8), row(8).replace("/a_test", "/b_test")))), 2)

    def test_finds_a_surprise_without_a_row(self):
        self.assertEqual(len(self.findings_of(self.told.replace("7", "101") + self.whole)), 1)

    def test_finds_a_surprise_without_advice(self):
        for line in ("How to tell: look.\n", "Way round: none.\n"):
            self.assertEqual(len(self.findings_of(self.whole.replace(line, ""))), 1)


if __name__ == "__main__":
    unittest.main()
