#pragma once

#include <vector>

#include "base/scan.h"

namespace program {

/// Size and spacing of a scan by medians and quantiles, which stray samples do not move.
struct Extent {
  STeskRangeD x;  ///< Of all measured samples.
  STeskRangeD y;
  STeskRangeD z;
  STeskRangeD shownZ;    ///< From the quantile 0.01 to 0.99 of z, for colours.
  double lineSpacing;    ///< Median distance in x of neighbouring lines; 0.0 if there is none.
  double sampleSpacing;  ///< Median distance in y of neighbouring samples; 0.0 if there is none.
  double noise;          ///< Deviation of z from its neighbours' mean on a line: a robust standard
                         ///< deviation of the measurement noise.
};

Extent extentOf(const Scan& scan);

/// Commands derive their parameters from the spacing of the samples.
/// @throws Failure (nothingFound) without one
void requireSpacing(const Extent& extent);

/// A scan with about two million samples at most: of a large one, every n-th sample of each line,
/// which is enough for medians, shares and fits.
Scan thinned(const Scan& scan);

/// The values of an axis (0: x, 1: y, 2: z) of the samples that have one, of which evenly chosen
/// ones stand for all in a large scan.
std::vector<double> sampledValues(const Scan& scan, int axis);

/// The quantile of values, from 0.0 to 1.0; changes their order. Not for an empty list.
double quantile(std::vector<double>& values, double share);

}  // namespace program
