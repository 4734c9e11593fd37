"""The sample files of Debian's python3-pydicom, opened as a host would open them."""

import gzip
import pathlib
import zlib

import pydicom

from independent_reader import meta_length

ROOT = pathlib.Path(pydicom.__file__).parent / "data"
FOLDERS = ["test_files", "charset_files"]

IMPLICIT = "1.2.840.10008.1.2"
PAPYRUS = "1.2.840.10008.1.20"
EXPLICIT = "1.2.840.10008.1.2.1"
DEFLATED = "1.2.840.10008.1.2.1.99"
BIG_ENDIAN = "1.2.840.10008.1.2.2"
EXPLICIT_LITTLE_ENDIAN = (EXPLICIT, DEFLATED)
IMPLICIT_LITTLE_ENDIAN = (IMPLICIT, PAPYRUS)

# Text about the samples.
NO_SAMPLES = {
    "charset_files/FileInfo.txt",
    "test_files/README.txt",
    "test_files/dicomdirtests/README.txt",
    "test_files/dicomdirtests/TINY_ALPHA/README",
    "test_files/rtplan.dump",
    "test_files/rtstruct.dump",
    "test_files/test1.json",
    "test_files/test_PN.json",
}

# Data sets without preamble and meta group: whoever opens them has to know where they begin and what they are.
BARE = {
    "test_files/ExplVR_BigEndNoMeta.dcm": (0, BIG_ENDIAN),
    "test_files/ExplVR_LitEndNoMeta.dcm": (0, EXPLICIT),
    "test_files/no_meta.dcm": (1, EXPLICIT),  # a stray blank comes first
    "test_files/rtstruct.dcm": (0, IMPLICIT),
}


class Sample:
    """A data set inside the file at `path`: from byte `offset` to the end, in transfer syntax `syntax`.

    `meta`: bytes of the meta group in front of it, 0 for none. A deflated data set is inflated into a file of its own.
    """

    def __init__(self, name, path, offset, syntax, meta):
        self.name = name
        self.path = path
        self.offset = offset
        self.syntax = syntax
        self.meta = meta

    @property
    def data(self):
        return self.path.read_bytes()[self.offset :]

    @property
    def implicit(self):
        return self.syntax in IMPLICIT_LITTLE_ENDIAN


def names():
    """All samples, by path below ROOT."""
    found = [p.relative_to(ROOT).as_posix() for f in FOLDERS for p in sorted((ROOT / f).rglob("*")) if p.is_file()]
    return [name for name in found if name not in NO_SAMPLES]


def open_sample(name, path, scratch):
    """The data set of one file; `scratch` takes what has to be unpacked first."""
    if path.suffix == ".gz":
        unpacked = scratch / path.stem
        unpacked.write_bytes(gzip.decompress(path.read_bytes()))
        path = unpacked
    data = path.read_bytes()
    if data[128:132] != b"DICM":
        offset, syntax = BARE[name]
        return Sample(name, path, offset, syntax, 0)
    meta = meta_length(data[132:])
    syntax = pydicom.filereader.read_file_meta_info(str(path)).get("TransferSyntaxUID", "")
    return Sample(name, path, 132 + meta, str(syntax), meta)


def inflated(sample, scratch):
    """The sample with its deflated data set (raw deflate, PS3.5 section A.5) unpacked, as the host does."""
    data = zlib.decompress(sample.data, wbits=-zlib.MAX_WBITS)
    path = scratch / (sample.path.name + ".inflated")
    path.write_bytes(data)
    return Sample(sample.name, path, 0, sample.syntax, 0)
