#include <algorithm>
#include <cmath>
#include <cstddef>

#include "features/extent.h"
#include "features/right_angle_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {

ArmWalker::ArmWalker(const STesk3DPosition* lineData, int dataSize) : lineData_(lineData) {
  const auto count = static_cast<std::size_t>(std::max(dataSize, 0));
  neighbours_.reserve(count);
  placeOf_.resize(count + 1);
  Extent y;
  Extent z;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (!isNoSample(point.z)) {
      y.take(point.y);
      z.take(point.z);
    }
    if (isAboveNoSample(point.z)) {
      neighbours_.push_back({point.y, point.z, i});
    }
    placeOf_[i + 1] = static_cast<int>(neighbours_.size());
  }
  span_ = (y.max - y.min) + (z.max - z.min);
}

ArmWalk ArmWalker::walk(int sample, int place, int stride, double armLen) const {
  const STesk3DPoint& origin = lineData_[sample].pt3D;
  const int count = static_cast<int>(neighbours_.size());
  ArmWalk arm = {ArmWalk::kRanOut, -1.0, -1.0};
  for (; place >= 0 && place < count; place += stride) {
    const Neighbour& neighbour = neighbours_[place];
    const double dy = std::abs(neighbour.y - origin.y);
    const double dz = std::abs(neighbour.z - origin.z);
    if (dy + dz > armLen) {
      arm.stop = neighbour.index;
      break;
    }
    arm.maxDy = std::max(arm.maxDy, dy);
    arm.maxDz = std::max(arm.maxDz, dz);
  }
  return arm;
}

}  // namespace scanline::detail
