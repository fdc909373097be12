#pragma once

#include <opencv2/core/types.hpp>
#include <optional>
#include <vector>

#include <scanline/scan_records.h>

namespace program {

/// How far points lie from where they should.
struct Deviation {
  double rms;
  double max;
};

/// A parabola y = a (x - x0)^2 + b (x - x0) + c.
struct Parabola {
  double x0;
  double a;
  double b;
  double c;
  Deviation deviation;  ///< Distances in y.
};

/// The line that runs through the middles of a feature, from line to line.
struct CentreLine {
  STesk3DPoint centre;
  STesk3DPoint direction;  ///< Of unit length; x is not negative. All 0.0 for a single point.
  Deviation deviation;     ///< Distances from the straight line in space.
  std::optional<Parabola> parabola;  ///< In the x-y plane, if it fits much better.

  /// dy / dx at a place.
  [[nodiscard]] double slopeAt(double x) const;
};

/// Fits a straight line, and a parabola if the line is bent.
CentreLine fitCentreLine(const std::vector<STesk3DPoint>& points);

/// A circle in a plane.
struct Circle {
  cv::Point2d centre;
  double radius;
  double rms;  ///< Root mean square distance of the points from the circle.
  int count;   ///< Points that it was fitted to.
};

/**
 * Fits a circle by fitCircleByLeastSquare(), and once more without the points that lie more than
 * three times the rms away.
 *
 * @return nothing if the points do not determine a circle
 */
std::optional<Circle> fitCircle(const std::vector<cv::Point2d>& points);

}  // namespace program
