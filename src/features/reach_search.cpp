// Searches for the first point far enough from another one, in a hierarchy of blocks if none is
// near.
#include "features/reach_search.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <utility>

namespace scanline::detail {

namespace {

/// The smaller of two numbers; if one of them is NaN, the other one.
double lesser(double a, double b) {
  return a < b || std::isnan(b) ? a : b;
}
/// The greater of two numbers; if one of them is NaN, the other one.
double greater(double a, double b) {
  return a > b || std::isnan(b) ? a : b;
}

/// The greatest distance in one coordinate from `from` to the ends of an extent. Rounding is
/// monotone, so no point inside has a greater one. The NaN of infinity less infinity is dropped.
double greatestDistance(double from, double least, double greatest) {
  return greater(std::abs(least - from), std::abs(greatest - from));
}

}  // namespace

ReachSearch::Block ReachSearch::join(const Block& a, const Block& b) {
  return {lesser(a.minY, b.minY), greater(a.maxY, b.maxY), lesser(a.minZ, b.minZ),
          greater(a.maxZ, b.maxZ)};
}

// Points with a NaN are left out. A block is made from two of the level below.
void ReachSearch::buildBlocks() {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr Block kEmpty = {kNan, kNan, kNan, kNan};
  std::vector<Block> leaves(static_cast<std::size_t>((count_ + kLeaf - 1) / kLeaf), kEmpty);
  for (int i = 0; i < count_; ++i) {
    if (!std::isnan(y_[i]) && !std::isnan(z_[i])) {
      Block& leaf = leaves[i / kLeaf];
      leaf = join(leaf, {y_[i], y_[i], z_[i], z_[i]});
    }
  }
  std::vector<std::vector<Block>> levels = {std::move(leaves)};
  while (levels.back().size() > 1) {
    const std::vector<Block>& halves = levels.back();
    std::vector<Block> blocks;
    blocks.reserve((halves.size() + 1) / 2);
    for (std::size_t k = 0; k < halves.size(); k += 2) {
      blocks.push_back(join(halves[k], halves[std::min(k + 1, halves.size() - 1)]));
    }
    levels.push_back(std::move(blocks));
  }
  levels_ = std::move(levels);
}

/// Whether a block may have a point that is far enough away: true if it has one.
bool ReachSearch::mayReach(int i, const Block& block) const {
  const double dy = greatestDistance(y_[i], block.minY, block.maxY);
  const double dz = greatestDistance(z_[i], block.minZ, block.maxZ);
  return dy * dy + dz * dz >= squaredThreshold_;
}

// From the first border of a leaf on, `j` is the first point of a block that is not searched yet.
int ReachSearch::findInBlocks(int i, int j, int step, int end) {
  if (levels_.empty()) {
    buildBlocks();
  }
  const auto borderAt = [step](int point) { return step > 0 ? point : point + 1; };
  const int top = static_cast<int>(levels_.size()) - 1;
  int level = 0;
  while ((end - j) * step > 0) {
    const int pastBorder = borderAt(j) % kLeaf;
    if (pastBorder == 0 && !mayReach(i, levels_[level][(j / kLeaf) >> level])) {
      j += step * (kLeaf << level);
      // The nearer half of a greater block is followed by the other one.
      level += level < top && ((borderAt(j) / kLeaf) >> level) % 2 == 0 ? 1 : 0;
    } else if (level > 0) {
      --level;
    } else {
      const int rest = step > 0 || pastBorder == 0 ? kLeaf - pastBorder : pastBorder;
      const int leafEnd = rest < std::abs(end - j) ? j + step * rest : end;
      j = scan(i, j, step, leafEnd);
      if (j != leafEnd) {
        return j;
      }
    }
  }
  return kNoPoint;
}

}  // namespace scanline::detail
