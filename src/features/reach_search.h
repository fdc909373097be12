#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "features/profile.h"

namespace scanline::detail {

/// Finds the first point, in index order from a given one, that is far enough away in a plane.
class ReachSearch {
 public:
  /// A point is reached from another one if their squared distance is `squaredThreshold` or more,
  /// so never if a coordinate or the threshold is NaN. The coordinates must outlive the search.
  ReachSearch(const double* y, const double* z, int count, double squaredThreshold)
      : y_(y), z_(z), count_(count), squaredThreshold_(squaredThreshold) {}

  /// The first point reached from `i` by `step` (1 or -1) and before `end`, or `kNoPoint`.
  int find(int i, int step, int end) {
    const int nearEnd = std::abs(end - i) > kNearby ? i + step * kNearby : end;
    const int j = scan(i, i + step, step, nearEnd);
    return j != nearEnd ? j : findInBlocks(i, j, step, end);
  }

  /// The same from point `j` on. Skips whole blocks, for neighbours that are far away.
  int findInBlocks(int i, int j, int step, int end);

 private:
  /// How many points are visited one by one.
  static constexpr int kNearby = 64;
  /// How many points the smallest blocks have.
  static constexpr int kLeaf = 8;

  /// Extent of a block of points; NaN if none of them can be reached.
  struct Block {
    double minY;
    double maxY;
    double minZ;
    double maxZ;
  };

  /// The first point reached from `i` by `step` from `j` on and before `end`, or `end`.
  [[nodiscard]] int scan(int i, int j, int step, int end) const {
    for (; j != end; j += step) {
      const double dy = y_[j] - y_[i];
      const double dz = z_[j] - z_[i];
      if (dy * dy + dz * dz >= squaredThreshold_) {
        break;
      }
    }
    return j;
  }

  static Block join(const Block& a, const Block& b);
  void buildBlocks();
  [[nodiscard]] bool mayReach(int i, const Block& block) const;

  const double* y_;
  const double* z_;
  int count_;
  double squaredThreshold_;
  /// Level k holds the blocks of `kLeaf` * 2^k points. Empty until a search goes beyond the nearby
  /// points.
  std::vector<std::vector<Block>> levels_;
};

}  // namespace scanline::detail
