#pragma once

#include <scanline/scan_records.h>
#include "records/exact_arithmetic.h"

namespace scanline::detail {

/// The limit of the no-sample rule. Functions apply it by one of three tests, which differ only at
/// the limit itself and at NaN:
///
/// | test | z = limit | z = NaN |
/// | --- | --- | --- |
/// | isMissing; the converse is valid | valid | valid |
/// | isMeasured | not measured | not measured |
/// | isHole | a hole | not a hole |
constexpr double kNoSampleZ = 0.0001;

/// Whether a sample is missing, not valid: the test of scans, points and calibrations.
inline bool isMissing(double z) {
  return kNoSampleZ > z;
}

/// Whether a sample is measured: the test of most functions on lines.
inline bool isMeasured(double z) {
  return z > kNoSampleZ;
}

/// Whether a sample is a hole: the test of outlier removal and of some functions on lines.
inline bool isHole(double z) {
  return z <= kNoSampleZ;
}

/// The range of no values.
constexpr STeskRangeD kEmptyRange = {0.0, -1.0};

/// Extends a range that is not empty to a value.
inline void widen(double& min, double& max, double value) {
  if (min > value) {
    min = value;
  }
  if (value > max) {
    max = value;
  }
}

/// Extends a range to a value; the first value sets both ends.
inline void foldIntoRange(STeskRangeD& range, double value) {
  if (range.min > range.max) {
    range = {value, value};
    return;
  }
  widen(range.min, range.max, value);
}

}  // namespace scanline::detail
