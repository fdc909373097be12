#pragma once

#include <string>

#include "base/extent.h"
#include "base/messages.h"
#include "base/scan.h"
#include "output/output_file.h"

namespace program {

/**
 * Adds a scan to the files that a command writes, by the extension of its path: a TIFF of x, y, z
 * in single precision without loss of these, or NPY in double precision.
 *
 * Missing samples are 0, 0, 0; shorter lines are filled up with them. Warns if single precision
 * would move samples by more than a thousandth of their spacing.
 */
void addScanFile(OutputFiles& files,
                 const std::string& path,
                 const Scan& scan,
                 const Extent& extent,
                 Messages& messages);

}  // namespace program
