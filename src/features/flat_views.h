#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/extent.h"

/// What a nearly flat line shows to the sides of its slopes.
namespace scanline::detail {

/// Mark on the samples at the ends of jumps, in the working words of the caller's line.
constexpr int kJumpMark = 16;

/// What a look along the line to one side of a slope shows.
struct SideView {
  int highest;     ///< Sample of the greatest z; -1 if a mark or the end of the line stopped it.
  double mean;     ///< Mean z; defined unless it was stopped.
  bool meetsMark;  ///< It was a mark that stopped it.
};

/// Looks along a line from its samples, over `width` in y, up to a mark. The first sample of the
/// line is out of reach.
class SideViewer {
 public:
  /// The marks must be in place. Allocates nothing.
  SideViewer(const std::vector<STesk3DPosition>& lineData, double width);

  /// Looks from a valid sample to lower indices (`step` -1) or to higher ones (1).
  [[nodiscard]] SideView view(int start, int step) const;

 private:
  const std::vector<STesk3DPosition>& lineData_;
  double width_;
  Extent y_;  ///< Extent of the valid samples.
  int firstMark_;
  int lastMark_ = 0;
};

}  // namespace scanline::detail
