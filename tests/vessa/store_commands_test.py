#!/usr/bin/python3
"""store_commands_test.py VESSA: import, globals, export and kill, over a store of their own."""

import contextlib
import os
import pathlib
import pty
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

VESSA = sys.argv.pop(1)


def element(tag, vr, value):
    return struct.pack("<HH2sH", tag >> 16, tag & 0xFFFF, vr, len(value)) + value


def dicom_file(uid, *elements):
    uid += bytes(len(uid) % 2)
    syntax = element(0x00020010, b"UI", b"1.2.840.10008.1.2.1\0")
    return bytes(128) + b"DICM" + syntax + element(0x00080018, b"UI", uid) + b"".join(elements)


NAME = element(0x00100010, b"PN", b"Doe^John")
BITS = element(0x00280100, b"US", b"\x10\x00")
PIXELS = struct.pack("<HH2sHI", 0x7FE0, 0x0010, b"OW", 0, 4) + b"\x01\x02\x03\x04"
# An item of 100 bytes that the file does not have: the library waits for them for ever.
ENDLESS = struct.pack("<HH2sHI", 0x0010, 0x1002, b"SQ", 0, 108) + struct.pack("<HHI", 0xFFFE, 0xE000, 100)


def read_to_end(terminal):
    """What a terminal still holds when its last process is gone; the system hands it out piece by piece."""
    pieces = []
    with contextlib.suppress(OSError):  # the end
        while piece := os.read(terminal, 65536):
            pieces.append(piece)
    os.close(terminal)
    return b"".join(pieces)


class StoreCommands(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = os.environ | {"XDG_DATA_HOME": folder.name}

    def run_tool(self, *arguments, code=0):
        process = subprocess.run([VESSA, *map(str, arguments)], capture_output=True, text=True, check=False,
                                 env=self.environment)
        self.assertEqual(process.returncode, code, process.stderr)
        return process

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def test_lists_nodes_as_the_host_would_write_them(self):
        path = self.file("a.dcm", dicom_file(b"1.23", NAME, BITS, PIXELS))
        imported = self.run_tool("import", path)
        self.assertEqual(imported.stdout, f"1.23  {path}\n")
        self.assertEqual(imported.stderr, "")
        lines = self.run_tool("globals", "1.23").stdout.splitlines()
        stream = next(line for line in lines if '"pixels"' in line)
        self.assertEqual(lines, [
            '^KevDICOM.Data(1.23,0,"c",0,524312)=1',
            '^KevDICOM.Data(1.23,0,"c",0,1048592)=2',
            '^KevDICOM.Data(1.23,0,"c",0,2621696)=3',
            '^KevDICOM.Data(1.23,0,"c",0,2145386512)=4',
            '^KevDICOM.Data(1.23,1,"d")=1.23',
            '^KevDICOM.Data(1.23,1,"v")="UI"',
            '^KevDICOM.Data(1.23,2,"d")="Doe^John"',
            '^KevDICOM.Data(1.23,2,"v")="PN"',
            '^KevDICOM.Data(1.23,3,"d")=$c(16,0)',
            '^KevDICOM.Data(1.23,3,"v")="US"',
            '^KevDICOM.Data(1.23,4,"v")="OW"',
            '^KevDICOM.Meta(1.23,"m",131088,"d")="1.2.840.10008.1.2.1"_$c(0)',
            '^KevDICOM.Meta(1.23,"m",131088,"v")="UI"',
            stream,
            '^KevDICOM.Meta(1.23,"syntax")="1.2.840.10008.1.2.1"',
        ])

    def test_lists_a_part_of_the_nodes(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME)))
        self.assertEqual(self.run_tool("globals", "1.23", "--subscripts", "2").stdout,
                         '^KevDICOM.Data(1.23,2,"d")="Doe^John"\n^KevDICOM.Data(1.23,2,"v")="PN"\n')
        self.assertEqual(self.run_tool("globals", "1.23", "--subscripts", "0,c,0,1048592", "--width", "20").stdout,
                         "^KevDICOM.Data(1.23…\n")
        self.assertEqual(self.run_tool("globals", "--subscripts", "1,v", "1.23").stdout,
                         '^KevDICOM.Data(1.23,1,"v")="UI"\n')
        self.run_tool("globals", "1.23", "--subscripts", "9", code=3)
        self.run_tool("globals", "--subscripts", "9", code=2)

    def test_exports_what_was_imported(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME, BITS, PIXELS)), "--id", "mine")
        output = self.folder / "out.dcm"
        process = self.run_tool("export", "mine", output, "--syntax", "explicit", "--verify")
        self.assertIn("verified, 4 elements and items", process.stderr)
        written = output.read_bytes()
        data_set = element(0x00080018, b"UI", b"1.23") + NAME + BITS + PIXELS
        self.assertTrue(written.endswith(data_set))
        self.assertIn(element(0x00020003, b"UI", b"1.23"), written)
        self.run_tool("export", "mine", output, "--syntax", "1.2.840.10008.1.2.1.99", "--verify")
        deflated = output.read_bytes()
        group_length = struct.unpack("<I", deflated[140:144])[0]
        self.assertEqual(zlib.decompress(deflated[144 + group_length:], wbits=-15), data_set)

    def test_leaves_out_group_lengths_and_says_so(self):
        group_length = element(0x00100000, b"UL", struct.pack("<I", len(NAME)))
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", group_length, NAME)))
        output = self.folder / "out.dcm"
        process = self.run_tool("export", "1.23", output, "--syntax", "explicit", "--verify")
        self.assertIn("verified, 2 elements and items", process.stderr)
        self.assertNotIn(group_length, output.read_bytes())
        for command in ("import", "export", "convert"):
            self.assertIn("group lengths (gggg,0000)", " ".join(self.run_tool(command, "--help").stdout.split()))

    def test_leaves_unknown_transfer_syntaxes_to_the_library(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME, BITS, PIXELS)))
        output = self.folder / "out.dcm"
        for syntax in ("explict", "Explicit", "1.2.840.10008.1.2.1 ", ""):
            with self.subTest(syntax=syntax):
                process = self.run_tool("export", "1.23", output, "--syntax", syntax, code=1)
                self.assertIn(f"Expected a supported transfer syntax, got: {syntax}", process.stderr)
        process = self.run_tool("export", "1.23", output, "--syntax", "1.2.840.10008.1.2.4.50", code=2)
        self.assertIn("the pixel data are not compressed, and stay so", process.stderr)
        self.assertFalse(output.exists())

    def test_keeps_a_data_set_from_being_replaced_unasked(self):
        first = self.file("first.dcm", dicom_file(b"1.23", PIXELS))
        second = self.file("second.dcm", dicom_file(b"1.23", NAME))
        self.run_tool("import", first)
        self.assertIn("--replace", self.run_tool("import", second, code=4).stderr)
        self.assertNotIn("Doe", self.run_tool("globals").stdout)
        self.run_tool("import", second, "--replace")
        self.assertIn("Doe", self.run_tool("globals").stdout)
        self.assertNotIn("pixels", self.run_tool("globals").stdout)
        self.assertEqual(list((self.folder / "vessa/pixels").iterdir()), [])

    def test_removes_data_sets(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", PIXELS)))
        self.run_tool("kill", "1.23", "1.24", code=3)  # all or none
        self.assertNotEqual(self.run_tool("globals").stdout, "")
        self.run_tool("kill", "1.23")
        self.assertEqual(self.run_tool("globals").stdout, "")
        self.assertEqual(list((self.folder / "vessa/pixels").iterdir()), [])
        self.run_tool("export", "1.23", self.folder / "out.dcm", "--syntax", "explicit", code=3)

    def test_goes_on_after_bad_files(self):
        for jobs in ("1", "3"):
            with self.subTest(jobs=jobs):
                good = [self.file(f"good{n}.dcm", dicom_file(b"1.%d.%s0" % (n + 10, jobs.encode()), NAME, PIXELS))
                        for n in range(8)]
                cut = self.file("cut.dcm", dicom_file(b"1.99", NAME)[:-1])
                endless = self.file("endless.dcm", dicom_file(b"1.98", NAME, ENDLESS))
                missing = self.folder / "missing.dcm"
                process = self.run_tool("--timeout", "0.5", "import", "--jobs", jobs, good[0], cut, *good[1:4], endless,
                                        missing, *good[4:], code=1)
                self.assertEqual({line.split("  ")[1] for line in process.stdout.splitlines()}, set(map(str, good)))
                self.assertIn(f"vessa: {cut}: ", process.stderr)
                self.assertIn(f"{endless}: zfDecomposeStream did not return within 0.5 s", process.stderr)
                self.assertIn(f"vessa: {missing}: ", process.stderr)
                self.assertIn("imported 8 of 11 files with 24 elements; 3 failed", process.stderr)
                self.assertNotIn("1.98", self.run_tool("globals").stdout)
                self.assertEqual(list((self.folder / "vessa/incoming").iterdir()), [])

    def test_keeps_the_exit_code_that_all_failures_have(self):
        self.run_tool("import", self.folder / "missing", self.folder / "missing too", code=3)

    def test_tells_what_has_no_name(self):
        nameless = self.file("a.dcm", dicom_file(b""))
        self.assertIn("name the data set with --id", self.run_tool("import", nameless, code=2).stderr)
        self.run_tool("import", nameless, "--id", "A")
        self.run_tool("import", nameless, nameless, "--id", "A", code=2)

    def test_takes_the_store_that_is_named(self):
        path = self.file("a.dcm", dicom_file(b"1.23", NAME))
        self.run_tool("import", path, "--store", self.folder / "other store")
        self.run_tool("globals", code=3)
        self.assertIn("Doe", self.run_tool("globals", "--store", self.folder / "other store").stdout)
        self.assertIn(str(path), self.run_tool("globals", "--store", path, code=3).stderr)

    def test_makes_no_store_to_read_from(self):
        store = self.folder / "typo"
        for command in (["globals"], ["globals", "1.23"], ["kill", "1.23"],
                        ["export", "1.23", self.folder / "out.dcm", "--syntax", "explicit"]):
            with self.subTest(command=command[0]):
                process = self.run_tool(*command, "--store", store, code=3)
                self.assertEqual(process.stderr, f"vessa: {store}: no store is there\n")
                self.assertFalse(store.exists())

    def test_needs_no_library_to_list_and_to_remove(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME)))
        missing = ["--library", self.folder / "missing.so"]
        self.assertIn("Doe", self.run_tool(*missing, "globals").stdout)
        self.run_tool(*missing, "kill", "1.23")
        self.assertEqual(self.run_tool("globals").stdout, "")

    def test_finds_the_name_of_a_data_set_whose_elements_are_out_of_order(self):
        syntax = element(0x00020010, b"UI", b"1.2.840.10008.1.2.1\0")
        uid = element(0x00080018, b"UI", b"1.23")
        path = self.file("a.dcm", bytes(128) + b"DICM" + syntax + NAME + uid + BITS)
        self.assertEqual(self.run_tool("import", path).stdout, f"1.23  {path}\n")

    def test_tells_of_a_full_disk(self):
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME)))
        process = self.run_tool("export", "1.23", "/dev/full", "--syntax", "explicit", code=4)
        self.assertIn("/dev/full: No space left on device", process.stderr)

    def test_leaves_nothing_half_written_when_an_export_is_interrupted(self):
        pixels = os.urandom(32 << 20)  # takes long to deflate
        header = struct.pack("<HH2sHI", 0x7FE0, 0x0010, b"OW", 0, len(pixels))
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", header + pixels)))
        output = self.folder / "out.dcm"
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number), subprocess.Popen(
                    [VESSA, "export", "1.23", output, "--syntax", "1.2.840.10008.1.2.1.99"], env=self.environment,
                    start_new_session=True) as process:
                self.wait_until(lambda: any(path.stat().st_size for path in self.folder.glob("out.dcm*")))
                # A terminal interrupts all processes of the command; others end the one that they know.
                end = os.killpg if number == signal.SIGINT else os.kill
                end(process.pid, number)
                self.assertEqual(process.wait(), -number)
                self.wait_until(lambda: not list(self.folder.glob("out.dcm*")))

    def test_reads_to_its_end_what_is_removed_meanwhile(self):
        pixels = bytes(64 << 20)
        header = struct.pack("<HH2sHI", 0x7FE0, 0x0010, b"OW", 0, len(pixels))
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", header + pixels)))
        output = self.folder / "out.dcm"
        with subprocess.Popen([VESSA, "export", "1.23", output, "--syntax", "explicit", "--verify"],
                              env=self.environment, start_new_session=True, stderr=subprocess.PIPE, text=True) as process:
            self.wait_until(lambda: any(path.stat().st_size for path in self.folder.glob("out.dcm.unfinished")))
            os.killpg(process.pid, signal.SIGSTOP)
            try:
                self.assertFalse(output.exists())
                self.run_tool("kill", "1.23")
            finally:
                os.killpg(process.pid, signal.SIGCONT)
            self.assertIn("verified, 2 elements and items", process.communicate()[1])
            self.assertEqual(process.returncode, 0)
        self.run_tool("import", self.file("b.dcm", dicom_file(b"1.24", NAME)))
        self.assertEqual(list((self.folder / "vessa/pixels").iterdir()), [])

    def wait_until(self, happens):
        end = time.monotonic() + 10
        while not happens():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.005)

    def test_shows_progress_on_a_terminal(self):
        files = [self.file(f"{n}.dcm", dicom_file(b"1.%d" % (n + 10))) for n in range(3)]
        master, slave = pty.openpty()
        process = subprocess.run([VESSA, "import", *files], stdout=subprocess.DEVNULL, stderr=slave, check=False,
                                 env=self.environment)
        os.close(slave)
        shown = read_to_end(master).decode()
        self.assertEqual(process.returncode, 0)
        self.assertIn("\r[####################          ] 2 of 3 files, 0 failed", shown)
        self.assertTrue(shown.endswith("imported 3 of 3 files with 3 elements\r\n"), shown)

    def test_holds_all_or_nothing_of_an_import_that_is_killed(self):
        elements = 20000
        big = self.file("big.dcm", dicom_file(b"1.23", PIXELS, *[
            element(0x00200000 + n, b"LO", b"x" * 100) for n in range(0x10, 0x10 + elements)]))
        started = time.monotonic()
        self.run_tool("import", big, "--id", "whole")
        took = time.monotonic() - started
        killed = unfinished = 0
        for kill in range(20):
            with subprocess.Popen([VESSA, "import", big, "--id", f"{kill}"], env=self.environment,
                                  stdout=subprocess.DEVNULL, start_new_session=True) as process:
                time.sleep(took * (kill + 0.5) / 20)
                os.killpg(process.pid, signal.SIGKILL)  # the tool and the process that it works in
            killed += process.returncode == -signal.SIGKILL
            listed = self.run_tool("globals", "--width", "40").stdout.count(f"({kill},0,")
            self.assertIn(listed, (0, elements + 2))
            unfinished += listed == 0
        print(f"{killed} of 20 imports killed, {unfinished} of them before their commit")
        self.assertGreater(unfinished, 0)
        self.run_tool("import", big, "--id", "next")
        self.assertEqual(list((self.folder / "vessa/incoming").iterdir()), [])

    def test_keeps_its_store_below_the_home_folder_by_default(self):
        del self.environment["XDG_DATA_HOME"]
        self.environment["HOME"] = str(self.folder / "home")
        self.run_tool("import", self.file("a.dcm", dicom_file(b"1.23", NAME)))
        self.assertTrue((self.folder / "home/.local/share/vessa/pixels").is_dir())


if __name__ == "__main__":
    unittest.main(verbosity=2)
