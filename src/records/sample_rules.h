#pragma once

#include <scanline/scan_records.h>
#include "records/exact_arithmetic.h"

namespace scanline::detail {

/// The limit of the no-sample rule. Functions apply it in three forms, which differ in what they
/// make of a z of exactly the limit and of NaN:
///
/// | test | z at the limit | NaN |
/// | --- | --- | --- |
/// | isMissing; others are valid | valid | valid |
/// | isMeasured | not measured | not measured |
/// | isHole | a hole | not a hole |
constexpr double kNoSampleZ = 0.0001;

/// Whether a sample is missing, not valid: the form of scans, points and calibrations.
inline bool isMissing(double z) {
  return kNoSampleZ > z;
}

/// Whether a sample is measured: the form of most functions on lines.
inline bool isMeasured(double z) {
  return z > kNoSampleZ;
}

/// Whether a sample is a hole: the form of outlier removal and of some functions on lines.
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
