#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "records/sample_rules.h"
#include "records/scan_view.h"

/// The distribution of the heights of a scan.
namespace scanline::detail {

/// How many bins the window of the height profile reaches to either side.
constexpr int kProfileReach = 5;

/// Up to this many bins per sample, all bins are stored.
constexpr int kStoredBinsPerSample = 8;

/// A height bin, 1.0 wide, and the samples in it. Bin 0 begins at the lowest height.
struct BinCount {
  int bin;
  std::uint32_t count;
};

/// Bins in ascending order. Of a gap between two occupied bins that is too wide for a window of the
/// profile to reach across, only the ends may be stored.
using BinCounts = std::vector<BinCount>;

struct HeightHistogram {
  BinCounts counts;
  std::uint64_t total;  ///< All samples, those of no bin included.
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

/// The bins from 0 on, all empty.
BinCounts emptyBins(int bins);

/// Joins the counts of each bin and fills in the empty bins that a window of the profile reaches,
/// and the one below them. The profile is 0 in all that are left out, as it is in that one.
BinCounts joinCounts(BinCounts counts);

/// Calls `take(bin)` for every sample that has a bin. Returns the number of all samples.
template <typename Scan, typename Take>
std::uint64_t forEachBin(const Scan& scan, double lowest, int bins, Take take) {
  std::uint64_t total = 0;
  forEachSample(scan, [&](const STesk3DPosition& sample) {
    if (isNoSample(sample.pt3D.z)) {
      return;
    }
    ++total;
    const double offset = sample.pt3D.z - lowest;
    // Only what is not a number fails here and has no bin.
    if (offset < static_cast<double>(bins)) {
      take(static_cast<int>(offset));
    }
  });
  return total;
}

/// Counts the samples by their bins. Memory and time follow the number of samples, however far
/// apart the heights are.
template <typename Scan>
HeightHistogram countHeights(const Scan& scan, double lowest, int bins) {
  HeightHistogram histogram = {};
  BinCounts& counts = histogram.counts;
  if (static_cast<std::size_t>(bins) <= kStoredBinsPerSample * sampleCount(scan)) {
    counts = emptyBins(bins);
    histogram.total = forEachBin(scan, lowest, bins, [&](int bin) { ++counts[bin].count; });
    return histogram;
  }
  histogram.total = forEachBin(scan, lowest, bins, [&](int bin) {
    // Neighbours often share a bin.
    if (counts.empty() || counts.back().bin != bin) {
      counts.push_back({bin, 0});
    }
    ++counts.back().count;
  });
  counts = joinCounts(std::move(counts));
  return histogram;
}

}  // namespace scanline::detail
