#include <algorithm>
#include <cmath>

#include "trees.h"
#include "trees/feature_growing.h"
#include "trees/tree_rules.h"
#include "trees/type_match.h"

namespace detail = scanline::detail;

namespace {

long long linesSpanned(const SQO_featureTree& tree) {
  return static_cast<long long>(tree.eLineIdx) - tree.sLineIdx;
}

/// A tree of a single line never closes here, however far it falls behind.
constexpr detail::GrowthRule kLineRule = {
    detail::qo_featureTypeMatch,
    [](const SQO_featureTree& tree) { return linesSpanned(tree) >= 1; }, true};

/// The closing rule after a line. Without a limit in lines a tree closes by the x distance that it
/// has skipped, estimated from its own mean step.
bool closesAfter(int lineIdx,
                 bool isLastLine,
                 const SQO_featureTree& tree,
                 const SQO_treeGrowParam& param) {
  const SQO_basicFeature1D& first = tree.treeNodes.front();
  const SQO_basicFeature1D& last = tree.treeNodes.back();
  const long long behind = detail::lineGap(lineIdx, last.jumpPos2D.x);
  const long long spanned = linesSpanned(tree);
  if (behind < 1 || spanned < 1) {
    return false;
  }
  if (isLastLine) {
    return true;
  }
  if (param.maxLineSkipNum > 0) {
    return behind > param.maxLineSkipNum;
  }
  const double skipped = std::abs(first.jumpPos.x - last.jumpPos.x) / static_cast<double>(spanned) *
                         static_cast<double>(behind);
  return skipped > param.maxSkipDistance;
}

void closeAfter(int lineIdx, bool isLastLine, detail::FeatureGrowth& growth) {
  detail::closeTrees(
      [&](const SQO_featureTree& tree) {
        return closesAfter(lineIdx, isLastLine, tree, growth.param);
      },
      growth);
}

}  // namespace

void qo_lineFeaturesGrowing(int lineIdx,
                            bool isLastLine,
                            std::vector<SQO_basicFeature1D>& features,
                            std::vector<SQO_featureTree>& trees,
                            SQO_treeGrowParam growParam) {
  detail::Outlook outlook;
  outlook.add(features);
  detail::FeatureGrowth growth(trees, growParam, kLineRule);
  detail::admitTrees(outlook, growth);
  detail::growLine({lineIdx, features}, outlook, growth);
  closeAfter(lineIdx, isLastLine, growth);
  growth.trees.finish();
}

void qo_cornerFeaturesGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                              std::vector<SQO_featureTree>& trees,
                              SQO_treeGrowParam growParam) {
  detail::FeatureGrowth growth(trees, growParam, kLineRule);
  detail::growScan(
      static_cast<int>(lineFeatures.size()),
      [&](int i) {
        return detail::FeatureLine{i, lineFeatures[i]};
      },
      [&](int lineIdx, bool isLastLine) { closeAfter(lineIdx, isLastLine, growth); }, growth);
  const auto isOfOneLine = [](const SQO_featureTree& tree) {
    return tree.eLineIdx == tree.sLineIdx;
  };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isOfOneLine), trees.end());
}
