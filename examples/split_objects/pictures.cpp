#include "pictures.h"

#include <algorithm>
#include <iterator>
#include <opencv2/imgproc.hpp>

#include "height_map.h"
#include "marks.h"
#include "profile.h"

namespace examples {
namespace {

const cv::Scalar kNumber = rgb(255, 255, 255);

/// A colour for an object by its place in the list, so that neighbours differ.
cv::Scalar colourOf(std::size_t number) {
  static const cv::Scalar kColours[] = {rgb(255, 106, 77),  rgb(86, 204, 242),  rgb(255, 205, 66),
                                        rgb(187, 134, 252), rgb(120, 224, 120), rgb(255, 138, 200),
                                        rgb(240, 240, 240), rgb(255, 166, 84)};
  return kColours[number % std::size(kColours)];
}

/// A canvas with a plot of the belt, x to the right and y upwards.
struct Sheet {
  Canvas canvas;
  Plot plot;
};

Sheet makeSheet(const STeskRangeD& x, const STeskRangeD& y, double right, const std::string& unit) {
  const cv::Size2d largest(660.0, 520.0);
  const cv::Rect2d place({76.0, 70.0}, mapSize(x, y, largest));
  return {Canvas(static_cast<int>(std::max(place.x + place.width + right, 560.0)),
                 static_cast<int>(place.y + place.height + 58.0), ink::kPaper),
          Plot(place, {x.min, x.max, "x, from line to line [" + unit + "]"},
               {y.min, y.max, "y, along the lines [" + unit + "]"})};
}

/// What an image of pixels covers, its rows and columns in length units.
STeskRangeD coverage(double min, int edge, int pixels, double scale) {
  return {min - edge * scale, min + (pixels - edge) * scale};
}

/// A sheet that shows an image of pixels.
Sheet showPixels(const cv::Mat& colours, const PixelGrid& grid, const std::string& unit) {
  Sheet sheet = makeSheet(coverage(grid.x.min, grid.edge, colours.cols, grid.scale),
                          coverage(grid.y.min, grid.edge, colours.rows, grid.scale), 24.0, unit);
  cv::Mat picture;
  cv::flip(colours, picture, 0);
  const cv::Rect2d& place = sheet.plot.place();
  cv::resize(picture, picture, Canvas::innerSize(place), 0.0, 0.0, cv::INTER_NEAREST);
  sheet.canvas.paste(picture, place.tl());
  sheet.plot.drawAxes(sheet.canvas);
  return sheet;
}

cv::Mat finish(Sheet& sheet, const std::string& title, const std::string& subtitle) {
  drawTitle(sheet.canvas, sheet.plot.place().x, title, subtitle);
  return sheet.canvas.finish();
}

cv::Mat ground(cv::Size size) {
  return {size, CV_8UC3, holeColour()};
}

/// The scan as heights over the belt.
Scan heightsOverBelt(const SplitResult& result) {
  Scan scan = result.scan;
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        sample.pt3D.z = result.frame.calibration.planeHeight - sample.pt3D.z;
      }
    }
  }
  return scan;
}

void drawOutline(Sheet& sheet, const FoundObject& object, const cv::Scalar& colour) {
  std::vector<cv::Point2d> points;
  for (const cv::Point2d& p : object.outlinePoints) {
    points.push_back(sheet.plot.at(p.x, p.y));
  }
  if (!points.empty()) {
    points.push_back(points.front());
  }
  drawRimmedLine(sheet.canvas, points, colour);
}

std::string countOf(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

cv::Mat drawMask(const SplitResult& result, const std::string& unit) {
  cv::Mat colours = ground(result.mask.size());
  colours.setTo(rgb(225, 228, 232), result.mask > 0.0F);
  Sheet sheet = showPixels(colours, result.grid, unit);
  return finish(sheet, "Projection mask",
                "what the levelled scan covers once the belt is cut away");
}

cv::Mat drawDistances(const SplitResult& result, const std::string& unit) {
  double deepest = 1.0;
  cv::minMaxLoc(result.distances, nullptr, &deepest);
  cv::Mat levels;
  result.distances.convertTo(levels, CV_8U, 255.0 / std::max(deepest, 1.0));
  cv::Mat colours;
  cv::applyColorMap(levels, colours, cv::COLORMAP_VIRIDIS);
  cv::Mat covered = result.distances > 0.0F;
  colours.setTo(holeColour(), ~covered);
  Sheet sheet = showPixels(colours, result.grid, unit);
  const PixelGrid& grid = result.grid;
  for (const SQO_2DValueI& peak : result.peaks) {
    drawMarker(sheet.canvas,
               sheet.plot.at(grid.x.min + (peak.x - grid.edge + 0.5) * grid.scale,
                             grid.y.min + (peak.y - grid.edge + 0.5) * grid.scale),
               rgb(255, 72, 48));
  }
  return finish(sheet, "Distance map without steps",
                countOf(result.peaks.size(), "peak") + " that stand for an object each");
}

cv::Mat drawRegions(const SplitResult& result, const std::string& unit) {
  cv::Mat colours = ground(result.mask.size());
  colours.setTo(rgb(90, 92, 100), result.mask > 0.0F);
  for (std::size_t i = 0; i < result.objects.size(); ++i) {
    colours.setTo(colourOf(i), result.regions.labels == result.objects[i].label);
  }
  Sheet sheet = showPixels(colours, result.grid, unit);
  return finish(sheet, "Watershed regions", "grey: where two regions meet, or no object");
}

cv::Mat drawOutlines(const SplitResult& result,
                     const SplitParams& params,
                     const std::string& unit) {
  const Scan heights = heightsOverBelt(result);
  HeightMapView view = viewOf(heights, params.lineStep, params.ptStep);
  const STeskRangeD x = widened(view.x, 0.02);
  const STeskRangeD y = widened(view.y, 0.03);
  view.x = x;
  view.y = y;
  view.z.min = 0.0;
  Sheet sheet = makeSheet(x, y, 96.0, unit);
  const cv::Rect2d& place = sheet.plot.place();
  sheet.canvas.paste(paintHeightMap(heights, view, Canvas::innerSize(place)), place.tl());
  for (std::size_t i = 0; i < result.objects.size(); ++i) {
    drawOutline(sheet, result.objects[i], colourOf(i));
  }
  for (std::size_t i = 0; i < result.objects.size(); ++i) {
    const cv::Point2d centre = result.objects[i].centre;
    sheet.canvas.text(std::to_string(i + 1), sheet.plot.at(centre.x, centre.y), 18.0, kNumber,
                      Anchor::centre, true);
  }
  sheet.plot.drawAxes(sheet.canvas);
  drawColourBar(sheet.canvas,
                {place.x + place.width + 24.0, place.y + 22.0, 16.0, place.height - 22.0}, view.z,
                "[" + unit + "]");
  return finish(sheet, "Objects on the height map",
                countOf(result.objects.size(), "object") + "; colours: height over the belt");
}

}  // namespace examples
