#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include <scanline/clustering.h>
#include "builders.h"
#include "plain_clustering.h"

namespace {

using Points = std::vector<STesk3DPosition>;
using Info = SQO_featureClusteringInfo;

TEST(PointClustering, AgreesWithThePlainFormOnRandomPoints) {
  const std::array<double, 9> distances = {
      -0.5, 0.0, std::nan(""), 1.0, std::sqrt(2.0), std::nextafter(std::sqrt(2.0), 2.0),
      1.5,  3.0, HUGE_VAL};
  cv::RNG random(1);
  for (int round = 0; round < 450; ++round) {
    Points points(random.uniform(0, 300));
    const int extent = random.uniform(1, 40);
    for (STesk3DPosition& point : points) {
      const double x = random.uniform(0, 200) == 0 ? std::nan("") : random.uniform(0, extent);
      const double y = random.uniform(0, 200) == 0 ? -std::nan("") : random.uniform(-extent, 0);
      point = build::sample(x, y, random.uniform(0, 2) * 1e9, random.uniform(-1, 20));
    }
    Points rest = points;
    std::vector<Points> expected(round % 3);
    std::vector<Points> clusters = expected;
    plain::pointClustering(rest, distances[round % 9], expected);
    qo_pointClustering(points, distances[round % 9], clusters);
    ASSERT_TRUE(points.empty());
    ASSERT_EQ(clusters.size(), expected.size()) << round;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
      ASSERT_EQ(build::text(clusters[i]), build::text(expected[i])) << round;
    }
  }
}

/// A grid of cells most of which are open, and points that rise by about 1.0 per cell.
struct RandomGrid {
  std::vector<std::vector<Info>> cells;
  std::vector<std::vector<STesk3DPoint>> points;
  std::vector<STesk2DPoint> queue;

  RandomGrid(cv::RNG& random, int width, int height) : cells(width), points(width) {
    const auto rarely = [&random](int value) { return random.uniform(0, 12) == 0 ? value : 0; };
    for (int x = 0; x < width; ++x) {
      for (int y = 0; y < height; ++y) {
        cells[x].push_back({1 - rarely(1), 2, 3, rarely(random.uniform(-1, 2)), rarely(1), 4, 5});
        points[x].push_back({x + random.uniform(0, 3) * 0.5, 10.0 + y + random.uniform(0, 3) * 0.5,
                             30.0 + random.uniform(0, 4) * 0.5});
      }
    }
    for (int k = random.uniform(0, 3); k > 0; --k) {
      queue.push_back({random.uniform(0, width), random.uniform(0, height)});
    }
  }

  /// The cells and the queue, as bytes.
  [[nodiscard]] std::string bytes() const {
    std::string all = build::text(queue);
    for (const std::vector<Info>& column : cells) {
      all.append(reinterpret_cast<const char*>(column.data()), column.size() * sizeof(Info));
    }
    return all;
  }
};

void widen(STeskRangeD& range, double value) {
  range = {std::min(range.min, value), std::max(range.max, value)};
}

TEST(GridClustering, AgreesWithThePlainFormOnRandomGrids) {
  cv::RNG random(2);
  for (int round = 0; round < 2000; ++round) {
    RandomGrid grid(random, random.uniform(1, 9), random.uniform(1, 9));
    const RandomGrid before = grid;
    RandomGrid expected = grid;
    STesk3DRangeD box = {{4.0, 4.0}, {14.0, 14.0}, {0.0, -1.0}};  // the bounds on entry count
    STesk3DRangeD wanted = box;
    const auto limit = [&random] { return random.uniform(0, 7) * 0.5; };
    const SQO_treeGrowParam param = {limit(), limit(), 0, limit(), 0.0, 0.0};
    const int window = random.uniform(-1, 5);
    const auto links = [&](const STesk2DPoint& from, const STesk2DPoint& to) {
      const STesk3DPoint& p = grid.points[from.x][from.y];
      const STesk3DPoint& q = grid.points[to.x][to.y];
      return param.yDeviation_max > std::abs(p.y - q.y) &&
             param.zDeviation_max > std::abs(p.z - q.z) &&
             param.maxSkipDistance > std::abs(p.x - q.x);
    };
    plain::growOnGrid(expected.cells, window < 4 ? window : 9, links, 7, expected.queue);
    for (const STesk2DPoint& at : expected.queue) {
      const STesk3DPoint& p = expected.points[at.x][at.y];
      widen(wanted.xRange, p.x);
      widen(wanted.yRange, p.y);
      widen(wanted.zRange, p.z);
    }
    ju_gridPointClustering(grid.cells, grid.points, window < 4 ? window : INT_MAX, param, 7,
                           grid.queue, box);
    ASSERT_EQ(grid.bytes(), expected.bytes()) << round;
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): every bit counts
    ASSERT_EQ(std::memcmp(&box, &wanted, sizeof box), 0) << round;

    STeskRect rect = {4, 4, 9, -9};
    STeskRect wantedRect = rect;
    grid = expected = before;
    const auto always = [](auto...) { return true; };
    plain::growOnGrid(expected.cells, 1, always, 7, expected.queue);
    for (const auto& [x, y] : expected.queue) {
      wantedRect = {std::min(wantedRect.left, x), std::max(wantedRect.right, x),
                    std::min(wantedRect.top, y), std::max(wantedRect.bottom, y)};
    }
    ju_gridPointClustering_labelling(grid.cells, grid.points, 7, grid.queue, rect);
    ASSERT_EQ(grid.bytes(), expected.bytes()) << round;
    ASSERT_EQ(std::memcmp(&rect, &wantedRect, sizeof rect), 0) << round;
  }
}

TEST(TwoPassLabel, AgreesWithFloodFilling) {
  cv::RNG random(5);
  for (int round = 0; round < 600; ++round) {
    cv::Mat whole(random.uniform(1, 43), random.uniform(3, 43), CV_8U);
    random.fill(whole, cv::RNG::UNIFORM, 0, 10);
    cv::Mat(whole < 1 + round % 9).convertTo(whole, round % 7, 1.0 / 255.0);
    const cv::Mat image = whole.colRange(0, whole.cols - random.uniform(0, 3));
    cv::Mat expected;
    image.convertTo(expected, CV_32S);
    const int connectivity = round % 16 == 0 ? -8 : round % 4 * 4;
    const std::vector<SQO_Region> wanted = plain::labelRegions(expected, connectivity);
    // The labels are written to the image itself, to a view into another image, or to a new one.
    cv::Mat labels = image;
    cv::Mat canvas(50, 50, CV_32S);
    if (round % 3 > 0) {
      labels = canvas(cv::Rect(3, 4, image.cols - round % 3 + 1, image.rows));
    }
    const cv::Mat before = labels;
    std::vector<SQO_Region> regions;
    QO_TwoPassLabel(round % 3 == 0 ? labels : image, labels, regions, connectivity);
    ASSERT_EQ(regions.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      ASSERT_EQ(std::memcmp(&regions[i], &wanted[i], sizeof(SQO_Region)), 0) << round;
    }
    ASSERT_EQ(cv::countNonZero(labels != expected), 0);
    const bool fits = before.size() == expected.size() && before.type() == CV_32S;
    ASSERT_EQ(labels.data == before.data, fits) << "an image that fits is written in place";
  }
}

TEST(TwoPassLabel, TakesEmptyImagesAndRecordsPassedIn) {
  cv::Mat labels(2, 2, CV_8U);
  std::vector<SQO_Region> regions = {{{9, 0, 9, 0}, 5, 2}, {{9, 3, 9, 0}, 5, 3}};
  QO_TwoPassLabel(cv::Mat(), labels, regions, 8);
  EXPECT_TRUE(labels.empty());
  // The first region always gets a new record; the second one has one already.
  const cv::Mat image =
      (cv::Mat_<int>(3, 6) << 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 1, 0, 0, 1, 0, 0, 0, 0);
  QO_TwoPassLabel(image, labels, regions, 8);
  ASSERT_EQ(regions.size(), 3U);
  EXPECT_EQ(regions[0].ptCounter * 10 + regions[1].ptCounter, 57);
  EXPECT_EQ(regions[1].roi.left * 10 + regions[1].roi.right, 34);
  EXPECT_EQ(regions[2].ptCounter * 10 + regions[2].labelID, 12);
}

}  // namespace
