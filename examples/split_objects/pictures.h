#pragma once

#include <opencv2/core.hpp>
#include <string>

#include "pipeline.h"

namespace examples {

/// The pixels that the scan covers without the belt.
cv::Mat drawMask(const SplitResult& result, const std::string& unit);

/// How far inside its object each pixel lies, with the middles.
cv::Mat drawDistances(const SplitResult& result, const std::string& unit);

/// The regions of the watershed.
cv::Mat drawRegions(const SplitResult& result, const std::string& unit);

/// The outlines of the objects over the height map.
cv::Mat drawOutlines(const SplitResult& result, const SplitParams& params, const std::string& unit);

}  // namespace examples
