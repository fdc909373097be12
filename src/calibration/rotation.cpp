// Computes the shortest rotation between two directions.
#include "calibration/rotation.h"

#include <cmath>

#include <scanline/calibration.h>

namespace scanline::detail {

namespace {

constexpr double kMinLength = 1e-7;
constexpr double kParallelDot = 0.9999999;

/// The direction onto which the normal of a reference plane is turned.
constexpr STesk3DPoint kDownwards = {0.0, 0.0, -1.0};

/// A unit quaternion.
struct Quaternion {
  double w;
  double x;
  double y;
  double z;
};

constexpr Quaternion kIdentity = {1.0, 0.0, 0.0, 0.0};
constexpr Quaternion kHalfTurnAboutX = {0.0, 1.0, 0.0, 0.0};
constexpr Quaternion kHalfTurnAboutY = {0.0, 0.0, 1.0, 0.0};

double length(const STesk3DPoint& v) {
  return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

double dot(const STesk3DPoint& a, const STesk3DPoint& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

STesk3DPoint cross(const STesk3DPoint& a, const STesk3DPoint& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// The half turn for opposite directions. Its axis is the x or the y axis, perpendicular to the
/// directions or not.
Quaternion halfTurn(const STesk3DPoint& unitFrom) {
  const bool isOnXAxis = std::abs(unitFrom.y) < kMinLength && std::abs(unitFrom.z) < kMinLength;
  return isOnXAxis ? kHalfTurnAboutY : kHalfTurnAboutX;
}

Quaternion turnBetween(const STesk3DPoint& unitFrom, const STesk3DPoint& unitTo, double cosine) {
  const STesk3DPoint axis = cross(unitFrom, unitTo);
  const double sine = length(axis);
  if (kMinLength > sine) {
    return kIdentity;
  }
  const double sineOfHalf = std::sqrt((1.0 - cosine) / 2.0);
  const double cosineOfHalf = std::sqrt((1.0 + cosine) / 2.0);
  return {cosineOfHalf, axis.x * sineOfHalf / sine, axis.y * sineOfHalf / sine,
          axis.z * sineOfHalf / sine};
}

/// The rotation that turns the direction of `from` onto that of `to`.
Quaternion quaternionFromVectors(const STesk3DPoint& from, const STesk3DPoint& to) {
  const double fromLength = length(from);
  const double toLength = length(to);
  if (kMinLength > fromLength || kMinLength > toLength) {
    return kIdentity;
  }
  const STesk3DPoint unitFrom = {from.x / fromLength, from.y / fromLength, from.z / fromLength};
  const STesk3DPoint unitTo = {to.x / toLength, to.y / toLength, to.z / toLength};
  const double cosine = dot(unitFrom, unitTo);
  if (cosine > kParallelDot) {
    return kIdentity;
  }
  if (-kParallelDot > cosine) {
    return halfTurn(unitFrom);
  }
  return turnBetween(unitFrom, unitTo, cosine);
}

/// Writes the rotation matrix of a unit quaternion, row by row.
void quaternionToMatrix(const Quaternion& q, double matrix[9]) {
  matrix[0] = 1.0 - 2.0 * (q.y * q.y + q.z * q.z);
  matrix[1] = 2.0 * (q.x * q.y - q.w * q.z);
  matrix[2] = 2.0 * (q.x * q.z + q.w * q.y);
  matrix[3] = 2.0 * (q.x * q.y + q.w * q.z);
  matrix[4] = 1.0 - 2.0 * (q.x * q.x + q.z * q.z);
  matrix[5] = 2.0 * (q.y * q.z - q.w * q.x);
  matrix[6] = 2.0 * (q.x * q.z - q.w * q.y);
  matrix[7] = 2.0 * (q.y * q.z + q.w * q.x);
  matrix[8] = 1.0 - 2.0 * (q.x * q.x + q.y * q.y);
}

}  // namespace

SQO_planeCalibPara rotationsBetween(const STesk3DPoint& from, const STesk3DPoint& to) {
  SQO_planeCalibPara record = {};
  quaternionToMatrix(quaternionFromVectors(from, to), record.levelMatrix);
  // Not the transpose: between opposite directions, the two half turns may differ in their axes.
  quaternionToMatrix(quaternionFromVectors(to, from), record.invLevelMatrix);
  return record;
}

}  // namespace scanline::detail

SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c) {
  return scanline::detail::rotationsBetween({a, b, c}, scanline::detail::kDownwards);
}

SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to) {
  return scanline::detail::rotationsBetween(from, to);
}
