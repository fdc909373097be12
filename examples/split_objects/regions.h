#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include <scanline/scan_records.h>

namespace examples {

/// The ground divided among the objects.
struct Regions {
  cv::Mat labels;  ///< CV_32S: from 1 on an object, -1 where two of them meet, 0 none.
  int count;       ///< Highest label.
};

/**
 * Divides what a mask covers among seeds by a watershed, from the middles of the objects outwards.
 *
 * @param mask    CV_32F, above 0 where a scan covers the pixel
 * @param depths  CV_32F, how far inside an object a pixel lies; negative on the steps between
 *                objects, so that they are divided last
 * @param seeds   one per object; `value` receives its label
 */
Regions divide(const cv::Mat& mask, const cv::Mat& depths, std::vector<SQO_2DValueI>& seeds);

}  // namespace examples
