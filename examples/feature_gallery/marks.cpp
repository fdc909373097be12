#include "marks.h"

#include <algorithm>
#include <iterator>

#include <scanline/feature_records.h>
#include "plot.h"

namespace examples {
namespace {

const cv::Scalar kRim = rgb(25, 20, 30);
const cv::Scalar kSegmentEnd = rgb(70, 120, 90);

constexpr double kSwatchWidth = 24.0;
constexpr double kLegendText = 13.0;

struct TypeInfo {
  int type;
  const char* name;
  cv::Scalar colour;
};

const TypeInfo& typeOf(int featureType) {
  static const TypeInfo types[] = {
      {FEATURE_JUMP_RISE, "jump rise", rgb(255, 72, 48)},
      {FEATURE_JUMP_FALL, "jump fall", rgb(255, 140, 235)},
      {FEATURE_SLOPE_RISE, "slope rise", rgb(255, 160, 60)},
      {FEATURE_SLOPE_FALL, "slope fall", rgb(190, 130, 250)},
      {FEATURE_V, "V", rgb(80, 220, 120)},
      {FEATURE_SEG_START, "segment start", rgb(70, 120, 90)},
      {FEATURE_SEG_END, "segment end", rgb(70, 120, 90)},
      {FEATURE_RIGHT_ANGLE_1, "right angle 1", rgb(255, 140, 235)},
      {FEATURE_RIGHT_ANGLE_2, "right angle 2", rgb(255, 160, 60)},
      {FEATURE_RIGHT_ANGLE_3, "right angle 3", rgb(190, 130, 250)},
      {FEATURE_RIGHT_ANGLE_4, "right angle 4", rgb(255, 72, 48)},
      {FEATURE_PEAK, "peak", rgb(255, 205, 40)},
      {FEATURE_VALLEY, "valley", rgb(70, 200, 240)},
      {FEATURE_CORNER_OTHER, "corner", rgb(255, 255, 255)},
      {0, "other", rgb(255, 255, 255)},
  };
  return *std::find_if(std::begin(types), std::end(types) - 1,
                       [=](const TypeInfo& info) { return info.type == featureType; });
}

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
  return typeOf(featureType).colour;
}

const char* nameOfType(int featureType) {
  return typeOf(featureType).name;
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
