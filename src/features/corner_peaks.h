#pragma once

#include <vector>

#include "features/arms.h"
#include "features/profile.h"

/// The extrema of the turn angle along a line, and the peaks among them, in line order.
namespace scanline::detail {

/// The points where the turn angle stops growing (`maxima`) or falling (`minima`).
struct CornerExtrema {
  std::vector<int> maxima;
  std::vector<int> minima;
};

/// Which extrema are listed.
enum class ExtremaSign {
  kAny,       ///< All of them.
  kMatching,  ///< Maxima above 0 and minima below 0; the one at the end whatever its sign.
};

CornerExtrema findExtrema(const Arms& arms, ExtremaSign sign);

/// What makes an extremum a peak.
struct PeakRule {
  /// What is compared of the turn angles.
  enum class Measure { kValue, kMagnitude };

  double cornerTh;       ///< Smallest measure of a peak.
  double windowSquared;  ///< Square of the distance in y within which a greater one suppresses.
  Measure measure;
};

/// The extrema that reach the threshold and that no greater one suppresses.
std::vector<int> findPeaks(const std::vector<int>& extrema,
                           const Arms& arms,
                           const Profile& profile,
                           const PeakRule& rule);

}  // namespace scanline::detail
