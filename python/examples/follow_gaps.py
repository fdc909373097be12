"""Follows a gap between two plates while lines arrive one by one, as from a running sensor."""
import sys

import numpy as np

import scanline
from scanline import plot

LINES = 120


def next_line(index):
    """A line across two plates. The gap between them, 4 mm wide and 8 mm deep, drifts in y."""
    x = 0.5 * index
    y = 0.25 * np.arange(400)
    return scanline.as_line(y, np.where(np.abs(y - (50.0 + 0.1 * x)) < 2.0, 308.0, 300.0), x)


def main(picture):
    corner = scanline.SQO_cornerParam(minEndingGap=0.0, minEndingGap_z=30.0, scale=2.0,
                                      cornerTh=40.0, jumpCornerTh_1=0.0, jumpCornerTh_2=0.0)
    grow = scanline.SQO_treeGrowParam(yDeviation_max=2.0, zDeviation_max=2.0, maxLineSkipNum=5,
                                      maxSkipDistance=3.0, minLTypeTreeLen=10.0,
                                      minVTypeTreeLen=10.0)
    width = (2.0, 8.0)

    # The functions need only the trees from line to line; the lines are kept for the picture.
    trees = scanline.SQO_gapFeatureTrees()
    scan = []
    for index in range(LINES):
        line = next_line(index)
        gaps = scanline.qo_getLineGapFeature(line, index, corner, width)
        scanline.qo_lineGapsGrowing(index, index + 1 == LINES, gaps, trees, grow)
        scan.append(line)

    for tree in trees:
        nodes = tree.nodes
        widths = nodes["gapEnd"]["pt3D"]["y"] - nodes["gapStart"]["pt3D"]["y"]
        print(f"gap on lines {tree.sLineIdx} to {tree.eLineIdx}, {widths.mean():.2f} mm wide")
    plot.scan_map(scan, trees, title="A gap between two plates").figure.savefig(picture)


if __name__ == "__main__":
    main(sys.argv[1])
