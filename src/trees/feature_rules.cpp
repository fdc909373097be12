#include "trees/feature_rules.h"

#include <cmath>
#include <cstddef>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// A V tree whose z drifts by this much per unit of length, or more, is not kept.
constexpr double kMaxVDrift = 0.3;

}  // namespace

SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx) {
  return {TREE_GROWING, feature.featureType, lineIdx,   lineIdx, 0.0,
          {0.0, 0.0},   {0.0, 0.0},          {feature}, -1};
}

bool isLongEnough(const SQO_featureTree& tree, const SQO_treeGrowParam& param) {
  const double len = lengthOf(tree);
  if (tree.treeType != FEATURE_V) {
    return param.minLTypeTreeLen < len;
  }
  if (param.minVTypeTreeLen >= len) {
    return false;
  }
  const std::size_t count = tree.treeNodes.size();
  const double drift =
      tree.treeNodes[count / 4].jumpPos.z - tree.treeNodes[3 * count / 4].jumpPos.z;
  return kMaxVDrift > std::abs(drift) / len;
}

void setBounds(std::vector<SQO_featureTree>& trees) {
  for (SQO_featureTree& tree : trees) {
    tree.xRange = kEmptyRange;
    tree.yRange = kEmptyRange;
    for (const SQO_basicFeature1D& node : tree.treeNodes) {
      foldIntoRange(tree.xRange, node.jumpPos.x);
      foldIntoRange(tree.yRange, node.jumpPos.y);
    }
    if (tree.treeNodes.empty()) {
      tree.xRange = {0.0, 0.0};
      tree.yRange = {0.0, 0.0};
    }
  }
}

}  // namespace scanline::detail
