// Grows trees from gaps.
#include <cmath>

#include <scanline/trees.h>
#include "trees/tree_growing.h"

namespace detail = scanline::detail;

namespace {

constexpr int kGapTreeType = 1;

/// Trees of gaps, which close by lines. The position of a gap is its centre.
struct GapRules {
  using Tree = SQO_gapFeatureTree;
  using Node = SQO_basicFeatureGap;
  static constexpr bool kClosesByStep = false;

  SQO_treeGrowParam param;

  [[nodiscard]] const SQO_treeGrowParam& limits() const {
    return param;
  }
  [[nodiscard]] bool fits(const Node& gap, const Tree& tree) const {
    const Node& last = tree.treeNodes.back();
    return param.zDeviation_max >
               std::abs(detail::positionOf(gap).z - detail::positionOf(last).z) &&
           detail::isWithinSkipOf(last, gap, param);
  }
  [[nodiscard]] static Tree start(const Node& gap, int lineIdx) {
    return {TREE_GROWING, kGapTreeType, lineIdx, lineIdx, 0.0, {0.0, 0.0}, {0.0, 0.0}, {gap}, -1};
  }
  static void add(const Node& gap, int lineIdx, Tree& tree) {
    tree.treeNodes.push_back(gap);
    tree.eLineIdx = lineIdx;
  }
  [[nodiscard]] bool closes(const Tree& /*tree*/, long long lag, bool isLastLine) const {
    return detail::closesByLines(lag, isLastLine, param);
  }
  [[nodiscard]] bool keeps(const Tree& tree) const {
    return !(param.minLTypeTreeLen >= detail::lengthOf(tree));
  }
};

}  // namespace

void qo_lineGapsGrowing(int lineIdx,
                        bool isLastLine,
                        std::vector<SQO_basicFeatureGap>& line_gaps,
                        std::vector<SQO_gapFeatureTree>& trees,
                        SQO_treeGrowParam growParam) {
  detail::growTrees({{lineIdx, line_gaps, isLastLine}}, trees, GapRules{growParam});
}
