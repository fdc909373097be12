#pragma once

#include <cmath>

#include <scanline/scan_records.h>

namespace scanline::detail {

inline double distanceInSpace(const STesk3DPoint& p, const STesk3DPoint& q) {
  const double dx = q.x - p.x;
  const double dy = q.y - p.y;
  const double dz = q.z - p.z;
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

}  // namespace scanline::detail
