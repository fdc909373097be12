#include <scanline/trees.h>
#include "trees/line_walk.h"
#include "trees/tree_rules.h"

namespace detail = scanline::detail;

namespace {

using GapTrees = detail::OpenTrees<SQO_gapFeatureTree>;

constexpr int kGapTreeType = 1;

SQO_gapFeatureTree newGapTree(const SQO_basicFeatureGap& gap, int lineIdx) {
  return {TREE_GROWING, kGapTreeType, lineIdx, lineIdx, 0.0, {0.0, 0.0}, {0.0, 0.0}, {gap}, -1};
}

/// Attaches a gap to the first tree that it fits, or lets it start one.
void placeGap(const SQO_basicFeatureGap& gap,
              int lineIdx,
              const detail::Outlook& ahead,
              const SQO_treeGrowParam& param,
              GapTrees& trees) {
  const int treeId = trees.firstFitting(gap, ahead, [&](int id) {
    return detail::isInReach(gap, trees[id].treeNodes.back(), param);
  });
  if (treeId < 0) {
    trees.append(newGapTree(gap, lineIdx));
    return;
  }
  trees.grow(treeId, [&](SQO_gapFeatureTree& tree) {
    tree.treeNodes.push_back(gap);
    tree.eLineIdx = lineIdx;
  });
}

}  // namespace

void qo_lineGapsGrowing(int lineIdx,
                        bool isLastLine,
                        std::vector<SQO_basicFeatureGap>& line_gaps,
                        std::vector<SQO_gapFeatureTree>& trees,
                        SQO_treeGrowParam growParam) {
  GapTrees openTrees(trees, detail::reachOf(growParam),
                     [](const SQO_gapFeatureTree&) { return true; });
  const auto closes = [&](const SQO_gapFeatureTree& tree) {
    return isLastLine ||
           detail::liesTooFarBehind(lineIdx, tree.treeNodes.back().lineIdx, growParam);
  };
  const auto stays = [&](const SQO_gapFeatureTree& tree) {
    return !(growParam.minLTypeTreeLen >= detail::lengthOf(tree));
  };
  detail::growScan(
      1, [&](int) { return detail::NodeLine<SQO_basicFeatureGap>(lineIdx, line_gaps); },
      [&](const SQO_basicFeatureGap& gap, int, const detail::Outlook& ahead) {
        placeGap(gap, lineIdx, ahead, growParam, openTrees);
      },
      [&](int, bool) { openTrees.closeWhere(closes, stays); }, openTrees);
}
