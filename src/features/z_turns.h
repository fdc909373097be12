#pragma once

#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// Where z turns upwards (`minima`) and downwards (`maxima`), as indices on the line.
struct ZTurns {
  std::vector<int> minima;
  std::vector<int> maxima;
};

/// The turning points of a line, from one valid sample to the next. A line that ends in a hole
/// turns at its last valid sample as well.
ZTurns findZTurns(const STesk3DPosition* lineData, int dataSize);

}  // namespace scanline::detail
