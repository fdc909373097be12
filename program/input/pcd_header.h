#pragma once

#include <string>

namespace program {

/// What matters of the header of a PCD file.
struct PcdHeader {
  bool hasViewpoint = false;  ///< Another one than the origin; readers do not apply it.
};

/// Reads the header of a PCD file and refuses what is no organised scan of x, y and z, or states
/// other sizes than its length allows: PCL allocates by them before it checks them.
/// @throws Failure (badInput)
PcdHeader checkPcdHeader(const std::string& path);

}  // namespace program
