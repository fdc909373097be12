#pragma once

#include <string>
#include <vector>

#include "output/report.h"
#include "plane/plane_choice.h"

namespace program {

/// Tries all methods. Each that finds nothing usable states why.
std::vector<PlaneCandidate> tryAllPlanes(Scan& scan,
                                         const Extent& extent,
                                         const PlaneOptions& options);

/// Candidates side by side.
Table planeTable(const std::vector<PlaneCandidate>& planes, const std::string& unit);

/// The chosen plane and the reasons against the others, for JSON.
Field planeField(const PlaneChoice& plane);

}  // namespace program
