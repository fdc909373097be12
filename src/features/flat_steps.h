#pragma once

#include <vector>

#include "features/profile.h"

/// The steps of a nearly flat line: jumps, and slopes over a window in y.
namespace scanline::detail {

enum class StepKind { kNone, kFallingJump, kRisingJump, kFallingSlope, kRisingSlope };

/// A step between two measured samples. Both are indices in the profile.
struct FlatStep {
  StepKind kind;
  int first;
  int last;
  double dz;     ///< Change of z.
  double slope;  ///< Change of z divided by the distance in y.

  [[nodiscard]] bool isJump() const {
    return kind == StepKind::kFallingJump || kind == StepKind::kRisingJump;
  }
};

using FlatSteps = std::vector<FlatStep>;

/// The limits of jumps, slopes and dents.
struct FlatLineLimits {
  double slopeWin_y;   ///< Distance in y over which a slope is measured.
  double jumpTh_z;     ///< Change of z that makes a jump, strict.
  double peakWidth_y;  ///< Width of a dent; more than half of it in y makes a jump too.
};

/// The steepest step of each monotone row of steps, in line order.
FlatSteps steepestSteps(const Profile& profile, const FlatLineLimits& limits);

}  // namespace scanline::detail
