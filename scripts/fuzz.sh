#!/bin/sh
# Fuzzes the library: builds the targets of fuzz/, makes their seeds and lets each run, as many side by side as there are
# cores. What they learn is kept in build/fuzz/corpus, and the next run begins by replaying it.
#
#   scripts/fuzz.sh [MINUTES [TARGET...]]     each target, or those named, so long (1)
#   scripts/fuzz.sh 20s decompose query       the same in seconds
#
# A finding ends its target: the input lies in build/fuzz/findings, the report in build/fuzz/logs. One input again:
# build/fuzz/fuzz_TARGET FILE
set -u
cd "$(dirname "$0")/.." || exit 1

folder=$PWD/build/fuzz
all_targets='call_arguments compose decompose deflate hostile_host inflate next_subscript property_reference query
  round_trip value_list'

# The longest input: enough for a second chunk of a value, where there are values.
longest() {
  case $1 in
    value_list | call_arguments | property_reference | compose) echo 20000 ;;
    *) echo 40000 ;;
  esac
}

# The second of processor time that an input may take is measured by the target itself; -timeout, of the wall clock,
# ends what never returns. On inputs of these sizes a single piece of memory of 1 MiB is a finding.
fuzz() {
  mkdir -p "$folder/corpus/$1" "$folder/scratch/$1"
  TMPDIR=$folder/scratch/$1 ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1 \
    UBSAN_OPTIONS=print_stacktrace=1 "$folder/fuzz_$1" \
    -max_total_time="$2" -max_len="$(longest "$1")" -timeout=30 -malloc_limit_mb=1 -rss_limit_mb=2048 \
    -dict=fuzz/delimiters.dict -use_value_profile=1 -print_final_stats=1 \
    -artifact_prefix="$folder/findings/$1-" "$folder/corpus/$1" "$folder/seeds/$1" >"$folder/logs/$1.txt" 2>&1
}

statistic() {
  sed -n "s/^stat::$1: *//p" "$folder/logs/$2.txt"
}

# One line a target: how much it ran, or what it found.
fuzz_and_report() {
  if fuzz "$1" "$2"; then
    printf '%-20s %10s runs %7s a second\n' "$1" "$(statistic number_of_executed_units "$1")" \
      "$(statistic average_exec_per_sec "$1")"
  else
    printf '%-20s FINDING %s\n' "$1" "$(grep -m1 -E 'FINDING|ERROR|runtime error' "$folder/logs/$1.txt")"
    return 1
  fi
}

if [ "${1:-}" = --one ]; then
  fuzz_and_report "$3" "$2"
  exit
fi

duration=${1:-1}
[ $# -eq 0 ] || shift
case $duration in
  *s) seconds=${duration%s} ;;
  *) seconds=$((duration * 60)) ;;
esac

scripts/setup.sh fuzz || exit 1
cmake --preset fuzz --log-level=WARNING >/dev/null && cmake --build --preset fuzz || exit 1
mkdir -p "$folder/findings" "$folder/logs"
"$folder/fuzz_make_seeds" "$folder/seeds" || exit 1

# shellcheck disable=SC2086  # a list of words
printf '%s\n' "${@:-$all_targets}" | xargs -n 1 | xargs -P "$(nproc)" -n 1 scripts/fuzz.sh --one "$seconds"
