// Grows trees from segments.
#include <cmath>

#include <scanline/trees.h>
#include "trees/tree_growing.h"

namespace detail = scanline::detail;

namespace {

double meanHeight(const SJU_segFeature& segment) {
  return (segment.startPt.z + segment.endPt.z) * 0.5;
}

/// Trees of segments, which close by step. Both ends of a segment must fit.
struct SegmentRules {
  using Tree = SJU_segFeatureTree;
  using Node = SJU_segFeature;
  static constexpr bool kClosesByStep = true;

  SQO_treeGrowParam param;

  /// `fits` tests the mean of the distances of both ends in x. If that is below the limit, the
  /// distance of the starts alone is below twice the limit.
  [[nodiscard]] SQO_treeGrowParam limits() const {
    SQO_treeGrowParam wide = param;
    wide.maxSkipDistance *= 2.0;
    return wide;
  }
  /// The starts are within the limit in y already.
  [[nodiscard]] bool fits(const Node& segment, const Tree& tree) const {
    const Node& last = tree.treeNodes.back();
    return param.yDeviation_max > std::abs(segment.endPt.y - last.endPt.y) &&
           param.zDeviation_max > std::abs(segment.startPt.z - last.startPt.z) &&
           param.zDeviation_max > std::abs(segment.endPt.z - last.endPt.z) &&
           detail::isWithinSkipOf(last, segment, param);
  }
  [[nodiscard]] static Tree start(const Node& segment, int /*lineIdx*/) {
    return {TREE_GROWING, segment.lineIdx, segment.lineIdx, meanHeight(segment), {segment}};
  }
  static void add(const Node& segment, int lineIdx, Tree& tree) {
    tree.treeNodes.push_back(segment);
    tree.eLineIdx = lineIdx;
    tree.treeValue += meanHeight(segment);
  }
  [[nodiscard]] bool closes(const Tree& tree, long long lag, bool isLastLine) const {
    return detail::closesByStep(tree, lag, isLastLine, param);
  }
  [[nodiscard]] bool keeps(const Tree& tree) const {
    return !(param.minLTypeTreeLen >= detail::extentX(tree));
  }
};

}  // namespace

void ju_getSegFeatureGrowingTrees(std::vector<std::vector<SJU_segFeature>>& lineFeatures,
                                  std::vector<SJU_segFeatureTree>& trees,
                                  SQO_treeGrowParam growParam) {
  detail::growTrees(detail::linesByPosition(lineFeatures), trees, SegmentRules{growParam});
  detail::removeTreesOfOneLine(trees);
}
