#pragma once

#include <vector>

#include "features/valid_points.h"

/// Finds for each point of a profile the nearest one by index that is far enough away.
namespace scanline::detail {

/// The length along a line up to each of its points.
struct ArcLengths {
  std::vector<double> upTo;

  explicit ArcLengths(const Profile& profile);

  /// An arc that is shorter than this joins points whose distance does not reach the root of
  /// `squaredThreshold`. NaN, which no arc is shorter than, if there is no such length.
  [[nodiscard]] double arcReaching(double squaredThreshold) const;
};

/// Stands for a neighbour that is neither found nor excluded before point `next` of a walk.
constexpr int unfinishedAt(int next) {
  return kNoPoint - 1 - next;
}
constexpr bool isUnfinished(int neighbour) {
  return neighbour < kNoPoint;
}
constexpr int nextOf(int unfinished) {
  return kNoPoint - 1 - unfinished;
}

/// What a walk from one point to the next searches for.
struct NeighbourWalk {
  PointRange range;         ///< The points that are walked from and to.
  int step;                 ///< 1 for neighbours of greater index, -1 for those of lower index.
  double squaredThreshold;  ///< The least square of the distance of a neighbour.
  double leastArc;          ///< No neighbour is closer than this along the line.
};

/// Writes for each point of the range the index of its neighbour, `kNoPoint` if it has none, or
/// where its walk was given up. Returns whether all walks were finished.
bool findNeighbours(const Profile& profile,
                    const ArcLengths& arcs,
                    const NeighbourWalk& walk,
                    int* neighbours);

}  // namespace scanline::detail
