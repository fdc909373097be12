#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <opencv2/imgcodecs.hpp>

#include "base/failure.h"
#include "input/image_header.h"
#include "input/readers.h"
#include "input/scan_input.h"

namespace program {
namespace {

const char* const kWanted =
    "A scan is a TIFF with three float channels (x, y, z), or a range image: a TIFF or PNG with "
    "one 16-bit channel, or a TIFF with one float channel";

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

std::string depthName(int depth) {
  switch (depth) {
    case CV_8U:
    case CV_8S:
      return "8-bit";
    case CV_16U:
    case CV_16S:
      return "16-bit";
    case CV_32S:
      return "32-bit integer";
    case CV_32F:
      return "float";
    default:
      return "double";
  }
}

/// Sends the standard error stream to nowhere: OpenCV, libpng and libtiff write to it directly.
class Silence {
 public:
  Silence() : kept_(::dup(STDERR_FILENO)), nowhere_(::open("/dev/null", O_WRONLY | O_CLOEXEC)) {
    std::fflush(stderr);
    ::dup2(nowhere_, STDERR_FILENO);
  }
  ~Silence() {
    std::fflush(stderr);
    ::dup2(kept_, STDERR_FILENO);
    ::close(kept_);
    ::close(nowhere_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int kept_;
  int nowhere_;
};

cv::Mat readPixels(const std::string& path) {
  const Silence silence;
  try {
    return cv::imread(path, cv::IMREAD_UNCHANGED);
  } catch (const cv::Exception& error) {
    throw refused(path, "OpenCV cannot read it: " + error.err);
  }
}

template <typename Value>
void readRange(const cv::Mat& image, Scan& scan) {
  forEachLine(scan, [&](std::size_t l) {
    const Value* row = image.ptr<Value>(static_cast<int>(l));
    scan[l].reserve(static_cast<std::size_t>(image.cols));
    for (int col = 0; col < image.cols; ++col) {
      const auto z = static_cast<double>(row[col]);
      scan[l].push_back({col, rangePoint(static_cast<double>(l), static_cast<double>(col), z)});
    }
  });
}

/// OpenCV reverses the order of colour channels, and takes these for colours.
template <typename Value>
void readSpace(const cv::Mat& image, bool isZyx, Scan& scan) {
  forEachLine(scan, [&](std::size_t l) {
    const Value* pixel = image.ptr<Value>(static_cast<int>(l));
    scan[l].reserve(static_cast<std::size_t>(image.cols));
    for (int col = 0; col < image.cols; ++col, pixel += 3) {
      const auto first = static_cast<double>(pixel[isZyx ? 0 : 2]);
      const auto last = static_cast<double>(pixel[isZyx ? 2 : 0]);
      scan[l].push_back({col, spacePoint(first, static_cast<double>(pixel[1]), last)});
    }
  });
}

void readSamples(const cv::Mat& image, bool isZyx, RawScan& raw) {
  switch (image.depth()) {
    case CV_16U:
      return readRange<std::uint16_t>(image, raw.scan);
    case CV_16S:
      return readRange<std::int16_t>(image, raw.scan);
    case CV_32F:
      return raw.isRange ? readRange<float>(image, raw.scan)
                         : readSpace<float>(image, isZyx, raw.scan);
    default:
      return raw.isRange ? readRange<double>(image, raw.scan)
                         : readSpace<double>(image, isZyx, raw.scan);
  }
}

}  // namespace

RawScan readImage(const InputOptions& options) {
  checkImageHeader(options.path);
  const cv::Mat image = readPixels(options.path);
  if (image.empty()) {
    throw refused(options.path, std::string("is no image, is damaged or cut short. ") + kWanted);
  }
  const bool isFloat = image.depth() == CV_32F || image.depth() == CV_64F;
  const bool is16Bit = image.depth() == CV_16U || image.depth() == CV_16S;
  RawScan raw;
  raw.isImage = true;
  raw.isRange = image.channels() == 1 && (isFloat || is16Bit);
  if (!raw.isRange && !(image.channels() == 3 && isFloat)) {
    throw refused(options.path, "has pixels of " + std::to_string(image.channels()) + " x " +
                                    depthName(image.depth()) + ". " + kWanted);
  }
  raw.format = raw.isRange
                   ? depthName(image.depth()) + " range image"
                   : std::string("image of ") + (options.channelsZyx ? "z, y, x" : "x, y, z");
  raw.scan.resize(static_cast<std::size_t>(image.rows));
  readSamples(image, options.channelsZyx, raw);
  return raw;
}

}  // namespace program
