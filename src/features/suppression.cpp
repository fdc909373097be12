// Finds the candidates along a line that no stronger one nearby suppresses.
#include "features/suppression.h"

#include <algorithm>

#include "features/extent.h"

namespace scanline::detail {
namespace {

bool isOutside(double dy, double windowSquared) {
  return dy * dy > windowSquared;
}

/// The candidates that the adjacent ones do not suppress. Most extrema of a noisy line are
/// suppressed by one of these, without a pattern, so a branch for each would often be mispredicted.
std::vector<int> remainingAfterAdjacent(const Candidates& candidates, double windowSquared) {
  const auto& [y, strength] = candidates;
  std::vector<int> remaining(y.size());
  std::size_t found = 0;
  bool isSuppressedByLast = false;
  for (int k = 0; k < candidates.count(); ++k) {
    const int next = k + 1 < candidates.count() ? k + 1 : k;
    const bool isNear = !isOutside(y[k] - y[next], windowSquared);
    const bool isSuppressedByNext = isNear & (strength[next] > strength[k]);
    remaining[found] = k;
    found += static_cast<std::size_t>(!(isSuppressedByLast | isSuppressedByNext));
    isSuppressedByLast = isNear & (strength[k] > strength[next]);
  }
  remaining.resize(found);
  return remaining;
}

/// Searches from candidate `k` by `step` for a stronger one in its window, and counts the steps.
bool isSuppressed(
    const Candidates& candidates, int k, int step, double windowSquared, std::size_t& steps) {
  const double y = candidates.y[k];
  const double strength = candidates.strength[k];
  for (int other = k + step; other >= 0 && other < candidates.count(); other += step) {
    ++steps;
    if (isOutside(y - candidates.y[other], windowSquared)) {
      return false;
    }
    if (candidates.strength[other] > strength) {
      return true;
    }
  }
  return false;
}

/// Marks the candidates that a search by `step` finds suppressed, in linear time. A search skips
/// candidates that cannot be stronger: from one that is not, it continues at the first one stronger
/// than that. Rounding is monotone, so the least and the greatest y of those skipped decide whether
/// any of them ends the window.
void markSuppressed(const Candidates& candidates,
                    int step,
                    double windowSquared,
                    std::vector<char>& marks) {
  const auto& [y, strength] = candidates;
  const int count = candidates.count();
  const auto isCandidate = [count](int k) { return k >= 0 && k < count; };
  std::vector<int> stronger(y.size());
  std::vector<Extent> upToStronger(y.size());  // In y.
  for (int k = step > 0 ? count - 1 : 0; isCandidate(k); k -= step) {
    Extent seen;
    int other = k + step;
    if (isCandidate(other)) {
      seen.take(y[other]);
    }
    while (isCandidate(other) && !(strength[other] > strength[k])) {
      seen.take(upToStronger[other]);
      other = stronger[other];
    }
    stronger[k] = other;
    upToStronger[k] = seen;
    const double ownY = y[k];
    const auto isFar = [ownY, windowSquared](double otherY) {
      return isOutside(ownY - otherY, windowSquared);
    };
    if (isCandidate(other) && !seen.anyFar(isFar)) {
      marks[k] = 1;
    }
  }
}

/// One mark for each candidate, in linear time whatever the window is.
std::vector<char> markAllSuppressed(const Candidates& candidates, double windowSquared) {
  std::vector<char> marks(candidates.y.size(), 0);
  markSuppressed(candidates, -1, windowSquared, marks);
  markSuppressed(candidates, 1, windowSquared, marks);
  return marks;
}

}  // namespace

std::vector<int> findUnsuppressed(const Candidates& candidates, double windowSquared) {
  return findUnsuppressed(candidates, windowSquared,
                          remainingAfterAdjacent(candidates, windowSquared));
}

// Searches are short on most lines. Where they are not, marking all candidates costs less.
std::vector<int> findUnsuppressed(const Candidates& candidates,
                                  double windowSquared,
                                  std::vector<int> tested) {
  const std::size_t maxSteps = 16 * candidates.y.size();
  std::size_t steps = 0;
  std::vector<char> marks;
  const auto isDropped = [&](int k) {
    if (marks.empty() && steps > maxSteps) {
      marks = markAllSuppressed(candidates, windowSquared);
    }
    return marks.empty() ? isSuppressed(candidates, k, -1, windowSquared, steps) ||
                               isSuppressed(candidates, k, 1, windowSquared, steps)
                         : marks[k] != 0;
  };
  tested.erase(std::remove_if(tested.begin(), tested.end(), isDropped), tested.end());
  return tested;
}

}  // namespace scanline::detail
