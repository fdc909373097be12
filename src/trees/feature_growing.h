#pragma once

#include <vector>

#include "feature_records.h"
#include "trees/open_trees.h"
#include "trees/outlook.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

/// The features of one line, under the index that the grower knows the line by.
struct FeatureLine {
  int lineIdx;
  const std::vector<SQO_basicFeature1D>& features;
};

/// What growers of single features differ in.
struct GrowthRule {
  bool (*matches)(int treeType, int featureType);  ///< Which types go together.
  bool (*closable)(const SQO_featureTree& tree);   ///< Which growing trees ever close.
  bool countsFirstValue;  ///< Whether `treeValue` starts at the first node.
};

/// Growth of a caller's trees from single features, for the length of one call.
struct FeatureGrowth {
  FeatureGrowth(std::vector<SQO_featureTree>& list,
                const SQO_treeGrowParam& growParam,
                const GrowthRule& growthRule)
      : trees(list, growParam.yDeviation_max, growthRule.closable),
        param(growParam),
        rule(growthRule) {}

  OpenTrees<SQO_featureTree> trees;
  SQO_treeGrowParam param;
  GrowthRule rule;
};

/// Takes over the trees of the list, for the features of `outlook`.
void admitTrees(const Outlook& outlook, FeatureGrowth& growth);

/// The attach test: the first tree of the list that the feature fits takes it. `outlook` covers
/// this feature and all that come after it.
bool qo_featureGrowing(const SQO_basicFeature1D& feature,
                       int lineIdx,
                       const Outlook& outlook,
                       FeatureGrowth& growth);

/// Attaches the features of a line, or lets them start trees.
void growLine(const FeatureLine& line, const Outlook& outlook, FeatureGrowth& growth);

/// Closes the trees that `closes(tree)`, and removes those that are too short.
template <typename Closes>
void closeTrees(Closes closes, FeatureGrowth& growth) {
  growth.trees.closeWhere(closes, [&](const SQO_featureTree& tree) {
    return qo_treeLongEnough(tree, growth.param.minLTypeTreeLen, growth.param.minVTypeTreeLen);
  });
}

/// The outlook from each line of a scan on.
template <typename LineAt>
std::vector<Outlook> outlooksOf(int lineCount, LineAt lineAt) {
  std::vector<Outlook> outlooks(static_cast<std::size_t>(lineCount) + 1);
  for (int i = lineCount - 1; i >= 0; --i) {
    outlooks[i] = outlooks[i + 1];
    outlooks[i].add(lineAt(i).features);
  }
  return outlooks;
}

/// Grows trees line by line over a whole scan: `lineAt(i)` gives line i of `lineCount`, and
/// `close(line, isLastLine)` is the closing walk after it.
template <typename LineAt, typename Close>
void growScan(int lineCount, LineAt lineAt, Close close, FeatureGrowth& growth) {
  if (lineCount < 1) {
    return;  // with nothing to grow, trees passed in may be without nodes
  }
  const std::vector<Outlook> outlooks = outlooksOf(lineCount, lineAt);
  admitTrees(outlooks.front(), growth);
  for (int i = 0; i < lineCount; ++i) {
    const FeatureLine line = lineAt(i);
    growLine(line, outlooks[i], growth);
    close(line.lineIdx, i == lineCount - 1);
  }
  growth.trees.finish();
}

}  // namespace scanline::detail
