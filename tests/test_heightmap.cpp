#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <opencv2/core.hpp>
#include <random>

#include "builders.h"
#include "heightmap.h"

namespace {

using Peaks = std::vector<std::array<double, 3>>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// A map of small whole numbers, with odd ones among them if asked for.
cv::Mat randomMap(std::mt19937& random, int rows, int cols, bool odd) {
  cv::Mat map(rows, cols, CV_32F);
  for (float& cell : cv::Mat_<float>(map)) {
    const int draw = static_cast<int>(random() % 40);
    cell = odd && draw < 2 ? (draw == 0 ? kNaN : -1.5F) : static_cast<float>(draw / 4);
  }
  return map;
}

bool sameValues(const cv::Mat& a, const cv::Mat& b) {
  return a.size() == b.size() &&
         std::equal(a.begin<float>(), a.end<float>(), b.begin<float>(),
                    [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

/// Both images of a projection with a margin of one pixel.
struct Images {
  cv::Mat mask = cv::Mat::zeros(4, 12, CV_32F);
  cv::Mat index = cv::Mat(4, 12, CV_32SC2, cv::Scalar(-1, -1));

  void project(build::Scan scan, double scale, double zLimit, double maxLinkDist) {
    pointClout2DProjection(scan, {0.0, 0.0}, {0.0, 0.0}, scale, zLimit, 1, maxLinkDist, mask,
                           index);
  }
  /// One character per pixel of the first row that samples without y fall on.
  [[nodiscard]] std::string row() const {
    std::string text;
    for (int c = 0; c < mask.cols; ++c) {
      const bool isHit = index.at<cv::Vec2i>(1, c) != cv::Vec2i(-1, -1);
      text += isHit ? '#' : mask.at<float>(1, c) == 1000000.0F ? '-' : '.';
    }
    return text;
  }
};

std::string projectX(const std::vector<std::pair<double, double>>& xz,
                     double scale,
                     double zLimit,
                     double maxLinkDist) {
  build::Line line;
  for (const auto& [x, z] : xz) {
    line.push_back(build::sample(x, 0.0, z));
  }
  Images images;
  images.project({line}, scale, zLimit, maxLinkDist);
  return images.row();
}

TEST(Projection, CutsToWholeUnitsBeforeScaling) {
  EXPECT_EQ(projectX({{0.9, 1}, {-0.9, 1}, {1.9, 1}, {2.0, 1}}, 0.5, 0, 0), ".#.#.#......");
  EXPECT_EQ(projectX({{5.9, 1}, {9.0, 1}, {8.999, 1}}, 3.0, 0, 0), "..###.......");
}

TEST(Projection, LinksSamplesOfALineThatAreClose) {
  EXPECT_EQ(projectX({{0, 1}, {2, 0}, {4, 1}}, 1.0, 0, 4.1), ".#---#......");
  EXPECT_EQ(projectX({{0, 1}, {4, 1}}, 1.0, 0, 4.0), ".#...#......");
  EXPECT_EQ(projectX({{0, 1}, {4, 4}}, 1.0, 0, 5.0), ".#---#......") << "by the joining of rows";
  EXPECT_EQ(projectX({{0, 1}, {4, 5}, {8, 1}}, 1.0, 4.9, 9.0), ".#-------#..");
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
  for (const auto& [maxLinkDist, expected] :
       std::vector<std::pair<double, std::string>>{{2.9, "1.1..1"},
                                                   {3.0, "1*1..1"},
                                                   {4.0, "1*1**1"},
                                                   {kInf, "1*1**1"},
                                                   {-kInf, "1.1..1"}}) {
    Images images;
    const std::vector<float> row = {0.00011F, 0.0001F, 2.0F, 0.0F, kNaN, 1.0F};
    std::copy(row.begin(), row.end(), images.mask.ptr<float>(2) + 3);
    images.project({{}, build::lineOfZ({1, 1})}, 1.0, 0, maxLinkDist);
    for (std::size_t c = 0; c < row.size(); ++c) {
      EXPECT_EQ(images.mask.at<float>(2, static_cast<int>(c) + 3) == 1000000.0F,
                expected[c] == '*');
    }
    images.mask.at<float>(2, 4) = 0.0F;
    images.project({}, 1.0, 0, maxLinkDist);
    EXPECT_EQ(images.mask.at<float>(2, 4), 0.0F) << "no line, no joining";
  }
}

/// The passes as plain loops in single precision.
cv::Mat plainDistances(const cv::Mat& src, float diagonal) {
  cv::Mat_<float> d = src.clone();
  const auto step = [&d](int r, int c, int fromRow, int fromCol, float cost) {
    const float candidate = d(fromRow, fromCol) + cost;
    d(r, c) = candidate < d(r, c) ? candidate : d(r, c);
  };
  for (int side : {1, -1}) {
    for (int i = 1; i < d.rows - 1; ++i) {
      const int r = side > 0 ? i : d.rows - 1 - i;
      for (int k = 1; k < d.cols; ++k) {
        const int c = side > 0 ? k : d.cols - 1 - k;
        step(r, c, r - side, c - side, diagonal);
        step(r, c, r - side, c, 1.0F);
        step(r, c, r, c - side, 1.0F);
        step(r, c, r + side, c - side, diagonal);
      }
    }
  }
  for (const cv::Mat& edge : {d.row(0), d.row(d.rows - 1), d.col(0), d.col(d.cols - 1)}) {
    cv::Mat(edge).setTo(0.0);
  }
  return d;
}

TEST(DistanceTrans, FollowsThePassesToTheBit) {
  std::mt19937 random(1);
  for (int i = 0; i < 300; ++i) {
    const int cols = 1 + static_cast<int>(random() % 70);
    const cv::Mat map = randomMap(random, 1 + i % 40, cols, i % 2 == 1) * (i % 3 == 0 ? 8.1 : 1e6);
    const std::array<float, 4> diagonals = {std::sqrt(2.0F), 2.0F, 1.0F, 1.0F};
    const int type = i % 4;
    cv::Mat distances;
    qo_distanceTrans(map, distances, type);
    ASSERT_TRUE(sameValues(distances, plainDistances(map, diagonals[type])))
        << map.size() << " type " << type;
  }
}

TEST(DistanceTrans, ReplacesItsResult) {
  const cv::Mat src(5, 5, CV_32F, cv::Scalar(9.0));
  cv::Mat dst = src;
  qo_distanceTrans(src, dst, 0);
  EXPECT_EQ(src.at<float>(0, 0), 9.0F);
  EXPECT_EQ(dst.at<float>(0, 0), 0.0F);
  EXPECT_EQ(dst.at<float>(2, 2), 9.0F) << "the border is no source of distances";
  qo_distanceTrans(cv::Mat(), dst, 0);
  EXPECT_TRUE(dst.empty());
}

/// Where one axis of a walk is, block after block: start, end and the end within the data.
std::vector<std::array<int, 3>> blocks(int counted, int half, int stride, int extent, int size) {
  std::vector<std::array<int, 3>> spans;
  for (int i = 0; i < (counted + half - 1) / half; ++i) {
    const int start = i * stride / 2;
    spans.push_back({start, start + extent, std::min(start + extent, size)});
  }
  return spans;
}

/// Visits every cell of every block; `replaces(value, best)` says what the better one is.
template <typename Spans, typename Replaces>
Peaks plainPeaks(const Spans& outers,
                 const Spans& inners,
                 bool byInner,
                 const cv::Mat_<double>& at,
                 Replaces replaces) {
  Peaks peaks;
  for (const auto& outer : outers) {
    for (const auto& inner : inners) {
      const auto& first = byInner ? inner : outer;
      const auto& second = byInner ? outer : inner;
      std::array<double, 3> best = {-1, -1, -1};
      for (int x = first[0]; x < first[2]; ++x) {
        for (int y = second[0]; y < second[2]; ++y) {
          if (replaces(at(y, x), best[2])) {
            best = {static_cast<double>(x), static_cast<double>(y), at(y, x)};
          }
        }
      }
      const bool onBorder = best[0] == first[0] || best[0] == first[1] - 1 ||
                            best[1] == second[0] || best[1] == second[1] - 1;
      const auto isHere = [&](const auto& p) { return p[0] == best[0] && p[1] == best[1]; };
      if (best[0] >= 0 && !onBorder && std::none_of(peaks.begin(), peaks.end(), isHere)) {
        peaks.push_back(best);
      }
    }
  }
  return peaks;
}

Peaks asPeaks(const std::vector<SQO_2DValueI>& found) {
  Peaks peaks;
  for (const SQO_2DValueI& peak : found) {
    peaks.push_back({static_cast<double>(peak.x), static_cast<double>(peak.y), peak.valueD});
  }
  return peaks;
}

void expectSame(const Peaks& peaks, const Peaks& expected) {
  ASSERT_EQ(peaks.size(), expected.size());
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    EXPECT_EQ(peaks[i][0], expected[i][0]);
    EXPECT_EQ(peaks[i][1], expected[i][1]);
    EXPECT_TRUE(peaks[i][2] == expected[i][2] || std::isnan(peaks[i][2]));
  }
}

TEST(LocalPeaks, FollowTheWalkOfTheBlocks) {
  std::mt19937 random(2);
  std::size_t total = 0;
  for (int i = 0; i < 400; ++i) {
    const int rows = 1 + static_cast<int>(random() % 40);
    const int cols = 1 + static_cast<int>(random() % 40);
    const int w = 2 + static_cast<int>(random() % 11);
    const int h = i % 2 == 0 ? w : 2 + static_cast<int>(random() % 11);
    cv::Mat map = randomMap(random, rows, cols, i % 3 == 0);

    std::vector<SQO_2DValueI> found;
    qo_getLocalPeaks_distTransform(map, found, {w, h});
    expectSame(asPeaks(found),
               plainPeaks(blocks(rows, h / 2, w, h, rows), blocks(cols, w / 2, h, w, cols), true,
                          map, [](double v, double best) { return best < 0.0 || v > best; }));
    total += found.size();

    build::Scan scan(cols);
    for (int l = 0; l < cols; ++l) {
      scan[l] = build::profileLine(rows, 1.0, [&](double y) {
        return static_cast<double>(map.at<float>(static_cast<int>(y), l));
      });
    }
    found.clear();
    qo_getLocalPeaks(build::pointerForm(scan).data(), cols, found, {w, h});
    expectSame(asPeaks(found),
               plainPeaks(blocks(rows, h / 2, w, w, cols), blocks(cols, w / 2, h, h, rows), false,
                          map, [](double z, double best) {
                            return !(0.0001 > z) && (best < 0.0 || best > z);
                          }));
    total += found.size();
  }
  EXPECT_GT(total, 500U);
}

TEST(LocalPeaks, AreAppendedOnce) {
  cv::Mat map = cv::Mat::zeros(16, 16, CV_32F);
  map.at<float>(5, 15) = 2.5F;  // the last column is no border of the block that it cuts off
  map.at<float>(9, 5) = 1.0F;
  std::vector<SQO_2DValueI> found = {{1, 2, 3, 4.0, 5}};
  qo_getLocalPeaks_distTransform(map, found, {8, 8});
  EXPECT_EQ(asPeaks(found), Peaks({{1, 2, 4.0}, {15, 5, 2.5}, {5, 9, 1.0}}));
  EXPECT_EQ(found[1].value, 0);
  EXPECT_EQ(found[1].tag, 0);
  qo_getLocalPeaks(nullptr, 0, found, {8, 8});
  EXPECT_EQ(found.size(), 3U);
}

}  // namespace
