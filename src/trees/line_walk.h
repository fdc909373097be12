#pragma once

#include <cstddef>
#include <vector>

#include "trees/open_trees.h"
#include "trees/outlook.h"

namespace scanline::detail {

/// The features of one line, under the index that a grower knows the line by.
template <typename Node>
struct NodeLine {
  int lineIdx;
  const Node* first;
  std::size_t count;

  NodeLine(int lineIndex, const std::vector<Node>& nodes)
      : NodeLine(lineIndex, nodes.data(), nodes.size()) {}
  NodeLine(int lineIndex, const Node* firstNode, std::size_t nodeCount)
      : lineIdx(lineIndex), first(firstNode), count(nodeCount) {}

  [[nodiscard]] const Node* begin() const {
    return first;
  }
  [[nodiscard]] const Node* end() const {
    return first + count;
  }
};

/// The outlook from each line of a scan on.
template <typename LineAt>
std::vector<Outlook> outlooksOf(int lineCount, LineAt lineAt) {
  std::vector<Outlook> outlooks(static_cast<std::size_t>(lineCount) + 1);
  for (int i = lineCount - 1; i >= 0; --i) {
    outlooks[i] = outlooks[i + 1];
    outlooks[i].add(lineAt(i));
  }
  return outlooks;
}

/// Grows trees line by line over a whole scan: `lineAt(i)` gives line i of `lineCount`,
/// `place(feature, lineIdx, ahead)` lets a feature join a tree or start one, and
/// `close(lineIdx, isLastLine)` is the closing walk after a line.
template <typename Tree, typename LineAt, typename Place, typename Close>
void growScan(int lineCount, LineAt lineAt, Place place, Close close, OpenTrees<Tree>& trees) {
  if (lineCount < 1) {
    return;  // with nothing to grow, trees passed in may be without nodes
  }
  const std::vector<Outlook> outlooks = outlooksOf(lineCount, lineAt);
  trees.admit(outlooks.front());
  for (int i = 0; i < lineCount; ++i) {
    const auto line = lineAt(i);
    for (const auto& feature : line) {
      place(feature, line.lineIdx, outlooks[i]);
    }
    close(line.lineIdx, i == lineCount - 1);
  }
}

}  // namespace scanline::detail
