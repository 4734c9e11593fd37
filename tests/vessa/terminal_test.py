#!/usr/bin/python3
"""terminal_test.py VESSA FAULTY_LIBRARY: the tool under a terminal, before a closed pipe and a full disk."""

import fcntl
import os
import pathlib
import pty
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

FAULTY_LIBRARY = sys.argv.pop(2)
VESSA = sys.argv.pop(1)


def data_set(elements):
    """Explicit VR little endian: an element of 100 bytes, as often as asked for."""
    value = b"x" * 100
    return (struct.pack("<HH2sH", 0x0010, 0x0020, b"LO", len(value)) + value) * elements


def under_terminal(arguments, columns=80, environment=None):
    """Runs the tool with a terminal as standard output; what it wrote there, and its exit code."""
    master, slave = pty.openpty()
    fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    variables = {name: value for name, value in os.environ.items() if name != "NO_COLOR"} | (environment or {})
    with subprocess.Popen([VESSA, *arguments], stdout=slave, env=variables) as process:
        os.close(slave)
        output = b""
        while True:
            try:
                chunk = os.read(master, 65536)
            except OSError:  # the terminal is gone with its last process
                break
            if not chunk:
                break
            output += chunk
    os.close(master)
    return output.decode(), process.returncode


def piped(arguments, **options):
    return subprocess.run([VESSA, *arguments], capture_output=True, text=True, check=False, **options)


def is_running(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


class Terminal(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.small = os.path.join(folder.name, "small")
        self.large = os.path.join(folder.name, "large")
        pathlib.Path(self.small).write_bytes(data_set(1))
        pathlib.Path(self.large).write_bytes(data_set(20000))

    def test_has_colours_on_a_terminal_only(self):
        self.assertIn("\x1b[", under_terminal(["tag", "PatientName"])[0])
        self.assertNotIn("\x1b", piped(["tag", "PatientName"]).stdout)

    def test_honours_no_color_unless_colours_are_asked_for(self):
        self.assertNotIn("\x1b", under_terminal(["tag", "PatientName"], environment={"NO_COLOR": "1"})[0])
        self.assertNotIn("\x1b", under_terminal(["--no-color", "tag", "PatientName"])[0])
        self.assertIn("\x1b[", piped(["tag", "PatientName", "--color"], env={"NO_COLOR": "1"}).stdout)

    def test_fits_lines_to_the_terminal(self):
        output, _ = under_terminal(["--no-color", "dump", "--syntax", "explicit", self.small], columns=100)
        self.assertEqual(len(output.splitlines()[0]), 100)
        whole = piped(["dump", "--syntax", "explicit", self.small]).stdout
        self.assertIn("x" * 100, whole)

    def test_is_quiet_when_its_reader_goes_away(self):
        command = f"'{VESSA}' dump --syntax explicit {self.large} | head -1; echo ${{PIPESTATUS[0]}}"
        run = subprocess.run(["bash", "-c", command], capture_output=True, text=True, check=False)
        self.assertEqual(run.stderr, "")
        self.assertEqual(run.stdout.splitlines()[-1], "0")

    def test_reports_output_that_cannot_be_written(self):
        for arguments in (["dump", "--syntax", "explicit", self.large], ["table"], ["--help"]):
            with open("/dev/full", "wb") as full:
                run = subprocess.run([VESSA, *arguments], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual(run.returncode, 4, arguments)
            self.assertIn("standard output cannot be written: No space left on device", run.stderr)

    def test_reports_input_that_cannot_be_read(self):
        with open(os.devnull, "wb") as unreadable:  # open for writing only
            run = subprocess.run([VESSA, "swap", "2"], stdin=unreadable, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 3)
        self.assertIn("standard input cannot be read", run.stderr)

    def start_spinning(self):
        command = [VESSA, "--library", FAULTY_LIBRARY, "--timeout", "0", "call", "spin"]
        process = subprocess.Popen(command, start_new_session=True)
        self.addCleanup(process.wait)
        children = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children")
        deadline = time.monotonic() + 10
        while not children.read_text().split():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.01)
        return process, int(children.read_text().split()[0])

    def assert_ended(self, pid):
        deadline = time.monotonic() + 10
        while is_running(pid):
            self.assertLess(time.monotonic(), deadline, "the process that made the call lives on")
            time.sleep(0.01)

    def test_leaves_nothing_behind_after_an_interrupt(self):
        process, child = self.start_spinning()
        os.killpg(process.pid, signal.SIGINT)  # what Ctrl-C does
        process.wait(timeout=10)
        self.assert_ended(child)

    def test_leaves_nothing_behind_when_it_is_killed(self):
        process, child = self.start_spinning()
        process.kill()
        process.wait(timeout=10)
        self.assert_ended(child)

    def test_does_not_count_the_time_of_a_slow_reader(self):
        command = f"'{VESSA}' --timeout 0.3 dump --syntax explicit {self.large} | (sleep 1; wc -l); echo ${{PIPESTATUS[0]}}"
        run = subprocess.run(["bash", "-c", command], capture_output=True, text=True, check=False)
        self.assertEqual(run.stdout.split(), ["20000", "0"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
