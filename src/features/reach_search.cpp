// Searches for points far from another one, in a hierarchy of blocks once they are not nearby.
#include "features/reach_search.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace scanline::detail {

namespace {

/// The lesser of two numbers, or the other one if one of them is NaN.
double lesser(double a, double b) {
  return a < b || std::isnan(b) ? a : b;
}
/// The greater of two numbers, or the other one if one of them is NaN.
double greater(double a, double b) {
  return a > b || std::isnan(b) ? a : b;
}

/// The greatest distance along one coordinate from `from` into an extent. Rounding is monotone, so
/// no point inside has a greater one. The NaN of infinity less infinity is dropped.
double greatestDistance(double from, double least, double greatest) {
  return greater(std::abs(least - from), std::abs(greatest - from));
}

}  // namespace

// The blocks of a level are made from pairs of the level below. Blocks without a point that can be
// reached are dropped.
void ReachSearch::buildBlocks() {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  std::vector<Block> level;
  level.reserve(static_cast<std::size_t>(count_));
  for (int i = 0; i < count_; ++i) {
    const double y = y_[i];
    const double z = z_[i];
    const bool isPlace = !std::isnan(y) && !std::isnan(z);
    level.push_back(isPlace ? Block{y, y, z, z} : Block{kNan, kNan, kNan, kNan});
  }
  std::vector<std::vector<Block>> levels = {std::move(level)};
  while (levels.back().size() > 1) {
    const std::vector<Block>& halves = levels.back();
    std::vector<Block> blocks;
    blocks.reserve((halves.size() + 1) / 2);
    for (std::size_t k = 0; k < halves.size(); k += 2) {
      const Block& a = halves[k];
      const Block& b = halves[std::min(k + 1, halves.size() - 1)];
      blocks.push_back({lesser(a.minY, b.minY), greater(a.maxY, b.maxY), lesser(a.minZ, b.minZ),
                        greater(a.maxZ, b.maxZ)});
    }
    levels.push_back(std::move(blocks));
  }
  levels_ = std::move(levels);
}

/// Decides exactly on a block of one point, and never passes over a point that is reached.
bool ReachSearch::mayReach(int i, const Block& block) const {
  const double dy = greatestDistance(y_[i], block.minY, block.maxY);
  const double dz = greatestDistance(z_[i], block.minZ, block.maxZ);
  return dy * dy + dz * dz >= squaredThreshold_;
}

// Point `j` is always the nearest one of the block that it stands for.
int ReachSearch::findInBlocks(int i, int j, int step, int end) {
  if (levels_.empty()) {
    buildBlocks();
  }
  const int top = static_cast<int>(levels_.size()) - 1;
  int level = 0;
  while ((end - j) * step > 0) {
    if (mayReach(i, levels_[level][j >> level])) {
      if (level == 0) {
        return j;
      }
      --level;
      continue;
    }
    j += step * (1 << level);
    // The nearer half of a greater block is followed by the other one.
    const int border = step > 0 ? j : j + 1;
    if (level < top && (border >> level) % 2 == 0) {
      ++level;
    }
  }
  return kNoPoint;
}

}  // namespace scanline::detail
