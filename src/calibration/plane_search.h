#pragma once

#include <cstddef>
#include <optional>

#include "records/scan_view.h"

namespace scanline::detail {

/// The heights between which the samples of a reference plane lie.
struct PlaneWindow {
  STeskRangeD heights;          ///< Both limits are inclusive.
  std::size_t expectedSamples;  ///< An estimate of the samples between them, rarely too low.
};

/// Finds the reference plane of a scan by the distribution of its heights, if there is one.
std::optional<PlaneWindow> findPlaneWindow(const ScanView& scan);

}  // namespace scanline::detail
