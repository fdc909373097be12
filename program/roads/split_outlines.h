#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include "roads/split.h"
#include "roads/split_map.h"

namespace program {

/**
 * Keeps of each region its largest piece, without whiskers thinner than three pixels, and walks
 * around it.
 *
 * @param labels  CV_32S, from 1 to `count`; what is not kept becomes 0
 * @return for each label the pixels on its rim in turn; none for a region that is nowhere three
 *         pixels wide
 */
std::vector<std::vector<cv::Point>> walkOutlines(cv::Mat& labels, int count);

/// Size, place and outline of each region, by the samples on it. A region that encloses nothing
/// becomes an object without outline.
std::vector<SplitObject> measureObjects(const Scan& scan,
                                        double beltZ,
                                        const Extent& extent,
                                        double minHeight,
                                        const MapGrid& grid,
                                        const cv::Mat& labels,
                                        const std::vector<std::vector<cv::Point>>& rims);

}  // namespace program
