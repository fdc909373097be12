#pragma once

/// Images: OpenCV headers over the memory of arrays, and arrays over that of OpenCV.

#include <opencv2/core/mat.hpp>

#include "arrays.h"

namespace binding {

/// A header over a checked array of `CV_` type, two-dimensional or with an axis of channels.
cv::Mat imageFrom(py::handle value, const Name& name, int type, bool isWritten);
/// An array over the pixels of an image, which it keeps alive.
py::array arrayOf(const cv::Mat& image);
/// How a message and a stub name the dtype of a `CV_` type.
const char* depthName(int type);

}  // namespace binding
