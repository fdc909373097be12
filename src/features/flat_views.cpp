// Finds the mean and the greatest z to one side of a slope.
#include "features/flat_views.h"

#include <algorithm>
#include <cmath>

#include "records/sample_rules.h"

namespace scanline::detail {

SideViewer::SideViewer(const std::vector<STesk3DPosition>& lineData, double width)
    : lineData_(lineData), width_(width), firstJump_(static_cast<int>(lineData.size())) {
  for (int i = 1; i < static_cast<int>(lineData.size()); ++i) {
    if (lineData[i].nPointIdx == kJumpMark) {
      firstJump_ = std::min(firstJump_, i);
      lastJump_ = i;
    }
    if (isMeasured(lineData[i].pt3D.z)) {
      y_.take(lineData[i].pt3D.y);
    }
  }
}

SideView SideViewer::view(int start, int step) const {
  const STesk3DPoint& from = lineData_[start].pt3D;
  const auto isBeyond = [&](double y) { return std::abs(y - from.y) > width_; };
  const SideView atJump = {-1, -1.0, true};
  const SideView atEnd = {-1, -1.0, false};
  // Without this test, each view of a width that spans the line would visit the whole line.
  if (!y_.anyFar(isBeyond)) {
    return (step < 0 ? firstJump_ < start : lastJump_ > start) ? atJump : atEnd;
  }
  const int count = static_cast<int>(lineData_.size());
  double sum = from.z;
  int taken = 1;
  int farthest = start;
  for (int i = start + step; i >= 1 && i < count; i += step) {
    if (lineData_[i].nPointIdx == kJumpMark) {
      return atJump;
    }
    const STesk3DPoint& point = lineData_[i].pt3D;
    if (!isMeasured(point.z)) {
      continue;
    }
    if (isBeyond(point.y)) {
      return {farthest, sum / taken, false};
    }
    sum += point.z;
    ++taken;
    if (point.z > lineData_[farthest].pt3D.z) {
      farthest = i;
    }
  }
  return atEnd;
}

}  // namespace scanline::detail
