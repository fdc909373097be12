#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/corner_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {

/// The valid points of a line, cut into stretches of continuous ones. Unlike runs, stretches go on
/// across holes: only the step from valid point to valid point counts.
struct Stretches {
  Samples points;                  ///< Copies of the samples, with the caller's stamps.
  std::vector<int> sampleOf;       ///< Index on the line of each point.
  std::vector<PointRange> ranges;  ///< The stretches; together they are all points.

  /// The samples of a line that a stretch spans, holes counted.
  [[nodiscard]] SQO_RUN spanOf(const PointRange& range, int value) const {
    const int start = sampleOf[range.first];
    return {start, sampleOf[range.last] - start + 1, value};
  }
};

/// Cuts a line where `continues(before, point)` denies that a valid point continues the one before.
/// Samples above `maxZ` are holes.
template <typename Continues>
Stretches findStretches(const STesk3DPosition* lineData,
                        int dataSize,
                        double maxZ,
                        Continues continues) {
  Stretches found;
  if (dataSize > 0) {
    found.points.reserve(static_cast<std::size_t>(dataSize));
    found.sampleOf.reserve(static_cast<std::size_t>(dataSize));
  }
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPosition& sample = lineData[i];
    if (isHole(sample.pt3D.z) || sample.pt3D.z > maxZ) {
      continue;
    }
    const int point = static_cast<int>(found.points.size());
    if (found.ranges.empty() || !continues(found.points.back().pt3D, sample.pt3D)) {
      found.ranges.push_back({point, point});
    }
    found.ranges.back().last = point;
    found.points.push_back(sample);
    found.sampleOf.push_back(i);
  }
  return found;
}

/// Stretches without a step in z of `stepZ` or more. Samples above `maxZ` are holes.
Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ, double maxZ);

/// Stretches without a step in z of `stepZ` or more, or in y of `stepY` or more.
Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ);

/// Writes every sample's index on the line into its working word.
void stampIndices(std::vector<STesk3DPosition>& lineData);

/// A line's stretches with the slopes at their points, none of which leaves its stretch.
struct SlopedStretches {
  Stretches stretches;
  Slopes slopes;
};

/// Cuts a line by steps in z and takes the slopes over `scale`. The points are stamped with their
/// samples' indices.
SlopedStretches slopedStretches(const std::vector<STesk3DPosition>& lineData,
                                double stepZ,
                                double scale);

// Marks that line functions leave on the samples at the ends of stretches.
constexpr int kStretchStartMark = 0x100000;
constexpr int kStretchEndMark = 0x200000;

/// Marks the first and the last sample of each stretch in the caller's line.
void markStretchEnds(const Stretches& stretches, STesk3DPosition* lineData);

}  // namespace scanline::detail
