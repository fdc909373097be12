#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "base/messages.h"
#include "input/scan_input.h"

// Steps from what a file holds to samples that the library can use. Until markMissing(), a sample
// without a value has NaN for its z.

namespace program {

/// Applies `change(point)` to every sample that has a value.
template <typename Change>
void changeMeasured(Scan& scan, Change change) {
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      if (!std::isnan(sample.pt3D.z)) {
        change(sample.pt3D);
      }
    }
  });
}

long long countHoles(const Scan& scan);

/// Takes the value of samples that no scan can hold: not finite, or beyond 1e9.
void removeImpossible(Scan& scan);

/// Takes the value of samples outside of a region: x0 x1 y0 y1 z0 z1. Returns how many there were.
long long removeOutside(Scan& scan, const std::array<double, 6>& region);

/// The same for samples far from all others.
void removeStrays(LoadedScan& loaded, Messages& messages);

/// Turns heights into distances from just above the highest sample.
void turnIntoDistances(LoadedScan& loaded);

/// What has no value, or none that the library takes for one, becomes missing.
void markMissing(LoadedScan& loaded, Messages& messages);

}  // namespace program
