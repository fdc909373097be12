// Finds the extrema of the turn angle along a line, and the peaks among them.
#include "features/corner_peaks.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "features/suppression.h"
#include "features/turn_lists.h"

namespace scanline::detail {
namespace {

/// How the turn angle changes from one point with arms to the next. The turn numbers decide if they
/// are far enough apart, else the turn angles do.
class TurnChange {
 public:
  explicit TurnChange(const Arms& arms) : arms_(arms) {}

  /// A number that has the sign of the change.
  double next(int previous, int i) {
    const double change = arms_.turnNumber(i) - arms_.turnNumber(previous);
    if (std::abs(change) > kTurnMargin) {
      isKnown_ = false;
      return change;
    }
    const double before = isKnown_ ? angle_ : arms_.turnAngle(previous);
    angle_ = arms_.turnAngle(i);
    isKnown_ = true;
    return angle_ - before;
  }

 private:
  const Arms& arms_;
  double angle_ = 0.0;  ///< The turn angle of the previous point, if it was needed.
  bool isKnown_ = false;
};

/// A turn number such that corners with a smaller one have a turn angle below the threshold.
double turnOfThreshold(double cornerTh) {
  if (!(std::abs(cornerTh) < 180.0)) {
    return -std::numeric_limits<double>::infinity();
  }
  const double angle = cornerTh / 180.0 * 3.141592653589793;
  return turnNumber(std::cos(angle), std::sin(angle), cornerTh) - kTurnMargin;
}

/// Extrema of the turn angle, and which of them reach the threshold.
struct RatedExtrema {
  explicit RatedExtrema(std::size_t count) : all(count) {}

  Candidates all;             ///< Those below the threshold are weaker than any that reaches it.
  std::vector<int> reaching;  ///< Those that reach the threshold, by their indices.
};

/// Rates extrema. Turn angles are computed only where the turn number does not decide.
RatedExtrema rateExtrema(const std::vector<int>& extrema,
                         const Arms& arms,
                         const Profile& profile,
                         const PeakRule& rule) {
  constexpr double kWeakest = -std::numeric_limits<double>::infinity();
  const bool byMagnitude = rule.measure == PeakRule::Measure::kMagnitude;
  const auto measured = [byMagnitude](double v) { return byMagnitude ? std::abs(v) : v; };
  const double leastTurn = turnOfThreshold(rule.cornerTh);
  RatedExtrema rated(extrema.size());
  for (int k = 0; k < rated.all.count(); ++k) {
    const int point = extrema[k];
    const bool isRuledOut = measured(arms.turnNumber(point)) < leastTurn;
    const double measure = isRuledOut ? 0.0 : measured(arms.turnAngle(point));
    rated.all.y[k] = profile.y[point];
    rated.all.strength[k] = kWeakest;
    if (!isRuledOut && !(rule.cornerTh > measure)) {
      rated.all.strength[k] = measure;
      rated.reaching.push_back(k);
    }
  }
  return rated;
}

}  // namespace

CornerExtrema findExtrema(const Arms& arms, ExtremaSign sign) {
  TurnLists turns(static_cast<std::size_t>(arms.count()));
  TurnChange changes(arms);
  int previous = kNoPoint;
  for (int i = 0; i < arms.count(); ++i) {
    if (arms.exist(i)) {
      turns.take(i, previous == kNoPoint ? 0.0 : changes.next(previous, i));
      previous = i;
    }
  }
  if (sign == ExtremaSign::kMatching) {
    turns.filter([&arms](int i) { return arms.turnSign(i) > 0.0; },
                 [&arms](int i) { return arms.turnSign(i) < 0.0; });
  }
  // The last direction counts only where the line runs out of arms.
  if (arms.count() > 0 && !arms.exist(arms.count() - 1)) {
    turns.close();
  }
  return {turns.releaseMaxima(), turns.releaseMinima()};
}

std::vector<int> findPeaks(const std::vector<int>& extrema,
                           const Arms& arms,
                           const Profile& profile,
                           const PeakRule& rule) {
  RatedExtrema rated = rateExtrema(extrema, arms, profile, rule);
  std::vector<int> peaks =
      findUnsuppressed(rated.all, rule.windowSquared, std::move(rated.reaching));
  for (int& peak : peaks) {
    peak = extrema[peak];
  }
  return peaks;
}

}  // namespace scanline::detail
