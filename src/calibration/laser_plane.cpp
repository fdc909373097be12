// Fits a plane to points by linear least squares in z.
#include "calibration/laser_plane.h"

#include <Eigen/Core>
#include <opencv2/core.hpp>

#include <scanline/calibration.h>

namespace scanline::detail {

void addPoints(const cv::Point3_<float>* first, const cv::Point3_<float>* end, PlaneSums& sums) {
  // Two sums share each packed addition; each sum keeps the order of the points.
  Eigen::Array2d xyTimesX(sums.xx, sums.xy);
  Eigen::Array2d xy(sums.x, sums.y);
  Eigen::Array2d xyTimesZ(sums.xz, sums.yz);
  Eigen::Array2d yyAndZ(sums.yy, sums.z);
  for (; first != end; ++first) {
    const auto x = static_cast<double>(first->x);
    const auto y = static_cast<double>(first->y);
    const auto z = static_cast<double>(first->z);
    const Eigen::Array2d point(x, y);
    xyTimesX += point * x;
    xy += point;
    xyTimesZ += point * z;
    yyAndZ += Eigen::Array2d(y * y, z);
  }
  sums = {xyTimesX[0], xyTimesX[1], xy[0], yyAndZ[0], xy[1], xyTimesZ[0], xyTimesZ[1], yyAndZ[1]};
}

LaserPlane fitLaserPlane(const PlaneSums& s, std::size_t count) {
  const auto n = static_cast<double>(count);
  // Matrices of fixed size, so that nothing is allocated.
  const cv::Matx33d normal(s.xx, s.xy, s.x, s.xy, s.yy, s.y, s.x, s.y, n);
  const cv::Matx31d right(s.xz, s.yz, s.z);
  cv::Matx33d inverse;
  cv::Matx31d solution;
  // The inverse and the product are computed separately: OpenCV evaluates `a.inv() * b` by solving
  // the equations, which differs in the last digits, and in more of them if the equations are badly
  // conditioned. For a singular matrix, cv::invert sets the inverse to zero.
  cv::invert(normal, inverse, cv::DECOMP_LU);
  cv::gemm(inverse, right, 1.0, cv::noArray(), 0.0, solution);
  return {solution(0), solution(1), solution(2)};
}

}  // namespace scanline::detail

// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature takes a copy
void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points, std::vector<double>& res) {
  scanline::detail::PlaneSums sums;
  scanline::detail::addPoints(points.data(), points.data() + points.size(), sums);
  const scanline::detail::LaserPlane plane = scanline::detail::fitLaserPlane(sums, points.size());
  res.insert(res.end(), {plane.a, plane.b, -1.0, plane.c});
}
