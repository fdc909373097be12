#include "heightmap/level_buckets.h"

#include <algorithm>
#include <climits>
#include <iterator>

#include "heightmap/row_kernels.h"
#include "records/new_array.h"

namespace scanline::detail {

namespace {

bool isFlooded(int value, int maxLevel) {
  return value >= 0 && value <= maxLevel;
}

/// The levels that occur, in ascending order.
std::vector<int> distinctLevels(const PixelRows& gray, int maxLevel, const PaddedGrid& grid) {
  std::vector<int> levels;
  for (int r = 0; r < grid.height(); ++r) {
    std::copy_if(gray[r].begin(), gray[r].begin() + grid.width(), std::back_inserter(levels),
                 [=](int value) { return isFlooded(value, maxLevel); });
  }
  std::sort(levels.begin(), levels.end());
  levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
  return levels;
}

/// Sorts the pixels with values from 0 to `maxLevel` by counting. `numberOf(value)` is the number
/// of a level, below `levelCount`.
template <typename NumberOf>
LevelBuckets countingSort(const PixelRows& gray,
                          int maxLevel,
                          const PaddedGrid& grid,
                          std::size_t levelCount,
                          NumberOf numberOf) {
  const auto forEachPixel = [&](auto visit) {
    for (int r = 0; r < grid.height(); ++r) {
      const int* const row = gray[r].data();
      const PixelIndex first = grid.indexOf(r, 0);
      for (int c = 0; c < grid.width(); ++c) {
        if (isFlooded(row[c], maxLevel)) {
          visit(numberOf(row[c]), first + static_cast<PixelIndex>(c));
        }
      }
    }
  };
  // Entry v + 2 counts level v; entry v + 1 then moves from its start to its end.
  std::vector<std::size_t> starts(levelCount + 2);
  forEachPixel([&](std::size_t level, PixelIndex) { ++starts[level + 2]; });
  for (std::size_t v = 2; v < starts.size(); ++v) {
    starts[v] += starts[v - 1];
  }
  auto pixels = newArray<PixelIndex>(starts.back());
  forEachPixel([&](std::size_t level, PixelIndex pixel) { pixels[starts[level + 1]++] = pixel; });
  starts.pop_back();
  return {std::move(pixels), std::move(starts)};
}

}  // namespace

LevelBuckets fillBuckets(const PixelRows& gray, int maxLevel, const PaddedGrid& grid) {
  int highest = -1;
  for (int r = 0; r < grid.height(); ++r) {
    highest = std::max(highest, largestUpTo(maxLevel, gray[r].data(), grid.width()));
  }
  const std::size_t count = highest < 0 ? 0 : static_cast<std::size_t>(highest) + 1;
  const std::size_t pixelCount = static_cast<std::size_t>(grid.height()) * grid.width();
  if (count <= std::min<std::size_t>(pixelCount, INT_MAX)) {
    return countingSort(gray, maxLevel, grid, count,
                        [](int value) { return static_cast<std::size_t>(value); });
  }
  // Number only the levels that occur, since up to the highest one there are more than pixels.
  const std::vector<int> levels = distinctLevels(gray, maxLevel, grid);
  return countingSort(gray, maxLevel, grid, levels.size(), [&](int value) {
    return static_cast<std::size_t>(std::lower_bound(levels.begin(), levels.end(), value) -
                                    levels.begin());
  });
}

}  // namespace scanline::detail
