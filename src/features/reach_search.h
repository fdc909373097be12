#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace scanline::detail {

/// No point of a list.
constexpr int kNoPoint = -1;

struct PlanePoint {
  double u;
  double v;
};

/// Finds, in index order from a point of a list, the first one that is far enough away.
class ReachSearch {
 public:
  /// A point is reached from another if the square of their distance is at least `leastSquare`.
  /// That is never the case where a coordinate or `leastSquare` is not a number.
  ReachSearch(std::vector<PlanePoint> points, double leastSquare)
      : points_(std::move(points)), leastSquare_(leastSquare) {}

  /// The square of the distance between two points.
  [[nodiscard]] double square(int i, int j) const {
    const double du = points_[j].u - points_[i].u;
    const double dv = points_[j].v - points_[i].v;
    return du * du + dv * dv;
  }

  /// The first point reached from `i` by `step` (1 or -1) and before `end`, or `kNoPoint`.
  int find(int i, int step, int end) {
    const int nearby = std::min(kNearby, std::abs(end - i) - 1);
    int j = i + step;
    for (const int nearEnd = j + step * nearby; j != nearEnd; j += step) {
      if (square(i, j) >= leastSquare_) {
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
    PlanePoint least;
    PlanePoint greatest;
  };

  void buildBlocks();
  [[nodiscard]] bool mayReach(const PlanePoint& from, const Block& block) const;
  int findInBlocks(int i, int j, int step, int end);

  std::vector<PlanePoint> points_;
  double leastSquare_;
  /// Level k holds the aligned blocks of 2^k points; empty until a search goes beyond the nearby
  /// points.
  std::vector<std::vector<Block>> levels_;
};

}  // namespace scanline::detail
