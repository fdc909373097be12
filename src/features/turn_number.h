#pragma once

#include <cmath>
#include <limits>

/// Compares angles without computing them.
namespace scanline::detail {

/// A number that stands for an angle between -180 and 180 degrees and grows with it, for one
/// division instead of two arctangents. At multiples of 90 degrees it is the angle in quarter
/// turns.
///
/// The angle is that of the vector (`x`, `y`), whose length does not matter; its sign is that of
/// `side` where x is negative. NaN if the products that x and y are made of may have overflowed or
/// underflowed.
inline double turnNumber(double x, double y, double side) {
  const double sum = std::abs(x) + std::abs(y);
  if (!(sum > 1e-280 && sum < 1e300)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double ratio = y / sum;
  return x >= 0.0 ? ratio : std::copysign(2.0, side) - ratio;
}

/// If the turn numbers of two corners differ by more than this, their turn angles differ in the
/// same direction. The same holds for a corner and a threshold, and for the sign of a corner.
///
/// The turn angle is the difference of the angles of two chords. Each chord points forwards:
/// its components are (|dy|, dz). The scalar product of the two chords is x and their cross product
/// is y, both the sum of two products.
/// - With s and c as sine and cosine of the exact angle and r = |s| + |c|, the exact turn number is
///   s / r up to 90 degrees and 2 - s / r beyond. Its derivative is 1 / r^2, between 1/2 and 1, so
///   angles in radians differ by no less than their turn numbers.
/// - Let u = 2^-53. The terms of x and y, rounded and added, are off by less than 3 u of the
/// product
///   of the lengths of the chords, which is at most r of it, the exact |x| + |y|. So a turn number
///   is off by less than 16 u.
/// - If x is negative, one chord rises and the other falls. Then the two terms of y have the sign
/// of
///   the first chord's dz and cannot cancel: `side`, which is that dz, is exact.
/// - The turn angle in radians is off by less than 8 u for its own roundings, and by twice the
///   error of the C library's atan, which is far below 1e-10.
/// In all, less than half of the margin.
constexpr double kTurnMargin = 1e-9;

}  // namespace scanline::detail
