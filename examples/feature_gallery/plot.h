#pragma once

#include <string>
#include <vector>

#include <scanline/scan_records.h>
#include "canvas.h"

namespace examples {

/// Colours that all pictures share.
namespace ink {
const cv::Scalar kPaper = rgb(255, 255, 255);
const cv::Scalar kText = rgb(40, 44, 52);
const cv::Scalar kFaint = rgb(110, 116, 128);
const cv::Scalar kGrid = rgb(226, 229, 234);
const cv::Scalar kFrame = rgb(120, 126, 138);
}  // namespace ink

/// One axis: what it spans, and what it is called. With `min` above `max` it runs the other way.
struct Axis {
  double min;
  double max;
  std::string label;
};

/// A rectangle on a canvas that shows a stretch of the plane, x to the right and y upwards.
class Plot {
 public:
  Plot(const cv::Rect2d& place, Axis x, Axis y);

  [[nodiscard]] const cv::Rect2d& place() const {
    return place_;
  }
  [[nodiscard]] cv::Point2d at(double x, double y) const;

  void drawGrid(Canvas& canvas) const;
  /// Frame, ticks with their numbers, and labels, all outside of the rectangle.
  void drawAxes(Canvas& canvas) const;

 private:
  cv::Rect2d place_;
  Axis x_;
  Axis y_;
};

/// Round numbers inside a range, about as many as asked for; the ends may come in either order.
std::vector<double> roundTicks(double oneEnd, double otherEnd, int about);

/// Decimals that tell neighbouring ticks apart.
int tickDecimals(const std::vector<double>& ticks);

/// A range with a margin of `share` of its width on both ends; never empty.
STeskRangeD widened(STeskRangeD range, double share);

/// Writes a picture as a PNG. @throws UserError if it cannot be written.
void writePng(const std::string& path, const cv::Mat& picture);

}  // namespace examples
