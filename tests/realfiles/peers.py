"""What other toolkits say of a DICOM file: DCMTK's listing, DCMTK's and GDCM's complaints."""

import re
import subprocess

ELEMENT = re.compile(r"(?P<indent> *)\((?P<tag>[0-9a-f]{4},[0-9a-f]{4})\) (?P<vr>[A-Za-z?]{2}) (?P<value>.*?) *"
                     r"# *(?P<length>\S+), *\d+ .*", re.DOTALL)
LENGTH = re.compile(r"# *(u/l|\d+), *\d+ [^#]*$")  # at the end of such a line, whatever its value holds
GROUP_LENGTH = re.compile(r" *\([0-9a-f]{4},0000\) UL ")

UNDEFINED = 0xFFFFFFFF
DELIMITATIONS = (0xFFFEE00D, 0xFFFEE0DD)


def _run(*arguments):
    return subprocess.run(list(map(str, arguments)), capture_output=True, check=False)


def _lines(output):
    return output.decode("latin-1").splitlines()


def _complaints(stderr, path):
    """Lines of a standard error, without what names the file, the place in the toolkit or in the file."""
    said = set()
    for line in _lines(stderr):
        line = line.replace(str(path), "FILE").strip()
        if line and not line.startswith("Warning: In ./"):
            said.add(re.sub(r"offset \d+|0x[0-9a-f]+", "PLACE", line))
    return said


def _normal(line):
    """Lengths of sequences and items, and whether they are defined, are the writer's choice."""
    line = re.sub(r"with (explicit|undefined) length", "of", line)
    line = line.replace(" for re-encoding)", ")").replace(" for re-encod.)", ")")
    if re.match(r" *\(fffe,e0.. ?\) na|.*\) (SQ|na) \((Sequence|Item)", line):
        line = re.sub(r" *# *\S+,", " #", line)
    return re.sub(r" +#", " #", line)


class Dump:
    """`lines` of the data set, `complaints` of the reader, `opened`: whether it could read the file at all."""

    def __init__(self, path):
        process = _run("dcmdump", "+L", path)
        self.opened = process.returncode == 0
        self.complaints = _complaints(process.stderr, path)
        lines = _lines(process.stdout)
        start = next((at for at, line in enumerate(lines) if line == "# Dicom-Data-Set"), 0)
        self.lines = [_normal(line) for line in lines[start:]
                      if line and not line.startswith("# ") and not GROUP_LENGTH.match(line)]


def structure(path):
    """Triples of depth, tag and length in the order of DCMTK's listing: elements, items, fragments. None where it refuses
    the file."""
    process = _run("dcmdump", "-q", "+Qn", path)
    if process.returncode != 0:
        return None
    data_set = process.stdout.decode("latin-1").split("# Dicom-Data-Set\n")[-1]
    found = []
    for line in data_set.split("\n"):
        element, length = ELEMENT.fullmatch(line), LENGTH.search(line)
        if element and length:
            tag = int(element["tag"].replace(",", ""), 16)
            if tag not in DELIMITATIONS:
                found.append((len(element["indent"]) // 2, tag, UNDEFINED if length[1] == "u/l" else int(length[1])))
    return found


def differences(first, second):
    """Pairs of the lines of two dumps that differ; a missing line is an empty one."""
    lines = max(len(first.lines), len(second.lines))
    padded = [dump.lines + [""] * (lines - len(dump.lines)) for dump in (first, second)]
    return [pair for pair in zip(*padded) if pair[0] != pair[1]]


def differ_in_vr_alone(first, second):
    """The same element with as many bytes, printed by another VR."""
    ours, theirs = ELEMENT.fullmatch(first), ELEMENT.fullmatch(second)
    if not ours or not theirs or ours["vr"] == theirs["vr"]:
        return False
    return all(ours[name] == theirs[name] for name in ("indent", "tag", "length"))


def gdcm_complaints(path):
    """What GDCM says of a file; None when it does not read it."""
    process = _run("gdcmdump", "-W", "-E", path)
    return _complaints(process.stderr, path) if process.returncode == 0 else None


def is_dicom_file(path):
    return _run("dcmftest", path).stdout.startswith(b"yes")
