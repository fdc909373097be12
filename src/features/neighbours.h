#pragma once

#include <optional>
#include <vector>

#include "features/profile.h"

namespace scanline::detail {

/// For each point of a profile, the first points before and after it that are far enough away in
/// the y-z plane; `kNoPoint` if there is none.
struct Neighbours {
  std::vector<int> backward;
  std::vector<int> forward;
};

/// Finds the neighbours at a distance of at least `scale`, in the range of their point. The ranges
/// must cover the profile. If the first point that is far enough away is at `maxChord` or beyond,
/// there is no neighbour on that side; `maxChord` must not be below the scale.
Neighbours findNeighbours(const Profile& profile,
                          const std::vector<PointRange>& ranges,
                          double scale,
                          std::optional<double> maxChord = std::nullopt);

}  // namespace scanline::detail
