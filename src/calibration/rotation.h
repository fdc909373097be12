#pragma once

#include <scanline/scan_records.h>

namespace scanline::detail {

/// Computes the shortest rotation that turns the direction of `from` onto that of `to`, and the one
/// from `to` to `from`. Both are the identity if either vector is shorter than 1e-7. Opposite
/// directions give the half turn about the x axis, perpendicular to them or not; if the direction
/// to be turned lies on the x axis, they give that about the y axis. `planeHeight` is 0.0.
SQO_planeCalibPara rotationsBetween(const STesk3DPoint& from, const STesk3DPoint& to);

/// One coordinate of a rotated point: a row of the matrix times the point.
inline double rowTimesPoint(const double* row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z;
}

}  // namespace scanline::detail
