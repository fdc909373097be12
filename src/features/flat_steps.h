#pragma once

#include <vector>

#include "features/profile.h"

/// The steps of a nearly flat line, measured over a stretch of y.
namespace scanline::detail {

enum class StepKind { kNone, kFallingJump, kRisingJump, kFallingSlope, kRisingSlope };

/// A step between two valid samples, as indices in the profile.
struct FlatStep {
  StepKind kind;
  int first;
  int last;
  double dz;     ///< Growth of z.
  double slope;  ///< Growth of z over the distance in y.

  [[nodiscard]] bool isJump() const {
    return kind == StepKind::kFallingJump || kind == StepKind::kRisingJump;
  }
};

using FlatSteps = std::vector<FlatStep>;

/// The limits that separate jumps, slopes and dents.
struct FlatLineLimits {
  double slopeWin_y;   ///< Distance in y over which a slope is measured.
  double jumpTh_z;     ///< Step in z between neighbours that makes a jump.
  double peakWidth_y;  ///< Width of a dent; a gap of half of it is a jump.
};

/// The steepest step of each monotone stretch of the line, in order.
FlatSteps steepestSteps(const Profile& profile, const FlatLineLimits& limits);

}  // namespace scanline::detail
