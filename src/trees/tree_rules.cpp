#include "trees/tree_rules.h"

#include <cmath>
#include <cstdlib>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// A V tree whose height drifts by this much per unit of length, or more, is no ridge.
constexpr double kMaxVDrift = 0.3;

}  // namespace

long long lineGap(int a, int b) {
  return std::llabs(static_cast<long long>(a) - b);
}

double planeDistance(const STesk3DPoint& a, const STesk3DPoint& b) {
  const double dx = a.x - b.x;
  const double dy = a.y - b.y;
  return std::sqrt(dx * dx + dy * dy);
}

bool isWithinSkip(long long linesBehind, double stepX, const SQO_treeGrowParam& growParam) {
  return linesBehind < growParam.maxLineSkipNum || growParam.maxSkipDistance > stepX;
}

bool liesTooFarBehind(int lineIdx, int lastLine, const SQO_treeGrowParam& growParam) {
  return growParam.maxLineSkipNum > 0 && lineGap(lineIdx, lastLine) > growParam.maxLineSkipNum;
}

bool closesByItsStep(int lineIdx,
                     bool isLastLine,
                     const TreeSpan& span,
                     const SQO_treeGrowParam& growParam) {
  const long long behind = lineGap(lineIdx, span.lastLine);
  if (behind < 1 || span.lines < 1) {
    return false;
  }
  if (isLastLine) {
    return true;
  }
  if (growParam.maxLineSkipNum > 0) {
    return behind > growParam.maxLineSkipNum;
  }
  const double skipped = span.x / static_cast<double>(span.lines) * static_cast<double>(behind);
  return skipped > growParam.maxSkipDistance;
}

SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx, double treeValue) {
  return {TREE_GROWING, feature.featureType, lineIdx,   lineIdx, treeValue,
          {0.0, 0.0},   {0.0, 0.0},          {feature}, -1};
}

bool qo_treeLongEnough(const SQO_featureTree& tree,
                       double minLTypeTreeLen,
                       double minVTypeTreeLen) {
  const double len = lengthOf(tree);
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
  if (tree.treeNodes.empty()) {
    tree.xRange = {0.0, 0.0};
    tree.yRange = {0.0, 0.0};
    return;
  }
  tree.xRange = kEmptyRange;
  tree.yRange = kEmptyRange;
  for (const SQO_basicFeature1D& node : tree.treeNodes) {
    foldIntoRange(tree.xRange, node.jumpPos.x);
    foldIntoRange(tree.yRange, node.jumpPos.y);
  }
}

}  // namespace scanline::detail
