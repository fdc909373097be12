#pragma once

#include <cstdint>
#include <vector>

#include "records/scan_view.h"

/// The distribution of the heights of a scan.
namespace scanline::detail {

/// The width of a bin in z.
constexpr double kBinWidth = 1.0;

/// The reach of the window of the height profile to either side, in bins.
constexpr int kProfileReach = 5;

/// A bin and the number of samples in it. Bin 0 begins at the smallest z.
struct BinCount {
  int bin;
  std::uint32_t count;
};

/// Bins in ascending order. If a gap between two occupied bins is wider than the windows of the
/// profile reach, only its ends may be stored.
using BinCounts = std::vector<BinCount>;

struct HeightHistogram {
  BinCounts counts;
  std::uint64_t total;  ///< The number of valid samples, including those without a bin.
};

/// The smallest and the largest z of the valid samples.
STeskRangeD heightBounds(const ScanView& scan);

/// The number of bins for a range of heights, 0 if a limit is not finite. Throws std::length_error
/// if it exceeds an int.
int binCount(const STeskRangeD& heights);

/// Counts the valid samples in each bin. Memory and time depend on the number of samples, not on
/// the span of their heights.
HeightHistogram countHeights(const ScanView& scan, double minHeight, int bins);

}  // namespace scanline::detail
