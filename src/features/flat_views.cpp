// Measures the mean and the highest sample to one side of a slope.
#include "features/flat_views.h"

#include <algorithm>
#include <cmath>

#include "records/sample_rules.h"

namespace scanline::detail {

SideViewer::SideViewer(const std::vector<STesk3DPosition>& lineData, double width)
    : lineData_(lineData), width_(width), firstMark_(static_cast<int>(lineData.size())) {
  for (int i = 1; i < static_cast<int>(lineData.size()); ++i) {
    if (lineData[i].nPointIdx == kJumpMark) {
      firstMark_ = std::min(firstMark_, i);
      lastMark_ = i;
    }
    if (isMeasured(lineData[i].pt3D.z)) {
      y_.take(lineData[i].pt3D.y);
    }
  }
}

SideView SideViewer::view(int start, int step) const {
  const STesk3DPoint& from = lineData_[start].pt3D;
  const auto isBeyond = [&](double y) { return std::abs(y - from.y) > width_; };
  const SideView atMark = {-1, -1.0, true};
  const SideView offTheLine = {-1, -1.0, false};
  // Without this a width that spans the line would have every view cost all of it.
  if (!y_.anyFar(isBeyond)) {
    return (step < 0 ? firstMark_ < start : lastMark_ > start) ? atMark : offTheLine;
  }
  const int count = static_cast<int>(lineData_.size());
  double sum = from.z;
  int taken = 1;
  int highest = start;
  for (int i = start + step; i >= 1 && i < count; i += step) {
    if (lineData_[i].nPointIdx == kJumpMark) {
      return atMark;
    }
    const STesk3DPoint& point = lineData_[i].pt3D;
    if (!isMeasured(point.z)) {
      continue;
    }
    if (isBeyond(point.y)) {
      return {highest, sum / taken, false};
    }
    sum += point.z;
    ++taken;
    if (point.z > lineData_[highest].pt3D.z) {
      highest = i;
    }
  }
  return offTheLine;
}

}  // namespace scanline::detail
