// Finds the local peaks and valleys of a line: the turning points of z that stand out around them.
#include <cstddef>
#include <functional>
#include <vector>

#include <scanline/line_features.h>
#include "features/extent.h"
#include "features/z_turns.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_basicFeature1D>;

/// Turning points of one kind, in line order.
class Turns {
 public:
  Turns(const STesk3DPosition* lineData, const std::vector<int>& indices)
      : lineData_(lineData), indices_(indices) {}

  [[nodiscard]] std::size_t size() const {
    return indices_.size();
  }
  [[nodiscard]] int index(std::size_t k) const {
    return indices_[k];
  }
  const STesk3DPoint& operator[](std::size_t k) const {
    return lineData_[indices_[k]].pt3D;
  }

 private:
  const STesk3DPosition* lineData_;
  const std::vector<int>& indices_;
};

/// The turns that the turns next to them do not beat. Most turns of a noisy line are beaten by one
/// of these, without a pattern, so a branch for each would often be mispredicted.
template <typename Beats>
std::vector<int> unbeatenByNext(const Turns& turns, double windowSquared, Beats beats) {
  std::vector<int> unbeaten(turns.size());
  std::size_t count = 0;
  bool isBeatenByLast = false;
  for (std::size_t k = 0; k < turns.size(); ++k) {
    const STesk3DPoint& own = turns[k];
    const STesk3DPoint& next = turns[k + 1 < turns.size() ? k + 1 : k];
    const bool isNear = !((own.y - next.y) * (own.y - next.y) > windowSquared);
    const bool isBeatenByNext = isNear & beats(next.z, own.z);
    unbeaten[count] = static_cast<int>(k);
    count += static_cast<std::size_t>(!(isBeatenByLast | isBeatenByNext));
    isBeatenByLast = isNear & beats(own.z, next.z);
  }
  unbeaten.resize(count);
  return unbeaten;
}

/// Looks from turn `k` by `step` for one within the window that `beats` it, and counts the steps.
template <typename Beats>
bool isBeaten(
    const Turns& turns, int k, int step, double windowSquared, Beats beats, std::size_t& steps) {
  const double y = turns[k].y;
  const double z = turns[k].z;
  const int count = static_cast<int>(turns.size());
  for (int other = k + step; other >= 0 && other < count; other += step) {
    ++steps;
    const STesk3DPoint& rival = turns[other];
    if ((y - rival.y) * (y - rival.y) > windowSquared) {
      return false;
    }
    if (beats(rival.z, z)) {
      return true;
    }
  }
  return false;
}

/// Marks the turns that a look by `step` finds beaten, in linear time. A look goes from turn to
/// turn over those that cannot beat it either: from one that does not, to the first that beats that
/// one.
template <typename Beats>
void markBeaten(
    const Turns& turns, int step, double windowSquared, Beats beats, std::vector<char>& beaten) {
  const int count = static_cast<int>(turns.size());
  const auto isTurn = [count](int k) { return k >= 0 && k < count; };
  std::vector<int> beater(turns.size());
  std::vector<detail::Extent> between(turns.size());  // In y, the beater included.
  for (int k = step > 0 ? count - 1 : 0; isTurn(k); k -= step) {
    const STesk3DPoint& own = turns[k];
    detail::Extent seen;
    int other = k + step;
    if (isTurn(other)) {
      seen.take(turns[other].y);
    }
    while (isTurn(other) && !beats(turns[other].z, own.z)) {
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

/// One mark for each turn, however long the looks are.
template <typename Beats>
std::vector<char> beatenTurns(const Turns& turns, double windowSquared, Beats beats) {
  std::vector<char> beaten(turns.size(), 0);
  markBeaten(turns, -1, windowSquared, beats, beaten);
  markBeaten(turns, 1, windowSquared, beats, beaten);
  return beaten;
}

/// The turns that no other within `scale` in y beats, as features. Looks are short on most lines;
/// where they are not, the marks of all turns cost less.
template <typename Beats>
Features unbeaten(const Turns& turns, int featureType, int lineIdx, double scale, Beats beats) {
  constexpr std::size_t kStepsPerTurn = 16;
  const double windowSquared = scale * scale;
  std::vector<char> beaten;
  std::size_t steps = 0;
  Features features;
  for (const int k : unbeatenByNext(turns, windowSquared, beats)) {
    if (beaten.empty() && steps > kStepsPerTurn * turns.size()) {
      beaten = beatenTurns(turns, windowSquared, beats);
    }
    const bool stays = beaten.empty() ? !isBeaten(turns, k, -1, windowSquared, beats, steps) &&
                                            !isBeaten(turns, k, 1, windowSquared, beats, steps)
                                      : beaten[k] == 0;
    if (stays) {
      features.push_back({featureType, {lineIdx, turns.index(k)}, turns[k], 0.0});
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
  const detail::ZTurns turns = detail::findZTurns(lineData, dataSize);
  const Features low =
      unbeaten({lineData, turns.minima}, FEATURE_PEAK, lineIdx, scale, std::less<>());
  const Features high =
      unbeaten({lineData, turns.maxima}, FEATURE_VALLEY, lineIdx, scale, std::greater<>());
  detail::makeRoom(high.size(), valleys);
  detail::append(low, peaks);
  detail::append(high, valleys);
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx = i;
  }
}
