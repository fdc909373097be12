#include "regions.h"

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <utility>

#include "watershed.h"

namespace examples {
namespace {

/// How depths become grey values.
struct Levels {
  double deepest;
  int highest;

  [[nodiscard]] int of(double depth) const {
    constexpr double kPerPixel = 4.0;
    return static_cast<int>(std::lround(kPerPixel * (deepest - depth)));
  }
};

Levels levelsFor(const cv::Mat& depths, const cv::Mat& isFlooded) {
  double shallowest = 0.0;
  Levels levels = {0.0, 0};
  cv::minMaxLoc(depths, &shallowest, &levels.deepest, nullptr, nullptr, isFlooded);
  levels.highest = levels.of(shallowest);
  return levels;
}

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

/// What is deepest inside an object gets level 0, its rim a high one, and what is not to be flooded
/// the one above all.
SJU_waterShedImage levelsOf(const cv::Mat& depths, const cv::Mat& isFlooded, const Levels& levels) {
  const auto width = static_cast<std::size_t>(depths.cols);
  const auto height = static_cast<std::size_t>(depths.rows);
  SJU_waterShedImage image = {
      depths.cols, depths.rows,
      std::vector<std::vector<int>>(height, std::vector<int>(width, levels.highest + 1)),
      std::vector<std::vector<int>>(height, std::vector<int>(width, 0))};
  for (int row = 0; row < depths.rows; ++row) {
    for (int col = 0; col < depths.cols; ++col) {
      if (isFlooded.at<uchar>(row, col) != 0) {
        image.gray[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)] =
            levels.of(static_cast<double>(depths.at<float>(row, col)));
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

Regions divide(const cv::Mat& mask, const cv::Mat& depths, std::vector<SQO_2DValueI>& seeds) {
  // The flood ends only once every pixel up to its last level has been reached. What no seed is
  // connected with, such as an object too small to have one, must therefore lie above that level.
  const cv::Mat isFlooded = reachable(withoutSpurs(mask), seeds);
  const Levels levels = levelsFor(depths, isFlooded);
  SJU_waterShedImage image = levelsOf(depths, isFlooded, levels);
  constexpr int kFirstLabel = 1;
  ju_seedWatershed(image, seeds, levels.highest, kFirstLabel);
  return {labelImage(image), static_cast<int>(seeds.size())};
}

}  // namespace examples
