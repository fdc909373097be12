"""Traces where a box meets a tilted table: calibration, levelling, corners, trees."""
import sys

import numpy as np

import scanline
from scanline import plot


def make_scan(has_box):
    """A table that rises along x and y, 500 mm from the sensor, with a box 40 mm high or not."""
    x, y = np.meshgrid(0.5 * np.arange(200), 0.25 * np.arange(400), indexing="ij")
    is_on_box = has_box & (x > 25.0) & (x < 75.0) & (y > 30.0) & (y < 70.0)
    z = 500.0 - 0.03 * x - 0.02 * y - np.where(is_on_box, 40.0, 0.0)
    return scanline.as_scan(np.stack([x, y, z], axis=-1))


def calibrate(bare_table):
    """The plane that all samples of a scan show. The last limit is a second one of y."""
    return scanline.qo_getPlaneCalibPara2_ROI(
        bare_table, {"xRange": (-1e9, 1e9), "yRange": (-1e9, 1e9), "zRange": (0.0, 1e9)})


def main(picture):
    plane = calibrate(make_scan(has_box=False))
    corner = scanline.SQO_cornerParam(minEndingGap=2.0, minEndingGap_z=60.0, scale=2.0,
                                      cornerTh=30.0, jumpCornerTh_1=60.0, jumpCornerTh_2=30.0)
    scan = make_scan(has_box=True)
    features = []
    for index, line in enumerate(scan):
        scanline.lineDataRT_vector(line, plane.levelMatrix, 0.0)
        smooth = scanline.qo_lineSegSmoothing(line, 1.0, 5.0, 5)
        features.append(scanline.qo_getLineCornerFeature(smooth, index, corner))

    grow = scanline.SQO_treeGrowParam(yDeviation_max=2.0, zDeviation_max=5.0, maxLineSkipNum=5,
                                      maxSkipDistance=3.0, minLTypeTreeLen=10.0,
                                      minVTypeTreeLen=10.0)
    trees = scanline.qo_getFeatureGrowingTrees(features, grow)
    for tree in trees:
        (x1, y1, z1), (x2, y2, z2) = scanline.xyz(tree.nodes["jumpPos"])[[0, -1]]
        print(f"edge of {len(tree.nodes)} nodes from ({x1:.1f}, {y1:.1f}, {z1:.1f}) "
              f"to ({x2:.1f}, {y2:.1f}, {z2:.1f})")
    plot.scan_map(scan, trees, title="Edges of a box").figure.savefig(picture)


if __name__ == "__main__":
    main(sys.argv[1])
