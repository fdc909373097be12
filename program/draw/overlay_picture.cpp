#include "draw/overlay_picture.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <utility>

#include "base/number.h"

namespace program {
namespace {

const cv::Size2d kLargestMap(760.0, 620.0);
constexpr double kColourBarRoom = 110.0;
constexpr double kNarrowest = 560.0;
/// Pixels of the painted map per unit of the canvas.
constexpr double kResolution = 2.0;

const cv::Vec3b kNothing(28, 22, 22);
const cv::Vec3b kOnlyA(112, 104, 100);
const cv::Vec3b kOnlyB(168, 176, 182);
constexpr Colour kOnlyAInk = {100 / 255.0, 104 / 255.0, 112 / 255.0};
constexpr Colour kOnlyBInk = {182 / 255.0, 176 / 255.0, 168 / 255.0};
constexpr Colour kPoint = {1.00, 0.85, 0.20};
constexpr Colour kOutlier = {1.00, 0.28, 0.85};

/// The pixels from `first` to before `last` that a sample covers; at least one.
struct PixelSpan {
  int first;
  int last;
};

PixelSpan pixelsOf(double centre, double half, int pixels) {
  const int first = static_cast<int>(std::clamp(std::round(centre - half), 0.0, pixels - 1.0));
  const int last = static_cast<int>(std::clamp(std::round(centre + half), 0.0, pixels * 1.0));
  return {first, std::max(last, first + 1)};
}

/// A mean of z and how many samples it is of. A sample much nearer than the mean covers the others;
/// the mean of a slope would be off without its farther samples.
void addNearest(cv::Vec2f& mean, float z, float step) {
  if (mean[1] == 0.0F || z < mean[0] - step) {
    mean = {z, 1.0F};
  } else if (z <= mean[0] + step) {
    mean[1] += 1.0F;
    mean[0] += (z - mean[0]) / mean[1];
  }
}

/// Paints the z of the surface nearest to the sensor into the pixels that its samples cover.
cv::Mat nearestZ(const Layer& layer, const Overlay& area, cv::Size size) {
  constexpr double kOverlap = 1.3;
  const Extent& extent = layer.extent;
  const double perX = size.width / (area.x.max - area.x.min);
  const double perY = size.height / (area.y.max - area.y.min);
  const double halfX = 0.5 * kOverlap * extent.lineSpacing * perX;
  const double halfY = 0.5 * kOverlap * extent.sampleSpacing * perY;
  const auto step = static_cast<float>(3.0 * std::max(extent.lineSpacing, extent.sampleSpacing) +
                                       6.0 * extent.noise);
  cv::Mat means = cv::Mat::zeros(size, CV_32FC2);
  for (const Line& line : layer.scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMeasured(sample)) {
        continue;
      }
      const PixelSpan cols = pixelsOf((sample.pt3D.x - area.x.min) * perX, halfX, size.width);
      const PixelSpan rows = pixelsOf((area.y.max - sample.pt3D.y) * perY, halfY, size.height);
      for (int row = rows.first; row < rows.last; ++row) {
        for (int col = cols.first; col < cols.last; ++col) {
          addNearest(means.at<cv::Vec2f>(row, col), static_cast<float>(sample.pt3D.z), step);
        }
      }
    }
  }
  cv::Mat z;
  cv::extractChannel(means, z, 0);
  return z;
}

STeskRangeD joined(const STeskRangeD& a, const STeskRangeD& b) {
  return widened({std::min(a.min, b.min), std::max(a.max, b.max)}, 0.01);
}

/// Blue, white, red from -1.0 to 1.0.
cv::Vec3b divergingColour(double value) {
  const double v = std::clamp(value, -1.0, 1.0);
  const double fade = 1.0 - std::abs(v);
  const cv::Vec3d end = v < 0.0 ? cv::Vec3d(200.0, 90.0, 20.0) : cv::Vec3d(30.0, 30.0, 200.0);
  const cv::Vec3d mixed = (1.0 - fade) * end + fade * cv::Vec3d(250.0, 250.0, 250.0);
  return {cv::saturate_cast<uchar>(mixed[0]), cv::saturate_cast<uchar>(mixed[1]),
          cv::saturate_cast<uchar>(mixed[2])};
}

cv::Mat painted(const Overlay& overlay, double range, double sign) {
  cv::Mat picture(overlay.a.size(), CV_8UC3);
  picture.forEach<cv::Vec3b>([&](cv::Vec3b& colour, const int* at) {
    const float a = overlay.a.at<float>(at[0], at[1]);
    const float b = overlay.b.at<float>(at[0], at[1]);
    if (a > 0.0F && b > 0.0F) {
      colour = divergingColour(sign * static_cast<double>(b - a) / range);
    } else {
      colour = a > 0.0F ? kOnlyA : b > 0.0F ? kOnlyB : kNothing;
    }
  });
  return picture;
}

void drawColourBar(Canvas& canvas,
                   const cv::Rect2d& place,
                   double range,
                   const std::string& label) {
  cv::Mat ramp(256, 1, CV_8UC3);
  for (int row = 0; row < ramp.rows; ++row) {
    ramp.at<cv::Vec3b>(row) = divergingColour(1.0 - 2.0 * row / (ramp.rows - 1));
  }
  canvas.image(ramp, place);
  canvas.strokeRect(place, ink::kFrame, 1.0);
  const Plot bar(place, {0.0, 1.0, ""}, {-range, range, ""});
  const std::vector<double> ticks = roundTicks(-range, range, static_cast<int>(place.height / 50));
  for (const double tick : ticks) {
    const cv::Point2d p = bar.at(1.0, tick);
    canvas.line(p, {p.x + 4.0, p.y}, ink::kFrame, 1.0);
    canvas.text(fixed(tick, tickDecimals(ticks)), {p.x + 8.0, p.y}, 12.0, ink::kText);
  }
  canvas.textUpwards(label, {place.x + 78.0, place.y + 0.5 * place.height}, 13.0, ink::kText);
}

void drawPoints(Canvas& canvas, const Plot& plot, const OverlayContent& content) {
  canvas.beginClip(plot.place());
  for (std::size_t i = 0; i < content.labels.size(); ++i) {
    const cv::Point2d at = content.labels[i].at;
    drawMarker(canvas, plot.at(at.x, at.y), content.isOutlier[i] ? kOutlier : kPoint);
  }
  std::vector<cv::Rect2d> taken;
  for (const MapLabel& label : content.labels) {
    // Beside the marker, which it would hide.
    const cv::Point2d at = plot.at(label.at.x, label.at.y) + cv::Point2d(15.0, -13.0);
    drawLabel(canvas, label.text, at, plot.place(), taken);
  }
  canvas.endClip();
}

std::vector<LegendEntry> legendOf(const OverlayContent& content) {
  std::vector<LegendEntry> legend = {{Swatch::line, kOnlyAInk, "only A"},
                                     {Swatch::line, kOnlyBInk, "only B"},
                                     {Swatch::marker, kPoint, "point of A"}};
  if (std::find(content.isOutlier.begin(), content.isOutlier.end(), true) !=
      content.isOutlier.end()) {
    legend.push_back({Swatch::marker, kOutlier, "outlier"});
  }
  return legend;
}

}  // namespace

Overlay overlaid(const Layer& a, const Layer& b) {
  Overlay overlay = {joined(a.extent.x, b.extent.x), joined(a.extent.y, b.extent.y), {}, {}};
  const double wide = overlay.x.max - overlay.x.min;
  const double high = overlay.y.max - overlay.y.min;
  const double scale = std::min(kLargestMap.width / wide, kLargestMap.height / high);
  constexpr double kShortestSide = 160.0;
  const cv::Size size(
      static_cast<int>(kResolution * std::max(std::round(scale * wide), kShortestSide)),
      static_cast<int>(kResolution * std::max(std::round(scale * high), kShortestSide)));
  overlay.a = nearestZ(a, overlay, size);
  overlay.b = nearestZ(b, overlay, size);
  return overlay;
}

Agreement agreementOf(const Overlay& overlay) {
  std::vector<double> differences;
  long long groundB = 0;
  for (int row = 0; row < overlay.a.rows; ++row) {
    for (int col = 0; col < overlay.a.cols; ++col) {
      const float a = overlay.a.at<float>(row, col);
      const float b = overlay.b.at<float>(row, col);
      groundB += b > 0.0F ? 1 : 0;
      if (a > 0.0F && b > 0.0F) {
        differences.push_back(static_cast<double>(b - a));
      }
    }
  }
  if (differences.empty()) {
    return {0.0, std::nan(""), std::nan(""), std::nan("")};
  }
  Agreement agreement{};
  agreement.overlap = static_cast<double>(differences.size()) / static_cast<double>(groundB);
  agreement.median = quantile(differences, 0.5);
  std::transform(differences.begin(), differences.end(), differences.begin(),
                 [](double difference) { return std::abs(difference); });
  agreement.halfOfThem = quantile(differences, 0.5);
  agreement.mostOfThem = quantile(differences, 0.9);
  return agreement;
}

Picture overlayPicture(const Overlay& overlay, const Agreement& agreement, OverlayContent content) {
  const cv::Size2d map(overlay.a.cols / kResolution, overlay.a.rows / kResolution);
  const double width = std::max(kLeftMargin + map.width + kColourBarRoom, kNarrowest);
  const std::vector<LegendEntry> legend = legendOf(content);
  const cv::Rect2d place({kLeftMargin, headHeight(legend, width)}, map);
  const double range = agreement.mostOfThem > 0.0 ? agreement.mostOfThem : 1.0;
  const std::string label = "B minus A, " + std::string(content.zIsHeight ? "height" : "distance") +
                            " [" + content.unit + "]";
  const cv::Mat pixels = painted(overlay, range, content.zIsHeight ? -1.0 : 1.0);
  return {{static_cast<int>(width), static_cast<int>(place.y + map.height + kBottomMargin)},
          [=, x = overlay.x, y = overlay.y, content = std::move(content)](Canvas& canvas) {
            const Plot plot(place,
                            {x.min, x.max, "x of A, from line to line [" + content.unit + "]"},
                            {y.min, y.max, "y of A, along the lines [" + content.unit + "]"});
            canvas.image(pixels, place);
            drawPoints(canvas, plot, content);
            plot.drawAxes(canvas);
            drawHead(canvas, content.title, content.subtitle, legend, width);
            drawColourBar(canvas, {place.x + map.width + 20.0, place.y, 16.0, map.height}, range,
                          label);
          }};
}

}  // namespace program
