#!/bin/sh
# linux_symbols.sh LIBRARY [any-runtime]: the library exports GetZFTable and nothing else, and needs only what every
# Linux system has. `any-runtime` leaves out the second check (sanitizers bring their runtimes).
set -eu
library=$1

exports=$(nm --dynamic --defined-only --format=posix "$library" | cut -d ' ' -f 1)
if [ "$exports" != GetZFTable ]; then
  printf '%s should export GetZFTable alone; it exports:\n%s\n' "$library" "$exports"
  exit 1
fi
[ "${2:-}" != any-runtime ] || exit 0

needed=$(objdump -p "$library" | awk '$1 == "NEEDED" {print $2}')
[ -n "$needed" ] || {
  echo "$library: no list of needed libraries found"
  exit 1
}
foreign=$(echo "$needed" | grep -vxE 'libc\.so\.6|libm\.so\.6|libz\.so\.1|ld-linux-x86-64\.so\.2' || true)
if [ -n "$foreign" ]; then
  printf '%s should need the C library and zlib alone; it needs also:\n%s\n' "$library" "$foreign"
  exit 1
fi
