#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include <scanline/scan_records.h>

namespace program {

/// The connected areas of a mask (CV_32F, above 0) that hold a seed, as 255 in a CV_8U image.
cv::Mat areasWithSeed(const cv::Mat& mask, const std::vector<SQO_2DValueI>& seeds);

/**
 * Divides what a mask covers among seeds by a watershed, from the middles of the objects outwards.
 *
 * @param mask    CV_32F, above 0 where an object covers the pixel
 * @param depths  CV_32F, how far inside an object a pixel lies; negative on the steps between
 *                objects, so that they are divided last
 * @param seeds   one per object, on the mask; `value` receives its label, from 1 on
 * @return CV_32S: the label of each pixel, 0 for what is not covered or does not connect to a seed
 */
cv::Mat divide(const cv::Mat& mask, const cv::Mat& depths, std::vector<SQO_2DValueI>& seeds);

}  // namespace program
