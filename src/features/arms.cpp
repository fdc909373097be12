// Finds the arms of the points of a profile and compares their directions.
#include "features/arms.h"

#include <limits>

namespace scanline::detail {
namespace {

/// The turn number of the angle between the chords from `b` to `i` and from `i` to `f`.
inline double turnBetween(const Profile& profile, int b, int i, int f) {
  const double* const y = profile.y.data();
  const double* const z = profile.z.data();
  const double backwardY = std::abs(y[i] - y[b]);
  const double backwardZ = z[i] - z[b];
  const double forwardY = std::abs(y[f] - y[i]);
  const double forwardZ = z[f] - z[i];
  return turnNumber(backwardY * forwardY + backwardZ * forwardZ,
                    backwardZ * forwardY - backwardY * forwardZ, backwardZ);
}

}  // namespace

Arms::Arms(const Profile& profile, const std::vector<PointRange>& ranges, const ArmSearch& search)
    : profile_(profile),
      neighbours_(findNeighbours(profile, ranges, search.scale, search.maxChord)),
      turnNumbers_(profile.index.size()) {
  for (int i = 0; i < profile.count(); ++i) {
    if (hasBoth(i)) {
      turnNumbers_[i] = turnBetween(profile, backward(i), i, forward(i));
    } else if (exist(i) && search.missing == MissingNeighbour::kLevel) {
      turnNumbers_[i] = 0.0;
    } else {
      neighbours_.backward[i] = kNoPoint;
      neighbours_.forward[i] = kNoPoint;
      turnNumbers_[i] = std::numeric_limits<double>::quiet_NaN();
    }
  }
}

}  // namespace scanline::detail
