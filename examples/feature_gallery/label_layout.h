#pragma once

#include <opencv2/core.hpp>
#include <vector>

namespace examples {

/// Finds places for labels beside what they name, clear of each other and of the profile.
class LabelLayout {
 public:
  explicit LabelLayout(cv::Rect2d area) : area_(area) {}

  /// Something that a label should not cover.
  void avoid(const cv::Point2d& point) {
    points_.push_back(point);
  }

  /// The middle of the best place near `at` for a label of a size; taken from then on.
  cv::Point2d place(cv::Point2d at, cv::Size2d size);

 private:
  [[nodiscard]] double costOf(const cv::Rect2d& rect, cv::Point2d shift) const;

  cv::Rect2d area_;
  std::vector<cv::Point2d> points_;
  std::vector<cv::Rect2d> labels_;
};

}  // namespace examples
