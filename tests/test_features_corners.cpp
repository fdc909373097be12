#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "builders.h"
#include "line_features.h"

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
  const int count = static_cast<int>(corners.back().first) + 1;
  Line line = build::profileLine(count, 1.0, [&](double y) {
    std::size_t k = 1;
    while (corners[k].first < y) {
      ++k;
    }
    const auto [y0, z0] = corners[k - 1];
    const auto [y1, z1] = corners[k];
    return z0 + (z1 - z0) * (y - y0) / (y1 - y0);
  });
  for (int i = 0; i < count; ++i) {
    line[i].nPointIdx = i;
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
  struct Case {
    double refZ;
    Found expected;
  };
  // The stretch goes on flat at both its ends, whatever the height.
  const Case cases[] = {
      {95.0, {{2, 0}, {2, 24}, {1, 40}, {1, 70}}},
      {100.0, {{2, 0}, {1, 70}}},  // exactly 10 away
      {99.75, {{2, 0}, {2, 24}, {1, 40}, {1, 70}}},
  };
  for (const Case& c : cases) {
    Line line = block();
    Features features;
    qo_getLineCornerFeature_BQ(line.data(), size(line), 2, c.refZ, kArms, features);
    EXPECT_EQ(found(features), c.expected) << c.refZ;
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
    std::vector<int> stamps;
    Features features;
    qo_getLineCornerFeature_BQ(line.data(), size(line), 0, 10.0, param, features);
    for (const STesk3DPosition& sample : line) {
      stamps.push_back(sample.nPointIdx);
    }
    EXPECT_EQ(stamps, marks);
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

  for (int at : {0, 1}) {
    Line lone(3, build::sample(0, 0, 0));
    lone[at].pt3D.z = 10.0;
    result = {};
    ju_getLineCornerFeature_PSM(lone.data(), size(lone), 0, 80.0, param, &result);
    EXPECT_EQ(result.endings.size(), at == 0 ? 0U : 2U);
  }
  Line roof = through({{0, 50}, {20, 70}, {40, 50}});
  roof[20].nPointIdx = -3;
  ju_getLineCornerFeature_PSM(roof.data(), size(roof), 0, 80.0, param, &result);
  EXPECT_EQ(found(result.features), (Found{{FEATURE_CORNER_OTHER, -3}}));
}

TEST(ArmCorners, KeepEveryPeakAndStayInStretches) {
  Line line = block();
  line[24].nPointIdx = 99;
  Features features;
  ju_getLineCorerFeature(line, 1, kArms, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_JUMP_RISE, 24}, {FEATURE_JUMP_FALL, 40}}));
  SQO_cornerParam bothFlat = kArms;
  bothFlat.jumpCornerTh_1 = 95.0;
  bothFlat.jumpCornerTh_2 = 95.0;
  features.clear();
  ju_getLineCorerFeature(line, 1, bothFlat, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_CORNER_OTHER, 24}, {FEATURE_CORNER_OTHER, 40}}));
  SQO_cornerParam cut = kArms;
  cut.minEndingGap_z = 10.0;  // the flanks step by exactly as much
  features.clear();
  ju_getLineCorerFeature(line, 1, cut, features);
  EXPECT_TRUE(features.empty());
}

TEST(GapFeature, PairsRimsOnceWithinTheOpenRange) {
  // Three rims 16 and 16 apart: bends at 20, 36 and 52 between roofs.
  const Line roofs = through(
      {{0, 70}, {12, 78}, {20, 50}, {28, 78}, {36, 50}, {44, 78}, {52, 50}, {60, 78}, {70, 70}});
  const auto gapsOf = [&](double min, double max) {
    Line line = roofs;
    line[3].nPointIdx = -1;
    std::vector<SQO_basicFeatureGap> gaps;
    qo_getLineGapFeature(line, 6, kArms, {min, max}, gaps);
    EXPECT_EQ(line[3].nPointIdx, 3);
    Found result;
    for (const SQO_basicFeatureGap& gap : gaps) {
      EXPECT_EQ(gap.lineIdx, 6);
      result.emplace_back(gap.gapStart.nPointIdx, gap.gapEnd.nPointIdx);
    }
    return result;
  };
  EXPECT_EQ(gapsOf(15.0, 17.0), (Found{{20, 36}})) << "the second rim opens no gap";
  EXPECT_EQ(gapsOf(16.0, 17.0), Found{});
  EXPECT_EQ(gapsOf(15.0, 16.0), Found{});
}

TEST(StepJumps, PairBendsOfOneStep) {
  const auto jumpsOf = [](double gapY, double gapZ) {
    Line line = block();
    Features features;
    qo_getLineJumpFeature_cornerMethod(line.data(), size(line), 1,
                                       {gapY, gapZ, 3.0, 30.0, 30.0, 60.0}, features);
    for (const SQO_basicFeature1D& f : features) {
      EXPECT_EQ(f.featureValue, 90.0);
    }
    return found(features);
  };
  EXPECT_EQ(jumpsOf(4.5, 39.0), (Found{{FEATURE_JUMP_RISE, 24}, {FEATURE_JUMP_FALL, 40}}));
  EXPECT_EQ(jumpsOf(4.0, 39.0), Found{}) << "bends exactly the gap apart";
  EXPECT_EQ(jumpsOf(4.5, 40.0), Found{}) << "exactly as high as the limit";
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
  // A bowl between two flat shoulders, and the same without the shoulders.
  const auto arcsOf = [](bool shoulders, STeskRangeD width, double turn) {
    Line line = build::profileLine(41, 1.0, [](double y) {
      const double d = std::min(10.0, std::abs(y - 20.0));
      return 100.0 + 0.25 * d * d;
    });
    if (!shoulders) {
      line.erase(line.begin() + 31, line.end());
      line.erase(line.begin(), line.begin() + 10);
    }
    std::vector<SJU_segFeature> arcs;
    ju_getRingArcFeature(line, 5, {0.0, 50.0, 1.5, turn, 0.0, 0.0}, width, arcs);
    return arcs;
  };
  const auto inside = arcsOf(true, {0.0, 100.0}, 90.0);
  ASSERT_EQ(inside.size(), 1U);
  EXPECT_GT(inside[0].startPtIdx, 10);
  EXPECT_LT(inside[0].endPtIdx, 30);
  const double chord = inside[0].endPt.y - inside[0].startPt.y;
  EXPECT_EQ(arcsOf(true, {chord, chord}, 90.0).size(), 1U) << "both limits are included";
  EXPECT_TRUE(arcsOf(true, {0.0, 100.0}, inside[0].segValue).empty()) << "the turn is not";
  const auto filling = arcsOf(false, {0.0, 100.0}, 90.0);
  ASSERT_EQ(filling.size(), 1U);
  EXPECT_EQ(filling[0].startPtIdx, 0);
  EXPECT_EQ(filling[0].endPtIdx, 20);
}

}  // namespace
