#include "features/corner_stages.h"

#include <algorithm>
#include <cmath>

#include "features/reach_search.h"
#include "geometry/root_free.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// Slopes at point `i` towards its neighbours, either of which may be missing.
SQO_pointSlope slopeAt(const Samples& points, int i, int backward, int forward, LoneSide loneSide) {
  const bool both = backward != kNoPoint && forward != kNoPoint;
  const bool one = backward != kNoPoint || forward != kNoPoint;
  SQO_pointSlope slope = {};
  slope.pntIdx = kNoPoint;
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
  }
  return slope;
}

/// The search for neighbours in the y-z plane.
class NeighbourSearch {
 public:
  NeighbourSearch(const Samples& points, const SlopeSearch& search)
      : farSquared_(leastSquareReaching(search.farLimit)),
        reach_(points, std::fmin(leastSquareReaching(search.scale), farSquared_)) {}

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

/// The least and the greatest y of some candidates. Each has a slope, so its y is a number.
struct Extent {
  double min = std::numeric_limits<double>::infinity();
  double max = -std::numeric_limits<double>::infinity();

  void take(double y) {
    min = std::min(min, y);
    max = std::max(max, y);
  }
};

/// A candidate that no greater one has followed so far.
struct Summit {
  double measure;
  double y;
  Extent since;  ///< Extent from the summit before it, excluded, up to it.
};

/// Walks the candidates by `step` and marks those with a greater one before them in the window.
///
/// The measures of the summits fall, so the last one greater than a candidate is the nearest one
/// greater. It is in the window if no y from there on is too far away. Rounding is monotone, so the
/// least and the greatest y decide for all of them. A candidate below the threshold is greater than
/// none above it, and only its y counts. A measure that is not a number is that of the last
/// candidate, or there is none.
void markOvertopped(const Slopes& candidates,
                    const Samples& points,
                    const PeakRule& rule,
                    int step,
                    std::vector<bool>& overtopped) {
  const int count = static_cast<int>(candidates.size());
  const auto isOutside = [&rule](double dy) { return dy * dy > rule.windowSquared; };
  std::vector<Summit> summits;
  Extent since;
  for (int k = step > 0 ? 0 : count - 1; k >= 0 && k < count; k += step) {
    const double y = points[candidates[k].pntIdx].pt3D.y;
    const double own = measured(candidates[k], rule.measure);
    since.take(y);
    if (rule.cornerTh > own) {
      continue;
    }
    while (!summits.empty() && !(summits.back().measure > own)) {
      since.take(summits.back().since.min);
      since.take(summits.back().since.max);
      summits.pop_back();
    }
    if (!summits.empty()) {
      Extent upToGreater = since;
      upToGreater.take(summits.back().y);
      overtopped[k] =
          overtopped[k] || !(isOutside(y - upToGreater.min) || isOutside(y - upToGreater.max));
    }
    summits.push_back({own, y, since});
    since = {};
  }
}

}  // namespace

double chordAngle(const STesk3DPoint& from, const STesk3DPoint& to) {
  return std::atan((to.z - from.z) / std::abs(to.y - from.y)) * 180.0 / 3.141592653589793;
}

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
