#include <algorithm>
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/reach_search.h"
#include "features/slopes.h"
#include "features/valid_profile.h"
#include "geometry/root_free.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr std::size_t kMinSamples = 10;

/// The nearest points that overtop a point: before it one of equal or greater z, which makes the
/// first point of a plateau its summit, and after it one of greater z.
struct Overtopping {
  std::vector<int> before;  ///< -1 if there is none.
  std::vector<int> after;   ///< The number of points if there is none.
};

Overtopping findOvertopping(const detail::ValidProfile& points) {
  const int count = points.count();
  Overtopping nearest = {std::vector<int>(points.index.size(), -1),
                         std::vector<int>(points.index.size(), count)};
  std::vector<int> open;  // the points without a greater one after them so far; z falls or stays
  for (int i = 0; i < count; ++i) {
    while (!open.empty() && points.z[i] > points.z[open.back()]) {
      nearest.after[open.back()] = i;
      open.pop_back();
    }
    if (!open.empty()) {
      nearest.before[i] = open.back();
    }
    open.push_back(i);
  }
  return nearest;
}

/// The points that nothing overtops up to the nearest points at least `scale` away.
std::vector<int> findSummits(const detail::ValidProfile& points, double scale) {
  const int count = points.count();
  const Overtopping nearest = findOvertopping(points);
  detail::ReachSearch search(points.y.data(), points.z.data(), count,
                             detail::squaredThreshold(scale));
  std::vector<int> summits;
  for (int i = 0; i < count; ++i) {
    const int before = nearest.before[i];
    const int after = nearest.after[i];
    if ((before < 0 || search.find(i, -1, before) != detail::kNoPoint) &&
        (after == count || search.find(i, 1, after) != detail::kNoPoint)) {
      summits.push_back(i);
    }
  }
  return summits;
}

/// What the arms of a summit are made of: for each point the forward angle and the distance to the
/// next point.
struct Chain {
  std::vector<double> angles;
  std::vector<double> steps;
};

Chain chainOf(const detail::ValidProfile& points, double scale) {
  const detail::Slopes slopes(points, detail::SlopeSearch::unlimited(scale));
  Chain chain = {std::vector<double>(points.index.size()),
                 std::vector<double>(points.index.size())};
  for (int i = 0; i < points.count(); ++i) {
    chain.angles[i] = slopes.forwardAngle(i);
    if (i + 1 < points.count()) {
      const double dy = points.y[i] - points.y[i + 1];
      const double dz = points.z[i] - points.z[i + 1];
      chain.steps[i] = std::sqrt(dy * dy + dz * dz);
    }
  }
  return chain;
}

/// The greatest forward angle before a summit, not below 0.
double angleBefore(const Chain& chain, int summit, double armLen) {
  double greatest = 0.0;
  double length = 0.0;
  for (int j = summit - 1; j >= 0; --j) {
    greatest = std::max(greatest, chain.angles[j]);
    length += chain.steps[j];
    if (length >= armLen) {
      break;
    }
  }
  return greatest;
}

/// The smallest forward angle from a summit on. The point that reaches the length is left out.
double angleBehind(const Chain& chain, int summit, double armLen) {
  double smallest = chain.angles[summit];
  double length = chain.steps[summit];
  for (std::size_t j = static_cast<std::size_t>(summit) + 1; j < chain.angles.size(); ++j) {
    length += chain.steps[j];
    if (length >= armLen) {
      break;
    }
    smallest = std::min(smallest, chain.angles[j]);
  }
  return smallest;
}

}  // namespace

void ju_getLineGloveArcs(std::vector<STesk3DPosition>& lineData,
                         int lineIdx,
                         SQO_gloveArcParam gloveArcPara,
                         std::vector<SQO_basicFeature1D>& line_gloveArcs) {
  if (lineData.size() < kMinSamples) {
    return;
  }
  const detail::ValidProfile points =
      detail::collectProfile(lineData.data(), static_cast<int>(lineData.size()));
  const Chain chain = chainOf(points, gloveArcPara.scale);
  std::vector<SQO_basicFeature1D> arcs;
  for (const int summit : findSummits(points, gloveArcPara.scale)) {
    const double turn = angleBefore(chain, summit, gloveArcPara.armLen) -
                        angleBehind(chain, summit, gloveArcPara.armLen);
    if (turn >= gloveArcPara.minTurnAngle) {
      const int sample = points.index[summit];
      arcs.push_back({FEATURE_PEAK, {lineIdx, sample}, lineData[sample].pt3D, turn});
    }
  }
  detail::append(arcs, line_gloveArcs);
}
