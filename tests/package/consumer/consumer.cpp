// Hands plain records, std::vector and cv types over the boundary of the library, both ways.
#include <geometry.h>
#include <trees.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include <scanline/scanline.h>

static_assert(kOwnGeometry && kOwnTrees, "the headers of the program are hidden");
static_assert(SCANLINE_VERSION >= 100, "the version is older than 0.1.0");

namespace {

/// The edges of a table at z = 100 with a block of height 20 on it.
std::vector<SQO_featureTree> blockEdges(int lineCount) {
  std::vector<SQO_lineFeature> features(lineCount);
  for (int l = 0; l < lineCount; ++l) {
    std::vector<STesk3DPosition> line;
    for (int i = 0; i < 100; ++i) {
      line.push_back({i, {double(l), double(i), i >= 40 && i < 60 ? 80.0 : 100.0}});
    }
    std::vector<STesk3DPosition> smooth;
    qo_lineDataSmoothing(line, 1, smooth);
    qo_getLineCornerFeature(smooth.data(), int(smooth.size()), l,
                            {5.0, 30.0, 3.0, 45.0, 45.0, 20.0}, &features[l]);
  }
  std::vector<SQO_featureTree> trees;
  qo_getFeatureGrowingTrees(features, trees, {2.0, 2.0, 5, 5.0, 10.0, 10.0});
  return trees;
}

}  // namespace

int main() {
  const std::vector<SQO_featureTree> edges = blockEdges(20);
  std::vector<double> plane;
  teskCaculateLaserPlane({{0, 0, 4}, {1, 0, 6}, {0, 1, 7}, {1, 1, 9}}, plane);
  cv::Mat distances;
  qo_distanceTrans(cv::Mat(5, 5, CV_32F, cv::Scalar(9.0)), distances, 0);
  const bool isRight[] = {!edges.empty() && edges[0].treeNodes.size() == 20,
                          plane.size() == 4 && std::fabs(plane[0] - 2.0) < 1e-3,
                          distances.rows == 5 && distances.at<float>(2, 2) == 9.0F};
  for (const bool right : isRight) {
    std::puts(right ? "right" : "wrong");
  }
  return static_cast<int>(std::count(std::begin(isRight), std::end(isRight), false));
}
