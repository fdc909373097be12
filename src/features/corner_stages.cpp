#include "features/corner_stages.h"

#include <algorithm>
#include <cmath>

#include "geometry/root_free.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr SQO_pointSlope kNoSlope = {kNoPoint, 0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

/// Angle of a chord in degrees. Its sign comes from z alone, so that a line traversed with falling
/// y behaves like one with rising y.
double chordAngle(const STesk3DPoint& from, const STesk3DPoint& to) {
  return std::atan((to.z - from.z) / std::abs(to.y - from.y)) * 180.0 / 3.141592653589793;
}

/// Slopes at point `i` towards its neighbours, either of which may be missing.
SQO_pointSlope slopeAt(const Samples& points, int i, int backward, int forward, LoneSide loneSide) {
  const bool both = backward != kNoPoint && forward != kNoPoint;
  const bool one = backward != kNoPoint || forward != kNoPoint;
  SQO_pointSlope slope = kNoSlope;
  if (!both && !(one && loneSide == LoneSide::kKept)) {
    return slope;
  }
  const STesk3DPoint& p = points[i].pt3D;
  slope.pntIdx = i;
  if (forward != kNoPoint) {
    slope.forwardAngle = chordAngle(p, points[forward].pt3D);
  }
  if (backward != kNoPoint) {
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

/// The search for neighbours in the y-z plane.
class NeighbourSearch {
 public:
  NeighbourSearch(const Samples& points, const SlopeSearch& search)
      : farSquared_(leastSquareReaching(search.farLimit)),
        reach_(inProfile(points), std::fmin(leastSquareReaching(search.scale), farSquared_)) {}

  /// Searches from point `i` by `step` and before `end`.
  int find(int i, int step, int end) {
    const int j = reach_.find(i, step, end);
    return j != kNoPoint && reach_.square(i, j) >= farSquared_ ? kNoPoint : j;
  }

 private:
  double farSquared_;
  ReachSearch reach_;
};

/// Fills the slopes at the points of one range.
void fillSlopes(const Samples& points,
                PointRange range,
                LoneSide loneSide,
                NeighbourSearch& search,
                Slopes& slopes) {
  for (int i = range.first; i <= range.last; ++i) {
    const int backward = search.find(i, -1, range.first - 1);
    const bool wanted = backward != kNoPoint || loneSide == LoneSide::kKept;
    const int forward = wanted ? search.find(i, 1, range.last + 1) : kNoPoint;
    slopes[i] = slopeAt(points, i, backward, forward, loneSide);
  }
}

double measured(const SQO_pointSlope& entry, CornerMeasure measure) {
  return measure == CornerMeasure::kMagnitude ? std::abs(entry.corner) : entry.corner;
}

/// A candidate that no greater one has followed yet.
struct Summit {
  double measure;
  double y;
  double minY;  ///< Least and greatest y from the candidate back to the summit before it, which is
  double maxY;  ///< left out.
};

/// Walks the candidates by `step` and marks those with a greater one before them in the window.
///
/// The summits passed have falling measures, so that the last one greater than a candidate is the
/// nearest one greater. It is in the window if no y from there on is too far away, and rounding is
/// monotone: the least and the greatest y decide for all of them. A measure that is not a number
/// can only be that of the last candidate.
void markOvertopped(const Slopes& candidates,
                    const Samples& points,
                    const PeakRule& rule,
                    int step,
                    std::vector<bool>& overtopped) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const int count = static_cast<int>(candidates.size());
  std::vector<Summit> summits;
  for (int k = step > 0 ? 0 : count - 1; k >= 0 && k < count; k += step) {
    const double y = points[candidates[k].pntIdx].pt3D.y;
    const double own = measured(candidates[k], rule.measure);
    double minY = std::min(kInfinity, y);
    double maxY = std::max(-kInfinity, y);
    while (!summits.empty() && !(summits.back().measure > own)) {
      minY = std::min(minY, summits.back().minY);
      maxY = std::max(maxY, summits.back().maxY);
      summits.pop_back();
    }
    if (!summits.empty()) {
      const double below = y - std::min(minY, summits.back().y);
      const double above = y - std::max(maxY, summits.back().y);
      if (!(below * below > rule.windowSquared) && !(above * above > rule.windowSquared)) {
        overtopped[k] = true;
      }
    }
    summits.push_back({own, y, minY, maxY});
  }
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

std::vector<PlanePoint> inProfile(const Samples& points) {
  std::vector<PlanePoint> profile;
  profile.reserve(points.size());
  for (const STesk3DPosition& point : points) {
    profile.push_back({point.pt3D.y, point.pt3D.z});
  }
  return profile;
}

Slopes slopePass(const Samples& points, const SlopeSearch& search) {
  return slopePass(points, {{0, static_cast<int>(points.size()) - 1}}, search);
}

Slopes slopePass(const Samples& points,
                 const std::vector<PointRange>& ranges,
                 const SlopeSearch& search) {
  Slopes slopes(points.size());
  NeighbourSearch neighbours(points, search);
  for (const PointRange& range : ranges) {
    fillSlopes(points, range, search.loneSide, neighbours, slopes);
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
  std::vector<bool> overtopped(candidates.size());
  markOvertopped(candidates, points, rule, 1, overtopped);
  markOvertopped(candidates, points, rule, -1, overtopped);
  Slopes peaks;
  for (std::size_t k = 0; k < candidates.size(); ++k) {
    if (!overtopped[k] && !(rule.cornerTh > measured(candidates[k], rule.measure))) {
      peaks.push_back(candidates[k]);
    }
  }
  return peaks;
}

}  // namespace scanline::detail
