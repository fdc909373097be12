#pragma once

#include <scanline/scan_records.h>

namespace examples {

inline STesk3DPoint minus(const STesk3DPoint& a, const STesk3DPoint& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline double dot(const STesk3DPoint& a, const STesk3DPoint& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

}  // namespace examples
