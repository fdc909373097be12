#pragma once

#include <vector>

#include "features/profile.h"

/// The search for the neighbours of points, as far as they are nearby.
namespace scanline::detail {

/// The length of a profile up to each of its points.
class ArcLengths {
 public:
  explicit ArcLengths(const Profile& profile);

  [[nodiscard]] const double* data() const {
    return upTo_.data();
  }

  /// A length such that the squared distance of two points on a shorter arc is below
  /// `squaredThreshold`. NaN or negative, so that no arc is shorter, if there is none.
  [[nodiscard]] double arcReaching(double squaredThreshold) const;

 private:
  std::vector<double> upTo_;
};

/// Walks from all points of a range, each to the first point whose squared distance reaches a
/// threshold.
struct NeighbourWalk {
  PointRange range;  ///< Walks stay inside it.
  int step;          ///< 1 to greater indices, -1 to lower ones.
  double squaredThreshold;
  double leastArc;  ///< Points on a shorter arc need not be visited.
};

/// Takes the place of a neighbour if the walk was given up before point `next`.
constexpr int unfinishedAt(int next) {
  return kNoPoint - 1 - next;
}
constexpr bool isUnfinished(int neighbour) {
  return neighbour < kNoPoint;
}
/// The point where an unfinished walk continues.
constexpr int nextOf(int unfinished) {
  return kNoPoint - 1 - unfinished;
}

/// Writes the neighbour of each point of the range, `kNoPoint` if it has none. Returns whether all
/// walks were finished.
bool walkNearby(const Profile& profile,
                const ArcLengths& arcs,
                const NeighbourWalk& walk,
                int* neighbours);

}  // namespace scanline::detail
