#pragma once

#include <string>
#include <vector>

#include <scanline/scan_records.h>
#include "draw/canvas.h"

namespace program {

/// Colours that all pictures share.
namespace ink {
constexpr Colour kText = {0.16, 0.17, 0.20};
constexpr Colour kFaint = {0.43, 0.45, 0.50};
constexpr Colour kGrid = {0.89, 0.90, 0.92};
constexpr Colour kFrame = {0.47, 0.49, 0.54};
constexpr Colour kRim = {0.10, 0.08, 0.12};
constexpr Colour kTrace = {0.15, 0.33, 0.59};
constexpr Colour kRaw = {0.59, 0.62, 0.67};
}  // namespace ink

/// One axis: what it spans, and its label with the unit. With `min` above `max` it is reversed.
struct Axis {
  double min;
  double max;
  std::string label;
};

/// A rectangle on a canvas that shows a plane, x to the right and y upwards.
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

/// Decimals that distinguish neighbouring ticks.
int tickDecimals(const std::vector<double>& ticks);

/// A range with a margin of `share` of its width on both ends; never empty.
STeskRangeD widened(STeskRangeD range, double share);

/// Room around a plot for its title, legend, axes and colour bar.
constexpr double kLeftMargin = 92.0;
constexpr double kRightMargin = 28.0;
constexpr double kBottomMargin = 58.0;

/// What a legend shows beside a word.
enum class Swatch { line, dots, marker };

struct LegendEntry {
  Swatch swatch;
  Colour colour;
  std::string name;
};

/// The height that title, subtitle and legend take on a canvas of a width.
double headHeight(const std::vector<LegendEntry>& legend, double width);

/// Draws title, subtitle, and the legend in as many rows as it needs.
void drawHead(Canvas& canvas,
              const std::string& title,
              const std::string& subtitle,
              const std::vector<LegendEntry>& legend,
              double width);

/// A line with a dark rim, visible on any ground.
void drawRimmedLine(Canvas& canvas, const std::vector<cv::Point2d>& points, Colour colour);

/// A dot with a dark rim.
void drawMarker(Canvas& canvas, cv::Point2d at, Colour colour);

/// A label with a light ground, moved inside of `area`; `taken` holds the labels drawn so far,
/// which it does not overlap if there is room beside its anchor.
void drawLabel(Canvas& canvas,
               const std::string& text,
               cv::Point2d at,
               const cv::Rect2d& area,
               std::vector<cv::Rect2d>& taken);

}  // namespace program
