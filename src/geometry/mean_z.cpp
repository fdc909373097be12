// Computes the mean z of the measured points of a list.
#include <cstddef>

#include <scanline/geometry.h>
#include "records/sample_rules.h"

double computeMeanZ(std::vector<STesk3DPoint>& points) {
  double sum = 0.0;
  std::size_t count = 0;
  for (const STesk3DPoint& point : points) {
    if (scanline::detail::isMeasured(point.z)) {
      sum += point.z;
      ++count;
    }
  }
  return count > 0 ? sum / static_cast<double>(count) : 0.0;
}
