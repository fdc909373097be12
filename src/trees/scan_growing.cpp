#include "trees.h"
#include "trees/feature_growing.h"
#include "trees/tree_rules.h"
#include "trees/type_match.h"

namespace detail = scanline::detail;

namespace {

constexpr detail::GrowthRule kScanRule = {detail::qo_featureTypeMatch,
                                          [](const SQO_featureTree&) { return true; }, false};

/// Grows trees over all lines; what falls behind by more lines than the limit closes, and on the
/// last line everything.
template <typename LineAt>
void growAndClose(int lineCount,
                  LineAt lineAt,
                  std::vector<SQO_featureTree>& trees,
                  const SQO_treeGrowParam& param) {
  detail::FeatureGrowth growth(trees, param, kScanRule);
  const auto close = [&](int lineIdx, bool isLastLine) {
    if (!isLastLine && param.maxLineSkipNum <= 0) {
      return;
    }
    detail::closeTrees(
        [&](const SQO_featureTree& tree) {
          return isLastLine ||
                 detail::lineGap(lineIdx, tree.treeNodes.back().jumpPos2D.x) > param.maxLineSkipNum;
        },
        growth);
  };
  detail::growScan(lineCount, lineAt, close, growth);
}

}  // namespace

void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                               std::vector<SQO_featureTree>& trees,
                               SQO_treeGrowParam growParam) {
  const auto lineAt = [&](int i) {
    return detail::FeatureLine{lineFeatures[i].lineIdx, lineFeatures[i].features};
  };
  growAndClose(static_cast<int>(lineFeatures.size()), lineAt, trees, growParam);
}

void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                           std::vector<SQO_featureTree>& trees,
                           SQO_treeGrowParam growParam) {
  const auto lineAt = [&](int i) { return detail::FeatureLine{i, lineFeatures[i]}; };
  growAndClose(static_cast<int>(lineFeatures.size()), lineAt, trees, growParam);
  for (SQO_featureTree& tree : trees) {
    detail::qo_treeBounds(tree);
  }
}
