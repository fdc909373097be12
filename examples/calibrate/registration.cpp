#include "registration.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include <scanline/calibration.h>
#include <scanline/geometry.h>
#include "noise.h"

namespace examples {
namespace {

using Points = std::vector<cv::Point3d>;

constexpr Motion kMotion = {{4.0, -7.5, 25.0}, {12.0, -8.0, 5.0}};

/// Measured samples, evenly over the scan, some thousands at most.
Points objectPoints(const Scan& scan) {
  constexpr std::size_t kMost = 4000;
  Points all;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        all.emplace_back(sample.pt3D.x, sample.pt3D.y, sample.pt3D.z);
      }
    }
  }
  const std::size_t stride = all.size() / kMost + 1;
  Points points;
  for (std::size_t i = 0; i < all.size(); i += stride) {
    points.push_back(all[i]);
  }
  return points;
}

Points moved(const Points& points, double deviation) {
  double r[3][3];
  eulerToRotationMatrixZYX(kMotion.angles, r);
  const cv::Matx33d rotation(&r[0][0]);
  const cv::Point3d shift(kMotion.shift.x, kMotion.shift.y, kMotion.shift.z);
  Noise noise(4);
  Points result;
  for (const cv::Point3d& point : points) {
    cv::Point3d error;
    error.x = deviation * noise.bell();
    error.y = deviation * noise.bell();
    error.z = deviation * noise.bell();
    result.push_back(rotation * point + shift + error);
  }
  return result;
}

Motion motionOf(const cv::Mat& R, const cv::Mat& T) {
  double r[3][3];
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) {
      r[row][col] = R.at<double>(row, col);
    }
  }
  return {rotationMatrixToEulerZYX(r), {T.at<double>(0), T.at<double>(1), T.at<double>(2)}};
}

}  // namespace

Registration registerMoved(const Scan& scan, double noise) {
  const Points first = objectPoints(scan);
  const Points second = moved(first, noise);
  cv::Mat R;
  cv::Mat T;
  cv::Point3d firstCentre;
  cv::Point3d secondCentre;
  caculateRT(first, second, R, T, firstCentre, secondCentre);

  Registration result = {static_cast<int>(first.size()), kMotion, motionOf(R, T), 0.0, 0.0};
  for (std::size_t i = 0; i < first.size(); ++i) {
    cv::Point3d mapped;
    pointRT(R, T, firstCentre, secondCentre, first[i], mapped);
    const double distance = cv::norm(second[i] - mapped);
    result.meanResidual += distance / static_cast<double>(first.size());
    result.maxResidual = std::max(result.maxResidual, distance);
  }
  return result;
}

}  // namespace examples
