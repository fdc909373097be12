#pragma once

#include <opencv2/core/mat.hpp>
#include <string>
#include <vector>

namespace examples {

/// Writes an image with cv::imwrite() and its flags, without complaints of the codec. Returns
/// whether it was written.
bool tryWriteImage(const std::string& path, const cv::Mat& image, const std::vector<int>& flags);

}  // namespace examples
