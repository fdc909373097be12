#include "features/corner_stages.h"

#include <algorithm>
#include <cmath>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr int kNone = -1;
constexpr SQO_pointSlope kNoSlope = {kNone, 0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

/// The smallest square whose root reaches `distance`. Roots round monotonically, so comparing
/// squares with it decides exactly as comparing roots with the distance would.
double leastSquareReaching(double distance) {
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

SQO_pointSlope slopeAt(const Samples& points, int i, int backward, int forward) {
  if (backward == kNone || forward == kNone) {
    return kNoSlope;
  }
  const STesk3DPoint& b = points[backward].pt3D;
  const STesk3DPoint& p = points[i].pt3D;
  const STesk3DPoint& f = points[forward].pt3D;
  SQO_pointSlope slope = kNoSlope;
  slope.pntIdx = i;
  slope.forwardAngle = chordAngle(p, f);
  slope.backwardAngle = chordAngle(b, p);
  slope.corner = -(slope.forwardAngle - slope.backwardAngle);
  slope.forwardDiffZ = f.z - p.z;
  slope.backwardDiffZ = p.z - b.z;
  slope.forwardZ = f.z;
  slope.backwardZ = b.z;
  return slope;
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

void fillSlopes(const Samples& points,
                PointRange range,
                const SlopeSearch& search,
                Slopes& slopes) {
  const NeighbourWalk walk(points, search);
  for (int i = range.first; i <= range.last; ++i) {
    const int backward = walk.find(i, -1, range.first - 1);
    const int forward = backward == kNone ? kNone : walk.find(i, 1, range.last + 1);
    slopes[i] = slopeAt(points, i, backward, forward);
  }
}

Slopes slopePass(const Samples& points, const SlopeSearch& search) {
  Slopes slopes(points.size());
  fillSlopes(points, {0, static_cast<int>(points.size()) - 1}, search, slopes);
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
