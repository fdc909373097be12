#include <algorithm>
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/reach_search.h"
#include "geometry/root_free.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr std::size_t kMinSamples = 10;

double distanceBetween(const STesk3DPosition& a, const STesk3DPosition& b) {
  const double dy = a.pt3D.y - b.pt3D.y;
  const double dz = a.pt3D.z - b.pt3D.z;
  return std::sqrt(dy * dy + dz * dz);
}

/// The nearest points that overtop a point: before it one of equal or greater z, which makes the
/// first point of a plateau its summit, and after it one of greater z.
struct Overtopping {
  std::vector<int> before;  ///< -1 if there is none.
  std::vector<int> after;   ///< The number of points if there is none.
};

Overtopping findOvertopping(const detail::Samples& points) {
  const int count = static_cast<int>(points.size());
  Overtopping nearest = {std::vector<int>(points.size(), -1),
                         std::vector<int>(points.size(), count)};
  std::vector<int> open;  // the points without a greater one after them so far; z falls or stays
  for (int i = 0; i < count; ++i) {
    while (!open.empty() && points[i].pt3D.z > points[open.back()].pt3D.z) {
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
std::vector<int> findSummits(const detail::Samples& points, double scale) {
  const int count = static_cast<int>(points.size());
  const Overtopping nearest = findOvertopping(points);
  detail::ReachSearch search(points, detail::leastSquareReaching(scale));
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

/// Fills the distance from each point to the next one.
void measureSteps(const detail::Samples& points, detail::Slopes& slopes) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    slopes[i].forwardStep = distanceBetween(points[i], points[i + 1]);
  }
}

/// The greatest forward angle before a summit, not below 0.
double angleBefore(const detail::Slopes& slopes, int summit, double armLen) {
  double greatest = 0.0;
  double length = 0.0;
  for (int j = summit - 1; j >= 0; --j) {
    greatest = std::max(greatest, slopes[j].forwardAngle);
    length += slopes[j].forwardStep;
    if (length >= armLen) {
      break;
    }
  }
  return greatest;
}

/// The smallest forward angle from a summit on. The point that reaches the length is left out.
double angleBehind(const detail::Slopes& slopes, int summit, double armLen) {
  double smallest = slopes[summit].forwardAngle;
  double length = slopes[summit].forwardStep;
  for (std::size_t j = static_cast<std::size_t>(summit) + 1; j < slopes.size(); ++j) {
    length += slopes[j].forwardStep;
    if (length >= armLen) {
      break;
    }
    smallest = std::min(smallest, slopes[j].forwardAngle);
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
  const detail::Samples points =
      detail::collectValidPoints(lineData.data(), static_cast<int>(lineData.size()));
  detail::Slopes slopes =
      detail::slopePass(points, detail::SlopeSearch::unlimited(gloveArcPara.scale));
  measureSteps(points, slopes);
  std::vector<SQO_basicFeature1D> arcs;
  for (const int summit : findSummits(points, gloveArcPara.scale)) {
    const double turn = angleBefore(slopes, summit, gloveArcPara.armLen) -
                        angleBehind(slopes, summit, gloveArcPara.armLen);
    if (turn >= gloveArcPara.minTurnAngle) {
      arcs.push_back(
          {FEATURE_PEAK, {lineIdx, points[summit].nPointIdx}, points[summit].pt3D, turn});
    }
  }
  detail::append(arcs, line_gloveArcs);
}
