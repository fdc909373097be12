#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "grid_lines.h"
#include "plain_flat_peaks.h"
#include "plain_local_peaks.h"

namespace {

using build::Line;
using build::lineOfZ;
using build::text;
using Features = std::vector<SQO_basicFeature1D>;
using Indices = std::vector<int>;
using Spans = std::vector<std::pair<int, int>>;  // first and last sample

Indices samplesOf(const Features& features, int type) {
  Indices samples;
  for (const SQO_basicFeature1D& f : features) {
    EXPECT_TRUE(f.featureType == type && f.jumpPos2D.x == 7);
    samples.push_back(f.jumpPos2D.y);
  }
  return samples;
}

/// What the features of a call are appended to.
const Features kBefore = {{FEATURE_V, {7, 3}, {1.0, 2.0, 3.0}, 0.0}};

TEST(LineLocalPeaks, AgreeWithThePlainRules) {
  build::GridLines grid(1);
  for (int round = 0; round < 4000; ++round) {
    Line line = grid.line(30, {-2, -1, 0, 1, 2});
    Line plainLine = line;
    const double scale = grid.pick({0.0, 1.0, 2.0, 2.5, 4.0, 8.0, 1e9, NAN});
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

TEST(LineUpperSemiCircle, JoinsByLabelAndHoldsBackTheLast) {
  // Bumps of three samples, with two labelled holes between each and the next; one is just 0.0001.
  Line line = lineOfZ({5, 4, 5, 0, 0, 6, 3, 6, 0, 0.0001, 5, 4, 5});
  using Stretch = std::tuple<int, int, int, double>;  // first, last and middle sample, height
  const Stretch first = {0, 2, 1, 4.0};
  const Stretch second = {5, 7, 6, 3.0};
  const Stretch joined = {0, 7, 2, 3.0};  // 2 and 5 are as near to the middle, which is a hole
  const std::tuple<const char*, Indices, double, double, std::vector<Stretch>> cases[] = {
      {"labels that differ", {1, 2, -1, -1}, 1.0, 1.5, {first, second}},
      {"first two joined", {1, 1, 0, 0}, 1.0, 1.5, {joined}},
      {"0.0001 counts inside", {0, 0, 4, 4}, 1.0, 1.5, {first, {5, 12, 9, 0.0001}}},
      {"as wide as the limit", {0, 0, 0, 0}, 0.5, 1.5, {}},
      {"holes as wide as the gap", {0, 0, 0, 0}, 1.0, 3.0, {first, second}},
      {"one run across all holes", {0, 0, 0, 0}, 9.0, 3.5, {}},
  };
  for (const auto& [name, labels, widthUnit, maxGap, expected] : cases) {
    cv::Mat image(13, 9, CV_32SC1, cv::Scalar(1));
    for (int k = 0; k < 4; ++k) {
      image.at<int>(Indices{3, 4, 8, 9}[k], 7) = labels[k];
    }
    std::vector<SQO_featureSemiCircle> found;
    qo_getLineUpperSemiCircleFeature(line.data(), 13, 7, widthUnit, {1.0, 0.0, 0.0, maxGap}, found,
                                     image);
    std::vector<Stretch> stretches;
    for (const SQO_featureSemiCircle& f : found) {
      stretches.emplace_back(f.startPtIdx, f.endPtIdx, f.midPtIdx, f.height);
      EXPECT_TRUE(f.segState == 0 && f.lineIdx == 7 && f.midPt.y == f.midPtIdx) << name;
      EXPECT_EQ(f.width, f.endPtIdx - f.startPtIdx) << name;
    }
    EXPECT_EQ(stretches, expected) << name;
  }
}

TEST(LineGloveArcs, FlanksReachDifferently) {
  // Around the summit at 6 the steps are 1.25 long, the next ones on either side 2.24 and steeper.
  Line line = lineOfZ({5, 5, 5, 5, 5, 7, 7.75, 7, 5, 5, 5, 5, 5});
  const auto turnWith = [&](double armLen) {
    Features arcs;
    ju_getLineGloveArcs(line, 7, {1.1, armLen, 10.0}, arcs);
    EXPECT_EQ(samplesOf(arcs, FEATURE_PEAK), Indices{6});
    return arcs.empty() ? 0.0 : arcs[0].featureValue;
  };
  const double gentle = 36.86989764584402;
  const double steep = 63.43494882292201;
  EXPECT_NEAR(turnWith(1.25), 2.0 * gentle, 1e-9) << "one sample before reaches the length, counts";
  EXPECT_NEAR(turnWith(1.3), steep + gentle, 1e-9)
      << "the sample behind reaches it, does not count";
  EXPECT_NEAR(turnWith(3.6), 2.0 * steep, 1e-9);
}

TEST(LineGloveArcs, SummitsAndLimits) {
  const std::tuple<const char*, Line, double, Indices> cases[] = {
      {"nine samples are too few", lineOfZ({1, 2, 3, 4, 5, 4, 3, 2, 1}), 45.0, {}},
      {"exactly the limit, holes count", lineOfZ({1, 2, 3, 4, 5, 4, 3, 2, 1, 0}), 90.0, {4}},
      {"less", lineOfZ({1, 2, 3, 4, 5, 4, 3, 2, 1, 0}), 90.001, {}},
      {"first of a plateau", lineOfZ({1, 2, 3, 4, 5, 5, 4, 3, 2, 1}), 45.0, {4}},
  };
  for (auto [name, line, minTurn, expected] : cases) {
    Features arcs;
    ju_getLineGloveArcs(line, 7, {1.0, 2.0, minTurn}, arcs);
    EXPECT_EQ(samplesOf(arcs, FEATURE_PEAK), expected) << name;
  }
}

TEST(LineRaisedFeature, FromFallToRise) {
  const std::tuple<const char*, Line, Spans> cases[] = {
      {"fall and rise, with a hole", lineOfZ({9, 5, 0, 5, 9}), {{1, 3}}},
      {"a second fall begins anew", lineOfZ({13, 9, 9, 5, 5, 9}), {{3, 4}}},
      {"a rise without a fall, from a hole", lineOfZ({0.0001, 5, 5, 9}), {{0, 2}}},
      {"a rise behind a rise", lineOfZ({5, 5, 9, 13}), {{0, 1}}},
      {"a later rise reaches back to 0", lineOfZ({5, 5, 9, 9, 13}), {{0, 1}, {0, 3}}},
      {"steps of the limit", lineOfZ({7, 5, 5, 7}), {}},
      {"slopes of the limit", lineOfZ({9, 5, 9}, 0.0, 8.0), {}},
      {"no distance in y is steep", lineOfZ({9, 5, 5, 9}, 0.0, 0.0), {{1, 2}}},
      {"width of the limit", lineOfZ({9, 5, 5, 5, 5, 5, 9}), {{1, 5}}},
      {"too wide", lineOfZ({9, 5, 5, 5, 5, 5, 5, 9}), {}},
  };
  for (auto [name, line, expected] : cases) {
    std::vector<SJU_segFeature> found;
    ju_getLineRaisedFeature(line, 7, {2.0, 0.5, 0.0, 4.0}, found);
    Spans spans;
    for (const SJU_segFeature& f : found) {
      spans.emplace_back(f.startPtIdx, f.endPtIdx);
      EXPECT_EQ(f.segValue, f.endPt.y - f.startPt.y) << name;
    }
    EXPECT_EQ(spans, expected) << name;
    EXPECT_EQ(line.back().nPointIdx, static_cast<int>(line.size()) - 1) << name;
  }
}

}  // namespace
