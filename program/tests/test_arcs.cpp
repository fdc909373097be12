#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>

#include "made_scan.h"
#include "roads/arcs.h"

namespace program {
namespace {

using test::makeScan;
using test::Noise;
using test::Sampling;
using Height = std::optional<double>;

struct Search {
  FoundArcs found;
  std::vector<ArcTrack> tracks;
};

/// Searches with the derived parameters.
Search search(const Scan& scan, ArcKinds kinds) {
  CLI::App app;
  Parameters parameters(app, "Method");
  addArcParameters(parameters);
  ArcParams params = arcParams(parameters, extentOf(scan), std::numeric_limits<double>::infinity());
  params.kinds = kinds;
  Progress progress("", 1, true);
  Search result;
  result.found = findArcs(scan, params, progress);
  result.tracks = followArcs(scan, result.found, params);
  return result;
}

std::size_t countOf(const FoundArcs& found) {
  std::size_t count = 0;
  for (const std::vector<Arc>& line : found.lines) {
    count += line.size();
  }
  return count;
}

/// The upper half of a rod of radius r that lies on the floor, `across` from its axis.
Height rod(double across, double r) {
  return std::abs(across) < r ? Height(r + std::sqrt(r * r - across * across)) : std::nullopt;
}

Height onFloor(Height height) {
  return height.value_or(0.0);
}

TEST(Arcs, MeasuresARodAsRingAndAsTube) {
  const Scan scan = makeScan({}, [](double, double y) { return onFloor(rod(y - 20.0, 4.0)); });
  for (const ArcKinds kinds : {ArcKinds::ring, ArcKinds::tube}) {
    const Search result = search(scan, kinds);
    ASSERT_EQ(result.tracks.size(), 1U);
    const ArcTrack& track = result.tracks.front();
    EXPECT_GT(track.coverage, 0.98);
    EXPECT_NEAR(track.meanRadius, 4.0, 0.01);
    EXPECT_NEAR(track.radiusAcross, 4.0, 0.01);
    EXPECT_NEAR(track.meanRms, 0.016, 0.006);
    EXPECT_NEAR(track.centreLine.centre.y, 20.0, 0.01);
    EXPECT_NEAR(track.centreLine.centre.z, 246.0, 0.01);
  }
  EXPECT_EQ(search(scan, ArcKinds::both).tracks.size(), 2U);
}

TEST(Arcs, MeasuresASlantedRodAcrossItsAxis) {
  const double slope = std::tan(0.35);
  const Search result = search(makeScan({},
                                        [&](double x, double y) {
                                          const double across =
                                              (y - 10.0 - slope * x) * std::cos(0.35);
                                          return onFloor(rod(across, 4.0));
                                        }),
                               ArcKinds::ring);
  ASSERT_EQ(result.tracks.size(), 1U);
  EXPECT_GT(result.tracks.front().meanRadius, 4.15);
  EXPECT_NEAR(result.tracks.front().radiusAcross, 4.0, 0.01);
  EXPECT_NEAR(result.tracks.front().centreLine.direction.y, std::sin(0.35), 0.001);
}

TEST(Arcs, MeasuresALargeRadiusInNoise) {
  Sampling sampling;
  sampling.noise = 0.06;
  sampling.dropouts = 0.02;
  const Search result =
      search(makeScan(sampling, [](double, double y) { return onFloor(rod(y - 20.0, 18.0)); }),
             ArcKinds::ring);
  ASSERT_EQ(result.tracks.size(), 1U);
  EXPECT_GT(result.tracks.front().coverage, 0.9);
  EXPECT_NEAR(result.tracks.front().meanRadius, 18.0, 0.05);
}

TEST(Arcs, FindsNoneOnStraightOrHollowShapes) {
  const struct {
    const char* name;
    std::function<double(double)> height;
  } shapes[] = {
      {"flat", [](double) { return 0.0; }},
      {"box", [](double y) { return std::abs(y - 20.0) < 5.0 ? 6.0 : 0.0; }},
      {"trough", [](double y) { return -rod(y - 20.0, 8.0).value_or(8.0); }},
      {"roof", [](double y) { return std::max(5.0 - std::abs(y - 20.0), 0.0); }},
  };
  for (const auto& shape : shapes) {
    const Scan scan = makeScan({}, [&](double, double y) { return shape.height(y); });
    EXPECT_EQ(countOf(search(scan, ArcKinds::both).found), 0U) << shape.name;
  }
}

// The library's search leaves out the last tube of a line, and so the only one.
TEST(Arcs, FindsTheOnlyTubeOfALine) {
  const Search result =
      search(makeScan({}, [](double, double y) { return rod(y - 20.0, 1.5); }), ArcKinds::tube);
  ASSERT_EQ(result.tracks.size(), 1U);
  EXPECT_DOUBLE_EQ(result.tracks.front().coverage, 1.0);
  EXPECT_NEAR(result.tracks.front().meanRadius, 1.5, 0.03);
}

TEST(Arcs, SurvivesScansWithoutSamples) {
  for (const Scan& scan : {Scan{}, Scan(3), Scan(30, Line(50, {0, {0.0, 0.0, 0.0}}))}) {
    ArcParams params{};
    params.kinds = ArcKinds::both;
    params.scales = 3;
    params.width = {0.0, 10.0};
    Progress progress("", 1, true);
    const FoundArcs found = findArcs(scan, params, progress);
    EXPECT_EQ(countOf(found), 0U);
    EXPECT_TRUE(followArcs(scan, found, params).empty());
  }
}

TEST(Fits, CircleLeavesOutPointsOfOtherShapes) {
  Noise noise;
  std::vector<cv::Point2d> points;
  for (int i = 0; i < 120; ++i) {
    const double angle = 0.02 * i;
    const double r = 7.0 + 0.01 * noise.bell();
    points.emplace_back(1000.0 + r * std::cos(angle), 300.0 + r * std::sin(angle));
  }
  points[60] += cv::Point2d(0.0, 1.0);
  const std::optional<Circle> circle = fitCircle(points);
  ASSERT_TRUE(circle);
  EXPECT_EQ(circle->count, 119);
  EXPECT_NEAR(circle->radius, 7.0, 0.01);
  EXPECT_NEAR(circle->centre.x, 1000.0, 0.01);
  EXPECT_NEAR(circle->rms, 0.01, 0.002);
  EXPECT_FALSE(fitCircle({{0.0, 0.0}, {1.0, 0.0}}));
}

}  // namespace
}  // namespace program
