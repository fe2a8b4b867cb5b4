#!/bin/sh
# run_bench.sh - times the three benchmark tabulations of a 5-million-case sample survey
# through the engine, loading included, with cases per second and peak memory; then pandas
# on the same file doing the same tabulations, the ratio of the two, and a check that both
# give the same numbers for a few cells. Last, the per-case engine benchmark on the file.
# Usage: bench/run_bench.sh [cases]   (default 5000000; run from anywhere)
# pandas is optional: Debian's python3-pandas, run with /usr/bin/python3.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
cases=${1:-5000000}
work=${TMPDIR:-/tmp}/quilt-bench
build="$root/build-bench"
prefix="$work/survey$cases"
mkdir -p "$work"

if [ ! -f "$prefix.csv" ] || [ ! -f "$prefix.dict.json" ]; then
  echo "writing $cases cases to $prefix.csv"
  python3 "$root/examples/make_survey.py" --cases "$cases" --out "$prefix"
fi

# Only the engine's own libraries are built, as a Release build: the programs need no
# more, and the rest of the tree may be half-way through other work.
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUILT_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build" --target quilt_host_engine quilt_aggregator quilt_host_data quilt_host_common -j2 >/dev/null
mkdir -p "$build/bench"
libs="$build/src/host/engine/libquilt_host_engine.a $build/src/aggregator/libquilt_aggregator.a
      $build/src/host/data/libquilt_host_data.a $build/src/host/libquilt_host_common.a"
for program in EngineBenchmark EngineTabulate; do
  # shellcheck disable=SC2086
  c++ -std=c++20 -O2 -DNDEBUG -I"$root/src" "$root/bench/$program.cpp" $libs -lbenchmark -lpthread \
    -o "$build/bench/$program"
done

echo "== machine: $(nproc) cores, load average $(cut -d' ' -f1-3 /proc/loadavg)"
peak() { sed -n 's/.*Maximum resident set size (kbytes): //p' "$1" | awk '{printf "%.0f MB", $1 / 1024}'; }

echo "== Quilt engine: load and tabulate $prefix.csv"
/usr/bin/time -v "$build/bench/EngineTabulate" "$prefix" >"$work/quilt.txt" 2>"$work/quilt-time.txt"
grep -v '^check ' "$work/quilt.txt"
echo "peak memory: $(peak "$work/quilt-time.txt")"

if /usr/bin/python3 -c "import pandas" 2>/dev/null; then
  echo "== pandas $(/usr/bin/python3 -c 'import pandas; print(pandas.__version__)'): the same tables"
  /usr/bin/time -v /usr/bin/python3 - "$prefix.csv" >"$work/pandas.txt" 2>"$work/pandas-time.txt" <<'PY'
import sys, time
import pandas as pd

# Times are processor seconds, the wall clock in brackets, as the Quilt program gives them.
start, cpu = time.perf_counter(), time.process_time()
d = pd.read_csv(sys.argv[1])
load = time.process_time() - cpu
print(f"load: {len(d)} cases in {load:.2f} s (wall {time.perf_counter() - start:.2f} s)")
media = ["tv", "radio", "web", "print", "social"]

def table1():
    # (region > agegrp) + wave BY gender [COUNT COLPCT.COUNT]: the column base of a nested
    # row is its region's panel.
    nested = d.groupby(["region", "agegrp", "gender"]).size()
    nested_pct = nested / nested.groupby(level=["region", "gender"]).transform("sum") * 100
    stacked = d.groupby(["wave", "gender"]).size()
    stacked_pct = stacked / stacked.groupby(level="gender").transform("sum") * 100
    return nested, nested_pct, stacked, stacked_pct

def table2():
    return d.groupby(["region", "gender"])["score"].agg(["mean", "std", "median"])

def table3():
    # $media BY agegrp [COUNT COLPCT.COUNT]: the base is the cases with any medium.
    used = d[media].eq(1)
    counts = used.groupby(d["agegrp"]).sum()
    base = used.any(axis=1).groupby(d["agegrp"]).sum()
    return counts, counts.div(base, axis=0) * 100

names = {1: "(region > agegrp) + wave BY gender, COUNT COLPCT", 2: "region BY gender, score MEAN STDDEV MEDIAN",
         3: "$media BY agegrp, COUNT COLPCT"}
results = {}
total = 0.0
for number, function in ((1, table1), (2, table2), (3, table3)):
    start, cpu = time.perf_counter(), time.process_time()
    results[number] = function()
    seconds = time.process_time() - cpu
    total += seconds
    print(f"table {number} ({names[number]}): {seconds:.3f} s, {len(d) / seconds / 1e6:.1f} M cases/s"
          f" (wall {time.perf_counter() - start:.3f} s)")
print(f"all three: {total:.3f} s, {len(d) / total / 1e6:.1f} M cases/s")
print(f"total: load and all three: {load + total:.2f} s")
nested, nested_pct, stacked, stacked_pct = results[1]
print(f"check t1_count_r1_a1_g1 {nested[(1, 1, 1)]:.6f}")
print(f"check t1_colpct_r1_a1_g1 {nested_pct[(1, 1, 1)]:.6f}")
print(f"check t1_count_w1_g2 {stacked[(1, 2)]:.6f}")
print(f"check t1_colpct_w1_g2 {stacked_pct[(1, 2)]:.6f}")
cell = results[2].loc[(1, 1)]
print(f"check t2_mean_r1_g1 {cell['mean']:.6f}")
print(f"check t2_stddev_r1_g1 {cell['std']:.6f}")
print(f"check t2_median_r1_g1 {cell['median']:.6f}")
counts, percents = results[3]
print(f"check t3_count_tv_a1 {counts.loc[1, 'tv']:.6f}")
print(f"check t3_colpct_tv_a1 {percents.loc[1, 'tv']:.6f}")
PY
  grep -v '^check ' "$work/pandas.txt"
  echo "peak memory: $(peak "$work/pandas-time.txt")"

  echo "== comparison"
  field() { sed -n "s/^$2: .* in \([0-9.]*\) s.*/\1/p; s/^$2: \([0-9.]*\) s.*/\1/p" "$1" | head -1; }
  quilt_load=$(field "$work/quilt.txt" load)
  pandas_load=$(field "$work/pandas.txt" load)
  quilt_pass=$(field "$work/quilt.txt" "all three in one pass")
  pandas_pass=$(field "$work/pandas.txt" "all three")
  awk -v ql="$quilt_load" -v pl="$pandas_load" -v qp="$quilt_pass" -v pp="$pandas_pass" 'BEGIN {
    printf "tabulation only: pandas %.3f s / Quilt %.3f s = %.1f times\n", pp, qp, pp / qp
    printf "loading included: pandas %.2f s / Quilt %.2f s = %.1f times\n", pl + pp, ql + qp, (pl + pp) / (ql + qp)
  }'
  grep '^check ' "$work/quilt.txt" | sort >"$work/quilt-checks.txt"
  grep '^check ' "$work/pandas.txt" | sort >"$work/pandas-checks.txt"
  join -j 2 "$work/quilt-checks.txt" "$work/pandas-checks.txt" | awk '
    { diff = $3 - $5; if (diff < 0) diff = -diff; scale = $5 < 0 ? -$5 : $5; if (scale < 1) scale = 1
      status = diff <= 1e-6 * scale ? "same" : "DIFFERENT"; if (status != "same") bad = 1
      printf "  %-24s Quilt %16.6f  pandas %16.6f  %s\n", $1, $3, $5, status }
    END { exit bad }' || echo "the two disagree on some cells"
else
  echo "== pandas is not installed (apt-get install python3-pandas): no comparison"
fi

echo "== per-case engine benchmark (Google Benchmark) on the same file"
QUILT_BENCH_CSV="$prefix.csv" "$build/bench/EngineBenchmark" --benchmark_min_time=0.01 2>/dev/null
