#!/bin/sh
# run_bench.sh - times tabulations of a 5-million-case sample survey through the engine
# and reports cases per second and peak memory.
# Usage: bench/run_bench.sh [cases]   (default 5000000; run from anywhere)
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
cases=${1:-5000000}
work=${TMPDIR:-/tmp}/quilt-bench
build="$root/build-bench"
mkdir -p "$work"

if [ ! -f "$work/survey$cases.csv" ]; then
  echo "writing $cases cases to $work/survey$cases.csv"
  python3 "$root/examples/make_survey.py" --cases "$cases" --out "$work/survey$cases"
fi

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILT_BUILD_BENCHMARKS=ON >/dev/null
if ! cmake --build "$build" --target EngineBenchmark -j2 >/dev/null 2>&1; then
  # Other subsystems may not build yet: link the benchmark against the engine's own
  # libraries instead of the whole procedure.
  cmake --build "$build" --target quilt_host_engine -j2 >/dev/null
  mkdir -p "$build/bench"
  c++ -std=c++20 -O2 -DNDEBUG -I"$root/src" "$root/bench/EngineBenchmark.cpp" \
    "$build/src/host/engine/libquilt_host_engine.a" "$build/src/aggregator/libquilt_aggregator.a" \
    "$build/src/host/data/libquilt_host_data.a" "$build/src/host/libquilt_host_common.a" \
    -lbenchmark -lpthread -o "$build/bench/EngineBenchmark"
fi

# Each benchmark iteration is one full data pass; items_per_second is cases per second.
QUILT_BENCH_CSV="$work/survey$cases.csv" /usr/bin/time -v "$build/bench/EngineBenchmark" \
  --benchmark_min_time=0.01 2>"$work/time.txt"
grep -E "Maximum resident set size|Elapsed" "$work/time.txt"

if python3 -c "import pandas" 2>/dev/null; then
  echo "pandas crosstab of the same table, for comparison:"
  python3 - "$work/survey$cases.csv" <<'PY'
import sys, time
import pandas as pd
data = pd.read_csv(sys.argv[1], usecols=["region", "agegrp", "gender"])
start = time.time()
table = pd.crosstab([data.region, data.agegrp], data.gender)
print(f"  {len(data) / (time.time() - start) / 1e6:.1f} M cases/s (load excluded)")
PY
fi
