#pragma once

/// The search for local peaks in its plainest form. The tests compare the library with it, the
/// benchmarks measure both.

#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

/// The samples at which `sign` * z turns from falling to rising.
inline std::vector<int> turnsOf(const Line& line, double sign) {
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
  return turns;
}

/// Whether a search by `step` from turning point `k` finds one of smaller `sign` * z within
/// `scale`.
inline bool isSuppressed(
    const Line& line, const std::vector<int>& turns, int k, int step, double sign, double scale) {
  const STesk3DPoint& own = line[turns[k]].pt3D;
  for (int j = k + step; j >= 0 && j < static_cast<int>(turns.size()); j += step) {
    const STesk3DPoint& other = line[turns[j]].pt3D;
    if ((own.y - other.y) * (own.y - other.y) > scale * scale) {
      return false;
    }
    if (sign * own.z > sign * other.z) {
      return true;
    }
  }
  return false;
}

inline void appendTurns(
    const Line& line, double sign, double scale, int type, int lineIdx, Features& features) {
  const std::vector<int> turns = turnsOf(line, sign);
  for (int k = 0; k < static_cast<int>(turns.size()); ++k) {
    if (!isSuppressed(line, turns, k, -1, sign, scale) &&
        !isSuppressed(line, turns, k, 1, sign, scale)) {
      features.push_back({type, {lineIdx, turns[k]}, line[turns[k]].pt3D, 0.0});
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
