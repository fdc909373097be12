#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include <scanline/conditioning.h>
#include "builders.h"
#include "grid_lines.h"
#include "plain_outliers.h"
#include "plain_smoothing.h"

namespace {

using build::Line;
using build::lineOfZ;
using build::text;
using Runs = std::vector<SQO_RUN>;
using Z = std::vector<double>;
using Pieces = std::vector<SQO_featureSemiCircle>;

TEST(LineDataSmoothing, SumsEveryWindowInOrder) {
  build::GridLines grid(7);
  for (int round = 0; round < 60; ++round) {
    Line line = grid.line(round < 30 ? 4 : 600, {-40, -1, 0, 0.5, 9});
    for (STesk3DPosition& sample : line) {
      sample.pt3D.z /= sample.pt3D.z > 1.0 ? 3.0 : 1.0;  // Makes sums depend on their order.
    }
    const int size = static_cast<int>(line.size());
    for (const int window :
         {INT_MIN, -2, 0, 1, 2, 5, 7, 25, size, 2 * size - 3, 2 * size, INT_MAX}) {
      Line out(7);
      Line expected;
      qo_lineDataSmoothing(line, window, out);
      plain::smooth(line, window, expected);
      ASSERT_EQ(text(out), text(expected)) << "window " << window;
    }
  }
}

TEST(LineSegSmoothing, SmoothsEachPieceByItself) {
  build::GridLines grid(8);
  for (int round = 0; round < 60; ++round) {
    Line line = grid.line(round < 30 ? 9 : 600, {-40, 0, 0.5, 9, 9, 9.25, 9.5});
    for (const int window : {-2, 1, 4, 17, 18, 51, INT_MAX}) {
      Line expected;
      Line piece;
      Line smoothed;
      bool hasMeasured = false;
      for (std::size_t i = 0; i <= line.size(); ++i) {
        const bool isMeasured = i < line.size() && line[i].pt3D.z > 0.0001;
        if (i == line.size() ||
            (isMeasured && hasMeasured && std::abs(line[i].pt3D.z - piece.back().pt3D.z) > 1)) {
          plain::smooth(piece, window, smoothed);
          expected.insert(expected.end(), smoothed.begin(), smoothed.end());
          piece.clear();
        }
        if (i < line.size()) {
          piece.push_back(line[i]);
        }
        hasMeasured = hasMeasured || isMeasured;
      }
      Line out;
      qo_lineSegSmoothing(line, 1e9, 1, window, out);
      ASSERT_EQ(text(out), text(expected)) << "window " << window;
    }
  }
}

TEST(LineSegSmoothing, CutsAtStepsAndHoles) {
  const std::tuple<const char*, Z, double, double, Z> cases[] = {
      {"steps up and down", {1, 3, 5, 90, 92, 1, 3}, 2, 5, {3, 3, 3, 91, 91, 2, 2}},
      {"exactly the limits", {10, 15}, 1, 5, {12.5, 12.5}},
      {"beyond the limit in z", {10, 15}, 1, 4.9, {10, 15}},
      {"beyond the limit in y", {10, 15}, 0.9, 5, {10, 15}},
      {"a hole is a step", {10, 12, 0, 14, 16}, 2, 5, {11, 11, 0, 15, 15}},
      {"a hole within the limit", {10, 12, 0, 14, 16}, 2, 14, {11, 12, 0, 14, 15}},
      {"a NaN", {10, NAN, 30}, 2, 5, {20, NAN, 20}},
  };
  for (const auto& [what, z, yTh, zTh, smoothed] : cases) {
    Line line = lineOfZ(z);
    Line out(1);
    qo_lineSegSmoothing(line, yTh, zTh, 5, out);
    out.erase(out.begin());
    EXPECT_EQ(text(out), text(lineOfZ(smoothed))) << what;
  }
}

TEST(RemoveOutlier, AllFormsBlankShortStretches) {
  build::GridLines grid(5);
  for (int round = 0; round < 3000; ++round) {
    const Line line = grid.line(25, {-4, -1, 0, 0.5, 1, 3});
    const int size = line.empty() ? -1 : static_cast<int>(line.size());
    const SQO_outlierFilterParam para = {grid.pick({0.5, 1, 1.25, 3, 100, NAN}),
                                         grid.pick({0, 1.5, 2, 3, 4, 99, NAN})};
    for (const bool inSpace : {false, true}) {
      const auto measure = inSpace ? plain::distance : plain::heightDiff;
      Line source = line;
      Line filtered(3);
      std::vector<int> noise = {-5};
      (inSpace ? qo_lineDataRemoveOutlier_ptDistMethod : qo_lineDataRemoveOutlier)(
          source.data(), size, para, filtered, noise);
      std::vector<int> expectedNoise = {-5};
      const std::string expected = text(plain::withoutOutliers(line, para, measure, expectedNoise));
      ASSERT_EQ(text(filtered), expected) << text(line);
      ASSERT_EQ(noise, expectedNoise);
      ASSERT_EQ(text(source), text(line)) << "the line was changed";
      if (!inSpace) {
        ju_vectorDataRemoveOutlier_overwrite(filtered = line, para);
        qo_lineDataRemoveOutlier_changeOriginData(source.data(), size, para);
        ASSERT_EQ(text(filtered) + text(source), expected + expected);
      }
    }
  }
}

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

TEST(NoiseFilter, FiltersAlongLinesThenAcross) {
  build::GridLines grid(6);
  for (int round = 0; round < 500; ++round) {
    build::Scan scan(1 + static_cast<std::size_t>(grid.below(8)));
    for (Line& line : scan) {
      line = grid.line(9, {-4, 0, 0, 0, 0.5, 4});
      line.resize(grid.below(40) > 0 ? 9 : 8, build::sample(5.0, 6.0, grid.pick({0, 60})));
    }
    build::Scan expected = scan;
    const SQO_outlierFilterParam para = {grid.pick({0.5, 1, 5, 9}), grid.pick({1.5, 2, 3, 4})};
    int errCode = 1;
    ju_noiseFilter(scan, para, &errCode);
    ASSERT_EQ(errCode, plain::noiseFilter(expected, para));
    for (std::size_t k = 0; k < scan.size(); ++k) {
      ASSERT_EQ(text(scan[k]), text(expected[k])) << k;
    }
  }
}

TEST(Split, CutsLongStaircaseInLineOrder) {
  const int tread = 5000;
  Line line = build::profileLine(200 * tread, 1.0,
                                 [=](double y) { return 10.0 + 40.0 * std::floor(y / tread); });
  Runs pieces;
  split({0, 200 * tread, 7}, line, 0.5, pieces);
  ASSERT_EQ(pieces.size(), 200U);
  for (int i = 0; i < 200; ++i) {
    EXPECT_TRUE(pieces[i].start == i * tread && pieces[i].len == tread) << i;
  }
}

TEST(Split, StopsWhereOnlyRoundingSeparates) {
  for (int slope = -20; slope < 20; ++slope) {
    Line line = build::profileLine(9, 0.4, [=](double y) { return 50.1 + 0.1 * slope * y; });
    Runs pieces;
    split({0, 9, 7}, line, 1e-9, pieces);
    ASSERT_TRUE(pieces.size() == 1 && pieces[0].len == 9) << slope;
    split({0, 9, 7}, line, 1e-300, pieces);
    for (std::size_t i = 2; i < pieces.size(); ++i) {
      EXPECT_GE(pieces[i].start, pieces[i - 1].start + pieces[i - 1].len - 1) << slope;
    }
  }
}

TEST(SurfaceLineSegment, PicksFlattestOfWantedLength) {
  // Samples up to `wallY` in y share their y.
  const std::tuple<const char*, Z, STeskRangeD, const char*, const char*, double> cases[] = {
      {"flatter second", {10, 12, 14, 16, 15, 14, 13}, {0, 9}, "3:6:4 ", "0:3:1 ", 0.0},
      {"tie", {10, 12, 14, 12, 10}, {0, 9}, "0:2:1 ", "2:4:3 ", 0.0},
      {"two runs", {9, 9, 9, 50, 50, 50, 51, 52, 53}, {0, 9}, "0:2:1 3:5:4 ", "5:8:6 ", 0.0},
      {"exactly as long", {10, 10, 10, 10, 10}, {5, 5}, "0:4:2 ", "", 0.0},
      {"too short", {10, 10, 10}, {5, 9}, "", "", 0.0},
      {"too long", {10, 10, 10, 10, 10, 10}, {0, 6}, "", "", 0.0},
      {"higher index first", {10, 10, 0, 10, 10}, {0, 9}, "0:4:3 ", "", 0.0},
      {"lower index next", {10, 10, 0, 0.0001, 10}, {0, 9}, "0:4:1 ", "", 0.0},
      {"0.0001 in the middle", {10, 10, 0.0001, 10, 10}, {0, 9}, "0:4:2 ", "", 0.0},
      {"no middle", {10, 0, 10}, {0, 9}, "", "", 0.0},
      {"no middle, even length", {10, 0, 0, 10}, {0, 9}, "", "", 0.0},
      {"vertical first", {10, 12, 14, 14, 14}, {0, 9}, "2:4:3 ", "0:2:1 ", 2.0},
      {"no chord", {10, 12, 10}, {0, 9}, "0:2:1 ", "", 9.0},
  };
  for (const auto& [what, z, lenRange, expectedBest, expectedOthers, wallY] : cases) {
    Line line = lineOfZ(z);
    for (STesk3DPosition& sample : line) {
      sample.pt3D.x = 0.75 * sample.pt3D.y;  // Four samples on at equal z: a distance of 5.
      sample.pt3D.y = std::max(0.0, sample.pt3D.y - wallY);
      sample.nPointIdx = 5;
    }
    Pieces best;
    Pieces others;
    ju_surfaceLineSegment(line, 6, lenRange, {4.5, 5.0, 0.5}, best, others);
    EXPECT_EQ(text(best), expectedBest) << what;
    EXPECT_EQ(text(others), expectedOthers) << what;
    EXPECT_EQ(build::stampsOf(line), std::vector<int>(line.size(), 0));
  }
}

}  // namespace
