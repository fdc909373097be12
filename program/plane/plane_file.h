#pragma once

#include <string>

#include "plane/plane_choice.h"

namespace program {

/// A plane as JSON, for a file that --plane reads.
std::string planeAsJson(const PlaneCandidate& plane, const std::string& unit);

/// Reads such a file. Its fit is not measured. @throws Failure (badInput)
PlaneCandidate readPlane(const std::string& path);

}  // namespace program
