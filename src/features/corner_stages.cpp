#include "features/corner_stages.h"

#include <algorithm>
#include <cmath>

#include "geometry/root_free.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr int kNone = -1;
constexpr SQO_pointSlope kNoSlope = {kNone, 0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

/// Angle of a chord in degrees. Its sign comes from z alone, so that a line traversed with falling
/// y behaves like one with rising y.
double chordAngle(const STesk3DPoint& from, const STesk3DPoint& to) {
  return std::atan((to.z - from.z) / std::abs(to.y - from.y)) * 180.0 / 3.141592653589793;
}

/// The search for neighbours, with its distances squared once for all points.
class NeighbourWalk {
 public:
  NeighbourWalk(const Samples& points, const SlopeSearch& search)
      : points_(points),
        nearSquared_(leastSquareReaching(search.scale)),
        farSquared_(leastSquareReaching(search.farLimit)) {}

  /// Walks from point `i` by `step` and ends before `end`.
  [[nodiscard]] int find(int i, int step, int end) const {
    const STesk3DPoint from = points_[i].pt3D;
    for (int j = i + step; j != end; j += step) {
      const STesk3DPoint& to = points_[j].pt3D;
      const double dy = to.y - from.y;
      const double dz = to.z - from.z;
      const double square = dy * dy + dz * dz;
      if (square >= farSquared_) {
        return kNone;
      }
      if (square >= nearSquared_) {
        return j;
      }
    }
    return kNone;
  }

 private:
  const Samples& points_;
  double nearSquared_;
  double farSquared_;
};

/// Slopes at point `i` towards its neighbours, either of which may be missing.
SQO_pointSlope slopeAt(const Samples& points, int i, int backward, int forward, LoneSide loneSide) {
  const bool both = backward != kNone && forward != kNone;
  const bool one = backward != kNone || forward != kNone;
  SQO_pointSlope slope = kNoSlope;
  if (!both && !(one && loneSide == LoneSide::kKept)) {
    return slope;
  }
  const STesk3DPoint& p = points[i].pt3D;
  slope.pntIdx = i;
  if (forward != kNone) {
    slope.forwardAngle = chordAngle(p, points[forward].pt3D);
  }
  if (backward != kNone) {
    slope.backwardAngle = chordAngle(points[backward].pt3D, p);
  }
  if (both) {
    slope.forwardZ = points[forward].pt3D.z;
    slope.backwardZ = points[backward].pt3D.z;
    slope.corner = -(slope.forwardAngle - slope.backwardAngle);
    slope.forwardDiffZ = slope.forwardZ - p.z;
    slope.backwardDiffZ = p.z - slope.backwardZ;
  }
  return slope;
}

void fillSlopes(const Samples& points,
                PointRange range,
                const SlopeSearch& search,
                Slopes& slopes) {
  const NeighbourWalk walk(points, search);
  for (int i = range.first; i <= range.last; ++i) {
    const int backward = walk.find(i, -1, range.first - 1);
    const bool wanted = backward != kNone || search.loneSide == LoneSide::kKept;
    const int forward = wanted ? walk.find(i, 1, range.last + 1) : kNone;
    slopes[i] = slopeAt(points, i, backward, forward, search.loneSide);
  }
}

double measured(const SQO_pointSlope& entry, CornerMeasure measure) {
  return measure == CornerMeasure::kMagnitude ? std::abs(entry.corner) : entry.corner;
}

/// Looks from candidate `k` by `step` for a greater one within the window.
bool isOvertopped(
    const Slopes& candidates, const Samples& points, const PeakRule& rule, int k, int step) {
  const double y = points[candidates[k].pntIdx].pt3D.y;
  const double own = measured(candidates[k], rule.measure);
  const int count = static_cast<int>(candidates.size());
  for (int other = k + step; other >= 0 && other < count; other += step) {
    const double dy = y - points[candidates[other].pntIdx].pt3D.y;
    if (dy * dy > rule.windowSquared) {
      return false;
    }
    if (measured(candidates[other], rule.measure) > own) {
      return true;
    }
  }
  return false;
}

}  // namespace

Samples collectValidPoints(const STesk3DPosition* lineData, int dataSize) {
  Samples points;
  points.reserve(static_cast<std::size_t>(std::max(dataSize, 0)));
  for (int i = 0; i < dataSize; ++i) {
    if (isAboveNoSample(lineData[i].pt3D.z)) {
      points.push_back({i, lineData[i].pt3D});
    }
  }
  return points;
}

Slopes slopePass(const Samples& points, const SlopeSearch& search) {
  return slopePass(points, {{0, static_cast<int>(points.size()) - 1}}, search);
}

Slopes slopePass(const Samples& points,
                 const std::vector<PointRange>& ranges,
                 const SlopeSearch& search) {
  Slopes slopes(points.size());
  for (const PointRange& range : ranges) {
    fillSlopes(points, range, search, slopes);
  }
  return slopes;
}

CornerExtrema extremaPass(const Slopes& slopes, ExtremaSign sign) {
  enum class Direction { kNone, kGrowing, kShrinking };
  const bool any = sign == ExtremaSign::kAny;
  CornerExtrema extrema;
  Direction direction = Direction::kNone;
  const SQO_pointSlope* previous = nullptr;
  for (const SQO_pointSlope& entry : slopes) {
    if (entry.pntIdx < 0) {
      continue;
    }
    const double change = previous == nullptr ? 0.0 : entry.corner - previous->corner;
    if (change < 0.0) {
      if (direction == Direction::kGrowing && (any || previous->corner > 0.0)) {
        extrema.maxima.push_back(*previous);
      }
      direction = Direction::kShrinking;
    } else if (change > 0.0) {
      if (direction == Direction::kShrinking && (any || previous->corner < 0.0)) {
        extrema.minima.push_back(*previous);
      }
      direction = Direction::kGrowing;
    }
    previous = &entry;
  }
  // A direction still pending is an extremum only where the line runs out of slopes.
  if (!slopes.empty() && slopes.back().pntIdx < 0) {
    if (direction == Direction::kGrowing) {
      extrema.maxima.push_back(*previous);
    } else if (direction == Direction::kShrinking) {
      extrema.minima.push_back(*previous);
    }
  }
  return extrema;
}

Slopes peakPass(const Slopes& candidates, const Samples& points, const PeakRule& rule) {
  Slopes peaks;
  for (int k = 0; k < static_cast<int>(candidates.size()); ++k) {
    if (rule.cornerTh > measured(candidates[k], rule.measure) ||
        isOvertopped(candidates, points, rule, k, -1) ||
        isOvertopped(candidates, points, rule, k, 1)) {
      continue;
    }
    peaks.push_back(candidates[k]);
  }
  return peaks;
}

}  // namespace scanline::detail
