#!/usr/bin/python3
"""arrows.py ROOT: every #include points down the architecture, and only the platform folders know an operating system.

Prints one line a finding and exits with 1 when there is one.
"""

import pathlib
import re
import sys

LIBRARY = ["platform", "dicom", "host", "stream", "decompose", "vdoc", "compose", "modules"]

# Which folders the sources of a folder may include, besides their own. tests, bench and fuzz may include all.
MAY_INCLUDE = {
    "platform": set(),
    "dicom": {"platform"},
    "host": {"platform", "dicom"},
    "stream": {"host", "platform", "dicom"},
    "decompose": {"stream", "host", "platform", "dicom"},
    "vdoc": {"decompose", "stream", "host", "platform", "dicom"},
    "compose": {"decompose", "stream", "host", "platform", "dicom"},
    "modules": {"vdoc", "compose", "decompose", "stream", "host", "platform", "dicom"},
    "emulator": set(),
}
# The stand-in host knows the library's binary interface and nothing else of it.
EMULATOR_MAY_INCLUDE = {"host/binary_interface.h"}

# Words that name one system: allowed under the platform folders, and where the one export is marked.
SYSTEM_WORD = re.compile(
    r"\b_WIN32\b|\b_WIN64\b|\b__linux__\b|\b__unix__\b|\b_MSC_VER\b|\b__MINGW\w*"
    r"|^\s*#\s*include\s*<(windows\.h|unistd\.h|dlfcn\.h|syslog\.h|iconv\.h|fcntl\.h|io\.h|signal\.h|csignal|poll\.h"
    r"|winternl\.h|winsock2?\.h|process\.h|termios\.h|sys/[^>]*)>",
    re.MULTILINE,
)
SYSTEM_FOLDERS = ("platform/", "emulator/platform/", "tests/", "bench/", "fuzz/")
EXPORT_MACRO_FOLDER = "modules/VessaDCM/"
EXPORT_MACRO = re.compile(r"#\s*(if|ifdef|elif)\b.*_WIN32.*\n.*__declspec\(dllexport\).*")

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def sources(root):
    for folder in [*LIBRARY, "emulator", "tests", "bench", "fuzz"]:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                yield path.relative_to(root).as_posix(), path.read_text(encoding="utf-8")


def wrong_includes(name, text):
    folder = name.split("/")[0]
    if folder not in MAY_INCLUDE:
        return
    for included in INCLUDE.findall(text):
        target = included.split("/")[0]
        if target == folder or target in MAY_INCLUDE[folder]:
            continue
        if folder == "emulator" and included in EMULATOR_MAY_INCLUDE:
            continue
        yield f"{name}: includes {included}, which is not below {folder}/"


def system_words(name, text):
    if name.startswith(SYSTEM_FOLDERS):
        return
    if name.startswith(EXPORT_MACRO_FOLDER):
        text = EXPORT_MACRO.sub("", text)
    for word in SYSTEM_WORD.finditer(text):
        yield f"{name}: names an operating system: {word.group(0).strip()}"


def findings(root):
    for name, text in sources(root):
        yield from wrong_includes(name, text)
        yield from system_words(name, text)


def main():
    found = list(findings(pathlib.Path(sys.argv[1])))
    print("\n".join(found) or "all includes point down")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
