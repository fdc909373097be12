#include "trees/remaining_extent.h"

#include <algorithm>
#include <cmath>

#include "trees/tree_rules.h"

namespace scanline::detail {

void RemainingExtent::addPlace(int line, double x) {
  const bool isFirst = firstLine_ > lastLine_;
  firstLine_ = isFirst ? line : std::min(firstLine_, line);
  lastLine_ = isFirst ? line : std::max(lastLine_, line);
  if (!std::isnan(x)) {
    foldIntoRange(x_, x);
  }
}

/// Tests the nearest line and the nearest x. Differences round monotonically, so the computed
/// distance of no feature of the extent is smaller.
bool RemainingExtent::reachesPlace(int line, double x, const SQO_treeGrowParam& limits) const {
  if (firstLine_ > lastLine_) {
    return false;
  }
  const int nearestLine = std::clamp(line, firstLine_, lastLine_);
  const double nearestX = x < x_.min ? x_.min : (x > x_.max ? x_.max : x);
  const double stepX = x_.min > x_.max ? std::nan("") : std::abs(nearestX - x);
  return isWithinSkip(lineGap(line, nearestLine), stepX, limits);
}

}  // namespace scanline::detail
