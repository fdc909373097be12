// Draws a line between two points of a grid.
#include "geometry/raster_line.h"

#include <cstddef>

#include <scanline/geometry.h>

void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points) {
  const std::size_t oldSize = points.size();
  const auto steps = static_cast<std::size_t>(scanline::detail::rasterSteps(x0, y0, x1, y1));
  // Writing into a resized list is several times as fast as appending the points one by one.
  points.resize(oldSize + steps + 1);
  std::size_t next = oldSize;
  scanline::detail::forEachRasterPoint(x0, y0, x1, y1, [&points, next](int x, int y) mutable {
    points[next] = {x, y};
    ++next;
  });
}
