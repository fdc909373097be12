#pragma once

#include <string>

#include "base/scan.h"

namespace program {

/// What a reader returns: samples as they stand in the file, x from line to line. A sample whose z
/// is NaN has no value.
struct RawScan {
  Scan scan;  ///< Lines may differ in length.
  std::string format;
  bool isRange = false;  ///< x is the index of the row, y of the column: pitches are to be applied.
};

struct InputOptions;

// Readers of one format each. They throw Failure (badInput) with the path, what is wrong, and what
// to do. No reader allocates by a size in the file that it has not compared with the file's length.
RawScan readImage(const InputOptions& options);
RawScan readText(const InputOptions& options);
RawScan readNpy(const InputOptions& options);
RawScan readPcd(const InputOptions& options);
RawScan readPly(const InputOptions& options);

}  // namespace program
