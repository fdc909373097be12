#include <cmath>

#include <scanline/geometry.h>

namespace {

using Axis = double STesk3DPoint::*;

struct SlopeLine {
  double k;
  double b;
};

/// Ordinary least squares of the ordinate `v` on the abscissa `u`.
SlopeLine regress(const std::vector<STesk3DPoint>& points, Axis u, Axis v) {
  double Sx = 0.0;
  double Sy = 0.0;
  double Sxx = 0.0;
  double Sxy = 0.0;
  for (const STesk3DPoint& point : points) {
    const double x = point.*u;
    const double y = point.*v;
    Sx += x;
    Sy += y;
    Sxx += x * x;
    Sxy += x * y;
  }
  const auto n = static_cast<double>(points.size());
  const double D = n * Sxx - Sx * Sx;
  return {(n * Sxy - Sx * Sy) / D, (Sy * Sxx - Sxy * Sx) / D};
}

}  // namespace

void lineFitting(std::vector<STesk3DPoint>& points, double* k, double* b) {
  const SlopeLine line = regress(points, &STesk3DPoint::x, &STesk3DPoint::y);
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
    const SlopeLine line = regress(points, &STesk3DPoint::y, &STesk3DPoint::x);
    *a = 1.0;
    *b = -line.k;
    *c = -line.b;
  } else {
    const SlopeLine line = regress(points, &STesk3DPoint::x, &STesk3DPoint::y);
    *a = line.k;
    *b = -1.0;
    *c = line.b;
  }
}
