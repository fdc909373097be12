#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"

namespace {

using build::Found;
using build::found;
using build::Line;
using build::lineOfZ;

constexpr int kRise = FEATURE_JUMP_RISE;
constexpr int kFall = FEATURE_JUMP_FALL;
constexpr int kSlopeRise = FEATURE_SLOPE_RISE;
constexpr int kSlopeFall = FEATURE_SLOPE_FALL;

// Runs count from 5 on, steps and runs jump above 10, holes wider than 3 cut segments.
constexpr SQO_slopeParam kSlope = {0.0, 5.0, 10.0, 3.0};
constexpr SQO_VFeatureParam kNoV = {0.0, 0.0};

SQO_lineFeature shapesOf(Line line,
                         const SQO_VFeatureParam& v = kNoV,
                         const SQO_slopeParam& slope = kSlope) {
  SQO_lineFeature result = {-3, {}, {}};
  qo_getLineLVFeature(line.data(), static_cast<int>(line.size()), 7, slope, v, &result);
  EXPECT_EQ(result.lineIdx, -3) << "left to the caller";
  return result;
}

using Case = std::tuple<const char*, Line, Found>;

TEST(LVFeature, FlanksOfSingleRuns) {
  const Case cases[] = {
      {"a jump down too, across a hole", lineOfZ({20, 20, 0, 9, 9}), {{kFall, 3}}},
      {"the earliest of equal steps", lineOfZ({9, 20, 31}), {{kRise, 0}}},
      {"a step of the limit is none", lineOfZ({9, 19}), {}},
      {"0.0001 is a sample", lineOfZ({0.0001, 11}), {{kRise, 0}}},
      {"slopes stand on the high side",
       lineOfZ({5, 5, 5, 9, 15, 19, 19, 19, 15, 9, 5, 5, 5}),
       {{kSlopeRise, 4}, {kSlopeFall, 8}}},
      {"2.0 is too flat", lineOfZ({1, 3, 5, 7, 9, 11, 13, 15, 14, 13, 12, 11}), {}},
      {"steeper", lineOfZ({0.9, 3, 5, 7, 9, 11, 13, 15, 14, 13, 12, 11}), {{kSlopeRise, 1}}},
      {"holes beside the step count", lineOfZ({5, 5, 5, 5, 6, 7, 16, 0, 16.5, 16, 16, 16}), {}},
      {"a rise up to 2 before the end", lineOfZ({5, 5, 5, 9, 15, 19, 19, 18, 17}), {}},
      {"up to 3 before", lineOfZ({5, 5, 5, 9, 15, 19, 18, 17, 16}), {{kSlopeRise, 4}}},
      {"a rise across a cut", lineOfZ({5, 5, 9, 15, 16, 0, 0, 0, 0, 19, 18, 18, 18}), {}},
      {"a fall from the start on", lineOfZ({19, 15, 9, 5, 5, 5, 5}), {}},
  };
  for (const auto& [name, line, expected] : cases) {
    EXPECT_EQ(found(shapesOf(line).features), expected) << name;
  }
  const SQO_slopeParam lowLimit = {0.0, 5.0, 4.0, 3.0};
  EXPECT_EQ(shapesOf(lineOfZ({9, 14}), kNoV, lowLimit).features.size(), 1U) << "smallest slope";
  EXPECT_TRUE(shapesOf(lineOfZ({9, 13.9}), kNoV, lowLimit).features.empty());
}

// Widths between a rise and a fall whose tops stand at 4 and 6, on either side of a dent.
TEST(LVFeature, WidthOfAV) {
  const auto isWide = [](double riseTop, double fallTop, double apexDiff, double width) {
    const Line line = lineOfZ(
        {10, 20, riseTop - 8, riseTop - 4, riseTop, 29, fallTop, fallTop - 4, fallTop - 8, 20, 10});
    const auto isV = [&](double limit) {
      const SQO_lineFeature shapes = shapesOf(line, {apexDiff, limit}, {0.0, 6.0, 100.0, 3.0});
      return found(shapes.features) == Found{{FEATURE_V, riseTop >= fallTop ? 4 : 6}};
    };
    return isV(width + 0.1) && !isV(width);
  };
  EXPECT_TRUE(isWide(32, 32, 8, 4)) << "half of 8 below level tops: from 3 to 7";
  EXPECT_TRUE(isWide(32, 33, 8, 6)) << "the fall is higher: all of 8 below, from 2 to 8";
  EXPECT_TRUE(isWide(34, 30, 4, 27)) << "not level: y = 3 on the rise against z = 30";
  EXPECT_TRUE(isWide(30, 34, 4, 27)) << "y = 7 on the fall against z = 34";
  const Line footAsHighAsTop = lineOfZ({10, 20, 30, 28, 37, 36, 40, 30});
  EXPECT_TRUE(shapesOf(footAsHighAsTop, {100, 1000}, {0.0, 10.0, 100.0, 3.0}).features.empty());
}

// Flanks up to a top of 100, one sample per unit of y. A fall is a rise seen backwards.
using Flank = std::vector<double>;
const Flank kNone = {91, 94, 97, 100};
const Flank kJumpAt5 = {80, 99, 99, 99, 99, 99, 100};
const Flank kJumpApart = {80, 99, 99, 99, 99, 99, 99, 100};
const Flank kSlopeClose = {86, 90, 96, 100};
const Flank kSlopeApart = {84, 88, 94, 98, 98, 98, 98, 98, 98, 100};
const Flank kDeepSlope = {50, 58, 66, 74, 82, 90, 100};

/// Types and places, counted from the top, of what a rise and a fall leave.
Found afterV(Flank rise, Flank fall) {
  rise.insert(rise.begin(), 3, rise.front());
  fall.insert(fall.begin(), 3, fall.front());
  const int top = static_cast<int>(rise.size()) - 1;
  rise.insert(rise.end(), fall.rbegin() + 1, fall.rend());
  const Line line = lineOfZ(rise);
  Found result = found(shapesOf(line, {1.0, 1000.0}).features);
  for (auto& feature : result) {
    feature.second -= top;
  }
  return result;
}

TEST(LVFeature, WhatStaysOfAVAndItsFlanks) {
  constexpr int kV = FEATURE_V;
  const std::tuple<Flank, Flank, Found> cases[] = {
      {kNone, kNone, {{kV, 0}}},
      {kNone, kJumpApart, {{kV, 0}, {kFall, 7}}},
      {kNone, kDeepSlope, {{kSlopeFall, 0}}},
      {kJumpApart, kNone, {{kRise, -7}, {kV, 0}}},
      {kDeepSlope, kNone, {{kSlopeRise, 0}}},
      {kJumpApart, kSlopeApart, {{kRise, -7}, {kV, 0}, {kSlopeFall, 7}}},
      {kJumpAt5, kSlopeApart, {{kRise, -6}, {kSlopeFall, 7}}},
      {kJumpAt5, kJumpAt5, {{kV, 0}}},
      {{47, 100}, kSlopeClose, {{kV, 0}}},           // feet 39 apart
      {{46, 100}, kSlopeClose, {{kSlopeRise, 1}}},   // 40: the fall is the higher flank
      {kSlopeClose, {46, 100}, {{kSlopeFall, -1}}},  // the rise is
      {kJumpAt5, {40, 100}, {{kSlopeFall, -6}}},     // a jump that becomes a slope
      {{40, 100}, {80, 100}, {{kSlopeRise, 1}}},
  };
  for (const auto& row : cases) {
    const auto& [rise, fall, expected] = row;
    EXPECT_EQ(afterV(rise, fall), expected) << "row " << &row - cases;
  }
}

TEST(LVFeature, MergesJumpsOfTheWholeList) {
  const auto merged = [](const std::vector<std::pair<int, double>>& before, Line line = {}) {
    SQO_lineFeature list = {};
    for (const auto& [type, y] : before) {
      list.features.push_back({type, {0, static_cast<int>(y)}, {0.0, y, 0.0}, 0.0});
    }
    qo_getLineLVFeature(line.data(), static_cast<int>(line.size()), 7, kSlope, kNoV, &list);
    return found(list.features);
  };
  EXPECT_EQ(merged({{kRise, 0}, {kRise, 19.9}}), (Found{{kRise, 19}}));
  EXPECT_EQ(merged({{kRise, 0}, {kRise, 20}}), (Found{{kRise, 0}, {kRise, 20}}));
  EXPECT_EQ(merged({{kFall, 0}, {kFall, 15}, {kFall, 30}}), (Found{{kFall, 0}, {kFall, 30}}));
  EXPECT_EQ(merged({{kRise, 0}, {kFall, 1}, {kSlopeRise, 2}, {kSlopeRise, 3}}).size(), 4U);
  EXPECT_EQ(merged({{kFall, 9}, {kRise, 0}}, lineOfZ({9, 9, 20})), (Found{{kFall, 9}, {kRise, 1}}));
}

TEST(LVFeature, Endings) {
  constexpr int kStart = FEATURE_SEG_START;
  constexpr int kEnd = FEATURE_SEG_END;
  const Case cases[] = {
      {"the last sample alone", lineOfZ({0, 9}), {}},
      {"a hole as wide as the limit", lineOfZ({9, 0, 0, 9, 9}), {{kStart, 0}, {kEnd, 4}}},
      {"wider", lineOfZ({9, 0, 0, 0, 9, 9, 0}), {{kStart, 0}, {kEnd, 0}, {kStart, 4}, {kEnd, 5}}},
      {"one before the last sample", lineOfZ({9, 0, 0, 0, 9}), {{kStart, 0}, {kEnd, 4}}},
      {"wide spacing", lineOfZ({9, 9, 9}, 0.0, 10.0), {{kStart, 0}, {kEnd, 2}}},
  };
  for (const auto& [name, line, expected] : cases) {
    EXPECT_EQ(found(shapesOf(line).endings), expected) << name;
  }
}

using Kinds = std::array<SQO_lineRightAngleParam, 4>;  // in the order of the arguments

Kinds alike(double tol) {
  Kinds kinds;
  kinds.fill({3.0, 3.0, tol});
  return kinds;
}

Found anglesOf(Line line, const Kinds& kinds = alike(1.0)) {
  SQO_lineFeature result = {-3, {}, {}};
  qo_getLineRigthAngleFeature(line.data(), static_cast<int>(line.size()), 7, kinds[0], kinds[1],
                              kinds[2], kinds[3], &result);
  EXPECT_EQ(result.lineIdx, -3) << "left to the caller";
  return found(result.features);
}

constexpr int kFlatFall = FEATURE_RIGHT_ANGLE_1;
constexpr int kFlatRise = FEATURE_RIGHT_ANGLE_2;
constexpr int kFallFlat = FEATURE_RIGHT_ANGLE_3;
constexpr int kRiseFlat = FEATURE_RIGHT_ANGLE_4;

/// A box: ground at 10 up to sample 9, a wall up to sample 19, a top at 20 up to sample 29, a wall
/// down to sample 39, ground up to sample 49. Or the first samples of that.
Line box(int samples = 50) {
  Line line;
  for (int i = 0; i < samples; ++i) {
    const int part = i / 10;
    const int in = i % 10;
    const double y[] = {0.0 + in, 9.0, 10.0 + in, 19.0, 20.0 + in};
    const double z[] = {10.0, 11.0 + in, 20.0, 19.0 - in, 10.0};
    line.push_back(build::sample(0.0, y[part], z[part]));
  }
  return line;
}

TEST(RightAngleFeature, FourKindsAndTheirTolerances) {
  const Found corners = {{kFlatRise, 9}, {kRiseFlat, 19}, {kFlatFall, 29}, {kFallFlat, 39}};
  EXPECT_EQ(anglesOf(box(), alike(1.0)), corners) << "samples beside a corner stray by the limit";
  EXPECT_EQ(anglesOf(box(), alike(1.5)), corners) << "three samples each, the middle one stays";
  // What is left without the tolerance of each record: flat falls keep to that of flat rises.
  const Found kindsLeft[] = {{corners[1], corners[3]},
                             {corners[0], corners[2], corners[3]},
                             corners,
                             {corners[0], corners[1], corners[2]}};
  for (std::size_t record = 0; record < 4; ++record) {
    Kinds kinds = alike(1.5);
    kinds[record].armTol = 0.0;
    EXPECT_EQ(anglesOf(box(), kinds), kindsLeft[record]) << record;
  }
}

TEST(RightAngleFeature, StepsWithoutSamplesAreSharp) {
  const Line step = build::profileLine(20, 1.0, [](double y) { return y < 10.0 ? 10.0 : 20.0; });
  EXPECT_EQ(anglesOf(step), (Found{{kFlatRise, 9}, {kRiseFlat, 10}}));
  EXPECT_EQ(anglesOf(step, alike(2.5)), (Found{{kFlatRise, 8}, {kRiseFlat, 10}}))
      << "the middle of 7 to 9, the sharp one of 10 to 12";
  EXPECT_EQ(anglesOf(lineOfZ({10, 20, 30, 40, 50}), alike(0.0)), (Found{{kFlatRise, 3}}))
      << "the last of three sharp ones, whose arms without samples stray by less than 0";
}

TEST(RightAngleFeature, SamplesOfArms) {
  Line line = box(15);
  line.erase(line.begin(), line.begin() + 5);
  EXPECT_EQ(anglesOf(line), (Found{{kFlatRise, 4}}));
  line.erase(line.begin());
  EXPECT_TRUE(anglesOf(line).empty()) << "the first sample is exactly one arm away";

  line = box(15);
  line[5].pt3D.z = 11.0;
  Kinds kinds = alike(1.0);
  kinds[1].armTol = 2.0;
  kinds[0].flatArmLen = 8.0;
  EXPECT_TRUE(anglesOf(line, kinds).empty()) << "sample 5 strays by the limit";
  kinds[0].flatArmLen = 100.0;
  EXPECT_EQ(anglesOf(line, kinds), (Found{{kFlatRise, 9}})) << "the arm runs out";

  line = box(15);
  line[8].pt3D.z = 0.0001;
  EXPECT_EQ(anglesOf(line), (Found{{kFlatRise, 8}})) << "the smallest sample is no neighbour";
}

}  // namespace
