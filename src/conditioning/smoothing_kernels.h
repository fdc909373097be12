#pragma once

#include <cstddef>

#include <scanline/scan_records.h>

/// The loops of smoothing that vectorise. The height of a measured sample is its z, that of any
/// other sample is 0.0. Such a zero changes no bit of a sum of measured z, which is never a
/// negative zero.
namespace scanline::detail {

/// Copies the heights of samples.
void gatherHeights(const STesk3DPosition* samples, std::size_t count, double* heights);

/// As gatherHeights(), and marks the steps of a line: `isStep[i]` becomes 1 if sample i is measured
/// and differs from sample i - 1 by more than a limit, in y or in z, and 0 otherwise. A difference
/// of exactly the limit, or NaN, is no step. `count` is at least 1; sample 0 is no step.
void gatherHeightsAndSteps(const STesk3DPosition* samples,
                           std::size_t count,
                           double yTh,
                           double zTh,
                           double* heights,
                           int* isStep);

/// Computes the means of `count` windows of the same odd width, each summed from its first height
/// to its last; window i begins at `heights[i]`.
///
/// `measuredBefore[k]` is the number of measured heights before `heights[k]`, up to the end of the
/// last window. The mean of a window without a measured height is NaN.
void meanWindows(const double* heights,
                 const int* measuredBefore,
                 std::size_t width,
                 std::size_t count,
                 double* means);

/// Stores the means as z of the measured samples.
void storeMeans(const double* heights,
                const double* means,
                std::size_t count,
                STesk3DPosition* samples);

}  // namespace scanline::detail
