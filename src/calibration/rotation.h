#pragma once

#include <scanline/scan_records.h>

namespace scanline::detail {

/// A unit quaternion, the form in which a rotation between two directions is found.
struct Quaternion {
  double w;
  double x;
  double y;
  double z;
};

/// The shortest rotation that takes the direction of `from` onto that of `to`; the lengths of the
/// two do not matter. It is the identity if either has next to no length. Opposite directions get
/// the half turn about the x axis, perpendicular to them or not, and about the y axis only if
/// `from` lies on the x axis.
Quaternion quaternionFromVectors(const STesk3DPoint& from, const STesk3DPoint& to);

/// Writes the rotation matrix of a unit quaternion, row by row.
void quaternionToMatrix(const Quaternion& q, double matrix[9]);

/// One coordinate of a rotated point: a row of the matrix times the point.
inline double rowTimesPoint(const double* row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z;
}

}  // namespace scanline::detail
