#pragma once

#include <vector>

#include "features/profile.h"

/// The search for neighbours near each point of a profile.
namespace scanline::detail {

/// The length of a line up to each of its points.
class ArcLengths {
 public:
  explicit ArcLengths(const Profile& profile);

  [[nodiscard]] const double* data() const {
    return upTo_.data();
  }

  /// Points on a shorter arc than this are closer to each other than the root of
  /// `squaredThreshold`. NaN or negative, so that no arc is shorter, if there is no such length.
  [[nodiscard]] double arcReaching(double squaredThreshold) const;

 private:
  std::vector<double> upTo_;
};

/// The walks from all points of a range, each to the first point whose squared distance reaches a
/// threshold.
struct NeighbourWalk {
  PointRange range;  ///< Walks start and end here.
  int step;          ///< 1 to greater indices, -1 to lower ones.
  double squaredThreshold;
  double leastArc;  ///< Points on a shorter arc need not be looked at.
};

/// Stands for a neighbour where a walk was given up before it came to point `next`.
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

/// Writes the neighbour of each point of the range, `kNoPoint` if it has none. Returns whether no
/// walk was given up.
bool walkNearby(const Profile& profile,
                const ArcLengths& arcs,
                const NeighbourWalk& walk,
                int* neighbours);

}  // namespace scanline::detail
