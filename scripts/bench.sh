#!/bin/sh
# Measures the library beside the replay of its own callbacks and beside DCMTK, in one run of interleaved repetitions,
# and prints the medians side by side. Set-up included. Figures of a busy machine are worth nothing.
#
#   scripts/bench.sh [FILTER]                   FILTER: a regular expression over the names, such as decompose/.*explicit
#   scripts/bench.sh --before COMMIT [FILTER]   the library of that commit as well, in turns with today's
set -eu
cd "$(dirname "$0")/.."

before=
if [ "${1:-}" = --before ]; then
  before=$(git rev-parse --verify "$2^{commit}")
  shift 2
fi
filter=${1:-.}
rounds=${VESSA_BENCH_REPETITIONS:-7}

# In a tree, which must have the benchmarks.
build() (
  cd "$1"
  cmake --preset bench --log-level=WARNING >&2
  cmake --build --preset bench --target vessa_bench >&2
)

# measure TREE REPETITIONS REPORT
measure() {
  "$1/build/bench/vessa_bench" --benchmark_filter="$filter" --benchmark_repetitions="$2" \
    --benchmark_enable_random_interleaving=true --benchmark_min_time=0.2 --benchmark_out_format=json \
    --benchmark_out="$3" >/dev/null
}

scripts/setup.sh bench
build .
reports=build/bench/reports
rm -rf "$reports"
mkdir -p "$reports/before"
if [ -z "$before" ]; then
  measure . "$rounds" "$reports/1.json"
else
  tree=build/bench/before/$before
  [ -d "$tree" ] || { mkdir -p "$tree" && git archive "$before" | tar -x -C "$tree"; }
  build "$tree"
  for round in $(seq "$rounds"); do
    measure "$tree" 1 "$reports/before/$round.json"
    measure . 1 "$reports/$round.json"
  done
fi
exec /usr/bin/python3 scripts/bench_table.py "$reports"
