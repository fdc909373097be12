#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace scanline::detail {

/// What a block covers of one axis.
struct BlockSpan {
  int start;
  std::int64_t end;  ///< One past the block's last position, wherever the data ends.
  int limit;         ///< The same, within the data.

  /// Where the data cuts a block off, it has no border.
  [[nodiscard]] bool isBorder(int position) const {
    return position == start || position == end - 1;
  }
};

/// The blocks along one axis: block i starts at i half strides.
class BlockAxis {
 public:
  BlockAxis(int size, int count, int stride, int extent)
      : size_(size), stride_(stride), extent_(extent) {
    const std::int64_t startInData = (2 * std::int64_t{size} + stride - 1) / stride;
    count_ = static_cast<int>(std::min<std::int64_t>(count, startInData));
  }

  [[nodiscard]] int size() const {
    return size_;
  }
  /// Number of blocks. Those that start past the data are left out, for they hold nothing.
  [[nodiscard]] int count() const {
    return count_;
  }
  /// One past the last position that is in any block.
  [[nodiscard]] int reach() const {
    return count_ > 0 ? block(count_ - 1).limit : 0;
  }
  [[nodiscard]] BlockSpan block(int i) const {
    const auto start = static_cast<int>(std::int64_t{i} * stride_ / 2);
    const std::int64_t end = std::int64_t{start} + extent_;
    return {start, end, static_cast<int>(std::min<std::int64_t>(end, size_))};
  }

 private:
  int size_;
  int stride_;
  int extent_;
  int count_;
};

/// Number of half blocks that it takes to cover an axis.
inline int halfBlocks(int size, int blockSize) {
  const int half = blockSize / 2;
  return size / half + (size % half > 0 ? 1 : 0);
}

/// The best position of a block.
struct BlockCandidate {
  int outer;
  int inner;
  double value;
};

/**
 * Walks overlapping blocks and calls `report(candidate)` once for each position that is the best of
 * a block but not on the border of that block.
 *
 * `search.enterBand(outer)` opens a row of blocks, `search.best(outer, inner)` looks into one.
 */
template <typename Search, typename Report>
void walkBlocks(const BlockAxis& outerAxis,
                const BlockAxis& innerAxis,
                Search search,
                Report report) {
  std::vector<bool> reported(static_cast<std::size_t>(outerAxis.size()) * innerAxis.size());
  for (int k = 0; k < outerAxis.count(); ++k) {
    const BlockSpan outer = outerAxis.block(k);
    search.enterBand(outer);
    for (int m = 0; m < innerAxis.count(); ++m) {
      const BlockSpan inner = innerAxis.block(m);
      const std::optional<BlockCandidate> best = search.best(outer, inner);
      if (!best || outer.isBorder(best->outer) || inner.isBorder(best->inner)) {
        continue;
      }
      auto isReported =
          reported[static_cast<std::size_t>(best->outer) * innerAxis.size() + best->inner];
      if (!isReported) {
        isReported = true;
        report(*best);
      }
    }
  }
}

}  // namespace scanline::detail
