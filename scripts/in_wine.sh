#!/bin/sh
# Runs a command that starts Windows programs, in a Windows system of our own without a display: nobody's is touched,
# and none need exist.
#
#   scripts/in_wine.sh ctest --preset windows
set -eu
cd "$(dirname "$0")/.."
export WINEPREFIX="$PWD/build/wine" WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
unset DISPLAY

# All Windows processes have a page of shared data at one address. Where addresses are random, the heap of one process
# in some thousands happens to lie there, and that process does not start.
if setarch -R true 2>/dev/null; then fixed='setarch -R'; else fixed=; fi

# The server stays until the end: one that is about to leave turns away those that come just then.
mkdir -p "$WINEPREFIX"
wineserver --kill || true  # one that an interrupted run has left
wineserver --persistent
trap 'wineserver --kill' EXIT
trap 'exit 1' HUP INT TERM
# The system's own processes live as long as the server: started here, they do not hold a test's output open.
$fixed wineboot --init </dev/null >/dev/null 2>&1
$fixed "$@"
