#pragma once

#include <string>
#include <vector>

#include "canvas.h"

namespace examples {

/// The colour of a feature type, the same in all pictures.
cv::Scalar colourOfType(int featureType);

/// A feature type in words, as reports and legends name it.
const char* nameOfType(int featureType);

/// What a legend shows beside a word.
enum class Swatch { rimmedLine, line, marker, dots, segmentEnds };

struct LegendEntry {
  Swatch swatch;
  cv::Scalar colour;
  std::string name;
};

/// Writes entries side by side; `right` is where the last one ends.
void drawLegend(Canvas& canvas, const std::vector<LegendEntry>& entries, cv::Point2d right);

/// A line with a dark rim, to be seen on any ground.
void drawRimmedLine(Canvas& canvas,
                    const std::vector<cv::Point2d>& points,
                    const cv::Scalar& colour);

/// A dot with a dark rim.
void drawMarker(Canvas& canvas, cv::Point2d at, const cv::Scalar& colour);

/// A triangle below a segment's end that points into the segment.
void drawSegmentEnd(Canvas& canvas, cv::Point2d at, bool isStart);

}  // namespace examples
