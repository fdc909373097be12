#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "feature_records.h"
#include "trees/near_index.h"

namespace scanline::detail {

/// The y by which a tree is found: that of its last node.
inline double lastY(const SQO_featureTree& tree) {
  return tree.treeNodes.back().jumpPos.y;
}

/**
 * The trees of a caller's list as one call sees them: which can take a feature, which can close.
 * Neither attaching nor closing ever looks at the others, however many have gathered in the list.
 *
 * Trees are known by their index. Removed ones stay in the list, closed and without nodes, until
 * they outnumber the rest or `finish` is called.
 */
template <typename Tree>
class OpenTrees {
 public:
  using Test = bool (*)(const Tree& tree);

  /// Trees can only take features whose y differs by less than `reachY`, and only growing ones that
  /// are `closable` ever close.
  OpenTrees(std::vector<Tree>& trees, double reachY, Test closable)
      : trees_(trees), index_(reachY), closable_(closable) {}

  /// Takes over the trees that the list holds. `takes(tree)` tells which of the open ones can still
  /// take a feature.
  template <typename Takes>
  void admit(Takes takes) {
    for (int id = 0; id < static_cast<int>(trees_.size()); ++id) {
      const Tree& tree = trees_[id];
      if (tree.treeState == TREE_CLOSED) {
        continue;
      }
      if (takes(tree)) {
        index_.insert(id, lastY(tree));
      }
      watchIf(isClosable(tree), id);
    }
  }

  /// Index of the first tree in the list that `judge(tree)` finds fitting for a feature at y, or
  /// -1.
  template <typename Judge>
  int firstFitting(double y, Judge judge) {
    return index_.firstFitting(y, [&](int id) { return judge(std::as_const(trees_[id])); });
  }

  /// Appends a tree to the list.
  void append(Tree tree) {
    const int id = static_cast<int>(trees_.size());
    trees_.push_back(std::move(tree));
    index_.insert(id, lastY(trees_.back()));
    watchIf(isClosable(trees_.back()), id);
  }

  /// Lets `change(tree)` add a node to a tree.
  template <typename Change>
  void grow(int id, Change change) {
    Tree& tree = trees_[id];
    const double before = lastY(tree);
    const bool wasClosable = isClosable(tree);
    change(tree);
    index_.move(id, before, lastY(tree));
    watchIf(!wasClosable && isClosable(tree), id);
  }

  /// Closes each closable tree that `closes(tree)` and removes it unless `stays(tree)`.
  template <typename Closes, typename Stays>
  void closeWhere(Closes closes, Stays stays) {
    const auto leaves = [&](int id) {
      Tree& tree = trees_[id];
      if (tree.treeState != TREE_GROWING) {
        return true;
      }
      if (!closes(std::as_const(tree))) {
        return false;
      }
      tree.treeState = TREE_CLOSED;
      index_.erase(id, lastY(tree));
      if (!stays(std::as_const(tree))) {
        tree.treeNodes = {};
        removed_.push_back(id);
      }
      return true;
    };
    watched_.erase(std::remove_if(watched_.begin(), watched_.end(), leaves), watched_.end());
    if (removed_.size() > kSpareRemovals && removed_.size() > trees_.size() / 2) {
      compact();
    }
  }

  /// Takes the removed trees out of the list.
  void finish() {
    compact();
  }

 private:
  static constexpr std::size_t kSpareRemovals = 64;

  [[nodiscard]] bool isClosable(const Tree& tree) const {
    return tree.treeState == TREE_GROWING && closable_(tree);
  }

  void watchIf(bool wanted, int id) {
    if (wanted) {
      watched_.push_back(id);
    }
  }

  void compact() {
    if (removed_.empty()) {
      return;
    }
    std::sort(removed_.begin(), removed_.end());
    std::size_t skipped = 0;
    for (std::size_t id = removed_.front(); id < trees_.size(); ++id) {
      if (skipped < removed_.size() && static_cast<std::size_t>(removed_[skipped]) == id) {
        ++skipped;
      } else {
        trees_[id - skipped] = std::move(trees_[id]);
      }
    }
    trees_.resize(trees_.size() - skipped);
    const auto moved = [&](int id) {
      const auto before = std::lower_bound(removed_.begin(), removed_.end(), id);
      return id - static_cast<int>(before - removed_.begin());
    };
    index_.renumber(moved);
    std::transform(watched_.begin(), watched_.end(), watched_.begin(), moved);
    removed_.clear();
  }

  std::vector<Tree>& trees_;
  NearIndex index_;  // the trees that can take a feature, by the y of their last node
  Test closable_;
  std::vector<int> watched_;  // the trees that a closing walk has to look at
  std::vector<int> removed_;  // the trees that no longer count
};

}  // namespace scanline::detail
