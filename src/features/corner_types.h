#pragma once

#include <vector>

#include <scanline/feature_records.h>
#include <scanline/line_features.h>
#include "features/corner_stages.h"

/// What the corner family makes of the peaks of the corner measure.
namespace scanline::detail {

/// Half-width of the usual peak pass, twice the scale, squared.
inline double twoScalesSquared(double scale) {
  return scale * 4.0 * scale;
}

/// The peaks among the maxima of the corner measure at the points, all as one range.
Slopes cornerPeaks(const Samples& points, const SlopeSearch& search, double cornerTh);

/// The type by steep arms: `jumpCornerTh_1` is the steep limit, `jumpCornerTh_2` that of the arm
/// which runs against the jump.
int typeBySteepArms(const SQO_pointSlope& corner, const SQO_cornerParam& param);

/// The corner peaks of the whole line, typed by steep arms and without a value.
std::vector<SQO_basicFeature1D> steepCorners(const Samples& points,
                                             int lineIdx,
                                             const SQO_cornerParam& param);

/// How the arms of a bend lie, by the magnitudes of their angles.
enum class Arms { kFlatThenSteep, kSteepThenFlat, kOther };

/// The arms with `jumpCornerTh_1` as the flat limit and `jumpCornerTh_2` as the steep one.
Arms armsOf(const SQO_pointSlope& corner, const SQO_cornerParam& param);

/// The type by the first arm flatter than `jumpCornerTh_1`: `FEATURE_JUMP_RISE` for the backward
/// one, `FEATURE_JUMP_FALL` for the forward one, 0 if neither is.
int typeByFlatArm(const SQO_pointSlope& corner, const SQO_cornerParam& param);

/// A feature that stands on a valid point, whose stamp tells its place on the line.
SQO_basicFeature1D featureAt(const STesk3DPosition& point, int type, int lineIdx, double value);

}  // namespace scanline::detail
