#pragma once

#include <vector>

#include "features/flat_steps.h"

namespace scanline::detail {

/// A place of a nearly flat line that may become a feature: one step, or two that make a pair. The
/// ends are indices in the profile.
struct FlatDent {
  enum Kind {
    kJump,          ///< A jump, alone or with its partner.
    kSlopePair,     ///< A rising slope with the falling one after it.
    kFallingSlope,  ///< A slope without partner.
    kRisingSlope,   ///< A slope without partner.
  };

  Kind kind;
  int first;
  int last;
};

/// Pairs each step of a line with the next one where possible, in order. A step belongs to one dent
/// at most; a rising slope that is the last step is dropped.
std::vector<FlatDent> pairSteps(const Profile& profile,
                                const FlatSteps& steps,
                                const FlatLineLimits& limits);

}  // namespace scanline::detail
