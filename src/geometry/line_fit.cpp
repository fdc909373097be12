// Fits lines to points in the x-y plane by linear least squares.
#include <Eigen/Core>
#include <cmath>

#include <scanline/geometry.h>

namespace {

struct SlopeLine {
  double k;
  double b;
};

/// An axis of the plane, as an index into a pair (x, y).
enum Axis { kX, kY };

/// Fits the other coordinate as a linear function of the abscissa by ordinary least squares.
SlopeLine regress(const std::vector<STesk3DPoint>& points, Axis abscissa) {
  // Two sums share each packed addition; each sum keeps the order of the points.
  Eigen::Array2d sums = Eigen::Array2d::Zero();
  Eigen::Array2d products = sums;
  for (const STesk3DPoint& point : points) {
    const Eigen::Array2d xy(point.x, point.y);
    sums += xy;
    products += xy * (abscissa == kX ? point.x : point.y);
  }
  const Axis ordinate = abscissa == kX ? kY : kX;
  const double Sx = sums[abscissa];
  const double Sy = sums[ordinate];
  const double Sxx = products[abscissa];
  const double Sxy = products[ordinate];
  const auto n = static_cast<double>(points.size());
  const double D = n * Sxx - Sx * Sx;
  return {(n * Sxy - Sx * Sy) / D, (Sy * Sxx - Sxy * Sx) / D};
}

}  // namespace

void lineFitting(std::vector<STesk3DPoint>& points, double* k, double* b) {
  const SlopeLine line = regress(points, kX);
  *k = line.k;
  *b = line.b;
}

void lineFitting_abc(std::vector<STesk3DPoint>& points, double* a, double* b, double* c) {
  if (points.size() < 2) {
    return;
  }
  const double dx = std::abs(points.front().x - points.back().x);
  const double dy = std::abs(points.front().y - points.back().y);
  if (dy > dx) {
    const SlopeLine line = regress(points, kY);
    *a = 1.0;
    *b = -line.k;
    *c = -line.b;
  } else {
    const SlopeLine line = regress(points, kX);
    *a = line.k;
    *b = -1.0;
    *c = line.b;
  }
}
