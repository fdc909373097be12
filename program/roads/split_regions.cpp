#include "roads/split_regions.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include <scanline/heightmap.h>
#include <scanline/watershed.h>

namespace program {
namespace {

constexpr int kWatershed = -1;

/// How depths become grey values: seeds get 0, all else a value that falls with the depth.
struct Levels {
  double deepest;
  int highest;

  [[nodiscard]] int of(double depth) const {
    constexpr double kPerPixel = 4.0;
    return 1 + static_cast<int>(std::lround(kPerPixel * (deepest - depth)));
  }
};

Levels levelsFor(const cv::Mat& depths, const cv::Mat& flooded) {
  double shallowest = 0.0;
  Levels levels = {0.0, 0};
  cv::minMaxLoc(depths, &shallowest, &levels.deepest, nullptr, nullptr, flooded);
  levels.highest = levels.of(shallowest);
  return levels;
}

template <typename Plane>
auto& cellOf(Plane& plane, cv::Point at) {
  return plane[static_cast<std::size_t>(at.y)][static_cast<std::size_t>(at.x)];
}

/// The image to flood. What is not to be flooded lies above the highest level.
SJU_waterShedImage levelsOf(const cv::Mat& depths,
                            const cv::Mat& flooded,
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
      if (flooded.at<uchar>(row, col) != 0) {
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
 * Finds the pixels that the flood would not reach, although they connect to a seed: those cut off
 * by a line where two regions met, as in a dead end of an outline. They depend on the course of the
 * flood, so it is followed here step by step.
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
    // A pixel that settles decides on those after it, so their order counts.
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

/// Gives the pixels where regions met, and those cut off by them, to the region next to them.
void settleRest(cv::Mat& labels, const cv::Mat& flooded) {
  labels.setTo(0, labels < 0);
  const cv::Rect image({0, 0}, labels.size());
  std::vector<cv::Point> front;
  cv::Mat resting = (labels == 0) & flooded;
  cv::Mat nearby;
  cv::dilate(resting, nearby, cv::Mat::ones(3, 3, CV_8U));
  cv::findNonZero(nearby & (labels > 0), front);
  // Breadth first: each pixel takes the region that is the fewest steps away.
  for (std::size_t i = 0; i < front.size(); ++i) {
    const cv::Point at = front[i];
    for (int step = 0; step < 9; ++step) {
      const cv::Point next = at + cv::Point(step % 3 - 1, step / 3 - 1);
      if (image.contains(next) && resting.at<uchar>(next) != 0) {
        resting.at<uchar>(next) = 0;
        labels.at<int>(next) = labels.at<int>(at);
        front.push_back(next);
      }
    }
  }
}

}  // namespace

cv::Mat areasWithSeed(const cv::Mat& mask, const std::vector<SQO_2DValueI>& seeds) {
  const cv::Mat covered = mask > 0.0F;
  cv::Mat areas;
  const int count = cv::connectedComponents(covered, areas, 8, CV_32S);
  std::vector<bool> hasSeed(static_cast<std::size_t>(count));
  for (const SQO_2DValueI& seed : seeds) {
    hasSeed[static_cast<std::size_t>(areas.at<int>(seed.y, seed.x))] = true;
  }
  hasSeed[0] = false;
  cv::Mat flooded(mask.size(), CV_8U);
  for (int row = 0; row < mask.rows; ++row) {
    for (int col = 0; col < mask.cols; ++col) {
      const auto area = static_cast<std::size_t>(areas.at<int>(row, col));
      flooded.at<uchar>(row, col) = hasSeed[area] ? 255 : 0;
    }
  }
  return flooded;
}

cv::Mat divide(const cv::Mat& mask, const cv::Mat& depths, std::vector<SQO_2DValueI>& seeds) {
  if (seeds.empty()) {
    return cv::Mat::zeros(mask.size(), CV_32S);
  }
  // The flood would wait forever for areas without a seed.
  const cv::Mat flooded = areasWithSeed(mask, seeds);
  const Levels levels = levelsFor(depths, flooded);
  SJU_waterShedImage image = levelsOf(depths, flooded, seeds, levels);
  for (const cv::Point at : FloodRehearsal(image, seeds, levels.highest).unreached()) {
    cellOf(image.gray, at) = levels.highest + 1;
  }
  constexpr int kFirstLabel = 1;
  ju_seedWatershed(image, seeds, levels.highest, kFirstLabel);
  cv::Mat labels = labelImage(image);
  settleRest(labels, flooded);
  return labels;
}

}  // namespace program
