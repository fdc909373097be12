#include "regions.h"

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <utility>

#include "watershed.h"

namespace examples {
namespace {

constexpr double kLevelsPerPixel = 4.0;

/// The mask without what is narrower than three pixels. Where two regions meet in a dead end of one
/// pixel's width, the pixels behind the line between them could be reached by no label.
cv::Mat withoutSpurs(const cv::Mat& mask) {
  cv::Mat opened;
  cv::morphologyEx(mask > 0.0F, opened, cv::MORPH_OPEN, cv::Mat::ones(3, 3, CV_8U));
  return opened;
}

/// The pixels that are connected with a seed, over eight neighbours.
cv::Mat reachable(const cv::Mat& open, const std::vector<SQO_2DValueI>& seeds) {
  cv::Mat reached = cv::Mat::zeros(open.size(), CV_8U);
  std::vector<cv::Point> front;
  const cv::Rect image({0, 0}, open.size());
  const auto reach = [&](cv::Point at) {
    if (image.contains(at) && open.at<uchar>(at) != 0 && reached.at<uchar>(at) == 0) {
      reached.at<uchar>(at) = 1;
      front.push_back(at);
    }
  };
  for (const SQO_2DValueI& seed : seeds) {
    reach({seed.x, seed.y});
  }
  while (!front.empty()) {
    const cv::Point from = front.back();
    front.pop_back();
    for (int step = 0; step < 9; ++step) {
      reach(from + cv::Point(step % 3 - 1, step / 3 - 1));
    }
  }
  return reached;
}

/// What is deep inside an object gets a low level, its rim a high one, and what is not to be
/// flooded the one above all.
SJU_waterShedImage levelsOf(const cv::Mat& distances, const cv::Mat& isFlooded, int maxLevel) {
  const auto width = static_cast<std::size_t>(distances.cols);
  const auto height = static_cast<std::size_t>(distances.rows);
  SJU_waterShedImage image = {
      distances.cols, distances.rows,
      std::vector<std::vector<int>>(height, std::vector<int>(width, maxLevel + 1)),
      std::vector<std::vector<int>>(height, std::vector<int>(width, 0))};
  for (int row = 0; row < distances.rows; ++row) {
    for (int col = 0; col < distances.cols; ++col) {
      if (isFlooded.at<uchar>(row, col) != 0) {
        const auto distance = static_cast<double>(distances.at<float>(row, col));
        image.gray[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)] =
            maxLevel - static_cast<int>(std::lround(kLevelsPerPixel * distance));
      }
    }
  }
  return image;
}

cv::Mat labelImage(const SJU_waterShedImage& image) {
  cv::Mat labels(image.height, image.width, CV_32S);
  for (int row = 0; row < labels.rows; ++row) {
    const std::vector<int>& from = image.markers[static_cast<std::size_t>(row)];
    std::copy(from.begin(), from.end(), labels.ptr<int>(row));
  }
  return labels;
}

}  // namespace

Regions divide(const cv::Mat& mask, const cv::Mat& distances, std::vector<SQO_2DValueI>& seeds) {
  // The flood ends only once every pixel up to its last level has been reached. What no seed is
  // connected with, such as an object too small to have one, must therefore lie above that level.
  const cv::Mat isFlooded = reachable(withoutSpurs(mask), seeds);
  double deepest = 0.0;
  cv::minMaxLoc(distances, nullptr, &deepest);
  const int maxLevel = static_cast<int>(std::lround(kLevelsPerPixel * deepest));
  SJU_waterShedImage image = levelsOf(distances, isFlooded, maxLevel);
  constexpr int kFirstLabel = 1;
  ju_seedWatershed(image, seeds, maxLevel, kFirstLabel);
  return {labelImage(image), static_cast<int>(seeds.size())};
}

}  // namespace examples
