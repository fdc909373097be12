#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"

// The corner family beside the basic search: what each variant does differently.

namespace {

using build::Found;
using build::found;
using build::Line;
using Features = std::vector<SQO_basicFeature1D>;

constexpr int kStart = 0x100000;
constexpr int kEnd = 0x200000;

int size(const Line& line) {
  return static_cast<int>(line.size());
}

/// A profile through corner points (y, z), sampled at unit steps in y.
Line through(const std::vector<std::pair<double, double>>& corners) {
  Line line = {build::sample(0.0, 0.0, corners[0].second)};
  for (std::size_t k = 1; k < corners.size(); ++k) {
    const auto [y0, z0] = corners[k - 1];
    const auto [y1, z1] = corners[k];
    for (int step = 1; step <= y1 - y0; ++step) {
      const double z = z0 + (z1 - z0) * step / (y1 - y0);
      line.push_back(build::sample(0.0, y0 + step, z, size(line)));
    }
  }
  return line;
}

/// A block of greater z whose flanks fall over four samples: bends at 20, 24, 40 and 44.
Line block() {
  return through({{0, 50}, {20, 50}, {24, 90}, {40, 90}, {44, 50}, {70, 50}});
}

// Flat below 30 degrees, steep above 60.
constexpr SQO_cornerParam kArms = {100.0, 100.0, 3.0, 30.0, 30.0, 60.0};

TEST(MaskedCorners, SeeOneLabelAndNoNeighbourAcrossItsGaps) {
  Line line = block();
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = sample.pt3D.y < 32.0 ? 5 : 6;
  }
  constexpr SQO_cornerParam steep = {0.0, 0.0, 3.0, 30.0, 60.0, 30.0};
  Features features;
  qo_maskData_getLineCornerFeature(line, 2, 5, steep, features);
  ASSERT_EQ(found(features), (Found{{FEATURE_JUMP_RISE, 24}}));
  EXPECT_NEAR(features[0].featureValue, 180.0 / 3.141592653589793 * std::atan(10.0), 1e-9);
  EXPECT_EQ(line[24].nPointIdx, 5);
  qo_maskData_getLineCornerFeature(line, 2, 7, steep, features);
  EXPECT_EQ(features.size(), 1U) << "no sample has the label";
  // Four scales from the corner on there is nothing: it has no forward slope, nor has any other.
  for (int i = 25; i < 70; ++i) {
    line[i].nPointIdx = i < 36 ? 0 : 5;
  }
  features.clear();
  qo_maskData_getLineCornerFeature(line, 2, 5, steep, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_JUMP_FALL, 40}}));
}

TEST(ReferenceCorners, NeedHeightAndMarkTheLine) {
  // The stretch goes on flat at both its ends, whatever the height; 100 is exactly 10 away.
  const Found ends = {{2, 0}, {1, 70}};
  const Found all = {{2, 0}, {2, 24}, {1, 40}, {1, 70}};
  for (const double refZ : {99.75, 100.0}) {
    Line line = block();
    Features features;
    qo_getLineCornerFeature_BQ(line.data(), size(line), 2, refZ, kArms, features);
    EXPECT_EQ(found(features), refZ == 100.0 ? ends : all) << refZ;
    EXPECT_EQ(line[24].nPointIdx, 24 | 0x20000);
    EXPECT_EQ(line[40].nPointIdx, 40 | 0x10000);
    EXPECT_EQ(line[0].nPointIdx, kStart);
    EXPECT_EQ(line[70].nPointIdx, 70 | kEnd);
  }
}

TEST(ReferenceCorners, StretchesBreakByStepsNotByHoles) {
  SQO_cornerParam param = kArms;
  param.minEndingGap = 4.0;
  param.minEndingGap_z = 5.0;
  const std::pair<Line, std::vector<int>> cases[] = {
      {build::lineOfZ({10, 0, 0, 10, 10}), {kStart, 0, 0, 0, kEnd}},
      {build::lineOfZ({10, 0, 0, 0, 10}), {kStart | kEnd, 0, 0, 0, kStart | kEnd}},
      {build::lineOfZ({10, 14.75, 19.75}), {kStart, kEnd, kStart | kEnd}},
      {build::lineOfZ({0.0001, -1, std::nan("")}), {0, 0, kStart | kEnd}},
  };
  for (auto [line, marks] : cases) {
    Features features;
    qo_getLineCornerFeature_BQ(line.data(), size(line), 0, 10.0, param, features);
    EXPECT_EQ(build::stampsOf(line), marks);
  }
}

TEST(GroundCorners, NeedGroundWithinReach) {
  // The bends at the block's feet open away from the sensor.
  for (const auto& [groundAt, dist, expected] :
       {std::tuple{10, 10.0, Found{{1, 20}}}, std::tuple{10, 9.75, Found{}},
        std::tuple{50, 6.0, Found{{2, 44}}}, std::tuple{50, 31.0, Found{{1, 20}, {2, 44}}}}) {
    Line line = block();
    std::vector<int> mask(line.size(), 0);
    mask[groundAt] = 1;
    Features features;
    qo_getLineContourCornerFeature_groundMask_BQ(line, mask, 3, dist, kArms, features);
    EXPECT_EQ(found(features), expected) << groundAt << " " << dist;
    EXPECT_TRUE(std::all_of(features.begin(), features.end(),
                            [](const auto& f) { return f.featureValue < 0.0; }));
  }
}

TEST(PsmCorners, BlankMarkAndKeepTheCallersStamps) {
  Line line = build::lineOfZ({10, 80.25, 0, 0, 10, 15, 80});
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = 7;
  }
  SQO_lineFeature result = {};
  const SQO_cornerParam param = {1.0, 5.0, 3.0, 30.0, 60.0, 30.0};
  ju_getLineCornerFeature_PSM(line.data(), size(line), 4, 80.0, param, &result);
  EXPECT_EQ(result.lineIdx, 4);
  EXPECT_EQ(found(result.endings), (Found{{6, 0}, {7, 4}, {6, 5}, {7, 5}, {6, 6}, {7, 6}}));
  EXPECT_EQ(line[1].pt3D.z, 0.0);
  EXPECT_EQ(line[6].pt3D.z, 80.0) << "not above the limit";
  EXPECT_EQ(line[0].nPointIdx, 7 | kStart);
  EXPECT_EQ(line[4].nPointIdx, 7 | kEnd);

  Line loneFirst = build::lineOfZ({10, 0, 0});
  ju_getLineCornerFeature_PSM(loneFirst.data(), 3, 0, 80.0, param, &result);
  EXPECT_EQ(result.endings.size(), 6U) << "nothing more";
  Line loneSecond = build::lineOfZ({0, 10, 0});
  ju_getLineCornerFeature_PSM(loneSecond.data(), 3, 0, 80.0, param, &result);
  EXPECT_EQ(result.endings.size(), 8U);
  Line roof = through({{0, 50}, {20, 70}, {40, 50}});
  roof[20].nPointIdx = -3;
  ju_getLineCornerFeature_PSM(roof.data(), size(roof), 0, 80.0, param, &result);
  EXPECT_EQ(found(result.features), (Found{{FEATURE_CORNER_OTHER, -3}}));
}

TEST(ArmCorners, KeepEveryPeakAndStayInStretches) {
  Line line = block();
  line[24].nPointIdx = 99;
  SQO_cornerParam bothFlat = kArms;
  bothFlat.jumpCornerTh_1 = 95.0;
  bothFlat.jumpCornerTh_2 = 95.0;
  SQO_cornerParam cut = kArms;
  cut.minEndingGap_z = 10.0;  // the flanks step by exactly as much
  const std::pair<SQO_cornerParam, Found> cases[] = {
      {kArms, {{FEATURE_JUMP_RISE, 24}, {FEATURE_JUMP_FALL, 40}}},
      {bothFlat, {{FEATURE_CORNER_OTHER, 24}, {FEATURE_CORNER_OTHER, 40}}},
      {cut, {}}};
  for (const auto& [param, expected] : cases) {
    Features features;
    ju_getLineCorerFeature(line, 1, param, features);
    EXPECT_EQ(found(features), expected);
  }
}

TEST(GapFeature, PairsRimsOnceWithinTheOpenRange) {
  // Three rims 16 apart in y and 12 in x: bends at 20, 36 and 52 between roofs.
  Line line = through(
      {{0, 70}, {12, 78}, {20, 50}, {28, 78}, {36, 50}, {44, 78}, {52, 50}, {60, 78}, {70, 70}});
  line[3].nPointIdx = -1;
  for (STesk3DPosition& sample : line) {
    sample.pt3D.x = 0.75 * sample.pt3D.y;
  }
  std::vector<SQO_basicFeatureGap> gaps;
  qo_getLineGapFeature(line, 6, kArms, {20.0, 21.0}, gaps);
  qo_getLineGapFeature(line, 6, kArms, {19.0, 20.0}, gaps);
  EXPECT_TRUE(gaps.empty());
  qo_getLineGapFeature(line, 6, kArms, {19.0, 21.0}, gaps);
  ASSERT_EQ(gaps.size(), 1U) << "the second rim opens no gap";
  EXPECT_TRUE(gaps[0].gapStart.nPointIdx == 20 && gaps[0].gapEnd.nPointIdx == 36);
  EXPECT_EQ(gaps[0].lineIdx, 6);
  EXPECT_EQ(line[3].nPointIdx, 3);
}

TEST(StepJumps, PairBendsOfOneStep) {
  const Found both = {{FEATURE_JUMP_RISE, 24}, {FEATURE_JUMP_FALL, 40}};
  // The bends are exactly 4.0 apart in y, and exactly 40 high.
  for (const auto& [gapY, gapZ, expected] :
       {std::tuple{4.5, 39.0, both}, std::tuple{4.0, 39.0, Found{}},
        std::tuple{4.5, 40.0, Found{}}}) {
    Line line = block();
    Features features;
    qo_getLineJumpFeature_cornerMethod(line.data(), size(line), 1,
                                       {gapY, gapZ, 3.0, 30.0, 30.0, 60.0}, features);
    EXPECT_EQ(found(features), expected) << gapY << " " << gapZ;
    EXPECT_TRUE(features.empty() || features[0].featureValue == 90.0);
  }
}

TEST(DownJumps, ReportGrowthOnTheSampleBefore) {
  Line line = build::lineOfZ({10, 15, 0.0001, 0, 20.25, 2, 0.0});
  Features features;
  qo_getLineDownJumps(line.data(), size(line), 3, 5.0, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_JUMP_RISE, 2}}));
  EXPECT_EQ(line[6].nPointIdx, 6) << "holes are stamped too";
  line[0].nPointIdx = -1;
  qo_getLineDownJumps(line.data(), 1, 3, 5.0, features);
  EXPECT_EQ(line[0].nPointIdx, -1) << "too short a line is left alone";
}

TEST(RingArcs, LimitsOfTurnAndChord) {
  // A bowl between two flat shoulders.
  Line line = build::profileLine(41, 1.0, [](double y) {
    const double d = std::min(10.0, std::abs(y - 20.0));
    return 100.0 + 0.25 * d * d;
  });
  const auto arcsOf = [&line](STeskRangeD width, double turn) {
    std::vector<SJU_segFeature> arcs;
    ju_getRingArcFeature(line, 5, {0.0, 50.0, 1.5, turn, 0.0, 0.0}, width, arcs);
    return arcs;
  };
  const auto inside = arcsOf({0.0, 100.0}, 90.0);
  ASSERT_EQ(inside.size(), 1U);
  EXPECT_GT(inside[0].startPtIdx, 10);
  EXPECT_LT(inside[0].endPtIdx, 30);
  const double chord = inside[0].endPt.y - inside[0].startPt.y;
  EXPECT_EQ(arcsOf({chord, chord}, 90.0).size(), 1U) << "both limits are included";
  EXPECT_TRUE(arcsOf({0.0, 100.0}, inside[0].segValue).empty()) << "the turn is not";
  line.erase(line.begin() + 31, line.end());
  line.erase(line.begin(), line.begin() + 10);
  const auto filling = arcsOf({0.0, 100.0}, 90.0);
  ASSERT_EQ(filling.size(), 1U) << "without shoulders";
  EXPECT_EQ(std::make_pair(filling[0].startPtIdx, filling[0].endPtIdx), std::make_pair(0, 20));
}

}  // namespace
