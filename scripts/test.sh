#!/bin/sh
# Builds and runs every test, and the checks of the formatter and the linter. Set-up included.
#
#   scripts/test.sh                     all stages
#   scripts/test.sh release windows     these alone: format, release, sanitize, windows, tidy, fuzz
#
# All stages run, also after one has failed; the table at the end names each with its outcome and time.
# Everything that is made lies under build/: delete it for a cold start.
set -u
cd "$(dirname "$0")/.." || exit 1
scripts/setup.sh test || exit 1

jobs=$(nproc)
table=build/test-stages.txt
mkdir -p build
: >"$table"
failed=0
cases_passed=0
cases_failed=0

# stage NAME COMMAND...: runs the command, notes outcome and time.
stage() {
  name=$1
  shift
  printf '\n=== %s\n' "$name"
  started=$(date +%s)
  if "$@"; then outcome=passed; else outcome=FAILED failed=1; fi
  printf '%-18s %s %6d s\n' "$name" "$outcome" $(($(date +%s) - started)) >>"$table"
  [ $outcome = passed ]
}

check_format() {
  git ls-files -z '*.h' '*.cpp' | xargs -0 --no-run-if-empty clang-format --dry-run -Werror
}

build() {
  cmake --preset "$1" --log-level=WARNING -DVESSA_BUILD_TESTS=ON &&
    cmake --build --preset "$1" -j "$jobs"
}

# run_tests PRESET [LAUNCHER]: runs the tests of one preset and counts their cases: what each program reported, in
# GoogleTest's words or Python's.
run_tests() {
  log=build/$1/Testing/Temporary/LastTest.log
  rm -f "$log"
  ${2:-} ctest --preset "$1" -j "$jobs"
  result=$?
  cases_passed=$((cases_passed + $(grep -cE '^\[       OK \]| \.\.\. ok$' "$log")))
  cases_failed=$((cases_failed + $(grep -cE '^\[  FAILED  \] .* ms\)|^(FAIL|ERROR): ' "$log")))
  return "$result"
}

build_and_test() {
  stage "$1: build" build "$1" && stage "$1: tests" run_tests "$@"
}

tidy() {
  cmake --preset tidy --log-level=WARNING && cmake --build --preset tidy -j "$jobs" -- -k 0
}

[ $# -gt 0 ] || set -- format release sanitize windows tidy fuzz
for wanted; do
  case $wanted in
    format) stage format check_format ;;
    release | sanitize) build_and_test "$wanted" ;;
    windows) build_and_test windows scripts/in_wine.sh ;;
    tidy) stage tidy tidy ;;
    fuzz) stage fuzz scripts/fuzz.sh 20s ;;
    *)
      echo "test: unknown stage '$wanted'" >&2
      exit 2
      ;;
  esac
done

printf '\n'
cat "$table"
printf '%d test cases passed, %d failed\n' "$cases_passed" "$cases_failed"
exit $failed
