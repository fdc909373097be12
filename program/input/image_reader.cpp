#include <cmath>
#include <opencv2/imgcodecs.hpp>

#include "base/failure.h"
#include "input/readers.h"
#include "input/scan_input.h"
#include "input/tiff_header.h"

namespace program {
namespace {

const char* const kWanted =
    "A scan is a TIFF with three float channels (x, y, z), or a range image: a TIFF or PNG with "
    "one "
    "16-bit channel, or a TIFF with one float channel";

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

double valueAt(const cv::Mat& image, int row, int col) {
  switch (image.depth()) {
    case CV_16U:
      return image.at<std::uint16_t>(row, col);
    case CV_16S:
      return image.at<std::int16_t>(row, col);
    case CV_32F:
      return static_cast<double>(image.at<float>(row, col));
    default:
      return image.at<double>(row, col);
  }
}

STesk3DPoint rangePoint(const cv::Mat& image, int row, int col) {
  const double z = valueAt(image, row, col);
  return {static_cast<double>(row), static_cast<double>(col), z == 0.0 ? std::nan("") : z};
}

/// OpenCV reverses the order of colour channels, and takes these for colours.
STesk3DPoint spacePoint(const cv::Mat& image, int row, int col, bool isZyx) {
  double c[3];
  for (int channel = 0; channel < 3; ++channel) {
    c[channel] = image.depth() == CV_32F
                     ? static_cast<double>(image.ptr<float>(row)[3 * col + channel])
                     : image.ptr<double>(row)[3 * col + channel];
  }
  const STesk3DPoint p = isZyx ? STesk3DPoint{c[0], c[1], c[2]} : STesk3DPoint{c[2], c[1], c[0]};
  const bool isHole = p.x == 0.0 && p.y == 0.0 && p.z == 0.0;
  return isHole ? STesk3DPoint{0.0, 0.0, std::nan("")} : p;
}

}  // namespace

RawScan readImage(const InputOptions& options) {
  refuseLossyTiff(options.path);
  const cv::Mat image = cv::imread(options.path, cv::IMREAD_UNCHANGED);
  if (image.empty()) {
    throw refused(options.path, std::string("is no image, is damaged or cut short. ") + kWanted);
  }
  const bool isFloat = image.depth() == CV_32F || image.depth() == CV_64F;
  const bool is16Bit = image.depth() == CV_16U || image.depth() == CV_16S;
  const bool isRange = image.channels() == 1 && (isFloat || is16Bit);
  if (!isRange && !(image.channels() == 3 && isFloat)) {
    throw refused(options.path, "has " + std::to_string(image.channels()) + " channels of " +
                                    depthName(image.depth()) + " values. " + kWanted);
  }
  RawScan raw;
  raw.isRange = isRange;
  raw.format = isRange ? depthName(image.depth()) + " range image"
                       : std::string("image of ") + (options.channelsZyx ? "z, y, x" : "x, y, z");
  raw.scan.resize(static_cast<std::size_t>(image.rows));
  for (int row = 0; row < image.rows; ++row) {
    Line& line = raw.scan[static_cast<std::size_t>(row)];
    line.reserve(static_cast<std::size_t>(image.cols));
    for (int col = 0; col < image.cols; ++col) {
      line.push_back({col, isRange ? rangePoint(image, row, col)
                                   : spacePoint(image, row, col, options.channelsZyx)});
    }
  }
  return raw;
}

}  // namespace program
