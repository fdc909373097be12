#pragma once

#include <optional>

#include "roads/gaps.h"

namespace program {

/// The gap between two edges with a floor that is deeper than both, its edges moved to the last
/// samples of the rims. Nothing if what lies between is not deeper, or if the width is out of the
/// limits.
std::optional<Gap> gapWithFloor(
    const Line& line, int lineIdx, int first, int last, const GapParams& params);

/// The gap between two measured samples with only holes between them. Nothing if the rims differ in
/// z, as beside a shadow, or if the width is out of the limits.
std::optional<Gap> openGap(
    const Line& line, int lineIdx, int first, int last, const GapParams& params);

}  // namespace program
