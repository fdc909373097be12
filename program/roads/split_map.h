#pragma once

#include <opencv2/core.hpp>
#include <optional>

#include "base/scan.h"

namespace program {

/// Where samples lie in the images of a map: x in columns, y in rows.
struct MapGrid {
  double x;  ///< Of the low corner of the first pixel within the margin.
  double y;
  double pixel;  ///< Side of a pixel.
  cv::Size size;

  /// The pixel of a place; none for a place outside of the map.
  [[nodiscard]] std::optional<cv::Point> pixelOf(const STesk3DPoint& p) const;
  [[nodiscard]] cv::Point2d centreOf(cv::Point at) const;
};

/// The largest number of pixels of a map; with what is derived from it, a map takes about as much
/// memory as a scan of as many samples.
constexpr double kMostPixels = 8e6;

/// The ranges of x and y that hold the scan. A few samples far outside of all others do not widen
/// them. Empty without samples.
STesk3DRangeD robustBounds(const Scan& scan);

/// The grid of a map of a scan.
/// @throws Failure (usage) if it would have too many pixels
MapGrid gridOf(const Scan& scan, double pixel);

/// What rises over the belt, seen from above.
struct ObjectMap {
  MapGrid grid;
  cv::Mat mask;           ///< CV_32F, above 0 where an object covers the pixel.
  cv::Mat height;         ///< CV_32F, over the belt; 0 where the pixel holds no sample.
  long long outside = 0;  ///< Raised samples outside of the grid.
};

/// Projects all samples that rise by `minHeight` or more over the belt.
ObjectMap projectRaised(const Scan& scan, double beltZ, double minHeight, const MapGrid& grid);

/// The mask without pixels that are close to a step in height of more than `cut`.
cv::Mat maskWithoutSteps(const ObjectMap& map, double cut);

}  // namespace program
