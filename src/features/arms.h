#pragma once

#include <cmath>
#include <optional>
#include <vector>

#include "features/neighbours.h"
#include "features/profile.h"
#include "features/turn_number.h"

/// The arms at the points of a profile: the chords to the neighbours at a distance.
namespace scanline::detail {

/// Angle of a chord in degrees. Its sign comes from z alone, so that a line traversed with falling
/// y has the same angles.
inline double chordAngle(const Profile& profile, int from, int to) {
  const double dz = profile.z[to] - profile.z[from];
  return std::atan(dz / std::abs(profile.y[to] - profile.y[from])) * 180.0 / 3.141592653589793;
}

/// What becomes of a point with a neighbour on one side only.
enum class MissingNeighbour {
  kNoArms,  ///< It has no arms.
  kLevel,   ///< The missing arm has an angle of 0, and so has the turn.
};

struct ArmSearch {
  double scale;                    ///< Smallest distance of a neighbour.
  std::optional<double> maxChord;  ///< A neighbour at this distance or beyond counts as missing.
  MissingNeighbour missing;        ///< What becomes of a point with one neighbour.

  /// Arms across gaps of any width, at points with both neighbours.
  static ArmSearch unlimited(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kNoArms};
  }
  /// Arms at points with at least one neighbour.
  static ArmSearch oneSided(double scale) {
    return {scale, std::nullopt, MissingNeighbour::kLevel};
  }
};

/// The arms at the points of a profile. Angles are in degrees, and computed on request.
class Arms {
 public:
  /// Neighbours lie in the range of their point. The ranges must cover the profile, which must
  /// outlive the arms.
  Arms(const Profile& profile, const std::vector<PointRange>& ranges, const ArmSearch& search);

  /// All points as one range.
  Arms(const Profile& profile, const ArmSearch& search)
      : Arms(profile, {{0, profile.count() - 1}}, search) {}

  [[nodiscard]] int count() const {
    return static_cast<int>(turnNumbers_.size());
  }
  /// Whether point `i` has arms. All angles of a point without arms are 0.
  [[nodiscard]] bool exist(int i) const {
    return backward(i) != kNoPoint || forward(i) != kNoPoint;
  }

  /// Angle of the chord from the backward neighbour; 0 without one.
  [[nodiscard]] double backwardAngle(int i) const {
    return backward(i) != kNoPoint ? chordAngle(profile_, backward(i), i) : 0.0;
  }
  /// Angle of the chord to the forward neighbour; 0 without one.
  [[nodiscard]] double forwardAngle(int i) const {
    return forward(i) != kNoPoint ? chordAngle(profile_, i, forward(i)) : 0.0;
  }
  /// The backward angle minus the forward angle; 0 unless both neighbours exist.
  [[nodiscard]] double turnAngle(int i) const {
    return hasBoth(i) ? -(forwardAngle(i) - backwardAngle(i)) : 0.0;
  }
  /// The turn number of the turn angle; NaN without arms.
  [[nodiscard]] double turnNumber(int i) const {
    return turnNumbers_[i];
  }
  /// A number with the sign of the turn angle; NaN if the turn angle is.
  [[nodiscard]] double turnSign(int i) const {
    return std::abs(turnNumbers_[i]) > kTurnMargin ? turnNumbers_[i] : turnAngle(i);
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

  const Profile& profile_;
  Neighbours neighbours_;
  std::vector<double> turnNumbers_;
};

}  // namespace scanline::detail
