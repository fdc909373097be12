/**
 * @file
 * Follows a gap between two plates while lines arrive one by one, as from a running sensor.
 */

#include <cmath>
#include <cstdio>
#include <vector>

#include <scanline/scanline.h>

namespace {

constexpr int kLines = 120;

/// A line across two plates. The gap between them is 4 mm wide and 8 mm deep, and drifts in y.
std::vector<STesk3DPosition> nextLine(int l) {
  std::vector<STesk3DPosition> line(400);
  const double x = 0.5 * l;
  const double middle = 50.0 + 0.1 * x;
  for (int i = 0; i < 400; ++i) {
    const double y = 0.25 * i;
    line[i] = {i, {x, y, std::abs(y - middle) < 2.0 ? 308.0 : 300.0}};
  }
  return line;
}

double widthOf(const SQO_basicFeatureGap& gap) {
  return gap.gapEnd.pt3D.y - gap.gapStart.pt3D.y;
}

}  // namespace

int main() {
  SQO_cornerParam corner = {};
  corner.minEndingGap_z = 30.0;
  corner.scale = 2.0;
  corner.cornerTh = 40.0;
  const STeskRangeD width = {2.0, 8.0};

  SQO_treeGrowParam grow = {};
  grow.yDeviation_max = 2.0;
  grow.zDeviation_max = 2.0;
  grow.maxLineSkipNum = 5;
  grow.maxSkipDistance = 3.0;
  grow.minLTypeTreeLen = 10.0;
  grow.minVTypeTreeLen = 10.0;

  // The list of trees is all that is kept from line to line.
  std::vector<SQO_gapFeatureTree> trees;
  for (int l = 0; l < kLines; ++l) {
    std::vector<STesk3DPosition> line = nextLine(l);
    std::vector<SQO_basicFeatureGap> gaps;
    qo_getLineGapFeature(line, l, corner, width, gaps);
    qo_lineGapsGrowing(l, l + 1 == kLines, gaps, trees, grow);
  }

  for (const SQO_gapFeatureTree& tree : trees) {
    double mean = 0.0;
    for (const SQO_basicFeatureGap& gap : tree.treeNodes) {
      mean += widthOf(gap) / static_cast<double>(tree.treeNodes.size());
    }
    std::printf("gap on lines %d to %d, %.2f mm wide\n", tree.sLineIdx, tree.eLineIdx, mean);
  }
}
