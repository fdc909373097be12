#pragma once

/// Growing trees from features in the plainest form, by searches of the whole list. The tests
/// compare the results of the library with it, the benchmarks compare the speed.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include <scanline/feature_records.h>

namespace plain {

using Features = std::vector<SQO_basicFeature1D>;
using Lines = std::vector<Features>;
using Trees = std::vector<SQO_featureTree>;

inline SQO_featureTree treeOf(const Features& nodes, int state = TREE_GROWING) {
  const auto& [type, first, pos, value] = nodes.front();
  return {state, type, first.x, nodes.back().jumpPos2D.x, 0.0, {}, {}, nodes, -1};
}

inline bool matches(int tree, int type) {
  static const std::vector<std::vector<int>> table = {
      {}, {1, 3}, {2, 4}, {1, 3}, {2, 4}, {3, 4, 5}, {6},  {7},
      {}, {9},    {10},   {11},   {12},   {13},      {14}, {15}};
  const bool known = tree >= 0 && tree < static_cast<int>(table.size());
  return known && std::count(table[tree].begin(), table[tree].end(), type) > 0;
}

inline double distance(const SQO_basicFeature1D& a, const SQO_basicFeature1D& b) {
  return std::sqrt(std::pow(a.jumpPos.x - b.jumpPos.x, 2) + std::pow(a.jumpPos.y - b.jumpPos.y, 2));
}

inline bool isLongEnough(const SQO_featureTree& tree, const SQO_treeGrowParam& p) {
  const Features& nodes = tree.treeNodes;
  const double len = distance(nodes.front(), nodes.back());
  if (tree.treeType != FEATURE_V) {
    return len > p.minLTypeTreeLen;
  }
  const std::size_t k = nodes.size();
  return len > p.minVTypeTreeLen &&
         std::abs(nodes[k / 4].jumpPos.z - nodes[3 * k / 4].jumpPos.z) / len < 0.3;
}

/// The differences between growers.
struct Rules {
  SQO_treeGrowParam p;
  bool byStep;       // trees close by step, otherwise by lines
  bool typed;        // types must match
  double checkDist;  // NaN: any direction passes
};

inline bool keepsDirection(const SQO_basicFeature1D& f, SQO_featureTree& tree, double checkDist) {
  const Features& nodes = tree.treeNodes;
  if (std::isnan(checkDist) || (tree.anchorNode < 0 && distance(f, nodes[0]) < checkDist)) {
    return true;
  }
  if (tree.anchorNode < 0) {
    tree.anchorNode = 0;
  } else {
    for (int j = tree.anchorNode + 1; j < static_cast<int>(nodes.size()); ++j) {
      if (distance(f, nodes[j]) < checkDist) {
        tree.anchorNode = j - 1;
        break;
      }
    }
  }
  const STesk3DPoint& anchor = nodes[tree.anchorNode].jumpPos;
  return !(std::abs(f.jumpPos.y - anchor.y) / std::abs(f.jumpPos.x - anchor.x) > 1.0);
}

inline void place(const SQO_basicFeature1D& f, int line, Trees& trees, const Rules& rules) {
  const SQO_treeGrowParam& p = rules.p;
  for (SQO_featureTree& tree : trees) {
    const SQO_basicFeature1D& n = tree.treeNodes.back();
    if (tree.treeState != TREE_CLOSED && f.jumpPos2D.x != n.jumpPos2D.x &&
        std::abs(f.jumpPos.y - n.jumpPos.y) < p.yDeviation_max &&
        std::abs(f.jumpPos.z - n.jumpPos.z) < p.zDeviation_max &&
        (std::abs(f.jumpPos2D.x - n.jumpPos2D.x) < p.maxLineSkipNum ||
         std::abs(f.jumpPos.x - n.jumpPos.x) < p.maxSkipDistance) &&
        (!rules.typed || matches(tree.treeType, f.featureType)) &&
        keepsDirection(f, tree, rules.checkDist)) {
      tree.eLineIdx = line;
      tree.treeNodes.push_back(f);
      tree.treeValue += f.featureValue;
      return;
    }
  }
  trees.push_back(treeOf({f}));
  trees.back().sLineIdx = trees.back().eLineIdx = line;
  trees.back().treeValue = rules.byStep ? f.featureValue : 0.0;
}

inline bool closes(const SQO_featureTree& tree, int line, bool isLast, const Rules& rules) {
  const SQO_treeGrowParam& p = rules.p;
  const int gap = std::abs(line - tree.treeNodes.back().jumpPos2D.x);
  const int span = tree.eLineIdx - tree.sLineIdx;
  if (!rules.byStep) {
    return isLast || (p.maxLineSkipNum > 0 && gap > p.maxLineSkipNum);
  }
  if (gap < 1 || span < 1) {
    return false;
  }
  const double skipped =
      std::abs(tree.treeNodes.front().jumpPos.x - tree.treeNodes.back().jumpPos.x) / span * gap;
  return isLast || (p.maxLineSkipNum > 0 ? gap > p.maxLineSkipNum : skipped > p.maxSkipDistance);
}

/// Grows trees over lines. With `ownLine` each line is a single feature, which has the line index.
inline Trees grow(const Lines& lines, Trees trees, const Rules& rules, bool ownLine = false) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const int line = ownLine ? lines[i][0].jumpPos2D.x : static_cast<int>(i);
    for (const SQO_basicFeature1D& f : lines[i]) {
      place(f, line, trees, rules);
    }
    for (std::size_t t = trees.size(); t-- > 0;) {
      if (trees[t].treeState == TREE_GROWING &&
          closes(trees[t], line, i + 1 == lines.size(), rules)) {
        trees[t].treeState = TREE_CLOSED;
        if (!isLongEnough(trees[t], rules.p)) {
          trees.erase(trees.begin() + static_cast<std::ptrdiff_t>(t));
        }
      }
    }
  }
  return trees;
}

inline Trees withoutOneLineTrees(Trees trees) {
  const auto isOfOneLine = [](const auto& tree) { return tree.sLineIdx == tree.eLineIdx; };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isOfOneLine), trees.end());
  return trees;
}

}  // namespace plain
