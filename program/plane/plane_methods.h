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
PlaneCandidate tryMethod(const std::string& method,
                         Scan& scan,
                         const Extent& extent,
                         const PlaneOptions& options);

}  // namespace program
