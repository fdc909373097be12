#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <scanline/conditioning.h>
#include "builders.h"

namespace {

using build::Line;
using build::lineOfZ;
using build::text;
using Runs = std::vector<SQO_RUN>;
using Pieces = std::vector<SQO_featureSemiCircle>;

/// Steps, noise, infinities, samples right at the limit and holes of every kind.
Line noisyLine(int count) {
  std::mt19937 random(7);
  const double odd[] = {-0.0, -7.0, 0.0001, NAN, -HUGE_VAL, HUGE_VAL, 0.000101};
  Line line;
  for (int i = 0; i < count; ++i) {
    const double noise = static_cast<double>(random()) / 4294967296.0;
    const int steps = i / 20;
    const double z = random() % 8 == 0 ? odd[random() % 7] : 100.0 + 5.0 * steps + noise / 3.0;
    line.push_back(build::sample(0.1 * noise, 0.2 * i, z, 3 * i));
  }
  return line;
}

Line smoothedByPlainLoop(const Line& line, int half) {
  Line out = line;
  for (std::size_t i = 0; i < line.size(); ++i) {
    double sum = 0.0;
    int count = 0;
    for (std::size_t k = 0; k < line.size(); ++k) {
      const int distance = std::abs(static_cast<int>(k) - static_cast<int>(i));
      if (distance <= half && line[k].pt3D.z > 0.0001) {
        sum += line[k].pt3D.z;
        ++count;
      }
    }
    out[i].pt3D.z = line[i].pt3D.z > 0.0001 ? sum / count : line[i].pt3D.z;
  }
  return out;
}

TEST(LineDataSmoothing, SumsEveryWindowInOrder) {
  for (const int count : {0, 2, 301}) {
    for (const int window : {INT_MIN, -2, 0, 1, 2, 25, 599, 602, INT_MAX}) {
      Line line = noisyLine(count);
      Line out(7);
      qo_lineDataSmoothing(line, window, out);
      EXPECT_EQ(text(out), text(smoothedByPlainLoop(line, window / 2))) << "window " << window;
    }
  }
}

TEST(LineSegSmoothing, CutsAtStepsAndHoles) {
  using Z = std::vector<double>;
  const std::tuple<const char*, Z, double, double, Z> cases[] = {
      {"steps up and down", {1, 3, 5, 90, 92, 1, 3}, 2, 5, {3, 3, 3, 91, 91, 2, 2}},
      {"exactly the limits", {10, 15}, 1, 5, {12.5, 12.5}},
      {"beyond the limit in z", {10, 15}, 1, 4.9, {10, 15}},
      {"beyond the limit in y", {10, 15}, 0.9, 5, {10, 15}},
      {"a hole is a step", {10, 12, 0, 14, 16}, 2, 5, {11, 11, 0, 15, 15}},
      {"a hole within the limit", {10, 12, 0, 14, 16}, 2, 14, {11, 12, 0, 14, 15}},
      {"a NaN hole", {10, NAN, 30}, 2, 5, {20, NAN, 20}},
  };
  for (const auto& [what, z, yTh, zTh, smoothed] : cases) {
    Line line = lineOfZ(z);
    Line out(1);
    qo_lineSegSmoothing(line, yTh, zTh, 5, out);
    out.erase(out.begin());
    EXPECT_EQ(text(out), text(lineOfZ(smoothed))) << what;
  }
}

TEST(RemoveOutlier, BlanksShortStretchesInAllForms) {
  const std::tuple<const char*, std::vector<double>, SQO_outlierFilterParam, std::vector<int>>
      cases[] = {
          {"exactly the count limit", {10, 10.5, 50}, {1, 2}, {2}},
          {"exactly the continuity limit", {10, 11, 10}, {1, 2}, {0, 1, 2}},
          {"holes do not separate", {10, 0, 0.0001, -3, 10.5}, {1, 2}, {}},
          {"holes inside go too", {0, 10, -3, 0.0001, 10.5, -3, 50, 50, 50}, {1, 3}, {1, 2, 3, 4}},
          {"no joining over a gap", {10, 10, 50, 10, 10}, {1, 3}, {0, 1, 2, 3, 4}},
          {"NaN is measured, alone", {10, 10, NAN, 10, 10}, {1, 2}, {2}},
          {"NaN continuity limit", {10, 10}, {NAN, 2}, {0, 1}},
          {"NaN count limit", {10, 50}, {1, NAN}, {}},
      };
  for (const auto& [what, z, para, noise] : cases) {
    Line line = lineOfZ(z);
    Line blanked = line;
    for (const int k : noise) {
      blanked[k].pt3D.z = 0.0;
    }
    const int size = static_cast<int>(line.size());
    Line filtered(3);
    std::vector<int> listed;
    qo_lineDataRemoveOutlier(line.data(), size, para, filtered, listed);
    EXPECT_EQ(listed, noise) << what;
    EXPECT_EQ(text(filtered), text(blanked)) << what;
    EXPECT_EQ(text(line), text(lineOfZ(z))) << what;
    ju_vectorDataRemoveOutlier_overwrite(filtered = line, para);
    EXPECT_EQ(text(filtered), text(blanked)) << what;
    qo_lineDataRemoveOutlier_changeOriginData(line.data(), size, para);
    EXPECT_EQ(text(line), text(blanked)) << what;
  }
}

TEST(RemoveOutlierPtDist, MeasuresInSpace) {
  // From the first to the last sample 2, 3 and 6: 7 in space.
  Line line = {build::sample(0, 0, 10), build::sample(9, 9, 0), build::sample(2, 3, 16)};
  for (const double continuity : {6.5, 7.0, 7.5}) {
    Line filtered;
    std::vector<int> noise;
    qo_lineDataRemoveOutlier_ptDistMethod(line.data(), 3, {continuity, 2}, filtered, noise);
    EXPECT_EQ(noise.size(), continuity > 7.0 ? 0U : 2U);
    EXPECT_EQ(filtered[0].pt3D.z, continuity > 7.0 ? 10.0 : 0.0);
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

using Case = std::tuple<std::vector<double>, double, const char*>;  // z, limit and runs

TEST(LineDataIntervals, CutsAtSteps) {
  const Case cases[] = {
      {{}, 2.5, ""},
      {{0, 0.0001, -1, NAN}, 2.5, ""},
      {{0, 10, 0, NAN}, 2.5, "1:1:1 "},
      {{10, 0, 14.9, 0, 0}, 2.5, "0:3:2 "},
      {{10, 0, 14.9, 0, 0}, 2, "0:1:1 2:1:2 "},
      {{10, 15, 15, 9, 0}, 2.5, "0:1:1 1:2:2 3:1:3 "},
  };
  for (const auto& [z, limit, expected] : cases) {
    Line line = lineOfZ(z);
    std::for_each(line.begin(), line.end(), [](auto& sample) { sample.nPointIdx = 5; });
    Runs runs = {{9, 9, 9}};
    ju_getLineDataIntervals(line, {limit, 5.0, 0.0}, runs);
    EXPECT_EQ(text(runs), std::string("9:9:9 ") + expected);
    EXPECT_EQ(build::stampsOf(line), std::vector<int>(line.size(), 0));
  }
}

TEST(Split, CutsAtFarthestSample) {
  const Case cases[] = {
      {{10, 11, 12}, 1, "0:3:7 "},
      {{0, 11, 12}, 99, ""},
      {{10, 11, 0}, 99, ""},
      {{10, 11, 0.0001}, 99, "0:3:7 "},
      {{10, 0, NAN, 0.0001, 10}, 1, "0:5:7 "},
      {{10, 12, 10}, 2, ""},
      {{10, 11, 12, 11, 12, 11, 10}, 1, "0:3:0 2:5:0 "},
      {{10, 10, 10, 15, 20, 20, 20}, 0.5, "0:3:0 2:3:0 4:3:0 "},
  };
  for (const auto& [z, limit, expected] : cases) {
    Line line = lineOfZ(z);
    Runs pieces;
    split({0, static_cast<int>(line.size()), 7}, line, limit, pieces);
    EXPECT_EQ(text(pieces), expected);
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
