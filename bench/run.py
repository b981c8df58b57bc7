#!/usr/bin/env python3
"""Runs the workloads of all programs and notes what they say.

    run.py PROGRAMS OUTPUT [--quick] [N...]

PROGRAMS is the folder in which lvp_bench_* lie, OUTPUT the one for results.jsonl, a line for each step of each run
(see bench/workloads/Program.h). All subjects of one workload and size run in turns, several rounds, so that what
disturbs the machine for a while disturbs all of them, and ratios hold. Nothing is said about absolute times.
"""

import argparse
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

WORKLOADS = ["W1", "W2", "W3", "W4", "W4d", "W5", "W6", "W7", "W8"]  # W1 makes the files of W2 to W4, W6 that of W7

SIZES = [10_000, 100_000, 1_000_000]
QUICK_SIZES = [10_000, 100_000]
CHILDREN = [1_000, 10_000, 100_000]  # of W5; a tenth of the sizes that are asked for
RECORDS = 1_000_000  # of W8, whatever the sizes are
QUICK_RECORDS = 100_000
ROUNDS = 5
QUICK_ROUNDS = 3

PATIENCE = 300  # seconds for one run
BUDGET = 40  # seconds for all runs of one subject on one workload and size; there is at least one

WHOLE_FILE = "writes its whole file for every edit: seconds for each"
# What is known to lead nowhere: the largest size that is tried, and why.
LIMITS = {
    ("ocaf", "W6"): (100_000, "the time of its XML driver grows with the square of the size: many minutes"),
    ("ocaf", "W7"): (100_000, "there is no document: see W6"),
    ("ocaf", "W4d"): (100_000, WHOLE_FILE),
    ("ocaf-data", "W4d"): (100_000, WHOLE_FILE),
    ("libxml2", "W4d"): (100_000, WHOLE_FILE),
    ("pugixml", "W4d"): (100_000, WHOLE_FILE),
    ("protobuf", "W4d"): (100_000, WHOLE_FILE),
}


def subjects_of(programs):
    """The pairs of program and subject that there are for each workload; ours first, since it writes W7's document."""
    found = {workload: [] for workload in WORKLOADS}
    for program in sorted(programs.glob("lvp_bench_*"), key=lambda path: (path.name != "lvp_bench_ours", path.name)):
        if not program.is_file() or not os.access(program, os.X_OK):
            continue
        listed = subprocess.run([program, "--list"], capture_output=True, text=True, check=True, timeout=PATIENCE)
        for line in listed.stdout.splitlines():
            subject, workload = line.split("\t")
            found[workload].append((program, subject))
    return found


def sizes_of(workload, options):
    if workload == "W5":
        return [size // 10 for size in options.sizes] or CHILDREN
    if workload == "W8":
        return [QUICK_RECORDS if options.quick else RECORDS]
    return options.sizes or (QUICK_SIZES if options.quick else SIZES)


def run(program, subject, workload, size, folder):
    """The lines of one run, or why there are none: under "skipped", or under "failed" where it says so itself."""
    try:
        done = subprocess.run([program, subject, workload, str(size), folder], capture_output=True, text=True,
                              timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        return [], {"skipped": f"has not ended within {PATIENCE} s"}
    if done.returncode != 0:
        return [], {"failed": done.stderr.strip() or f"has ended with {done.returncode}"}
    # What does not begin like a step is talk of a library.
    return [json.loads(line) for line in done.stdout.splitlines() if line.startswith('{"subject"')], {}


def run_in_turns(pairs, workload, size, rounds, folder, note):
    spent = {}
    for number in range(rounds):
        for program, subject in pairs:
            limit, why = LIMITS.get((subject, workload), (size, ""))
            if size > limit:
                if number == 0:
                    note({"subject": subject, "workload": workload, "count": size, "skipped": why})
                continue
            if spent.get(subject, 0) > BUDGET:
                continue
            start = time.monotonic()
            steps, why_not = run(program, subject, workload, size, folder)
            spent[subject] = spent.get(subject, 0) + time.monotonic() - start
            for step in steps:
                note({**step, "round": number, "load": os.getloadavg()[0]})
            if why_not:
                note({"subject": subject, "workload": workload, "count": size, **why_not})
                spent[subject] = float("inf")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=pathlib.Path)
    parser.add_argument("output", type=pathlib.Path)
    parser.add_argument("--quick", action="store_true", help="smaller sizes and fewer rounds")
    parser.add_argument("sizes", type=int, nargs="*", metavar="N", help="how many properties a tree has")
    options = parser.parse_intermixed_args()
    rounds = QUICK_ROUNDS if options.quick else ROUNDS

    folder = options.output / "data"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    subjects = subjects_of(options.programs.resolve())
    with open(options.output / "results.jsonl", "w", encoding="utf-8") as results:

        def note(line):
            for reason in ("skipped", "failed"):
                if reason in line:
                    print(f"{line['workload']} {line['subject']}: {reason}, {line[reason]}", file=sys.stderr)
            results.write(json.dumps(line) + "\n")
            results.flush()

        for workload in WORKLOADS:
            for size in sizes_of(workload, options):
                print(f"{workload} of {size:,}", file=sys.stderr)
                run_in_turns(subjects[workload], workload, size, rounds, folder, note)
    shutil.rmtree(folder)


if __name__ == "__main__":
    main()
