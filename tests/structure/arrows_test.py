#!/usr/bin/python3
"""The check of the arrows finds what it is there to find."""

import pathlib
import tempfile
import unittest

import arrows


class ArrowsTest(unittest.TestCase):
    def findings_of(self, name, text):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True)
            path.write_text(text, encoding="utf-8")
            return list(arrows.findings(pathlib.Path(folder)))

    def test_accepts_an_include_from_below_and_from_the_own_folder(self):
        self.assertEqual(self.findings_of("stream/a.h", '#include "host/callin.h"\n#include "stream/b.h"\n'), [])

    def test_finds_an_include_from_above(self):
        self.assertEqual(len(self.findings_of("stream/a.cpp", '#include "decompose/stream_decomposer.h"\n')), 1)

    def test_finds_an_include_from_the_side(self):
        self.assertEqual(len(self.findings_of("compose/a.cpp", '#include "vdoc/query.h"\n')), 1)

    def test_finds_an_include_without_its_folder(self):
        self.assertEqual(len(self.findings_of("host/a.cpp", '#include "callin.h"\n')), 1)

    def test_lets_the_emulator_include_the_binary_interface_alone(self):
        self.assertEqual(self.findings_of("emulator/a.h", '#include "host/binary_interface.h"\n'), [])
        self.assertEqual(len(self.findings_of("emulator/a.h", '#include "host/callin.h"\n')), 1)

    def test_finds_an_operating_system_outside_the_platform_folders(self):
        self.assertEqual(len(self.findings_of("dicom/a.cpp", "#include <windows.h>\n")), 1)
        self.assertEqual(len(self.findings_of("emulator/a.cpp", "#ifdef _WIN32\n#endif\n")), 1)
        self.assertEqual(self.findings_of("platform/a_windows.cpp", "#include <windows.h>\n"), [])

    def test_allows_the_export_macro_and_nothing_more_beside_the_table(self):
        macro = "#ifdef _WIN32\n#define VESSA_EXPORT __declspec(dllexport)\n#endif\n"
        self.assertEqual(self.findings_of("modules/VessaDCM/a.h", macro), [])
        self.assertEqual(len(self.findings_of("modules/VessaDCM/a.cpp", "#ifdef _WIN32\nint a;\n#endif\n")), 1)


if __name__ == "__main__":
    unittest.main()
