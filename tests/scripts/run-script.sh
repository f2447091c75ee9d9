#!/usr/bin/env bash
# A scripted run (run-script.sh VAR IMPORT SCRIPT [EXPECTED]): prepares a work folder with lorvane-import from the data that the script's
# "# data:" line names (relative to the source folder), runs the script headless and compares
#   - the exit code with the script's "# exit:" line (0 when there is none),
#   - standard output with NAME.out beside the script, when it exists,
#   - standard error with NAME.err beside the script, when it exists,
#   - LORVANE.DAT/OUTPUT.TXT with NAME.log beside the script, when it exists,
# with the session date and time lines of the log, the work folder's path (WORK) and the
# program's folder (PROGRAM) masked.
# A "# file-size-limit: BLOCKS" line runs the module under that limit on the size of the files it
# writes (ulimit -f, in blocks of 1024 bytes), with the signal of the limit at its default.
# Each "# damage: COMMAND" line (in order) runs COMMAND with bash in the work folder after the
# import and before the run, to damage the prepared files. A run that takes longer than
# LORVANE_SCRIPT_TIMEOUT seconds (default 240) is stopped and fails as a hang.
# LORVANE_UPDATE_EXPECTED=1 writes the expected files from this run instead (review them before
# committing: a change of expected text is a change of behaviour).
set -uo pipefail

var=$(readlink -f "$1")
import=$(readlink -f "$2")
script=$3
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
# The expected files: beside the script, or under the name given as the fourth argument.
name=${4:-${script%.var}}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

data=$(sed -n 's/^# data: *//p' "$script" | head -n 1)
expected_exit=$(sed -n 's/^# exit: *//p' "$script" | head -n 1)
expected_exit=${expected_exit:-0}
size_limit=$(sed -n 's/^# file-size-limit: *//p' "$script" | head -n 1)
size_limit=${size_limit:-unlimited}

if [ -n "$data" ]; then
    "$import" "$source_dir/$data" "$work/folder" >/dev/null || { echo "import of $data failed"; exit 1; }
else
    mkdir -p "$work/folder"
fi

while IFS= read -r damage; do
    (cd "$work/folder" && bash -euo pipefail -c "$damage") || { echo "damage failed: $damage"; exit 1; }
done < <(sed -n 's/^# damage: *//p' "$script")

(trap - XFSZ; ulimit -f "$size_limit" &&
    QT_QPA_PLATFORM=offscreen exec timeout --kill-after=10 "${LORVANE_SCRIPT_TIMEOUT:-240}" \
        "$var" --script "$script" "$work/folder") >"$work/stdout" 2>"$work/stderr"
code=$?
if [ "$code" = 124 ] || [ "$code" = 137 ]; then
    echo "the run did not end within ${LORVANE_SCRIPT_TIMEOUT:-240} seconds"
    exit 1
fi
if [ "$code" -gt 128 ]; then
    echo "the program crashed with signal $((code - 128))"
    cat "$work/stderr"
    exit 1
fi

mask() {
    sed -e "s|$work/folder|WORK|g" -e "s|$(dirname "$var")|PROGRAM|g" \
        -e 's/^Session date: .*/Session date: */' \
        -e 's/^Session time: .*/Session time: */' "$1"
}

mask "$work/stdout" >"$work/stdout.masked"
mask "$work/stderr" >"$work/stderr.masked"
log="$work/folder/LORVANE.DAT/OUTPUT.TXT"
[ -f "$log" ] && mask "$log" >"$work/log.masked"

if [ "${LORVANE_UPDATE_EXPECTED:-0}" = 1 ]; then
    cp "$work/stdout.masked" "$name.out"
    [ -s "$work/stderr.masked" ] && cp "$work/stderr.masked" "$name.err"
    [ -f "$work/log.masked" ] && cp "$work/log.masked" "$name.log"
    echo "expected files of $(basename "$name") written (exit code $code)"
    exit 0
fi

status=0
if [ "$code" != "$expected_exit" ]; then
    echo "exit code $code, expected $expected_exit"
    cat "$work/stderr"
    status=1
fi
if [ -f "$name.out" ] && ! diff -u "$name.out" "$work/stdout.masked"; then
    echo "standard output differs from $(basename "$name").out"
    status=1
fi
if [ -f "$name.err" ] && ! diff -u "$name.err" "$work/stderr.masked"; then
    echo "standard error differs from $(basename "$name").err"
    status=1
fi
if [ -f "$name.log" ]; then
    if [ ! -f "$work/log.masked" ]; then
        echo "no OUTPUT.TXT was written"
        status=1
    elif ! diff -u "$name.log" "$work/log.masked"; then
        echo "OUTPUT.TXT differs from $(basename "$name").log"
        status=1
    fi
fi
exit $status
