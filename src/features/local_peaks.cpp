#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include <scanline/line_features.h>
#include "features/append.h"
#include "features/turning_points.h"

namespace detail = scanline::detail;

namespace {

using detail::Turns;
using Features = std::vector<SQO_basicFeature1D>;

/// A turn that may beat turns before it.
struct Rival {
  int turn;
  STeskRangeD beyond;  ///< Extent in y of the turns after it, up to the first that beats it.
};

STeskRangeD unite(const STeskRangeD& a, const STeskRangeD& b) {
  return {std::fmin(a.min, b.min), std::fmax(a.max, b.max)};
}

/// Whether one of the turns in a range of y lies outside the window of a turn. A y that is not a
/// number lies outside of nothing.
bool leavesWindow(const STeskRangeD& range, double y, double windowSquared) {
  const double toMin = y - range.min;
  const double toMax = y - range.max;
  return toMin * toMin > windowSquared || toMax * toMax > windowSquared;
}

/// Marks the turns for which a look by `step` meets one that `beats` them before it meets one
/// outside the window. The rivals on the stack each beat those above them, so that each turn is put
/// on it and taken off it only once.
template <typename Beats>
void markBeaten(
    const Turns& turns, int step, double windowSquared, Beats beats, std::vector<bool>& beaten) {
  constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
  const int count = static_cast<int>(turns.size());
  std::vector<Rival> rivals;
  for (int k = step > 0 ? count - 1 : 0; k >= 0 && k < count; k -= step) {
    const STesk3DPoint& own = turns[k].pt3D;
    STeskRangeD between = {kNothing, kNothing};
    if (!rivals.empty()) {
      const double y = turns[rivals.back().turn].pt3D.y;
      between = {y, y};
    }
    while (!rivals.empty() && !beats(turns[rivals.back().turn].pt3D.z, own.z)) {
      between = unite(between, rivals.back().beyond);
      rivals.pop_back();
    }
    if (!rivals.empty() && !leavesWindow(between, own.y, windowSquared)) {
      beaten[k] = true;
    }
    rivals.push_back({k, between});
  }
}

/// The turns that no other within `scale` in y beats, as features.
template <typename Beats>
Features unbeaten(const Turns& turns, int featureType, int lineIdx, double scale, Beats beats) {
  std::vector<bool> beaten(turns.size(), false);
  markBeaten(turns, -1, scale * scale, beats, beaten);
  markBeaten(turns, 1, scale * scale, beats, beaten);
  Features features;
  for (std::size_t k = 0; k < turns.size(); ++k) {
    if (!beaten[k]) {
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
