"""A program that a strict type checker must accept; test_stubs.py checks and runs it."""
import numpy as np
from numpy.typing import NDArray

import scanline
from scanline import FeatureType, SQO_cornerParam


def corner_types(scan: NDArray[np.void], param: SQO_cornerParam) -> list[FeatureType]:
    types: list[FeatureType] = []
    for index, line in enumerate(scan):
        found = scanline.qo_getLineCornerFeature(line, index, param)
        types += [FeatureType(feature["featureType"]) for feature in found.features]
    return types


def main() -> None:
    scan = scanline.as_scan(np.zeros((3, 40, 3)))
    param = SQO_cornerParam(minEndingGap=5.0, minEndingGap_z=20.0, scale=3.0, cornerTh=45.0,
                            jumpCornerTh_1=30.0, jumpCornerTh_2=15.0)
    param.scale *= 2
    types: list[FeatureType] = corner_types(scan, param)
    bounds: float = scanline.qo_getScanDataROI_vector(scan).xRange.max
    filtered = scanline.qo_lineDataRemoveOutlier(scan[0], dict(continuityTh=1.0, outlierTh=2.0))
    noise: NDArray[np.int32] = filtered.noisePts
    trees = scanline.SQO_featureTrees()
    grown = scanline.qo_cornerFeaturesGrowing(
        [], scanline.SQO_treeGrowParam(yDeviation_max=1.0, zDeviation_max=1.0, maxLineSkipNum=1,
                                       maxSkipDistance=1.0, minLTypeTreeLen=1.0,
                                       minVTypeTreeLen=1.0), trees=trees)
    lengths: list[int] = [tree.eLineIdx - tree.sLineIdx for tree in grown]
    turned: NDArray[np.float64] = scanline.eulerToRotationMatrixZYX(
        scanline.SQO_EulerAngles(roll=1.0, pitch=2.0, yaw=3.0))
    lists: list[NDArray[np.void]] = []
    scanline.qo_lineDataSmoothing(scan[0], 5, lineDataOut=lists)
    print(types, bounds, noise, lengths, turned, lists, scanline.position_dtype.itemsize,
          scanline.FEATURE_JUMP_FALL.name)


if __name__ == "__main__":
    main()
