#include <functional>
#include <vector>

#include <scanline/line_features.h>
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Turns = std::vector<STesk3DPosition>;

/// Where z turns upwards (`minima`) and downwards (`maxima`).
struct TurningPoints {
  Turns minima;
  Turns maxima;
};

TurningPoints stampAndFindTurns(STesk3DPosition* lineData, int dataSize) {
  enum class Trend { kNone, kFalling, kRising };
  TurningPoints turns;
  Trend trend = Trend::kNone;
  const STesk3DPosition* previous = nullptr;
  for (int i = 0; i < dataSize; ++i) {
    STesk3DPosition& sample = lineData[i];
    sample.nPointIdx = i;
    if (detail::isNoSample(sample.pt3D.z)) {
      continue;
    }
    const double dz = previous == nullptr ? 0.0 : sample.pt3D.z - previous->pt3D.z;
    if (dz > 0.0) {
      if (trend == Trend::kFalling) {
        turns.minima.push_back(*previous);
      }
      trend = Trend::kRising;
    } else if (dz < 0.0) {
      if (trend == Trend::kRising) {
        turns.maxima.push_back(*previous);
      }
      trend = Trend::kFalling;
    }
    previous = &sample;
  }
  // Only a line that ends in a hole closes its last trend.
  if (trend != Trend::kNone && detail::isNoSample(lineData[dataSize - 1].pt3D.z)) {
    (trend == Trend::kFalling ? turns.minima : turns.maxima).push_back(*previous);
  }
  return turns;
}

/// Looks from turn `k` by `step` for one within the window that `beats` it.
template <typename Beats>
bool isBeaten(const Turns& turns, int k, int step, double windowSquared, Beats beats) {
  const STesk3DPoint own = turns[k].pt3D;
  const int count = static_cast<int>(turns.size());
  for (int other = k + step; other >= 0 && other < count; other += step) {
    const STesk3DPoint& rival = turns[other].pt3D;
    const double dy = own.y - rival.y;
    if (dy * dy > windowSquared) {
      return false;
    }
    if (beats(rival.z, own.z)) {
      return true;
    }
  }
  return false;
}

/// How the turns that stay become features.
struct Report {
  int featureType;
  int lineIdx;
  double windowSquared;  ///< Square of the distance in y within which a turn must not be beaten.
};

template <typename Beats>
void appendUnbeaten(const Turns& turns,
                    const Report& report,
                    Beats beats,
                    std::vector<SQO_basicFeature1D>& features) {
  for (int k = 0; k < static_cast<int>(turns.size()); ++k) {
    if (!isBeaten(turns, k, -1, report.windowSquared, beats) &&
        !isBeaten(turns, k, 1, report.windowSquared, beats)) {
      features.push_back(
          {report.featureType, {report.lineIdx, turns[k].nPointIdx}, turns[k].pt3D, 0.0});
    }
  }
}

}  // namespace

void qo_getLineLocalPeaks(STesk3DPosition* lineData,
                          int dataSize,
                          int lineIdx,
                          double scale,
                          std::vector<SQO_basicFeature1D>& valleys,
                          std::vector<SQO_basicFeature1D>& peaks) {
  if (dataSize < 2) {
    return;
  }
  const TurningPoints turns = stampAndFindTurns(lineData, dataSize);
  const double window = scale * scale;
  appendUnbeaten(turns.minima, {FEATURE_PEAK, lineIdx, window}, std::less<>(), peaks);
  appendUnbeaten(turns.maxima, {FEATURE_VALLEY, lineIdx, window}, std::greater<>(), valleys);
}
