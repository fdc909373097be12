#pragma once

#include <deque>

#include "base/scan.h"

namespace program {

/// Splits points in the order of a scan into its lines: where the axis that changes fast jumps
/// back. Takes the points out of the list as it goes, so that there never are two copies of all.
Scan splitIntoLines(std::deque<STesk3DPoint>& points);

}  // namespace program
