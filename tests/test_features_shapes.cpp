#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "grid_lines.h"
#include "plain_lv_shapes.h"
#include "plain_right_angles.h"

namespace {

using build::Line;
using build::text;

TEST(LVFeature, AgreesWithThePlainRules) {
  build::GridLines grid(3);
  const std::vector<double> shapes[] = {
      {-12, -4, -2, -1, 0, 1, 2, 4, 12}, {-45, -4, -3, -3, 0, 3, 3, 4, 45}, {-8, -6, 0, 6, 8}};
  for (int round = 0; round < 6000; ++round) {
    const Line line = grid.line(40, shapes[round % 3]);
    SQO_lineFeature found = {-3, {}, {{0, {7, 0}, {}, 0.0}}};
    for (int k = grid.below(4); k > 0; --k) {
      found.features.push_back(
          {FEATURE_JUMP_RISE + grid.below(3), {7, k}, {0, 5.0 * grid.below(20), 0}, 0});
    }
    const SQO_slopeParam slope = {0.0, grid.pick({0, 1, 4, 6}), grid.pick({3, 4, 8, 100}),
                                  grid.pick({1, 2, 3})};
    const SQO_VFeatureParam v = {grid.pick({0, 1, 4, 8, 100}), grid.pick({0, 4, 9, 100, 1e9})};
    SQO_lineFeature plain = found;
    plain::lvShapes(line, 7, slope, v, plain);
    Line sameLine = line;
    qo_getLineLVFeature(sameLine.data(), static_cast<int>(line.size()), 7, slope, v, &found);
    ASSERT_EQ(text(found.features), text(plain.features)) << text(line);
    ASSERT_EQ(text(found.endings), text(plain.endings)) << text(line);
    ASSERT_EQ(text(sameLine), text(line)) << "only read";
    ASSERT_EQ(found.lineIdx, -3) << "left to the caller";
  }
}

TEST(RightAngleFeature, AgreesWithThePlainRules) {
  build::GridLines grid(4);
  const std::vector<double> shapes[] = {{-4, -1, 0, 0, 0, 1, 4}, {-1, -0.5, 0, 0.5, 1}};
  for (int round = 0; round < 6000; ++round) {
    const Line line = grid.line(30, shapes[round % 2]);
    plain::RightAngleKinds kinds;
    const double arm = grid.pick({1, 2, 3, 4, 6});
    const double tol = grid.pick({0, 0.5, 1, 2, 4});
    for (SQO_lineRightAngleParam& kind : kinds) {
      kind = {grid.below(2) > 0 ? arm : grid.pick({1, 2, 3, 5, 1e9}),
              grid.below(2) > 0 ? arm : grid.pick({1, 2, 3, 5, 1e9}),
              grid.below(2) > 0 ? tol : grid.pick({0, 0.5, 1, 3})};
    }
    SQO_lineFeature found = {-3, {{0, {7, 0}, {}, 0.0}}, {}};
    SQO_lineFeature plain = found;
    Line sameLine = line;
    qo_getLineRigthAngleFeature(sameLine.data(), static_cast<int>(line.size()), 7, kinds[0],
                                kinds[1], kinds[2], kinds[3], &found);
    plain::rightAngles(line, 7, kinds, plain.features);
    ASSERT_EQ(text(found.features), text(plain.features)) << text(line);
    ASSERT_EQ(text(sameLine), text(line)) << "only read";
    ASSERT_TRUE(found.lineIdx == -3 && found.endings.empty()) << "left to the caller";
  }
}

}  // namespace
