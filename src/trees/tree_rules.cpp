#include "trees/tree_rules.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace scanline::detail {
namespace {

/// A V tree whose height drifts by this much per unit of length, or more, is no ridge.
constexpr double kMaxVDrift = 0.3;

}  // namespace

long long lineGap(int a, int b) {
  return std::llabs(static_cast<long long>(a) - b);
}

bool isInReach(const SQO_basicFeature1D& feature,
               const SQO_basicFeature1D& lastNode,
               const SQO_treeGrowParam& growParam) {
  const STesk3DPoint& pos = feature.jumpPos;
  const STesk3DPoint& last = lastNode.jumpPos;
  if (feature.jumpPos2D.x == lastNode.jumpPos2D.x) {
    return false;
  }
  if (!(growParam.yDeviation_max > std::abs(pos.y - last.y)) ||
      !(growParam.zDeviation_max > std::abs(pos.z - last.z))) {
    return false;
  }
  return lineGap(feature.jumpPos2D.x, lastNode.jumpPos2D.x) < growParam.maxLineSkipNum ||
         growParam.maxSkipDistance > std::abs(pos.x - last.x);
}

SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx, double treeValue) {
  return {TREE_GROWING, feature.featureType, lineIdx,   lineIdx, treeValue,
          {0.0, 0.0},   {0.0, 0.0},          {feature}, -1};
}

bool qo_treeLongEnough(const SQO_featureTree& tree,
                       double minLTypeTreeLen,
                       double minVTypeTreeLen) {
  const STesk3DPoint& first = tree.treeNodes.front().jumpPos;
  const STesk3DPoint& last = tree.treeNodes.back().jumpPos;
  const double dx = first.x - last.x;
  const double dy = first.y - last.y;
  const double len = std::sqrt(dx * dx + dy * dy);
  if (tree.treeType != FEATURE_V) {
    return minLTypeTreeLen < len;
  }
  if (minVTypeTreeLen >= len) {
    return false;
  }
  const std::size_t count = tree.treeNodes.size();
  const double drift =
      tree.treeNodes[count / 4].jumpPos.z - tree.treeNodes[3 * count / 4].jumpPos.z;
  return kMaxVDrift > std::abs(drift) / len;
}

void qo_treeBounds(SQO_featureTree& tree) {
  tree.xRange = {0.0, 0.0};
  tree.yRange = {0.0, 0.0};
  if (tree.treeNodes.empty()) {
    return;
  }
  const auto widen = [](STeskRangeD& range, double value) {
    if (range.min > value) {
      range.min = value;
    }
    if (value > range.max) {
      range.max = value;
    }
  };
  const STesk3DPoint& first = tree.treeNodes.front().jumpPos;
  tree.xRange = {first.x, first.x};
  tree.yRange = {first.y, first.y};
  for (const SQO_basicFeature1D& node : tree.treeNodes) {
    widen(tree.xRange, node.jumpPos.x);
    widen(tree.yRange, node.jumpPos.y);
  }
}

}  // namespace scanline::detail
