#pragma once

#include <algorithm>
#include <cstdlib>

namespace scanline::detail {

/// Calls `take(x, y)` for each point of a raster line, both ends included, by Bresenham's error
/// rule.
template <typename Take>
void forEachRasterPoint(int x0, int y0, int x1, int y1, Take take) {
  const int dx = std::abs(x1 - x0);
  const int dy = std::abs(y1 - y0);
  const int stepX = x0 < x1 ? 1 : -1;
  const int stepY = y0 < y1 ? 1 : -1;
  int x = x0;
  int y = y0;
  int err = dx - dy;
  take(x, y);
  // The longer axis steps in every round, so the number of points is known beforehand.
  for (int left = std::max(dx, dy); left > 0; --left) {
    const int doubleErr = 2 * err;
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
