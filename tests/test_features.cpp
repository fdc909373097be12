#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"

namespace {

using build::Found;
using build::found;
using build::Line;

// Runs break at steps above 5 and join below 3.
constexpr SQO_cornerParam kParam = {3.0, 5.0, 3.0, 45.0, 60.0, 30.0};

int size(const Line& line) {
  return static_cast<int>(line.size());
}

/// The endings of segments from a first to a last sample.
Found endingsOf(const std::vector<std::pair<int, int>>& segments) {
  Found endings;
  for (const auto& [first, last] : segments) {
    endings.emplace_back(FEATURE_SEG_START, first);
    endings.emplace_back(FEATURE_SEG_END, last);
  }
  return endings;
}

TEST(CornerFeature, EndingsAreAppended) {
  const std::tuple<const char*, Line, Found> cases[] = {
      {"no samples", {}, {}},
      {"only holes, 0.0001 is one", build::lineOfZ({0.0, 0.0001, -3.0}), {}},
      {"one sample", build::lineOfZ({0, 10, 0}), endingsOf({{1, 1}})},
      {"a step of exactly the limit", build::lineOfZ({10, 15}), endingsOf({{0, 1}})},
      {"a step never rejoins", build::lineOfZ({10, 15.5}, 0, 0), endingsOf({{0, 0}, {1, 1}})},
      {"a hole narrower than the gap", build::lineOfZ({10, 0, 10}), endingsOf({{0, 2}})},
      {"a hole as wide", build::lineOfZ({10, 0, 0, 10}), endingsOf({{0, 0}, {3, 3}})},
      {"a hole with a step", build::lineOfZ({10, 0, 15}), endingsOf({{0, 0}, {2, 2}})},
      {"a chain of holes", build::lineOfZ({9, 0, 10, 11, 0, 12, 0, 0, 12}),
       endingsOf({{0, 5}, {8, 8}})},
  };
  for (auto [name, line, expected] : cases) {
    SQO_lineFeature result = {};
    qo_getLineCornerFeature(line.data(), size(line), 7, kParam, &result);
    EXPECT_EQ(found(result.endings), expected) << name;
    EXPECT_EQ(result.lineIdx, 7) << name;
    qo_getLineCornerFeature(line.data(), size(line), 8, kParam, &result);
    EXPECT_EQ(result.endings.size(), 2 * expected.size()) << name;
    EXPECT_TRUE(expected.empty() || result.endings.back().jumpPos2D.x == 8) << name;
    EXPECT_TRUE(expected.empty() || result.endings[0].jumpPos.z == line[expected[0].second].pt3D.z);
  }
}

// Holes do not end a segment; a line whose only sample is the first has none.
TEST(PsmCorners, EndingsBelowAHeight) {
  const std::pair<Line, Found> cases[] = {
      {build::lineOfZ({80.25, 10, 0, 0, 10, 15, 80, 80, 0, 0, 80, 81}),
       endingsOf({{1, 4}, {5, 5}, {6, 10}})},
      {build::lineOfZ({10, 0, 0}), {}},
      {build::lineOfZ({0, 10, 0}), endingsOf({{1, 1}})}};
  for (auto [line, expected] : cases) {
    SQO_lineFeature result = {};
    ju_getLineCornerFeature_PSM(line.data(), size(line), 4, 80.0, kParam, &result);
    EXPECT_EQ(found(result.endings), expected);
    EXPECT_EQ(result.lineIdx, 4);
  }
}

TEST(DownJumps, ReportGrowthOnTheSampleBefore) {
  Line line = build::lineOfZ({10, 15, 0.0001, 0, 20.25, 2, 0.0});
  line[0].nPointIdx = -1;
  std::vector<SQO_basicFeature1D> features;
  qo_getLineDownJumps(line.data(), 1, 3, 5.0, features);
  EXPECT_EQ(line[0].nPointIdx, -1) << "too short a line is left alone";
  qo_getLineDownJumps(line.data(), size(line), 3, 5.0, features);
  EXPECT_EQ(found(features), (Found{{FEATURE_JUMP_RISE, 2}}));
  EXPECT_EQ(build::stampsOf(line), (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
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
  EXPECT_EQ(std::make_pair(inside[0].startPtIdx, inside[0].endPtIdx), std::make_pair(11, 29));
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
