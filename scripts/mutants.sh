#!/bin/sh
# Asks whether the tests would notice: breaks one comparison, constant or boundary of the library at a time, in a copy of
# the tree under build/mutants, builds it and runs the fast tests of its folder and of the call-outs.
#
#   scripts/mutants.sh [COUNT [SEED]]     so many mutants (200), chosen by that seed (1)
#
# A mutant that fails to build, or from which the compiler makes the same instructions, counts for none; one that fails a
# test, crashes or hangs is caught. Survivors are printed with their reason from scripts/mutants_survivors.txt. Fails when
# more than 5 % survive, not counting those that do what the original does, which no test could tell apart.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh test
exec python3 scripts/mutants.py "${1:-200}" "${2:-1}"
