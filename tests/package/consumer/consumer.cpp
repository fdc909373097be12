// Calls something of every header, over an interface of plain records, std::vector and cv types.
#include <calibration.h>
#include <conditioning.h>
#include <geometry.h>
#include <line_features.h>
#include <scan_bounds.h>
#include <trees.h>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using Line = std::vector<STesk3DPosition>;

// A table at z = 100 with a block of height 20 on it, 1.0 between samples and between lines.
std::vector<Line> blockScan() {
  std::vector<Line> scan;
  for (int l = 0; l < 20; ++l) {
    Line line;
    for (int i = 0; i < 100; ++i) {
      line.push_back({i, {double(l), double(i), i >= 40 && i < 60 ? 80.0 : 100.0}});
    }
    scan.push_back(line);
  }
  return scan;
}

int failures = 0;

void expect(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "wrong: %s\n", what);
    ++failures;
  }
}

bool isNear(double value, double expected) {
  return std::fabs(value - expected) < 1e-3;
}

void useGeometry() {
  expect(compute2DLen({0, 0, 0}, {3, 4, 9}) == 5.0, "compute2DLen");
  const std::vector<cv::Point_<double>> points = {{0, 1}, {1, 2}, {2, 5}, {3, 10}};
  double a = 0;
  double b = 0;
  double c = 0;
  double mse = 0;
  double maxError = 0;
  expect(leastSquareParabolaFitEigen(points, a, b, c, mse, maxError), "parabola found");
  expect(isNear(a, 1) && isNear(b, 0) && isNear(c, 1), "parabola");
}

void useCalibration() {
  std::vector<double> plane;
  teskCaculateLaserPlane({{0, 0, 4}, {1, 0, 6}, {0, 1, 7}, {1, 1, 9}}, plane);
  expect(plane.size() == 4 && isNear(plane[0], 2) && isNear(plane[1], 3), "laser plane");
}

void useScan() {
  std::vector<Line> scan = blockScan();
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  expect(box.yRange.max == 99.0 && box.zRange.min == 80.0, "bounds");

  std::vector<SQO_lineFeature> features;
  for (Line& line : scan) {
    Line smooth;
    qo_lineDataSmoothing(line, 1, smooth);
    expect(smooth.size() == line.size() && smooth[50].pt3D.z == 80.0, "smoothing");
    SQO_lineFeature found{};
    const SQO_cornerParam param = {5.0, 30.0, 3.0, 45.0, 45.0, 20.0};
    qo_getLineCornerFeature(smooth.data(), int(smooth.size()), int(features.size()), param, &found);
    features.push_back(found);
  }
  std::vector<SQO_featureTree> trees;
  qo_getFeatureGrowingTrees(features, trees, {2.0, 2.0, 5, 5.0, 10.0, 10.0});
  expect(!trees.empty() && trees[0].treeNodes.size() == scan.size(), "tree along the edge");
}

}  // namespace

int main() {
  useGeometry();
  useCalibration();
  useScan();
  return failures;
}
