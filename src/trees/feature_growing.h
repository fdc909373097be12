#pragma once

#include <scanline/feature_records.h>
#include "trees/line_walk.h"
#include "trees/open_trees.h"
#include "trees/outlook.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

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
      : trees(list, reachOf(growParam), growthRule.closable), param(growParam), rule(growthRule) {}

  OpenTrees<SQO_featureTree> trees;
  SQO_treeGrowParam param;
  GrowthRule rule;
};

using FeatureLine = NodeLine<SQO_basicFeature1D>;

/// The attach test: whether a tree takes a feature.
bool fitsTree(const SQO_basicFeature1D& feature,
              const SQO_featureTree& tree,
              const FeatureGrowth& growth);

/// Adds a feature to a tree.
void attach(const SQO_basicFeature1D& feature, int lineIdx, int treeId, FeatureGrowth& growth);

/// Lets the first tree of the list that a feature fits take it. `ahead` covers this feature and all
/// that come after it.
bool qo_featureGrowing(const SQO_basicFeature1D& feature,
                       int lineIdx,
                       const Outlook& ahead,
                       FeatureGrowth& growth);

/// Attaches a feature, or lets it start a tree.
void placeFeature(const SQO_basicFeature1D& feature,
                  int lineIdx,
                  const Outlook& ahead,
                  FeatureGrowth& growth);

/// Grows trees from the features of a scan; `close(lineIdx, isLastLine, growth)` is the closing
/// walk after a line.
template <typename LineAt, typename Close>
void growFeatures(int lineCount, LineAt lineAt, Close close, FeatureGrowth& growth) {
  growScan(
      lineCount, lineAt,
      [&](const SQO_basicFeature1D& feature, int lineIdx, const Outlook& ahead) {
        placeFeature(feature, lineIdx, ahead, growth);
      },
      [&](int lineIdx, bool isLastLine) { close(lineIdx, isLastLine, growth); }, growth.trees);
}

/// Closes the trees that `closes(tree)`, and removes those that are too short.
template <typename Closes>
void closeTrees(Closes closes, FeatureGrowth& growth) {
  growth.trees.closeWhere(closes, [&](const SQO_featureTree& tree) {
    return qo_treeLongEnough(tree, growth.param.minLTypeTreeLen, growth.param.minVTypeTreeLen);
  });
}

/// The rule of growers that close every tree some time.
inline GrowthRule scanRule(bool (*matches)(int treeType, int featureType)) {
  return {matches, [](const SQO_featureTree&) { return true; }, false};
}

/// The closing walk of these growers: what falls behind by more lines than the limit
/// closes, and on the last line everything.
void closeByLines(int lineIdx, bool isLastLine, FeatureGrowth& growth);

}  // namespace scanline::detail
