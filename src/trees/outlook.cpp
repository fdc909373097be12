#include "trees/outlook.h"

#include <algorithm>
#include <cmath>

#include "records/sample_rules.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

void Outlook::addPlace(int line, double x) {
  const bool isFirst = firstLine_ > lastLine_;
  firstLine_ = isFirst ? line : std::min(firstLine_, line);
  lastLine_ = isFirst ? line : std::max(lastLine_, line);
  if (!std::isnan(x)) {
    foldIntoRange(x_, x);
  }
}

bool Outlook::reachesPlace(int line, double x, const Reach& reach) const {
  if (firstLine_ > lastLine_) {
    return false;
  }
  if (lineGap(line, std::clamp(line, firstLine_, lastLine_)) < reach.lines) {
    return true;
  }
  if (x_.min > x_.max) {
    return false;
  }
  // Differences round monotonically: what lies beyond the nearest x differs by no less.
  const double nearest = x < x_.min ? x_.min : (x > x_.max ? x_.max : x);
  return reach.x > std::abs(nearest - x);
}

}  // namespace scanline::detail
