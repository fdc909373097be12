#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <map>
#include <opencv2/core.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "builders.h"
#include "clustering.h"

namespace {

using Points = std::vector<STesk3DPosition>;
using Cells = std::vector<std::pair<int, int>>;

const double kNaN = std::nan("");

// Arrays of both records cross the boundary: seven ints, and six.
using Info = SQO_featureClusteringInfo;
static_assert(sizeof(Info) == 28 && offsetof(Info, clusterID) == 12 &&
              offsetof(Info, queued) == 16);
static_assert(sizeof(SQO_Region) == 24 && offsetof(SQO_Region, ptCounter) == 16 &&
              offsetof(SQO_Region, labelID) == 20);

/// The clusters as the `nPointIdx` of their members: "0 1|2".
std::string clustered(Points points, double clusterDist) {
  std::vector<Points> clusters;
  qo_pointClustering(points, clusterDist, clusters);
  EXPECT_TRUE(points.empty());
  std::string out;
  for (const Points& cluster : clusters) {
    out += out.empty() ? "" : "|";
    for (std::size_t i = 0; i < cluster.size(); ++i) {
      out += (i == 0 ? "" : " ") + std::to_string(cluster[i].nPointIdx);
    }
  }
  return out;
}

Points along(const std::vector<double>& xs) {
  Points points;
  for (const double x : xs) {
    points.push_back(build::sample(x, 0.0, 0.0, static_cast<int>(points.size())));
  }
  return points;
}

TEST(PointClustering, LinksWhatIsCloserThanTheDistance) {
  EXPECT_EQ(clustered({}, 1.0), "");
  EXPECT_EQ(clustered(along({0.0, 1.0, 2.0}), 1.5), "0 1 2");
  EXPECT_EQ(clustered(along({0.0, 2.0, 1.0}), 1.5), "0 2 1") << "members are visited in turn";
  EXPECT_EQ(clustered(along({0.0, 9.0, 1.0, 10.0}), 1.0), "0|1|2|3") << "just apart is apart";
  EXPECT_EQ(clustered(along({0.0, 9.0, 1.0, 10.0}), std::nextafter(1.0, 2.0)), "0 2|1 3");
  const Points diagonal = {build::sample(0.0, 0.0, 0.0, 0), build::sample(1.0, 1.0, 1e9, 1)};
  EXPECT_EQ(clustered(diagonal, std::sqrt(2.0)), "0|1");
  EXPECT_EQ(clustered(diagonal, std::nextafter(std::sqrt(2.0), 2.0)), "0 1") << "z plays no part";
  for (const double none : {0.0, -1.0, kNaN}) {
    EXPECT_EQ(clustered(along({5.0, 5.0, 5.0}), none), "0|1|2");
  }
  EXPECT_EQ(clustered(along({0.0, kNaN, 0.5, kNaN}), HUGE_VAL), "0 2|1|3");
}

TEST(PointClustering, NegativeMarkIsTakenUnlessFirst) {
  Points points = along({0.0, 0.1, 0.2, 9.0});
  points[0].nPointIdx = points[1].nPointIdx = points[3].nPointIdx = -1;
  EXPECT_EQ(clustered(points, 1.0), "-1 2");
}

TEST(PointClustering, AgreesWithThePlainSearch) {
  std::mt19937 engine(3);
  const auto random = [&](int count) { return static_cast<int>(engine() % count); };
  for (int round = 0; round < 60; ++round) {
    Points points;
    for (int i = 0; i < 20 * round; ++i) {
      points.push_back(build::sample(random(64), random(64), 0.0, i));
    }
    const double reach = std::sqrt(1.0 + round % 5);
    std::string expected;
    std::vector<bool> taken(points.size());
    for (std::size_t seed = 0; seed < points.size(); ++seed) {
      std::vector<std::size_t> members(taken[seed] ? 0 : 1, seed);
      for (std::size_t m = 0; m < members.size(); ++m) {
        taken[seed] = true;
        expected += (m > 0 ? " " : seed > 0 ? "|" : "") + std::to_string(members[m]);
        for (std::size_t i = 0; i < points.size(); ++i) {
          const STesk3DPoint& p = points[members[m]].pt3D;
          const STesk3DPoint& q = points[i].pt3D;
          if (!taken[i] &&
              std::sqrt((p.x - q.x) * (p.x - q.x) + (p.y - q.y) * (p.y - q.y)) < reach) {
            taken[i] = true;
            members.push_back(i);
          }
        }
      }
    }
    ASSERT_EQ(clustered(points, reach), expected);
  }
}

/// A grid of features on a plane that rises by 1.0 per cell in all of x, y and z.
struct GridScene {
  std::vector<std::vector<SQO_featureClusteringInfo>> info;
  std::vector<std::vector<STesk3DPoint>> points;
  STesk3DRangeD box = {{1e9, -1e9}, {1e9, -1e9}, {1e9, -1e9}};

  GridScene(int xs, int ys) : info(xs, {static_cast<std::size_t>(ys), {1, 0, 0, 0, 0, 0, 0}}) {
    for (int x = 0; x < xs; ++x) {
      points.emplace_back();
      for (int y = 0; y < ys; ++y) {
        points.back().push_back({1.0 * x, 1.0 * y, 1.0 * (x + y)});
      }
    }
  }

  Cells grow(std::vector<STesk2DPoint> queue, int window, SQO_treeGrowParam param) {
    ju_gridPointClustering(info, points, window, param, 7, queue, box);
    return cells(queue);
  }

  Cells label(std::vector<STesk2DPoint> queue, STeskRect& rect) {
    ju_gridPointClustering_labelling(info, points, 7, queue, rect);
    return cells(queue);
  }

  static Cells cells(const std::vector<STesk2DPoint>& queue) {
    Cells result;
    for (const STesk2DPoint& cell : queue) {
      result.emplace_back(cell.x, cell.y);
    }
    return result;
  }
};

constexpr SQO_treeGrowParam limits(double x, double y, double z) {
  return {y, z, 0, x, 0.0, 0.0};
}

TEST(GridClustering, DriftsFromCellToCell) {
  GridScene scene(3, 2);
  const Cells expected = {{1, 0}, {0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}, {2, 1}};
  EXPECT_EQ(scene.grow({{1, 0}}, 1, limits(1.5, 1.5, 1.5)), expected) << "the seed stands twice";
  EXPECT_EQ(scene.box.zRange.max, 3.0);
  EXPECT_EQ(scene.box.xRange.min, 0.0);
  EXPECT_EQ(scene.info[2][1].clusterID * 10 + scene.info[2][1].queued, 71);
  EXPECT_TRUE(scene.grow({}, 1, limits(1.5, 1.5, 1.5)).empty());
}

TEST(GridClustering, LimitsAreStrictOnEachAxis) {
  const auto reached = [](int window, SQO_treeGrowParam param) {
    return GridScene(5, 5).grow({{2, 2}}, window, param).size();
  };
  EXPECT_EQ(reached(1, limits(9.0, 9.0, 9.0)), 26U);
  EXPECT_EQ(reached(1, limits(1.0, 9.0, 9.0)), 6U) << "along y alone";
  EXPECT_EQ(reached(1, limits(9.0, 1.0, 9.0)), 6U) << "along x alone";
  EXPECT_EQ(reached(1, limits(9.0, 9.0, 1.0)), 6U) << "across the slope alone";
  EXPECT_EQ(reached(1, limits(9.0, 0.0, 9.0)), 1U);
  EXPECT_EQ(reached(0, limits(9.0, 9.0, 9.0)), 2U) << "the seed itself";
  EXPECT_EQ(reached(-1, limits(9.0, 9.0, 9.0)), 1U);
  EXPECT_EQ(reached(INT_MAX, limits(9.0, 9.0, 9.0)), 26U);
}

TEST(GridClustering, BarriersAndOpenCells) {
  GridScene scene(7, 1);
  scene.info[2][0].clusterID = -1;  // open, but draws in none
  scene.info[5][0].clusterID = 3;
  scene.info[6][0].featureFlag = 0;
  STeskRect rect = {INT_MAX, INT_MIN, 0, 0};
  EXPECT_EQ(scene.label({{1, 0}}, rect), (Cells{{1, 0}, {0, 0}, {1, 0}, {2, 0}}));
  EXPECT_EQ(scene.label({{6, 0}, {4, 0}}, rect), (Cells{{6, 0}, {4, 0}, {3, 0}, {4, 0}}));
  EXPECT_EQ(scene.info[2][0].clusterID, 7);
  EXPECT_EQ(scene.info[5][0].clusterID, 3);
  EXPECT_EQ(rect.left * 10 + rect.right, 6);
}

using Picture = std::vector<std::string>;

cv::Mat draw(const Picture& picture) {
  cv::Mat image(static_cast<int>(picture.size()), static_cast<int>(picture.front().size()), CV_8U);
  for (int r = 0; r < image.rows; ++r) {
    for (int c = 0; c < image.cols; ++c) {
      image.ptr(r)[c] = picture[r][c] == '.' ? 0 : 1;
    }
  }
  return image;
}

Picture labelled(const Picture& picture, int connectivity) {
  cv::Mat labels;
  std::vector<SQO_Region> regions;
  QO_TwoPassLabel(draw(picture), labels, regions, connectivity);
  Picture out = picture;
  for (int r = 0; r < labels.rows; ++r) {
    for (int c = 0; c < labels.cols; ++c) {
      out[r][c] = labels.ptr<int>(r)[c] == 0 ? '.' : static_cast<char>('0' + labels.ptr<int>(r)[c]);
    }
  }
  return out;
}

TEST(TwoPassLabel, NumbersRegionsAsTheScanMeetsThem) {
  const Picture rings = {"........", ".#.#..#.", ".#.#.#..", ".###.#.#", "#.....#.", "........"};
  EXPECT_EQ(labelled(rings, 8),
            (Picture{"........", ".2.2..3.", ".2.2.3..", ".222.3.1", "1.....3.", "........"}));
  for (const int four : {4, 0, -8}) {
    EXPECT_EQ(labelled(rings, four),
              (Picture{"........", ".2.2..3.", ".2.2.4..", ".222.4.1", "1.....5.", "........"}));
  }
  EXPECT_EQ(labelled({"##", "##", "##"}, 8), (Picture{"11", "11", "11"}));
  EXPECT_EQ(labelled({"####", "####"}, 8), (Picture{"1111", "1111"}));
}

/// Labels by flooding from each pixel that the scan meets, on an image without its frame.
std::map<int, SQO_Region> flood(cv::Mat& labels, int connectivity) {
  std::map<int, SQO_Region> regions;
  const cv::Rect inner(1, 1, labels.cols - 2, labels.rows - 2);
  for (int i = 0; i < inner.area(); ++i) {
    const int label = static_cast<int>(regions.size()) + 2;
    Cells open = {{1 + i / inner.width, 1 + i % inner.width}};
    while (!open.empty()) {
      const auto [r, c] = open.back();
      open.pop_back();
      if (!inner.contains({c, r}) || labels.at<int>(r, c) != 1) {
        continue;
      }
      labels.at<int>(r, c) = label;
      SQO_Region& region = regions.insert({label, {{c, c, r, r}, 0, label}}).first->second;
      region.roi = {std::min(region.roi.left, c), std::max(region.roi.right, c),
                    std::min(region.roi.top, r), std::max(region.roi.bottom, r)};
      ++region.ptCounter;
      for (int k = 0; k < 9; ++k) {
        if (connectivity == 8 || k % 2 == 1) {
          open.emplace_back(r + k / 3 - 1, c + k % 3 - 1);
        }
      }
    }
  }
  return regions;
}

TEST(TwoPassLabel, AgreesWithFlooding) {
  std::mt19937 engine(5);
  const auto random = [&](int count) { return static_cast<int>(engine() % count); };
  for (int round = 0; round < 400; ++round) {
    // Part of a larger image, in all depths; half of the time the result replaces it.
    cv::Mat whole(3 + random(40), 3 + random(40), CV_32S);
    for (auto pixel = whole.begin<int>(); pixel != whole.end<int>(); ++pixel) {
      *pixel = random(10) < 1 + round % 9 ? 1 : 0;
    }
    const int connectivity = round % 2 == 0 ? 4 : 8;
    cv::Mat expected = whole(cv::Rect(0, 0, whole.cols - random(3), whole.rows)).clone();
    cv::Mat image;
    whole.convertTo(image, round % 7);
    image = image(cv::Rect(0, 0, expected.cols, expected.rows));
    cv::Mat other;
    cv::Mat& labels = round % 4 < 2 ? image : other;
    std::vector<SQO_Region> regions;
    QO_TwoPassLabel(image, labels, regions, connectivity);
    const std::map<int, SQO_Region> flooded = flood(expected, connectivity);
    ASSERT_EQ(cv::countNonZero(labels != expected), 0);
    ASSERT_EQ(regions.size(), flooded.size());
    for (const SQO_Region& region : regions) {
      const SQO_Region& wanted = flooded.at(region.labelID);
      EXPECT_EQ(region.ptCounter, wanted.ptCounter);
      EXPECT_EQ(region.roi.left * 100 + region.roi.right, wanted.roi.left * 100 + wanted.roi.right);
      EXPECT_EQ(region.roi.top * 100 + region.roi.bottom, wanted.roi.top * 100 + wanted.roi.bottom);
    }
  }
}

TEST(TwoPassLabel, LongChainsOfEquivalences) {
  // Stairs of teeth, the last of which joins all: each tooth hangs on the one to its right.
  constexpr int kSide = 3000;
  cv::Mat image = cv::Mat::zeros(kSide, kSide, CV_8U);
  for (int c = 1; c < kSide - 1; c += 2) {
    image(cv::Rect(c, kSide - 1 - c, 1, c)) = 1;
    image(cv::Rect(1, kSide - 2, kSide - 2, 1)) = 1;
  }
  cv::Mat labels;
  std::vector<SQO_Region> regions;
  QO_TwoPassLabel(image, labels, regions, 4);
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].ptCounter, cv::countNonZero(image));
}

TEST(TwoPassLabel, RecordsThatCameInTakeUpTheirNumber) {
  std::vector<SQO_Region> regions = {{{9, 9, 9, 9}, 5, 3}, {{9, 9, 9, 9}, 5, 2}};
  cv::Mat labels;
  QO_TwoPassLabel(draw({"......", ".#.##.", "......"}), labels, regions, 4);
  ASSERT_EQ(regions.size(), 3U);
  EXPECT_EQ(regions[0].ptCounter, 7);
  EXPECT_EQ(regions[0].roi.left, 3);
  EXPECT_EQ(regions[1].ptCounter, 5);
  EXPECT_EQ(regions[2].ptCounter, 1);
}

}  // namespace
