#include "trees/outlook.h"

#include <algorithm>
#include <cmath>

#include "records/sample_rules.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

void Outlook::add(const std::vector<SQO_basicFeature1D>& features) {
  for (const SQO_basicFeature1D& feature : features) {
    const int line = feature.jumpPos2D.x;
    const bool isFirst = firstLine_ > lastLine_;
    firstLine_ = isFirst ? line : std::min(firstLine_, line);
    lastLine_ = isFirst ? line : std::max(lastLine_, line);
    if (!std::isnan(feature.jumpPos.x)) {
      foldIntoRange(x_, feature.jumpPos.x);
    }
  }
}

bool Outlook::reaches(const SQO_basicFeature1D& lastNode,
                      const SQO_treeGrowParam& growParam) const {
  if (firstLine_ > lastLine_) {
    return false;
  }
  const int line = lastNode.jumpPos2D.x;
  if (lineGap(line, std::clamp(line, firstLine_, lastLine_)) < growParam.maxLineSkipNum) {
    return true;
  }
  if (x_.min > x_.max) {
    return false;
  }
  // Differences round monotonically: what lies beyond the nearest x differs by no less.
  const double x = lastNode.jumpPos.x;
  const double nearest = x < x_.min ? x_.min : (x > x_.max ? x_.max : x);
  return growParam.maxSkipDistance > std::abs(nearest - x);
}

}  // namespace scanline::detail
