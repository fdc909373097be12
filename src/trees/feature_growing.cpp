#include "trees/feature_growing.h"

namespace scanline::detail {

bool fitsTree(const SQO_basicFeature1D& feature,
              const SQO_featureTree& tree,
              const FeatureGrowth& growth) {
  return isInReach(feature, tree.treeNodes.back(), growth.param) &&
         growth.rule.matches(tree.treeType, feature.featureType);
}

void attach(const SQO_basicFeature1D& feature, int lineIdx, int treeId, FeatureGrowth& growth) {
  growth.trees.grow(treeId, [&](SQO_featureTree& tree) {
    tree.treeNodes.push_back(feature);
    tree.eLineIdx = lineIdx;
    tree.treeValue += feature.featureValue;
  });
}

bool qo_featureGrowing(const SQO_basicFeature1D& feature,
                       int lineIdx,
                       const Outlook& ahead,
                       FeatureGrowth& growth) {
  const int treeId = growth.trees.firstFitting(
      feature, ahead, [&](int id) { return fitsTree(feature, growth.trees[id], growth); });
  if (treeId < 0) {
    return false;
  }
  attach(feature, lineIdx, treeId, growth);
  return true;
}

void placeFeature(const SQO_basicFeature1D& feature,
                  int lineIdx,
                  const Outlook& ahead,
                  FeatureGrowth& growth) {
  if (!qo_featureGrowing(feature, lineIdx, ahead, growth)) {
    const double treeValue = growth.rule.countsFirstValue ? feature.featureValue : 0.0;
    growth.trees.append(newTree(feature, lineIdx, treeValue));
  }
}

void closeByLines(int lineIdx, bool isLastLine, FeatureGrowth& growth) {
  if (!isLastLine && growth.param.maxLineSkipNum <= 0) {
    return;
  }
  closeTrees(
      [&](const SQO_featureTree& tree) {
        return isLastLine || liesTooFarBehind(lineIdx, lineOf(tree.treeNodes.back()), growth.param);
      },
      growth);
}

}  // namespace scanline::detail
