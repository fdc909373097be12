#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <scanline/feature_records.h>
#include "trees/node_place.h"

/// The rules that growers of trees share.
namespace scanline::detail {

/// Distance of two line indices.
inline long long lineGap(int a, int b) {
  return std::llabs(static_cast<long long>(a) - b);
}

/// Distance in the x-y plane.
inline double planeDistance(const STesk3DPoint& a, const STesk3DPoint& b) {
  const double dx = a.x - b.x;
  const double dy = a.y - b.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// Length of a tree: the distance in the x-y plane from its first node to its last.
template <typename Tree>
double lengthOf(const Tree& tree) {
  return planeDistance(positionOf(tree.treeNodes.front()), positionOf(tree.treeNodes.back()));
}

/// Lines from the first node's to the last one's, as the tree counts them.
template <typename Tree>
long long linesSpanned(const Tree& tree) {
  return static_cast<long long>(tree.eLineIdx) - tree.sLineIdx;
}

/// Extent of a tree in x, from its first node to its last.
template <typename Tree>
double extentX(const Tree& tree) {
  return distanceX(tree.treeNodes.front(), tree.treeNodes.back());
}

/// The limits along x: a feature follows a tree's last node in fewer lines than the one, or in less
/// x than the other.
inline bool isWithinSkip(long long lines, double stepX, const SQO_treeGrowParam& param) {
  return lines < param.maxLineSkipNum || param.maxSkipDistance > stepX;
}

/// Whether a feature is within the limits along x of a tree's last node.
template <typename Node>
bool isWithinSkipOf(const Node& lastNode, const Node& feature, const SQO_treeGrowParam& param) {
  return isWithinSkip(lineGap(lineOf(feature), lineOf(lastNode)), distanceX(feature, lastNode),
                      param);
}

/// The closing rule of growers that close every tree at the last line. Before it, a tree closes
/// once it is more lines behind than the limit; without a limit none does.
inline bool closesByLines(long long linesBehind, bool isLastLine, const SQO_treeGrowParam& param) {
  return isLastLine || (param.maxLineSkipNum > 0 && linesBehind > param.maxLineSkipNum);
}

/// The closing rule of growers that never close a tree which spans a single line, or has a node on
/// this one. Without a limit in lines a tree closes by the x distance that it has skipped, as
/// estimated from its mean step.
template <typename Tree>
bool closesByStep(const Tree& tree,
                  long long linesBehind,
                  bool isLastLine,
                  const SQO_treeGrowParam& param) {
  if (linesBehind < 1 || linesSpanned(tree) < 1) {
    return false;
  }
  if (isLastLine || param.maxLineSkipNum > 0) {
    return closesByLines(linesBehind, isLastLine, param);
  }
  const double meanStep = extentX(tree) / static_cast<double>(linesSpanned(tree));
  return meanStep * static_cast<double>(linesBehind) > param.maxSkipDistance;
}

/// Removes each tree that spans a single line, in any state.
template <typename Tree>
void removeTreesOfOneLine(std::vector<Tree>& trees) {
  const auto isOfOneLine = [](const Tree& tree) { return linesSpanned(tree) == 0; };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isOfOneLine), trees.end());
}

}  // namespace scanline::detail
