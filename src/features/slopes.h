#pragma once

#include <cmath>
#include <optional>
#include <vector>

#include "features/valid_points.h"

/// The slopes of a line to either side of its points, measured over a distance.
namespace scanline::detail {

/// What becomes of a point with a neighbour on one side only.
enum class MissingNeighbour {
  kNoSlopes,  ///< It has no slopes.
  kLevel,     ///< The angle to the missing side is 0, and so is the corner measure.
};

/// How the two neighbours of a point are found.
struct SlopeSearch {
  double scale;  ///< Least distance of a neighbour in the y-z plane.
  /// A point from here on ends the search without a neighbour. Not below the scale.
  std::optional<double> maxChord;
  MissingNeighbour missing;  ///< What becomes of a point with one neighbour.

  /// The search of most extractors: it may run across gaps of any width and needs both sides.
  static SlopeSearch unlimited(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kNoSlopes};
  }
  /// The same for extractors that make do with one side.
  static SlopeSearch oneSided(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kLevel};
  }
};

/// A number in the place of an angle between -180 and 180 degrees: 2 / pi times the angle at the
/// multiples of 90 degrees and strictly growing in between. It costs one division. The angle is
/// that of the vector (`x`, `y`), whose length does not matter; where the vector points backwards,
/// the sign is that of `side`. NaN if the products that make up x and y may have over- or
/// underflowed.
inline double turnNumber(double x, double y, double side) {
  const double sum = std::abs(x) + std::abs(y);
  if (!(sum > 1e-280 && sum < 1e300)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double ratio = y / sum;
  return x >= 0.0 ? ratio : std::copysign(2.0, side) - ratio;
}

/// Turn numbers farther apart than this are in the order of their corner measures.
///
/// Let r = |cos t| + |sin t|. The turn number of an angle t is sin t / r up to 90 degrees and
/// 2 - sin t / r from there on; its slope is 1 / r^2, so it differs by no more than the angles do
/// in radians. With u = 2^-53, x and y are off by less than 3 u of the product of the two lengths,
/// which is at most |x| + |y|, so that a turn number is off by less than 16 u. Where x is negative,
/// the two chords slope to different sides, and both terms of y have the sign of the first one's
/// slope: y cannot cancel, and `side` is exact. A corner measure in radians is off by 6 u for its
/// roundings and twice the error of the C library's atan, which may be as great as 1e-11 here. All
/// this is less than a tenth of the margin.
constexpr double kTurnMargin = 1e-9;

/// The slopes at the points of a profile. Angles are in degrees. The sign of an angle comes from z
/// alone, so that a line traversed with falling y behaves like one with rising y.
class Slopes {
 public:
  /// One range after the other; neighbours are in a point's own range. The ranges must cover the
  /// profile, which must outlive the slopes.
  Slopes(const Profile& profile, const std::vector<PointRange>& ranges, const SlopeSearch& search);

  /// All points as one range.
  Slopes(const Profile& profile, const SlopeSearch& search)
      : Slopes(profile, {{0, profile.size() - 1}}, search) {}

  [[nodiscard]] int size() const {
    return static_cast<int>(turns_.size());
  }
  /// Whether there are slopes at a point. Where there are none, all that follows is 0.
  [[nodiscard]] bool exist(int i) const {
    return backward_[i] != kNoPoint || forward_[i] != kNoPoint;
  }

  /// Angle of the chord from the backward neighbour.
  [[nodiscard]] double backwardAngle(int i) const {
    return backward_[i] != kNoPoint ? chordAngle(backward_[i], i) : 0.0;
  }
  /// Angle of the chord to the forward neighbour.
  [[nodiscard]] double forwardAngle(int i) const {
    return forward_[i] != kNoPoint ? chordAngle(i, forward_[i]) : 0.0;
  }
  /// The corner measure: the backward angle minus the forward angle.
  [[nodiscard]] double corner(int i) const {
    return hasBoth(i) ? -(forwardAngle(i) - backwardAngle(i)) : 0.0;
  }
  /// The turn number of the corner measure: 0 where that is 0 for lack of a neighbour, and NaN
  /// where there are no slopes.
  [[nodiscard]] double turn(int i) const {
    return turns_[i];
  }
  /// A number that has the sign of the corner measure, and is NaN with it.
  [[nodiscard]] double cornerSign(int i) const {
    return std::abs(turns_[i]) > kTurnMargin ? turns_[i] : corner(i);
  }

  /// z of the backward neighbour of a point that has one.
  [[nodiscard]] double backwardZ(int i) const {
    return profile_.z[backward_[i]];
  }
  /// z of the forward neighbour of a point that has one.
  [[nodiscard]] double forwardZ(int i) const {
    return profile_.z[forward_[i]];
  }

 private:
  [[nodiscard]] bool hasBoth(int i) const {
    return backward_[i] != kNoPoint && forward_[i] != kNoPoint;
  }
  [[nodiscard]] double chordAngle(int from, int to) const {
    const double dz = profile_.z[to] - profile_.z[from];
    return std::atan(dz / std::abs(profile_.y[to] - profile_.y[from])) * 180.0 / 3.141592653589793;
  }

  const Profile& profile_;
  std::vector<int> backward_;  ///< The backward neighbour of each point, or `kNoPoint`.
  std::vector<int> forward_;
  std::vector<double> turns_;
};

}  // namespace scanline::detail
