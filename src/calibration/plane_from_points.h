#pragma once

#include <cstddef>
#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/scan_records.h>
#include "calibration/laser_plane.h"
#include "records/sample_rules.h"
#include "records/scan_view.h"

namespace scanline::detail {

/// The samples to which a plane is fitted, in scan order and rounded to single precision, and their
/// sums.
class FitPoints {
 public:
  void reserve(std::size_t count) {
    points_.reserve(count);
  }
  void add(const STesk3DPoint& point) {
    points_.emplace_back(static_cast<float>(point.x), static_cast<float>(point.y),
                         static_cast<float>(point.z));
  }
  /// Extends the sums by the points added since the last call. It is best called after each line,
  /// while the points are in the cache.
  void sumUp() {
    addPoints(points_.data() + summed_, points_.data() + points_.size(), sums_);
    summed_ = points_.size();
  }
  [[nodiscard]] const std::vector<cv::Point3_<float>>& points() const {
    return points_;
  }
  /// The plane through the points in the sums.
  [[nodiscard]] LaserPlane plane() const {
    return fitLaserPlane(sums_, summed_);
  }

 private:
  std::vector<cv::Point3_<float>> points_;
  std::size_t summed_ = 0;
  PlaneSums sums_;
};

/// The valid samples of a scan for which `accept(point)` holds. `expected` is an estimate of their
/// number.
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
double smallestLevelled(const FitPoints& points, const double* row);

/// The mean levelled coordinate, 0.0 without points.
double meanLevelled(const FitPoints& points, const double* row);

/// The position of a levelled plane.
struct LevelTarget {
  STesk3DPoint direction;  ///< The direction of the normal (a, b, -1) after levelling.
  int heightRow;           ///< The row of the matrix that gives the height of the plane.
};

/// The record that turns a plane onto a target. `rule` gives the height of its points there.
SQO_planeCalibPara levelPlane(const LaserPlane& plane,
                              const FitPoints& points,
                              const LevelTarget& target,
                              HeightRule rule);

/// Fits a plane to the points and levels it to constant z.
SQO_planeCalibPara planeFromPoints(const FitPoints& points, HeightRule rule);

}  // namespace scanline::detail
