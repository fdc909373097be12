#include "picture.h"

#include <cmath>
#include <cstdint>

#include <scanline/scan_bounds.h>
#include "label_layout.h"
#include "marks.h"
#include "profile.h"

namespace examples {
namespace {

constexpr double kLabelText = 13.0;
const cv::Scalar kTrace = rgb(38, 84, 150);
const cv::Scalar kGone = rgb(187, 187, 204);
const cv::Scalar kStretch = rgb(255, 120, 40);
const cv::Scalar kBand = rgb(221, 238, 221);
const cv::Scalar kBandName = rgb(92, 122, 60);
const cv::Scalar kGuide = rgb(150, 90, 160);

Plot exhibitPlot(const Line& line) {
  Scan scan = {line};
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  const STeskRangeD y = widened(box.yRange, 0.02);
  const STeskRangeD z = widened(box.zRange, 0.28);
  return {{76.0, 88.0, 708.0, 272.0},
          {y.min, y.max, "y, along the line [mm]"},
          {z.max, z.min, "z [mm], sensor at the top"}};
}

cv::Rect2d rectOf(const Plot& plot, const Band& band) {
  const double left = plot.at(band.y.min, 0.0).x;
  const double right = plot.at(band.y.max, 0.0).x;
  return {left, plot.place().y, right - left, plot.place().height};
}

void drawBands(Canvas& canvas, const Plot& plot, const std::vector<Band>& bands) {
  for (const Band& band : bands) {
    canvas.fillRect(rectOf(plot, band), kBand);
  }
}

/// Names the bands at their lower ends, over the lines of the grid.
void drawBandNames(Canvas& canvas, const Plot& plot, const std::vector<Band>& bands) {
  for (const Band& band : bands) {
    const cv::Rect2d rect = rectOf(plot, band);
    const cv::Point2d middle(rect.x + 0.5 * rect.width, rect.y + rect.height - 14.0);
    const double width = Canvas::textWidth(band.name, kLabelText) + 6.0;
    canvas.fillRect({middle.x - 0.5 * width, middle.y - 9.0, width, 18.0}, kBand);
    canvas.text(band.name, middle, kLabelText, kBandName, Anchor::centre);
  }
}

void drawGuides(Canvas& canvas, const Plot& plot, const std::vector<Guide>& guides) {
  constexpr double kDash = 6.0;
  const cv::Rect2d& place = plot.place();
  const double right = place.x + place.width;
  for (const Guide& guide : guides) {
    const double y = plot.at(0.0, guide.z).y;
    for (double x = place.x; x < right - kDash; x += 2.0 * kDash) {
      canvas.line({x, y}, {x + kDash, y}, kGuide, 1.0);
    }
    canvas.text(guide.name, {right - 8.0, y - 9.0}, kLabelText, kGuide, Anchor::right);
  }
}

Line partBetween(const Line& line, double yMin, double yMax) {
  Line part;
  for (const STesk3DPosition& sample : line) {
    if (sample.pt3D.y >= yMin && sample.pt3D.y <= yMax) {
      part.push_back(sample);
    }
  }
  return part;
}

void drawMark(Canvas& canvas, const Plot& plot, const Line& line, const Mark& mark) {
  const cv::Point2d from = plot.at(mark.from.y, mark.from.z);
  const cv::Point2d to = plot.at(mark.to.y, mark.to.z);
  switch (mark.kind) {
    case MarkKind::segmentEnd:
      drawSegmentEnd(canvas, from, mark.featureType == FEATURE_SEG_START);
      return;
    case MarkKind::point:
      drawMarker(canvas, from, colourOfType(mark.featureType));
      return;
    case MarkKind::span:
      canvas.line(from, to, kStretch, 2.5);
      break;
    case MarkKind::stretch:
      for (const STesk3DPosition& sample : partBetween(line, mark.from.y, mark.to.y)) {
        if (isMeasured(sample)) {
          canvas.fillCircle(plot.at(sample.pt3D.y, sample.pt3D.z), 2.5, kStretch);
        }
      }
      break;
  }
  drawMarker(canvas, from, kStretch);
  drawMarker(canvas, to, kStretch);
}

/// Where the label of a mark belongs: at its point, at the middle of its stretch or span.
cv::Point2d anchorOf(const Plot& plot, const Line& line, const Mark& mark) {
  const double y = 0.5 * (mark.from.y + mark.to.y);
  double z = 0.5 * (mark.from.z + mark.to.z);
  if (mark.kind == MarkKind::stretch) {
    double nearest = mark.to.y - mark.from.y;
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample) && std::abs(sample.pt3D.y - y) < nearest) {
        nearest = std::abs(sample.pt3D.y - y);
        z = sample.pt3D.z;
      }
    }
  }
  return plot.at(y, z);
}

/// Keeps labels off the profile: off its samples, and off the walls between them.
void avoidTrace(LabelLayout& layout, const Plot& plot, const Line& line) {
  constexpr double kApart = 4.0;
  const STesk3DPosition* before = nullptr;
  for (const STesk3DPosition& sample : line) {
    if (isMeasured(sample) && before != nullptr && isMeasured(*before)) {
      const cv::Point2d from = plot.at(before->pt3D.y, before->pt3D.z);
      const cv::Point2d way = plot.at(sample.pt3D.y, sample.pt3D.z) - from;
      const int steps = 1 + static_cast<int>(std::hypot(way.x, way.y) / kApart);
      for (int i = 0; i <= steps; ++i) {
        layout.avoid(from + way * (static_cast<double>(i) / steps));
      }
    }
    before = &sample;
  }
}

void drawLabels(Canvas& canvas,
                const Plot& plot,
                const Line& line,
                const std::vector<Mark>& marks) {
  constexpr double kFarAway = 26.0;
  LabelLayout layout(plot.place());
  avoidTrace(layout, plot, line);
  for (const Mark& mark : marks) {
    layout.avoid(plot.at(mark.from.y, mark.from.z));
  }
  for (const Mark& mark : marks) {
    if (mark.label.empty()) {
      continue;
    }
    const cv::Point2d at = anchorOf(plot, line, mark);
    const double width = Canvas::textWidth(mark.label, kLabelText);
    const cv::Point2d middle = layout.place(at, {width + 6.0, 18.0});
    if (std::abs(middle.y - at.y) > kFarAway) {
      canvas.line(at, {middle.x, middle.y + (middle.y < at.y ? 9.0 : -9.0)}, ink::kFaint, 1.0);
    }
    canvas.text(mark.label, middle, kLabelText, ink::kText, Anchor::centre);
  }
}

/// Rounds the shades of smoothed edges, which makes the file a lot smaller.
cv::Mat withFewColours(const cv::Mat& picture) {
  constexpr int kShade = 17;
  cv::Mat shades(1, 256, CV_8U);
  for (int i = 0; i < shades.cols; ++i) {
    shades.at<std::uint8_t>(i) = static_cast<std::uint8_t>((i + kShade / 2) / kShade * kShade);
  }
  cv::Mat result;
  cv::LUT(picture, shades, result);
  return result;
}

}  // namespace

cv::Mat drawExhibit(const Exhibit& exhibit,
                    const Line& given,
                    const Line& left,
                    const Findings& findings) {
  Canvas canvas(800, 420, ink::kPaper);
  const Plot plot = exhibitPlot(given);
  drawBands(canvas, plot, findings.bands);
  plot.drawGrid(canvas);
  drawBandNames(canvas, plot, findings.bands);
  drawGuides(canvas, plot, findings.guides);
  drawTrace(canvas, plot, given, kGone);
  drawTrace(canvas, plot, left, kTrace);
  drawLabels(canvas, plot, left, findings.marks);
  for (const Mark& mark : findings.marks) {
    drawMark(canvas, plot, left, mark);
  }
  plot.drawAxes(canvas);
  drawTitle(canvas, plot.place().x, exhibit.name, exhibit.shows);
  canvas.text(findings.parameters, {plot.place().x, 70.0}, kLabelText, ink::kFaint);
  return withFewColours(canvas.finish());
}

}  // namespace examples
