#pragma once

#include <string>

#include "canvas.h"
#include "plot.h"
#include "scan_types.h"

namespace examples {

/// A title and a smaller line below it, above a plot whose left edge is at `x`.
void drawTitle(Canvas& canvas, double x, const std::string& title, const std::string& subtitle);

/// Draws the measured samples, y against z, broken wherever a sample is missing.
void drawTrace(Canvas& canvas, const Plot& plot, const Line& line, const cv::Scalar& colour);

/// Draws a dot for each measured sample inside the plot.
void drawDots(Canvas& canvas, const Plot& plot, const Line& line, const cv::Scalar& colour);

}  // namespace examples
