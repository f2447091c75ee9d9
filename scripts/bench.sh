#!/usr/bin/env bash
# Builds an optimised program and measures it: the benchmarks of bench/ (the decimal inversion,
# OLS, SUR and FIML, the response standard errors, each at three sizes of model), then the
# whole demo road as one headless process, several times, on a fresh work folder each time.
#   scripts/bench.sh [BENCHMARK-FILTER]   e.g. scripts/bench.sh 'Sur|Fiml'
#   LORVANE_DEMO_RUNS=N                   timed runs of the demo road (default 11)
# The figures of docs/PERFORMANCE.md come from this script.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
build=build/bench
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DLORVANE_BENCH=ON -DLORVANE_GUI=ON >/dev/null
cmake --build "$build" -j "$jobs" --target lorvane_bench VAR lorvane-import

"$build"/bench/lorvane_bench --benchmark_filter="${1:-.}"

runs=${LORVANE_DEMO_RUNS:-11}
work=$PWD/$build/demo-road
times=()
for ((run = 0; run <= runs; run++)); do
    rm -rf "$work"
    "$build"/app/import/lorvane-import examples/e1.csv "$work" >/dev/null
    start=$(date +%s%N)
    QT_QPA_PLATFORM=offscreen "$build"/app/module/VAR --script examples/demo.var "$work" >/dev/null
    finish=$(date +%s%N)
    # The first run warms the caches and is not counted.
    ((run == 0)) || times+=($(((finish - start) / 1000000)))
done
sorted=($(printf '%s\n' "${times[@]}" | sort -n))
echo
echo "demo road, one headless process (${runs} runs): wall ms min ${sorted[0]}," \
    "median ${sorted[$((runs / 2))]}, max ${sorted[$((runs - 1))]}"
