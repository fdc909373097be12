#pragma once

/// The search for raised runs in its plainest form, for benchmarks.

#include <cmath>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

inline void raisedRuns(std::vector<STesk3DPosition>& line,
                       int lineIdx,
                       const SQO_raisedFeatureParam& param,
                       std::vector<SJU_segFeature>& found) {
  double lastY = 0.0;
  double lastZ = -1.0;
  int start = 0;
  int len = -1;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    line[i].nPointIdx = i;
    const STesk3DPoint& point = line[i].pt3D;
    if (point.z <= 0.0001) {
      continue;
    }
    if (lastZ > 0.0) {
      const double step = std::abs(point.z - lastZ);
      const bool isFlank =
          step > param.minJumpZ && step / std::abs(point.y - lastY) > param.minJumpK;
      if (isFlank && lastZ > point.z) {
        start = i;
        len = 1;
      } else if (isFlank && point.z > lastZ) {
        const int end = start + len - 1;
        const double width = len > 0 ? std::abs(line[start].pt3D.y - line[end].pt3D.y) : -1.0;
        if (len > 0 && width >= param.minWidth && param.maxWidth >= width) {
          found.push_back({lineIdx, start, end, 0, line[start].pt3D, line[end].pt3D, width});
        }
        start = 0;
        len = -1;
      } else {
        len = i - start + 1;
      }
    }
    lastY = point.y;
    lastZ = point.z;
  }
}

}  // namespace plain
