#include <functional>
#include <vector>

#include <scanline/line_features.h>
#include "features/extent.h"
#include "features/turning_points.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using detail::Turns;
using Features = std::vector<SQO_basicFeature1D>;

/// Marks the turns for which a look by `step` meets one that `beats` them before it meets one
/// outside the window. A look goes from turn to turn over those that cannot beat it either: from
/// one that does not, to the first that beats that one.
template <typename Beats>
void markBeaten(
    const Turns& turns, int step, double windowSquared, Beats beats, std::vector<char>& beaten) {
  const int count = static_cast<int>(turns.size());
  const auto isTurn = [count](int k) { return k >= 0 && k < count; };
  std::vector<int> beater(turns.size());
  std::vector<detail::Extent> between(turns.size());  // In y, the beater included.
  for (int k = step > 0 ? count - 1 : 0; isTurn(k); k -= step) {
    const STesk3DPoint& own = turns[k].pt3D;
    detail::Extent seen;
    int other = k + step;
    if (isTurn(other)) {
      seen.take(turns[other].pt3D.y);
    }
    while (isTurn(other) && !beats(turns[other].pt3D.z, own.z)) {
      seen.take(between[other]);
      other = beater[other];
    }
    beater[k] = other;
    between[k] = seen;
    const auto isOutside = [&](double y) { return (own.y - y) * (own.y - y) > windowSquared; };
    if (isTurn(other) && !seen.anyFar(isOutside)) {
      beaten[k] = 1;
    }
  }
}

/// The turns that no other within `scale` in y beats, as features.
template <typename Beats>
Features unbeaten(const Turns& turns, int featureType, int lineIdx, double scale, Beats beats) {
  std::vector<char> beaten(turns.size(), 0);
  markBeaten(turns, -1, scale * scale, beats, beaten);
  markBeaten(turns, 1, scale * scale, beats, beaten);
  Features features;
  for (std::size_t k = 0; k < turns.size(); ++k) {
    if (beaten[k] == 0) {
      features.push_back({featureType, {lineIdx, turns[k].nPointIdx}, turns[k].pt3D, 0.0});
    }
  }
  return features;
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
  const detail::TurningPoints turns = detail::findTurns(lineData, dataSize);
  const Features low = unbeaten(turns.minima, FEATURE_PEAK, lineIdx, scale, std::less<>());
  const Features high = unbeaten(turns.maxima, FEATURE_VALLEY, lineIdx, scale, std::greater<>());
  detail::makeRoom(high.size(), valleys);
  detail::append(low, peaks);
  detail::append(high, valleys);
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx = i;
  }
}
