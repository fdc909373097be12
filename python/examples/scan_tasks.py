"""Tasks for scan_farm.py: what is measured on a scan.

A task takes the path of a scan and its options by keyword, and returns a structured array with one
row per thing found. Copy one and change it: `scan_farm.py scans/ --task my_tasks.py:my_task`.
"""
import numpy as np
import scanline
import scanline.io


def level(scan, plane):
    """Level a scan in place, by its own plane if `plane` is None; return the z of the plane."""
    if plane is None:
        found = scanline.qo_getPlaneCalibPara2(scan)
        if found.planeHeight < 0.0:
            raise ValueError("the scan has no plane of its own; pass one with --plane")
        plane = {"rotation": found.levelMatrix, "height": found.planeHeight}
    for line in scan:
        scanline.lineDataRT_vector(line, plane["rotation"], 0.0)
    return plane["height"]


def edges(path, plane=None, scale=12.0, angle=28.0, lines=8, length=20.0):
    """Trace edges across the lines, as where a box meets a table.

    `scale` is the length of the arms of a corner in sample spacings, `angle` its smallest turn in
    degrees, `lines` how many lines an edge may miss, `length` its smallest length in line spacings.
    """
    scan = scanline.io.read(path)
    level(scan, plane)
    spacing = scanline.ju_getPointCloudPara(scan)
    arm = scale * spacing.ptStep
    clean = scanline.SQO_outlierFilterParam(continuityTh=arm, outlierTh=4)
    corner = scanline.SQO_cornerParam(minEndingGap=arm, minEndingGap_z=4.0 * arm, scale=arm,
                                      cornerTh=angle, jumpCornerTh_1=55.0, jumpCornerTh_2=40.0)
    shortest = length * spacing.scanLineStep
    grow = scanline.SQO_treeGrowParam(
        yDeviation_max=arm, zDeviation_max=arm, maxLineSkipNum=lines,
        maxSkipDistance=(lines + 1) * spacing.scanLineStep,
        minLTypeTreeLen=shortest, minVTypeTreeLen=shortest)
    features = []
    for index, line in enumerate(scan):
        scanline.qo_lineDataRemoveOutlier_changeOriginData(line, clean)
        features.append(scanline.qo_getLineCornerFeature(line, index, corner))
    rows = []
    for tree in scanline.qo_getFeatureGrowingTrees(features, grow):
        first, last = tree.treeNodes["jumpPos"][[0, -1]].tolist()
        rows.append((scanline.FeatureType(tree.treeType).name, tree.sLineIdx, tree.eLineIdx,
                     len(tree.treeNodes), *first, *last))
    return np.array(rows, dtype=[("type", "U20"), ("first_line", "i4"), ("last_line", "i4"),
                                 ("nodes", "i4"), ("x0", "f8"), ("y0", "f8"), ("z0", "f8"),
                                 ("x1", "f8"), ("y1", "f8"), ("z1", "f8")])


def objects(path, plane=None, min_height=5.0, min_samples=50):
    """Measure what rises above the plane by more than `min_height`, apart where it is apart."""
    scan = scanline.io.read(path)
    height = level(scan, plane) - scan["pt3D"]["z"]
    raised = (height > min_height) & (scan["pt3D"]["z"] > 0.0001)
    # Regions do not reach the outermost pixels, hence the frame.
    found = scanline.QO_TwoPassLabel(np.pad(raised.astype(np.uint8), 1), 8)
    labels = found.labImg[1:-1, 1:-1]
    rows = []
    for label, samples in found.regions[["labelID", "ptCounter"]].tolist():
        if samples >= min_samples:
            inside = labels == label
            lines = np.flatnonzero(inside.any(axis=1))
            x, y = (scan["pt3D"][axis][inside].mean() for axis in "xy")
            rows.append((lines[0], lines[-1], samples, x, y,
                         height[inside].mean(), height[inside].max()))
    return np.array(rows, dtype=[("first_line", "i4"), ("last_line", "i4"), ("samples", "i4"),
                                 ("x", "f8"), ("y", "f8"), ("mean_height", "f8"),
                                 ("max_height", "f8")])
