#include "calibration/plane_search.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <stdexcept>

namespace scanline::detail {

namespace {

/// How many bins the window of the profile reaches to either side.
constexpr std::size_t kProfileReach = 5;

/// The profile has to hold more than one in so many samples at a peak.
constexpr std::uint64_t kPeakShare = 10;

enum class Trend { flat, rising, falling };

BinCounts slidingSums(const BinCounts& counts) {
  const std::size_t bins = counts.size();
  BinCounts sums(bins);
  std::uint32_t sum = 0;
  for (std::size_t ahead = 0; ahead < std::min(kProfileReach, bins); ++ahead) {
    sum += counts[ahead];
  }
  for (std::size_t bin = 0; bin < bins; ++bin) {
    if (bin + kProfileReach < bins) {
      sum += counts[bin + kProfileReach];
    }
    if (bin > kProfileReach) {
      sum -= counts[bin - kProfileReach - 1];
    }
    sums[bin] = sum;
  }
  return sums;
}

bool isLevel(const BinCounts& profile) {
  return std::adjacent_find(profile.begin(), profile.end(), std::not_equal_to<>()) == profile.end();
}

/// The value of a bin number, which passes through single precision.
double binOffset(int bin) {
  return static_cast<double>(static_cast<float>(bin));
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

BinCounts heightProfile(const BinCounts& counts) {
  BinCounts profile = slidingSums(counts);
  if (isLevel(profile)) {
    return counts;
  }
  return profile;
}

ProfileExtrema findExtrema(const BinCounts& profile) {
  ProfileExtrema found;
  Trend trend = Trend::flat;
  const int bins = static_cast<int>(profile.size());
  for (int bin = 1; bin < bins; ++bin) {
    const std::uint32_t before = profile[bin - 1];
    const std::uint32_t value = profile[bin];
    const bool turns = trend == Trend::rising ? value < before : value > before;
    if (trend != Trend::flat && (turns || bin == bins - 1)) {
      std::vector<Extremum>& list = trend == Trend::rising ? found.peaks : found.valleys;
      list.push_back(turns ? Extremum{bin - 1, before} : Extremum{bin, value});
    }
    if (value != before) {
      trend = value > before ? Trend::rising : Trend::falling;
    }
  }
  return found;
}

std::optional<Extremum> choosePeak(const std::vector<Extremum>& peaks, std::uint64_t total) {
  const std::uint64_t minPeak = total / kPeakShare;
  const auto chosen = std::find_if(peaks.begin(), peaks.end(),
                                   [&](const Extremum& peak) { return peak.value > minPeak; });
  if (chosen == peaks.end()) {
    return std::nullopt;
  }
  return *chosen;
}

ValleyBounds enclosingValleys(const std::vector<Extremum>& valleys, const Extremum& peak) {
  const std::uint32_t half = peak.value / 2;
  ValleyBounds bounds;
  for (const Extremum& valley : valleys) {
    if (valley.value >= half) {
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

std::size_t samplesBetween(const BinCounts& counts, const ValleyBounds& bounds) {
  const auto first = counts.begin() + bounds.lower.value_or(0);
  const auto end = bounds.upper ? counts.begin() + *bounds.upper + 1 : counts.end();
  return std::accumulate(first, end, std::size_t{0});
}

std::optional<PlaneWindow> findWindow(const HeightHistogram& histogram,
                                      const STeskRangeD& heights) {
  const ProfileExtrema extrema = findExtrema(heightProfile(histogram.counts));
  const std::optional<Extremum> peak = choosePeak(extrema.peaks, histogram.total);
  if (!peak) {
    return std::nullopt;
  }
  const ValleyBounds bounds = enclosingValleys(extrema.valleys, *peak);
  return PlaneWindow{heightWindow(heights, bounds), samplesBetween(histogram.counts, bounds)};
}

}  // namespace scanline::detail
