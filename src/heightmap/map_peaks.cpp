// Finds the local maxima of a map.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/block_walk.h"
#include "heightmap/row_kernels.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// Whether a cell is negative or NaN. In a block with such a cell the best one depends on the order
/// in which the cells are visited.
bool isUnordered(float cell) {
  return !(cell >= 0.0F);
}

/// Finds the highest cell of a block, the first in column-major order of equal ones.
class MapSearch {
 public:
  /// The extrema of each column, within some rows.
  struct Extrema {
    std::vector<float> highest;     ///< -1 if no cell is 0 or more.
    std::vector<char> isUnordered;  ///< Whether any cell is unordered.
    bool hasUnordered;              ///< Whether any column has an unordered cell.
  };

  MapSearch(const cv::Mat& map, int cols) : map_(map), cols_(cols) {}

  [[nodiscard]] Extrema noExtrema() const {
    return {std::vector<float>(cols_, -1.0F), std::vector<char>(cols_), false};
  }

  void clear(Extrema& extrema) const {
    std::fill(extrema.highest.begin(), extrema.highest.end(), -1.0F);
    if (extrema.hasUnordered) {
      std::fill(extrema.isUnordered.begin(), extrema.isUnordered.end(), false);
      extrema.hasUnordered = false;
    }
  }

  void take(int r, Extrema& extrema) const {
    const auto* const row = map_.ptr<float>(r);
    if (detail::raiseMaxima(row, cols_, extrema.highest.data())) {
      extrema.hasUnordered = true;
      for (std::size_t c = 0; c < cols_; ++c) {
        extrema.isUnordered[c] = extrema.isUnordered[c] != 0 || isUnordered(row[c]) ? 1 : 0;
      }
    }
  }

  void combine(const Extrema& a, const Extrema& b, Extrema& both) const {
    detail::maximumOfRows(a.highest.data(), b.highest.data(), cols_, both.highest.data());
    both.hasUnordered = a.hasUnordered || b.hasUnordered;
    if (both.hasUnordered) {
      std::transform(a.isUnordered.begin(), a.isUnordered.end(), b.isUnordered.begin(),
                     both.isUnordered.begin(), std::bit_or<>());
    }
  }

  /// May also return nothing if the highest cell is on the border of the columns.
  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& rows,
                                                   const BlockSpan& columns,
                                                   const Extrema& extrema) const {
    const auto flags = extrema.isUnordered.begin();
    if (extrema.hasUnordered &&
        std::find(flags + columns.start, flags + columns.limit, 1) != flags + columns.limit) {
      return visitAll(rows, columns);
    }
    const float* const maxima = extrema.highest.data();
    const float highest = detail::largestOf(maxima + columns.start, columns.limit - columns.start);
    int c = columns.start;
    while (maxima[c] != highest) {
      ++c;
    }
    if (columns.isBorder(c)) {
      return std::nullopt;
    }
    int r = rows.start;
    while (map_.ptr<float>(r)[c] != highest) {
      ++r;
    }
    return BlockCandidate{r, c, static_cast<double>(map_.ptr<float>(r)[c])};
  }

 private:
  /// Visits every cell in column-major order.
  [[nodiscard]] std::optional<BlockCandidate> visitAll(const BlockSpan& rows,
                                                       const BlockSpan& columns) const {
    detail::BlockBest<std::greater<>> best;
    for (int c = columns.start; c < columns.limit; ++c) {
      for (int r = rows.start; r < rows.limit; ++r) {
        best.offer(r, c, static_cast<double>(map_.ptr<float>(r)[c]));
      }
    }
    return best.get();
  }

  const cv::Mat& map_;
  std::size_t cols_;
};

}  // namespace

void qo_getLocalPeaks_distTransform(cv::Mat& distMap,
                                    std::vector<SQO_2DValueI>& peaks,
                                    SQO_localPkParam blockSize) {
  assert(distMap.empty() || distMap.type() == CV_32F);
  // The strides are crossed: rows advance by half a width, columns by half a height.
  const auto [width, height] = blockSize;
  const detail::BlockAxis rows(distMap.rows, detail::halfBlocks(distMap.rows, height), width,
                               height);
  const detail::BlockAxis columns(distMap.cols, detail::halfBlocks(distMap.cols, width), height,
                                  width);
  std::vector<SQO_2DValueI> found;
  detail::walkBlocks(rows, columns, MapSearch(distMap, columns.reach()),
                     [&](const BlockCandidate& peak) {
                       found.push_back({peak.inner, peak.outer, 0, peak.value, 0});
                     });
  peaks.insert(peaks.end(), found.begin(), found.end());
}
