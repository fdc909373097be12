#pragma once

#include <cstddef>

#include "calibration/laser_plane.h"
#include "records/sample_rules.h"
#include "records/scan_view.h"

namespace scanline::detail {

/// The samples of a scan that `accept(point)` accepts; no-samples are not asked about. `expected`
/// is about how many will come.
template <typename Scan, typename Accept>
FitPoints selectFitPoints(const Scan& scan, std::size_t expected, Accept accept) {
  FitPoints points;
  points.reserve(expected);
  forEachSample(scan, [&](const STesk3DPosition& sample) {
    const STesk3DPoint& point = sample.pt3D;
    if (!isNoSample(point.z) && accept(point)) {
      points.emplace_back(static_cast<float>(point.x), static_cast<float>(point.y),
                          static_cast<float>(point.z));
    }
  });
  return points;
}

/// What one levelled coordinate, given by its row of the matrix, comes to over all fit points.
using HeightRule = double (*)(const FitPoints& points, const double* row);

/// The smallest levelled coordinate, 0.0 without points.
double lowestLevelled(const FitPoints& points, const double* row);

/// Fits a plane to the points and turns it into the record that levels it, its height by `rule`.
SQO_planeCalibPara planeFromPoints(const FitPoints& points, HeightRule rule);

}  // namespace scanline::detail
