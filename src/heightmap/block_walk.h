#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace scanline::detail {

/// The range of positions that a block covers on one axis.
struct BlockSpan {
  int start;
  std::int64_t end;  ///< One past the last position of the block, even if that is past the data.
  int limit;         ///< The same, within the data.

  /// Where the end of the data cuts a block off, it has no border.
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
  /// Number of blocks, without those that start past the data.
  [[nodiscard]] int count() const {
    return count_;
  }
  /// One past the last position that is in any block.
  [[nodiscard]] int reach() const {
    return count_ > 0 ? block(count_ - 1).limit : 0;
  }
  /// Whether each block ends where the next but one starts.
  [[nodiscard]] bool overlapsByHalves() const {
    return extent_ == stride_;
  }
  /// Where block i starts, or where the data ends if that comes first.
  [[nodiscard]] int startInData(int i) const {
    return static_cast<int>(std::min<std::int64_t>(std::int64_t{i} * stride_ / 2, size_));
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

/// Number of half blocks that cover an axis.
inline int halfBlocks(int size, int blockSize) {
  assert(blockSize >= 2);
  const int half = blockSize / 2;
  return size / half + (size % half > 0 ? 1 : 0);
}

/// The best position of a block.
struct BlockCandidate {
  int outer;
  int inner;
  double value;
};

/// The best of the positions offered one after the other. Any position replaces a negative best,
/// and none replaces NaN.
template <typename IsBetter>
class BlockBest {
 public:
  void offer(int outer, int inner, double value) {
    if (best_.value < 0.0 || IsBetter()(value, best_.value)) {
      best_ = {outer, inner, value};
    }
  }
  [[nodiscard]] std::optional<BlockCandidate> get() const {
    return best_.outer < 0 ? std::nullopt : std::optional(best_);
  }

 private:
  BlockCandidate best_ = {-1, -1, -1.0};
};

/**
 * Collects the extrema of each band, which is a row of blocks, for a search. Where bands overlap by
 * exact halves, as they do if stride and extent are equal, each half is read only once:
 *
 *     band 0   |--half 0--|--half 1--|
 *     band 1              |--half 1--|--half 2--|
 */
template <typename Search>
class Bands {
 public:
  using Extrema = typename Search::Extrema;

  Bands(const BlockAxis& axis, const Search& search)
      : axis_(axis), search_(search), first_(search.noExtrema()), second_(first_), band_(first_) {}

  /// The extrema of the next band; valid until the next call.
  const Extrema& next() {
    const int k = next_++;
    if (!axis_.overlapsByHalves()) {
      const BlockSpan span = axis_.block(k);
      collect(span.start, span.limit, band_);
      return band_;
    }
    if (k == 0) {
      collect(0, axis_.startInData(1), second_);
    }
    std::swap(first_, second_);
    collect(axis_.startInData(k + 1), axis_.startInData(k + 2), second_);
    search_.combine(first_, second_, band_);
    return band_;
  }

 private:
  void collect(int begin, int end, Extrema& extrema) {
    search_.clear(extrema);
    for (int outer = begin; outer < end; ++outer) {
      search_.take(outer, extrema);
    }
  }

  const BlockAxis& axis_;
  const Search& search_;
  int next_ = 0;
  Extrema first_;
  Extrema second_;
  Extrema band_;
};

/**
 * Visits overlapping blocks and calls `report(candidate)` once for each position that is the best
 * of a block, but not on the border of that block. `search` provides
 * - `Extrema`, the type of the extrema of a band, and `noExtrema()`, which allocates one;
 * - `clear(extrema)`, `take(outer, extrema)` and `combine(a, b, both)`, which collect them;
 * - `best(outer, inner, extrema)`: the best position of one block, given the extrema of its band.
 */
template <typename Search, typename Report>
void walkBlocks(const BlockAxis& outerAxis,
                const BlockAxis& innerAxis,
                const Search& search,
                Report report) {
  std::vector<bool> reported(static_cast<std::size_t>(outerAxis.size()) * innerAxis.size());
  Bands<Search> bands(outerAxis, search);
  for (int k = 0; k < outerAxis.count(); ++k) {
    const BlockSpan outer = outerAxis.block(k);
    const auto& extrema = bands.next();
    for (int m = 0; m < innerAxis.count(); ++m) {
      const BlockSpan inner = innerAxis.block(m);
      const std::optional<BlockCandidate> best = search.best(outer, inner, extrema);
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
