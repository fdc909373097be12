#pragma once

#include <cstddef>

#include "calibration/laser_plane.h"
#include "records/sample_rules.h"
#include "records/scan_view.h"

namespace scanline::detail {

/// A sample's point as the fit takes it.
inline cv::Point3_<float> toFitPoint(const STesk3DPoint& point) {
  return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}

/// The samples of a scan that `accept(point)` accepts; no-samples are not asked about. `expected`
/// is about how many will come.
template <typename Scan, typename Accept>
FitPoints selectFitPoints(const Scan& scan, std::size_t expected, Accept accept) {
  FitPoints points;
  points.reserve(expected);
  forEachSample(scan, [&](const STesk3DPosition& sample) {
    const STesk3DPoint& point = sample.pt3D;
    if (!isNoSample(point.z) && accept(point)) {
      points.push_back(toFitPoint(point));
    }
  });
  return points;
}

/// What one levelled coordinate, given by its row of the matrix, comes to over all fit points.
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
