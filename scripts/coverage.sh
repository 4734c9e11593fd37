#!/bin/sh
# Counts the branches of the library that its unit tests and the tests of its call-outs take.
#
#   scripts/coverage.sh [PERCENT]     fails when fewer than that (95) are taken
#
# Prints each folder, the total, and the lines with branches that no test takes: those with a reason in
# scripts/coverage_exceptions.txt, and those without. Branches that only the compiler makes, for exceptions that pass
# through, do not count.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh coverage

folders='platform dicom host stream decompose vdoc compose modules'
tests=callouts_test
filters=
for folder in $folders; do
  tests="$tests ${folder}_test"
  filters="$filters --filter $folder/"
done

cmake --preset coverage --log-level=WARNING
# shellcheck disable=SC2086  # lists of words
cmake --build --preset coverage -j "$(nproc)" --target $tests
find build/coverage -name '*.gcda' -delete
for test in $tests; do
  echo "$test" >&2
  "build/coverage/$test" --gtest_brief=1 >build/coverage/$test.txt || {
    tail -20 "build/coverage/$test.txt" >&2
    exit 1
  }
done
# shellcheck disable=SC2086
gcovr --root . --object-directory build/coverage $filters --exclude-throw-branches --exclude-unreachable-branches \
  --json build/coverage/coverage.json build/coverage
exec python3 scripts/coverage_report.py build/coverage/coverage.json scripts/coverage_exceptions.txt "${1:-95}"
