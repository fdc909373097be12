#pragma once

#include <cmath>
#include <limits>

/// Compares angles without computing them.
namespace scanline::detail {

/// A number that stands for an angle between -180 and 180 degrees and grows with it. It takes one
/// division instead of two arctangents. At multiples of 90 degrees it is the angle in quarter
/// turns.
///
/// The angle is that of the vector (`x`, `y`) of any length; its sign is that of `side` where x is
/// negative. NaN if the products that x and y consist of may have overflowed or underflowed.
inline double turnNumber(double x, double y, double side) {
  const double sum = std::abs(x) + std::abs(y);
  if (!(sum > 1e-280 && sum < 1e300)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double ratio = y / sum;
  return x >= 0.0 ? ratio : std::copysign(2.0, side) - ratio;
}

/// If the turn numbers of two corners differ by more than this, their turn angles differ in the
/// same direction. The same holds for a corner and a threshold, and for the sign of a turn angle.
///
/// The turn angle is the difference of the angles of two chords, which point forward: their
/// components are (|dy|, dz). With their scalar product as x and their cross product as y, each the
/// sum of two products:
/// - With s and c as sine and cosine of the exact angle and r = |s| + |c|, the exact turn number is
///   s / r up to 90 degrees and 2 - s / r beyond. Its derivative is 1 / r^2, between 1/2 and 1, so
///   angles in radians differ by no less than their turn numbers.
/// - Let u = 2^-53. The rounded terms of x and y and their sums have an error below 3 u of the
///   product of the lengths of the chords. That product is at most the exact |x| + |y|. So the
///   error of a turn number is below 16 u.
/// - If x is negative, one chord rises and the other one falls. Then the two terms of y have the
///   sign of dz of the first chord and cannot cancel: `side`, which is that dz, is exact.
/// - The error of the turn angle in radians is below 8 u for its own roundings, plus twice the
/// error
///   of the C library's atan, which is far below 1e-10.
/// The sum is less than half of the margin.
constexpr double kTurnMargin = 1e-9;

}  // namespace scanline::detail
