#!/usr/bin/python3
"""memory_test.py VESSA: files of 256 MB go through the store and through zlib in little memory."""

import pathlib
import resource
import struct
import subprocess
import sys
import tempfile
import unittest

VESSA = sys.argv.pop(1)

BIG = 256 << 20
ENOUGH = 48 << 20  # bytes; the tool itself takes about 10 MB


class Memory(unittest.TestCase):
    """Each command in turn; the largest of them counts."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_tool(self, *arguments):
        process = subprocess.run([VESSA, "--timeout", "60", *map(str, arguments)], capture_output=True, text=True,
                                 check=False)
        self.assertEqual(process.returncode, 0, process.stderr)
        largest = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024
        print(f"{arguments[0]}: at most {largest >> 20} MB so far")
        self.assertLess(largest, ENOUGH)

    def sparse_file(self, name, start, size):
        path = self.folder / name
        with open(path, "wb") as file:
            file.write(start)
            file.truncate(len(start) + size)
        return path

    def test_takes_little_memory_for_a_big_file(self):
        plain = self.sparse_file("plain", b"", BIG)
        self.run_tool("deflate", plain, self.folder / "packed", "--level", "1")
        self.run_tool("inflate", self.folder / "packed", self.folder / "unpacked")
        self.assertEqual((self.folder / "unpacked").stat().st_size, BIG)

        uid = b"1.2.840.10008.1.2.1\0"
        meta = bytes(128) + b"DICM" + struct.pack("<HH2sH", 2, 0x10, b"UI", len(uid)) + uid
        pixels = struct.pack("<HH2sHI", 0x7FE0, 0x0010, b"OW", 0, BIG)
        image = self.sparse_file("image.dcm", meta + pixels, BIG)
        store = self.folder / "store"
        self.run_tool("import", image, "--id", "A", "--store", store)
        self.run_tool("export", "A", self.folder / "out.dcm", "--syntax", "implicit", "--verify", "--store", store)
        self.assertGreater((self.folder / "out.dcm").stat().st_size, BIG)


if __name__ == "__main__":
    unittest.main(verbosity=2)
