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

// Steep from 60 degrees on, flat up to 30; runs break at steps above 5 and join below 3.
constexpr SQO_cornerParam kParam = {3.0, 5.0, 3.0, 45.0, 60.0, 30.0};

SQO_lineFeature cornersOf(Line line, const SQO_cornerParam& param = kParam) {
  SQO_lineFeature result = {};
  qo_getLineCornerFeature(line.data(), static_cast<int>(line.size()), 7, param, &result);
  return result;
}

TEST(CornerFeature, TypesCornersByTheirArms) {
  SQO_cornerParam param = kParam;
  param.minEndingGap_z = 50.0;
  // A plateau of height 20 with steep flanks of length 5, whose feet stand at 20 and 60.
  const auto steep = [](double y) {
    return 100.0 + 4.0 * std::max(0.0, std::min({5.0, y - 20.0, 60.0 - y}));
  };
  const SQO_lineFeature box = cornersOf(build::profileLine(81, 1.0, steep), param);
  EXPECT_EQ(found(box.features), (Found{{FEATURE_JUMP_RISE, 25}, {FEATURE_JUMP_FALL, 55}}));
  EXPECT_EQ(box.features[0].jumpPos2D.x, 7);
  EXPECT_EQ(box.features[0].jumpPos.y, 25.0);
  EXPECT_EQ(box.features[0].jumpPos.z, 120.0);
  EXPECT_EQ(box.features[0].featureValue, 0.0);

  const auto roof = [](double y) { return 100.0 - std::abs(y - 40.0); };
  EXPECT_EQ(found(cornersOf(build::profileLine(81, 1.0, roof), param).features),
            (Found{{FEATURE_CORNER_OTHER, 40}}));
}

// Five roofs whose corners measure exactly 90 degrees. The first has no slopes before it and is
// none of the maxima.
Line roofs() {
  return build::profileLine(21, 1.0, [](double y) {
    const double inRoof = std::fmod(y, 4.0);
    return 50.0 + std::min(inRoof, 4.0 - inRoof);
  });
}

SQO_cornerParam roofParam(double cornerTh) {
  SQO_cornerParam param = kParam;
  param.scale = 2.0;
  param.cornerTh = cornerTh;
  return param;
}

TEST(CornerFeature, PeakThresholdKeepsEqualsAndResultsAreAppended) {
  Line line = roofs();
  line[3].nPointIdx = -5;
  SQO_lineFeature result = cornersOf(line, roofParam(90.0));
  EXPECT_EQ(result.features.size(), 4U) << "equal maxima both stay";
  EXPECT_TRUE(cornersOf(line, roofParam(90.001)).features.empty());
  qo_getLineCornerFeature(line.data(), 21, 8, roofParam(90.0), &result);
  EXPECT_TRUE(result.features.size() == 8U && result.endings.size() == 4U);
  EXPECT_EQ(result.lineIdx, 8);
  EXPECT_EQ(line[3].nPointIdx, -5);
}

// A corner of 45 degrees at y = 20 and one of 90 degrees `apart` further on.
TEST(CornerFeature, GreaterNeighbourSuppressesUpToTwoScales) {
  const auto smallBesideGreat = [](double apart) {
    Line line = build::profileLine(80, 0.5, [apart](double y) {
      const double small = std::max(0.0, y - 20.0);
      const double great = std::max(0.0, y - 20.0 - apart);
      return 100.0 - small + 2.0 * std::max(0.0, small - apart / 2.0) - 2.0 * great;
    });
    SQO_cornerParam param = kParam;
    param.cornerTh = 40.0;
    return found(cornersOf(line, param).features);
  };
  EXPECT_EQ(smallBesideGreat(6.0), (Found{{FEATURE_CORNER_OTHER, 52}})) << "exactly two scales";
  EXPECT_EQ(smallBesideGreat(6.5), (Found{{FEATURE_CORNER_OTHER, 40}, {FEATURE_CORNER_OTHER, 53}}));
}

TEST(CornerFeature, Endings) {
  using Segments = std::vector<std::pair<int, int>>;  // first and last sample
  const std::tuple<const char*, Line, Segments> cases[] = {
      {"no samples", {}, {}},
      {"only holes, 0.0001 is one", build::lineOfZ({0.0, 0.0001, -3.0}), {}},
      {"one sample", build::lineOfZ({0.0, 10.0, 0.0}), {{1, 1}}},
      {"a step of exactly the limit", build::lineOfZ({10.0, 15.0}), {{0, 1}}},
      {"a step never rejoins", build::lineOfZ({10.0, 15.5}, 0.0, 0.0), {{0, 0}, {1, 1}}},
      {"a hole narrower than the gap", build::lineOfZ({10.0, 0.0, 10.0}), {{0, 2}}},
      {"a hole as wide as the gap", build::lineOfZ({10.0, 0.0, 0.0, 10.0}), {{0, 0}, {3, 3}}},
      {"a hole with a step of the limit", build::lineOfZ({10.0, 0.0, 15.0}), {{0, 0}, {2, 2}}},
      {"a chain of holes", build::lineOfZ({9, 0, 10, 11, 0, 12, 0, 0, 12}), {{0, 5}, {8, 8}}},
  };
  for (const auto& [name, line, segments] : cases) {
    Found expected;
    for (const auto& [first, last] : segments) {
      expected.emplace_back(FEATURE_SEG_START, first);
      expected.emplace_back(FEATURE_SEG_END, last);
    }
    const SQO_lineFeature result = cornersOf(line);
    EXPECT_EQ(found(result.endings), expected) << name;
    EXPECT_TRUE(result.features.empty()) << name;
    EXPECT_EQ(result.lineIdx, 7) << name;
  }
}

TEST(CornerFeature, OddScales) {
  for (double scale : {0.0, -1.0, std::nan(""), 1e300}) {
    SQO_cornerParam param = kParam;
    param.scale = scale;
    EXPECT_TRUE(cornersOf(Line(5, build::sample(0.0, 0.0, 10.0)), param).features.empty()) << scale;
  }
}

}  // namespace
