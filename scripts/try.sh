#!/bin/sh
# Builds the library and the tool, decomposes a real CT image through the loaded library and shows its tree.
#
#   scripts/try.sh [FILE]   FILE: a DICOM file of your own
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh try
samples=/usr/lib/python3/dist-packages/pydicom/data/test_files
file=${1:-$samples/CT_small.dcm}

cmake --preset release -DVESSA_BUILD_TESTS=OFF --log-level=WARNING >&2
cmake --build --preset release --target VessaDCM vessa >&2

echo "build/release/vessa dump $file" >&2
exec build/release/vessa dump "$file"
