#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// No point of a list.
constexpr int kNoPoint = -1;

/// Finds, in index order from a point of a list, the first one that is far enough away in the y-z
/// plane.
class ReachSearch {
 public:
  /// A point is reached from another if the square of their distance is at least `leastSquare`.
  /// That is never the case where a coordinate or `leastSquare` is not a number.
  ReachSearch(const std::vector<STesk3DPosition>& points, double leastSquare)
      : points_(points), leastSquare_(leastSquare) {}

  /// The square of the distance between two points.
  [[nodiscard]] double square(int i, int j) const {
    return square(points_[i].pt3D, points_[j].pt3D);
  }

  /// Whether point `j` is reached from point `i`.
  [[nodiscard]] bool isReached(int i, int j) const {
    return square(i, j) >= leastSquare_;
  }

  /// The first point reached from `i` by `step` (1 or -1) and before `end`, or `kNoPoint`.
  int find(int i, int step, int end) {
    const int nearby = std::min(kNearby, std::abs(end - i) - 1);
    const STesk3DPoint from = points_[i].pt3D;
    int j = i + step;
    for (const int nearEnd = j + step * nearby; j != nearEnd; j += step) {
      if (square(from, points_[j].pt3D) >= leastSquare_) {
        return j;
      }
    }
    return j == end ? kNoPoint : findInBlocks(i, j, step, end);
  }

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

  static double square(const STesk3DPoint& from, const STesk3DPoint& to) {
    const double dy = to.y - from.y;
    const double dz = to.z - from.z;
    return dy * dy + dz * dz;
  }

  void buildBlocks();
  [[nodiscard]] bool mayReach(const STesk3DPoint& from, const Block& block) const;
  int findInBlocks(int i, int j, int step, int end);

  const std::vector<STesk3DPosition>& points_;
  double leastSquare_;
  /// Level k holds the aligned blocks of 2^k points; empty until a search goes beyond the nearby
  /// points.
  std::vector<std::vector<Block>> levels_;
};

}  // namespace scanline::detail
