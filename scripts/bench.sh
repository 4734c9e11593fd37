#!/bin/sh
# Measures the library beside the replay of its own callbacks and beside DCMTK, in one run of interleaved repetitions,
# and prints the medians side by side. Set-up included. Figures of a busy machine are worth nothing.
#
#   scripts/bench.sh [FILTER]   FILTER: a regular expression over the names, such as decompose/.*explicit
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh bench
cmake --preset bench --log-level=WARNING >&2
cmake --build --preset bench --target vessa_bench >&2

report=build/bench/report.json
build/bench/vessa_bench --benchmark_filter="${1:-.}" --benchmark_repetitions="${VESSA_BENCH_REPETITIONS:-7}" \
  --benchmark_enable_random_interleaving=true --benchmark_min_time=0.2 --benchmark_out_format=json \
  --benchmark_out="$report" >/dev/null
exec /usr/bin/python3 scripts/bench_table.py "$report"
