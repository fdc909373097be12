#include <scanline/calibration.h>
#include "calibration/rotation.h"

namespace {

using scanline::detail::rotationsBetween;

/// The direction that the normal of a reference plane is turned onto.
constexpr STesk3DPoint kDownwards = {0.0, 0.0, -1.0};

}  // namespace

SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c) {
  return rotationsBetween({a, b, c}, kDownwards);
}

SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to) {
  return rotationsBetween(from, to);
}
