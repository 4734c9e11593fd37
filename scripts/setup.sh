#!/bin/sh
# Installs the Debian 12 packages that a task needs; does nothing when all are there.
#
#   scripts/setup.sh try     build the library and the tool, decompose a sample file
#   scripts/setup.sh test    everything that scripts/test.sh runs (the default)
#   scripts/setup.sh package   what scripts/package.sh needs
#   scripts/setup.sh bench   what scripts/bench.sh needs on top
#   scripts/setup.sh fuzz    what scripts/fuzz.sh needs
#   scripts/setup.sh coverage   what scripts/coverage.sh and scripts/mutants.sh need on top
set -eu

# python3-pydicom brings the sample files. All other packages are compilers, libraries and test peers.
try_packages='git cmake ninja-build g++ ccache zlib1g-dev libcli11-dev libfmt-dev nlohmann-json3-dev liblmdb-dev
  python3-pydicom'
test_packages="$try_packages binutils clang-format clang-tidy dcmtk libgdcm-tools libgmock-dev libgtest-dev googletest
  g++-mingw-w64-x86-64-win32 libz-mingw-w64-dev wine wine64"
package_packages="$test_packages dpkg-dev fakeroot lintian man-db unzip zip zsh"
bench_packages="$try_packages libbenchmark-dev libdcmtk-dev"
fuzz_packages='git cmake ninja-build ccache clang libclang-rt-14-dev zlib1g-dev'
coverage_packages="$test_packages gcovr"

case "${1:-test}" in
  try) packages=$try_packages ;;
  test) packages=$test_packages ;;
  package) packages=$package_packages ;;
  bench) packages=$bench_packages ;;
  fuzz) packages=$fuzz_packages ;;
  coverage) packages=$coverage_packages ;;
  *)
    sed -n '2,9s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac

missing=
for package in $packages; do
  status=$(dpkg-query --show --showformat='${db:Status-Abbrev}' "$package" 2>/dev/null || true)
  case $status in
    ii*) ;;
    *) missing="$missing $package" ;;
  esac
done
[ -n "$missing" ] || exit 0

as_root=
if [ "$(id -u)" != 0 ]; then
  command -v sudo >/dev/null || {
    echo "setup: needs root or sudo to install:$missing" >&2
    exit 1
  }
  as_root='sudo'
fi
echo "setup: installing$missing" >&2
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 update
# shellcheck disable=SC2086  # a list of words
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 install --yes --no-install-recommends $missing >&2
