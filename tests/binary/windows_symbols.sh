#!/bin/sh
# windows_symbols.sh DLL: the DLL exports GetZFTable and nothing else, and imports from the system's own DLLs alone.
set -eu
library=$1
headers=$(x86_64-w64-mingw32-objdump -p "$library")

# Rows of the name table: "	[   0] GetZFTable"; an empty line ends it.
exports=$(echo "$headers" | awk '/^$/ {rows = 0} rows {print $NF} /^\[Ordinal\/Name Pointer\] Table/ {rows = 1}')
if [ "$exports" != GetZFTable ]; then
  printf '%s should export GetZFTable alone; it exports:\n%s\n' "$library" "$exports"
  exit 1
fi

imports=$(echo "$headers" | awk '/DLL Name:/ {print $3}')
[ -n "$imports" ] || {
  echo "$library: no list of imported DLLs found"
  exit 1
}
foreign=$(echo "$imports" | grep -vixE 'kernel32\.dll|msvcrt\.dll|user32\.dll|advapi32\.dll|ucrtbase\.dll|api-ms-win-crt-.*\.dll' || true)
if [ -n "$foreign" ]; then
  printf '%s should import from the system alone; it imports also from:\n%s\n' "$library" "$foreign"
  exit 1
fi
