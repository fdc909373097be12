#pragma once

#include <vector>

#include <scanline/scan_records.h>
#include "features/extent.h"

/// Measures on the sides of the slopes of a nearly flat line.
namespace scanline::detail {

/// Stamp of the outer samples of jumps.
constexpr int kJumpMark = 16;

/// The samples to one side of a slope.
struct SideView {
  int farthest;    ///< Sample of the greatest z; -1 if the view ends at a jump or with the line.
  double mean;     ///< Mean z; undefined if `farthest` is -1.
  bool meetsJump;  ///< The view ends at a jump.
};

/// Views the samples to one side of a sample, up to the first one farther than `width` in y. Sample
/// 0 counts as beyond the end of the line.
class SideViewer {
 public:
  /// The jumps must be stamped. Allocates nothing.
  SideViewer(const std::vector<STesk3DPosition>& lineData, double width);

  /// Views from a measured sample to lower indices (`step` -1) or to higher ones (1).
  [[nodiscard]] SideView view(int start, int step) const;

 private:
  const std::vector<STesk3DPosition>& lineData_;
  double width_;
  Extent y_;  ///< Extent of the measured samples.
  int firstJump_;
  int lastJump_ = 0;
};

}  // namespace scanline::detail
