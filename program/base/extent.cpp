#include "base/extent.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/failure.h"

namespace program {
namespace {

constexpr double kMedian = 0.5;
/// A robust standard deviation is this multiple of the median absolute deviation.
constexpr double kDeviationOfMedian = 1.4826;

/// In a large scan, every n-th sample of each line is enough for medians and shares; 1 in others.
std::size_t strideOf(const Scan& scan) {
  constexpr std::size_t kEnough = 2'000'000;
  std::size_t samples = 0;
  for (const Line& line : scan) {
    samples += line.size();
  }
  return samples / kEnough + 1;
}

struct Box {
  STeskRangeD x;
  STeskRangeD y;
  STeskRangeD z;
};

void include(STeskRangeD& range, double value) {
  range = {std::min(range.min, value), std::max(range.max, value)};
}

Box boxOf(const Scan& scan) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  constexpr STeskRangeD kNone = {kInf, -kInf};
  Box box = {kNone, kNone, kNone};
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        include(box.x, sample.pt3D.x);
        include(box.y, sample.pt3D.y);
        include(box.z, sample.pt3D.z);
      }
    }
  }
  return box;
}

double medianOf(std::vector<double> values) {
  return values.empty() ? 0.0 : quantile(values, kMedian);
}

/// Median of the steps in y between neighbouring measured samples.
double sampleSpacing(const Scan& scan) {
  const std::size_t stride = strideOf(scan);
  std::vector<double> steps;
  for (const Line& line : scan) {
    for (std::size_t i = 1; i < line.size(); i += stride) {
      if (isMeasured(line[i]) && isMeasured(line[i - 1])) {
        steps.push_back(std::abs(line[i].pt3D.y - line[i - 1].pt3D.y));
      }
    }
  }
  return medianOf(std::move(steps));
}

/// Median of the steps in x between the middles of neighbouring lines.
double lineSpacing(const Scan& scan) {
  const std::size_t stride = strideOf(scan);
  std::vector<double> middles;
  std::vector<double> steps;
  double before = std::nan("");
  for (const Line& line : scan) {
    middles.clear();
    for (std::size_t i = 0; i < line.size(); i += stride) {
      if (isMeasured(line[i])) {
        middles.push_back(line[i].pt3D.x);
      }
    }
    const double middle = middles.empty() ? std::nan("") : quantile(middles, kMedian);
    if (std::isfinite(middle - before)) {
      steps.push_back(std::abs(middle - before));
    }
    before = middle;
  }
  return medianOf(std::move(steps));
}

/// How far a sample lies from the mean of its neighbours has a variance of 1.5 times the noise's.
double noiseOf(const Scan& scan) {
  constexpr double kToNoise = 0.816496580927726;
  const std::size_t stride = strideOf(scan);
  std::vector<double> deviations;
  for (const Line& line : scan) {
    for (std::size_t i = 1; i + 1 < line.size(); i += stride) {
      if (isMeasured(line[i - 1]) && isMeasured(line[i]) && isMeasured(line[i + 1])) {
        const double mean = 0.5 * (line[i - 1].pt3D.z + line[i + 1].pt3D.z);
        deviations.push_back(std::abs(line[i].pt3D.z - mean));
      }
    }
  }
  return kDeviationOfMedian * kToNoise * medianOf(std::move(deviations));
}

}  // namespace

void requireSpacing(const Extent& extent) {
  if (!(extent.sampleSpacing > 0.0 || extent.lineSpacing > 0.0)) {
    throw Failure(ExitCode::nothingFound,
                  "the scan has no neighbouring samples, so there is nothing to find");
  }
}

Scan thinned(const Scan& scan) {
  const std::size_t stride = strideOf(scan);
  Scan few(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    few[l].reserve(scan[l].size() / stride + 1);
    for (std::size_t i = 0; i < scan[l].size(); i += stride) {
      few[l].push_back(scan[l][i]);
    }
  });
  return few;
}

double quantile(std::vector<double>& values, double share) {
  const auto last = static_cast<double>(values.size() - 1);
  const auto at = values.begin() + static_cast<std::ptrdiff_t>(std::round(share * last));
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

std::vector<double> sampledValues(const Scan& scan, int axis) {
  const std::size_t stride = strideOf(scan);
  std::vector<double> values;
  for (const Line& line : scan) {
    for (std::size_t i = 0; i < line.size(); i += stride) {
      const STesk3DPoint& p = line[i].pt3D;
      if (!std::isnan(p.z)) {
        values.push_back(axis == 0 ? p.x : axis == 1 ? p.y : p.z);
      }
    }
  }
  return values;
}

Extent extentOf(const Scan& scan) {
  Extent extent{};
  const Box box = boxOf(scan);
  if (box.z.min > box.z.max) {
    return {};
  }
  extent.x = box.x;
  extent.y = box.y;
  extent.z = box.z;
  std::vector<double> z = sampledValues(scan, 2);
  z.erase(std::remove(z.begin(), z.end(), 0.0), z.end());
  if (z.empty()) {
    z = {extent.z.min, extent.z.max};
  }
  extent.shownZ = {quantile(z, 0.01), quantile(z, 0.99)};
  extent.lineSpacing = lineSpacing(scan);
  extent.sampleSpacing = sampleSpacing(scan);
  extent.noise = noiseOf(scan);
  return extent;
}

}  // namespace program
