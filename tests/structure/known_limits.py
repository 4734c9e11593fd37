#!/usr/bin/python3
"""known_limits.py ROOT: docs/known-limits.md has every case once, every test that it names exists, and whoever meets a
surprise reads how to tell it and the way round.

Prints one line a finding and exits with 1 when there is one.
"""

import pathlib
import re
import sys

CASES = range(1, 101)
PAGE = "docs/known-limits.md"

ROW = re.compile(r"^\| (\d+) \|(.*)\|$", re.MULTILINE)
NAMED_TESTS = re.compile(r"(`\w+\.\w+`(?:, `\w+\.\w+`)*) in \[\w+\]\(\.\./([\w/.]+)\)")
SURPRISE = re.compile(r"^#### Case (\d+): ", re.MULTILINE)
ADVICE = ("How to tell", "Way round")


def defines(source, suite, name):
    return re.search(rf"^TEST(_F|_P)?\({suite},\s*{name}\)", source, re.MULTILINE) is not None


def missing_tests(root, text):
    for tests, path in NAMED_TESTS.findall(text):
        source = (root / path).read_text(encoding="utf-8") if (root / path).is_file() else ""
        for suite, name in re.findall(r"`(\w+)\.(\w+)`", tests):
            if not defines(source, suite, name):
                yield f"{PAGE}: no test {suite}.{name} in {path}"


def wrong_rows(text):
    rows = ROW.findall(text)
    numbers = [int(number) for number, _ in rows]
    for case in CASES:
        if numbers.count(case) != 1:
            yield f"{PAGE}: case {case} has {numbers.count(case)} rows"
    for number, row in rows:
        if not NAMED_TESTS.search(row):
            yield f"{PAGE}: case {number} names no test"
    for number in set(map(int, SURPRISE.findall(text))) - set(numbers):
        yield f"{PAGE}: case {number} is told of and has no row"


def missing_advice(text):
    _, *pieces = SURPRISE.split(text.partition("## All cases")[0])
    for number, told in zip(pieces[::2], pieces[1::2]):
        for advice in ADVICE:
            if f"\n{advice}:" not in told:
                yield f"{PAGE}: case {number} is told of without \"{advice}\""


def findings(root):
    text = (root / PAGE).read_text(encoding="utf-8")
    yield from wrong_rows(text)
    yield from missing_advice(text)
    yield from missing_tests(root, text)


def main():
    found = list(findings(pathlib.Path(sys.argv[1])))
    print("\n".join(found) or f"{len(CASES)} cases have their tests")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
