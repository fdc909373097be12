#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "builders.h"
#include "conditioning.h"

namespace {

using build::Line;
using build::lineOfZ;

const double kNaN = std::nan("");

/// Every bit of a line but the sign of its NaN, to compare and to read.
std::string text(const Line& line) {
  std::ostringstream out;
  for (const auto& [idx, pt] : line) {
    out << std::hexfloat << idx << ": " << pt.x << ' ' << pt.y << ' '
        << (std::isnan(pt.z) ? kNaN : pt.z) << '\n';
  }
  return out.str();
}

/// Steps, noise, infinities, samples right at the limit and holes of every kind.
Line noisyLine(int count) {
  std::mt19937 random(7);
  const double odd[] = {-0.0, -7.0, 0.0001, kNaN, -HUGE_VAL, HUGE_VAL, 0.000101};
  Line line;
  for (int i = 0; i < count; ++i) {
    const double noise = static_cast<double>(random()) / 4294967296.0;
    const double z = random() % 8 == 0 ? odd[random() % 7] : 100.0 + i / 20 * 5 + noise / 3.0;
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
      {"a NaN hole", {10, kNaN, 30}, 2, 5, {20, kNaN, 20}},
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
          {"NaN is measured, alone", {10, 10, kNaN, 10, 10}, {1, 2}, {2}},
          {"NaN continuity limit", {10, 10}, {kNaN, 2}, {0, 1}},
          {"NaN count limit", {10, 50}, {1, kNaN}, {}},
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

}  // namespace
