// Measures the slopes of a line to either side of its points.
#include "features/slopes.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "features/neighbour_kernel.h"
#include "features/reach_search.h"
#include "geometry/root_free.h"

namespace scanline::detail {
namespace {

/// Searches the neighbours of the points of a profile.
class NeighbourSearch {
 public:
  NeighbourSearch(const Profile& profile, const SlopeSearch& search)
      : profile_(profile),
        arcs_(profile),
        squaredThreshold_(squaredThreshold(search.scale)),
        leastArc_(arcs_.arcReaching(squaredThreshold_)),
        distant_(profile.y.data(), profile.z.data(), profile.size(), squaredThreshold_) {
    if (search.maxChord) {
      squaredMaxChord_ = squaredThreshold(*search.maxChord);
    }
  }

  /// Searches from all points of a range by `step` and inside the range.
  void run(const PointRange& range, int step, std::vector<int>& neighbours) {
    const NeighbourWalk walk = {range, step, squaredThreshold_, leastArc_};
    if (!findNeighbours(profile_, arcs_, walk, neighbours.data())) {
      finish(walk, neighbours);
    }
    if (squaredMaxChord_) {
      dropBeyond(*squaredMaxChord_, range, neighbours);
    }
  }

 private:
  /// Takes up the walks that were given up.
  void finish(const NeighbourWalk& walk, std::vector<int>& neighbours) {
    const auto [first, last] = walk.range;
    for (int i = first; i <= last; ++i) {
      if (isUnfinished(neighbours[i])) {
        neighbours[i] = distant_.findInBlocks(i, nextOf(neighbours[i]), walk.step,
                                              walk.step > 0 ? last + 1 : first - 1);
      }
    }
  }

  void dropBeyond(double squaredMaxChord, const PointRange& range, std::vector<int>& neighbours) {
    for (int i = range.first; i <= range.last; ++i) {
      const int j = neighbours[i] != kNoPoint ? neighbours[i] : i;
      const double dy = profile_.y[j] - profile_.y[i];
      const double dz = profile_.z[j] - profile_.z[i];
      if (dy * dy + dz * dz >= squaredMaxChord) {
        neighbours[i] = kNoPoint;
      }
    }
  }

  const Profile& profile_;
  ArcLengths arcs_;
  std::optional<double> squaredMaxChord_;
  double squaredThreshold_;
  double leastArc_;
  ReachSearch distant_;
};

/// The turn number of the angle between the chords from `b` to `i` and from `i` to `f`: their
/// scalar product and their cross product are its x and its y.
inline double turnAt(const Profile& profile, int b, int i, int f) {
  const double* const y = profile.y.data();
  const double* const z = profile.z.data();
  const double backwardY = std::abs(y[i] - y[b]);
  const double backwardZ = z[i] - z[b];
  const double forwardY = std::abs(y[f] - y[i]);
  const double forwardZ = z[f] - z[i];
  return turnNumber(backwardY * forwardY + backwardZ * forwardZ,
                    backwardZ * forwardY - backwardY * forwardZ, backwardZ);
}

}  // namespace

Slopes::Slopes(const Profile& profile,
               const std::vector<PointRange>& ranges,
               const SlopeSearch& search)
    : profile_(profile),
      backward_(static_cast<std::size_t>(profile.size())),
      forward_(backward_.size()),
      turns_(backward_.size()) {
  NeighbourSearch neighbours(profile, search);
  for (const PointRange& range : ranges) {
    neighbours.run(range, -1, backward_);
    neighbours.run(range, 1, forward_);
  }
  for (int i = 0; i < size(); ++i) {
    if (hasBoth(i)) {
      turns_[i] = turnAt(profile, backward_[i], i, forward_[i]);
    } else if (exist(i) && search.missing == MissingNeighbour::kLevel) {
      turns_[i] = 0.0;
    } else {
      backward_[i] = kNoPoint;
      forward_[i] = kNoPoint;
      turns_[i] = std::numeric_limits<double>::quiet_NaN();
    }
  }
}

}  // namespace scanline::detail
