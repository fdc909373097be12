#pragma once

#include <opencv2/core.hpp>

#include "base/scan.h"

namespace program {

/// A label image of a scan, samples by lines, in which each hole of one line up to a width has a
/// label of its own.
cv::Mat labelledHoles(const Line& line, int lineIdx, double width);

}  // namespace program
