#!/usr/bin/python3
"""many_files_test.py VESSA MIB: many files at once, under a terminal and in no more memory than MIB."""

import os
import pathlib
import pty
import signal
import struct
import subprocess
import sys
import tempfile
import unittest

MOST_MEMORY = int(sys.argv.pop(2))
VESSA = sys.argv.pop(1)

EXPLICIT = b"1.2.840.10008.1.2.1\0"


def element(tag, vr, value):
    return struct.pack("<HH2sH", tag >> 16, tag & 0xFFFF, vr, len(value)) + value


def dicom_file(*elements):
    return bytes(128) + b"DICM" + element(0x00020010, b"UI", EXPLICIT) + b"".join(elements)


NAME = element(0x00100010, b"PN", b"Doe^John")


class ManyFiles(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def small_files(self, count):
        for number in range(count):
            (self.folder / f"{number:05}.dcm").write_bytes(dicom_file(NAME))

    def most_memory(self, *arguments):
        """Of the largest process that the tool had, in MiB; and its output."""
        program = (
            "import resource, subprocess, sys\n"
            "run = subprocess.run(sys.argv[1:], stdout=subprocess.PIPE)\n"
            "print(run.returncode, len(run.stdout.splitlines()),"
            " resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss // 1024)\n"
        )
        run = subprocess.run(
            [sys.executable, "-c", program, VESSA, *map(str, arguments)],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
            check=True,
        )
        return [int(word) for word in run.stdout.split()]

    def test_ten_thousand_files_need_little_memory(self):
        self.small_files(10000)
        code, lines, memory = self.most_memory("check", "--jobs", "2", self.folder)
        self.assertEqual((code, lines), (0, 10000))
        self.assertLess(memory, MOST_MEMORY)

    def test_four_gigabytes_need_little_memory(self):
        large = self.folder / "large.dcm"
        header = dicom_file(NAME) + struct.pack("<HH2sHI", 0x7FE0, 0x0010, b"OW", 0, 0xFFFFFFFE)
        with open(large, "wb") as file:
            file.write(header)
            file.truncate(len(header) + 0xFFFFFFFE)  # sparse
        code, lines, memory = self.most_memory("check", large)
        self.assertEqual((code, lines), (0, 1))
        self.assertLess(memory, MOST_MEMORY)
        code, lines, memory = self.most_memory("query", large, "PatientName")
        self.assertEqual((code, lines), (0, 1))
        self.assertLess(memory, MOST_MEMORY)

    def test_progress_is_shown_on_a_terminal_only(self):
        self.small_files(200)
        master, slave = pty.openpty()
        with subprocess.Popen([VESSA, "events", "-r", self.folder], stdout=subprocess.DEVNULL, stderr=slave) as process:
            os.close(slave)
            shown = b""
            while True:
                try:
                    chunk = os.read(master, 65536)
                except OSError:
                    break
                if not chunk:
                    break
                shown += chunk
        os.close(master)
        self.assertEqual(process.returncode, 0)
        self.assertIn(b" of 200 files, 0 failed", shown)
        self.assertTrue(shown.endswith(b"\r\x1b[Kread 200 of 200 files\r\n"), shown[-100:])
        piped = subprocess.run([VESSA, "events", "-r", self.folder], capture_output=True, text=True, check=True)
        self.assertEqual(piped.stderr, "read 200 of 200 files\n")

    def test_a_reader_that_goes_away_ends_all_quietly(self):
        self.small_files(300)
        command = f"'{VESSA}' dump -r --jobs 2 '{self.folder}' | head -1; echo ${{PIPESTATUS[0]}}"
        run = subprocess.run(["bash", "-c", command], capture_output=True, text=True, check=False)
        self.assertEqual(run.stderr, "")
        self.assertEqual(run.stdout.splitlines()[-1], "0")

    def test_a_full_disk_is_told_once(self):
        self.small_files(3000)
        with open("/dev/full", "wb") as full:
            run = subprocess.run([VESSA, "dump", "-r", self.folder], stdout=full, stderr=subprocess.PIPE, text=True,
                                 check=False)
        self.assertEqual(run.returncode, 4)
        self.assertEqual(run.stderr.count("standard output cannot be written: No space left on device"), 1)

    def test_an_interrupt_leaves_nothing_behind(self):
        self.small_files(2000)
        with subprocess.Popen([VESSA, "dump", "-r", "--jobs", "2", self.folder], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, start_new_session=True) as process:
            process.stdout.read(1)
            os.killpg(process.pid, signal.SIGINT)
            process.stdout.read()  # to its end: all writers have ended
            process.wait(timeout=10)
        self.assertEqual(process.returncode, -signal.SIGINT)

    def test_an_unreadable_folder_is_named(self):
        closed = self.folder / "closed"
        closed.mkdir(mode=0o000)
        (self.folder / "one.dcm").write_bytes(dicom_file(NAME))
        run = subprocess.run([VESSA, "dump", "-r", self.folder], capture_output=True, text=True, check=False)
        closed.chmod(0o700)
        if os.geteuid() != 0:  # nothing is closed to root
            self.assertEqual(run.returncode, 3)
            self.assertIn(f"{closed}: Permission denied", run.stderr)
        self.assertIn("Doe^John", run.stdout)

    def test_an_empty_folder_is_told(self):
        run = subprocess.run([VESSA, "dump", "-r", self.folder], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 3)
        self.assertIn("no file in this folder", run.stderr)

    def test_an_empty_file_and_odd_ones_are_told(self):
        (self.folder / "empty").write_bytes(b"")
        (self.folder / "text").write_text("no DICOM " * 100)
        run = subprocess.run([VESSA, "check", self.folder], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 5)
        self.assertIn("empty: the file is empty\n", run.stdout)
        self.assertIn('text: no preamble with "DICM"', run.stdout)


if __name__ == "__main__":
    unittest.main(verbosity=2)
