#include "label_layout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace examples {

cv::Point2d LabelLayout::place(cv::Point2d at, cv::Size2d size) {
  constexpr double kDown[] = {-19.0, 19.0, -38.0, 38.0, -57.0, 57.0, 0.0};
  const double aside = 0.5 * size.width + 12.0;
  cv::Rect2d best;
  double lowest = std::numeric_limits<double>::infinity();
  for (const double down : kDown) {
    for (const double right : {0.0, 0.5 * aside, -0.5 * aside, aside, -aside}) {
      const cv::Point2d shift(right, down);
      const cv::Point2d corner(0.5 * size.width, 0.5 * size.height);
      const cv::Rect2d rect(at + shift - corner, size);
      const double cost = costOf(rect, shift);
      if (cost < lowest) {
        lowest = cost;
        best = rect;
      }
    }
  }
  labels_.push_back(best);
  return {best.x + 0.5 * best.width, best.y + 0.5 * best.height};
}

double LabelLayout::costOf(const cv::Rect2d& rect, cv::Point2d shift) const {
  constexpr double kPerPixelAway = 0.1;
  double cost = kPerPixelAway * (std::abs(shift.x) + std::abs(shift.y));
  cost += rect.area() - (rect & area_).area();
  for (const cv::Rect2d& label : labels_) {
    cost += (rect & label).area();
  }
  return cost + 10.0 * static_cast<double>(std::count_if(
                           points_.begin(), points_.end(),
                           [&rect](const cv::Point2d& p) { return rect.contains(p); }));
}

}  // namespace examples
