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

double planeDistance(const STesk3DPoint& a, const STesk3DPoint& b) {
  const double dx = a.x - b.x;
  const double dy = a.y - b.y;
  return std::sqrt(dx * dx + dy * dy);
}

bool isWithinSkip(long long lineGap, double stepX, const SQO_treeGrowParam& growParam) {
  return lineGap < growParam.maxLineSkipNum || growParam.maxSkipDistance > stepX;
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
  if (isLastLine || growParam.maxLineSkipNum > 0) {
    return isLastLine || behind > growParam.maxLineSkipNum;
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
