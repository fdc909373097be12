#pragma once

/// The rules of local peaks step by step, in their plainest form: the tests compare
/// the library with it, the benchmarks measure by it.

#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

/// Appends the places where `sign` * z turns upwards and that none within `scale` beats.
inline void appendTurns(
    const Line& line, double sign, double scale, int type, int lineIdx, Features& features) {
  const int count = static_cast<int>(line.size());
  std::vector<int> turns;
  int trend = 0;
  int last = -1;
  for (int i = 0; i < count; ++i) {
    if (0.0001 > line[i].pt3D.z) {
      if (i == count - 1 && trend < 0) {
        turns.push_back(last);
      }
      continue;
    }
    const double dz = last < 0 ? 0.0 : sign * (line[i].pt3D.z - line[last].pt3D.z);
    if (dz > 0.0 && trend < 0) {
      turns.push_back(last);
    }
    trend = dz > 0.0 ? 1 : dz < 0.0 ? -1 : trend;
    last = i;
  }
  const int turnCount = static_cast<int>(turns.size());
  for (int k = 0; k < turnCount; ++k) {
    const STesk3DPoint& own = line[turns[k]].pt3D;
    bool beaten = false;
    for (const int step : {-1, 1}) {
      for (int j = k + step; j >= 0 && j < turnCount; j += step) {
        const STesk3DPoint& other = line[turns[j]].pt3D;
        if ((own.y - other.y) * (own.y - other.y) > scale * scale) {
          break;
        }
        beaten = beaten || sign * own.z > sign * other.z;
      }
    }
    if (!beaten) {
      features.push_back({type, {lineIdx, turns[k]}, own, 0.0});
    }
  }
}

inline void localPeaks(Line& line, int lineIdx, double scale, Features& valleys, Features& peaks) {
  if (line.size() < 2) {
    return;
  }
  for (std::size_t i = 0; i < line.size(); ++i) {
    line[i].nPointIdx = static_cast<int>(i);
  }
  appendTurns(line, 1.0, scale, FEATURE_PEAK, lineIdx, peaks);
  appendTurns(line, -1.0, scale, FEATURE_VALLEY, lineIdx, valleys);
}

}  // namespace plain
