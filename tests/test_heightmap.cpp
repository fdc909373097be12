#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <opencv2/core.hpp>

#include <scanline/heightmap.h>
#include "builders.h"

namespace {

/// A map of small whole numbers, with odd ones among them if asked for.
cv::Mat randomMap(cv::RNG& random, int rows, int cols, bool odd) {
  cv::Mat map(rows, cols, CV_32F);
  for (float& cell : cv::Mat_<float>(map)) {
    cell = static_cast<float>(random.uniform(0, 10));
    if (odd && random.uniform(0, 20) == 0) {
      cell = random.uniform(0, 2) == 0 ? NAN : -1.5F;
    }
  }
  return map;
}

/// Both images of a projection with a margin of one pixel.
struct Images {
  cv::Mat mask = cv::Mat::zeros(4, 12, CV_32F);
  cv::Mat index = cv::Mat(4, 12, CV_32SC2, cv::Scalar(-1, -1));

  /// The pixels of samples without y, which are hit (#), occupied only (-) or neither (.).
  std::string project(build::Scan scan, double scale, double zLimit, double maxLinkDist) {
    pointClout2DProjection(scan, {0, 0}, {0, 0}, scale, zLimit, 1, maxLinkDist, mask, index);
    std::string text;
    for (int c = 0; c < mask.cols; ++c) {
      const bool isHit = index.at<cv::Vec2i>(1, c) != cv::Vec2i(-1, -1);
      text += isHit ? '#' : mask.at<float>(1, c) == 1000000.0F ? '-' : '.';
    }
    return text;
  }
};

std::string projectX(const std::vector<std::pair<double, double>>& xAndZ,
                     double scale,
                     double zLimit,
                     double maxLinkDist) {
  build::Line line;
  for (const auto& [x, z] : xAndZ) {
    line.push_back(build::sample(x, 0.0, z));
  }
  return Images().project({line}, scale, zLimit, maxLinkDist);
}

TEST(Projection, CutsToWholeUnitsBeforeScaling) {
  EXPECT_EQ(projectX({{0.9, 1}, {-0.9, 1}, {1.9, 1}, {2.0, 1}}, 0.5, 0, 0), ".#.#.#......");
  EXPECT_EQ(projectX({{5.9, 1}, {9.0, 1}, {8.999, 1}}, 3.0, 0, 0), "..###.......");
}

TEST(Projection, LinksSamplesOfALineThatAreClose) {
  EXPECT_EQ(projectX({{0, 1}, {2, 0}, {4, 1}}, 1.0, 0, 4.1), ".#---#......");
  EXPECT_EQ(projectX({{0, 1}, {4, 1}}, 1.0, 0, 4.0), ".#...#......");
  EXPECT_EQ(projectX({{0, 1}, {4, 4}}, 1.0, 0, 4.5), ".#...#......");
  EXPECT_EQ(projectX({{0, 1}, {2, 1}, {4, 1}}, 1.0, 0, 2.5), ".#-#-#......");
  EXPECT_EQ(projectX({{0, 1}, {4, 5}, {8, 1}}, 1.0, 4.9, 8.5), ".#-------#..");
  EXPECT_EQ(projectX({{0, 0.0001}, {2, 0.000099}, {4, 9}}, 1.0, 0, 0), ".#...#......");

  Images images;
  images.project({{build::sample(0, 0, 1), build::sample(2, 2, 1), build::sample(0.5, 0, 2)}}, 1.0,
                 0, 3.0);
  EXPECT_EQ(images.mask.at<float>(2, 2), 1000000.0F);
  EXPECT_EQ(images.index.at<cv::Vec2i>(2, 2), cv::Vec2i(-1, -1));
  EXPECT_EQ(images.index.at<cv::Vec2i>(1, 1), cv::Vec2i(0, 2));
  EXPECT_EQ(images.index.at<cv::Vec2i>(3, 3), cv::Vec2i(0, 1));
}

TEST(Projection, JoinsPixelsOfARowBelowTheLimit) {
  const std::vector<float> row = {0.00011F, 0.0001F, 2.0F, 0.0F, NAN, 1.0F};
  const std::string none = "............";
  const std::string both = "....-.--....";
  for (const auto& [maxLinkDist, expected] : std::vector<std::pair<double, std::string>>{
           {-HUGE_VAL, none}, {2.9, none}, {3.0, "....-......."}, {4.0, both}, {HUGE_VAL, both}}) {
    Images images;
    std::copy(row.begin(), row.end(), images.mask.ptr<float>(1) + 3);
    EXPECT_EQ(images.project({}, 1.0, 0, maxLinkDist), none) << "without a line";
    EXPECT_EQ(images.project({{}, build::lineOfZ({1, 1})}, 1.0, 0, maxLinkDist), expected);
  }
}

/// The passes as plain loops in single precision.
cv::Mat plainDistances(const cv::Mat& src, float diagonal) {
  cv::Mat_<float> d = src.clone();
  const auto step = [&d](int r, int c, int fromRow, int fromCol, float cost) {
    const float candidate = d(fromRow, fromCol) + cost;
    d(r, c) = candidate < d(r, c) ? candidate : d(r, c);
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (int r = 1; r < d.rows - 1; ++r) {
      for (int c = 1; c < d.cols; ++c) {
        step(r, c, r - 1, c - 1, diagonal);
        step(r, c, r - 1, c, 1.0F);
        step(r, c, r, c - 1, 1.0F);
        step(r, c, r + 1, c - 1, diagonal);
      }
    }
    cv::flip(d, d, -1);  // the second pass is the first one's mirror image
  }
  for (const cv::Mat& edge : {d.row(0), d.row(d.rows - 1), d.col(0), d.col(d.cols - 1)}) {
    cv::Mat(edge).setTo(0.0);
  }
  return d;
}

TEST(DistanceTrans, FollowsThePassesToTheBit) {
  cv::RNG random(1);
  for (int i = 0; i < 300; ++i) {
    const cv::Mat map =
        randomMap(random, random.uniform(1, 41), random.uniform(1, 71), i % 2 == 1) *
        (i % 3 == 0 ? 8.1 : 1e6);
    const std::array<float, 4> diagonals = {std::sqrt(2.0F), 2.0F, 1.0F, 1.0F};
    const int type = i % 4;
    cv::Mat distances = map;
    qo_distanceTrans(map, distances, type);
    const cv::Mat expected = plainDistances(map, diagonals[type]);
    ASSERT_EQ(distances.size(), map.size());
    ASSERT_EQ(std::memcmp(distances.data, expected.data, map.total() * sizeof(float)), 0)
        << map.size() << " type " << type;
    qo_distanceTrans(cv::Mat(), distances, type);
    ASSERT_TRUE(distances.empty());
  }
}

using Span = std::pair<int, int>;

std::vector<Span> blocks(int counted, int half, int stride, int extent) {
  std::vector<Span> spans;
  for (int i = 0; i < (counted + half - 1) / half; ++i) {
    spans.emplace_back(i * stride / 2, i * stride / 2 + extent);
  }
  return spans;
}

std::string text(const std::vector<SQO_2DValueI>& peaks) {
  std::string all;
  for (const auto& [x, y, value, valueD, tag] : peaks) {
    all += cv::format("(%d,%d) %g, %d %d; ", x, y, valueD, value, tag);
  }
  return all;
}

/// Visits every cell of a block; `replaces(value, best)` says what the better one is.
template <typename Replaces>
void searchBlock(const cv::Mat& map, Span xs, Span ys, Replaces replaces, std::string& peaks) {
  SQO_2DValueI best = {-1, -1, 0, -1.0, 0};
  for (int x = xs.first; x < std::min(xs.second, map.cols); ++x) {
    for (int y = ys.first; y < std::min(ys.second, map.rows); ++y) {
      if (replaces(map.at<float>(y, x), best.valueD)) {
        best = {x, y, 0, map.at<float>(y, x), 0};
      }
    }
  }
  const auto isInside = [](int i, Span span) { return i > span.first && i < span.second - 1; };
  const std::string peak = text({best});
  if (isInside(best.x, xs) && isInside(best.y, ys) && peaks.find(peak) == std::string::npos) {
    peaks += peak;
  }
}

TEST(LocalPeaks, FollowTheWalkOfTheBlocks) {
  const auto isHigher = [](double v, double best) { return best < 0.0 || v > best; };
  const auto isLower = [](double z, double best) {
    return !(0.0001 > z) && (best < 0.0 || best > z);
  };
  const std::vector<SQO_2DValueI> before = {{1, 2, 3, 4.0, 5}};
  cv::RNG random(2);
  for (int i = 0; i < 400; ++i) {
    cv::Mat map = randomMap(random, random.uniform(1, 41), random.uniform(1, 41), i % 3 == 0);
    const int w = random.uniform(2, 13);
    const int h = i % 2 == 0 ? w : random.uniform(2, 13);
    std::string highest = text(before);
    for (const Span& rows : blocks(map.rows, h / 2, w, h)) {
      for (const Span& columns : blocks(map.cols, w / 2, h, w)) {
        searchBlock(map, columns, rows, isHigher, highest);
      }
    }
    std::vector<SQO_2DValueI> found = before;
    qo_getLocalPeaks_distTransform(map, found, {w, h});
    EXPECT_EQ(text(found), highest) << map.size() << w << "," << h;

    build::Scan scan = build::surfaceScan(map.cols, map.rows, [&](double x, double y) {
      return map.at<float>(static_cast<int>(y), static_cast<int>(x));
    });
    std::string lowest = text(before);
    for (const Span& lines : blocks(map.rows, h / 2, w, w)) {
      for (const Span& samples : blocks(map.cols, w / 2, h, h)) {
        searchBlock(map, lines, samples, isLower, lowest);
      }
    }
    found = before;
    qo_getLocalPeaks(build::pointerForm(scan).data(), map.cols, found, {w, h});
    EXPECT_EQ(text(found), lowest) << map.size() << w << "," << h;
  }
}

TEST(LocalPeaks, NoLines) {
  std::vector<SQO_2DValueI> found;
  qo_getLocalPeaks(nullptr, 0, found, {8, 8});
  EXPECT_TRUE(found.empty());
}

}  // namespace
