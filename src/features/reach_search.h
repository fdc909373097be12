#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "features/valid_profile.h"

namespace scanline::detail {

/// Finds, in index order from a point of a list, the first one that is far enough away in a plane.
class ReachSearch {
 public:
  /// A point is reached from another if the square of their distance is at least
  /// `squaredThreshold`. That is never the case where a coordinate or the threshold is not a
  /// number. The coordinates must outlive the search.
  ReachSearch(const double* y, const double* z, int count, double squaredThreshold)
      : y_(y), z_(z), count_(count), squaredThreshold_(squaredThreshold) {}

  /// The first point reached from `i` by `step` (1 or -1) and before `end`, or `kNoPoint`.
  int find(int i, int step, int end) {
    const int nearby = std::min(kNearby, std::abs(end - i) - 1);
    int j = i + step;
    for (const int nearEnd = j + step * nearby; j != nearEnd; j += step) {
      const double dy = y_[j] - y_[i];
      const double dz = z_[j] - z_[i];
      if (dy * dy + dz * dz >= squaredThreshold_) {
        return j;
      }
    }
    return j == end ? kNoPoint : findInBlocks(i, j, step, end);
  }

  /// The first point reached from `i` by `step` from `j` on and before `end`, or `kNoPoint`. For
  /// points that are hardly nearby: most blocks are passed over at once.
  int findInBlocks(int i, int j, int step, int end);

 private:
  /// How many points are looked at one by one.
  static constexpr int kNearby = 64;

  /// Extents of a block of points; not a number if no point of it can be reached.
  struct Block {
    double minY;
    double maxY;
    double minZ;
    double maxZ;
  };

  void buildBlocks();
  [[nodiscard]] bool mayReach(int i, const Block& block) const;

  const double* y_;
  const double* z_;
  int count_;
  double squaredThreshold_;
  /// Level k holds the aligned blocks of 2^k points; empty until a search goes beyond the nearby
  /// points.
  std::vector<std::vector<Block>> levels_;
};

}  // namespace scanline::detail
