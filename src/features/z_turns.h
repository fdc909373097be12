#pragma once

#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The turning points of z, as indices on the line.
struct ZTurns {
  std::vector<int> minima;  ///< From falling to rising.
  std::vector<int> maxima;  ///< From rising to falling.
};

/// Compares each valid sample with the next one. If the last sample of the line is missing, the
/// last valid one is a turning point as well.
ZTurns findZTurns(const STesk3DPosition* lineData, int dataSize);

}  // namespace scanline::detail
