#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/extent.h"

/// Measures on the sides of the slopes of a nearly flat line.
namespace scanline::detail {

/// Mark on the samples at the ends of jumps, in the working words of the caller's line.
constexpr int kJumpMark = 16;

/// The samples to one side of a slope.
struct SideView {
  int highest;     ///< Sample of the greatest z; -1 if a mark or the end of the line comes first.
  double mean;     ///< Mean z; defined unless `highest` is -1.
  bool meetsMark;  ///< A mark comes first.
};

/// Measures the samples to one side of a sample, over `width` in y and up to a mark. The first
/// sample of the line is never reached.
class SideViewer {
 public:
  /// The marks must be in place. Allocates nothing.
  SideViewer(const std::vector<STesk3DPosition>& lineData, double width);

  /// Measures from a valid sample to lower indices (`step` -1) or to higher ones (1).
  [[nodiscard]] SideView view(int start, int step) const;

 private:
  const std::vector<STesk3DPosition>& lineData_;
  double width_;
  Extent y_;  ///< Extent of the valid samples.
  int firstMark_;
  int lastMark_ = 0;
};

}  // namespace scanline::detail
