#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "calibration/height_histogram.h"

/// The search for a reference plane by the distribution of the heights of a scan, step by step.
namespace scanline::detail {

/// The bins of a profile at which it turns, and its sums there.
struct ProfileExtrema {
  BinCounts peaks;
  BinCounts valleys;
};

/// The bins of the valleys on either side of a peak, where there are any.
struct ValleyBounds {
  std::optional<int> lower;
  std::optional<int> upper;
};

/// Where the plane's samples lie in z.
struct PlaneWindow {
  STeskRangeD heights;       ///< Both ends belong to the window.
  std::size_t sampleBudget;  ///< About how many samples lie in it, hardly ever too few.
};

/// The counts summed over a window of 11 bins, which the ends cut off; the counts themselves if
/// that leaves a profile without any relief.
BinCounts heightProfile(const BinCounts& counts);

/// Walks a profile upwards and notes where it turns. A plateau counts by its last bin; bin 0 is
/// never an extremum, and the last bin is one if the profile ends on a rise or a fall.
ProfileExtrema findExtrema(const BinCounts& profile);

/// The lowest peak of more than a tenth of the samples.
std::optional<BinCount> choosePeak(const BinCounts& peaks, std::uint64_t total);

/// The nearest valleys below and above a peak that reach down to less than half of it.
ValleyBounds enclosingValleys(const BinCounts& valleys, const BinCount& peak);

/// The heights between the valleys; an end without a valley is that of all heights.
STeskRangeD heightWindow(const STeskRangeD& heights, const ValleyBounds& bounds);

/// How many samples the bins between the valleys hold, both ends included.
std::size_t samplesBetween(const BinCounts& counts, const ValleyBounds& bounds);

/// The steps from a histogram to the window of its lowest strong peak; nothing if it has none.
std::optional<PlaneWindow> findWindow(const HeightHistogram& histogram, const STeskRangeD& heights);

/// The whole search; nothing if the scan shows no plane.
template <typename Scan>
std::optional<PlaneWindow> findPlaneWindow(const Scan& scan) {
  const STeskRangeD heights = heightBounds(scan);
  const int bins = binCount(heights);
  if (bins == 0) {
    return std::nullopt;
  }
  return findWindow(countHeights(scan, heights.min, bins), heights);
}

}  // namespace scanline::detail
