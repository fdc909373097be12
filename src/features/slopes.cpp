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
        squaredMaxChord_(search.maxChord ? squaredThreshold(*search.maxChord) : kNaN),
        squaredThreshold_(std::fmin(squaredThreshold(search.scale), squaredMaxChord_)),
        leastArc_(arcs_.arcReaching(squaredThreshold_)),
        distant_(profile.y.data(), profile.z.data(), profile.size(), squaredThreshold_) {}

  /// Searches from all points of a range by `step` and inside the range.
  void run(const PointRange& range, int step, std::vector<int>& neighbours) {
    findNeighbours(profile_, arcs_, {range, step, squaredThreshold_, leastArc_}, neighbours.data());
    for (int i = range.first; i <= range.last; ++i) {
      if (isUnfinished(neighbours[i])) {
        neighbours[i] = distant_.findInBlocks(i, nextOf(neighbours[i]), step,
                                              step > 0 ? range.last + 1 : range.first - 1);
      }
      if (neighbours[i] != kNoPoint && squareBetween(i, neighbours[i]) >= squaredMaxChord_) {
        neighbours[i] = kNoPoint;
      }
    }
  }

 private:
  static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

  [[nodiscard]] double squareBetween(int i, int j) const {
    const double dy = profile_.y[j] - profile_.y[i];
    const double dz = profile_.z[j] - profile_.z[i];
    return dy * dy + dz * dz;
  }

  const Profile& profile_;
  ArcLengths arcs_;
  double squaredMaxChord_;  ///< NaN, which no square reaches, without a limit.
  double squaredThreshold_;
  double leastArc_;
  ReachSearch distant_;
};

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
    if (!hasBoth(i) && search.missing == MissingNeighbour::kNoSlopes) {
      backward_[i] = kNoPoint;
      forward_[i] = kNoPoint;
    }
    turns_[i] = turnAt(i);
  }
}

/// The turn number of the angle between the two chords: the scalar product of the chords and the
/// cross product are its x and its y.
double Slopes::turnAt(int i) const {
  if (!hasBoth(i)) {
    return exist(i) ? 0.0 : std::numeric_limits<double>::quiet_NaN();
  }
  const double* const y = profile_.y.data();
  const double* const z = profile_.z.data();
  const double backwardY = std::abs(y[i] - y[backward_[i]]);
  const double backwardZ = z[i] - z[backward_[i]];
  const double forwardY = std::abs(y[forward_[i]] - y[i]);
  const double forwardZ = z[forward_[i]] - z[i];
  return turnNumber(backwardY * forwardY + backwardZ * forwardZ,
                    backwardZ * forwardY - backwardY * forwardZ, backwardZ);
}

}  // namespace scanline::detail
