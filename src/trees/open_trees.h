#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/feature_records.h>
#include "trees/near_index.h"
#include "trees/node_place.h"
#include "trees/outlook.h"

namespace scanline::detail {

/**
 * The trees of a caller's list as one call sees them: which can take a feature, which can close.
 * Neither attaching nor closing ever looks at the others, however many have gathered in the list.
 *
 * Trees are known by their index, which stays the same throughout the call. Removed ones stay in
 * the list, closed and without nodes, until the call ends, be it by an exception.
 */
template <typename Tree>
class OpenTrees {
 public:
  using Node = typename decltype(Tree::treeNodes)::value_type;
  using Test = bool (*)(const Tree& tree);

  /// Only growing trees that are `closable` ever close.
  OpenTrees(std::vector<Tree>& trees, const Reach& reach, Test closable)
      : trees_(trees), reach_(reach), index_(reach.y), closable_(closable) {}
  OpenTrees(const OpenTrees&) = delete;
  OpenTrees& operator=(const OpenTrees&) = delete;
  /// Takes the removed trees out of the list.
  ~OpenTrees() {
    dropRemoved();
  }

  /// Takes over the trees that the list holds, for the features of `ahead`.
  void admit(const Outlook& ahead) {
    isRemoved_.resize(trees_.size());
    for (int id = 0; id < static_cast<int>(trees_.size()); ++id) {
      const Tree& tree = trees_[id];
      if (tree.treeState == TREE_CLOSED) {
        continue;
      }
      if (ahead.reaches(tree.treeNodes.back(), reach_)) {
        index_.insert(id, endOf(tree).y);
      }
      watchIf(isClosable(tree), id);
    }
  }

  /// Index of the first tree in the list with `fits(index)` that a feature may join, or -1. Asks in
  /// the order of the list. `ahead` covers this feature and all that come after it.
  template <typename Fits>
  int firstFitting(const Node& feature, const Outlook& ahead, Fits fits) {
    return index_.firstFitting(placeOf(feature), [&](int id) {
      if (fits(id)) {
        return Verdict::kFits;
      }
      const Node& last = trees_[id].treeNodes.back();
      if (lineOf(last) == lineOf(feature)) {
        return Verdict::kNotOnLine;
      }
      return ahead.reaches(last, reach_) ? Verdict::kNot : Verdict::kNever;
    });
  }

  Tree& operator[](int id) {
    return trees_[id];
  }

  /// Appends a tree to the list.
  void append(Tree tree) {
    const int id = static_cast<int>(trees_.size());
    isRemoved_.push_back(0);
    trees_.push_back(std::move(tree));
    index_.insert(id, endOf(trees_.back()).y);
    watchIf(isClosable(trees_.back()), id);
  }

  /// Lets `change(tree)` add a node to the tree that `firstFitting` has found for it.
  template <typename Change>
  void grow(int id, Change change) {
    Tree& tree = trees_[id];
    const bool wasClosable = isClosable(tree);
    change(tree);
    index_.move(id, endOf(tree));
    watchIf(!wasClosable && isClosable(tree), id);
  }

  /// Closes each closable tree that `closes(tree)` and removes it unless `stays(tree)`. Where all
  /// trees are closable, they are met from the last to the first.
  template <typename Closes, typename Stays>
  void closeWhere(Closes closes, Stays stays) {
    auto kept = watched_.rbegin();
    for (auto id = watched_.rbegin(); id != watched_.rend(); ++id) {
      const Tree& tree = trees_[*id];
      if (tree.treeState != TREE_GROWING) {
        continue;
      }
      if (closes(tree)) {
        close(*id, stays);
      } else {
        *kept++ = *id;
      }
    }
    watched_.erase(watched_.begin(), kept.base());
  }

 private:
  static LineAndY placeOf(const Node& node) {
    return {lineOf(node), positionOf(node).y};
  }
  static LineAndY endOf(const Tree& tree) {
    return placeOf(tree.treeNodes.back());
  }

  [[nodiscard]] bool isClosable(const Tree& tree) const {
    return tree.treeState == TREE_GROWING && closable_(tree);
  }

  void watchIf(bool wanted, int id) {
    if (wanted) {
      watched_.push_back(id);
    }
  }

  /// If `stays(tree)` runs out of memory, the tree is still growing.
  template <typename Stays>
  void close(int id, Stays& stays) {
    Tree& tree = trees_[id];
    index_.erase(id);
    if (!stays(tree)) {
      tree.treeNodes = {};
      isRemoved_[id] = 1;
    }
    tree.treeState = TREE_CLOSED;
  }

  void dropRemoved() {
    const auto firstRemoved = std::find(isRemoved_.begin(), isRemoved_.end(), 1);
    const auto isRemoved = [&](const Tree& tree) {
      const auto id = static_cast<std::size_t>(&tree - trees_.data());
      return id < isRemoved_.size() && isRemoved_[id] != 0;
    };
    if (firstRemoved != isRemoved_.end()) {
      const auto first = trees_.begin() + (firstRemoved - isRemoved_.begin());
      trees_.erase(std::remove_if(first, trees_.end(), isRemoved), trees_.end());
    }
  }

  std::vector<Tree>& trees_;
  Reach reach_;
  NearIndex index_;  // the trees that can take a feature
  Test closable_;
  std::vector<int> watched_;     // the trees that a closing walk has to look at
  std::vector<char> isRemoved_;  // by tree
};

}  // namespace scanline::detail
