#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/profile.h"

namespace scanline::detail {

/// The samples of a line that are not holes, cut into stretches at steps. Unlike the runs of
/// line_runs.h, stretches continue across holes; the public headers call both runs.
struct Stretches {
  Profile points;
  std::vector<PointRange> ranges;  ///< The stretches in order; together they cover the profile.
};

/// Cuts at steps in z of `stepZ` or more.
Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ);

/// The same without the samples above `maxZ`.
Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ, double maxZ);

/// Cuts at steps of `stepY` or more in y, or of `stepZ` or more in z.
Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ);

// Bits in the words of the samples at the ends of stretches.
constexpr int kStretchStartMark = 0x100000;
constexpr int kStretchEndMark = 0x200000;

/// Sets these bits in the caller's line.
void markStretchEnds(const Stretches& stretches, STesk3DPosition* lineData);

}  // namespace scanline::detail
