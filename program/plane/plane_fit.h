#pragma once

#include <functional>

#include "plane/plane_choice.h"

namespace program {

/// Where a point lies along the normal of a candidate's plane, as z (y for the ground) of the
/// levelled scan.
double levelledHeight(const PlaneCandidate& candidate, const STesk3DPoint& p);

/// The median levelled height of the samples that `isUsed` accepts; NaN without any.
double medianHeight(const PlaneCandidate& candidate,
                    const Scan& scan,
                    const std::function<bool(const STesk3DPoint&)>& isUsed);

/// Whether the samples that `isUsed` accepts determine a plane: three or more that, seen from
/// above, are not on one line.
bool determinePlane(const Scan& scan, const std::function<bool(const STesk3DPoint&)>& isUsed);

/// Sets `refused` of a candidate that can be no reference plane.
void judge(PlaneCandidate& candidate);

/// Measures how many samples lie on a candidate's plane, and how near. `height` must be set.
void measureFit(PlaneCandidate& candidate, const Scan& scan, const Extent& extent);

/// Fits the plane of a candidate again to the samples near it, three times, and measures the fit.
/// The samples that the search among the heights chooses reach beyond a tilted plane.
void refine(PlaneCandidate& candidate, const Scan& scan, const Extent& extent);

}  // namespace program
