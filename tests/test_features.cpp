#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <tuple>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"

namespace {

using build::Found;
using build::found;
using build::Line;

// Segments begin with a 6 and end with a 7. The general search cuts them at holes and at steps
// above 5, and joins them across less than 3 in y. The other one cuts them at steps of 5 only,
// ignores samples above 80, and finds no segment on a line whose only sample is the first.
TEST(CornerFeatures, EndingsAreAppended) {
  const auto line = [](const std::vector<double>& z) { return build::lineOfZ(z); };
  const std::tuple<Line, Found, Found> cases[] = {
      {line({}), {}, {}},
      {line({0, 0.0001, -3}), {}, {}},
      {line({0, 10, 0}), {{6, 1}, {7, 1}}, {{6, 1}, {7, 1}}},
      {line({10, 0, 0}), {{6, 0}, {7, 0}}, {}},
      {line({10, 15}), {{6, 0}, {7, 1}}, {{6, 0}, {7, 0}, {6, 1}, {7, 1}}},
      {line({15.5, 10}), {{6, 0}, {7, 0}, {6, 1}, {7, 1}}, {{6, 0}, {7, 0}, {6, 1}, {7, 1}}},
      {line({10, 0, 10}), {{6, 0}, {7, 2}}, {{6, 0}, {7, 2}}},
      {line({10, 0, 0, 10}), {{6, 0}, {7, 0}, {6, 3}, {7, 3}}, {{6, 0}, {7, 3}}},
      {line({15, 0, 10}), {{6, 0}, {7, 0}, {6, 2}, {7, 2}}, {{6, 0}, {7, 0}, {6, 2}, {7, 2}}},
      {line({9, 0, 9, 9, 0, 9, 0, 0, 9}), {{6, 0}, {7, 5}, {6, 8}, {7, 8}}, {{6, 0}, {7, 8}}},
      {line({80.25, 80, 81}), {{6, 0}, {7, 2}}, {{6, 1}, {7, 1}}},
  };
  for (auto [samples, general, psm] : cases) {
    constexpr SQO_cornerParam kParam = {3.0, 5.0, 3.0, 45.0, 60.0, 30.0};
    const int size = static_cast<int>(samples.size());
    SQO_lineFeature result = {};
    qo_getLineCornerFeature(samples.data(), size, 7, kParam, &result);
    ju_getLineCornerFeature_PSM(samples.data(), size, 8, 80.0, kParam, &result);
    const std::size_t first = general.size();
    general.insert(general.end(), psm.begin(), psm.end());
    ASSERT_TRUE(found(result.endings) == general && result.lineIdx == 8) << build::text(samples);
    for (std::size_t i = 0; i < general.size(); ++i) {
      const auto& [type, at2D, at, value] = result.endings[i];
      EXPECT_TRUE(at2D.x == (i < first ? 7 : 8) && at.y == at2D.y && value == 0.0) << i;
    }
  }
}

TEST(DownJumps, ReportGrowthOnTheSampleBefore) {
  Line line = build::lineOfZ({10, 15, 0.0001, 0, 20.25, 2, 0.0});
  line[0].nPointIdx = -1;
  std::vector<SQO_basicFeature1D> features;
  qo_getLineDownJumps(line.data(), 1, 3, 5.0, features);
  EXPECT_EQ(line[0].nPointIdx, -1) << "a line of one sample is unchanged";
  qo_getLineDownJumps(line.data(), 7, 3, 5.0, features);
  qo_getLineDownJumps(line.data(), 2, 4, 4.5, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_JUMP_RISE, 2}, {FEATURE_JUMP_RISE, 0}}));
  const auto& [type, at2D, at, value] = features[0];
  EXPECT_TRUE(at2D.x == 3 && at.y == 2.0 && value == 0.0);
  EXPECT_EQ(build::stampsOf(line), (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
}

// Tubes with a narrow hole, two samples apart. The last one is reported only if it was joined.
TEST(UpperSemiCircles, JoinNeighboursAcrossALabel) {
  const std::tuple<std::vector<int>, Found> cases[] = {
      {{0, 0, 0, 0, 0, 0}, {{0, 3}, {6, 9}, {12, 15}}},
      {{1, 2, -1, -1, 3, 4}, {{0, 3}, {6, 9}, {12, 15}}},
      {{1, 1, 2, 2, 0, 0}, {{0, 9}, {12, 15}}},
      {{0, 0, 9, 9, 9, 9}, {{0, 3}, {6, 15}}}};
  for (const auto& [labels, expected] : cases) {
    Line line = build::lineOfZ({5, 0, 4, 5, 0, 0, 5, 0, 4, 5, 0, 0, 5, 0, 4, 5, 0, 0, 5, 0, 4, 5});
    cv::Mat image = cv::Mat::zeros(static_cast<int>(line.size()), 9, CV_32S);
    for (std::size_t i = 0; i < labels.size(); ++i) {
      image.at<int>(static_cast<int>(i / 2 * 6 + 4 + i % 2), 7) = labels[i];
    }
    std::vector<SQO_featureSemiCircle> arcs;
    qo_getLineUpperSemiCircleFeature(line.data(), 22, 7, 2.0, {9, 9, 9, 2.5}, arcs, image);
    Found found;
    for (const SQO_featureSemiCircle& arc : arcs) {
      found.emplace_back(arc.startPtIdx, arc.endPtIdx);
    }
    EXPECT_EQ(found, expected);
  }
}

// A ridge and the level samples after it, then the ridge alone.
TEST(RingArcs, LimitsOfTurnAndChord) {
  Line line = build::profileLine(28, 1.0, [](double y) {
    const double d = std::min(10.0, std::abs(y - 7.0));
    return 100.0 + 0.25 * d * d;
  });
  const auto arcsOf = [&line](STeskRangeD width, double turn) {
    std::vector<SJU_segFeature> arcs;
    ju_getRingArcFeature(line, 5, {0.0, 50.0, 1.5, turn, 0.0, 0.0}, width, arcs);
    return arcs;
  };
  const SJU_segFeature inside = arcsOf({0.0, 100.0}, 90.0).at(0);
  EXPECT_TRUE(inside.startPtIdx == 1 && inside.endPtIdx == 16);
  const double dy = inside.endPt.y - inside.startPt.y;
  const double dz = inside.endPt.z - inside.startPt.z;
  const double chord = std::sqrt(dy * dy + dz * dz);
  EXPECT_EQ(arcsOf({chord, chord}, 90.0).size(), 1U) << "both limits are inclusive";
  EXPECT_TRUE(arcsOf({0.0, 100.0}, inside.segValue).empty()) << "the limit of the turn is strict";
  line.erase(line.begin() + 18, line.end());
  const SJU_segFeature filling = arcsOf({0.0, 100.0}, 90.0).at(0);
  EXPECT_TRUE(filling.startPtIdx == 0 && filling.endPtIdx == 17 && line[17].nPointIdx == 17);
}

// Edges at y = 4 and 8, which are 3 apart in x.
TEST(LineGaps, LimitsOfTheWidthAreStrict) {
  Line line = build::profileLine(
      13, 1.0, [](double y) { return 50.0 + std::max(2.0, std::abs(y - 6.0)); }, 2.0);
  line[8].pt3D.x = 5.0;
  const auto gapsOf = [&line](STeskRangeD width) {
    std::vector<SQO_basicFeatureGap> gaps;
    qo_getLineGapFeature(line, 7, {0.0, 9.0, 1.0, 40.0, 0.0, 0.0}, width, gaps);
    return gaps;
  };
  EXPECT_TRUE(gapsOf({5.0, 9.0}).empty() && gapsOf({1.0, 5.0}).empty());
  const SQO_basicFeatureGap gap = gapsOf({4.75, 5.25}).at(0);
  EXPECT_TRUE(gap.lineIdx == 7 && gap.gapStart.nPointIdx == 4 && gap.gapEnd.nPointIdx == 8);
}

}  // namespace
