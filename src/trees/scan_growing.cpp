#include <scanline/trees.h>
#include "trees/feature_growing.h"
#include "trees/tree_rules.h"
#include "trees/type_match.h"

namespace detail = scanline::detail;

namespace {

using TypeMatch = bool (*)(int treeType, int featureType);

/// Grows trees over all lines of a scan.
template <typename LineAt>
void growOver(std::size_t lineCount,
              LineAt lineAt,
              TypeMatch matches,
              std::vector<SQO_featureTree>& trees,
              const SQO_treeGrowParam& param) {
  detail::FeatureGrowth growth(trees, param, detail::scanRule(matches));
  detail::growFeatures(static_cast<int>(lineCount), lineAt, detail::closeByLines, growth);
}

bool matchesAny(int /*treeType*/, int /*featureType*/) {
  return true;
}

}  // namespace

void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                               std::vector<SQO_featureTree>& trees,
                               SQO_treeGrowParam growParam) {
  const auto featuresOf = [&](int i) {
    return detail::FeatureLine(lineFeatures[i].lineIdx, lineFeatures[i].features);
  };
  growOver(lineFeatures.size(), featuresOf, detail::qo_featureTypeMatch, trees, growParam);
}

void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                           std::vector<SQO_featureTree>& trees,
                           SQO_treeGrowParam growParam) {
  const auto featuresOf = [&](int i) { return detail::FeatureLine(i, lineFeatures[i]); };
  const detail::BoundsAtEnd bounds(trees);
  growOver(lineFeatures.size(), featuresOf, detail::qo_featureTypeMatch, trees, growParam);
}

void ju_getFeatureGrowingTrees_noTypeMatch(std::vector<SQO_lineFeature>& lineFeatures,
                                           std::vector<SQO_featureTree>& trees,
                                           std::vector<SQO_featureTree>& endingTrees,
                                           SQO_treeGrowParam growParam) {
  const auto featuresOf = [&](int i) {
    return detail::FeatureLine(lineFeatures[i].lineIdx, lineFeatures[i].features);
  };
  const auto endingsOf = [&](int i) {
    return detail::FeatureLine(lineFeatures[i].lineIdx, lineFeatures[i].endings);
  };
  growOver(lineFeatures.size(), featuresOf, matchesAny, trees, growParam);
  growOver(lineFeatures.size(), endingsOf, matchesAny, endingTrees, growParam);
}
