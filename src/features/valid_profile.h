#pragma once

#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The samples of a line above the no-sample limit, as the y-z plane has them. Searches that pass
/// over all of them read only the coordinates that they compare.
struct ValidProfile {
  std::vector<double> y;
  std::vector<double> z;
  std::vector<int> index;  ///< Index of each on the line.

  [[nodiscard]] int count() const {
    return static_cast<int>(index.size());
  }
};

ValidProfile collectProfile(const STesk3DPosition* lineData, int dataSize);

}  // namespace scanline::detail
