/**
 * @file
 * Traces where a box meets a tilted table: calibration, levelling, corners, trees.
 */

#include <cstdio>
#include <vector>

#include <scanline/scanline.h>

namespace {

using Scan = std::vector<std::vector<STesk3DPosition>>;

/// A table that rises along x and y, 500 mm from the sensor, with a box 40 mm high if asked for.
Scan makeScan(bool hasBox) {
  Scan scan(200, std::vector<STesk3DPosition>(400));
  for (int l = 0; l < 200; ++l) {
    for (int i = 0; i < 400; ++i) {
      const double x = 0.5 * l;
      const double y = 0.25 * i;
      const bool isOnBox = hasBox && x > 25.0 && x < 75.0 && y > 30.0 && y < 70.0;
      scan[l][i] = {i, {x, y, 500.0 - 0.03 * x - 0.02 * y - (isOnBox ? 40.0 : 0.0)}};
    }
  }
  return scan;
}

/// The plane that all samples of a scan show. The last limit is a second one of y.
SQO_planeCalibPara calibrate(Scan& bareTable) {
  constexpr double kAll = 1e9;
  return qo_getPlaneCalibPara2_ROI(bareTable, {{-kAll, kAll}, {-kAll, kAll}, {0.0, kAll}});
}

}  // namespace

int main() {
  Scan bareTable = makeScan(false);
  const SQO_planeCalibPara plane = calibrate(bareTable);

  SQO_cornerParam corner = {};
  corner.minEndingGap = 2.0;
  corner.minEndingGap_z = 60.0;
  corner.scale = 2.0;
  corner.cornerTh = 30.0;
  corner.jumpCornerTh_1 = 60.0;
  corner.jumpCornerTh_2 = 30.0;

  Scan scan = makeScan(true);
  std::vector<SQO_lineFeature> features(scan.size());
  for (std::size_t l = 0; l < scan.size(); ++l) {
    lineDataRT_vector(scan[l], plane.levelMatrix, 0.0);
    std::vector<STesk3DPosition> smooth;
    qo_lineSegSmoothing(scan[l], 1.0, 5.0, 5, smooth);
    qo_getLineCornerFeature(smooth.data(), static_cast<int>(smooth.size()), static_cast<int>(l),
                            corner, &features[l]);
  }

  SQO_treeGrowParam grow = {};
  grow.yDeviation_max = 2.0;
  grow.zDeviation_max = 5.0;
  grow.maxLineSkipNum = 5;
  grow.maxSkipDistance = 3.0;
  grow.minLTypeTreeLen = 10.0;
  grow.minVTypeTreeLen = 10.0;
  std::vector<SQO_featureTree> trees;
  qo_getFeatureGrowingTrees(features, trees, grow);

  for (const SQO_featureTree& tree : trees) {
    const STesk3DPoint& first = tree.treeNodes.front().jumpPos;
    const STesk3DPoint& last = tree.treeNodes.back().jumpPos;
    std::printf("edge of %zu nodes from (%.1f, %.1f, %.1f) to (%.1f, %.1f, %.1f)\n",
                tree.treeNodes.size(), first.x, first.y, first.z, last.x, last.y, last.z);
  }
}
