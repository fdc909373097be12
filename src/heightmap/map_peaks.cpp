#include "heightmap.h"
#include "heightmap/block_walk.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// Finds the highest cell of a block, and the first in column-major order among equals.
class MapSearch {
 public:
  MapSearch(const cv::Mat& map, int rows, int cols) : map_(map), columnMax_(cols) {
    hasOddCell_.reserve(rows);
    for (int r = 0; r < rows; ++r) {
      hasOddCell_.push_back(hasOddCell(map.ptr<float>(r)));
    }
  }

  /// Takes the columns' maxima within the band, row by row as the map lies in memory.
  void enterBand(const BlockSpan& rows) {
    const auto flags = hasOddCell_.begin();
    isOddBand_ = std::find(flags + rows.start, flags + rows.limit, true) != flags + rows.limit;
    if (isOddBand_) {
      return;
    }
    const auto* const top = map_.ptr<float>(rows.start);
    std::copy_n(top, columnMax_.size(), columnMax_.begin());
    for (int r = rows.start + 1; r < rows.limit; ++r) {
      raise(map_.ptr<float>(r));
    }
  }

  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& rows,
                                                   const BlockSpan& columns) const {
    if (isOddBand_) {
      return walk(rows, columns);
    }
    const auto first = columnMax_.begin() + columns.start;
    const auto highest = std::max_element(first, columnMax_.begin() + columns.limit);
    const int c = static_cast<int>(highest - columnMax_.begin());
    int r = rows.start;
    while (map_.ptr<float>(r)[c] != *highest) {
      ++r;
    }
    return BlockCandidate{r, c, map_.ptr<float>(r)[c]};
  }

 private:
  /// Whether a row has a cell that is negative or not a number. What follows a negative best
  /// replaces it, be it lower or not, and a not-a-number is never replaced, so that the outcome
  /// depends on the order in which cells are visited.
  [[nodiscard]] bool hasOddCell(const float* row) const {
    int odd = 0;  // without a branch: the rows are read as fast as memory goes
    for (std::size_t c = 0; c < columnMax_.size(); ++c) {
      odd |= row[c] >= 0.0F ? 0 : 1;
    }
    return odd != 0;
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
        const double value = map_.ptr<float>(r)[c];
        if (best.value < 0.0 || value > best.value) {
          best = {r, c, value};
        }
      }
    }
    return best;
  }

  const cv::Mat& map_;
  std::vector<bool> hasOddCell_;  // by row
  bool isOddBand_ = false;
  std::vector<float> columnMax_;
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
  detail::walkBlocks(rows, columns, MapSearch(distMap, rows.reach(), columns.reach()),
                     [&](const BlockCandidate& peak) {
                       peaks.push_back({peak.inner, peak.outer, 0, peak.value, 0});
                     });
}
