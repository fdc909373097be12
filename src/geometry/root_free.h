#pragma once

#include <cmath>
#include <limits>

namespace scanline::detail {

/// The smallest square whose root reaches `distance`; NaN for NaN. Roots round monotonically, so
/// comparing squares with it decides exactly as comparing roots with the distance would.
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

/// The smallest square whose root exceeds `distance`; NaN, which no square reaches, if none does.
inline double squaredThresholdAbove(double distance) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return distance < kInfinity ? squaredThreshold(std::nextafter(distance, kInfinity))
                              : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace scanline::detail
