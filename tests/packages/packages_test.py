#!/usr/bin/python3
"""packages_test.py PACKAGES AGAIN COMMIT: what a user does with the packages, and that AGAIN holds the same bytes.

Run by scripts/package.sh check. The .deb packages are really installed and removed where this runs as root.
"""

import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

SAMPLE = "/usr/lib/python3/dist-packages/pydicom/data/test_files/CT_small.dcm"
ROOT = pathlib.Path(__file__).resolve().parents[2]


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                          **options)
    return done.returncode, done.stdout.decode("utf-8", "replace").replace("\r\n", "\n")


def the_one(pattern):
    (path,) = PACKAGES.glob(pattern)
    return path


def utf16_text(data, start):
    end = start
    while data[end : end + 2] != b"\0\0":
        end += 2
    return data[start:end].decode("utf-16-le"), end + 2


def version_strings(data):
    """The StringTable of a VERSIONINFO resource (each entry: length, value length, type, name, value)."""
    name = "StringFileInfo".encode("utf-16-le")
    start = data.index(name) - 6
    length, _, _ = struct.unpack_from("<HHH", data, start)
    end, strings = start + length, {}
    at = (start + 6 + len(name) + 2 + 3) // 4 * 4 + 6 + len("040904B0") * 2 + 2
    while at < end:
        at += -(at - start) % 4
        if at >= end:
            break
        entry_length, value_units, _ = struct.unpack_from("<HHH", data, at)
        key, after = utf16_text(data, at + 6)
        after += -(after - start) % 4
        strings[key] = data[after : after + 2 * value_units].decode("utf-16-le").rstrip("\0")
        at += entry_length
    return strings


class Unpacked(unittest.TestCase):
    """A package in an empty folder."""

    archive = unpack = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        subprocess.run([*cls.unpack, the_one(cls.archive)], cwd=cls.folder, check=True, stdout=subprocess.DEVNULL)
        (cls.top,) = pathlib.Path(cls.folder).iterdir()

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def assert_sums_hold(self):
        code, text = run("sha256sum", "--check", "--quiet", "SHA256SUMS", cwd=self.top)
        self.assertEqual((code, text), (0, ""))
        listed = {line.split("  ")[1] for line in (self.top / "SHA256SUMS").read_text().splitlines()}
        there = {path.relative_to(self.top).as_posix() for path in self.top.rglob("*") if path.is_file()}
        self.assertEqual(listed | {"SHA256SUMS"}, there)

    def assert_tool_works(self, *tool):
        code, text = run(*tool, "--version", cwd=self.top)
        self.assertEqual(code, 0)
        self.assertRegex(text, rf"^vessa {VERSION}\n.*VessaDCM\.(so|dll): VessaDCM {VERSION} commit {COMMIT}\n$")
        self.assertEqual(run(*tool, "tag", "PatientName", cwd=self.top), (0, "(0010,0010)  PN  PatientName  1\n"))
        code, text = run(*tool, "dump", SAMPLE, cwd=self.top)
        self.assertEqual(code, 0)
        self.assertIn("PN PatientName", text)
        code, text = run(*tool, "trace", "-o", "try.recording", "events", SAMPLE, cwd=self.top)
        self.assertEqual(code, 0)
        self.assertEqual(run(*tool, "replay", "try.recording", cwd=self.top)[0], 0)
        (self.top / "try.recording").unlink()


class WindowsZip(Unpacked):
    archive, unpack = "*.zip", ["unzip"]

    def test_sums_hold(self):
        self.assert_sums_hold()

    def test_tool_works_from_an_empty_folder_under_wine(self):
        self.assert_tool_works("wine", "vessa.exe")

    def test_dll_says_what_it_is(self):
        strings = version_strings((self.top / "VessaDCM.dll").read_bytes())
        self.assertEqual(strings["ProductName"], "VessaDCM")
        self.assertEqual((strings["FileVersion"], strings["ProductVersion"]), (VERSION, VERSION))
        self.assertEqual(strings["Commit"], COMMIT)

    def test_dll_exports_one_function_and_needs_the_system_alone(self):
        self.assertEqual(run("sh", ROOT / "tests/binary/windows_symbols.sh", self.top / "VessaDCM.dll"), (0, ""))

    def test_dll_names_its_symbols_and_holds_no_time(self):
        self.assertIn(b"VessaDCM.dll.debug\0", (self.top / "VessaDCM.dll").read_bytes())
        self.assertTrue((self.top / "symbols/VessaDCM.dll.debug").exists())
        for name in ("VessaDCM.dll", "vessa.exe"):
            data = (self.top / name).read_bytes()
            (header,) = struct.unpack_from("<I", data, 0x3C)
            self.assertEqual(struct.unpack_from("<I", data, header + 8), (0,), name)

    def test_symbols_give_lines_of_our_sources(self):
        text = run("x86_64-w64-mingw32-objdump", "--dwarf=decodedline", self.top / "symbols/VessaDCM.dll.debug")[1]
        self.assertIn("stream_decomposer.cpp", text)

    def test_documents_and_licences_are_there(self):
        for name in ("README.md", "CHANGELOG.md", "docs/integrators-guide.md", "docs/host-interface.md",
                     "docs/binary_interface.h", "licences/README.md", "licences/libz-mingw-w64-dev.txt"):
            self.assertTrue((self.top / name).is_file(), name)


class LinuxArchive(Unpacked):
    archive, unpack = "*.tar.gz", ["tar", "xzf"]

    def test_sums_hold(self):
        self.assert_sums_hold()

    def test_tool_works_from_an_empty_folder(self):
        self.assert_tool_works(self.top / "bin/vessa")

    def test_library_exports_one_function(self):
        library = self.top / "lib/x86_64-linux-gnu/vessadcm/VessaDCM.so"
        self.assertEqual(run("sh", ROOT / "tests/binary/linux_symbols.sh", library), (0, ""))
        self.assertIn("stream_decomposer.cpp",
                      run("objdump", "--dwarf=decodedline", self.top / "symbols/VessaDCM.so.debug")[1])


class DebianPackages(unittest.TestCase):
    def packages(self):
        return [the_one("vessadcm_*.deb"), the_one("vessadcm-tools_*.deb")]

    def test_lintian_finds_nothing(self):
        for package in self.packages():
            code, text = run("lintian", "--allow-root", "--fail-on", "error,warning", package)
            self.assertEqual((code, re.sub(r"N: .*\n", "", text)), (0, ""), package.name)

    @unittest.skipUnless(os.geteuid() == 0, "installs packages: needs root")
    def test_packages_install_work_and_leave_nothing(self):
        if run("dpkg", "-s", "vessadcm")[0] == 0:
            self.skipTest("installed on this machine already")
        try:
            code, text = run("dpkg", "--install", *self.packages())
            self.assertEqual(code, 0, text)
            self.assertEqual(run("/usr/bin/vessa", "tag", "PatientName"), (0, "(0010,0010)  PN  PatientName  1\n"))
            self.assertIn(f"VessaDCM {VERSION} commit {COMMIT}", run("/usr/bin/vessa", "--version")[1])
            for page in ("vessa", "vessa-dump", "vessa-trace", "vessa-replay"):
                self.assertTrue(pathlib.Path(f"/usr/share/man/man1/{page}.1.gz").exists(), page)
        finally:
            run("dpkg", "--purge", "vessadcm-tools", "vessadcm")
        for path in ("/usr/bin/vessa", "/usr/lib/x86_64-linux-gnu/vessadcm", "/usr/share/doc/vessadcm"):
            self.assertFalse(pathlib.Path(path).exists(), path)


class BillOfMaterials(unittest.TestCase):
    def bills(self):
        yield json.loads(run("unzip", "-p", the_one("*.zip"), "*/vessadcm.spdx.json")[1])
        yield json.loads(run("tar", "xzOf", the_one("*.tar.gz"), "--wildcards", "*/vessadcm.spdx.json")[1])

    def test_has_what_the_standard_requires(self):
        for bill in self.bills():
            self.assertEqual((bill["spdxVersion"], bill["dataLicense"]), ("SPDX-2.3", "CC0-1.0"))
            self.assertEqual(bill["SPDXID"], "SPDXRef-DOCUMENT")
            self.assertRegex(bill["documentNamespace"], r"^https://[^#]+$")
            self.assertRegex(bill["creationInfo"]["created"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
            for creator in bill["creationInfo"]["creators"]:
                self.assertRegex(creator, "^(Tool|Organization|Person): ")
            identifiers = [package["SPDXID"] for package in bill["packages"]]
            self.assertEqual(len(identifiers), len(set(identifiers)))
            for package in bill["packages"]:
                self.assertRegex(package["SPDXID"], r"^SPDXRef-[A-Za-z0-9.-]+$")
                self.assertTrue(package["name"] and package["downloadLocation"] and package["versionInfo"])
            known = {*identifiers, "SPDXRef-DOCUMENT"}
            for relation in bill["relationships"]:
                self.assertLessEqual({relation["spdxElementId"], relation["relatedSpdxElement"]}, known)

    def test_names_the_parts_with_the_versions_of_this_machine(self):
        expected = [
            {"zlib": "libz-mingw-w64-dev", "cli11": "libcli11-dev", "fmt": "libfmt-dev", "nlohmann-json": "nlohmann-json3-dev"},
            {"zlib": "zlib1g-dev", "lmdb": "liblmdb-dev", "cli11": "libcli11-dev", "fmt": "libfmt-dev",
             "nlohmann-json": "nlohmann-json3-dev"},
        ]
        for bill, parts in zip(self.bills(), expected):
            versions = {package["name"]: package["versionInfo"] for package in bill["packages"]}
            for part, package in parts.items():
                self.assertEqual(versions[part], run("dpkg-query", "-W", "-f", "${Version}", package)[1], part)


class Reproducibility(unittest.TestCase):
    def test_packages_made_in_another_place_have_the_same_bytes(self):
        names = sorted(path.name for path in PACKAGES.iterdir())
        self.assertEqual(len(names), 5)
        self.assertEqual(names, sorted(path.name for path in AGAIN.iterdir()))
        for name in names:
            with self.subTest(name):
                self.assertEqual((PACKAGES / name).read_bytes(), (AGAIN / name).read_bytes())


if __name__ == "__main__":
    PACKAGES, AGAIN, COMMIT = *(pathlib.Path(path).resolve() for path in sys.argv[1:3]), sys.argv[3]
    VERSION = re.search(r"^project\(VessaDCM VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    unittest.main(argv=sys.argv[:1], verbosity=2)
