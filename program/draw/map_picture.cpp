#include "draw/map_picture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "draw/height_raster.h"

namespace program {
namespace {

const cv::Size2d kLargestMap(760.0, 620.0);
constexpr double kColourBarRoom = 110.0;
constexpr double kNarrowest = 520.0;
/// Pixels of the painted map per unit of the canvas.
constexpr double kResolution = 2.0;

/// As large as fits with one scale for both axes, but neither side very short.
cv::Size2d mapSize(const MapArea& area) {
  constexpr double kShortestSide = 160.0;
  const double wide = area.x.max - area.x.min;
  const double high = area.y.max - area.y.min;
  const double scale = std::min(kLargestMap.width / wide, kLargestMap.height / high);
  return {std::max(std::round(scale * wide), kShortestSide),
          std::max(std::round(scale * high), kShortestSide)};
}

MapArea areaOf(const Extent& extent, const PlaneChoice& plane, const MapContent& content) {
  const double a = plane.shown(extent.shownZ.min);
  const double b = plane.shown(extent.shownZ.max);
  const STeskRangeD middle = {std::min(a, b), std::max(a, b)};
  const double halfLine = 0.5 * extent.lineSpacing;
  const double halfSample = 0.5 * extent.sampleSpacing;
  return {widened({extent.x.min - halfLine, extent.x.max + halfLine}, 0.0),
          widened({extent.y.min - halfSample, extent.y.max + halfSample}, 0.0),
          content.colours.value_or(widened(middle, 0.03)), extent.lineSpacing,
          extent.sampleSpacing};
}

void drawColourBar(Canvas& canvas,
                   const cv::Rect2d& place,
                   const STeskRangeD& colours,
                   const std::string& label) {
  canvas.image(colourRamp(256), place);
  canvas.strokeRect(place, ink::kFrame, 1.0);
  const Plot bar(place, {0.0, 1.0, ""}, {colours.min, colours.max, ""});
  const std::vector<double> ticks =
      roundTicks(colours.min, colours.max, static_cast<int>(place.height / 50));
  for (const double tick : ticks) {
    const cv::Point2d p = bar.at(1.0, tick);
    canvas.line(p, {p.x + 4.0, p.y}, ink::kFrame, 1.0);
    canvas.text(fixed(tick, tickDecimals(ticks)), {p.x + 8.0, p.y}, 12.0, ink::kText);
  }
  canvas.textUpwards(label, {place.x + 78.0, place.y + 0.5 * place.height}, 13.0, ink::kText);
}

void drawContent(Canvas& canvas, const Plot& plot, const MapContent& content) {
  const auto placed = [&](const std::vector<cv::Point2d>& points) {
    std::vector<cv::Point2d> result;
    result.reserve(points.size());
    for (const cv::Point2d& p : points) {
      result.push_back(plot.at(p.x, p.y));
    }
    return result;
  };
  canvas.beginClip(plot.place());
  for (const MapPath& path : content.paths) {
    drawRimmedLine(canvas, placed(path.points), path.colour);
  }
  std::vector<cv::Rect2d> taken;
  for (const MapLabel& label : content.labels) {
    drawLabel(canvas, label.text, plot.at(label.at.x, label.at.y), plot.place(), taken);
  }
  canvas.endClip();
}

}  // namespace

Picture mapPicture(const Scan& scan,
                   const Extent& extent,
                   const PlaneChoice& plane,
                   MapContent content) {
  const MapArea area = areaOf(extent, plane, content);
  const cv::Size2d map = mapSize(area);
  const double width = std::max(kLeftMargin + map.width + kColourBarRoom, kNarrowest);
  const cv::Rect2d place({kLeftMargin, headHeight(content.legend, width)}, map);
  const bool hasPlane = plane.chosen && !plane.chosen->isGround;
  const std::string label =
      (hasPlane ? "height over the plane [" : "z, distance [") + content.unit + "]";
  const auto shown = [plane](double z) { return plane.shown(z); };
  const cv::Size pixels(static_cast<int>(kResolution * map.width),
                        static_cast<int>(kResolution * map.height));
  return {{static_cast<int>(width), static_cast<int>(place.y + map.height + kBottomMargin)},
          [=, &scan, content = std::move(content)](Canvas& canvas) {
            const Plot plot(place,
                            {area.x.min, area.x.max, "x, from line to line [" + content.unit + "]"},
                            {area.y.min, area.y.max, "y, along the lines [" + content.unit + "]"});
            canvas.image(paintHeights(scan, shown, area, pixels), place);
            drawContent(canvas, plot, content);
            plot.drawAxes(canvas);
            drawHead(canvas, content.title, content.subtitle, content.legend, width);
            drawColourBar(canvas, {place.x + map.width + 20.0, place.y, 16.0, map.height},
                          area.colours, label);
          }};
}

}  // namespace program
