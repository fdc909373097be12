#pragma once

#include <cstddef>
#include <optional>

#include "records/scan_view.h"

namespace scanline::detail {

/// The heights of the samples of a reference plane.
struct PlaneWindow {
  STeskRangeD heights;       ///< Both limits are inclusive.
  std::size_t sampleBudget;  ///< About how many samples lie in it, hardly ever too few.
};

/// Searches the distribution of the heights of a scan for a reference plane; nothing if the scan
/// shows none.
std::optional<PlaneWindow> findPlaneWindow(const ScanView& scan);

}  // namespace scanline::detail
