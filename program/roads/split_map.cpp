#include "roads/split_map.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include <scanline/heightmap.h>
#include "base/extent.h"
#include "base/failure.h"
#include "base/number.h"

namespace program {
namespace {

/// Empty pixels around the scan: distance maps set their outer pixels to 0.
constexpr int kMargin = 3;

/// Neighbouring samples are joined up to this distance, in pixels.
constexpr double kLink = 2.0;

STeskRangeD robustRange(std::vector<double>& values) {
  constexpr double kTail = 0.005;
  constexpr double kSlack = 0.25;
  const double low = quantile(values, kTail);
  const double high = quantile(values, 1.0 - kTail);
  const double slack = kSlack * (high - low);
  const auto [min, max] = std::minmax_element(values.begin(), values.end());
  return {std::max(*min, low - slack), std::min(*max, high + slack)};
}

/// The raised samples in pixels, from the corner of the grid: the library's projection cuts to
/// whole units of length, which are pixels then. All lines are as long as the longest.
Scan raisedInPixels(const Scan& scan,
                    double beltZ,
                    double minHeight,
                    const MapGrid& grid,
                    std::atomic<long long>& outside) {
  std::size_t samples = 0;
  for (const Line& line : scan) {
    samples = std::max(samples, line.size());
  }
  Scan raised(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    raised[l].resize(samples);
    for (std::size_t i = 0; i < scan[l].size(); ++i) {
      const STesk3DPoint& p = scan[l][i].pt3D;
      const double height = beltZ - p.z;
      if (!isMeasured(scan[l][i]) || !(height >= minHeight)) {
        continue;
      }
      if (grid.pixelOf(p)) {
        // One pixel more, so that no height is taken for a missing sample.
        raised[l][i].pt3D = {(p.x - grid.x) / grid.pixel, (p.y - grid.y) / grid.pixel,
                             height / grid.pixel + 1.0};
      } else {
        ++outside;
      }
    }
  });
  return raised;
}

cv::Mat windowOf(int reach) {
  return cv::Mat::ones(2 * reach + 1, 2 * reach + 1, CV_8U);
}

}  // namespace

std::optional<cv::Point> MapGrid::pixelOf(const STesk3DPoint& p) const {
  const double col = (p.x - x) / pixel;
  const double row = (p.y - y) / pixel;
  if (!(col >= 0.0 && col < size.width - 2 * kMargin && row >= 0.0 &&
        row < size.height - 2 * kMargin)) {
    return std::nullopt;
  }
  return cv::Point(static_cast<int>(col) + kMargin, static_cast<int>(row) + kMargin);
}

cv::Point2d MapGrid::centreOf(cv::Point at) const {
  return {x + (at.x - kMargin + 0.5) * pixel, y + (at.y - kMargin + 0.5) * pixel};
}

STesk3DRangeD robustBounds(const Scan& scan) {
  constexpr std::size_t kEnough = 1'000'000;
  std::size_t samples = 0;
  for (const Line& line : scan) {
    samples += line.size();
  }
  const std::size_t stride = samples / kEnough + 1;
  std::vector<double> x;
  std::vector<double> y;
  for (const Line& line : scan) {
    for (std::size_t i = 0; i < line.size(); i += i + stride < line.size() ? stride : 1) {
      if (isMeasured(line[i])) {
        x.push_back(line[i].pt3D.x);
        y.push_back(line[i].pt3D.y);
      }
    }
  }
  if (x.empty()) {
    return {{1.0, 0.0}, {1.0, 0.0}, {1.0, 0.0}};
  }
  return {robustRange(x), robustRange(y), {}};
}

MapGrid gridOf(const Scan& scan, double pixel) {
  const STesk3DRangeD box = robustBounds(scan);
  const double cols = std::floor((box.xRange.max - box.xRange.min) / pixel) + 2.0 + 2 * kMargin;
  const double rows = std::floor((box.yRange.max - box.yRange.min) / pixel) + 2.0 + 2 * kMargin;
  if (!(cols * rows <= 1.1 * kMostPixels)) {
    throw Failure(ExitCode::usage,
                  "--split-pixel " + significant(pixel, 4) + " makes a map of " +
                      significant(cols, 3) + " x " + significant(rows, 3) +
                      " pixels, which is too large. Take a larger pixel, or limit the scan with "
                      "--roi");
  }
  // Half a pixel of room keeps the outermost samples off the border.
  return {box.xRange.min - 0.5 * pixel,
          box.yRange.min - 0.5 * pixel,
          pixel,
          {static_cast<int>(cols), static_cast<int>(rows)}};
}

ObjectMap projectRaised(const Scan& scan, double beltZ, double minHeight, const MapGrid& grid) {
  std::atomic<long long> outside{0};
  Scan raised = raisedInPixels(scan, beltZ, minHeight, grid, outside);
  ObjectMap map = {grid, cv::Mat::zeros(grid.size, CV_32F), cv::Mat::zeros(grid.size, CV_32F),
                   outside};
  cv::Mat samples(grid.size, CV_32SC2, cv::Scalar::all(-1));
  constexpr double kNoLimit = 0.0;
  constexpr double kOnePixel = 1.0;
  pointClout2DProjection(raised, {0.0, 0.0}, {0.0, 0.0}, kOnePixel, kNoLimit, kMargin, kLink,
                         map.mask, samples);
  for (int row = 0; row < samples.rows; ++row) {
    for (int col = 0; col < samples.cols; ++col) {
      const auto& at = samples.at<cv::Vec2i>(row, col);
      if (at[0] >= 0) {
        const Line& line = scan[static_cast<std::size_t>(at[0])];
        const double z = line[static_cast<std::size_t>(at[1])].pt3D.z;
        map.height.at<float>(row, col) = static_cast<float>(beltZ - z);
      }
    }
  }
  return map;
}

cv::Mat maskWithoutSteps(const ObjectMap& map, double cut) {
  // Links over a step reach this far.
  constexpr int kReach = 2;
  constexpr double kFar = 1e30;
  cv::Mat lowest = map.height.clone();
  lowest.setTo(kFar, map.height <= 0.0F);
  cv::erode(lowest, lowest, windowOf(1));
  cv::Mat highest;
  cv::dilate(map.height, highest, windowOf(1));
  cv::Mat steps = highest - lowest > cut;
  cv::dilate(steps, steps, windowOf(kReach));
  cv::Mat mask = map.mask.clone();
  mask.setTo(0.0F, steps);
  return mask;
}

}  // namespace program
