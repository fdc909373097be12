#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <functional>
#include <optional>

#include "base/failure.h"
#include "made_scan.h"
#include "roads/gaps.h"

namespace program {
namespace {

using test::makeScan;
using test::Sampling;
using Heights = std::function<std::optional<double>(double, double)>;

struct Search {
  FoundGaps found;
  std::vector<GapTrack> tracks;
};

/// Searches with the derived parameters, but for what `tune` changes.
Search search(const Scan& scan, const std::function<void(GapParams&)>& tune = {}) {
  CLI::App app;
  Parameters parameters(app, "Method");
  addGapParameters(parameters);
  GapParams params = gapParams(parameters, extentOf(scan));
  if (tune) {
    tune(params);
  }
  Progress progress("", 1, true);
  Search result;
  result.found = findGaps(scan, params, progress);
  result.tracks = followGaps(result.found, params);
  return result;
}

std::size_t countOf(const FoundGaps& found) {
  std::size_t count = 0;
  for (const std::vector<Gap>& line : found.lines) {
    count += line.size();
  }
  return count;
}

bool isWithin(double value, double centre, double halfWidth) {
  return std::abs(value - centre) < halfWidth;
}

TEST(Gaps, MeasuresASlantedSlot) {
  const Scan scan = makeScan(
      {}, [](double x, double y) { return isWithin(y, 15.0 + 0.3 * x, 0.8) ? -1.2 : 0.0; });
  const Search result = search(scan);
  ASSERT_EQ(result.tracks.size(), 1U);
  const GapTrack& track = result.tracks.front();
  EXPECT_DOUBLE_EQ(track.coverage, 1.0);
  EXPECT_NEAR(track.meanWidth, 1.6, 0.05);
  EXPECT_NEAR(track.widthAcross, 1.6 / std::hypot(1.0, 0.3), 0.05);
  EXPECT_NEAR(track.meanDepth, 1.2, 0.03);
  EXPECT_DOUBLE_EQ(track.openShare, 0.0);
  EXPECT_FALSE(track.centreLine.parabola);
  EXPECT_NEAR(track.centreLine.slopeAt(0.0), 0.3, 0.01);
}

TEST(Gaps, RefusesWhatIsNotDeeperThanBothRims) {
  const struct {
    const char* name;
    Heights height;
  } shapes[] = {
      {"flat", [](double, double) { return 0.0; }},
      {"rib", [](double, double y) { return isWithin(y, 20.0, 0.8) ? 1.2 : 0.0; }},
      {"wide rib", [](double, double y) { return isWithin(y, 20.0, 4.0) ? 18.0 : 0.0; }},
      {"step", [](double x, double y) { return y > 15.0 + 0.1 * x ? 2.0 : 0.0; }},
      {"step down", [](double, double y) { return y > 20.0 ? -2.0 : 0.0; }},
      {"stairs", [](double, double y) { return y > 24.0   ? 4.0
                                               : y > 16.0 ? 2.0
                                                          : 0.0; }},
      {"shadow of a step",
       [](double, double y) {
         return isWithin(y, 20.0, 1.0) ? std::nullopt : std::optional(y > 20.0 ? 4.0 : 0.0);
       }},
  };
  for (const auto& shape : shapes) {
    EXPECT_EQ(countOf(search(makeScan({}, shape.height)).found), 0U) << shape.name;
  }
}

// The library pairs successive edges, so each rib would take the edges of the gap beside it.
TEST(Gaps, FindsTheGapBetweenTwoRibs) {
  const Search result = search(makeScan({}, [](double, double y) {
    return isWithin(y, 15.0, 2.0) || isWithin(y, 22.0, 2.0) ? 1.2 : 0.0;
  }));
  ASSERT_EQ(result.tracks.size(), 1U);
  EXPECT_EQ(countOf(result.found), 60U);
  EXPECT_NEAR(result.tracks.front().centreLine.centre.y, 18.5, 0.1);
  EXPECT_NEAR(result.tracks.front().meanWidth, 3.0, 0.15);
}

TEST(Gaps, FindsAnOpenGapBetweenLevelRims) {
  const Heights plates = [](double x, double y) {
    return isWithin(y, 20.0 + 0.1 * x, 1.0) ? std::nullopt : std::optional(y > 22.0 ? 0.2 : 0.0);
  };
  const Scan scan = makeScan({}, plates);
  const Search result = search(scan);
  ASSERT_EQ(result.tracks.size(), 1U);
  EXPECT_DOUBLE_EQ(result.tracks.front().openShare, 1.0);
  EXPECT_NEAR(result.tracks.front().meanWidth, 2.0, 0.05);
  EXPECT_TRUE(std::isnan(result.tracks.front().meanDepth));
  EXPECT_EQ(countOf(search(scan, [](GapParams& p) { p.floors = GapFloors::measured; }).found), 0U);
}

TEST(Gaps, FollowsABentSeamAcrossATackWeld) {
  Sampling sampling;
  sampling.lines = 200;
  const auto seam = [](double x) { return 10.0 + 0.002 * (x - 50.0) * (x - 50.0); };
  const Search result = search(makeScan(sampling, [&](double x, double y) {
    const double inward = 1.5 - std::abs(y - seam(x));
    const bool isWelded = x > 40.0 && x < 45.0;
    return isWelded ? 0.0 : -2.0 * std::min(std::max(inward / 1.1, 0.0), 1.0);
  }));
  ASSERT_EQ(result.tracks.size(), 1U);
  const GapTrack& track = result.tracks.front();
  EXPECT_NEAR(track.meanDepth, 2.0, 0.05);
  EXPECT_NEAR(track.meanWidth, 3.0, 0.1);
  ASSERT_TRUE(track.centreLine.parabola);
  EXPECT_NEAR(track.centreLine.parabola->a, 0.002, 0.0001);
  ASSERT_EQ(track.interruptions.size(), 1U);
  EXPECT_EQ(track.interruptions.front().firstLine, 81);
  EXPECT_EQ(track.interruptions.front().lastLine, 89);
}

// Edges inside a gap belong to its floor, but a slot in a dish is the gap.
TEST(Gaps, ChoosesBetweenGapsThatOverlap) {
  const Search rough = search(makeScan({}, [](double, double y) {
    const bool isStone = std::fmod(y, 4.0) < 2.0;
    return isWithin(y, 20.0, 4.5) ? (isStone ? -3.0 : -4.0) : 0.0;
  }));
  ASSERT_EQ(rough.tracks.size(), 1U);
  EXPECT_NEAR(rough.tracks.front().meanWidth, 9.0, 0.15);
  const Search dish = search(makeScan({}, [](double, double y) {
    return isWithin(y, 20.0, 0.8) ? -8.0 : isWithin(y, 20.0, 4.0) ? -1.0 : 0.0;
  }));
  ASSERT_EQ(dish.tracks.size(), 1U);
  EXPECT_NEAR(dish.tracks.front().meanWidth, 1.6, 0.1);
  EXPECT_NEAR(dish.tracks.front().meanDepth, 7.0, 0.1);
}

TEST(Gaps, SurvivesScansWithoutSamples) {
  GapParams params{};
  params.width = {0.0, 10.0};
  Progress progress("", 1, true);
  for (const Scan& scan : {Scan{}, Scan(3), Scan(3, Line(5)), Scan(1, Line(1, {0, {0, 0, 1}}))}) {
    const FoundGaps found = findGaps(scan, params, progress);
    EXPECT_EQ(countOf(found), 0U);
    EXPECT_TRUE(followGaps(found, params).empty());
  }
}

TEST(Gaps, RefusesLimitsThatExcludeEachOther) {
  CLI::App app;
  Parameters parameters(app, "Method");
  addGapParameters(parameters);
  app.parse("--gap-width-min 5 --gap-width-max 4");
  parameters.takeGiven();
  EXPECT_THROW(gapParams(parameters, {}), Failure);
}

}  // namespace
}  // namespace program
