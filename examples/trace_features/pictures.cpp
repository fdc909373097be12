#include "pictures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "height_map.h"
#include "marks.h"
#include "profile.h"

namespace examples {
namespace {

const cv::Size2d kLargestMap(740.0, 600.0);

const int kTypes[] = {FEATURE_JUMP_RISE, FEATURE_JUMP_FALL, FEATURE_CORNER_OTHER};

void drawTrees(Canvas& canvas, const Plot& plot, const TraceResult& result) {
  // The longest come first, and are drawn last so that nothing covers them.
  for (auto edge = result.edges.rbegin(); edge != result.edges.rend(); ++edge) {
    std::vector<cv::Point2d> points;
    for (const SQO_basicFeature1D& node : edge->tree.treeNodes) {
      points.push_back(plot.at(node.jumpPos.x, node.jumpPos.y));
    }
    drawRimmedLine(canvas, points, colourOfType(edge->tree.treeType));
  }
}

std::vector<LegendEntry> typeEntries(Swatch swatch) {
  std::vector<LegendEntry> entries;
  for (const int type : kTypes) {
    entries.push_back({swatch, colourOfType(type), nameOfType(type)});
  }
  return entries;
}

/// Axes that hold a line; z has room below for the marks of the segment ends.
Plot profilePlot(const Line& line, const cv::Rect2d& place, const std::string& unit) {
  Scan scan = {line};
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  const STeskRangeD y = widened(box.yRange, 0.02);
  const STeskRangeD z = widened(box.zRange, 0.12);
  return {place,
          {y.min, y.max, "y, along the line [" + unit + "]"},
          {z.min, z.max, "z, levelled [" + unit + "]"}};
}

}  // namespace

int richestLine(const TraceResult& result) {
  std::vector<int> nodes(result.scan.size());
  for (const TracedEdge& edge : result.edges) {
    for (const SQO_basicFeature1D& node : edge.tree.treeNodes) {
      ++nodes[static_cast<std::size_t>(node.jumpPos2D.x)];
    }
  }
  const auto richest = std::max_element(nodes.begin(), nodes.end());
  return static_cast<int>(*richest > 0 ? richest - nodes.begin() : result.scan.size() / 2);
}

cv::Mat drawMap(const TraceResult& result,
                const SJU_pointCloudPara& cloud,
                int markedLine,
                const std::string& unit) {
  const HeightMapView view = viewOf(result.scan, cloud.scanLineStep, cloud.ptStep);
  const cv::Size2d size = mapSize(view.x, view.y, kLargestMap);
  const cv::Rect2d place({76.0, 70.0}, size);
  const double right = place.x + place.width;
  Canvas canvas(static_cast<int>(std::max(right + 96.0, 640.0)),
                static_cast<int>(place.y + place.height + 58.0), ink::kPaper);
  const Plot plot(place, {view.x.min, view.x.max, "x, from line to line [" + unit + "]"},
                  {view.y.min, view.y.max, "y, along the lines [" + unit + "]"});
  canvas.paste(paintHeightMap(result.scan, view, Canvas::innerSize(place)), place.tl());
  markLine(canvas, plot, result.scan[static_cast<std::size_t>(markedLine)]);
  drawTrees(canvas, plot, result);
  plot.drawAxes(canvas);
  drawTitle(canvas, place.x, "Feature trees on the height map",
            std::to_string(result.edges.size()) + " trees over " +
                std::to_string(result.scan.size()) + " lines; dashed: line " +
                std::to_string(markedLine));
  drawLegend(canvas, typeEntries(Swatch::rimmedLine), {std::max(right, 620.0), 49.0});
  drawColourBar(canvas, {right + 24.0, place.y + 22.0, 16.0, place.height - 22.0}, view.z,
                "z [" + unit + "]");
  return canvas.finish();
}

cv::Mat drawProfile(const TraceResult& result,
                    const Line& raw,
                    int lineIdx,
                    const std::string& unit) {
  const Line& line = result.scan[static_cast<std::size_t>(lineIdx)];
  const SQO_lineFeature& features = result.features[static_cast<std::size_t>(lineIdx)];
  const cv::Scalar rawColour = rgb(150, 158, 172);
  const cv::Scalar traceColour = rgb(38, 84, 150);
  Canvas canvas(952, 420, ink::kPaper);
  const Plot plot = profilePlot(line, {76.0, 70.0, 852.0, 290.0}, unit);
  plot.drawGrid(canvas);
  drawDots(canvas, plot, raw, rawColour);
  drawTrace(canvas, plot, line, traceColour);
  for (const SQO_basicFeature1D& end : features.endings) {
    drawSegmentEnd(canvas, plot.at(end.jumpPos.y, end.jumpPos.z),
                   end.featureType == FEATURE_SEG_START);
  }
  for (const SQO_basicFeature1D& corner : features.features) {
    drawMarker(canvas, plot.at(corner.jumpPos.y, corner.jumpPos.z),
               colourOfType(corner.featureType));
  }
  plot.drawAxes(canvas);
  drawTitle(canvas, 76.0, "Profile of line " + std::to_string(lineIdx),
            std::to_string(features.features.size()) + " corners, " +
                std::to_string(features.endings.size() / 2) + " segments");
  std::vector<LegendEntry> entries = {{Swatch::dots, rawColour, "levelled"},
                                      {Swatch::line, traceColour, "conditioned"}};
  const std::vector<LegendEntry> types = typeEntries(Swatch::marker);
  entries.insert(entries.end(), types.begin(), types.end());
  entries.push_back({Swatch::segmentEnds, traceColour, "segment ends"});
  drawLegend(canvas, entries, {928.0, 49.0});
  return canvas.finish();
}

}  // namespace examples
