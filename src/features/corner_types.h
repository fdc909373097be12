#pragma once

#include <vector>

#include <scanline/feature_records.h>
#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_peaks.h"
#include "features/profile.h"

/// The selection and the types of corners, which several searches share.
namespace scanline::detail {

/// Peaks of at least `cornerTh`, with a window of twice the scale to either side.
inline PeakRule peakRule(const SQO_cornerParam& param, PeakRule::Measure measure) {
  return {param.cornerTh, param.scale * 4.0 * param.scale, measure};
}

/// The peaks among all maxima of the turn angle.
std::vector<int> cornerPeaks(const Arms& arms,
                             const Profile& profile,
                             const SQO_cornerParam& param);

/// The type by steep arms: `jumpCornerTh_1` is the limit of the steep arm, `jumpCornerTh_2` limits
/// how far the other arm may go against the jump.
int typeBySteepArms(const Arms& arms, int point, const SQO_cornerParam& param);

/// The corner peaks of a whole profile, typed by steep arms and without a value.
std::vector<SQO_basicFeature1D> steepCorners(const STesk3DPosition* lineData,
                                             const Profile& profile,
                                             int lineIdx,
                                             const SQO_cornerParam& param);

/// The arms of a corner by the magnitudes of their angles.
enum class ArmPattern { kFlatThenSteep, kSteepThenFlat, kOther };

/// Classifies the arms at a point: flat below `jumpCornerTh_1`, steep above `jumpCornerTh_2`.
ArmPattern armPatternAt(const Arms& arms, int point, const SQO_cornerParam& param);

/// The type by the first arm flatter than `jumpCornerTh_1`: `FEATURE_JUMP_RISE` for the backward
/// one, `FEATURE_JUMP_FALL` for the forward one, 0 if neither is.
int typeByFlatArm(const Arms& arms, int point, const SQO_cornerParam& param);

}  // namespace scanline::detail
