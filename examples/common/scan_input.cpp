#include "scan_input.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <opencv2/imgcodecs.hpp>
#include <utility>

#include <scanline/scan_bounds.h>
#include "image_file.h"
#include "program.h"
#include "quiet_stderr.h"

namespace examples {
namespace {

constexpr double kLargestCoordinate = 1e9;
constexpr std::size_t kLargestScan = 50'000'000;
// The value of the TIFF tag; OpenCV passes it on without naming it.
constexpr int kTiffDeflate = 8;

const char* const kWanted =
    "a scan is a TIFF with three float channels (x, y, z) or a single-channel 16-bit or float "
    "range image";

UserError unusable(const std::string& path, const std::string& why) {
  return UserError{"cannot use '" + path + "': " + why};
}

cv::Mat loadImage(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    throw unusable(path, "no such file");
  }
  if (!std::filesystem::is_regular_file(path, error)) {
    throw unusable(path, "not a file");
  }
  cv::Mat image;
  try {
    const QuietStderr quiet;
    image = cv::imread(path, cv::IMREAD_UNCHANGED);
  } catch (const cv::Exception&) {
    image.release();
  }
  if (image.empty()) {
    throw unusable(path, std::string("no image, or damaged or cut short; ") + kWanted);
  }
  return image;
}

std::string describePixels(const cv::Mat& image) {
  static const std::map<int, const char*> names = {
      {CV_8U, "8-bit"},           {CV_8S, "8-bit"},  {CV_16U, "16-bit"}, {CV_16S, "16-bit"},
      {CV_32S, "32-bit integer"}, {CV_32F, "float"}, {CV_64F, "double"}};
  const auto name = names.find(image.depth());
  return std::to_string(image.channels()) + " x " +
         (name == names.end() ? "unknown" : name->second);
}

/// The image in doubles, with one or three channels.
cv::Mat toDoubles(const cv::Mat& image, const std::string& path) {
  const bool isFloat = image.depth() == CV_32F || image.depth() == CV_64F;
  const bool is16Bit = image.depth() == CV_16U || image.depth() == CV_16S;
  const bool isRange = image.channels() == 1 && (isFloat || is16Bit);
  if (!isRange && !(image.channels() == 3 && isFloat)) {
    throw unusable(path, "its pixels are " + describePixels(image) + "; " + kWanted);
  }
  if (image.total() > kLargestScan) {
    throw unusable(path, "more than " + std::to_string(kLargestScan) + " samples; cut it up first");
  }
  cv::Mat doubles;
  image.convertTo(doubles, CV_64F);
  return doubles;
}

bool isPlausible(double value) {
  return std::abs(value) <= kLargestCoordinate;
}

/// The samples as the file tells them; a sample without a measurement has a z of 0.
Scan samplesOf(const cv::Mat& image, const ScanFileOptions& options) {
  const bool isRange = image.channels() == 1;
  Scan scan(static_cast<std::size_t>(image.rows), Line(static_cast<std::size_t>(image.cols)));
  for (int row = 0; row < image.rows; ++row) {
    for (int col = 0; col < image.cols; ++col) {
      STesk3DPoint point{};
      if (isRange) {
        point = {row * options.pitchX, col * options.pitchY, image.at<double>(row, col)};
      } else {
        // OpenCV turns the order of colour channels round, and these are colours to it.
        const auto& zyx = image.at<cv::Vec3d>(row, col);
        point = {zyx[2], zyx[1], zyx[0]};
      }
      if (!isPlausible(point.x) || !isPlausible(point.y) || !isPlausible(point.z)) {
        point = {0.0, 0.0, 0.0};
      }
      scan[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)] = {col, point};
    }
  }
  return scan;
}

template <typename Change>
void changeMeasured(Scan& scan, Change change) {
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      if (sample.pt3D.z != 0.0) {
        change(sample.pt3D);
      }
    }
  }
}

/// Whether x changes faster than y along the lines, so that the file has them the other way round.
bool xRunsAlongLines(const Scan& scan) {
  double alongX = 0.0;
  double alongY = 0.0;
  for (const Line& line : scan) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      if (isMeasured(line[i]) && isMeasured(line[i - 1])) {
        alongX += std::abs(line[i].pt3D.x - line[i - 1].pt3D.x);
        alongY += std::abs(line[i].pt3D.y - line[i - 1].pt3D.y);
      }
    }
  }
  return alongX > alongY;
}

/// Measures z from just beyond the farthest sample, so that high things have a large z.
void turnDistancesIntoHeights(Scan& scan) {
  double farthest = 0.0;
  changeMeasured(scan, [&](const STesk3DPoint& p) { farthest = std::max(farthest, p.z); });
  const double zero = farthest + 1.0;
  changeMeasured(scan, [&](STesk3DPoint& p) { p.z = p.z > 0.0 ? zero - p.z : 0.0; });
}

}  // namespace

void addScanFileOptions(CLI::App& app, ScanFileOptions& options) {
  const std::map<std::string, AxisOrder> orders = {
      {"auto", AxisOrder::automatic}, {"keep", AxisOrder::keep}, {"swap", AxisOrder::swap}};
  const auto limit = numberIn(-kLargestCoordinate, kLargestCoordinate);
  const std::string group = "Scan file";
  app.add_option("scan", options.path, std::string("File to work on; ") + kWanted)
      ->type_name("FILE");
  app.add_option("--axes", options.axes, "Exchange x and y: auto, keep or swap (default: auto)")
      ->transform(CLI::CheckedTransformer(orders).description(""))
      ->type_name("ORDER")
      ->group(group);
  app.add_option("--pitch-x", options.pitchX, "Range image: distance of its rows, the lines")
      ->check(numberIn(1e-6, 1e6))
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group(group);
  app.add_option("--pitch-y", options.pitchY, "Range image: distance of the samples on a line")
      ->check(numberIn(1e-6, 1e6))
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group(group);
  app.add_option("--z-scale", options.zScale, "Multiplies every measured z")
      ->check(limit)
      ->capture_default_str()
      ->type_name("FACTOR")
      ->group(group);
  app.add_option("--z-offset", options.zOffset, "Added to every measured z after the scale")
      ->check(limit)
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group(group);
  app.add_flag("--z-is-distance", options.zIsDistance,
               "z grows away from the sensor: turn it into a height over the farthest sample")
      ->group(group);
}

Scan readScan(const ScanFileOptions& options) {
  cv::Mat image = toDoubles(loadImage(options.path), options.path);
  if (image.channels() == 1 && options.axes == AxisOrder::swap) {
    image = image.t();
  }
  Scan scan = samplesOf(image, options);
  changeMeasured(scan, [&](STesk3DPoint& p) { p.z = p.z * options.zScale + options.zOffset; });
  const bool swaps = options.axes == AxisOrder::swap ||
                     (options.axes == AxisOrder::automatic && xRunsAlongLines(scan));
  if (image.channels() == 3 && swaps) {
    changeMeasured(scan, [](STesk3DPoint& p) { std::swap(p.x, p.y); });
  }
  if (options.zIsDistance) {
    turnDistancesIntoHeights(scan);
  }
  return scan;
}

SJU_pointCloudPara measureScan(Scan& scan) {
  const SJU_pointCloudPara cloud = ju_getPointCloudPara(scan);
  if (cloud.zRange.min > cloud.zRange.max) {
    throw UserError("the scan holds no measurement: no z is above 0; see --z-scale, --z-offset");
  }
  if (!(cloud.scanLineStep > 0.0) || !(cloud.ptStep > 0.0)) {
    throw UserError(
        "the scan is too small, or x does not grow from line to line and y along the lines; "
        "see --axes, --pitch-x, --pitch-y");
  }
  // The search for the plane counts heights in bins of one unit.
  constexpr double kLargestRange = 1e6;
  if (cloud.zRange.max - cloud.zRange.min > kLargestRange) {
    throw UserError("the heights span more than a million units; see --z-scale");
  }
  return cloud;
}

void writeScan(const std::string& path, const Scan& scan) {
  const int cols = scan.empty() ? 0 : static_cast<int>(scan.front().size());
  cv::Mat image(static_cast<int>(scan.size()), cols, CV_32FC3);
  for (int row = 0; row < image.rows; ++row) {
    for (int col = 0; col < image.cols; ++col) {
      const STesk3DPoint& p =
          scan[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)].pt3D;
      image.at<cv::Vec3f>(row, col) =
          cv::Vec3f(static_cast<float>(p.z), static_cast<float>(p.y), static_cast<float>(p.x));
    }
  }
  if (!tryWriteImage(path, image, {cv::IMWRITE_TIFF_COMPRESSION, kTiffDeflate})) {
    throw UserError("cannot write '" + path +
                    "': give the name of a .tiff file in a folder "
                    "that you can write to");
  }
}

}  // namespace examples
