#include "calibration/laser_plane.h"

#include <opencv2/core.hpp>

#include <scanline/calibration.h>

namespace scanline::detail {

namespace {

/// The sums that the normal equations are made of.
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

PlaneSums sumPoints(const FitPoints& points) {
  PlaneSums sums;
  for (const cv::Point3_<float>& point : points) {
    const auto x = static_cast<double>(point.x);
    const auto y = static_cast<double>(point.y);
    const auto z = static_cast<double>(point.z);
    sums.xx += x * x;
    sums.xy += x * y;
    sums.x += x;
    sums.yy += y * y;
    sums.y += y;
    sums.xz += x * z;
    sums.yz += y * z;
    sums.z += z;
  }
  return sums;
}

}  // namespace

LaserPlane fitLaserPlane(const FitPoints& points) {
  const PlaneSums s = sumPoints(points);
  const auto n = static_cast<double>(points.size());
  // On the stack, so that nothing is allocated.
  const cv::Matx33d normal(s.xx, s.xy, s.x, s.xy, s.yy, s.y, s.x, s.y, n);
  const cv::Matx31d right(s.xz, s.yz, s.z);
  cv::Matx33d inverse;
  cv::Matx31d solution;
  // Inverse and product are formed one after the other: OpenCV evaluates `a.inv() * b` as a solve,
  // which differs in the last digits, and on badly conditioned points in more. The inverse of a
  // singular matrix is zero.
  cv::invert(normal, inverse, cv::DECOMP_LU);
  cv::gemm(inverse, right, 1.0, cv::noArray(), 0.0, solution);
  return {solution(0), solution(1), solution(2)};
}

}  // namespace scanline::detail

// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature takes a copy
void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points, std::vector<double>& res) {
  const scanline::detail::LaserPlane plane = scanline::detail::fitLaserPlane(points);
  res.insert(res.end(), {plane.a, plane.b, -1.0, plane.c});
}
