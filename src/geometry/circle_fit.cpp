// Fits a circle to points in the x-y plane by linear least squares.
#include <cmath>
#include <limits>

#include <scanline/geometry.h>

namespace {

struct CircleSums {
  double x, y, xx, yy, xxx, yyy, xy, xyy, xxy;
};

CircleSums sumUp(const std::vector<STesk3DPoint>& points) {
  CircleSums S = {};
  for (const STesk3DPoint& point : points) {
    const double x = point.x;
    const double y = point.y;
    const double xx = x * x;
    const double yy = y * y;
    S.x += x;
    S.y += y;
    S.xx += xx;
    S.yy += yy;
    S.xxx += xx * x;
    S.yyy += yy * y;
    S.xy += x * y;
    S.xyy += x * yy;
    S.xxy += y * xx;
  }
  return S;
}

/// The circle x^2 + y^2 + p x + q y + r = 0.
struct Circle {
  double p, q, r;
};

Circle solve(const CircleSums& S, double n) {
  const double C = n * S.xyy + n * S.xxx - (S.xx + S.yy) * S.x;
  const double D = n * S.xy - S.x * S.y;
  const double E = n * S.xxy + n * S.yyy - (S.xx + S.yy) * S.y;
  const double G = n * S.yy - S.y * S.y;
  const double H = n * S.xx - S.x * S.x;
  const double p = (E * D - G * C) / (G * H - D * D);
  const double q = (E * H - C * D) / (D * D - G * H);
  const double r = -(q * S.y + p * S.x + S.xx + S.yy) / n;
  return {p, q, r};
}

/// The largest excess of a squared distance from the centre over the squared radius, at least 0.0.
double largestExcess(const std::vector<STesk3DPoint>& points,
                     const STesk3DPoint& center,
                     double radius) {
  double largest = 0.0;
  for (const STesk3DPoint& point : points) {
    const double dx = point.x - center.x;
    const double dy = point.y - center.y;
    const double excess = dx * dx + dy * dy - radius * radius;
    if (excess > largest) {
      largest = excess;
    }
  }
  return largest;
}

}  // namespace

double fitCircleByLeastSquare(const std::vector<STesk3DPoint>& points,
                              STesk3DPoint& center,
                              double& radius) {
  if (points.size() < 3) {
    return std::numeric_limits<double>::max();
  }
  const auto [p, q, r] = solve(sumUp(points), static_cast<double>(points.size()));
  center.x = -p / 2;
  center.y = -q / 2;
  radius = std::sqrt(q * q + p * p - 4 * r) * 0.5;
  return largestExcess(points, center, radius);
}
