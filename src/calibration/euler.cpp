// Converts between rotation matrices and Euler angles.
#include <cmath>

#include <scanline/calibration.h>

namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kRadiansPerDegree = 0.017453292519943295;

/// Gimbal lock: the cosine of the pitch is at most this in magnitude, and roll and yaw have a
/// common axis.
constexpr double kGimbalLockCosine = 1e-6;

}  // namespace

SQO_EulerAngles rotationMatrixToEulerZYX(const double R[3][3]) {
  const double pitch = std::asin(-R[2][0]);
  double roll = 0.0;
  double yaw = 0.0;
  if (std::abs(std::cos(pitch)) > kGimbalLockCosine) {
    yaw = std::atan2(R[1][0], R[0][0]);
    roll = std::atan2(R[2][1], R[2][2]);
  } else {
    yaw = std::atan2(-R[0][1], R[1][1]);
  }
  return {roll * kDegreesPerRadian, pitch * kDegreesPerRadian, yaw * kDegreesPerRadian};
}

void eulerToRotationMatrixZYX(const SQO_EulerAngles& angles, double R[3][3]) {
  const double roll = angles.roll * kRadiansPerDegree;
  const double pitch = angles.pitch * kRadiansPerDegree;
  const double yaw = angles.yaw * kRadiansPerDegree;
  const double cy = std::cos(yaw);
  const double sy = std::sin(yaw);
  const double cp = std::cos(pitch);
  const double sp = std::sin(pitch);
  const double cr = std::cos(roll);
  const double sr = std::sin(roll);

  R[0][0] = cp * cy;
  R[0][1] = sp * cy * sr - cr * sy;
  R[0][2] = sp * cy * cr + sr * sy;
  R[1][0] = cp * sy;
  R[1][1] = sp * sy * sr + cr * cy;
  R[1][2] = sp * sy * cr - sr * cy;
  R[2][0] = -sp;
  R[2][1] = cp * sr;
  R[2][2] = cp * cr;
}
