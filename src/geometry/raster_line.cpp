#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "geometry.h"

void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points) {
  const int dx = std::abs(x1 - x0);
  const int dy = std::abs(y1 - y0);
  const int stepX = x0 < x1 ? 1 : -1;
  const int stepY = y0 < y1 ? 1 : -1;
  int x = x0;
  int y = y0;
  int err = dx - dy;
  // The longer axis steps in every round, so the number of points is known beforehand, and filling
  // them in is several times as fast as appending them one by one.
  std::size_t next = points.size();
  points.resize(next + static_cast<std::size_t>(std::max(dx, dy)) + 1);
  points[next] = {x, y};
  while (++next < points.size()) {
    const int doubleErr = 2 * err;
    if (doubleErr > -dy) {
      err -= dy;
      x += stepX;
    }
    if (doubleErr < dx) {
      err += dx;
      y += stepY;
    }
    points[next] = {x, y};
  }
}
