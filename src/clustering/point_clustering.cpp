// Splits points into clusters whose points are linked by short distances in the x-y plane.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

#include <scanline/clustering.h>
#include "geometry/squared_threshold.h"

namespace {

using Points = std::vector<STesk3DPosition>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The points that no cluster has taken yet, in order, with their coordinates packed for comparing
/// them. Points are identified by their index in the list of the caller.
class FreePoints {
 public:
  /// Two points are near each other if the square of their distance is below `nearSquared`.
  FreePoints(const Points& points, double nearSquared)
      : points_(points), nearSquared_(nearSquared) {
    index_.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      // The first point starts a cluster even if it is marked as taken.
      if (i == 0 || points[i].nPointIdx >= 0) {
        index_.push_back(i);
      }
    }
    pack();
  }

  /// Takes the first point, or returns false if none is left.
  bool takeFirst(std::vector<std::size_t>& taken) {
    while (first_ < index_.size() && index_[first_] == kTaken) {
      ++first_;
    }
    if (first_ == index_.size()) {
      return false;
    }
    take(first_, taken);
    return true;
  }

  /// Takes all points near `from`.
  void takeNear(const STesk3DPoint& from, std::vector<std::size_t>& taken) {
    if (std::isnan(from.x) || std::isnan(from.y)) {
      return;  // near no point, but mayHoldNear() would pass every block
    }
    if (takenCount_ > index_.size() / 4) {
      pack();
    }
    for (std::size_t block = first_ / kBlock * kBlock; block < x_.size(); block += kBlock) {
      if (!mayHoldNear(from, block)) {
        continue;
      }
      for (std::size_t k = block; k < block + kBlock; ++k) {
        if (squareTo(from, k) < nearSquared_) {
          take(k, taken);
        }
      }
    }
  }

 private:
  static constexpr std::size_t kBlock = 64;
  static constexpr std::size_t kTaken = std::numeric_limits<std::size_t>::max();

  [[nodiscard]] double squareTo(const STesk3DPoint& from, std::size_t k) const {
    const double dx = from.x - x_[k];
    const double dy = from.y - y_[k];
    return dx * dx + dy * dy;
  }

  /// Whether a block may hold a near point. Only a NaN causes false positives. Combines the sign
  /// bits of differences, since that compiles to vector instructions, where counting does not.
  [[nodiscard]] bool mayHoldNear(const STesk3DPoint& from, std::size_t block) const {
    std::uint64_t signs = 0;
    for (std::size_t k = block; k < block + kBlock; ++k) {
      const double beyond = squareTo(from, k) - nearSquared_;
      std::uint64_t bits = 0;
      std::memcpy(&bits, &beyond, sizeof bits);
      signs |= bits;
    }
    return signs >> 63U != 0;
  }

  /// Replaces a point that was taken by NaN, which is near no point, until the next pack().
  void take(std::size_t k, std::vector<std::size_t>& taken) {
    taken.push_back(index_[k]);
    index_[k] = kTaken;
    x_[k] = kNaN;
    ++takenCount_;
  }

  /// Drops the points that were taken, and fills up the last block with NaN.
  void pack() {
    std::size_t count = 0;
    for (const std::size_t i : index_) {
      if (i != kTaken) {
        index_[count++] = i;
      }
    }
    index_.resize(count);
    const std::size_t padded = (count + kBlock - 1) / kBlock * kBlock;
    x_.assign(padded, kNaN);
    y_.assign(padded, kNaN);
    for (std::size_t k = 0; k < count; ++k) {
      x_[k] = points_[index_[k]].pt3D.x;
      y_[k] = points_[index_[k]].pt3D.y;
    }
    first_ = 0;
    takenCount_ = 0;
  }

  const Points& points_;
  double nearSquared_;
  std::vector<std::size_t> index_;
  std::vector<double> x_;
  std::vector<double> y_;
  std::size_t first_ = 0;  // all points before this place are taken
  std::size_t takenCount_ = 0;
};

Points copyOf(const Points& points, const std::vector<std::size_t>& members) {
  Points cluster;
  cluster.reserve(members.size());
  for (const std::size_t i : members) {
    cluster.push_back(points[i]);
  }
  return cluster;
}

}  // namespace

void qo_pointClustering(std::vector<STesk3DPosition>& points,
                        double clusterDist,
                        std::vector<std::vector<STesk3DPosition>>& clusters) {
  FreePoints free(points, scanline::detail::squaredThreshold(clusterDist));
  std::vector<Points> found;
  std::vector<std::size_t> members;
  while (free.takeFirst(members)) {
    for (std::size_t i = 0; i < members.size(); ++i) {
      free.takeNear(points[members[i]].pt3D, members);
    }
    found.push_back(copyOf(points, members));
    members.clear();
  }
  clusters.insert(clusters.end(), std::make_move_iterator(found.begin()),
                  std::make_move_iterator(found.end()));
  points.clear();
}
