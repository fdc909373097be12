#pragma once

#include <algorithm>
#include <vector>

#include <scanline/scan_records.h>

namespace examples {

using Line = std::vector<STesk3DPosition>;

/// A scan in the vector form: lines in the order of x, samples in the order of y.
using Scan = std::vector<Line>;

/// The pointer form of a scan, which stays the owner of its samples.
inline std::vector<STesk3DLaserLine> pointerForm(Scan& scan) {
  std::vector<STesk3DLaserLine> lines;
  lines.reserve(scan.size());
  for (Line& line : scan) {
    lines.push_back({line.data(), static_cast<int>(line.size()), 0});
  }
  return lines;
}

/// Whether a sample holds a measurement.
inline bool isMeasured(const STesk3DPosition& sample) {
  return sample.pt3D.z > 0.0001;
}

/// Extends a range to a value; the first value is all of the range.
inline void fold(STeskRangeD& range, double value, bool isFirst) {
  range = isFirst ? STeskRangeD{value, value}
                  : STeskRangeD{std::min(range.min, value), std::max(range.max, value)};
}

}  // namespace examples
