#!/usr/bin/env python3
"""No loss in the log when the module is killed.

Runs a long headless road once to the end and keeps its LORVANE.DAT/OUTPUT.TXT, the complete
log. Then runs the same road again and again on fresh work folders, each time killing the
module with SIGKILL after a random delay within the length of the complete run, and checks
that the log left behind is a prefix of the complete log: whole lines ending in CR LF, none
changed, none missing in between. The session date and time lines are compared masked.

    noloss.py VAR LORVANE-IMPORT ROAD.var [--runs N] [--seed S]

ROAD.var is a script of the headless driver; its "# data:" line names the CSV file (relative
to the source folder) that lorvane-import prepares the work folder from, examples/e1.csv when
it has none. LORVANE_NOLOSS_RUNS
and LORVANE_NOLOSS_SEED override the defaults of --runs and --seed.
"""

import argparse
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SOURCE_DIR = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MASKED = re.compile(rb"^(Session date: |Session time: ).*$")


def data_of(road):
    with open(road, encoding="utf-8") as script:
        for line in script:
            if line.startswith("# data:"):
                return os.path.join(SOURCE_DIR, line[len("# data:"):].strip())
    return os.path.join(SOURCE_DIR, "examples", "e1.csv")


def prepare(importer, data, folder):
    shutil.rmtree(folder, ignore_errors=True)
    result = subprocess.run([importer, data, folder], capture_output=True)
    if result.returncode != 0:
        sys.exit(f"lorvane-import failed: {result.stderr.decode(errors='replace')}")


def start(var, road, folder):
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    return subprocess.Popen([var, "--script", road, folder], env=environment,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)


def log_of(folder):
    path = os.path.join(folder, "LORVANE.DAT", "OUTPUT.TXT")
    if not os.path.exists(path):
        return b""
    with open(path, "rb") as log:
        return log.read()


def lines_of(log):
    """The log's whole lines, masked; None when it ends inside a line."""
    if log and not log.endswith(b"\r\n"):
        return None
    return [MASKED.sub(rb"\1*", line) for line in log.split(b"\r\n")[:-1]]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("var")
    parser.add_argument("importer")
    parser.add_argument("road")
    parser.add_argument("--runs", type=int, default=int(os.environ.get("LORVANE_NOLOSS_RUNS", 16)))
    parser.add_argument("--seed", type=int,
                        default=int(os.environ.get("LORVANE_NOLOSS_SEED", time.time_ns() % 100000)))
    arguments = parser.parse_args()
    data = data_of(arguments.road)
    generator = random.Random(arguments.seed)
    print(f"road {os.path.basename(arguments.road)}, {arguments.runs} killed runs, seed {arguments.seed}")

    with tempfile.TemporaryDirectory(prefix="lorvane-noloss-") as temp:
        folder = os.path.join(temp, "work")

        prepare(arguments.importer, data, folder)
        began = time.monotonic()
        process = start(arguments.var, arguments.road, folder)
        _, errors = process.communicate(timeout=600)
        length = time.monotonic() - began
        if process.returncode != 0:
            sys.exit(f"the complete road ended with exit code {process.returncode}:\n"
                     f"{errors.decode(errors='replace')}")
        complete = lines_of(log_of(folder))
        if not complete:
            sys.exit("the complete road wrote no log")
        print(f"complete road: {length:.2f} s, {len(complete)} lines of log")

        failures = 0
        for run in range(1, arguments.runs + 1):
            prepare(arguments.importer, data, folder)
            delay = generator.uniform(0.0, length)
            process = start(arguments.var, arguments.road, folder)
            try:
                process.wait(timeout=delay)
                outcome = f"ended by itself (exit code {process.returncode})"
            except subprocess.TimeoutExpired:
                process.send_signal(signal.SIGKILL)
                process.wait()
                outcome = "killed"
            process.stderr.close()
            log = log_of(folder)
            lines = lines_of(log)
            if lines is None:
                problem = f"the log ends inside a line: {log[-80:]!r}"
            elif lines != complete[:len(lines)]:
                wrong = next(i for i, (a, b) in enumerate(zip(lines, complete)) if a != b)
                problem = (f"line {wrong + 1} differs from the complete log: "
                           f"{lines[wrong]!r} instead of {complete[wrong]!r}")
            elif outcome.startswith("ended") and (process.returncode != 0
                                                  or len(lines) != len(complete)):
                problem = f"the road ended by itself with {len(lines)} of {len(complete)} lines"
            else:
                problem = None
            print(f"run {run:2}: after {delay:.3f} s {outcome}, {len(lines or [])} lines"
                  + (f": FAILED, {problem}" if problem else ""))
            failures += problem is not None

    print(f"{arguments.runs - failures} of {arguments.runs} runs left a prefix of the complete log")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
