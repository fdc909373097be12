#pragma once

#include <string>
#include <vector>

#include "plane/plane_choice.h"

namespace program {

/// A way to find a plane.
struct PlaneMethod {
  const char* name;
  const char* finds;  ///< For help and tables.
};

/// All methods, in the order of tables.
const std::vector<PlaneMethod>& planeMethods();

/// Tries a method on a scan, which stays as it is. What it found is in `refused` if it is no plane.
/// @param few  the scan thinned, for the searches that look at no neighbours, and to measure the
/// fit
PlaneCandidate tryMethod(const std::string& method,
                         Scan& scan,
                         const Scan& few,
                         const Extent& extent,
                         const PlaneOptions& options);

}  // namespace program
