#pragma once

#include <functional>

#include "base/extent.h"
#include "base/scan.h"

namespace program {

/// What a map shows of a scan.
struct MapArea {
  STeskRangeD x;         ///< Runs to the right.
  STeskRangeD y;         ///< Runs upwards.
  STeskRangeD colours;   ///< Shown z from the darkest colour to the brightest.
  double lineSpacing;    ///< The width of a painted sample.
  double sampleSpacing;  ///< Its height.
};

/// The scan as an 8-bit BGR image in shaded colours; dark where there is no sample. `shown` maps z
/// to what the colours stand for.
cv::Mat paintHeights(const Scan& scan,
                     const std::function<double(double)>& shown,
                     const MapArea& area,
                     cv::Size size);

/// The colours from the smallest to the largest value, as an image of one column from top to
/// bottom.
cv::Mat colourRamp(int rows);

}  // namespace program
