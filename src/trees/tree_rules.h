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

/// Number of lines from the first node of a tree to its last, by the line indices of the tree.
template <typename Tree>
long long linesSpanned(const Tree& tree) {
  return static_cast<long long>(tree.eLineIdx) - tree.sLineIdx;
}

/// Distance in x from the first node of a tree to its last.
template <typename Tree>
double extentX(const Tree& tree) {
  return distanceX(tree.treeNodes.front(), tree.treeNodes.back());
}

/// The limits along x: a feature is fewer than `maxLineSkipNum` lines or less than
/// `maxSkipDistance` in x from the last node of a tree.
inline bool isWithinSkip(long long lines, double stepX, const SQO_treeGrowParam& param) {
  return lines < param.maxLineSkipNum || param.maxSkipDistance > stepX;
}

/// Whether a feature is within the limits along x of the last node of a tree.
template <typename Node>
bool isWithinSkipOf(const Node& lastNode, const Node& feature, const SQO_treeGrowParam& param) {
  return isWithinSkip(lineGap(lineOf(feature), lineOf(lastNode)), distanceX(feature, lastNode),
                      param);
}

/// The closing rule of growers whose trees close by lines. A tree lags by the number of lines from
/// its last node to the present line. If `maxLineSkipNum` is above 0, a tree closes when it lags by
/// more lines. The last line closes all trees.
inline bool closesByLines(long long lag, bool isLastLine, const SQO_treeGrowParam& param) {
  return isLastLine || (param.maxLineSkipNum > 0 && lag > param.maxLineSkipNum);
}

/// The closing rule of growers whose trees close by step. A tree that spans a single line, or has a
/// node on the present line, never closes. If `maxLineSkipNum` is not above 0, the distance in x
/// that a tree has skipped counts, estimated from its mean step.
template <typename Tree>
bool closesByStep(const Tree& tree,
                  long long lag,
                  bool isLastLine,
                  const SQO_treeGrowParam& param) {
  if (lag < 1 || linesSpanned(tree) < 1) {
    return false;
  }
  if (isLastLine || param.maxLineSkipNum > 0) {
    return closesByLines(lag, isLastLine, param);
  }
  const double meanStep = extentX(tree) / static_cast<double>(linesSpanned(tree));
  return meanStep * static_cast<double>(lag) > param.maxSkipDistance;
}

/// Removes all trees that span a single line, whatever their state.
template <typename Tree>
void removeTreesOfOneLine(std::vector<Tree>& trees) {
  const auto isOfOneLine = [](const Tree& tree) { return linesSpanned(tree) == 0; };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isOfOneLine), trees.end());
}

}  // namespace scanline::detail
