// Counts the heights of the samples of a scan in bins.
#include "calibration/height_histogram.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>

#include "records/sample_rules.h"

namespace scanline::detail {

namespace {

/// Up to this many bins per sample, all bins are stored, empty ones too.
constexpr std::size_t kStoredBinsPerSample = 4;

/// Neighbours mostly share a bin. Counting them with several counters in turn avoids waiting for
/// the preceding increment of the same counter.
constexpr std::size_t kCounters = 4;
using Counters = std::array<std::uint32_t, kCounters>;

/// Calls `take(bin)` for each valid sample that has a bin. Returns the number of valid samples.
template <typename Take>
std::uint64_t forEachBin(const ScanView& scan, double minHeight, int bins, Take take) {
  std::uint64_t total = 0;
  for (const LineView& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMissing(sample.pt3D.z)) {
        continue;
      }
      ++total;
      const double offset = (sample.pt3D.z - minHeight) / kBinWidth;
      // Only NaN fails this test. It has no bin.
      if (offset < static_cast<double>(bins)) {
        take(static_cast<int>(offset));
      }
    }
  }
  return total;
}

/// Counts with storage for all bins.
HeightHistogram countInAllBins(const ScanView& scan, double minHeight, int bins) {
  std::vector<Counters> counters(static_cast<std::size_t>(bins), Counters{});
  HeightHistogram histogram = {};
  std::size_t next = 0;
  histogram.total = forEachBin(scan, minHeight, bins, [&](int bin) {
    ++counters[bin][next % kCounters];
    ++next;
  });
  histogram.counts.reserve(counters.size());
  for (int bin = 0; bin < bins; ++bin) {
    const Counters& c = counters[bin];
    histogram.counts.push_back({bin, c[0] + c[1] + c[2] + c[3]});
  }
  return histogram;
}

/// Appends the empty bins before `next` that the profile needs: those whose window reaches an
/// occupied bin, and the one below the window of `next`. The profile is 0 there, as in all bins
/// that are left out.
void appendGap(BinCounts& counts, int next) {
  const int first = counts.empty() ? next : counts.back().bin + 1;
  const int end = first + std::min(next - first, kProfileReach);
  for (int bin = first; bin < end; ++bin) {
    counts.push_back({bin, 0});
  }
  for (int bin = std::max(end, next - kProfileReach - 1); bin < next; ++bin) {
    counts.push_back({bin, 0});
  }
}

/// Merges the counts of each bin and fills the gaps between bins.
BinCounts mergeCounts(BinCounts counts) {
  std::sort(counts.begin(), counts.end(),
            [](const BinCount& a, const BinCount& b) { return a.bin < b.bin; });
  BinCounts merged;
  for (const BinCount& next : counts) {
    if (merged.empty() || merged.back().bin != next.bin) {
      appendGap(merged, next.bin);
      merged.push_back({next.bin, 0});
    }
    merged.back().count += next.count;
  }
  return merged;
}

/// Counts with storage for occupied bins only.
HeightHistogram countInOccupiedBins(const ScanView& scan, double minHeight, int bins) {
  HeightHistogram histogram = {};
  BinCounts counts;
  histogram.total = forEachBin(scan, minHeight, bins, [&](int bin) {
    // Neighbours often share a bin, so this keeps the list short.
    if (counts.empty() || counts.back().bin != bin) {
      counts.push_back({bin, 0});
    }
    ++counts.back().count;
  });
  histogram.counts = mergeCounts(std::move(counts));
  return histogram;
}

}  // namespace

STeskRangeD heightBounds(const ScanView& scan) {
  STeskRangeD heights = kEmptyRange;
  for (const LineView& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMissing(sample.pt3D.z)) {
        foldIntoRange(heights, sample.pt3D.z);
      }
    }
  }
  return heights;
}

int binCount(const STeskRangeD& heights) {
  const double span = (heights.max - heights.min) / kBinWidth;
  if (!std::isfinite(span)) {
    return 0;
  }
  if (span >= static_cast<double>(std::numeric_limits<int>::max())) {
    throw std::length_error("height histogram");
  }
  return static_cast<int>(span) + 1;
}

HeightHistogram countHeights(const ScanView& scan, double minHeight, int bins) {
  return static_cast<std::size_t>(bins) <= kStoredBinsPerSample * sampleCount(scan)
             ? countInAllBins(scan, minHeight, bins)
             : countInOccupiedBins(scan, minHeight, bins);
}

}  // namespace scanline::detail
