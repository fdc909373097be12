#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numeric>
#include <opencv2/core.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/clustering.h>
#include "builders.h"

namespace {

using build::text;
using Points = std::vector<STesk3DPosition>;
using Info = SQO_featureClusteringInfo;

// Arrays of both records cross the boundary: seven ints, and six.
static_assert(sizeof(Info) == 28 && offsetof(Info, clusterID) == 12 &&
              offsetof(Info, queued) == 16);
static_assert(sizeof(SQO_Region) == 24 && offsetof(SQO_Region, labelID) == 20);

/// Clusters points at the given x, marked 0, 1, 2..., and tells the members as "0 1 | 2 | ".
std::string clustered(const std::vector<double>& xs, double clusterDist, int firstMark = 0) {
  Points points;
  for (const double x : xs) {
    const int mark = firstMark + static_cast<int>(points.size());
    points.push_back(build::sample(x, x, mark % 2 == 0 ? 0.0 : 1e9, mark));
  }
  std::vector<Points> clusters;
  qo_pointClustering(points, clusterDist, clusters);
  EXPECT_TRUE(points.empty());
  std::string out;
  for (const Points& cluster : clusters) {
    for (const STesk3DPosition& point : cluster) {
      out += std::to_string(point.nPointIdx) + " ";
    }
    out += "| ";
  }
  return out;
}

TEST(PointClustering, LinksWhatIsCloserThanTheDistance) {
  const double step = std::sqrt(2.0);
  EXPECT_EQ(clustered({}, 1.0), "");
  EXPECT_EQ(clustered({0.0, 2.0, 1.0}, 1.5), "0 2 1 | ") << "members draw in by turns";
  EXPECT_EQ(clustered({0.0, -0.5, 1.0}, step), "0 1 | 2 | ") << "strictly";
  EXPECT_EQ(clustered({0.0, 9.0, 1.0, 10.0}, std::nextafter(step, 2.0)), "0 2 | 1 3 | ");
  for (const double none : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(clustered({5.0, 5.0, 5.0}, none), "0 | 1 | 2 | ");
  }
  EXPECT_EQ(clustered({0.0, std::nan(""), 0.5}, HUGE_VAL), "0 2 | 1 | ");
  EXPECT_EQ(clustered({0.0, 9.0, 0.1, 0.2}, 1.0, -2), "-2 0 1 | ") << "marked ones but the first";
}

TEST(PointClustering, GrowsBreadthFirst) {
  // A line of points in no order is reached from the first one to both sides.
  std::vector<double> xs(3000);
  std::iota(xs.begin(), xs.end(), 0.0);
  std::shuffle(xs.begin(), xs.end(), std::mt19937(3));
  std::istringstream members(clustered(xs, 1.5));
  std::vector<double> distances;
  for (std::size_t i = 0; members >> i;) {
    distances.push_back(std::abs(xs[i] - xs[0]));
  }
  EXPECT_EQ(distances.size(), xs.size());
  EXPECT_TRUE(std::is_sorted(distances.begin(), distances.end()));
}

using Grid = std::vector<std::vector<Info>>;

constexpr Info kFeature = {1, 0, 0, 0, 0, 0, 0};

/// Grows from `seed` on a plane that rises by 1.0 per cell in x, y and z, and tells the cells taken
/// as "x,y ".
std::string grown(Grid& grid, STesk2DPoint seed, int window, STesk3DPoint limit) {
  std::vector<std::vector<STesk3DPoint>> points(grid.size());
  for (int x = 0; x < static_cast<int>(grid.size()); ++x) {
    for (int y = 0; y < static_cast<int>(grid[x].size()); ++y) {
      points[x].push_back({1.0 * x, 1.0 * y, 1.0 * (x + y)});
    }
  }
  std::vector<STesk2DPoint> queue = {seed};
  STesk3DRangeD box = {{1.0, 1.0}, {9.0, 9.0}, {0.0, -1.0}};
  ju_gridPointClustering(grid, points, window, {limit.y, limit.z, 0, limit.x, 0.0, 0.0}, 7, queue,
                         box);
  EXPECT_LE(box.zRange.max, 4.0);
  EXPECT_EQ(box.zRange.min, 0.0) << "start values count";
  return text(queue);
}

TEST(GridClustering, DriftsFromCellToCellWithinStrictLimits) {
  Grid grid(3, {2, kFeature});
  EXPECT_EQ(grown(grid, {1, 0}, 1, {1.5, 1.5, 1.5}), "1,0 0,0 0,1 1,0 1,1 2,0 2,1 ")
      << "the seed twice";
  EXPECT_EQ(grid[2][1].clusterID * 10 + grid[2][1].queued, 71);
  const auto reached = [](int window, const STesk3DPoint& limit) {
    Grid fresh(3, {3, kFeature});
    return grown(fresh, {1, 1}, window, limit);
  };
  EXPECT_EQ(reached(1, {1.0, 9.0, 9.0}), "1,1 1,0 1,1 1,2 ");
  EXPECT_EQ(reached(1, {9.0, 1.0, 9.0}), "1,1 0,1 1,1 2,1 ");
  EXPECT_EQ(reached(1, {9.0, 9.0, 1.0}), "1,1 0,2 1,1 2,0 ");
  EXPECT_EQ(reached(1, {9.0, 0.0, 9.0}), "1,1 ");
  EXPECT_EQ(reached(-1, {9.0, 9.0, 9.0}), "1,1 ");
  EXPECT_EQ(reached(INT_MAX, {9.0, 9.0, 9.0}), "1,1 0,0 0,1 0,2 1,0 1,1 1,2 2,0 2,1 2,2 ");
}

TEST(GridClustering, BarriersAndOpenCells) {
  Grid grid(7, {kFeature});
  grid[2][0].clusterID = -1;
  grid[5][0].clusterID = 3;
  grid[6][0].featureFlag = 0;
  std::vector<std::vector<STesk3DPoint>> unread;
  std::vector<STesk2DPoint> queue = {{1, 0}, {6, 0}};
  STeskRect rect = {9, -9, 9, -9};
  ju_gridPointClustering_labelling(grid, unread, 7, queue, rect);
  EXPECT_EQ(text(queue), "1,0 6,0 0,0 1,0 2,0 ") << "2,0 draws in none";
  EXPECT_EQ(grid[2][0].clusterID * 10 + grid[5][0].clusterID, 73);
  EXPECT_EQ(rect.left * 1000 + rect.right * 100 + rect.top * 10 + rect.bottom, 600);
}

/// Labels what hangs together with `start` on all but the frame.
SQO_Region flood(cv::Mat& image, const cv::Point& start, int label, int connectivity) {
  SQO_Region region = {{start.x, start.x, start.y, start.y}, 0, label};
  std::vector<cv::Point> open = {start};
  while (!open.empty()) {
    const cv::Point at = open.back();
    open.pop_back();
    if (cv::Rect(1, 1, image.cols - 2, image.rows - 2).contains(at) && image.at<int>(at) == 1) {
      image.at<int>(at) = label;
      region.roi = {std::min(region.roi.left, at.x), std::max(region.roi.right, at.x),
                    region.roi.top, std::max(region.roi.bottom, at.y)};
      ++region.ptCounter;
      for (int k = 0; k < 9; ++k) {
        if (connectivity == 8 || k % 2 == 1) {
          open.emplace_back(at.x + k % 3 - 1, at.y + k / 3 - 1);
        }
      }
    }
  }
  return region;
}

TEST(TwoPassLabel, AgreesWithFlooding) {
  cv::RNG random(5);
  for (int round = 0; round < 400; ++round) {
    cv::Mat whole(random.uniform(1, 43), random.uniform(3, 43), CV_8U);
    random.fill(whole, cv::RNG::UNIFORM, 0, 10);
    cv::Mat(whole < 1 + round % 9).convertTo(whole, round % 7, 1.0 / 255.0);
    cv::Mat image = whole.colRange(0, whole.cols - random.uniform(0, 3));
    cv::Mat expected;
    image.convertTo(expected, CV_32S);
    const int connectivity = round % 16 == 0 ? -8 : round % 4 * 4;
    std::vector<SQO_Region> regions;
    QO_TwoPassLabel(image, image, regions, connectivity);
    auto region = regions.begin();
    for (int i = 0; i < static_cast<int>(expected.total()); ++i) {
      const cv::Point start(i % expected.cols, i / expected.cols);
      const int label = static_cast<int>(region - regions.begin()) + 2;
      const SQO_Region wanted = flood(expected, start, label, connectivity);
      if (wanted.ptCounter > 0) {
        ASSERT_NE(region, regions.end());
        ASSERT_EQ(std::memcmp(&*region++, &wanted, sizeof wanted), 0);
      }
    }
    ASSERT_EQ(region, regions.end());
    ASSERT_EQ(cv::countNonZero(image != expected), 0);
  }
}

}  // namespace
