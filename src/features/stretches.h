#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/profile.h"

namespace scanline::detail {

/// The valid points of a line, cut into stretches of continuous ones. Unlike runs, stretches go on
/// across holes: only the step from valid point to valid point counts.
struct Stretches {
  Profile points;
  std::vector<PointRange> ranges;  ///< The stretches; together they are all points.

  /// The samples of a line that a stretch spans, holes counted.
  [[nodiscard]] SQO_RUN spanOf(const PointRange& range, int value) const {
    const int start = points.index[range.first];
    return {start, points.index[range.last] - start + 1, value};
  }
};

/// Stretches without a step in z of `stepZ` or more.
Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ);

/// The same where samples above `maxZ` are holes.
Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ, double maxZ);

/// Stretches without a step in z of `stepZ` or more, or in y of `stepY` or more.
Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ);

// Marks that line functions leave on the samples at the ends of stretches.
constexpr int kStretchStartMark = 0x100000;
constexpr int kStretchEndMark = 0x200000;

/// Marks the first and the last sample of each stretch in the caller's line.
void markStretchEnds(const Stretches& stretches, STesk3DPosition* lineData);

}  // namespace scanline::detail
