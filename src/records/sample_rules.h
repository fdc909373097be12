#pragma once

#include <scanline/scan_records.h>
#include "records/exact_arithmetic.h"

namespace scanline::detail {

/// Below this z a sample holds no measurement.
constexpr double kNoSampleZ = 0.0001;

/// The usual test. A z of exactly 0.0001, and one that is not a number, count as samples.
inline bool isNoSample(double z) {
  return kNoSampleZ > z;
}

/// The strict test of many line functions: 0.0001 itself, and what is not a number, are no samples.
inline bool isAboveNoSample(double z) {
  return z > kNoSampleZ;
}

/// The converse test of other line functions: 0.0001 itself is a hole, what is not a number is
/// none.
inline bool isHole(double z) {
  return z <= kNoSampleZ;
}

/// A range that has seen no value.
constexpr STeskRangeD kEmptyRange = {0.0, -1.0};

/// Takes a value into a range; the first value taken sets both ends.
inline void foldIntoRange(STeskRangeD& range, double value) {
  if (range.min > range.max) {
    range = {value, value};
    return;
  }
  if (range.min > value) {
    range.min = value;
  }
  if (value > range.max) {
    range.max = value;
  }
}

}  // namespace scanline::detail
