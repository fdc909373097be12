#include "trees/feature_growing.h"

namespace scanline::detail {

void admitTrees(const Outlook& outlook, FeatureGrowth& growth) {
  growth.trees.admit([&](const SQO_featureTree& tree) {
    return outlook.reaches(tree.treeNodes.back(), growth.param);
  });
}

bool qo_featureGrowing(const SQO_basicFeature1D& feature,
                       int lineIdx,
                       const Outlook& outlook,
                       FeatureGrowth& growth) {
  const int id = growth.trees.firstFitting(feature.jumpPos.y, [&](const SQO_featureTree& tree) {
    const SQO_basicFeature1D& last = tree.treeNodes.back();
    if (isInReach(feature, last, growth.param) &&
        growth.rule.matches(tree.treeType, feature.featureType)) {
      return Verdict::kFits;
    }
    return outlook.reaches(last, growth.param) ? Verdict::kNot : Verdict::kNever;
  });
  if (id < 0) {
    return false;
  }
  growth.trees.grow(id, [&](SQO_featureTree& tree) {
    tree.eLineIdx = lineIdx;
    tree.treeNodes.push_back(feature);
    tree.treeValue += feature.featureValue;
  });
  return true;
}

void growLine(const FeatureLine& line, const Outlook& outlook, FeatureGrowth& growth) {
  for (const SQO_basicFeature1D& feature : line.features) {
    if (!qo_featureGrowing(feature, line.lineIdx, outlook, growth)) {
      const double treeValue = growth.rule.countsFirstValue ? feature.featureValue : 0.0;
      growth.trees.append(newTree(feature, line.lineIdx, treeValue));
    }
  }
}

}  // namespace scanline::detail
