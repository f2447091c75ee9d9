#!/usr/bin/env bash
# Builds the program and runs the demo: a whole analysis of the example data, headless.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build/release -j "$jobs" --target VAR lorvane-import

# The nonstructural analysis, then a structural one, each in a work folder of its own.
for road in demo structural; do
    work="$PWD/build/$road"
    rm -rf "$work"
    build/release/app/import/lorvane-import examples/e1.csv "$work"
    QT_QPA_PLATFORM=offscreen build/release/app/module/VAR --script "examples/$road.var" "$work"
    echo
    echo "The analysis of examples/$road.var is done. Its log:"
    echo "  $work/LORVANE.DAT/OUTPUT.TXT"
    echo "Its plots of the innovation responses, one bitmap each:"
    ls "$work"/LORVANE.DAT/IRP*.BMP | sed 's/^/  /'
    echo "The same work folder on the desktop: build/release/app/module/VAR $work"
done
