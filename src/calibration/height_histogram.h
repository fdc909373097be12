#pragma once

#include <cstdint>
#include <vector>

#include "records/scan_view.h"

/// The distribution of the heights of a scan.
namespace scanline::detail {

/// The height of a bin.
constexpr double kBinWidth = 1.0;

/// How many bins the window of the height profile reaches to either side.
constexpr int kProfileReach = 5;

/// A height bin and the samples in it. Bin 0 begins at the lowest height.
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
STeskRangeD heightBounds(const ScanView& scan);

/// How many bins the heights need: 0 without heights and for heights that are not finite. Throws
/// std::length_error where an int cannot number the bins.
int binCount(const STeskRangeD& heights);

/// Counts the samples by their bins. Memory and time follow the number of samples, however far
/// apart the heights are.
HeightHistogram countHeights(const ScanView& scan, double lowest, int bins);

}  // namespace scanline::detail
