#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "features/right_angle_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

STeskRangeD widened(const STeskRangeD& range, double value) {
  return {std::fmin(range.min, value), std::fmax(range.max, value)};
}

/// The largest distance from a value to one in a range.
double reach(const STeskRangeD& range, double from) {
  return std::fmax(std::abs(range.min - from), std::abs(range.max - from));
}

}  // namespace

ArmWalker::ArmWalker(const STesk3DPosition* lineData, int dataSize) : lineData_(lineData) {
  const auto count = static_cast<std::size_t>(std::max(dataSize, 0));
  neighbours_.reserve(count);
  placeOf_.reserve(count + 1);
  placeOf_.push_back(0);
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (isAboveNoSample(point.z)) {
      neighbours_.push_back({point.y, point.z, i});
    }
    placeOf_.push_back(static_cast<int>(neighbours_.size()));
  }
  const int last = static_cast<int>(neighbours_.size()) - 1;
  upTo_ = extentsAlong(0, 1);
  from_ = extentsAlong(last, -1);
}

std::vector<ArmWalker::Extent> ArmWalker::extentsAlong(int place, int stride) const {
  const int count = static_cast<int>(neighbours_.size());
  std::vector<Extent> extents(neighbours_.size());
  Extent extent = {{kNothing, kNothing}, {kNothing, kNothing}};
  for (; place >= 0 && place < count; place += stride) {
    extent.y = widened(extent.y, neighbours_[place].y);
    extent.z = widened(extent.z, neighbours_[place].z);
    extents[place] = extent;
  }
  return extents;
}

ArmWalk ArmWalker::walk(int sample, int place, int stride, double armLen) const {
  const STesk3DPoint& origin = lineData_[sample].pt3D;
  const int count = static_cast<int>(neighbours_.size());
  ArmWalk arm = {ArmWalk::kRanOut, -1.0, -1.0};
  if (place < 0 || place >= count) {
    return arm;
  }
  // Without this an arm longer than the line would have every walk search all of it for nothing.
  const Extent& ahead = (stride > 0 ? from_ : upTo_)[place];
  if (!(reach(ahead.y, origin.y) + reach(ahead.z, origin.z) > armLen)) {
    return arm;
  }
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
