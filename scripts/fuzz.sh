#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang (AddressSanitizer and UndefinedBehaviorSanitizer
# on) in build/fuzz and runs each for a bounded time on a copy of its seed corpus.
#   scripts/fuzz.sh [TARGET...]      all targets when none is named
#   LORVANE_FUZZ_BUDGET=N            seconds for the whole run, shared equally among the targets
#                                    (default 180, so that a new target does not lengthen CI)
#   LORVANE_FUZZ_SECONDS=N           seconds for each target instead of a share of the budget
# Fails when a target crashes, hangs or reports a sanitizer error. The input that did it is kept
# in build/fuzz/findings/TARGET/ (replay: build/fuzz/fuzz/fuzz_TARGET FILE); once the fault is
# fixed, add it to fuzz/corpus/TARGET/ so that every later run replays it.
set -euo pipefail
cd "$(dirname "$0")/.."

all_targets=(data_files csv_import parse_number_text val text_input script work_files)
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=("${all_targets[@]}")
budget=${LORVANE_FUZZ_BUDGET:-180}
seconds=${LORVANE_FUZZ_SECONDS:-$((budget / ${#targets[@]}))}
[ "$seconds" -lt 1 ] && seconds=1

compiler=$(command -v clang++-14 || command -v clang++ || true)
if [ -z "$compiler" ]; then
    echo "fuzz.sh: clang++ is missing (scripts/install-deps.sh installs it)" >&2
    exit 1
fi
symbolizer=$(command -v llvm-symbolizer-14 || command -v llvm-symbolizer || true)
[ -n "$symbolizer" ] && export ASAN_SYMBOLIZER_PATH=$symbolizer

jobs=$(nproc 2>/dev/null || echo 2)
build=$PWD/build/fuzz
cmake -S . -B "$build" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DLORVANE_FUZZ=ON -DLORVANE_GUI=OFF -DLORVANE_BENCH=OFF -DLORVANE_SANITIZE=OFF >/dev/null
cmake --build "$build" -j "$jobs" --target fuzz_targets

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

status=0
passed=0
failed=0
summary=()
for target in "${targets[@]}"; do
    binary=$build/fuzz/fuzz_$target
    seeds=$PWD/fuzz/corpus/$target
    if [ ! -x "$binary" ] || [ ! -d "$seeds" ]; then
        echo "fuzz.sh: no target $target" >&2
        exit 2
    fi
    run=$build/run/$target
    findings=$build/findings/$target
    rm -rf "$run" "$findings"
    mkdir -p "$run/corpus" "$findings"
    cp "$seeds"/* "$run/corpus/"
    # One input may take this long before it counts as a hang; a script may walk several roads.
    timeout=25
    [ "$target" = script ] && timeout=90
    options=(-max_total_time="$seconds" -timeout="$timeout" -rss_limit_mb=2048 -max_len=8192
             -artifact_prefix="$findings/" -print_final_stats=1)
    [ -f "$PWD/fuzz/$target.dict" ] && options+=(-dict="$PWD/fuzz/$target.dict")

    echo "== fuzz_$target for ${seconds}s"
    start=$(date +%s)
    if "$binary" "${options[@]}" "$run/corpus" >"$run/log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$run/log" | tail -n 1)
        slowest=$(sed -n 's/^stat::slowest_unit_time_sec: *//p' "$run/log" | tail -n 1)
        summary+=("fuzz_$target: $(($(date +%s) - start))s, ${runs:-?} inputs (slowest ${slowest:-?}s), no fault")
        passed=$((passed + 1))
    else
        status=1
        failed=$((failed + 1))
        summary+=("fuzz_$target: FAULT, input kept in $findings/")
        grep -E '^(==[0-9]+==|SUMMARY|fuzz:|.*runtime error)' "$run/log" | head -n 20 || true
        tail -n 40 "$run/log"
    fi
done

echo
printf '%s\n' "${summary[@]}"
echo "fuzz: $passed passed, $failed failed"
exit $status
