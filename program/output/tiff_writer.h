#pragma once

#include <cstddef>
#include <string>

#include "base/scan.h"

namespace program {

/// Whether a TIFF, whose offsets have 32 bits, holds a scan of this size.
bool fitsTiff(std::size_t lines, std::size_t samples);

/// Writes the x, y, z of a scan as a TIFF of three float channels, line by line, so that no copy of
/// the scan is held. Missing samples are 0, 0, 0; lines are filled up to `samples` with them.
/// Returns whether it was written.
/// @pre fitsTiff(scan.size(), samples)
bool writeTiff(const std::string& path, const Scan& scan, std::size_t samples);

}  // namespace program
