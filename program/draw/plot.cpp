#include "draw/plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"

namespace program {
namespace {

constexpr double kTickText = 12.0;
constexpr double kLabelText = 13.0;
constexpr double kTickLength = 5.0;

/// Keeps a text of a width inside of the canvas: numbers at the ends of an axis may reach beyond
/// it.
double clampedCentre(double centre, double width, double right) {
  return std::max(std::min(centre, right - 0.5 * width), 0.5 * width);
}

}  // namespace

Plot::Plot(const cv::Rect2d& place, Axis x, Axis y)
    : place_(place), x_(std::move(x)), y_(std::move(y)) {}

cv::Point2d Plot::at(double x, double y) const {
  return {place_.x + (x - x_.min) / (x_.max - x_.min) * place_.width,
          place_.y + (y_.max - y) / (y_.max - y_.min) * place_.height};
}

void Plot::drawGrid(Canvas& canvas) const {
  for (const double tick : roundTicks(x_.min, x_.max, static_cast<int>(place_.width / 90))) {
    canvas.line(at(tick, y_.min), at(tick, y_.max), ink::kGrid, 1.0);
  }
  for (const double tick : roundTicks(y_.min, y_.max, static_cast<int>(place_.height / 50))) {
    canvas.line(at(x_.min, tick), at(x_.max, tick), ink::kGrid, 1.0);
  }
}

void Plot::drawAxes(Canvas& canvas) const {
  const double bottom = place_.y + place_.height;
  const double right = place_.x + place_.width + kRightMargin;
  const std::vector<double> xTicks =
      roundTicks(x_.min, x_.max, static_cast<int>(place_.width / 90));
  for (const double tick : xTicks) {
    const cv::Point2d p = at(tick, y_.min);
    const std::string number = fixed(tick, tickDecimals(xTicks));
    const double centre = clampedCentre(p.x, canvas.textWidth(number, kTickText), right);
    canvas.line({p.x, bottom}, {p.x, bottom + kTickLength}, ink::kFrame, 1.0);
    canvas.text(number, {centre, bottom + 15.0}, kTickText, ink::kText, Anchor::centre);
  }
  const std::vector<double> yTicks =
      roundTicks(y_.min, y_.max, static_cast<int>(place_.height / 50));
  for (const double tick : yTicks) {
    const cv::Point2d p = at(x_.min, tick);
    canvas.line({place_.x, p.y}, {place_.x - kTickLength, p.y}, ink::kFrame, 1.0);
    canvas.text(fixed(tick, tickDecimals(yTicks)), {place_.x - 9.0, p.y}, kTickText, ink::kText,
                Anchor::right);
  }
  canvas.strokeRect(place_, ink::kFrame, 1.0);
  const double width = canvas.textWidth(x_.label, kLabelText);
  const double middle = clampedCentre(place_.x + 0.5 * place_.width, width, right);
  canvas.text(x_.label, {middle, bottom + 38.0}, kLabelText, ink::kText, Anchor::centre);
  canvas.textUpwards(y_.label, {16.0, place_.y + 0.5 * place_.height}, kLabelText, ink::kText);
}

std::vector<double> roundTicks(double oneEnd, double otherEnd, int about) {
  const auto [min, max] = std::minmax(oneEnd, otherEnd);
  const double rough = (max - min) / std::max(about, 1);
  std::vector<double> ticks;
  if (!(rough > 0.0) || !std::isfinite(rough)) {
    return ticks;
  }
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  double step = 10.0 * power;
  for (const double factor : {5.0, 2.0, 1.0}) {
    step = factor * power >= rough ? factor * power : step;
  }
  const double slack = 1e-9 * (max - min);
  constexpr std::size_t kAtMost = 100;
  for (double i = std::ceil((min - slack) / step);
       i * step <= max + slack && ticks.size() < kAtMost; ++i) {
    ticks.push_back(i * step);
  }
  return ticks;
}

int tickDecimals(const std::vector<double>& ticks) {
  if (ticks.size() < 2) {
    return 1;
  }
  const double step = ticks[1] - ticks[0];
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-6)), 0, 9);
}

STeskRangeD widened(STeskRangeD range, double share) {
  const double width = range.max - range.min;
  const double margin = width > 0.0 ? share * width : 0.5;
  return {range.min - margin, range.max + margin};
}

void drawRimmedLine(Canvas& canvas, const std::vector<cv::Point2d>& points, Colour colour) {
  canvas.polyline(points, ink::kRim, 3.6);
  canvas.polyline(points, colour, 2.0);
}

void drawMarker(Canvas& canvas, cv::Point2d at, Colour colour) {
  canvas.fillCircle(at, 5.0, ink::kRim);
  canvas.fillCircle(at, 3.8, colour);
}

}  // namespace program
