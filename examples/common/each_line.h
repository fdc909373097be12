#pragma once

#include <opencv2/core/utility.hpp>

#include "scan_types.h"

namespace examples {

/// Runs `work(line index)` for every line of a scan, on all threads that the program may use. The
/// library keeps nothing between calls, so this is safe as long as each call writes only to what
/// belongs to its line.
template <typename Work>
void forEachLine(const Scan& scan, Work work) {
  cv::parallel_for_({0, static_cast<int>(scan.size())}, [&](const cv::Range& lines) {
    for (int l = lines.start; l < lines.end; ++l) {
      work(static_cast<std::size_t>(l));
    }
  });
}

}  // namespace examples
