#pragma once

#include <string>

#include "plot.h"
#include "scan_types.h"

namespace examples {

/// What a height map shows, and where.
struct HeightMapView {
  STeskRangeD x;    ///< Along the lines' advance; runs to the right.
  STeskRangeD y;    ///< Along the lines; runs upwards.
  STeskRangeD z;    ///< From the darkest colour to the brightest.
  double lineStep;  ///< Distance of the lines: the width of a painted sample.
  double ptStep;    ///< Distance of the samples on a line: its height.
};

/// The view that holds all samples; its colours leave out the outermost samples of either end.
HeightMapView viewOf(const Scan& scan, double lineStep, double ptStep);

/// The size of a map: as large as fits with the same scale on both axes, unless it would be very
/// long or wide.
cv::Size2d mapSize(const STeskRangeD& x, const STeskRangeD& y, cv::Size2d largest);

/// The scan as a picture in shaded colours; what no sample covers stays dark.
cv::Mat paintHeightMap(const Scan& scan, const HeightMapView& view, cv::Size size);

/// Dashes on a height map where a line runs.
void markLine(Canvas& canvas, const Plot& plot, const Line& line);

/// The scale of a height map's colours, with numbers on its right side.
void drawColourBar(Canvas& canvas,
                   const cv::Rect2d& place,
                   const STeskRangeD& z,
                   const std::string& label);

/// What a height map shows where there is no sample.
cv::Scalar holeColour();

}  // namespace examples
