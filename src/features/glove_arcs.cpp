// Finds the summits of a line whose flanks turn strongly within a given length of arc.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/reach_search.h"
#include "geometry/root_free.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr std::size_t kMinSamples = 10;

int sizeOf(const detail::Samples& points) {
  return static_cast<int>(points.size());
}

/// The first point after each one that is at least the scale away, or `kNoPoint`.
std::vector<int> forwardNeighbours(const detail::Samples& points, detail::ReachSearch& search) {
  std::vector<int> neighbours(points.size());
  for (int i = 0; i < sizeOf(points); ++i) {
    neighbours[i] = search.find(i, 1, sizeOf(points));
  }
  return neighbours;
}

/// The angle from each point to its forward neighbour, 0 where a point has no neighbour on one
/// side.
std::vector<double> forwardAngles(const detail::Samples& points,
                                  const std::vector<int>& neighbours,
                                  detail::ReachSearch& search) {
  std::vector<double> angles(points.size());
  for (int i = 1; i < sizeOf(points); ++i) {
    // It does not matter which point is the backward neighbour, and mostly the first is far enough.
    if (neighbours[i] != detail::kNoPoint &&
        (search.isReached(i, 0) || search.find(i, -1, -1) != detail::kNoPoint)) {
      angles[i] = detail::chordAngle(points[i].pt3D, points[neighbours[i]].pt3D);
    }
  }
  return angles;
}

/// The distance from each point to the next one, 0 at the last.
std::vector<double> forwardSteps(const detail::Samples& points) {
  std::vector<double> steps(points.size());
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const double dy = points[i].pt3D.y - points[i + 1].pt3D.y;
    const double dz = points[i].pt3D.z - points[i + 1].pt3D.z;
    steps[i] = std::sqrt(dy * dy + dz * dz);
  }
  return steps;
}

/// The local maxima of z: points that z rises to and does not rise from. On a plateau this is the
/// first point; the ends of the line count as maxima.
std::vector<int> findCrests(const detail::Samples& points) {
  constexpr double kOutside = -std::numeric_limits<double>::infinity();
  std::vector<int> crests(points.size());
  std::size_t found = 0;
  double before = kOutside;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double z = points[i].pt3D.z;
    const double after = i + 1 < points.size() ? points[i + 1].pt3D.z : kOutside;
    // Noise makes branches here unpredictable.
    crests[found] = static_cast<int>(i);
    found += static_cast<std::size_t>(z > before) & static_cast<std::size_t>(!(after > z));
    before = z;
  }
  crests.resize(found);
  return crests;
}

/// The crests that no point overtops up to the nearest points at least the scale away: before it
/// one of equal or greater z, which makes the first point of a plateau its summit, and after it one
/// of greater z.
///
/// The greatest z of such a stretch belongs to a crest or to the neighbour at its end, so only
/// these are compared.
class SummitSearch {
 public:
  SummitSearch(const detail::Samples& points,
               const std::vector<int>& neighbours,
               detail::ReachSearch& search)
      : points_(points),
        neighbours_(neighbours),
        search_(search),
        crests_(findCrests(points)),
        higherBefore_(crests_.size(), detail::kNoPoint),
        higherAfter_(crests_.size(), sizeOf(points)) {
    findHigherCrests();
  }

  std::vector<int> find() {
    std::vector<int> summits;
    for (std::size_t k = 0; k < crests_.size(); ++k) {
      if (isHighestAfter(k) && isHighestBefore(k)) {
        summits.push_back(crests_[k]);
      }
    }
    return summits;
  }

 private:
  [[nodiscard]] double zOf(int point) const {
    return points_[point].pt3D.z;
  }

  void findHigherCrests() {
    std::vector<std::size_t> open;  // without a higher one after them so far; z falls or stays
    open.reserve(crests_.size());
    for (std::size_t k = 0; k < crests_.size(); ++k) {
      while (!open.empty() && zOf(crests_[k]) > zOf(crests_[open.back()])) {
        higherAfter_[open.back()] = crests_[k];
        open.pop_back();
      }
      if (!open.empty()) {
        higherBefore_[k] = crests_[open.back()];
      }
      open.push_back(k);
    }
  }

  [[nodiscard]] bool isHighestAfter(std::size_t k) const {
    const int neighbour = neighbours_[crests_[k]];
    if (neighbour == detail::kNoPoint) {
      return higherAfter_[k] == sizeOf(points_);
    }
    return neighbour < higherAfter_[k] && !(zOf(neighbour) > zOf(crests_[k]));
  }

  bool isHighestBefore(std::size_t k) {
    const int neighbour = search_.find(crests_[k], -1, higherBefore_[k]);
    if (neighbour == detail::kNoPoint) {
      return higherBefore_[k] == detail::kNoPoint;
    }
    return zOf(crests_[k]) > zOf(neighbour);
  }

  const detail::Samples& points_;
  const std::vector<int>& neighbours_;
  detail::ReachSearch& search_;
  std::vector<int> crests_;
  std::vector<int> higherBefore_;  ///< Nearest crest of equal or greater z, or `kNoPoint`.
  std::vector<int> higherAfter_;   ///< Nearest crest of greater z, or the number of points.
};

/// The greatest forward angle before a summit, not below 0.
double angleBefore(const std::vector<double>& angles,
                   const std::vector<double>& steps,
                   int summit,
                   double armLen) {
  double greatest = 0.0;
  double length = 0.0;
  for (int j = summit - 1; j >= 0; --j) {
    greatest = std::max(greatest, angles[j]);
    length += steps[j];
    if (length >= armLen) {
      break;
    }
  }
  return greatest;
}

/// The smallest forward angle from a summit on. The point that reaches the length is left out.
double angleAfter(const std::vector<double>& angles,
                  const std::vector<double>& steps,
                  int summit,
                  double armLen) {
  double smallest = angles[summit];
  double length = steps[summit];
  for (std::size_t j = static_cast<std::size_t>(summit) + 1; j < angles.size(); ++j) {
    length += steps[j];
    if (length >= armLen) {
      break;
    }
    smallest = std::min(smallest, angles[j]);
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
  detail::ReachSearch search(points, detail::leastSquareReaching(gloveArcPara.scale));
  const std::vector<int> neighbours = forwardNeighbours(points, search);
  const std::vector<double> angles = forwardAngles(points, neighbours, search);
  const std::vector<double> steps = forwardSteps(points);
  std::vector<SQO_basicFeature1D> arcs;
  for (const int summit : SummitSearch(points, neighbours, search).find()) {
    const double turn = angleBefore(angles, steps, summit, gloveArcPara.armLen) -
                        angleAfter(angles, steps, summit, gloveArcPara.armLen);
    if (turn >= gloveArcPara.minTurnAngle) {
      arcs.push_back(
          {FEATURE_PEAK, {lineIdx, points[summit].nPointIdx}, points[summit].pt3D, turn});
    }
  }
  detail::append(arcs, line_gloveArcs);
}
