#!/usr/bin/python3
"""help_test.py TOOL LIBRARY ROOT: what is made of the tool's description of its commands.

The examples in each command's --help are run as a reader would, in a folder that holds what they name; the manual pages
are read by man, the completions by their shells.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SAMPLES = pathlib.Path("/usr/lib/python3/dist-packages/pydicom/data/test_files")
STORED = "1.2.826.0.1.3680043.8.498.1"


def expected_exit_codes(example):
    if "--inject" in example:
        return {1}  # shows how the library meets a failure
    return {0, 5} if example.startswith("vessa check") else {0}  # 5: it has found something


def make_inputs(folder):
    """Every file that an example names."""
    shutil.copy(SAMPLES / "CT_small.dcm", folder / "image.dcm")
    shutil.copy(SAMPLES / "rtplan.dcm", folder / "plan.dcm")
    (folder / "study").mkdir()
    shutil.copy(SAMPLES / "MR_small.dcm", folder / "study")
    shutil.copy(SAMPLES / "rtplan.dcm", folder / "study")
    # PS3.5: PatientName in implicit VR little endian, without a meta group.
    data_set = b"\x10\x00\x10\x00\x08\x00\x00\x00Doe^John"
    for name in ("data_set.bin", "data_set_without_meta_group.bin"):
        (folder / name).write_bytes(data_set)
    (folder / "big_endian.raw").write_bytes(b"\x01\x02\x03\x04")
    (folder / "other").mkdir()
    (folder / "other/VessaDCM.so").symlink_to(LIBRARY)
    (folder / "bin").mkdir()
    (folder / "bin/vessa").symlink_to(TOOL)


class HelpTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        make_inputs(cls.folder)
        cls.environment = os.environ | {
            "PATH": f"{cls.folder}/bin:" + os.environ["PATH"],
            "HOME": str(cls.folder),
            "XDG_DATA_HOME": str(cls.folder / "data"),
        }
        cls.tool = json.loads(cls.shell("vessa --describe").stdout)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    @classmethod
    def shell(cls, command, shell="/bin/bash"):
        return subprocess.run([shell, "-c", command], cwd=cls.folder, env=cls.environment, text=True,
                              errors="replace", stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)

    def examples(self):
        for command in self.tool["commands"]:
            yield from re.findall(r"^  (vessa .*)$", command["footer"], re.MULTILINE)

    def test_every_example_runs(self):
        count = 0
        for example in self.examples():
            with self.subTest(example):
                shutil.rmtree(self.folder / "data", ignore_errors=True)  # the store of the example before
                if STORED in example or example == "vessa globals":
                    self.shell(f"vessa import image.dcm --id {STORED}")
                done = self.shell("set -o pipefail; " + example)
                self.assertIn(done.returncode, expected_exit_codes(example), done.stderr)
                count += 1
        self.assertGreater(count, 30)

    def test_every_command_has_an_example_of_its_own(self):
        for command in self.tool["commands"]:
            self.assertIn(f"\n  vessa {command['name']}", command["footer"])

    def make_manual(self):
        out = self.folder / "manual"
        subprocess.run(["/usr/bin/python3", ROOT / "scripts/make_manual.py", TOOL, "1.2.3", out], check=True)
        return out

    def test_man_reads_every_page_without_a_warning(self):
        pages = sorted((self.make_manual() / "man1").glob("*.1"))
        self.assertEqual(len(pages), len(self.tool["commands"]) + 1)
        if not shutil.which("man"):
            self.skipTest("no man here")
        for page in pages:
            done = self.shell(f"MANWIDTH=100 LC_ALL=C.UTF-8 man --warnings -l {page}")
            self.assertEqual((done.returncode, done.stderr), (0, ""), page.name)
        text = self.shell(f"MANWIDTH=100 man -l {self.folder}/manual/man1/vessa-trace.1").stdout
        self.assertIn("vessa trace [OPTIONS] COMMAND ...", text)
        self.assertIn("--inject", text)
        self.assertIn("vessa trace -c dump image.dcm", text)

    def completed(self, *words):
        quoted = " ".join(f"'{word}'" for word in words)
        script = f"source {self.make_manual()}/vessa.bash; COMP_WORDS=({quoted}); COMP_CWORD={len(words) - 1}; _vessa;"
        return self.shell(script + ' printf "%s\\n" "${COMPREPLY[@]}"').stdout.split()

    def test_bash_completes_commands_options_and_files(self):
        self.assertEqual(self.completed("vessa", "rep"), ["replay"])
        self.assertEqual(self.completed("vessa", "--library", "x", "rep"), ["replay"])
        self.assertEqual(self.completed("vessa", "trace", "--in"), ["--inject"])
        self.assertEqual(self.completed("vessa", "trace", "-o", "x", "dump", "--js"), ["--json"])
        self.assertEqual(self.completed("vessa", "dump", "ima"), ["image.dcm"])
        self.assertEqual(self.completed("vessa", "dump", "--time"), ["--timeout"])
        every = self.completed("vessa", "")
        self.assertEqual(every, [command["name"] for command in self.tool["commands"]])

    def test_zsh_reads_its_completion(self):
        if not shutil.which("zsh"):
            self.skipTest("no zsh here")
        done = self.shell(f"zsh -n {self.make_manual()}/_vessa")
        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    TOOL, LIBRARY, ROOT = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    unittest.main(argv=sys.argv[:1], verbosity=2)
