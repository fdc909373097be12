#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include <scanline/heightmap.h>
#include "builders.h"
#include "plain_heightmap.h"

namespace {

/// A view into a larger image, so that the rows are not contiguous.
cv::Mat viewIntoLarger(int rows, int cols, int type) {
  return cv::Mat(rows + 2, cols + 3, type, cv::Scalar::all(-1))(cv::Rect(1, 1, cols, rows));
}

/// A map of few different heights, with one NaN, negative or infinite value in `specialPeriod`; 0:
/// none.
cv::Mat randomMap(cv::RNG& random, int rows, int cols, int specialPeriod) {
  cv::Mat map = viewIntoLarger(rows, cols, CV_32F);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      auto& cell = map.at<float>(r, c);
      cell = static_cast<float>(random.uniform(0, 10)) * 0.25F;
      if (specialPeriod > 0 && random.uniform(0, specialPeriod) == 0) {
        cell = std::array<float, 3>{NAN, -1.5F, HUGE_VALF}[random.uniform(0, 3)];
      }
    }
  }
  return map;
}

/// Every bit of an image.
std::string bytes(const cv::Mat& image) {
  const cv::Mat whole = image.clone();
  return {whole.ptr<char>(), whole.total() * whole.elemSize()};
}

TEST(Projection, AgreesWithThePlainFormOnRandomScans) {
  constexpr std::array<double, 8> kZ = {0.0, 0.0001, 0.000099, 1.0, 1.0, 2.0, 5.0, 5.000001};
  constexpr std::array<double, 9> kLinks = {-HUGE_VAL, 0.0, 1.0, 2.5, 3.0, 4.9, 5.0, 6.0, HUGE_VAL};
  constexpr std::array<float, 7> kPixels = {0, 0, 0, 0.0001F, 0.00011F, NAN, 1.0F};
  cv::RNG random(1);
  for (int round = 0; round < 4000; ++round) {
    build::Scan scan(random.uniform(0, 4), build::Line(random.uniform(0, 6)));
    for (build::Line& line : scan) {
      for (STesk3DPosition& sample : line) {
        // Steps of 3 and 4 make distances of exactly 5; positions are truncated.
        const double x = random.uniform(-1, 4) * 4.0 + random.uniform(-2, 3) * 0.3;
        const double y = random.uniform(0, 4) * 3.0 + (round % 2 == 0 ? 0.0 : 0.9);
        sample = build::sample(x - 7.0, y + 9.0, kZ[random.uniform(0, 8)]);
      }
    }
    cv::Mat mask = viewIntoLarger(16, 24, CV_32F);
    cv::Mat index = viewIntoLarger(16, 24, CV_32SC2);
    index.setTo(cv::Scalar(-1, -1));
    mask.setTo(0.0);
    for (int k = 0; k < 20; ++k) {
      mask.at<float>(random.uniform(0, 16), random.uniform(0, 24)) = kPixels[random.uniform(0, 7)];
    }
    cv::Mat expectedMask = mask.clone();
    cv::Mat expectedIndex = index.clone();
    const double scale = std::array<double, 4>{1.0, 1.0, 1.5, 3.0}[random.uniform(0, 4)];
    const double zLimit = std::array<double, 4>{-1.0, 0.0, 5.0, 1.0}[random.uniform(0, 4)];
    const int edge = random.uniform(5, 7);
    const double maxLinkDist = kLinks[random.uniform(0, 9)];
    plain::projection(scan, {-7.0, 99.0}, {9.0, 99.0}, scale, zLimit, edge, maxLinkDist,
                      expectedMask, expectedIndex);
    pointClout2DProjection(scan, {-7.0, 99.0}, {9.0, 99.0}, scale, zLimit, edge, maxLinkDist, mask,
                           index);
    ASSERT_EQ(bytes(mask), bytes(expectedMask)) << round;
    ASSERT_EQ(bytes(index), bytes(expectedIndex)) << round;
  }
}

TEST(DistanceTrans, AgreesWithThePlainPassesInEveryBit) {
  constexpr std::array<float, 4> kDiagonals = {1.41421356F, 2.0F, 1.0F, 1.0F};
  cv::RNG random(1);
  for (int i = 0; i < 300; ++i) {
    cv::Mat map = randomMap(random, random.uniform(1, 41), random.uniform(1, 71), i % 2 * 20);
    map *= i % 3 == 0 ? 8.1 : 1e6;
    const std::string before = bytes(map);
    cv::Mat distances = map;
    qo_distanceTrans(map, distances, i % 4);
    ASSERT_EQ(distances.size(), map.size());
    ASSERT_EQ(bytes(distances), bytes(plain::distances(map, kDiagonals[i % 4]))) << map.size() << i;
    ASSERT_EQ(bytes(map), before) << "the result is a new image";
    qo_distanceTrans(cv::Mat(), distances, i % 4);
    ASSERT_TRUE(distances.empty());
  }
}

std::string text(const std::vector<SQO_2DValueI>& peaks) {
  std::string all;
  for (const auto& [x, y, value, valueD, tag] : peaks) {
    all += cv::format("(%d,%d) %g, %d %d; ", x, y, valueD, value, tag);
  }
  return all;
}

TEST(LocalPeaks, AgreeWithAPlainVisitOfTheBlocks) {
  constexpr std::array<int, 5> kSpecialPeriods = {0, 20, 0, 200, 1};
  cv::RNG random(2);
  for (int i = 0; i < 600; ++i) {
    cv::Mat map =
        randomMap(random, random.uniform(1, 41), random.uniform(1, 41), kSpecialPeriods[i % 5]);
    const int w = random.uniform(2, i % 3 == 0 ? 40 : 13);
    const SQO_localPkParam block = {w, i % 2 == 0 ? w : random.uniform(2, 13)};
    std::vector<SQO_2DValueI> found = {{1, 2, 3, 4.0, 5}};
    std::vector<SQO_2DValueI> expected = found;
    plain::mapPeaks(map, expected, block);
    qo_getLocalPeaks_distTransform(map, found, block);
    ASSERT_EQ(text(found), text(expected)) << map.size() << w << "," << block.blockHeight;

    build::Scan scan = build::surfaceScan(map.cols, map.rows, [&](double x, double y) {
      return map.at<float>(static_cast<int>(y), static_cast<int>(x));
    });
    plain::scanPeaks(map, expected, block);
    qo_getLocalPeaks(build::pointerForm(scan).data(), map.cols, found, block);
    ASSERT_EQ(text(found), text(expected)) << map.size() << w << "," << block.blockHeight;
  }
}

}  // namespace
