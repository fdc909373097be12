#pragma once

/// Levelling, and the search for a plane by heights, in the plainest form. The tests compare the
/// results of the library with it, the benchmarks the speed.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include <scanline/calibration.h>

namespace plain {

inline STesk3DPoint turned(const double* m, const STesk3DPoint& p) {
  return {m[0] * p.x + m[1] * p.y + m[2] * p.z, m[3] * p.x + m[4] * p.y + m[5] * p.z,
          m[6] * p.x + m[7] * p.y + m[8] * p.z};
}

/// Levels a line and cuts it, in y or in z.
inline void level(std::vector<STesk3DPosition>& line, const double* m, double cut, bool cutsInY) {
  for (STesk3DPosition& sample : line) {
    STesk3DPoint& point = sample.pt3D;
    if (0.0001 > point.z) {
      continue;
    }
    point = turned(m, point);
    if (cut > 0.0 && (cutsInY ? point.y >= cut : point.z > cut)) {
      point.z = 0.0;
    }
  }
}

/// The counts of bins 1.0 wide, summed over 11 bins; the counts themselves if all sums are equal.
inline std::vector<int> heightProfile(const std::vector<double>& heights, double low, double high) {
  const int bins = static_cast<int>(high - low) + 1;
  std::vector<int> counts(static_cast<std::size_t>(bins));
  for (const double z : heights) {
    ++counts[static_cast<std::size_t>(z - low)];
  }
  std::vector<int> sums(counts.size());
  for (int i = 0; i < bins; ++i) {
    for (int k = std::max(0, i - 5); k <= std::min(bins - 1, i + 5); ++k) {
      sums[i] += counts[k];
    }
  }
  return std::count(sums.begin(), sums.end(), sums[0]) == bins ? counts : sums;
}

/// The heights between the valleys on both sides of the lowest strong peak. `heights` has no NaN;
/// `total` counts all valid samples.
inline std::optional<STeskRangeD> planeHeights(const std::vector<double>& heights, int total) {
  const auto [low, high] = std::minmax_element(heights.begin(), heights.end());
  const std::vector<int> profile = heightProfile(heights, *low, *high);
  const int bins = static_cast<int>(profile.size());
  std::vector<std::pair<int, int>> peaks;
  std::vector<std::pair<int, int>> valleys;
  int trend = 0;
  for (int i = 1; i < bins; ++i) {
    const int d = profile[i] - profile[i - 1];
    const bool turns = trend > 0 ? d < 0 : d > 0;
    if (trend != 0 && (turns || i == bins - 1)) {
      const int at = turns ? i - 1 : i;
      (trend > 0 ? peaks : valleys).emplace_back(at, profile[at]);
    }
    trend = d == 0 ? trend : d;
  }
  const auto peak = std::find_if(peaks.begin(), peaks.end(),
                                 [=](const auto& p) { return p.second > total / 10; });
  if (peak == peaks.end()) {
    return std::nullopt;
  }
  STeskRangeD window = {*low, *high};
  for (const auto& [bin, sum] : valleys) {
    if (sum < peak->second / 2) {
      (bin < peak->first ? window.min : window.max) = *low + static_cast<double>(bin);
      if (bin > peak->first) {
        break;
      }
    }
  }
  return window;
}

/// The calibration by the plane that the samples show. Its height is the smallest or the mean one.
inline SQO_planeCalibPara planeCalib(const std::vector<STesk3DPosition>& samples, bool takesMean) {
  std::vector<double> heights;
  int total = 0;
  for (const STesk3DPosition& sample : samples) {
    if (!(0.0001 > sample.pt3D.z)) {
      ++total;
      if (!std::isnan(sample.pt3D.z)) {
        heights.push_back(sample.pt3D.z);
      }
    }
  }
  const std::optional<STeskRangeD> window = planeHeights(heights, total);
  if (!window) {
    SQO_planeCalibPara none = adjustPlaneToXYPlane(0, 0, 0);
    none.planeHeight = -1.0;
    return none;
  }
  std::vector<cv::Point3_<float>> points;
  for (const STesk3DPosition& sample : samples) {
    const auto [x, y, z] = sample.pt3D;
    if (window->min <= z && z <= window->max) {
      points.emplace_back(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    }
  }
  std::vector<double> plane;
  teskCaculateLaserPlane(points, plane);
  SQO_planeCalibPara record = adjustPlaneToXYPlane(plane[0], plane[1], plane[2]);
  std::vector<double> levelled;
  for (const cv::Point3_<double> p : points) {
    const double z = turned(record.levelMatrix, {p.x, p.y, p.z}).z;
    levelled.push_back(static_cast<double>(static_cast<float>(z)));
  }
  record.planeHeight = takesMean ? std::accumulate(levelled.begin(), levelled.end(), 0.0) /
                                       static_cast<double>(levelled.size())
                                 : *std::min_element(levelled.begin(), levelled.end());
  return record;
}

}  // namespace plain
