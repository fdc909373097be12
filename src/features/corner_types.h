#pragma once

#include <vector>

#include <scanline/feature_records.h>
#include <scanline/line_features.h>
#include "features/corner_peaks.h"
#include "features/slopes.h"
#include "features/valid_profile.h"

/// What the corner searches make of the peaks of the corner measure.
namespace scanline::detail {

/// The usual peak pass over extrema of the corner measure, with a half-width of twice the scale.
inline PeakRule usualPeaks(const SQO_cornerParam& param, PeakRule::Measure measure) {
  return {param.cornerTh, param.scale * 4.0 * param.scale, measure};
}

/// The peaks among the maxima of the corner measure.
std::vector<int> cornerPeaks(const Slopes& slopes,
                             const ValidProfile& profile,
                             const SQO_cornerParam& param);

/// The type by steep arms: `jumpCornerTh_1` is the steep limit, `jumpCornerTh_2` that of the arm
/// that runs against the jump.
int typeBySteepArms(double backwardAngle, double forwardAngle, const SQO_cornerParam& param);

/// The corner peaks of a whole profile, typed by steep arms and without a value.
std::vector<SQO_basicFeature1D> steepCorners(const STesk3DPosition* lineData,
                                             const ValidProfile& profile,
                                             int lineIdx,
                                             const SQO_cornerParam& param);

/// How the arms of a corner lie, by the magnitudes of their angles.
enum class Arms { kFlatThenSteep, kSteepThenFlat, kOther };

/// The arms at a point with `jumpCornerTh_1` as the flat limit and `jumpCornerTh_2` as the steep
/// one.
Arms armsAt(const Slopes& slopes, int point, const SQO_cornerParam& param);

/// The type by the first arm flatter than `jumpCornerTh_1`: `FEATURE_JUMP_RISE` for the backward
/// one, `FEATURE_JUMP_FALL` for the forward one, 0 if neither is.
int typeByFlatArm(const Slopes& slopes, int point, const SQO_cornerParam& param);

/// A feature on a sample of a line.
inline SQO_basicFeature1D featureAt(
    const STesk3DPosition* lineData, int sample, int type, int lineIdx, double value) {
  return {type, {lineIdx, sample}, lineData[sample].pt3D, value};
}

}  // namespace scanline::detail
