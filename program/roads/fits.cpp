#include "roads/fits.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <scanline/fits.h>

namespace program {
namespace {

STesk3DPoint minus(const STesk3DPoint& a, const STesk3DPoint& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dot(const STesk3DPoint& a, const STesk3DPoint& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The deviation that the distances of single points add up to.
template <typename Distance>
Deviation deviationOf(const std::vector<STesk3DPoint>& points, Distance distance) {
  double sum = 0.0;
  double max = 0.0;
  for (const STesk3DPoint& p : points) {
    const double d = std::abs(distance(p));
    sum += d * d;
    max = std::max(max, d);
  }
  return {std::sqrt(sum / static_cast<double>(points.size())), max};
}

/// A straight line through the points; false if there is none.
bool fitStraight(const std::vector<STesk3DPoint>& points, CentreLine& line) {
  // With fewer than two points the library's fit writes to the standard error stream.
  if (points.size() < 2 || !fitLine3DLeastSquares(points, line.centre, line.direction)) {
    return false;
  }
  if (line.direction.x < 0.0) {
    line.direction = minus({0.0, 0.0, 0.0}, line.direction);
  }
  return true;
}

/// x is shifted to its mean, which keeps the columns of the fit independent.
std::optional<Parabola> fitParabola(const std::vector<STesk3DPoint>& points, double x0) {
  std::vector<cv::Point2d> flat;
  flat.reserve(points.size());
  for (const STesk3DPoint& p : points) {
    flat.emplace_back(p.x - x0, p.y);
  }
  Parabola fit = {x0, 0.0, 0.0, 0.0, {}};
  double mse = 0.0;
  if (!leastSquareParabolaFitEigen(flat, fit.a, fit.b, fit.c, mse, fit.deviation.max)) {
    return std::nullopt;
  }
  fit.deviation.rms = std::sqrt(mse);
  return fit;
}

/// Whether a parabola follows the points much better than the straight line does, in y.
bool isBent(const std::vector<STesk3DPoint>& points, const CentreLine& line, const Parabola& fit) {
  constexpr double kMuchBetter = 2.0;
  // Below this share of the length both fits are as good as exact.
  constexpr double kExact = 1e-6;
  const STesk3DPoint span = minus(points.back(), points.front());
  const double slope = line.direction.y / line.direction.x;
  const double off = deviationOf(points, [&](const STesk3DPoint& p) {
                       return p.y - line.centre.y - slope * (p.x - line.centre.x);
                     }).rms;
  return off > kExact * std::sqrt(dot(span, span)) && off > kMuchBetter * fit.deviation.rms;
}

std::optional<Circle> fitOnce(const std::vector<cv::Point2d>& points) {
  constexpr std::size_t kFewest = 5;
  if (points.size() < kFewest) {
    return std::nullopt;
  }
  // The sums of the fit keep more digits near the origin.
  const cv::Point2d origin = points[points.size() / 2];
  std::vector<STesk3DPoint> shifted;
  shifted.reserve(points.size());
  for (const cv::Point2d& p : points) {
    shifted.push_back({p.x - origin.x, p.y - origin.y, 0.0});
  }
  STesk3DPoint centre{};
  Circle circle{};
  fitCircleByLeastSquare(shifted, centre, circle.radius);
  const Deviation deviation = deviationOf(shifted, [&](const STesk3DPoint& p) {
    return std::hypot(p.x - centre.x, p.y - centre.y) - circle.radius;
  });
  circle.centre = {centre.x + origin.x, centre.y + origin.y};
  circle.rms = deviation.rms;
  circle.count = static_cast<int>(points.size());
  return std::isfinite(circle.rms) ? std::optional(circle) : std::nullopt;
}

}  // namespace

double CentreLine::slopeAt(double x) const {
  if (parabola) {
    return 2.0 * parabola->a * (x - parabola->x0) + parabola->b;
  }
  return direction.x > 0.0 ? direction.y / direction.x : 0.0;
}

CentreLine fitCentreLine(const std::vector<STesk3DPoint>& points) {
  CentreLine line{};
  if (!fitStraight(points, line)) {
    line.centre = points.empty() ? STesk3DPoint{} : points.front();
    return line;
  }
  line.deviation = deviationOf(points, [&](const STesk3DPoint& p) {
    const STesk3DPoint d = minus(p, line.centre);
    const double along = dot(d, line.direction);
    return std::sqrt(std::max(dot(d, d) - along * along, 0.0));
  });
  const std::optional<Parabola> parabola = fitParabola(points, line.centre.x);
  if (parabola && line.direction.x > 0.0 && isBent(points, line, *parabola)) {
    line.parabola = parabola;
  }
  return line;
}

std::optional<Circle> fitCircle(const std::vector<cv::Point2d>& points) {
  constexpr double kFar = 3.0;
  const std::optional<Circle> first = fitOnce(points);
  if (!first) {
    return first;
  }
  std::vector<cv::Point2d> near;
  std::copy_if(points.begin(), points.end(), std::back_inserter(near), [&](const cv::Point2d& p) {
    return std::abs(cv::norm(p - first->centre) - first->radius) <= kFar * first->rms;
  });
  return near.size() < points.size() ? fitOnce(near) : first;
}

}  // namespace program
