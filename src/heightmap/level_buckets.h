#pragma once

#include <cstddef>
#include <vector>

#include "heightmap/padded_plane.h"

namespace scanline::detail {

/// The pixels to flood, level by level and in scan order within a level. Levels are numbered in
/// ascending order, not necessarily by their grey values.
struct LevelBuckets {
  std::vector<PixelIndex> places;
  std::vector<std::size_t> starts;  ///< Of each level, and the end of the last one.

  [[nodiscard]] int levelCount() const {
    return static_cast<int>(starts.size()) - 1;
  }
};

/// Puts the pixels with a value from 0 to `maxLevel` into buckets.
LevelBuckets fillBuckets(
    const PixelRows& gray, int height, int width, int maxLevel, const PaddedGrid& grid);

}  // namespace scanline::detail
