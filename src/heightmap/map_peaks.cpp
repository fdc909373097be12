#include <algorithm>
#include <optional>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/block_walk.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// A negative best gives way to whatever follows it, and what is not a number to nothing: where
/// such a cell is, the outcome depends on the order in which cells are visited.
bool dependsOnOrder(float cell) {
  return !(cell >= 0.0F);
}

/// Finds the highest cell of a block, and the first in column-major order among equals.
class MapSearch {
 public:
  MapSearch(const cv::Mat& map, int rows, int cols)
      : map_(map), columnMax_(cols), columnNeedsWalk_(cols) {
    rowNeedsWalk_.reserve(rows);
    for (int r = 0; r < rows; ++r) {
      rowNeedsWalk_.push_back(rowDependsOnOrder(map.ptr<float>(r)));
    }
  }

  /// Takes the columns' maxima within the band, row by row as the map lies in memory.
  void enterBand(const BlockSpan& rows) {
    const auto* const top = map_.ptr<float>(rows.start);
    std::copy_n(top, columnMax_.size(), columnMax_.begin());
    for (int r = rows.start + 1; r < rows.limit; ++r) {
      raise(map_.ptr<float>(r));
    }
    bandNeedsWalk_ = false;
    for (int r = rows.start; r < rows.limit; ++r) {
      if (rowNeedsWalk_[r]) {
        markColumnsToWalk(map_.ptr<float>(r));
      }
    }
  }

  /// The search leaves out what lies on the border of the columns.
  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& rows,
                                                   const BlockSpan& columns) const {
    if (bandNeedsWalk_ && needsWalk(columns)) {
      return walk(rows, columns);
    }
    const auto first = columnMax_.begin() + columns.start;
    const auto highest = std::max_element(first, columnMax_.begin() + columns.limit);
    const int c = static_cast<int>(highest - columnMax_.begin());
    if (columns.isBorder(c)) {
      return std::nullopt;
    }
    int r = rows.start;
    while (map_.ptr<float>(r)[c] != *highest) {
      ++r;
    }
    return BlockCandidate{r, c, static_cast<double>(map_.ptr<float>(r)[c])};
  }

 private:
  [[nodiscard]] bool rowDependsOnOrder(const float* row) const {
    int depends = 0;  // without a branch: the rows are read as fast as memory goes
    for (std::size_t c = 0; c < columnMax_.size(); ++c) {
      depends |= dependsOnOrder(row[c]) ? 1 : 0;
    }
    return depends != 0;
  }

  [[nodiscard]] bool needsWalk(const BlockSpan& columns) const {
    const auto flags = columnNeedsWalk_.begin();
    return std::any_of(flags + columns.start, flags + columns.limit,
                       [](bool flag) { return flag; });
  }

  void markColumnsToWalk(const float* row) {
    if (!bandNeedsWalk_) {
      std::fill(columnNeedsWalk_.begin(), columnNeedsWalk_.end(), false);
      bandNeedsWalk_ = true;
    }
    for (std::size_t c = 0; c < columnNeedsWalk_.size(); ++c) {
      if (dependsOnOrder(row[c])) {
        columnNeedsWalk_[c] = true;
      }
    }
  }

  void raise(const float* __restrict row) {
    float* const columnMax = columnMax_.data();
    const std::size_t cols = columnMax_.size();
    for (std::size_t c = 0; c < cols; ++c) {
      columnMax[c] = row[c] > columnMax[c] ? row[c] : columnMax[c];
    }
  }

  /// Visits every cell in column-major order.
  [[nodiscard]] BlockCandidate walk(const BlockSpan& rows, const BlockSpan& columns) const {
    BlockCandidate best = {-1, -1, -1.0};
    for (int c = columns.start; c < columns.limit; ++c) {
      for (int r = rows.start; r < rows.limit; ++r) {
        const auto value = static_cast<double>(map_.ptr<float>(r)[c]);
        if (best.value < 0.0 || value > best.value) {
          best = {r, c, value};
        }
      }
    }
    return best;
  }

  const cv::Mat& map_;
  std::vector<bool> rowNeedsWalk_;
  std::vector<float> columnMax_;       // within the band
  std::vector<bool> columnNeedsWalk_;  // within the band, if any is
  bool bandNeedsWalk_ = false;
};

}  // namespace

void qo_getLocalPeaks_distTransform(cv::Mat& distMap,
                                    std::vector<SQO_2DValueI>& peaks,
                                    SQO_localPkParam blockSize) {
  // The strides are crossed: rows advance by half a width, columns by half a height.
  const auto [width, height] = blockSize;
  const detail::BlockAxis rows(distMap.rows, detail::halfBlocks(distMap.rows, height), width,
                               height);
  const detail::BlockAxis columns(distMap.cols, detail::halfBlocks(distMap.cols, width), height,
                                  width);
  std::vector<SQO_2DValueI> found;
  detail::walkBlocks(rows, columns, MapSearch(distMap, rows.reach(), columns.reach()),
                     [&](const BlockCandidate& peak) {
                       found.push_back({peak.inner, peak.outer, 0, peak.value, 0});
                     });
  peaks.insert(peaks.end(), found.begin(), found.end());
}
