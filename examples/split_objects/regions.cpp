#include "regions.h"

#include <algorithm>
#include <cmath>

#include <scanline/watershed.h>

namespace examples {
namespace {

constexpr int kWatershed = -1;

/// How depths become grey values: seeds get 0, all else what is the higher the shallower it lies.
struct Levels {
  double deepest;
  int highest;

  [[nodiscard]] int of(double depth) const {
    constexpr double kPerPixel = 4.0;
    return 1 + static_cast<int>(std::lround(kPerPixel * (deepest - depth)));
  }
};

Levels levelsFor(const cv::Mat& depths, const cv::Mat& isCovered) {
  double shallowest = 0.0;
  Levels levels = {0.0, 0};
  cv::minMaxLoc(depths, &shallowest, &levels.deepest, nullptr, nullptr, isCovered);
  levels.highest = levels.of(shallowest);
  return levels;
}

template <typename Plane>
auto& cellOf(Plane& plane, cv::Point at) {
  return plane[static_cast<std::size_t>(at.y)][static_cast<std::size_t>(at.x)];
}

/// The image to flood. What the mask does not cover lies above the highest level.
SJU_waterShedImage levelsOf(const cv::Mat& depths,
                            const cv::Mat& isCovered,
                            const std::vector<SQO_2DValueI>& seeds,
                            const Levels& levels) {
  const auto width = static_cast<std::size_t>(depths.cols);
  const auto height = static_cast<std::size_t>(depths.rows);
  SJU_waterShedImage image = {
      depths.cols, depths.rows,
      std::vector<std::vector<int>>(height, std::vector<int>(width, levels.highest + 1)),
      std::vector<std::vector<int>>(height, std::vector<int>(width, 0))};
  for (int row = 0; row < depths.rows; ++row) {
    for (int col = 0; col < depths.cols; ++col) {
      if (isCovered.at<uchar>(row, col) != 0) {
        const auto depth = static_cast<double>(depths.at<float>(row, col));
        cellOf(image.gray, {col, row}) = levels.of(depth);
      }
    }
  }
  for (const SQO_2DValueI& seed : seeds) {
    cellOf(image.gray, {seed.x, seed.y}) = 0;
  }
  return image;
}

/**
 * Finds out beforehand which pixels no label will reach.
 *
 * The flood does not end before every pixel up to its last level has settled. Two kinds of pixels
 * never would: those of parts without a seed, such as an object that is too small to have one, and
 * those behind a line where two regions met, as in a dead end of the outline. The second kind
 * depends on the course of the flood, so it is followed here step by step.
 */
class FloodRehearsal {
 public:
  FloodRehearsal(const SJU_waterShedImage& image,
                 const std::vector<SQO_2DValueI>& seeds,
                 int maxLevel)
      : labels_(image.height, image.width, CV_32S, cv::Scalar(0)),
        waiting_(static_cast<std::size_t>(maxLevel) + 1) {
    int label = 0;
    for (const SQO_2DValueI& seed : seeds) {
      labels_.at<int>(seed.y, seed.x) = ++label;
    }
    for (int row = 0; row < image.height; ++row) {
      for (int col = 0; col < image.width; ++col) {
        const int level = cellOf(image.gray, {col, row});
        if (level <= maxLevel && labels_.at<int>(row, col) == 0) {
          waiting_[static_cast<std::size_t>(level)].emplace_back(col, row);
        }
      }
    }
  }

  /// Pixels that still wait when nothing settles any more.
  std::vector<cv::Point> unreached() {
    bool settles = true;
    while (settles) {
      settles = false;
      for (std::vector<cv::Point>& level : waiting_) {
        while (walk(level)) {
          settles = true;
        }
      }
    }
    std::vector<cv::Point> left;
    for (const std::vector<cv::Point>& level : waiting_) {
      left.insert(left.end(), level.begin(), level.end());
    }
    return left;
  }

 private:
  /// Whether any pixel of the level has settled.
  bool walk(std::vector<cv::Point>& level) {
    // A pixel that settles decides on those behind it, so their order counts.
    std::size_t waiting = 0;
    for (const cv::Point at : level) {
      if (!settle(at)) {
        level[waiting++] = at;
      }
    }
    const bool any = waiting < level.size();
    level.resize(waiting);
    return any;
  }

  bool settle(cv::Point at) {
    const cv::Rect image({0, 0}, labels_.size());
    int& own = labels_.at<int>(at);
    for (int step = 0; step < 9; ++step) {
      const cv::Point next = at + cv::Point(step % 3 - 1, step / 3 - 1);
      const int label = next != at && image.contains(next) ? labels_.at<int>(next) : 0;
      if (label > 0 && own != label) {
        own = own == 0 ? label : kWatershed;
      }
    }
    return own != 0;
  }

  cv::Mat labels_;
  std::vector<std::vector<cv::Point>> waiting_;
};

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
  const cv::Mat isCovered = mask > 0.0F;
  const Levels levels = levelsFor(depths, isCovered);
  SJU_waterShedImage image = levelsOf(depths, isCovered, seeds, levels);
  for (const cv::Point at : FloodRehearsal(image, seeds, levels.highest).unreached()) {
    cellOf(image.gray, at) = levels.highest + 1;
  }
  constexpr int kFirstLabel = 1;
  ju_seedWatershed(image, seeds, levels.highest, kFirstLabel);
  return {labelImage(image), static_cast<int>(seeds.size())};
}

}  // namespace examples
