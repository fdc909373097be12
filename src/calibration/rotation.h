#pragma once

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The shortest rotation that takes the direction of `from` onto that of `to`, and the one back;
/// the lengths of the two do not matter. Both are the identity if either has next to no length.
/// Opposite directions get the half turn about the x axis, perpendicular to them or not, and about
/// the y axis only if the source lies on the x axis. `planeHeight` is 0.0.
SQO_planeCalibPara rotationsBetween(const STesk3DPoint& from, const STesk3DPoint& to);

/// One coordinate of a rotated point: a row of the matrix times the point.
inline double rowTimesPoint(const double* row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z;
}

}  // namespace scanline::detail
