#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/core.hpp>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"

namespace {

using build::Line;
using build::lineOfZ;
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

TEST(LineLocalPeaks, TurningPointsThatStandOut) {
  const std::tuple<const char*, Line, double, Indices, Indices> cases[] = {
      {"last of a plateau", lineOfZ({5, 3, 3, 5, 5, 2}), 1.0, {2}, {4}},
      {"across holes, 0.0001 is a sample", lineOfZ({5, 0, 0.0001, 0, 5}), 1.0, {2}, {}},
      {"a hole at the end closes a rise", lineOfZ({3, 4, 0, 0}), 1.0, {}, {1}},
      {"a sample at the end closes nothing", lineOfZ({5, 0, 3}), 1.0, {}, {}},
      {"a smaller one within the scale", lineOfZ({5, 2, 5, 1, 5}), 2.0, {3}, {2}},
      {"a smaller one beyond the scale", lineOfZ({5, 2, 5, 1, 5}), 1.9, {1, 3}, {2}},
      {"equal ones both stay", lineOfZ({5, 1, 6, 1, 6, 5}), 9.0, {1, 3}, {2, 4}},
      {"a beaten one still beats", lineOfZ({9, 3, 9, 2, 9, 1, 9}), 2.0, {5}, {2, 4}},
  };
  for (auto [name, line, scale, expectedPeaks, expectedValleys] : cases) {
    const int count = static_cast<int>(line.size());
    Features peaks;
    Features valleys;
    qo_getLineLocalPeaks(line.data(), count, 7, scale, valleys, peaks);
    EXPECT_EQ(samplesOf(peaks, FEATURE_PEAK), expectedPeaks) << name;
    EXPECT_EQ(samplesOf(valleys, FEATURE_VALLEY), expectedValleys) << name;
    EXPECT_EQ(line.back().nPointIdx, count - 1) << name;
    line.back().nPointIdx = 99;
    qo_getLineLocalPeaks(&line.back(), 1, 7, scale, valleys, peaks);
    EXPECT_EQ(line.back().nPointIdx, 99) << "too short to be touched";
  }
}

// Slopes over 2.0, jumps above 1.0 in z or 2.0 in y, pairs below 4.0, side views over 6.0.
Features flatPeaksOf(Line& line) {
  Features features;
  qo_getFlatLineLocalPeaks_vector(line, 7, 2.0, 1.0, 4.0, features);
  return features;
}

TEST(FlatLineLocalPeaks, JumpsAndPairs) {
  using Places = std::vector<std::pair<double, double>>;  // y and z of the features
  // The marks are 16 beside jumps and 13 on features.
  const std::tuple<const char*, Line, Places, Indices> cases[] = {
      {"pair on a hole", lineOfZ({5, 7, 0, 7, 5}), {{2, 5}}, {16, 0, 13, 0, 16}},
      {"pair 3.0 apart", lineOfZ({5, 7, 7, 7, 7, 5}), {{2.5, 5}}, {16, 0, 13, 0, 0, 16}},
      {"4.0", lineOfZ({5, 7, 7, 7, 7, 7, 5}), {{0.5, 6}, {5.5, 6}}, {13, 16, 0, 0, 0, 13, 16}},
      {"gaps of the limit", lineOfZ({5, 5, 5, 5}, 0.0, 2.0), {}, {0, 0, 0, 0}},
      {"a gap above it", lineOfZ({5, 5}, 0.0, 2.5), {{1.25, 5}}, {13, 16}},
      {"rise with slopes", lineOfZ({5, 7, 7.75, 8.5, 7.75, 7}), {{2.5, 6}}, {16, 0, 13, 0, 0, 16}},
      {"slopes", lineOfZ({5, 5.75, 6.5, 5.75, 5}), {{2, 5}}, {0, 0, 13, 0, 0}},
  };
  for (const auto& [name, original, places, marks] : cases) {
    Line line = original;
    const Features features = flatPeaksOf(line);
    EXPECT_EQ(build::stampsOf(line), marks) << name;
    ASSERT_EQ(features.size(), places.size()) << name;
    for (std::size_t k = 0; k < features.size(); ++k) {
      const STesk3DPoint& pos = features[k].jumpPos;
      const double zBefore = original[features[k].jumpPos2D.y].pt3D.z;
      EXPECT_EQ(std::make_pair(pos.y, pos.z), places[k]) << name;
      EXPECT_EQ(line[features[k].jumpPos2D.y].pt3D.z, zBefore > 0.0 ? zBefore : pos.z) << name;
    }
  }
}

TEST(FlatLineLocalPeaks, LoneSlopesNeedRoomOnBothSides) {
  // Last level sample before a slope that ends three samples further on, growth of z per sample,
  // number of samples, whether a jump stands behind the last of them.
  const std::tuple<const char*, int, double, int, bool, Indices> cases[] = {
      {"high side within reach of sample 0", 7, -0.75, 30, false, {}},
      {"high side clear of sample 0", 8, -0.75, 30, false, {8}},
      {"low side off the line, measured against the start", 8, -0.75, 15, false, {}},
      {"low side ends at a jump", 8, -0.75, 18, true, {17}},
      {"low side ends before a jump", 8, -0.75, 19, true, {8, 18}},
      {"high side ends before a jump", 8, 0.75, 19, true, {11, 18}},
      {"low side off the line, measured against the foot", 3, 0.75, 20, true, {6, 19}},
      {"rise that nothing follows", 8, 0.75, 30, false, {}},
  };
  for (const auto& [name, foot, slope, count, wall, expected] : cases) {
    Line line;
    for (int i = 0; i < count; ++i) {
      line.push_back(build::sample(0.0, i, 8.0 + slope * std::min(3, std::max(0, i - foot))));
    }
    for (int i = 0; wall && i < 2; ++i) {
      line.push_back(build::sample(0.0, count + i, line[count - 1].pt3D.z + 4.0));
    }
    Line marked = line;
    EXPECT_EQ(samplesOf(flatPeaksOf(line), FEATURE_PEAK), expected) << name;
    marked[foot - 1].nPointIdx = 16;
    const Indices besideMark = wall ? Indices{count - 1} : Indices{};
    EXPECT_EQ(samplesOf(flatPeaksOf(marked), FEATURE_PEAK), besideMark) << name;
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
