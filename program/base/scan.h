#pragma once

#include <opencv2/core/utility.hpp>
#include <vector>

#include <scanline/scan_records.h>

namespace program {

using Line = std::vector<STesk3DPosition>;

/// A scan in the vector form: lines in the order of x, samples in the order of y.
using Scan = std::vector<Line>;

/// The pointer form of a scan, which keeps its samples.
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

/// Runs `work(line index)` for every line of a scan, on all threads that the program may use. Each
/// call may write only to what belongs to its line.
template <typename Work>
void forEachLine(const Scan& scan, Work work) {
  cv::parallel_for_({0, static_cast<int>(scan.size())}, [&](const cv::Range& lines) {
    for (int l = lines.start; l < lines.end; ++l) {
      work(static_cast<std::size_t>(l));
    }
  });
}

}  // namespace program
