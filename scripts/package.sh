#!/bin/sh
# Makes the packages of the last commit, from a copy of it, in build/packages:
#
#   scripts/package.sh          the Windows zip, the .deb packages, the Linux .tar.gz
#   scripts/package.sh check    the same, and tests them: unpacked, installed, run, and made again byte for byte
#
# What is not committed is in none of them.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh package

jobs=$(nproc)
commit=$(git rev-parse --short=12 HEAD)
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH CCACHE_NOHASHDIR=1 TZ=UTC LC_ALL=C

# CPack packs files in the order in which the file system happens to list them. In OUT, packs both archives again.
put_in_order() {
  linux=$(basename "$1"/*.tar.gz .tar.gz) windows=$(basename "$1"/*.zip .zip)
  rm "$1/$linux.tar.gz" "$1/$windows.zip"
  tar --create --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$SOURCE_DATE_EPOCH" \
    --directory="$1/_CPack_Packages/Linux/TGZ" "$linux" | gzip --best --no-name >"$1/$linux.tar.gz"
  (
    cd "$1/_CPack_Packages/win64/ZIP"
    find "$windows" -type f | sort | zip -q -X -@ "$1/$windows.zip"
  )
  rm -rf "$1/_CPack_Packages"
}

# make_packages WORK OUT: builds a copy of the commit in WORK, for both systems, and puts the packages into OUT.
make_packages() {
  work=$1 out=$(realpath -m "$2")
  rm -rf "$work" "$out"
  mkdir -p "$work" "$out"
  git archive HEAD | tar -x -C "$work"
  for preset in release windows; do
    (
      cd "$work"
      cmake --preset $preset --log-level=WARNING -DVESSA_BUILD_TESTS=OFF -DVESSA_PACKAGING=ON -DVESSA_COMMIT="$commit"
      cmake --build --preset $preset -j "$jobs"
      cpack --config build/$preset/CPackConfig.cmake -B "$out"
    ) >"$work.$preset.log" 2>&1 || {
      tail -30 "$work.$preset.log" >&2
      exit 1
    }
  done
  put_in_order "$out"
  (cd "$out" && sha256sum -- *.deb *.tar.gz *.zip >SHA256SUMS)
}

make_packages build/package/source build/packages
cat build/packages/SHA256SUMS
[ "${1:-}" = check ] || exit 0

# Compiled anew: what the cache holds are the first build's bytes.
(
  export CCACHE_DISABLE=1
  make_packages build/package/another-place/copy build/package/again
)
exec scripts/in_wine.sh /usr/bin/python3 -B tests/packages/packages_test.py build/packages build/package/again "$commit"
