#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "records/sample_rules.h"
#include "records/scan_view.h"

/// The search for a reference plane by the distribution of the heights of a scan, step by step.
namespace scanline::detail {

/// Numbers of samples in height bins 1.0 wide; bin 0 begins at the lowest height.
using BinCounts = std::vector<std::uint32_t>;

struct HeightHistogram {
  BinCounts counts;
  std::uint64_t total;  ///< All samples, those of no bin included.
};

/// A peak or a valley of a profile.
struct Extremum {
  int bin;
  std::uint32_t value;
};

/// Both lists in ascending order of the bins.
struct ProfileExtrema {
  std::vector<Extremum> peaks;
  std::vector<Extremum> valleys;
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

/// The lowest and the highest z of the samples.
template <typename Scan>
STeskRangeD heightBounds(const Scan& scan) {
  STeskRangeD heights = kEmptyRange;
  forEachSample(scan, [&](const STesk3DPosition& sample) {
    if (!isNoSample(sample.pt3D.z)) {
      foldIntoRange(heights, sample.pt3D.z);
    }
  });
  return heights;
}

/// How many bins the heights need: 0 without heights and for heights that are not finite. Throws
/// std::length_error where an int cannot number the bins.
int binCount(const STeskRangeD& heights);

template <typename Scan>
HeightHistogram countHeights(const Scan& scan, double lowest, int bins) {
  HeightHistogram histogram = {BinCounts(static_cast<std::size_t>(bins)), 0};
  forEachSample(scan, [&](const STesk3DPosition& sample) {
    if (isNoSample(sample.pt3D.z)) {
      return;
    }
    ++histogram.total;
    const double offset = sample.pt3D.z - lowest;
    // Only what is not a number fails here and has no bin.
    if (offset < static_cast<double>(bins)) {
      ++histogram.counts[static_cast<std::size_t>(static_cast<int>(offset))];
    }
  });
  return histogram;
}

/// The counts summed over a window of 11 bins, which the ends cut off; the counts themselves if
/// that leaves a profile without any relief.
BinCounts heightProfile(const BinCounts& counts);

/// Walks a profile upwards and notes where it turns. A plateau counts by its last bin; bin 0 is
/// never an extremum, and the last bin is one if the profile ends on a rise or a fall.
ProfileExtrema findExtrema(const BinCounts& profile);

/// The lowest peak of more than a tenth of the samples.
std::optional<Extremum> choosePeak(const std::vector<Extremum>& peaks, std::uint64_t total);

/// The nearest valleys below and above a peak that reach down to less than half of it.
ValleyBounds enclosingValleys(const std::vector<Extremum>& valleys, const Extremum& peak);

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
