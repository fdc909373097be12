// Finds glove arcs: maxima of z whose flanks turn by an angle within a given length of the profile.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/line_samples.h"
#include "features/neighbours.h"
#include "features/profile.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr std::size_t kMinSamples = 10;

/// The local maxima of z: points at which z has risen and does not rise further. On a plateau this
/// is the first point. The ends of the line count as maxima.
std::vector<int> findCrests(const detail::Profile& profile) {
  constexpr double kOutside = -std::numeric_limits<double>::infinity();
  std::vector<int> crests(profile.index.size());
  std::size_t found = 0;
  double before = kOutside;
  for (int i = 0; i < profile.count(); ++i) {
    const double z = profile.z[i];
    const double after = i + 1 < profile.count() ? profile.z[i + 1] : kOutside;
    // Written without a branch, which noise would make unpredictable.
    crests[found] = i;
    found += static_cast<std::size_t>((z > before) & !(after > z));
    before = z;
  }
  crests.resize(found);
  return crests;
}

/// The nearest higher crests of each crest.
struct HigherCrests {
  std::vector<int> before;  ///< One of equal or greater z, or `kNoPoint`.
  std::vector<int> after;   ///< One of greater z, or the number of points.
};

HigherCrests findHigherCrests(const detail::Profile& profile, const std::vector<int>& crests) {
  HigherCrests higher = {std::vector<int>(crests.size(), detail::kNoPoint),
                         std::vector<int>(crests.size(), profile.count())};
  std::vector<std::size_t> open;  // Without a higher one after them so far; their z never grows.
  open.reserve(crests.size());
  for (std::size_t k = 0; k < crests.size(); ++k) {
    while (!open.empty() && profile.z[crests[k]] > profile.z[crests[open.back()]]) {
      higher.after[open.back()] = crests[k];
      open.pop_back();
    }
    if (!open.empty()) {
      higher.before[k] = crests[open.back()];
    }
    open.push_back(k);
  }
  return higher;
}

/// The points with the greatest z up to and including both neighbours. Before them z must be
/// smaller, so the summit of a plateau is its first point. The greatest z up to a neighbour is that
/// of a crest or of the neighbour itself, so only these are compared.
std::vector<int> findSummits(const detail::Profile& profile, const detail::Neighbours& neighbours) {
  const std::vector<int> crests = findCrests(profile);
  const HigherCrests higher = findHigherCrests(profile, crests);
  std::vector<int> summits;
  for (std::size_t k = 0; k < crests.size(); ++k) {
    const double z = profile.z[crests[k]];
    const int before = neighbours.backward[crests[k]];
    const int after = neighbours.forward[crests[k]];
    const bool isHighestBefore = before == detail::kNoPoint
                                     ? higher.before[k] == detail::kNoPoint
                                     : before > higher.before[k] && z > profile.z[before];
    const bool isHighestAfter = after == detail::kNoPoint
                                    ? higher.after[k] == profile.count()
                                    : after < higher.after[k] && !(profile.z[after] > z);
    if (isHighestBefore && isHighestAfter) {
      summits.push_back(crests[k]);
    }
  }
  return summits;
}

/// What the flanks of summits are measured by, for each point.
struct Flanks {
  std::vector<double> angles;  ///< The forward angle; 0 if a neighbour is missing on either side.
  std::vector<double> steps;   ///< The distance to the next point; 0 at the last one.
};

Flanks measureFlanks(const detail::Profile& profile, const detail::Neighbours& neighbours) {
  Flanks flanks = {std::vector<double>(profile.index.size()),
                   std::vector<double>(profile.index.size())};
  for (int i = 0; i < profile.count(); ++i) {
    if (neighbours.backward[i] != detail::kNoPoint && neighbours.forward[i] != detail::kNoPoint) {
      flanks.angles[i] = detail::chordAngle(profile, i, neighbours.forward[i]);
    }
  }
  for (int i = 0; i + 1 < profile.count(); ++i) {
    const double dy = profile.y[i] - profile.y[i + 1];
    const double dz = profile.z[i] - profile.z[i + 1];
    flanks.steps[i] = std::sqrt(dy * dy + dz * dz);
  }
  return flanks;
}

/// The greatest forward angle before a summit, not below 0.
double angleBefore(const Flanks& flanks, int summit, double armLen) {
  double greatest = 0.0;
  double length = 0.0;
  for (int j = summit - 1; j >= 0; --j) {
    greatest = std::max(greatest, flanks.angles[j]);
    length += flanks.steps[j];
    if (length >= armLen) {
      break;
    }
  }
  return greatest;
}

/// The smallest forward angle from a summit on. The point at which the length is reached does not
/// count.
double angleAfter(const Flanks& flanks, int summit, double armLen) {
  double smallest = flanks.angles[summit];
  double length = flanks.steps[summit];
  for (std::size_t j = static_cast<std::size_t>(summit) + 1; j < flanks.angles.size(); ++j) {
    length += flanks.steps[j];
    if (length >= armLen) {
      break;
    }
    smallest = std::min(smallest, flanks.angles[j]);
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
  const detail::Profile profile =
      detail::collectProfile(lineData.data(), static_cast<int>(lineData.size()));
  const detail::Neighbours neighbours =
      detail::findNeighbours(profile, {{0, profile.count() - 1}}, gloveArcPara.scale);
  const Flanks flanks = measureFlanks(profile, neighbours);
  std::vector<SQO_basicFeature1D> arcs;
  for (const int summit : findSummits(profile, neighbours)) {
    const double turn = angleBefore(flanks, summit, gloveArcPara.armLen) -
                        angleAfter(flanks, summit, gloveArcPara.armLen);
    if (turn >= gloveArcPara.minTurnAngle) {
      arcs.push_back(
          detail::featureAt(lineData.data(), profile.index[summit], FEATURE_PEAK, lineIdx, turn));
    }
  }
  detail::append(arcs, line_gloveArcs);
}
