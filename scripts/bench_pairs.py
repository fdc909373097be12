#!/usr/bin/env python3
"""Runs benchmarks with two builds of the library in turn and prints a table in Markdown.

The runs alternate, so that both meet the same load of the machine. The table holds the median time
of each, the median of the ratios after / before of neighbouring runs, and their range. Use it through
bench.sh --against.
"""
import argparse
import json
import os
import re
import statistics
import subprocess
import sys


def run(program, library, options):
    """What the benchmark program writes when it loads the library from the given directory."""
    environment = dict(os.environ, LD_LIBRARY_PATH=library)
    result = subprocess.run([program, *options], env=environment, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True)
    if result.returncode != 0:
        sys.exit(f"bench_pairs.py: {program} failed with the library of {library}:\n{result.stderr}")
    return result.stdout


def measure(program, library, name, options):
    """The time of one run in nanoseconds, and what it is for.

    It is for a sample where the benchmark counts samples, else for an iteration; of the clock if
    several threads work, else of the processor.
    """
    output = run(program, library, ["--benchmark_min_time=0.1", *options, "--benchmark_format=json",
                                    f"--benchmark_filter=^{re.escape(name)}$"])
    measured = json.loads(output)["benchmarks"][0]
    if "per_sample" in measured:
        return 1e9 * measured["per_sample"], " per sample"
    unit = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[measured["time_unit"]]
    return unit * measured["real_time" if "real_time" in name else "cpu_time"], ""


def pairs(options, name):
    """The times of all rounds before and after, and what they are for. The first one alternates."""
    times = ([], [])
    libraries = (options.before, options.after)
    for round_number in range(options.rounds):
        for which in (0, 1) if round_number % 2 == 0 else (1, 0):
            time, what = measure(options.program, libraries[which], name, options.benchmark)
            times[which].append(time)
    return *times, what


def readable(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}" if nanoseconds < 1000 * size else \
                f"{nanoseconds / size:.0f} {unit}"
    return f"{nanoseconds:.3g} ns"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--before", required=True, help="directory of the older library")
    parser.add_argument("--after", required=True, help="directory of the newer library")
    parser.add_argument("--rounds", type=int, default=7, help="runs with each library")
    parser.add_argument("program", help="the benchmark program")
    options, options.benchmark = parser.parse_known_args()
    if options.rounds < 1:
        parser.error("--rounds must be 1 or more")

    listing = run(options.program, options.after, ["--benchmark_list_tests", *options.benchmark])
    names = listing.split()
    if not names or names[0] == "Failed":
        sys.exit("bench_pairs.py: no benchmark matches the filter")
    print("| benchmark | before | after | ratio | spread |\n| --- | ---: | ---: | ---: | --- |", flush=True)
    for number, name in enumerate(names, 1):
        if sys.stderr.isatty():
            print(f"{number} of {len(names)}: {name}\033[K", end="\r", file=sys.stderr, flush=True)
        before, after, what = pairs(options, name)
        ratios = sorted(a / b for a, b in zip(after, before))
        print(f"| {name.removeprefix('BM_')} | {readable(statistics.median(before))}{what} "
              f"| {readable(statistics.median(after))}{what} | {statistics.median(ratios):.2f} "
              f"| {ratios[0]:.2f} to {ratios[-1]:.2f} |", flush=True)


if __name__ == "__main__":
    main()
