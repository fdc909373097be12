#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "trees/open_trees.h"

namespace scanline::detail {

/// The features of one line, with the index that the grower uses for the line.
template <typename Node>
struct NodeLine {
  int lineIdx;
  const Node* first;
  std::size_t count;
  bool isLast;

  NodeLine(int lineIndex, const std::vector<Node>& nodes, bool isLastLine)
      : NodeLine(lineIndex, nodes.data(), nodes.size(), isLastLine) {}
  NodeLine(int lineIndex, const Node* firstNode, std::size_t nodeCount, bool isLastLine)
      : lineIdx(lineIndex), first(firstNode), count(nodeCount), isLast(isLastLine) {}

  [[nodiscard]] const Node* begin() const {
    return first;
  }
  [[nodiscard]] const Node* end() const {
    return first + count;
  }
};

/// The lines of a scan, with their positions in it as indices.
template <typename Node>
std::vector<NodeLine<Node>> linesByPosition(const std::vector<std::vector<Node>>& features) {
  std::vector<NodeLine<Node>> lines;
  lines.reserve(features.size());
  for (const std::vector<Node>& nodes : features) {
    const std::size_t i = lines.size();
    lines.emplace_back(static_cast<int>(i), nodes, i + 1 == features.size());
  }
  return lines;
}

/// For each line, the extent of the features on it and on all following lines.
template <typename Node>
std::vector<RemainingExtent> remainingExtents(const std::vector<NodeLine<Node>>& lines) {
  std::vector<RemainingExtent> extents(lines.size() + 1);
  for (std::size_t i = lines.size(); i-- > 0;) {
    extents[i] = extents[i + 1];
    extents[i].add(lines[i]);
  }
  return extents;
}

/// Closes trees after a line.
template <typename Rules>
void closeTrees(const NodeLine<typename Rules::Node>& line,
                const Rules& rules,
                OpenTrees<typename Rules::Tree>& open) {
  if (!line.isLast && !Rules::kClosesByStep && rules.param.maxLineSkipNum <= 0) {
    return;  // only the last line closes trees, so do not visit them
  }
  const auto closes = [&](const auto& tree, int lastLine) {
    return rules.closes(tree, lineGap(line.lineIdx, lastLine), line.isLast);
  };
  for (const int id : open.due(closes)) {
    if (rules.keeps(open[id])) {
      open.close(id);
    } else {
      open.remove(id);
    }
  }
}

/**
 * Grows trees line by line, and closes trees after each line. The rules of a kind of tree are a
 * struct with
 * - `Tree` and `Node`, the types of a tree and its nodes;
 * - `param`, the tuning;
 * - `limits()`, as in `OpenTrees`. They must admit each feature that `fits` accepts.
 * - `fits(feature, tree)`: whether a feature attaches to a tree. It is called only for trees that
 *   end on another line, less than `limits().yDeviation_max` away in y.
 * - `start(feature, lineIdx)`, which returns a tree of one node, and `add(feature, lineIdx, tree)`;
 * - `kClosesByStep`: whether trees close by step; otherwise they close by lines;
 * - `closes(tree, lag, isLastLine)`, and `keeps(tree)`: whether a tree that closes is kept.
 */
template <typename Rules>
void growTrees(const std::vector<NodeLine<typename Rules::Node>>& lines,
               std::vector<typename Rules::Tree>& trees,
               Rules rules) {
  using Tree = typename Rules::Tree;
  using Node = typename Rules::Node;
  if (lines.empty()) {
    return;  // trees that were passed in may then be without nodes
  }
  std::vector<RemainingExtent> extents;  // computed on first use: most scans never need them
  const auto remainingFrom = [&](std::size_t i) -> const RemainingExtent& {
    if (extents.empty()) {
      extents = remainingExtents(lines);
    }
    return extents[i];
  };
  OpenTrees<Tree> open(trees, rules.limits(), Rules::kClosesByStep);
  if (!trees.empty()) {
    open.admit(remainingFrom(0));
  }
  std::size_t pruneAbove = 16;  // number of open trees
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto& line = lines[i];
    pruneAbove = std::max(pruneAbove, 4 * line.count);
    if (static_cast<std::size_t>(open.count()) > pruneAbove) {
      open.prune(remainingFrom(i));
      pruneAbove = std::max(pruneAbove, 2 * static_cast<std::size_t>(open.count()));
    }
    for (const auto& feature : line) {
      const auto fits = [&](Tree& tree) { return rules.fits(feature, tree); };
      const auto add = [&](Tree& tree) -> const Node& {
        rules.add(feature, line.lineIdx, tree);
        return feature;  // in the cache, unlike the node in the tree
      };
      if (!open.growFirst(feature, fits, add)) {
        open.append(rules.start(feature, line.lineIdx));
      }
    }
    closeTrees(line, rules, open);
  }
}

}  // namespace scanline::detail
