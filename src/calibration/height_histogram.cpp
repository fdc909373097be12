#include "calibration/height_histogram.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace scanline::detail {

namespace {

/// Appends the empty bins up to `next` that the profile needs.
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

}  // namespace

int binCount(const STeskRangeD& heights) {
  const double span = heights.max - heights.min;
  if (!std::isfinite(span)) {
    return 0;
  }
  if (span >= static_cast<double>(std::numeric_limits<int>::max())) {
    throw std::length_error("height histogram");
  }
  return static_cast<int>(span) + 1;
}

BinCounts emptyBins(int bins) {
  BinCounts counts(static_cast<std::size_t>(bins));
  for (int bin = 0; bin < bins; ++bin) {
    counts[bin].bin = bin;
  }
  return counts;
}

BinCounts joinCounts(BinCounts counts) {
  std::sort(counts.begin(), counts.end(),
            [](const BinCount& a, const BinCount& b) { return a.bin < b.bin; });
  BinCounts joined;
  for (const BinCount& next : counts) {
    if (joined.empty() || joined.back().bin != next.bin) {
      appendGap(joined, next.bin);
      joined.push_back({next.bin, 0});
    }
    joined.back().count += next.count;
  }
  return joined;
}

}  // namespace scanline::detail
