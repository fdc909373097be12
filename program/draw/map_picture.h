#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/extent.h"
#include "base/scan.h"
#include "draw/plot.h"
#include "plane/plane_choice.h"

namespace program {

/// A line over the map, in x and y.
struct MapPath {
  std::vector<cv::Point2d> points;
  Colour colour;
};

/// A number or a word at a place of the map.
struct MapLabel {
  std::string text;
  cv::Point2d at;
};

/// What a map shows over the scan.
struct MapContent {
  std::string title;
  std::string subtitle;
  std::string unit;
  std::vector<MapPath> paths;    ///< Later ones are drawn over earlier ones.
  std::vector<MapLabel> labels;  ///< Earlier ones get the better places.
  std::vector<LegendEntry> legend;
  std::optional<STeskRangeD> colours;  ///< Shown z of the colours' ends; none: the middle 98 %.
};

/// The scan from above in colours of z, with what was found. Keeps a reference to the scan.
Picture mapPicture(const Scan& scan,
                   const Extent& extent,
                   const PlaneChoice& plane,
                   MapContent content);

}  // namespace program
