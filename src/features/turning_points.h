#pragma once

#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// Copies of samples, each with its index on the line.
using Turns = std::vector<STesk3DPosition>;

/// Where z turns upwards (`minima`) and downwards (`maxima`).
struct TurningPoints {
  Turns minima;
  Turns maxima;
};

/// The turning points of a line, from one valid sample to the next. A line that ends in a hole
/// turns at its last valid sample as well.
TurningPoints findTurns(const STesk3DPosition* lineData, int dataSize);

}  // namespace scanline::detail
