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
  const cv::Mat normal = (cv::Mat_<double>(3, 3) << s.xx, s.xy, s.x, s.xy, s.yy, s.y, s.x, s.y, n);
  const cv::Mat right = (cv::Mat_<double>(3, 1) << s.xz, s.yz, s.z);
  // The same bits as normal.inv() * right, which OpenCV evaluates as a solve, not as a product.
  cv::Mat solution;
  if (!cv::solve(normal, right, solution, cv::DECOMP_LU)) {
    return {};
  }
  return {solution.at<double>(0), solution.at<double>(1), solution.at<double>(2)};
}

}  // namespace scanline::detail

// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature takes a copy
void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points, std::vector<double>& res) {
  const scanline::detail::LaserPlane plane = scanline::detail::fitLaserPlane(points);
  res.insert(res.end(), {plane.a, plane.b, -1.0, plane.c});
}
