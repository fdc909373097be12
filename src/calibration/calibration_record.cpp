#include <scanline/calibration.h>
#include "calibration/rotation.h"

namespace {

using scanline::detail::quaternionFromVectors;
using scanline::detail::quaternionToMatrix;

/// The direction that the normal of a reference plane is turned onto.
constexpr STesk3DPoint kDownwards = {0.0, 0.0, -1.0};

SQO_planeCalibPara rotationsBetween(const STesk3DPoint& from, const STesk3DPoint& to) {
  SQO_planeCalibPara record = {};
  quaternionToMatrix(quaternionFromVectors(from, to), record.levelMatrix);
  // Not the transpose: of opposite directions each way has a half turn of its own.
  quaternionToMatrix(quaternionFromVectors(to, from), record.invLevelMatrix);
  return record;
}

}  // namespace

SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c) {
  return rotationsBetween({a, b, c}, kDownwards);
}

SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to) {
  return rotationsBetween(from, to);
}
