#pragma once

#include <optional>
#include <vector>

#include "features/profile.h"

namespace scanline::detail {

/// The nearest points by index, on either side of each point of a profile, that are far enough away
/// in the y-z plane; `kNoPoint` where there is none.
struct Neighbours {
  std::vector<int> backward;
  std::vector<int> forward;
};

/// Finds the neighbours that are at least `scale` away. They lie in the range of their point; the
/// ranges must cover the profile. If the nearest point that is far enough away is at `maxChord` or
/// beyond, there is no neighbour on that side; `maxChord` must not be below the scale.
Neighbours findNeighbours(const Profile& profile,
                          const std::vector<PointRange>& ranges,
                          double scale,
                          std::optional<double> maxChord = std::nullopt);

}  // namespace scanline::detail
