#pragma once

/// The moving mean in the plainest form. The tests compare the results of the library with it, the
/// benchmarks the speed.

#include <algorithm>
#include <vector>

#include <scanline/scan_records.h>

namespace plain {

inline void smooth(const std::vector<STesk3DPosition>& line,
                   int smoothWin,
                   std::vector<STesk3DPosition>& smoothed) {
  const int count = static_cast<int>(line.size());
  const int half = std::min(smoothWin / 2, count);
  smoothed = line;
  for (int i = 0; i < count; ++i) {
    double sum = 0.0;
    int taken = 0;
    for (int k = std::max(i - half, 0); k <= std::min(i + half, count - 1); ++k) {
      if (line[k].pt3D.z > 0.0001) {
        sum += line[k].pt3D.z;
        ++taken;
      }
    }
    if (line[i].pt3D.z > 0.0001) {
      smoothed[i].pt3D.z = sum / taken;
    }
  }
}

}  // namespace plain
