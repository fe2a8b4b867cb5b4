#!/usr/bin/env bash
# run_fuzzers.sh - runs every fuzz harness in turn for a while; fails on any finding.
#
#   tests/fuzz/run_fuzzers.sh BUILD_DIR [SECONDS_EACH] [HARNESS...]
#
# BUILD_DIR is a build configured with -DCMAKE_CXX_COMPILER=clang++ -DQUILT_FUZZ=ON and built
# (target `fuzzers`). Each harness runs niced, one at a time, on its corpus in
# BUILD_DIR/fuzz/corpus/<Harness> (kept between runs, so it keeps what it learnt), seeded by
# make_corpora.py. A crash, a sanitizer report, a leak, an input slower than 10 s or a run
# over 2 GB ends that harness; the input is kept in BUILD_DIR/fuzz/findings and the script
# exits 1 after the remaining harnesses ran. One line per harness tells executions and coverage.
set -u

build=${1:?usage: run_fuzzers.sh BUILD_DIR [SECONDS_EACH] [HARNESS...]}
seconds=${2:-60}
shift $(($# >= 2 ? 2 : 1))
harnesses=("$@")
[ ${#harnesses[@]} -eq 0 ] && harnesses=(LexerFuzzer CsvFuzzer DictionaryFuzzer CommandFuzzer)
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$build/fuzz
mkdir -p "$work/seeds" "$work/findings" "$work/logs"
python3 "$source_dir/tests/fuzz/make_corpora.py" "$source_dir" "$work/seeds" >/dev/null || exit 2

status=0
for harness in "${harnesses[@]}"; do
  binary=$build/tests/fuzz/$harness
  if [ ! -x "$binary" ]; then
    echo "fuzz: $harness: not built ($binary); build the target 'fuzzers' first" >&2
    status=2
    continue
  fi
  corpus=$work/corpus/$harness
  log=$work/logs/$harness.log
  mkdir -p "$corpus"
  nice -n 10 "$binary" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=16384 \
    -dict="$work/seeds/quilt.dict" -artifact_prefix="$work/findings/$harness-" -print_final_stats=1 \
    "$corpus" "$work/seeds/$harness" >"$log" 2>&1
  result=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  coverage=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -1)
  units=$(find "$corpus" -type f | wc -l)
  echo "fuzz: $harness: ${seconds} s, ${executions:-?} executions, ${coverage:-no coverage line}, corpus $units"
  if [ $result -ne 0 ]; then
    status=1
    echo "fuzz: $harness FOUND A PROBLEM (exit $result); the input is in $work/findings:" >&2
    grep -E '^(==[0-9]+==|SUMMARY|.*runtime error|.*internal error|.*terminate|artifact_prefix|Test unit written)' "$log" | head -20 >&2
  fi
done
exit $status
