// Finds the peaks of the corner measure along a line.
#include "features/corner_peaks.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "features/extent.h"
#include "features/turn_lists.h"

namespace scanline::detail {
namespace {

/// How the corner measure changes from one point with slopes to the next. The turn numbers decide
/// if they are far enough apart, else the measures themselves do.
class CornerChange {
 public:
  explicit CornerChange(const Slopes& slopes) : slopes_(slopes) {}

  /// A number that has the sign of the change.
  double next(int previous, int i) {
    const double change = slopes_.turn(i) - slopes_.turn(previous);
    if (std::abs(change) > kTurnMargin) {
      isKnown_ = false;
      return change;
    }
    const double before = isKnown_ ? corner_ : slopes_.corner(previous);
    corner_ = slopes_.corner(i);
    isKnown_ = true;
    return corner_ - before;
  }

 private:
  const Slopes& slopes_;
  double corner_ = 0.0;  ///< The measure of the point before, if it was needed.
  bool isKnown_ = false;
};

/// A candidate that reaches the threshold.
struct Contender {
  int point;
  double measure;
  double y;
  Extent before;  ///< In y, of the candidates between the contender before and this one.
};

/// A turn number that only corners with a measure below the threshold fall short of.
double turnOfThreshold(double cornerTh) {
  if (!(std::abs(cornerTh) < 180.0)) {
    return -std::numeric_limits<double>::infinity();
  }
  const double angle = cornerTh / 180.0 * 3.141592653589793;
  return turnNumber(std::cos(angle), std::sin(angle), cornerTh) - kTurnMargin;
}

/// The contenders among the candidates. Measures are computed only where the turn number does not
/// rule a candidate out.
std::vector<Contender> findContenders(const std::vector<int>& candidates,
                                      const Slopes& slopes,
                                      const ValidProfile& profile,
                                      const PeakRule& rule) {
  const bool byMagnitude = rule.measure == PeakRule::Measure::kMagnitude;
  const auto measured = [byMagnitude](double v) { return byMagnitude ? std::abs(v) : v; };
  const double leastTurn = turnOfThreshold(rule.cornerTh);
  std::vector<Contender> contenders;
  Extent before;
  for (const int i : candidates) {
    const double y = profile.y[i];
    const bool isRuledOut = measured(slopes.turn(i)) < leastTurn;
    const double measure = isRuledOut ? 0.0 : measured(slopes.corner(i));
    if (isRuledOut || rule.cornerTh > measure) {
      before.take(y);
    } else {
      contenders.push_back({i, measure, y, before});
      before = {};
    }
  }
  return contenders;
}

/// A contender that no greater one has followed so far.
struct Summit {
  double measure;
  double y;
  Extent since;  ///< In y, from the summit before, excluded, up to this one.
};

/// Walks the contenders by `step` and marks those with a greater one before them in the window.
///
/// The measures of the summits fall, so the last one greater than a contender is the nearest one
/// greater. It is in the window if no y from there on is too far away. Rounding is monotone, so the
/// least and the greatest y decide for all of them. A measure that is not a number is that of the
/// last candidate, or there is none.
void markSuppressed(const std::vector<Contender>& contenders,
                    double windowSquared,
                    int step,
                    std::vector<char>& isSuppressed) {
  const int count = static_cast<int>(contenders.size());
  std::vector<Summit> summits;
  Extent since;
  for (int k = step > 0 ? 0 : count - 1; k >= 0 && k < count; k += step) {
    const auto& [point, measure, y, before] = contenders[k];
    if (step > 0) {
      since.take(before);
    }
    since.take(y);
    while (!summits.empty() && !(summits.back().measure > measure)) {
      since.take(summits.back().since);
      summits.pop_back();
    }
    if (!summits.empty()) {
      Extent upToGreater = since;
      upToGreater.take(summits.back().y);
      const bool isFar = upToGreater.anyFar([y = y, windowSquared](double other) {
        return (y - other) * (y - other) > windowSquared;
      });
      isSuppressed[k] = isSuppressed[k] != 0 || !isFar ? 1 : 0;
    }
    summits.push_back({measure, y, since});
    since = {};
    if (step < 0) {
      since.take(before);
    }
  }
}

}  // namespace

CornerExtrema findExtrema(const Slopes& slopes, ExtremaSign sign) {
  TurnLists turns(static_cast<std::size_t>(slopes.count()));
  CornerChange changes(slopes);
  int previous = kNoPoint;
  for (int i = 0; i < slopes.count(); ++i) {
    if (slopes.exist(i)) {
      turns.take(i, previous == kNoPoint ? 0.0 : changes.next(previous, i));
      previous = i;
    }
  }
  if (sign == ExtremaSign::kMatching) {
    turns.filter([&slopes](int i) { return slopes.cornerSign(i) > 0.0; },
                 [&slopes](int i) { return slopes.cornerSign(i) < 0.0; });
  }
  // The last direction counts only where the line runs out of slopes.
  if (slopes.count() > 0 && !slopes.exist(slopes.count() - 1)) {
    turns.close();
  }
  return {turns.releaseMaxima(), turns.releaseMinima()};
}

std::vector<int> findPeaks(const std::vector<int>& candidates,
                           const Slopes& slopes,
                           const ValidProfile& profile,
                           const PeakRule& rule) {
  const std::vector<Contender> contenders = findContenders(candidates, slopes, profile, rule);
  std::vector<char> isSuppressed(contenders.size());
  markSuppressed(contenders, rule.windowSquared, 1, isSuppressed);
  markSuppressed(contenders, rule.windowSquared, -1, isSuppressed);
  std::vector<int> peaks;
  for (std::size_t k = 0; k < contenders.size(); ++k) {
    if (isSuppressed[k] == 0) {
      peaks.push_back(contenders[k].point);
    }
  }
  return peaks;
}

}  // namespace scanline::detail
