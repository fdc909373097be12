#pragma once

#include <cmath>
#include <limits>

namespace scanline::detail {

/// The smallest number whose square root is at least `distance`; NaN for NaN. Rounded square roots
/// are monotonic, so comparing a square with it decides exactly as comparing the root of that
/// square with the distance.
inline double squaredThreshold(double distance) {
  if (distance <= 0.0) {
    return 0.0;
  }
  double square = distance * distance;
  while (square > 0.0 && std::sqrt(std::nextafter(square, 0.0)) >= distance) {
    square = std::nextafter(square, 0.0);
  }
  while (std::sqrt(square) < distance) {
    square = std::nextafter(square, std::numeric_limits<double>::infinity());
  }
  return square;
}

/// The smallest number whose square root is greater than `distance`; NaN, with which every
/// comparison fails, if there is none.
inline double squaredThresholdAbove(double distance) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return distance < kInfinity ? squaredThreshold(std::nextafter(distance, kInfinity))
                              : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace scanline::detail
