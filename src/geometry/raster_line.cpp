#include "geometry/raster_line.h"

#include <cstddef>

#include <scanline/geometry.h>

void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points) {
  const std::size_t before = points.size();
  const auto steps = static_cast<std::size_t>(scanline::detail::rasterSteps(x0, y0, x1, y1));
  // Filling the points in is several times as fast as appending them one by one.
  points.resize(before + steps + 1);
  std::size_t next = before;
  scanline::detail::forEachRasterPoint(x0, y0, x1, y1, [&points, next](int x, int y) mutable {
    points[next] = {x, y};
    ++next;
  });
}
