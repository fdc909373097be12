#pragma once

#include <cmath>
#include <optional>
#include <vector>

#include "features/neighbours.h"
#include "features/turn_number.h"
#include "features/valid_profile.h"

/// The slopes of a line to either side of its points, measured over a distance.
namespace scanline::detail {

/// Angle of a chord in degrees. Its sign comes from z alone, so that a line traversed with falling
/// y behaves like one with rising y.
inline double chordAngle(const ValidProfile& profile, int from, int to) {
  const double dz = profile.z[to] - profile.z[from];
  return std::atan(dz / std::abs(profile.y[to] - profile.y[from])) * 180.0 / 3.141592653589793;
}

/// What becomes of a point with a neighbour on one side only.
enum class MissingNeighbour {
  kNoSlopes,  ///< It has no slopes.
  kLevel,     ///< The angle to the missing side is 0, and so is the corner measure.
};

/// How slopes are measured.
struct SlopeSearch {
  double scale;                    ///< Least distance of a neighbour.
  std::optional<double> maxChord;  ///< Least distance of a neighbour that counts as missing.
  MissingNeighbour missing;        ///< What becomes of a point with one neighbour.

  /// Slopes across gaps of any width, at points with both neighbours.
  static SlopeSearch unlimited(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kNoSlopes};
  }
  /// Slopes at points with at least one neighbour.
  static SlopeSearch oneSided(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kLevel};
  }
};

/// The slopes at the points of a profile; angles are in degrees, and computed only when asked for.
class Slopes {
 public:
  /// Neighbours lie in the range of their point. The ranges must cover the profile, which must
  /// outlive the slopes.
  Slopes(const ValidProfile& profile,
         const std::vector<PointRange>& ranges,
         const SlopeSearch& search);

  /// All points as one range.
  Slopes(const ValidProfile& profile, const SlopeSearch& search)
      : Slopes(profile, {{0, profile.count() - 1}}, search) {}

  [[nodiscard]] int count() const {
    return static_cast<int>(turns_.size());
  }
  /// Whether there are slopes at a point. Without, its angles and its corner measure are 0.
  [[nodiscard]] bool exist(int i) const {
    return backward(i) != kNoPoint || forward(i) != kNoPoint;
  }

  /// Angle of the chord from the backward neighbour.
  [[nodiscard]] double backwardAngle(int i) const {
    return backward(i) != kNoPoint ? chordAngle(profile_, backward(i), i) : 0.0;
  }
  /// Angle of the chord to the forward neighbour.
  [[nodiscard]] double forwardAngle(int i) const {
    return forward(i) != kNoPoint ? chordAngle(profile_, i, forward(i)) : 0.0;
  }
  /// The corner measure: the backward angle minus the forward angle.
  [[nodiscard]] double corner(int i) const {
    return hasBoth(i) ? -(forwardAngle(i) - backwardAngle(i)) : 0.0;
  }
  /// The turn number of the corner measure; NaN where there are no slopes.
  [[nodiscard]] double turn(int i) const {
    return turns_[i];
  }
  /// A number with the sign of the corner measure; NaN if that is.
  [[nodiscard]] double cornerSign(int i) const {
    return std::abs(turns_[i]) > kTurnMargin ? turns_[i] : corner(i);
  }

  /// z of the backward neighbour of a point that has one.
  [[nodiscard]] double backwardZ(int i) const {
    return profile_.z[backward(i)];
  }
  /// z of the forward neighbour of a point that has one.
  [[nodiscard]] double forwardZ(int i) const {
    return profile_.z[forward(i)];
  }

 private:
  [[nodiscard]] int backward(int i) const {
    return neighbours_.backward[i];
  }
  [[nodiscard]] int forward(int i) const {
    return neighbours_.forward[i];
  }
  [[nodiscard]] bool hasBoth(int i) const {
    return backward(i) != kNoPoint && forward(i) != kNoPoint;
  }

  const ValidProfile& profile_;
  Neighbours neighbours_;
  std::vector<double> turns_;
};

}  // namespace scanline::detail
