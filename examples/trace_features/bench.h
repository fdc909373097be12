#pragma once

#include <array>

namespace examples {

/// A place in the plane.
struct Spot {
  double u;
  double v;
};

/**
 * The solid that the scene shows: a tilted table, 400 x 300 mm, with three boxes, one of them
 * stepped, a round boss, a round bar, a wedge and a curved groove.
 */
class Bench {
 public:
  static constexpr double kTallest = 60.0;  ///< Nothing rises higher over the table.
  static constexpr double kDeepest = 10.0;  ///< Nothing reaches deeper below it.

  Bench();

  /// Height of the surface that a ray from above meets at (x, y).
  [[nodiscard]] double surfaceAt(double x, double y) const;
  /// Angle between the table and the horizontal.
  [[nodiscard]] double tiltDegrees() const;

 private:
  [[nodiscard]] bool isInside(double x, double y, double z) const;

  /// Rotation from the sensor's directions to the table's, row by row.
  std::array<double, 9> toBench_{};
};

}  // namespace examples
