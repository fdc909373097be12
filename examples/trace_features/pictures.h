#pragma once

#include <opencv2/core.hpp>
#include <string>

#include "pipeline.h"

namespace examples {

/// The line whose corners went into the most trees; without trees the middle one.
int richestLine(const TraceResult& result);

/// The levelled height map with the trees drawn over it, and the place of one line marked.
cv::Mat drawMap(const TraceResult& result,
                const SJU_pointCloudPara& cloud,
                int markedLine,
                const std::string& unit);

/// One line as a profile, with its corners and the ends of its segments.
/// @param raw the same line, levelled only
cv::Mat drawProfile(const TraceResult& result,
                    const Line& raw,
                    int lineIdx,
                    const std::string& unit);

}  // namespace examples
