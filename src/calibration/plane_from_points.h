#pragma once

#include <cstddef>
#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/scan_records.h>
#include "calibration/laser_plane.h"
#include "records/sample_rules.h"
#include "records/scan_view.h"

namespace scanline::detail {

/// The samples that a plane is fitted to, rounded to single precision, in scan order, and their
/// sums.
class FitPoints {
 public:
  /// Makes room for `count` points.
  void reserve(std::size_t count) {
    points_.reserve(count);
  }
  void add(const STesk3DPoint& point) {
    points_.emplace_back(static_cast<float>(point.x), static_cast<float>(point.y),
                         static_cast<float>(point.z));
  }
  /// Takes the points added since the last call into the sums: best after each line, while they are
  /// in the cache.
  void sumUp() {
    addPoints(points_.data() + summed_, points_.data() + points_.size(), sums_);
    summed_ = points_.size();
  }
  [[nodiscard]] const std::vector<cv::Point3_<float>>& points() const {
    return points_;
  }
  /// The plane through the points that are summed up.
  [[nodiscard]] LaserPlane plane() const {
    return fitLaserPlane(sums_, summed_);
  }

 private:
  std::vector<cv::Point3_<float>> points_;
  std::size_t summed_ = 0;
  PlaneSums sums_;
};

/// The samples of a scan that `accept(point)` accepts; no-samples are not asked about. `expected`
/// is about how many will come.
template <typename Accept>
FitPoints selectFitPoints(const ScanView& scan, std::size_t expected, Accept accept) {
  FitPoints points;
  points.reserve(expected);
  for (const LineView& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMissing(sample.pt3D.z) && accept(sample.pt3D)) {
        points.add(sample.pt3D);
      }
    }
    points.sumUp();
  }
  return points;
}

/// A statistic of one levelled coordinate, given by its row of the matrix, over all fit points.
using HeightRule = double (*)(const FitPoints& points, const double* row);

/// The smallest levelled coordinate, 0.0 without points.
double lowestLevelled(const FitPoints& points, const double* row);

/// The mean levelled coordinate, 0.0 without points.
double meanLevelled(const FitPoints& points, const double* row);

/// Where a levelled plane comes to lie.
struct LevelTarget {
  STesk3DPoint direction;  ///< That of the plane's normal (a, b, -1).
  int heightRow;           ///< The row of the matrix that gives the plane's height.
};

/// The record that turns a plane onto a target, the height of its points there by `rule`.
SQO_planeCalibPara levelPlane(const LaserPlane& plane,
                              const FitPoints& points,
                              const LevelTarget& target,
                              HeightRule rule);

/// Fits a plane to the points and levels it to constant z.
SQO_planeCalibPara planeFromPoints(const FitPoints& points, HeightRule rule);

}  // namespace scanline::detail
