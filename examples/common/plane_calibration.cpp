#include "plane_calibration.h"

#include <algorithm>
#include <cmath>

namespace examples {
namespace {

constexpr double kNoPlane = -1.0;

}  // namespace

SQO_planeCalibPara noCalibration() {
  return {{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0},
          kNoPlane,
          {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}};
}

bool isLevelling(const SQO_planeCalibPara& calibration) {
  return calibration.planeHeight != kNoPlane;
}

double tiltDegrees(const double* rotation) {
  constexpr double kDegrees = 180.0 / 3.141592653589793;
  // Rounding may leave the cosine of no tilt at all a little above 1.
  return std::acos(std::clamp(rotation[8], -1.0, 1.0)) * kDegrees;
}

}  // namespace examples
