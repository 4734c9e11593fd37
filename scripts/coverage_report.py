#!/usr/bin/python3
"""coverage_report.py COVERAGE.json EXCEPTIONS PERCENT: what gcovr has counted, by folder, and what no test takes.

EXCEPTIONS names lines whose branches cannot all be taken, one a line:  file | text of the line | reason
"""

import collections
import json
import pathlib
import sys


def read_exceptions(path):
    reasons = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if line.strip() and not line.startswith("#"):
            name, text, reason = (part.strip() for part in line.split(" | "))
            reasons[name, text] = reason
    return reasons


def branches_of(line):
    return [branch for branch in line.get("branches", []) if not branch.get("throw")]


def count(files):
    """Taken and all branches by folder, and the lines with a branch that is not taken."""
    taken = collections.Counter()
    total = collections.Counter()
    untaken = []
    for file in files:
        folder = file["file"].split("/")[0]
        source = pathlib.Path(file["file"]).read_text(encoding="utf-8").splitlines()
        for line in file["lines"]:
            branches = branches_of(line)
            missed = sum(1 for branch in branches if branch["count"] == 0)
            taken[folder] += len(branches) - missed
            total[folder] += len(branches)
            if missed:
                untaken.append((file["file"], line["line_number"], source[line["line_number"] - 1].strip(), missed))
    return taken, total, untaken


def print_row(name, taken, total):
    print(f"{name:12} {taken:6} of {total:6} branches  {100 * taken / max(total, 1):6.2f} %")


def main():
    report, exceptions, percent = sys.argv[1:]
    taken, total, untaken = count(json.loads(pathlib.Path(report).read_text())["files"])
    reasons = read_exceptions(exceptions)
    print("Not taken:")
    for name, number, text, missed in sorted(untaken):
        print(f"  {name}:{number}: {missed} of: {text}\n      {reasons.get((name, text), 'NO REASON GIVEN')}")
    missed_lines = {(name, text) for name, _, text, _ in untaken}
    for name, text in reasons.keys() - missed_lines:
        print(f"  {name}: taken by now, its reason can go: {text}")
    print()
    for folder in total:
        print_row(folder, taken[folder], total[folder])
    print_row("total", taken.total(), total.total())
    all_have_reasons = missed_lines <= reasons.keys()
    return 0 if all_have_reasons and 100 * taken.total() >= float(percent) * total.total() else 1


if __name__ == "__main__":
    sys.exit(main())
