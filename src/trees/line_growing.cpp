#include <cmath>

#include <scanline/trees.h>
#include "trees/feature_growing.h"
#include "trees/tree_rules.h"
#include "trees/type_match.h"

namespace detail = scanline::detail;

namespace {

/// A tree of a single line never closes here, however far it falls behind.
constexpr detail::GrowthRule kLineRule = {
    detail::qo_featureTypeMatch,
    [](const SQO_featureTree& tree) { return detail::linesSpanned(tree) >= 1; }, true};

void closeAfter(int lineIdx, bool isLastLine, detail::FeatureGrowth& growth) {
  detail::closeTrees(
      [&](const SQO_featureTree& tree) {
        const SQO_basicFeature1D& last = tree.treeNodes.back();
        const double extent = std::abs(tree.treeNodes.front().jumpPos.x - last.jumpPos.x);
        return detail::closesByItsStep(lineIdx, isLastLine,
                                       {last.jumpPos2D.x, detail::linesSpanned(tree), extent},
                                       growth.param);
      },
      growth);
}

/// Grows trees over lines, whose last is that of the scan if `endsScan`.
template <typename LineAt>
void growOver(int lineCount,
              LineAt lineAt,
              bool endsScan,
              std::vector<SQO_featureTree>& trees,
              const SQO_treeGrowParam& param) {
  detail::FeatureGrowth growth(trees, param, kLineRule);
  const auto close = [endsScan](int lineIdx, bool isLast, detail::FeatureGrowth& grown) {
    closeAfter(lineIdx, isLast && endsScan, grown);
  };
  detail::growFeatures(lineCount, lineAt, close, growth);
}

}  // namespace

void qo_lineFeaturesGrowing(int lineIdx,
                            bool isLastLine,
                            std::vector<SQO_basicFeature1D>& features,
                            std::vector<SQO_featureTree>& trees,
                            SQO_treeGrowParam growParam) {
  const auto theLine = [&](int) { return detail::FeatureLine(lineIdx, features); };
  growOver(1, theLine, isLastLine, trees, growParam);
}

void qo_cornerFeaturesGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                              std::vector<SQO_featureTree>& trees,
                              SQO_treeGrowParam growParam) {
  const auto lineAt = [&](int i) { return detail::FeatureLine(i, lineFeatures[i]); };
  growOver(static_cast<int>(lineFeatures.size()), lineAt, true, trees, growParam);
  detail::removeTreesOfOneLine(trees);
}
