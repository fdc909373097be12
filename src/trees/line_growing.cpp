// Grows trees from single features, which close by step.
#include <scanline/trees.h>
#include "trees/feature_rules.h"

namespace detail = scanline::detail;

namespace {

/// Trees of single features that close by step. `treeValue` includes all nodes.
struct LineRules : detail::ScanRules {
  static constexpr bool kClosesByStep = true;

  [[nodiscard]] static Tree start(const Node& feature, int lineIdx) {
    Tree tree = detail::newTree(feature, lineIdx);
    tree.treeValue = feature.featureValue;
    return tree;
  }
  [[nodiscard]] bool closes(const Tree& tree, long long lag, bool isLastLine) const {
    return detail::closesByStep(tree, lag, isLastLine, param);
  }
};

}  // namespace

void qo_lineFeaturesGrowing(int lineIdx,
                            bool isLastLine,
                            std::vector<SQO_basicFeature1D>& features,
                            std::vector<SQO_featureTree>& trees,
                            SQO_treeGrowParam growParam) {
  detail::growTrees({{lineIdx, features, isLastLine}}, trees, LineRules{{growParam}});
}

void qo_cornerFeaturesGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                              std::vector<SQO_featureTree>& trees,
                              SQO_treeGrowParam growParam) {
  detail::growTrees(detail::linesByPosition(lineFeatures), trees, LineRules{{growParam}});
  detail::removeTreesOfOneLine(trees);
}
