#pragma once

#include "base/extent.h"
#include "base/parameters.h"
#include "base/scan.h"

namespace program {

/// What is removed from a line, and smoothed, before features are searched.
struct CleaningParams {
  double outlierStep;  ///< A step in z from this on separates runs of samples.
  int outlierCount;    ///< Runs of fewer samples are blanked.
  int smoothWindow;    ///< In samples; 1 or below smooths nothing.
  double smoothStepY;  ///< Smoothing never reaches across a larger step in y or in z.
  double smoothStepZ;
};

/// A line without its outliers, and not smoothed.
Line withoutOutliers(const Line& line, const CleaningParams& params);

/// A line with narrow holes filled by straight lines, where its z has no step. Smoothing would cut
/// there and take one-sided means.
Line withoutNarrowHoles(const Line& line, const CleaningParams& params);

/// A line smoothed.
Line smoothed(const Line& line, const CleaningParams& params);

}  // namespace program
