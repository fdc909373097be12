#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include <scanline/scan_records.h>

namespace program {

/// How far each pixel that a mask covers (CV_32F, above 0) lies from the next that it does not, in
/// pixels.
cv::Mat distancesInside(const cv::Mat& mask);

/// How far each pixel that a mask does not cover lies from the next that it does, in pixels.
cv::Mat distancesOutside(const cv::Mat& mask);

/**
 * The middles of the objects: peaks of a map of distances, highest first.
 *
 * Two peaks belong to one object if some way leads from one to the other without a waist, on which
 * the distances fall to a share of the lower peak or below it.
 *
 * @param lowest  peaks below this distance are not reported
 */
std::vector<SQO_2DValueI> findMiddles(const cv::Mat& distances, double lowest, double waist);

}  // namespace program
