#pragma once

#include <array>
#include <vector>

#include "make/made_scan.h"

namespace program {

/// A place in the plane.
struct Spot {
  double u;
  double v;
};

/**
 * The solid that the scan of the bench shows: a table and what stands on it, as the sensor meets
 * it.
 *
 * z is a distance from the sensor; the middle of the table is 650 mm away.
 */
class BenchSolid {
 public:
  static constexpr double kTallest = 60.0;  ///< Nothing rises higher over the table.
  static constexpr double kDeepest = 10.0;  ///< Nothing reaches deeper below it.
  static constexpr double kDistance = 650.0;

  BenchSolid();

  /// Distance of the surface that a ray along z meets at (x, y).
  [[nodiscard]] double surfaceAt(double x, double y) const;
  [[nodiscard]] TruePlane plane() const;
  [[nodiscard]] std::vector<TrueObject> objects() const;

 private:
  [[nodiscard]] bool isInside(double x, double y, double rise) const;

  /// Rotation from the sensor's directions, with z towards the sensor, to the table's, row by row.
  std::array<double, 9> toBench_{};
};

}  // namespace program
