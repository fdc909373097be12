#pragma once

#include <cstddef>
#include <memory>
#include <opencv2/core/cvstd.hpp>
#include <opencv2/core/mat.hpp>

namespace scanline::detail {

/**
 * Returns a new image whose pixels are unset.
 *
 * `cv::Mat::create` allocates the pixels before the record that owns them, and leaks them if the
 * allocation of the record fails. Here the record is allocated first.
 */
inline cv::Mat newImage(int rows, int cols, int type) {
  auto owner = std::make_unique<cv::UMatData>(cv::Mat::getStdAllocator());
  owner->size = static_cast<std::size_t>(rows) * cols * CV_ELEM_SIZE(type);
  owner->data = static_cast<unsigned char*>(cv::fastMalloc(owner->size));
  owner->origdata = owner->data;
  owner->refcount = 1;
  cv::Mat image(rows, cols, type, owner->data);
  image.u = owner.release();
  return image;
}

}  // namespace scanline::detail
