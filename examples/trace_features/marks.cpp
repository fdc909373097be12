#include "marks.h"

#include "feature_records.h"
#include "plot.h"

namespace examples {
namespace {

const cv::Scalar kRim = rgb(25, 20, 30);
const cv::Scalar kSegmentEnd = rgb(70, 120, 90);

constexpr double kSwatchWidth = 24.0;
constexpr double kLegendText = 13.0;

void drawSwatch(Canvas& canvas, const LegendEntry& entry, cv::Point2d at) {
  const cv::Point2d middle(at.x + 0.5 * kSwatchWidth, at.y);
  const cv::Point2d end(at.x + kSwatchWidth, at.y);
  switch (entry.swatch) {
    case Swatch::rimmedLine:
      drawRimmedLine(canvas, {at, end}, entry.colour);
      break;
    case Swatch::line:
      canvas.line(at, end, entry.colour, 2.0);
      break;
    case Swatch::marker:
      drawMarker(canvas, middle, entry.colour);
      break;
    case Swatch::dots:
      for (const double x : {4.0, 12.0, 20.0}) {
        canvas.fillCircle({at.x + x, at.y}, 1.4, entry.colour);
      }
      break;
    case Swatch::segmentEnds:
      drawSegmentEnd(canvas, {at.x + 3.0, at.y - 9.0}, true);
      drawSegmentEnd(canvas, {at.x + 21.0, at.y - 9.0}, false);
      break;
  }
}

}  // namespace

cv::Scalar colourOfType(int featureType) {
  switch (featureType) {
    case FEATURE_JUMP_RISE:
      return rgb(255, 72, 48);
    case FEATURE_JUMP_FALL:
      return rgb(255, 140, 235);
    default:
      return rgb(255, 255, 255);
  }
}

void drawLegend(Canvas& canvas, const std::vector<LegendEntry>& entries, cv::Point2d right) {
  constexpr double kAfterSwatch = 7.0;
  constexpr double kBetween = 22.0;
  double x = right.x;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    x -= Canvas::textWidth(entry->name, kLegendText);
    canvas.text(entry->name, {x, right.y}, kLegendText, ink::kText);
    x -= kAfterSwatch + kSwatchWidth;
    drawSwatch(canvas, *entry, {x, right.y});
    x -= kBetween;
  }
}

void drawRimmedLine(Canvas& canvas,
                    const std::vector<cv::Point2d>& points,
                    const cv::Scalar& colour) {
  canvas.polyline(points, kRim, 4.0);
  canvas.polyline(points, colour, 2.0);
}

void drawMarker(Canvas& canvas, cv::Point2d at, const cv::Scalar& colour) {
  canvas.fillCircle(at, 5.5, kRim);
  canvas.fillCircle(at, 4.0, colour);
}

void drawSegmentEnd(Canvas& canvas, cv::Point2d at, bool isStart) {
  const double into = isStart ? 7.0 : -7.0;
  canvas.fillPolygon({{at.x, at.y + 5.0}, {at.x, at.y + 13.0}, {at.x + into, at.y + 9.0}},
                     kSegmentEnd);
}

}  // namespace examples
