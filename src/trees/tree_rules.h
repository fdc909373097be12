#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include <scanline/feature_records.h>
#include "trees/node_place.h"
#include "trees/outlook.h"

/// The rules that growers of trees share.
namespace scanline::detail {

/// Distance of two line indices.
long long lineGap(int a, int b);

/// Distance in x and y.
double planeDistance(const STesk3DPoint& a, const STesk3DPoint& b);

/// Length of a tree: the straight way in x and y from its first node to its last.
template <typename Tree>
double lengthOf(const Tree& tree) {
  return planeDistance(positionOf(tree.treeNodes.front()), positionOf(tree.treeNodes.back()));
}

/// Whether a tree has fallen so little behind, in lines or else by `stepX`, that it may go on.
bool isWithinSkip(long long linesBehind, double stepX, const SQO_treeGrowParam& growParam);

/// How far a feature may lie from the last node of the tree that it joins.
inline Reach reachOf(const SQO_treeGrowParam& growParam) {
  return {growParam.yDeviation_max, growParam.maxLineSkipNum, growParam.maxSkipDistance};
}

/// Whether a feature lies close enough behind a tree's last node: not on the node's own line,
/// within the deviations of y and z, and within that of x once the tree lies far behind in lines.
template <typename Node>
bool isInReach(const Node& feature, const Node& lastNode, const SQO_treeGrowParam& growParam) {
  if (lineOf(feature) == lineOf(lastNode)) {
    return false;
  }
  const STesk3DPoint& pos = positionOf(feature);
  const STesk3DPoint& last = positionOf(lastNode);
  return growParam.yDeviation_max > std::abs(pos.y - last.y) &&
         growParam.zDeviation_max > std::abs(pos.z - last.z) &&
         isWithinSkip(lineGap(lineOf(feature), lineOf(lastNode)), std::abs(pos.x - last.x),
                      growParam);
}

/// Whether a tree that ends at `lastLine` lies more lines behind than the limit; without a limit
/// none does.
bool liesTooFarBehind(int lineIdx, int lastLine, const SQO_treeGrowParam& growParam);

/// The extent of a tree of several lines, as its mean step tells how far it has fallen behind.
struct TreeSpan {
  int lastLine;     ///< Line of the last node.
  long long lines;  ///< Lines from the first node's to the last one's, as the tree counts them.
  double x;         ///< Extent in x.
};

/// The closing rule of growers that go line by line. A tree that spans one line, or took a node of
/// this one, never closes. Without a limit in lines a tree closes by the x distance that it has
/// skipped, estimated from its own mean step.
bool closesByItsStep(int lineIdx,
                     bool isLastLine,
                     const TreeSpan& span,
                     const SQO_treeGrowParam& growParam);

/// Lines from the first node's to the last one's, as the tree counts them.
template <typename Tree>
long long linesSpanned(const Tree& tree) {
  return static_cast<long long>(tree.eLineIdx) - tree.sLineIdx;
}

/// Removes each tree that spans a single line, in whatever state it is.
template <typename Tree>
void removeTreesOfOneLine(std::vector<Tree>& trees) {
  const auto isOfOneLine = [](const Tree& tree) { return tree.eLineIdx == tree.sLineIdx; };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isOfOneLine), trees.end());
}

/// A fresh tree of one node whose value counts from `treeValue`.
SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx, double treeValue);

/// Whether a tree that closes is to stay in the list.
bool qo_treeLongEnough(const SQO_featureTree& tree, double minLTypeTreeLen, double minVTypeTreeLen);

/// Fills the ranges in x and y from the nodes; without nodes all four values become 0.
void qo_treeBounds(SQO_featureTree& tree);

/// Fills the ranges of all trees of a list when a scope ends, be it by an exception.
class BoundsAtEnd {
 public:
  explicit BoundsAtEnd(std::vector<SQO_featureTree>& trees) : trees_(trees) {}
  BoundsAtEnd(const BoundsAtEnd&) = delete;
  BoundsAtEnd& operator=(const BoundsAtEnd&) = delete;
  ~BoundsAtEnd() {
    std::for_each(trees_.begin(), trees_.end(), qo_treeBounds);
  }

 private:
  std::vector<SQO_featureTree>& trees_;
};

}  // namespace scanline::detail
