#!/usr/bin/python3
"""mutants.py COUNT SEED: see mutants.sh."""

import hashlib
import json
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
BUILD = WORK / "build"
FOLDERS = ["host", "stream", "decompose", "vdoc", "compose"]
SURVIVORS = ROOT / "scripts" / "mutants_survivors.txt"

BUILD_SECONDS = 300
FIRST_SECONDS = 3600
FAST_TEST_SECONDS = 0.3
TEST_BYTES = 4 << 30
MOST_SURVIVORS = 0.05

# What is broken, and into what. Comparisons stand between blanks, template arguments do not.
SWAPS = {
    " == ": [" != "],
    " != ": [" == "],
    " < ": [" <= ", " >= "],
    " > ": [" >= ", " <= "],
    " <= ": [" < ", " > "],
    " >= ": [" > ", " < "],
    " && ": [" || "],
    " || ": [" && "],
    " + ": [" - "],
    " - ": [" + "],
    " += ": [" -= "],
    " -= ": [" += "],
    "std::min": ["std::max"],
    "std::max": ["std::min"],
    "true": ["false"],
    "false": ["true"],
    "++": ["--"],
    "--": ["++"],
}
TOKEN = re.compile("|".join(rf"\b{s}\b" if s[0].isalpha() else re.escape(s) for s in SWAPS) + r"|\b(?:0x[0-9A-Fa-f]+|\d+)\b")
# No program text: comments, texts, characters, and what the compiler alone looks at.
OPAQUE = re.compile(r'//.*|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|^\s*#.*|^\s*static_assert.*|\[\[.*?\]\]|\b\w*int\d+_t\b')
# The first value that the linter wants every variable to have, most of which are written over before they are read.
FIRST_VALUE = re.compile(r"\s*(?!.*\bconst)[\w:]+ \w+ = (?:0|false|true);")


def replacements(token):
    if token in SWAPS:
        return SWAPS[token]
    value = int(token, 0)
    others = [value + 1] if value == 0 else [value + 1, value - 1]
    return [hex(other) if token.startswith("0x") else str(other) for other in others]


def is_first_value(mutant):
    path, index, *_ = mutant
    return FIRST_VALUE.match((TREE / path).read_text(encoding="utf-8").splitlines()[index])


def mutants_of(path):
    """(path, line index, column, token, replacement) of everything that can be broken in a source."""
    for index, line in enumerate((TREE / path).read_text(encoding="utf-8").splitlines()):
        text = OPAQUE.sub(lambda match: "\0" * len(match.group()), line)
        for match in TOKEN.finditer(text):
            for replacement in replacements(match.group()):
                yield path, index, match.start(), match.group(), replacement


def all_mutants():
    sources = [path for folder in FOLDERS for path in sorted((TREE / folder).iterdir())]
    return [mutant for path in sources if path.suffix in (".h", ".cpp") for mutant in mutants_of(path.relative_to(TREE))]


def run(command, seconds, **options):
    """The command's exit code; 124 when it had to be ended."""
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=TREE,
                          start_new_session=True, **options) as process:
        try:
            return process.wait(seconds)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            return 124


def build(targets, seconds=BUILD_SECONDS):
    return run(["cmake", "--build", str(BUILD), "-j1", "--target", *targets], seconds) == 0


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (TEST_BYTES, TEST_BYTES))


class Test:
    """A test program, and those of its cases that are fast."""

    def __init__(self, name):
        self.command = [str(BUILD / name), "--gtest_brief=1", "--gtest_fail_fast"]
        report = BUILD / f"{name}.json"
        if run([*self.command, f"--gtest_output=json:{report}"], FIRST_SECONDS, preexec_fn=limit_memory) != 0:
            sys.exit(f"mutants: {name} fails before anything is broken")
        times = {
            f"{suite['name']}.{case['name']}": float(case["time"].rstrip("s"))
            for suite in json.loads(report.read_text())["testsuites"]
            for case in suite["testsuite"]
        }
        slow = [case for case, seconds in times.items() if seconds > FAST_TEST_SECONDS]
        seconds = sum(seconds for seconds in times.values() if seconds <= FAST_TEST_SECONDS)
        print(f"{name}: {len(times) - len(slow)} fast cases in {seconds:.1f} s, {len(slow)} slow ones left out", flush=True)
        self.command.append("--gtest_filter=-" + ":".join(slow))
        self.patience = 20 + 10 * seconds  # others may keep the machine busy

    def passes(self):
        return run(self.command, self.patience, preexec_fn=limit_memory) == 0


def make_tree():
    """Builds the tree as it stands, apart from the original, without optimisation and without symbols.

    Returns its tests by their names."""
    WORK.mkdir(parents=True, exist_ok=True)
    files = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True).stdout
    for name in files.decode().split("\0")[:-1]:
        target = TREE / name
        if target.exists() and target.read_bytes() == (ROOT / name).read_bytes():
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(ROOT / name, target)
        shutil.copymode(ROOT / name, target)
    os.environ["CCACHE_BASEDIR"] = str(TREE)
    flags = "-O0 -D_GLIBCXX_ASSERTIONS -Wno-error"
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "--log-level=WARNING", "-DCMAKE_BUILD_TYPE=None",
                    f"-DCMAKE_CXX_FLAGS={flags}"], check=True)
    tests = [f"{folder}_test" for folder in FOLDERS] + ["callouts_test"]
    if not build([*tests, "VessaDCM"], FIRST_SECONDS):
        sys.exit("mutants: the tree does not build")
    return {name: Test(name) for name in tests}


def instructions(path):
    """What the compiler makes of a source when it optimises."""
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    command = next(entry["command"] for entry in commands if entry["file"] == str(TREE / path))
    words = command.split()
    words[words.index("-o") + 1] = "-"
    words = ["-S" if word == "-c" else "-O2" if word == "-O0" else word for word in words]
    return subprocess.run(words, cwd=BUILD, check=True, capture_output=True).stdout


def is_same_program(path, original, mutated):
    """Whether the compiler tells the two apart; a header is not asked about, for many sources take it in."""
    if path.suffix != ".cpp":
        return False
    source = TREE / path
    source.write_text(original, encoding="utf-8")
    before = instructions(path)
    source.write_text(mutated, encoding="utf-8")
    return instructions(path) == before


def outcome_of(mutant, tests):
    """none: does not build, or to the same instructions; caught; or survived."""
    path, index, column, token, replacement = mutant
    source = TREE / path
    original = source.read_text(encoding="utf-8")
    lines = original.splitlines(keepends=True)
    lines[index] = lines[index][:column] + replacement + lines[index][column + len(token):]
    mutated = "".join(lines)
    source.write_text(mutated, encoding="utf-8")
    try:
        order = [f"{path.parts[0]}_test", "callouts_test"]
        # A header is compiled into many tests; only when the call-outs do not notice it is it worth to build them.
        for test in order if path.suffix == ".cpp" else reversed(order):
            if not build([test if test != "callouts_test" else "VessaDCM"]):
                return "none"
            if not tests[test].passes():
                return "caught"
        return "none" if is_same_program(path, original, mutated) else "survived"
    finally:
        source.write_text(original, encoding="utf-8")


def describe(mutant):
    path, index, column, token, replacement = mutant
    text = (TREE / path).read_text(encoding="utf-8").splitlines()[index]
    return f"{path} | {text[:column].lstrip()}[{token.strip()} -> {replacement.strip()}]{text[column + len(token):]}"


def is_of_today(mutant):
    """Whether the line that a described mutant changes is still there; blanks around operators do not count."""
    path, change = mutant.split(" | ", 1)
    original = re.sub(r"\[(\S+?) -> \S+?\]", r"\1", change)
    lines = (ROOT / path).read_text(encoding="utf-8").splitlines() if (ROOT / path).exists() else []
    return original.replace(" ", "") in (line.replace(" ", "") for line in lines)


def read_reasons():
    lines = SURVIVORS.read_text(encoding="utf-8").splitlines()
    entries = [line.rsplit(" | ", 1) for line in lines if line.strip() and not line.startswith("#")]
    reasons = {mutant.strip(): reason.strip() for mutant, reason in entries}
    stale = [mutant for mutant in reasons if not is_of_today(mutant)]
    if stale:
        sys.exit("mutants: these lines are no more, their reasons can go:\n  " + "\n  ".join(stale))
    return reasons


def percent(part, whole):
    return f"{100 * part / max(whole, 1):.1f} %"


def main():
    count, seed = int(sys.argv[1]), int(sys.argv[2])
    reasons = read_reasons()
    tests = make_tree()
    candidates = all_mutants()
    # Every mutant has its own place in the order of a seed, so that a change elsewhere hardly changes the choice.
    candidates.sort(key=lambda mutant: hashlib.sha256(f"{seed} {mutant[2]} {describe(mutant)}".encode()).digest())
    tried = 0
    survived = []
    for mutant in candidates:
        if tried == count:
            break
        if is_first_value(mutant):
            continue
        outcome = outcome_of(mutant, tests)
        print(f"{tried:4} {outcome:8} {describe(mutant)}", flush=True)
        tried += outcome != "none"
        if outcome == "survived":
            survived.append(describe(mutant))
    equal = sum(reasons.get(mutant, "").startswith("equal:") for mutant in survived)
    different = len(survived) - equal
    print(f"\n{tried} mutants of {len(candidates)} possible, seed {seed}: {len(survived)} survived "
          f"({percent(len(survived), tried)}); {equal} of these do what the original does, {different} do not "
          f"({percent(different, tried - equal)} of the mutants that do something else)")
    for mutant in survived:
        print(f"  {mutant}\n      {reasons.get(mutant, 'NO REASON GIVEN')}")
    explained = all(mutant in reasons for mutant in survived)
    return 0 if explained and different <= MOST_SURVIVORS * (tried - equal) else 1


if __name__ == "__main__":
    sys.exit(main())
