#!/usr/bin/env python3
"""Times calls from Python beside the same calls in C++: bench_calls.py PLAIN_CALLS

PLAIN_CALLS is the program of plain_calls.cpp. Both take the shortest of many times, in turns; for
the road that of the processor, since other programs would meet a call of that length. The
scene is that of the C++ benchmarks: blocks on a tilted table, noise and missing samples.
"""
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np

import scanline

LINES, SAMPLES, TURNS = 1000, 2048, 5
LEVEL = np.eye(3)
OUTLIER = scanline.SQO_outlierFilterParam(continuityTh=1.0, outlierTh=5.0)
CORNER = scanline.SQO_cornerParam(minEndingGap=2.0, minEndingGap_z=5.0, scale=1.6, cornerTh=45.0,
                                  jumpCornerTh_1=60.0, jumpCornerTh_2=30.0)
GROW = scanline.SQO_treeGrowParam(yDeviation_max=2.0, zDeviation_max=5.0, maxLineSkipNum=5,
                                  maxSkipDistance=4.0, minLTypeTreeLen=20.0, minVTypeTreeLen=20.0)
POINTER = ("lineDataRT", "qo_lineDataRemoveOutlier_changeOriginData", "qo_getLineDownJumps")


def make_scan():
    random = np.random.default_rng(1)
    x, y = np.meshgrid(0.5 * np.arange(LINES), 0.2 * np.arange(SAMPLES), indexing="ij")
    z = 500 + 0.02 * x - 0.01 * y - 40 * (np.floor(y / (0.2 * SAMPLES / 40)) % 2)
    z += random.uniform(-0.03, 0.03, z.shape)
    z[random.random(z.shape) < 0.03] = 0
    return scanline.as_scan(np.stack([x, y, z], axis=-1))


def best(call, repeats, clock=time.perf_counter):
    """The shortest time of a call in microseconds."""
    shortest = float("inf")
    for _ in range(repeats):
        start = clock()
        call()
        shortest = min(shortest, clock() - start)
    return 1e6 * shortest


def corners_of(line, index):
    """Levels, cleans and smooths a line, which is changed, and finds its corners."""
    scanline.lineDataRT(line, LEVEL, 0.0)
    scanline.qo_lineDataRemoveOutlier_changeOriginData(line, OUTLIER)
    smooth = scanline.qo_lineDataSmoothing(line, 5)
    return scanline.qo_getLineCornerFeature(smooth, index, CORNER)


def lines_of(scan, indices):
    """Copies of lines in one buffer. NumPy copies records field by field, bytes at once."""
    line = np.empty_like(scan[0])
    target = line.view(np.uint8)
    for index, raw in zip(indices, scan.view(np.uint8)[indices.start:]):
        target[:] = raw
        yield index, line


def road(scan):
    trees = scanline.SQO_featureTrees()
    for index, line in lines_of(scan, range(LINES)):
        found = corners_of(line, index)
        scanline.qo_lineFeaturesGrowing(index, index + 1 == len(scan), found.features, trees, GROW)
    return trees


def line_calls(line):
    return {
        "lineDataRT": lambda: scanline.lineDataRT(line, LEVEL, 0.0),
        "qo_lineDataRemoveOutlier_changeOriginData":
            lambda: scanline.qo_lineDataRemoveOutlier_changeOriginData(line, OUTLIER),
        "qo_getLineDownJumps": lambda: scanline.qo_getLineDownJumps(line, 0, 2.0),
        "lineDataRT_vector": lambda: scanline.lineDataRT_vector(line, LEVEL, 0.0),
        "ju_vectorDataRemoveOutlier_overwrite":
            lambda: scanline.ju_vectorDataRemoveOutlier_overwrite(line, OUTLIER),
        "qo_lineDataSmoothing": lambda: scanline.qo_lineDataSmoothing(line, 5),
    }


def times_in_python(scan):
    times = {name: best(call, 3000) for name, call in line_calls(scan[0].copy()).items()}
    times["road"] = best(lambda: road(scan), 15, time.thread_time)
    return times


def times_in_cpp(program, file):
    output = subprocess.run([program, file, str(LINES), str(SAMPLES)], check=True,
                            capture_output=True, text=True).stdout
    return {name: float(value) for name, value in map(str.split, output.splitlines())}


def print_pool(scan):
    """Whole lines in a pool of threads, in chunks."""
    def chunk(first):
        return [corners_of(line, index) for index, line in lines_of(scan, range(first, first + 50))]
    for threads in (1, 2):
        with ThreadPoolExecutor(threads) as pool:
            taken = best(lambda: list(pool.map(chunk, range(0, LINES, 50))), 60)
        print(f"corners of a scan, {threads} thread(s): {taken / 1e3:.1f} ms")


def main(program):
    scan = make_scan()
    with tempfile.NamedTemporaryFile() as file:
        scan.tofile(file.name)
        turns = [(times_in_cpp(program, file.name), times_in_python(scan)) for _ in range(TURNS)]
    for name in turns[0][0]:
        plain, python = (min(turn[side][name] for turn in turns) for side in (0, 1))
        kind = "pointer" if name in POINTER else "vector"
        if name == "road":
            print(f"road of a scan: C++ {plain / 1e3:.1f} ms, Python {python / 1e3:.1f} ms, "
                  f"{100 * (python / plain - 1):+.1f} %")
        else:
            print(f"{name} ({kind}): C++ {plain:.2f} us, Python {python:.2f} us, "
                  f"{python - plain:+.2f} us")
    print_pool(scan)


if __name__ == "__main__":
    main(*sys.argv[1:])
