#!/usr/bin/env python3
"""Counts the instructions of calls on their worst known inputs at three sizes, each twice the last.

Prints a table in Markdown, the one of docs/cost.md. Fails if a cost grows faster than documented:
in the mean of two doublings of the size by more than 1.2 where it must not depend on the size, 2.3
where it is to be all but linear, and 4.6 where it is quadratic. Instructions are counted by
callgrind inside the call alone, in a Release build.
"""
import argparse
import concurrent.futures
import fnmatch
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAM = ROOT / "build" / "release" / "bench" / "scanline_cost"
LIMITS = {"none": 1.2, "linear": 2.3, "quadratic": 4.6}


def build(jobs):
    subprocess.run([ROOT / "scripts" / "setup.sh", "--dev"], check=True)
    for command in (["--preset", "release"],
                    ["--build", "--preset", "release", "--parallel", str(jobs),
                     "--target", "scanline_cost"]):
        subprocess.run(["cmake", *command], cwd=ROOT, check=True, stdout=sys.stderr)


def count(name, size):
    """The instructions of one call, or None if they take longer than ten minutes."""
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
               "--toggle-collect=scanlineMeasuredCall", PROGRAM, name, str(size)]
    try:
        run = subprocess.run(command, capture_output=True, text=True, timeout=600)
    except subprocess.TimeoutExpired:
        return None
    found = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not found or int(found[1]) == 0:
        sys.exit(f"cost.py: no count of {name} at {size}:\n{run.stdout}{run.stderr}")
    return int(found[1])


def row(name, growth, size, counts):
    """A line of the table, and whether the cost grows as documented."""
    factors = [b / a if a and b else float("inf") for a, b in zip(counts, counts[1:])]
    # The mean of both doublings: containers that double make single steps uneven.
    good = (factors[0] * factors[1]) ** 0.5 <= LIMITS[growth]
    cells = [name, str(size), *("over time" if c is None else f"{c / 1e6:.2f}" for c in counts),
             *(f"{f:.2f}" for f in factors), growth, "yes" if good else "**no**"]
    return f"| {' | '.join(cells)} |", good


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("pattern", nargs="?", default="*", help="cases to run, such as 'trees/*'")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="calls side by side")
    options = parser.parse_args()
    build(options.jobs)
    listed = subprocess.run([PROGRAM], check=True, capture_output=True, text=True).stdout
    cases = [line.split() for line in listed.splitlines()]
    cases = [(name, growth, int(size)) for name, growth, size in cases
             if fnmatch.fnmatch(name, options.pattern)]
    if not cases:
        sys.exit(f"cost.py: no case matches '{options.pattern}'")
    print("| call and input | n | at n | at 2n | at 4n | growth to 2n | to 4n | documented | kept |\n"
          "| --- | --: | --: | --: | --: | --: | --: | --- | --- |")
    bad = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        counts = [[pool.submit(count, name, size * k) for k in (1, 2, 4)]
                  for name, _, size in cases]
        for (name, growth, size), counting in zip(cases, counts):
            line, good = row(name, growth, size, [c.result() for c in counting])
            print(line, flush=True)
            bad += not good
    if bad:
        sys.exit(f"cost.py: {bad} of {len(cases)} costs grow faster than documented")


if __name__ == "__main__":
    main()
