#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "grid_lines.h"
#include "plain_flat_peaks.h"
#include "plain_local_peaks.h"
#include "plain_lv_shapes.h"
#include "plain_right_angles.h"

namespace {

using build::Line;
using build::text;
using Features = std::vector<SQO_basicFeature1D>;

TEST(LVFeature, AgreesWithThePlainRules) {
  build::GridLines grid(3);
  const std::vector<double> shapes[] = {{-12, -4, -2, -1, -0.5, 0, 1, 2, 4, 12},
                                        {-45, -4, -3, -3, 0, 3, 3, 4, 45},
                                        {-8, -6, 0, 6, 8}};
  for (int round = 0; round < 6000; ++round) {
    const Line line = grid.line(40, shapes[round % 3]);
    SQO_lineFeature found = {-3, {}, {{0, {7, 0}, {}, 0.0}}};
    for (int k = grid.below(4); k > 0; --k) {
      found.features.push_back(
          {FEATURE_JUMP_RISE + grid.below(3), {7, k}, {0, 5.0 * grid.below(20), 0}, 0});
    }
    const SQO_slopeParam slope = {0.0, grid.pick({0, 1, 4, 6}), grid.pick({0.25, 3, 4, 8, 100}),
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
    const double tol = grid.pick({-1, 0, 0.5, 1, 2, 4});
    for (SQO_lineRightAngleParam& kind : kinds) {
      kind = {grid.below(2) > 0 ? arm : grid.pick({1, 2, 3, 5, 1e9}),
              grid.below(2) > 0 ? arm : grid.pick({1, 2, 3, 5, 1e9}),
              grid.below(2) > 0 ? tol : grid.pick({0, 0.5, 1, 3})};
    }
    SQO_lineFeature found = {-3, {{0, {7, 0}, {}, 0.0}}, {}};
    SQO_lineFeature plain = found;
    Line sameLine = line;
    sameLine.insert(sameLine.begin(), build::sample(0.0, 0.0, 60.0));  // Not part of the line.
    const int size = line.empty() ? -5 : static_cast<int>(line.size());
    qo_getLineRigthAngleFeature(sameLine.data() + 1, size, 7, kinds[0], kinds[1], kinds[2],
                                kinds[3], &found);
    sameLine.erase(sameLine.begin());
    plain::rightAngles(line, 7, kinds, plain.features);
    ASSERT_EQ(text(found.features), text(plain.features)) << text(line);
    ASSERT_EQ(text(sameLine), text(line)) << "only read";
    ASSERT_TRUE(found.lineIdx == -3 && found.endings.empty()) << "left to the caller";
  }
}

/// What the features of a call are appended to.
const Features kBefore = {{FEATURE_V, {7, 3}, {1.0, 2.0, 3.0}, 0.0}};

TEST(LineLocalPeaks, AgreeWithThePlainRules) {
  build::GridLines grid(1);
  for (int round = 0; round < 4000; ++round) {
    Line line = grid.line(30, {-2, -1, 0, 1, 2});
    if (round % 40 == 0) {  // Most searches go far, past peaks that rise or valleys that fall.
      line = grid.line(1500, {grid.pick({-4, -2}), 0, 4.5});
      for (STesk3DPosition& sample : line) {
        const double z = sample.pt3D.z < 1e9 ? sample.pt3D.z : 0.0;
        sample.pt3D.z = z > 0.0 && round % 80 == 0 ? 9000.0 - z : z;
      }
    }
    Line plainLine = line;
    const double scale = grid.pick({0.0, 1.0, 2.0, 2.5, 4.0, 8.0, 100.0, 300.0, 1e9, NAN});
    Features peaks = kBefore;
    Features valleys = kBefore;
    Features plainPeaks = kBefore;
    Features plainValleys = kBefore;
    qo_getLineLocalPeaks(line.data(), static_cast<int>(line.size()), 7, scale, valleys, peaks);
    plain::localPeaks(plainLine, 7, scale, plainValleys, plainPeaks);
    ASSERT_EQ(text(peaks), text(plainPeaks)) << text(plainLine);
    ASSERT_EQ(text(valleys), text(plainValleys)) << text(plainLine);
    ASSERT_EQ(text(line), text(plainLine));
  }
}

TEST(FlatLineLocalPeaks, AgreeWithThePlainRules) {
  build::GridLines grid(2);
  const std::vector<double> shapes[] = {{-6, -2, -0.75, -0.5, -0.25, 0, 0, 0.25, 0.5, 0.75, 2, 6},
                                        {-0.75, 0, 0, 0, 0, 0, 0, 0.75},
                                        {-4, 0, 0, 0, 0, 0, 0, 4}};
  for (int round = 0; round < 6000; ++round) {
    Line line = grid.line(50, shapes[round % 3]);
    Line plainLine = line;
    const double window = grid.pick({0.0, 1.0, 2.0, 2.0, 3.0, 1e9});
    const double jump = grid.pick({0.5, 1.0, 2.0, 2.0, 4.0});
    const double width = grid.pick({1.0, 2.0, 4.0, 4.0, 6.0, 9.0, 1e9});
    Features peaks = kBefore;
    Features plainPeaks = kBefore;
    qo_getFlatLineLocalPeaks_vector(line, 7, window, jump, width, peaks);
    plain::flatLinePeaks(plainLine, 7, window, jump, width, plainPeaks);
    ASSERT_EQ(text(peaks), text(plainPeaks)) << window << ' ' << jump << ' ' << width;
    ASSERT_EQ(text(line), text(plainLine)) << window << ' ' << jump << ' ' << width;
  }
}

}  // namespace
