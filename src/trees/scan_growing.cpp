// Grows trees from the single features of a whole scan, which close by lines.
#include <cassert>

#include <scanline/trees.h>
#include "trees/feature_rules.h"

namespace detail = scanline::detail;

namespace {

/// The lines of a scan with the features of one list of their records.
std::vector<detail::NodeLine<SQO_basicFeature1D>> linesOf(
    const std::vector<SQO_lineFeature>& records,
    std::vector<SQO_basicFeature1D> SQO_lineFeature::*list) {
  std::vector<detail::NodeLine<SQO_basicFeature1D>> lines;
  lines.reserve(records.size());
  for (const SQO_lineFeature& record : records) {
    lines.emplace_back(record.lineIdx, record.*list, &record == &records.back());
  }
  return lines;
}

}  // namespace

void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                               std::vector<SQO_featureTree>& trees,
                               SQO_treeGrowParam growParam) {
  const detail::ScanRules rules = {growParam};
  detail::growTrees(linesOf(lineFeatures, &SQO_lineFeature::features), trees, rules);
}

void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                           std::vector<SQO_featureTree>& trees,
                           SQO_treeGrowParam growParam) {
  const detail::BoundsAtEnd bounds(trees);
  const detail::ScanRules rules = {growParam};
  detail::growTrees(detail::linesByPosition(lineFeatures), trees, rules);
}

void ju_getFeatureGrowingTrees_noTypeMatch(std::vector<SQO_lineFeature>& lineFeatures,
                                           std::vector<SQO_featureTree>& trees,
                                           std::vector<SQO_featureTree>& endingTrees,
                                           SQO_treeGrowParam growParam) {
  assert(&trees != &endingTrees);
  const detail::ScanRules rules = {growParam, false};
  detail::growTrees(linesOf(lineFeatures, &SQO_lineFeature::features), trees, rules);
  detail::growTrees(linesOf(lineFeatures, &SQO_lineFeature::endings), endingTrees, rules);
}
