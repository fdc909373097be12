#pragma once

#include <opencv2/core/types.hpp>
#include <vector>

namespace scanline::detail {

/// The samples that a plane is fitted to, rounded to single precision, in scan order.
using FitPoints = std::vector<cv::Point3_<float>>;

/// The plane z = a x + b y + c.
struct LaserPlane {
  double a;
  double b;
  double c;
};

/// Least-squares fit of a plane in z; a = b = c = 0 where the points do not determine one.
LaserPlane fitLaserPlane(const FitPoints& points);

}  // namespace scanline::detail
