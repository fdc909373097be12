#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "builders.h"
#include "conditioning.h"

namespace {

using build::Line;
using build::lineOfZ;
using Runs = std::vector<SQO_RUN>;
using Pieces = std::vector<SQO_featureSemiCircle>;

const double kNaN = std::nan("");

/// Each run as start:len:value.
std::string text(const Runs& runs) {
  std::string out;
  for (const auto& [start, len, value] : runs) {
    out += std::to_string(start) + ':' + std::to_string(len) + ':' + std::to_string(value) + ' ';
  }
  return out;
}

/// Each piece as start:end:middle.
std::string text(const Pieces& pieces) {
  Runs runs;
  for (const SQO_featureSemiCircle& p : pieces) {
    EXPECT_TRUE(p.lineIdx == 6 && p.segState == 0 && p.width == 0.0 && p.height == 0.0);
    EXPECT_EQ(p.midPt.x, 0.75 * p.midPtIdx);
    runs.push_back({p.startPtIdx, p.endPtIdx, p.midPtIdx});
  }
  return text(runs);
}

TEST(NoiseFilter, FiltersAlongThenAcross) {
  // Lines 0 and 7 stand alone across; the pair on line 4 stands alone along, and would part its
  // columns if it were still there.
  build::Scan scan = build::surfaceScan(8, 8, [](double x, double y) {
    return x == 0.0 || x == 7.0 ? 80.0 : x == 4.0 && y < 2.0 ? 50.0 : 10.0;
  });
  build::Scan uneven = scan;
  uneven[2].resize(9);
  int errCode = 1;
  ju_noiseFilter(scan, {1.0, 4.0}, &errCode);
  EXPECT_EQ(errCode, 0);
  for (int k = 0; k < 64; ++k) {
    const bool isNoise = k < 8 || k >= 56 || k == 32 || k == 33;
    EXPECT_EQ(scan[k / 8][k % 8].pt3D.z, isNoise ? 0.0 : 10.0) << k;
  }
  ju_noiseFilter(uneven, {1.0, 4.0}, &errCode);
  EXPECT_EQ(errCode, -1000);
  EXPECT_EQ(uneven[0][0].pt3D.z, 80.0) << "across, nothing is filtered";
}

struct Case {
  std::vector<double> z;
  double limit;
  const char* runs;
};

TEST(LineDataIntervals, CutsAtSteps) {
  const Case cases[] = {
      {{}, 2.5, ""},
      {{0, 0.0001, -1, kNaN}, 2.5, ""},
      {{0, 10, 0, kNaN}, 2.5, "1:1:1 "},
      {{10, 0, 14.9, 0, 0}, 2.5, "0:3:2 "},
      {{10, 15, 15, 9, 0}, 2.5, "0:1:1 1:2:2 3:1:3 "},
  };
  for (const Case& c : cases) {
    Line line = lineOfZ(c.z);
    std::for_each(line.begin(), line.end(), [](auto& sample) { sample.nPointIdx = 5; });
    Runs runs = {{9, 9, 9}};
    ju_getLineDataIntervals(line, {c.limit, 5.0, 0.0}, runs);
    EXPECT_EQ(text(runs), std::string("9:9:9 ") + c.runs);
    EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](auto& s) { return s.nPointIdx == 0; }));
  }
}

TEST(Split, CutsAtFarthestSample) {
  const Case cases[] = {
      {{10, 11, 12}, 1, "0:3:7 "},
      {{0, 11, 12}, 99, ""},
      {{10, 11, 0}, 99, ""},
      {{10, 11, 0.0001}, 99, "0:3:7 "},
      {{10, 0, kNaN, 0.0001, 10}, 1, "0:5:7 "},
      {{10, 12, 10}, 2, ""},
      {{10, 11, 12, 11, 12, 11, 10}, 1, "0:3:0 2:5:0 "},
      {{10, 10, 10, 15, 20, 20, 20}, 0.5, "0:3:0 2:3:0 4:3:0 "},
  };
  for (const Case& c : cases) {
    Line line = lineOfZ(c.z);
    Runs pieces;
    split({0, static_cast<int>(line.size()), 7}, line, c.limit, pieces);
    EXPECT_EQ(text(pieces), c.runs);
  }
}

TEST(Split, CutsLongStaircaseInLineOrder) {
  const int tread = 5000;
  Line line = build::profileLine(200 * tread, 1.0,
                                 [=](double y) { return 10.0 + 40.0 * std::floor(y / tread); });
  Runs pieces;
  split({0, 200 * tread, 7}, line, 1e-300, pieces);
  ASSERT_EQ(pieces.size(), 200U);
  for (int i = 0; i < 200; ++i) {
    EXPECT_TRUE(pieces[i].start == i * tread && pieces[i].len == tread) << i;
  }
}

TEST(SurfaceLineSegment, PicksFlattestOfWantedLength) {
  // Up to `wallY` in y the samples stand above each other.
  using Z = std::vector<double>;
  const std::tuple<const char*, Z, STeskRangeD, const char*, const char*, double> cases[] = {
      {"flatter second", {10, 12, 14, 16, 15, 14, 13}, {0, 9}, "3:6:4 ", "0:3:1 ", 0.0},
      {"tie", {10, 12, 14, 12, 10}, {0, 9}, "0:2:1 ", "2:4:3 ", 0.0},
      {"two runs", {9, 9, 9, 50, 50, 50, 51, 52, 53}, {0, 9}, "0:2:1 3:5:4 ", "5:8:6 ", 0.0},
      {"exactly as long", {10, 10, 10, 10, 10}, {5, 5}, "0:4:2 ", "", 0.0},
      {"higher side first", {10, 10, 0, 10, 10}, {0, 9}, "0:4:3 ", "", 0.0},
      {"lower side next", {10, 10, 0, 0.0001, 10}, {0, 9}, "0:4:1 ", "", 0.0},
      {"0.0001 in the middle", {10, 10, 0.0001, 10, 10}, {0, 9}, "0:4:2 ", "", 0.0},
      {"hollow, no exact middle", {10, 0, 0, 10}, {0, 9}, "", "", 0.0},
      {"vertical first", {10, 12, 14, 14, 14}, {0, 9}, "2:4:3 ", "0:2:1 ", 2.0},
      {"no chord", {10, 12, 10}, {0, 9}, "0:2:1 ", "", 9.0},
  };
  for (const auto& [what, z, lenRange, expectedBest, expectedOthers, wallY] : cases) {
    Line line = lineOfZ(z);
    for (STesk3DPosition& sample : line) {
      sample.pt3D.x = 0.75 * sample.pt3D.y;  // Four level samples on: a distance of 5.
      sample.pt3D.y = std::max(0.0, sample.pt3D.y - wallY);
    }
    Pieces best;
    Pieces others;
    ju_surfaceLineSegment(line, 6, lenRange, {4.5, 5.0, 0.5}, best, others);
    EXPECT_EQ(text(best), expectedBest) << what;
    EXPECT_EQ(text(others), expectedOthers) << what;
  }
}

}  // namespace
