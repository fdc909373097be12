#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace scanline::detail {

/// The number of points of a raster line after its first.
inline std::int64_t rasterSteps(int x0, int y0, int x1, int y1) {
  return std::max(std::abs(std::int64_t{x1} - x0), std::abs(std::int64_t{y1} - y0));
}

/// Calls `take(x, y)` for each point of a raster line, including both ends, by Bresenham's error
/// rule.
template <typename Take>
void forEachRasterPoint(int x0, int y0, int x1, int y1, Take take) {
  // The difference of two ints may exceed an int, and so may twice the error.
  const std::int64_t dx = std::abs(std::int64_t{x1} - x0);
  const std::int64_t dy = std::abs(std::int64_t{y1} - y0);
  const int stepX = x0 < x1 ? 1 : -1;
  const int stepY = y0 < y1 ? 1 : -1;
  int x = x0;
  int y = y0;
  std::int64_t err = dx - dy;
  take(x, y);
  // The longer axis advances in every round, so the number of rounds is known in advance.
  for (std::int64_t left = rasterSteps(x0, y0, x1, y1); left > 0; --left) {
    const std::int64_t doubleErr = 2 * err;
    if (doubleErr > -dy) {
      err -= dy;
      x += stepX;
    }
    if (doubleErr < dx) {
      err += dx;
      y += stepY;
    }
    take(x, y);
  }
}

}  // namespace scanline::detail
