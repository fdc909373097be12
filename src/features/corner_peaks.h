#pragma once

#include <vector>

#include "features/slopes.h"
#include "features/valid_profile.h"

/// The extrema of the corner measure along a line, and the peaks among them. Points are given by
/// their indices in the profile, in line order.
namespace scanline::detail {

/// Where the corner measure stops growing (`maxima`) or falling (`minima`).
struct CornerExtrema {
  std::vector<int> maxima;
  std::vector<int> minima;
};

/// Which extrema a change of direction reports.
enum class ExtremaSign {
  kAny,       ///< All of them.
  kMatching,  ///< Maxima above 0 and minima below 0; the one pending at the end in any case.
};

CornerExtrema findExtrema(const Slopes& slopes, ExtremaSign sign);

/// What makes an extremum a peak.
struct PeakRule {
  /// What is compared.
  enum class Measure { kValue, kMagnitude };

  double cornerTh;       ///< Least measure of a peak.
  double windowSquared;  ///< Square of the greatest distance in y of an extremum that counts.
  Measure measure;
};

/// The candidates that reach the threshold and have no greater one within the window.
std::vector<int> findPeaks(const std::vector<int>& candidates,
                           const Slopes& slopes,
                           const ValidProfile& profile,
                           const PeakRule& rule);

}  // namespace scanline::detail
