// Finds the neighbours of the points of a profile.
#include "features/neighbours.h"

#include <cstddef>

#include "features/neighbour_kernel.h"
#include "features/reach_search.h"
#include "geometry/squared_threshold.h"

namespace scanline::detail {
namespace {

/// Searches the neighbours on one side, range by range.
class NeighbourSearch {
 public:
  NeighbourSearch(const Profile& profile, double scale)
      : profile_(profile),
        arcs_(profile),
        squaredThreshold_(squaredThreshold(scale)),
        leastArc_(arcs_.arcReaching(squaredThreshold_)),
        distant_(profile.y.data(), profile.z.data(), profile.count(), squaredThreshold_) {}

  /// Searches inside a range from all of its points, in the direction of `step`.
  void run(const PointRange& range, int step, std::vector<int>& neighbours) {
    const NeighbourWalk walk = {range, step, squaredThreshold_, leastArc_};
    if (!walkNearby(profile_, arcs_, walk, neighbours.data())) {
      walkOn(walk, neighbours);
    }
  }

 private:
  /// Continues the walks that were given up.
  void walkOn(const NeighbourWalk& walk, std::vector<int>& neighbours) {
    const auto [first, last] = walk.range;
    for (int i = first; i <= last; ++i) {
      if (isUnfinished(neighbours[i])) {
        neighbours[i] = distant_.findInBlocks(i, nextOf(neighbours[i]), walk.step,
                                              walk.step > 0 ? last + 1 : first - 1);
      }
    }
  }

  const Profile& profile_;
  ArcLengths arcs_;
  double squaredThreshold_;
  double leastArc_;
  ReachSearch distant_;
};

/// Removes the neighbours at a distance of `maxChord` or more.
void dropDistant(const Profile& profile, double maxChord, std::vector<int>& neighbours) {
  const double squaredMaxChord = squaredThreshold(maxChord);
  for (int i = 0; i < profile.count(); ++i) {
    const int j = neighbours[i] != kNoPoint ? neighbours[i] : i;
    const double dy = profile.y[j] - profile.y[i];
    const double dz = profile.z[j] - profile.z[i];
    if (dy * dy + dz * dz >= squaredMaxChord) {
      neighbours[i] = kNoPoint;
    }
  }
}

}  // namespace

Neighbours findNeighbours(const Profile& profile,
                          const std::vector<PointRange>& ranges,
                          double scale,
                          std::optional<double> maxChord) {
  const auto count = static_cast<std::size_t>(profile.count());
  Neighbours neighbours = {std::vector<int>(count), std::vector<int>(count)};
  NeighbourSearch search(profile, scale);
  for (const PointRange& range : ranges) {
    search.run(range, -1, neighbours.backward);
    search.run(range, 1, neighbours.forward);
  }
  if (maxChord) {
    dropDistant(profile, *maxChord, neighbours.backward);
    dropDistant(profile, *maxChord, neighbours.forward);
  }
  return neighbours;
}

}  // namespace scanline::detail
