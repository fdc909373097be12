// Finds where z turns up or down along a line.
#include "features/turning_points.h"

#include "records/sample_rules.h"

namespace scanline::detail {

TurningPoints findTurns(const STesk3DPosition* lineData, int dataSize) {
  enum class Trend { kNone, kFalling, kRising };
  TurningPoints turns;
  const auto take = [lineData](const STesk3DPosition* sample, Turns& list) {
    list.push_back({static_cast<int>(sample - lineData), sample->pt3D});
  };
  if (dataSize > 0) {
    // Most lines turn less often; pure noise turns each way at every third sample.
    turns.minima.reserve(static_cast<std::size_t>(dataSize) / 4);
    turns.maxima.reserve(static_cast<std::size_t>(dataSize) / 4);
  }
  Trend trend = Trend::kNone;
  const STesk3DPosition* previous = nullptr;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (isNoSample(point.z)) {
      continue;
    }
    const double dz = previous == nullptr ? 0.0 : point.z - previous->pt3D.z;
    if (dz > 0.0) {
      if (trend == Trend::kFalling) {
        take(previous, turns.minima);
      }
      trend = Trend::kRising;
    } else if (dz < 0.0) {
      if (trend == Trend::kRising) {
        take(previous, turns.maxima);
      }
      trend = Trend::kFalling;
    }
    previous = &lineData[i];
  }
  // Only a line that ends in a hole closes its last trend.
  if (trend != Trend::kNone && isNoSample(lineData[dataSize - 1].pt3D.z)) {
    take(previous, trend == Trend::kFalling ? turns.minima : turns.maxima);
  }
  return turns;
}

}  // namespace scanline::detail
