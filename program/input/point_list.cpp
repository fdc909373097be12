#include "input/point_list.h"

#include <cmath>
#include <vector>

#include "base/extent.h"

namespace program {
namespace {

using Axis = double STesk3DPoint::*;

bool isPoint(const STesk3DPoint& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The usual step of an axis from point to point; its sign is that of most steps.
double usualStep(const std::deque<STesk3DPoint>& points, Axis axis, bool isSigned) {
  constexpr std::size_t kEnough = 1'000'000;
  const std::size_t stride = points.size() / kEnough + 1;
  std::vector<double> steps;
  for (std::size_t i = 1; i < points.size(); i += stride) {
    if (isPoint(points[i - 1]) && isPoint(points[i])) {
      const double step = points[i].*axis - points[i - 1].*axis;
      steps.push_back(isSigned ? step : std::abs(step));
    }
  }
  return steps.empty() ? 0.0 : quantile(steps, 0.5);
}

}  // namespace

Scan splitIntoLines(std::deque<STesk3DPoint>& points) {
  constexpr double kBack = -3.0;
  const bool isX =
      usualStep(points, &STesk3DPoint::x, false) > usualStep(points, &STesk3DPoint::y, false);
  const Axis axis = isX ? &STesk3DPoint::x : &STesk3DPoint::y;
  const double usual = usualStep(points, axis, true);
  Scan scan;
  Line line;
  const auto finish = [&] {
    // A line of its own size: the list that grew may be twice as large.
    scan.emplace_back(line.begin(), line.end());
    line.clear();
  };
  double last = std::nan("");
  for (; !points.empty(); points.pop_front()) {
    const STesk3DPoint& p = points.front();
    // A point without a value has no place, so it stays on the line of the points before it.
    if (isPoint(p)) {
      if (usual != 0.0 && (p.*axis - last) / usual < kBack) {
        finish();
      }
      last = p.*axis;
    }
    line.push_back({static_cast<int>(line.size()), p});
  }
  finish();
  return scan;
}

}  // namespace program
