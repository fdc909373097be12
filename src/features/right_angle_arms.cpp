// Walks along the arms of a right angle and measures how far they deviate.
#include <algorithm>
#include <cmath>

#include "features/extent.h"
#include "features/right_angle_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {

ArmWalker::ArmWalker(const STesk3DPosition* lineData, int dataSize)
    : profile_(collectProfile(lineData, dataSize)) {
  Extent y;
  Extent z;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (!isMissing(point.z)) {
      y.take(point.y);
      z.take(point.z);
    }
  }
  span_ = (y.max - y.min) + (z.max - z.min);
}

ArmWalk ArmWalker::walk(const ArmOrigin& origin, int place, int stride, double armLen) const {
  ArmWalk arm = {ArmWalk::kRanOut, -1.0, -1.0};
  for (; place >= 0 && place < profile_.count(); place += stride) {
    const double dy = std::abs(profile_.y[place] - origin.y);
    const double dz = std::abs(profile_.z[place] - origin.z);
    if (dy + dz > armLen) {
      arm.stop = profile_.index[place];
      break;
    }
    arm.maxDy = std::max(arm.maxDy, dy);
    arm.maxDz = std::max(arm.maxDz, dz);
  }
  return arm;
}

bool ArmWalker::hasSteepArm(const ArmOrigin& origin, double armLen, double maxDeviation) const {
  const double* const y = profile_.y.data();
  const double* const z = profile_.z.data();
  const auto isBeyond = [&](int place) {
    return std::abs(y[place] - origin.y) + std::abs(z[place] - origin.z) > armLen;
  };
  const auto deviates = [&](int place) { return std::abs(y[place] - origin.y) >= maxDeviation; };
  int before = origin.placeBefore;
  while (before >= 0 && !isBeyond(before) && !deviates(before)) {
    --before;
  }
  if (before >= 0 && isBeyond(before)) {
    return true;
  }
  const int count = profile_.count();
  int after = origin.placeAfter;
  while (after < count && !isBeyond(after) && !deviates(after)) {
    ++after;
  }
  return after < count && isBeyond(after);
}

}  // namespace scanline::detail
