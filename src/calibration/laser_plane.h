#pragma once

#include <cstddef>
#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The sums in the normal equations of a plane fit.
struct PlaneSums {
  double xx = 0.0;
  double xy = 0.0;
  double x = 0.0;
  double yy = 0.0;
  double y = 0.0;
  double xz = 0.0;
  double yz = 0.0;
  double z = 0.0;
};

/// Adds points to the sums, in order.
void addPoints(const cv::Point3_<float>* first, const cv::Point3_<float>* end, PlaneSums& sums);

/// The plane z = a x + b y + c.
struct LaserPlane {
  double a;
  double b;
  double c;
};

/// The least-squares fit of a plane in z, given the sums over `count` points; a = b = c = 0 if the
/// normal equations are exactly singular.
LaserPlane fitLaserPlane(const PlaneSums& sums, std::size_t count);

}  // namespace scanline::detail
