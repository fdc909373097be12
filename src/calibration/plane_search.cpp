#include "calibration/plane_search.h"

#include <algorithm>
#include <cstdint>

#include "calibration/height_histogram.h"

namespace scanline::detail {

namespace {

/// The peak of a plane holds more than one sample in this many.
constexpr std::uint64_t kPeakShare = 10;

/// The bins at which a profile turns from rising to falling or back, with its values there.
struct ProfileExtrema {
  BinCounts peaks;
  BinCounts valleys;
};

/// The bins of the valleys on either side of a peak, if there are any.
struct ValleyBounds {
  std::optional<int> lower;
  std::optional<int> upper;
};

enum class Trend { flat, rising, falling };

BinCounts slidingSums(const BinCounts& counts) {
  constexpr std::size_t kReach = kProfileReach;
  const std::size_t bins = counts.size();
  BinCounts sums = counts;
  std::uint32_t sum = 0;
  for (std::size_t ahead = 0; ahead < std::min(kReach, bins); ++ahead) {
    sum += counts[ahead].count;
  }
  for (std::size_t i = 0; i < bins; ++i) {
    if (i + kReach < bins) {
      sum += counts[i + kReach].count;
    }
    if (i > kReach) {
      sum -= counts[i - kReach - 1].count;
    }
    sums[i].count = sum;
  }
  return sums;
}

bool isLevel(const BinCounts& profile) {
  return std::all_of(profile.begin(), profile.end(),
                     [&](const BinCount& bin) { return bin.count == profile.front().count; });
}

/// The offset of a bin from the smallest z. The number of the bin is rounded to single precision.
double binOffset(int bin) {
  return static_cast<double>(static_cast<float>(bin)) * kBinWidth;
}

/// The sums of the counts over windows of 11 bins, which end at the ends of the histogram; the
/// counts themselves if all sums are equal.
BinCounts heightProfile(const BinCounts& counts) {
  BinCounts profile = slidingSums(counts);
  if (isLevel(profile)) {
    return counts;
  }
  return profile;
}

/// Finds the peaks and valleys of a profile. A plateau counts at its last bin. Bin 0 is never an
/// extremum; the last bin is one if the profile ends on a rise or a fall.
ProfileExtrema findExtrema(const BinCounts& profile) {
  ProfileExtrema found;
  Trend trend = Trend::flat;
  for (std::size_t i = 1; i < profile.size(); ++i) {
    const BinCount& before = profile[i - 1];
    const BinCount& here = profile[i];
    const bool turns =
        trend == Trend::rising ? here.count < before.count : here.count > before.count;
    if (trend != Trend::flat && (turns || i == profile.size() - 1)) {
      BinCounts& list = trend == Trend::rising ? found.peaks : found.valleys;
      list.push_back(turns ? before : here);
    }
    if (here.count != before.count) {
      trend = here.count > before.count ? Trend::rising : Trend::falling;
    }
  }
  return found;
}

/// The peak of smallest z that holds more than a tenth of the samples.
std::optional<BinCount> choosePeak(const BinCounts& peaks, std::uint64_t total) {
  const std::uint64_t minPeak = total / kPeakShare;
  const auto chosen = std::find_if(peaks.begin(), peaks.end(),
                                   [&](const BinCount& peak) { return peak.count > minPeak; });
  if (chosen == peaks.end()) {
    return std::nullopt;
  }
  return *chosen;
}

/// The nearest valleys on either side of a peak that are less than half as high in the profile.
ValleyBounds enclosingValleys(const BinCounts& valleys, const BinCount& peak) {
  const std::uint32_t half = peak.count / 2;
  ValleyBounds bounds;
  for (const BinCount& valley : valleys) {
    if (valley.count >= half) {
      continue;
    }
    if (valley.bin > peak.bin) {
      bounds.upper = valley.bin;
      break;
    }
    bounds.lower = valley.bin;
  }
  return bounds;
}

/// The heights between the valleys. On a side without a valley, the range of all heights ends the
/// window.
STeskRangeD heightWindow(const STeskRangeD& heights, const ValleyBounds& bounds) {
  STeskRangeD window = heights;
  if (bounds.lower) {
    window.min = heights.min + binOffset(*bounds.lower);
  }
  if (bounds.upper) {
    window.max = heights.min + binOffset(*bounds.upper);
  }
  return window;
}

/// The number of samples in the bins from valley to valley, both included.
std::size_t samplesBetween(const BinCounts& counts, const ValleyBounds& bounds) {
  std::size_t samples = 0;
  for (const BinCount& bin : counts) {
    if (bin.bin >= bounds.lower.value_or(0) && bin.bin <= bounds.upper.value_or(bin.bin)) {
      samples += bin.count;
    }
  }
  return samples;
}

/// The heights around the peak of a plane, if there is one.
std::optional<PlaneWindow> findWindow(const HeightHistogram& histogram,
                                      const STeskRangeD& heights) {
  const ProfileExtrema extrema = findExtrema(heightProfile(histogram.counts));
  const std::optional<BinCount> peak = choosePeak(extrema.peaks, histogram.total);
  if (!peak) {
    return std::nullopt;
  }
  const ValleyBounds bounds = enclosingValleys(extrema.valleys, *peak);
  return PlaneWindow{heightWindow(heights, bounds), samplesBetween(histogram.counts, bounds)};
}

}  // namespace

std::optional<PlaneWindow> findPlaneWindow(const ScanView& scan) {
  const STeskRangeD heights = heightBounds(scan);
  const int bins = binCount(heights);
  if (bins == 0) {
    return std::nullopt;
  }
  return findWindow(countHeights(scan, heights.min, bins), heights);
}

}  // namespace scanline::detail
