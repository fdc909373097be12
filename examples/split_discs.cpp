/**
 * @file
 * Splits two touching discs on a height map: projection, distances, peaks, seeded watershed.
 */

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <opencv2/core.hpp>
#include <vector>

#include <scanline/scanline.h>

namespace {

using Scan = std::vector<std::vector<STesk3DPosition>>;

/// Two discs of radius 20 mm that touch, without ground: samples between them are missing.
Scan makeScan() {
  Scan scan(120, std::vector<STesk3DPosition>(120));
  for (int l = 0; l < 120; ++l) {
    for (int i = 0; i < 120; ++i) {
      const double x = l;
      const double y = i;
      const bool isOnDisc =
          std::hypot(x - 30.0, y - 50.0) < 20.0 || std::hypot(x - 68.0, y - 60.0) < 20.5;
      scan[l][i] = {i, {x, y, isOnDisc ? 300.0 : 0.0}};
    }
  }
  return scan;
}

/// Distances from the border, inverted and in whole steps: the middles of the discs are deepest.
SJU_waterShedImage basinsOf(const cv::Mat& distances, int maxLevel) {
  const std::vector<int> row(static_cast<std::size_t>(distances.cols), 0);
  SJU_waterShedImage image = {distances.cols, distances.rows, {}, {}};
  image.gray.assign(static_cast<std::size_t>(distances.rows), row);
  image.markers = image.gray;
  for (int y = 0; y < distances.rows; ++y) {
    for (int x = 0; x < distances.cols; ++x) {
      const double distance = distances.at<float>(y, x);
      image.gray[y][x] = distance > 0.0 ? maxLevel - static_cast<int>(distance) : maxLevel + 1;
    }
  }
  return image;
}

}  // namespace

int main() {
  Scan scan = makeScan();
  const cv::Size size(124, 124);
  cv::Mat mask(size, CV_32F, cv::Scalar(0.0));
  cv::Mat sampleOfPixel(size, CV_32SC2, cv::Scalar::all(-1));
  pointClout2DProjection(scan, {0.0, 119.0}, {0.0, 119.0}, 1.0, 0.0, 2, 0.0, mask, sampleOfPixel);

  cv::Mat distances(size, CV_32F);
  qo_distanceTrans(mask, distances, 0);
  std::vector<SQO_2DValueI> peaks;
  qo_getLocalPeaks_distTransform(distances, peaks, {25, 25});

  double deepest = 0.0;
  cv::minMaxLoc(distances, nullptr, &deepest);
  const int maxLevel = static_cast<int>(deepest);
  SJU_waterShedImage image = basinsOf(distances, maxLevel);
  constexpr int kFirstLabel = 2;
  ju_seedWatershed(image, peaks, maxLevel, kFirstLabel);

  for (std::size_t k = 0; k < peaks.size(); ++k) {
    const int label = kFirstLabel + static_cast<int>(k);
    long area = 0;
    for (const std::vector<int>& row : image.markers) {
      area += std::count(row.begin(), row.end(), label);
    }
    const auto& sample = sampleOfPixel.at<cv::Vec2i>(peaks[k].y, peaks[k].x);
    const STesk3DPoint& middle = scan[sample[0]][sample[1]].pt3D;
    std::printf("object with its middle at (%.0f, %.0f), %ld mm2\n", middle.x, middle.y, area);
  }
}
