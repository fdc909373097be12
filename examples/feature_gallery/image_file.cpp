#include "image_file.h"

#include <opencv2/imgcodecs.hpp>

#include "quiet_stderr.h"

namespace examples {

bool tryWriteImage(const std::string& path, const cv::Mat& image, const std::vector<int>& flags) {
  try {
    const QuietStderr quiet;
    return cv::imwrite(path, image, flags);
  } catch (const cv::Exception&) {
    return false;
  }
}

}  // namespace examples
