#!/usr/bin/env bash
# Builds everything and runs every test: the normal build, then the build with
# AddressSanitizer and UndefinedBehaviorSanitizer, then a bounded run of the fuzz targets.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
export QT_QPA_PLATFORM=offscreen

cmake -S . -B build/release -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build/release -j "$jobs"
ctest --test-dir build/release --output-on-failure -j "$jobs"

cmake -S . -B build/sanitize -DCMAKE_BUILD_TYPE=Debug -DLORVANE_SANITIZE=ON
cmake --build build/sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    LSAN_OPTIONS=suppressions="$PWD/tests/lsan.supp" \
    ctest --test-dir build/sanitize --output-on-failure -j "$jobs"

# Every fuzz target on its seeds, sharing LORVANE_FUZZ_BUDGET (180 s by default); fails on a crash.
scripts/fuzz.sh
