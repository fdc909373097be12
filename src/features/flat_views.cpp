#include "features/flat_views.h"

#include <cmath>
#include <limits>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

}  // namespace

SideViewer::SideViewer(const std::vector<STesk3DPosition>& lineData, double width)
    : lineData_(lineData), width_(width), before_(lineData.size()), after_(lineData.size()) {}

void SideViewer::readMarks() {
  const int count = static_cast<int>(lineData_.size());
  Stretch stretch = {kNothing, kNothing, false};
  for (int i = 1; i < count; ++i) {
    before_[i] = stretch = extended(stretch, lineData_[i]);
  }
  stretch = {kNothing, kNothing, false};
  for (int i = count; i-- > 1;) {
    after_[i] = stretch = extended(stretch, lineData_[i]);
  }
}

SideViewer::Stretch SideViewer::extended(const Stretch& beyond, const STesk3DPosition& sample) {
  if (sample.nPointIdx == kJumpMark) {
    return {kNothing, kNothing, true};
  }
  if (!isAboveNoSample(sample.pt3D.z)) {
    return beyond;
  }
  const double y = sample.pt3D.y;
  return {std::fmin(beyond.minY, y), std::fmax(beyond.maxY, y), beyond.endsAtMark};
}

SideView SideViewer::view(int start, int step) const {
  const STesk3DPoint& from = lineData_[start].pt3D;
  const auto isBeyond = [&](double y) { return std::abs(y - from.y) > width_; };
  int i = start + step;
  if (i < 1 || i >= static_cast<int>(lineData_.size())) {
    return {-1, -1.0, false};
  }
  const Stretch& ahead = (step > 0 ? after_ : before_)[i];
  if (!(isBeyond(ahead.minY) || isBeyond(ahead.maxY))) {
    return {-1, -1.0, ahead.endsAtMark};
  }
  int highest = start;
  double sum = from.z;
  int taken = 1;
  for (;; i += step) {
    const STesk3DPoint& point = lineData_[i].pt3D;
    if (!isAboveNoSample(point.z)) {
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
}

}  // namespace scanline::detail
