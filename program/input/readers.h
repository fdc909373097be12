#pragma once

#include <limits>
#include <string>

#include "base/scan.h"

namespace program {

/// What a reader returns: samples as they stand in the file, x from line to line. A sample whose z
/// is NaN has no value.
struct RawScan {
  Scan scan;  ///< Lines may differ in length.
  std::string format;
  bool isRange = false;  ///< x is the index of the row, y of the column: pitches are to be applied.
  bool isImage = false;  ///< Read as an image, whose channels have an order.
};

struct InputOptions;

// Readers of one format each. They throw Failure (badInput) with the path, what is wrong, and what
// to do. No reader allocates by a size in the file that it has not compared with the file's length.
RawScan readImage(const InputOptions& options);
RawScan readText(const InputOptions& options);
RawScan readNpy(const InputOptions& options);
RawScan readPcd(const InputOptions& options);
RawScan readPly(const InputOptions& options);

/// A sample that the file has no value for.
inline STesk3DPoint noPoint() {
  return {0.0, 0.0, std::numeric_limits<double>::quiet_NaN()};
}

/// A pixel of a range image, where 0 stands for no value.
inline STesk3DPoint rangePoint(double row, double col, double z) {
  return z == 0.0 ? noPoint() : STesk3DPoint{row, col, z};
}

/// A point, where 0, 0, 0 stands for no value.
inline STesk3DPoint spacePoint(double x, double y, double z) {
  return x == 0.0 && y == 0.0 && z == 0.0 ? noPoint() : STesk3DPoint{x, y, z};
}

}  // namespace program
