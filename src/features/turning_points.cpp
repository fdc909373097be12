#include "features/turning_points.h"

#include "records/sample_rules.h"

namespace scanline::detail {

TurningPoints findTurns(const STesk3DPosition* lineData, int dataSize) {
  enum class Trend { kNone, kFalling, kRising };
  TurningPoints turns;
  Trend trend = Trend::kNone;
  STesk3DPosition previous = {-1, {0.0, 0.0, 0.0}};
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (isNoSample(point.z)) {
      continue;
    }
    const double dz = previous.nPointIdx < 0 ? 0.0 : point.z - previous.pt3D.z;
    if (dz > 0.0) {
      if (trend == Trend::kFalling) {
        turns.minima.push_back(previous);
      }
      trend = Trend::kRising;
    } else if (dz < 0.0) {
      if (trend == Trend::kRising) {
        turns.maxima.push_back(previous);
      }
      trend = Trend::kFalling;
    }
    previous = {i, point};
  }
  // Only a line that ends in a hole closes its last trend.
  if (trend != Trend::kNone && isNoSample(lineData[dataSize - 1].pt3D.z)) {
    (trend == Trend::kFalling ? turns.minima : turns.maxima).push_back(previous);
  }
  return turns;
}

}  // namespace scanline::detail
