#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "heightmap/padded_plane.h"

namespace scanline::detail {

/// The pixels to flood, level by level and in scan order within a level. Levels are numbered in
/// ascending order, not necessarily by their grey values.
struct LevelBuckets {
  std::unique_ptr<PixelIndex[]> pixels;
  std::vector<std::size_t> starts;  ///< The start of each level, and the end of the last one.

  [[nodiscard]] int levelCount() const {
    return static_cast<int>(starts.size()) - 1;
  }
};

/// Sorts the pixels with a value from 0 to `maxLevel` into buckets.
LevelBuckets fillBuckets(const PixelRows& gray, int maxLevel, const PaddedGrid& grid);

}  // namespace scanline::detail
