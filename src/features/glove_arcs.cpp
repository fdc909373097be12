#include <algorithm>
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/corner_stages.h"

namespace detail = scanline::detail;

namespace {

constexpr std::size_t kMinSamples = 10;

double distanceBetween(const STesk3DPosition& a, const STesk3DPosition& b) {
  const double dy = a.pt3D.y - b.pt3D.y;
  const double dz = a.pt3D.z - b.pt3D.z;
  return std::sqrt(dy * dy + dz * dz);
}

/// Looks from point `i` by `step`, up to the nearest point at least `scale` away, for one that
/// `overtops` it.
template <typename Overtops>
bool isOvertopped(const detail::Samples& points, int i, int step, double scale, Overtops overtops) {
  const int count = static_cast<int>(points.size());
  for (int j = i + step; j >= 0 && j < count; j += step) {
    if (overtops(points[j].pt3D.z, points[i].pt3D.z)) {
      return true;
    }
    if (distanceBetween(points[i], points[j]) >= scale) {
      return false;
    }
  }
  return false;
}

/// An equal z overtops only from before, so that the first sample of a plateau is its summit.
bool isSummit(const detail::Samples& points, int i, double scale) {
  return !isOvertopped(points, i, -1, scale, [](double z, double own) { return z >= own; }) &&
         !isOvertopped(points, i, 1, scale, [](double z, double own) { return z > own; });
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
  for (int i = 0; i < static_cast<int>(points.size()); ++i) {
    if (!isSummit(points, i, gloveArcPara.scale)) {
      continue;
    }
    const double turn =
        angleBefore(slopes, i, gloveArcPara.armLen) - angleBehind(slopes, i, gloveArcPara.armLen);
    if (turn >= gloveArcPara.minTurnAngle) {
      line_gloveArcs.push_back(
          {FEATURE_PEAK, {lineIdx, points[i].nPointIdx}, points[i].pt3D, turn});
    }
  }
}
