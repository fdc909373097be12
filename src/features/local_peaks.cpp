// Finds the local peaks and valleys of a line: the turning points of z that stand out around them.
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/line_features.h>
#include "features/extent.h"
#include "features/z_turns.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_basicFeature1D>;

/// Turning points of one kind, in line order. Of two turns the one of lower height is more extreme.
struct Turns {
  std::vector<int> sampleOf;
  std::vector<double> y;
  std::vector<double> height;

  [[nodiscard]] int count() const {
    return static_cast<int>(sampleOf.size());
  }
};

/// The turns at some samples; `sign` is 1.0 for minima of z and -1.0 for maxima.
Turns turnsAt(const STesk3DPosition* lineData, std::vector<int> samples, double sign) {
  Turns turns = {std::move(samples), {}, {}};
  turns.y.resize(turns.sampleOf.size());
  turns.height.resize(turns.sampleOf.size());
  for (int k = 0; k < turns.count(); ++k) {
    const STesk3DPoint& point = lineData[turns.sampleOf[k]].pt3D;
    turns.y[k] = point.y;
    turns.height[k] = sign * point.z;
  }
  return turns;
}

bool isOutside(double dy, double windowSquared) {
  return dy * dy > windowSquared;
}

/// The turns that the turns next to them do not suppress. Most turns of a noisy line are suppressed
/// by one of these, without a pattern, so a branch for each would often be mispredicted.
std::vector<int> remainingAfterNext(const Turns& turns, double windowSquared) {
  std::vector<int> remaining(static_cast<std::size_t>(turns.count()));
  std::size_t found = 0;
  bool isSuppressedByLast = false;
  for (int k = 0; k < turns.count(); ++k) {
    const int next = k + 1 < turns.count() ? k + 1 : k;
    const bool isNear = !isOutside(turns.y[k] - turns.y[next], windowSquared);
    const bool isSuppressedByNext = isNear & (turns.height[next] < turns.height[k]);
    remaining[found] = k;
    found += static_cast<std::size_t>(!(isSuppressedByLast | isSuppressedByNext));
    isSuppressedByLast = isNear & (turns.height[k] < turns.height[next]);
  }
  remaining.resize(found);
  return remaining;
}

/// Searches from turn `k` by `step` for a lower one within the window, and counts the steps.
bool isSuppressed(const Turns& turns, int k, int step, double windowSquared, std::size_t& steps) {
  const double y = turns.y[k];
  const double height = turns.height[k];
  for (int other = k + step; other >= 0 && other < turns.count(); other += step) {
    ++steps;
    if (isOutside(y - turns.y[other], windowSquared)) {
      return false;
    }
    if (turns.height[other] < height) {
      return true;
    }
  }
  return false;
}

/// Marks the turns that a search by `step` finds suppressed, in linear time. A search skips turns
/// that cannot be lower: from one that is not, it goes on to the first one lower than that.
void markSuppressed(const Turns& turns,
                    int step,
                    double windowSquared,
                    std::vector<char>& suppressed) {
  const int count = turns.count();
  const auto isTurn = [count](int k) { return k >= 0 && k < count; };
  std::vector<int> lower(static_cast<std::size_t>(count));
  std::vector<detail::Extent> between(lower.size());  // In y, up to the lower one.
  for (int k = step > 0 ? count - 1 : 0; isTurn(k); k -= step) {
    detail::Extent seen;
    int other = k + step;
    if (isTurn(other)) {
      seen.take(turns.y[other]);
    }
    while (isTurn(other) && !(turns.height[other] < turns.height[k])) {
      seen.take(between[other]);
      other = lower[other];
    }
    lower[k] = other;
    between[k] = seen;
    const auto isFar = [&](double y) { return isOutside(turns.y[k] - y, windowSquared); };
    if (isTurn(other) && !seen.anyFar(isFar)) {
      suppressed[k] = 1;
    }
  }
}

/// One mark for each turn, in linear time whatever the window is.
std::vector<char> suppressedTurns(const Turns& turns, double windowSquared) {
  std::vector<char> suppressed(static_cast<std::size_t>(turns.count()), 0);
  markSuppressed(turns, -1, windowSquared, suppressed);
  markSuppressed(turns, 1, windowSquared, suppressed);
  return suppressed;
}

/// The turns without a more extreme one within `scale` in y, as features. Searches are short on
/// most lines; where they are not, marking all turns costs less.
Features findExtreme(const STesk3DPosition* lineData,
                     const Turns& turns,
                     double scale,
                     int featureType,
                     int lineIdx) {
  const std::size_t maxSteps = 16 * static_cast<std::size_t>(turns.count());
  const double windowSquared = scale * scale;
  std::vector<char> suppressed;
  std::size_t steps = 0;
  Features features;
  for (const int k : remainingAfterNext(turns, windowSquared)) {
    if (suppressed.empty() && steps > maxSteps) {
      suppressed = suppressedTurns(turns, windowSquared);
    }
    const bool isExtreme = suppressed.empty() ? !isSuppressed(turns, k, -1, windowSquared, steps) &&
                                                    !isSuppressed(turns, k, 1, windowSquared, steps)
                                              : suppressed[k] == 0;
    if (isExtreme) {
      const int sample = turns.sampleOf[k];
      features.push_back({featureType, {lineIdx, sample}, lineData[sample].pt3D, 0.0});
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
  detail::ZTurns turns = detail::findZTurns(lineData, dataSize);
  const Turns minima = turnsAt(lineData, std::move(turns.minima), 1.0);
  const Turns maxima = turnsAt(lineData, std::move(turns.maxima), -1.0);
  const Features low = findExtreme(lineData, minima, scale, FEATURE_PEAK, lineIdx);
  const Features high = findExtreme(lineData, maxima, scale, FEATURE_VALLEY, lineIdx);
  detail::makeRoom(high.size(), valleys);
  detail::append(low, peaks);
  detail::append(high, valleys);
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx = i;
  }
}
