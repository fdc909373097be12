#pragma once

#include <algorithm>
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
 * Trees are known by their index. Removed ones stay in the list, closed and without nodes, until
 * they outnumber the rest or `finish` is called.
 */
template <typename Tree>
class OpenTrees {
 public:
  using Node = typename decltype(Tree::treeNodes)::value_type;
  using Test = bool (*)(const Tree& tree);

  /// Only growing trees that are `closable` ever close.
  OpenTrees(std::vector<Tree>& trees, const Reach& reach, Test closable)
      : trees_(trees), reach_(reach), index_(reach.y), closable_(closable) {}

  /// Takes over the trees that the list holds, for the features of `ahead`.
  void admit(const Outlook& ahead) {
    for (int id = 0; id < static_cast<int>(trees_.size()); ++id) {
      const Tree& tree = trees_[id];
      if (tree.treeState == TREE_CLOSED) {
        continue;
      }
      if (ahead.reaches(tree.treeNodes.back(), reach_)) {
        index_.insert(id, lastY(tree));
      }
      watchIf(isClosable(tree), id);
    }
  }

  /// Index of the first tree in the list that a feature `fits(tree)`, or -1. `ahead` covers this
  /// feature and all that come after it.
  template <typename Fits>
  int firstFitting(const Node& feature, const Outlook& ahead, Fits fits) {
    return index_.firstFitting(positionOf(feature).y, judge(ahead, fits));
  }

  /// The trees that a feature `fits(tree)`, in the order of the list.
  template <typename Fits>
  void allFitting(const Node& feature, const Outlook& ahead, Fits fits, std::vector<int>& ids) {
    ids.clear();
    const auto judgeOne = judge(ahead, fits);
    index_.firstFitting(positionOf(feature).y, [&](int id) {
      const Verdict verdict = judgeOne(id);
      if (verdict == Verdict::kFits) {
        ids.push_back(id);
      }
      return verdict == Verdict::kFits ? Verdict::kNot : verdict;
    });
    std::sort(ids.begin(), ids.end());
  }

  Tree& operator[](int id) {
    return trees_[id];
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

  /// Closes each closable tree that `closes(tree)` and removes it unless `stays(tree)`. Where all
  /// trees are closable, they are met from the last to the first.
  template <typename Closes, typename Stays>
  void closeWhere(Closes closes, Stays stays) {
    auto kept = watched_.rbegin();
    for (auto id = watched_.rbegin(); id != watched_.rend(); ++id) {
      Tree& tree = trees_[*id];
      if (tree.treeState != TREE_GROWING) {
        continue;
      }
      if (!closes(std::as_const(tree))) {
        *kept++ = *id;
        continue;
      }
      tree.treeState = TREE_CLOSED;
      index_.erase(*id, lastY(tree));
      if (!stays(tree)) {
        tree.treeNodes = {};
        removed_.push_back(*id);
      }
    }
    watched_.erase(watched_.begin(), kept.base());
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

  template <typename Fits>
  auto judge(const Outlook& ahead, Fits& fits) const {
    return [&](int id) {
      const Tree& tree = trees_[id];
      if (fits(tree)) {
        return Verdict::kFits;
      }
      return ahead.reaches(tree.treeNodes.back(), reach_) ? Verdict::kNot : Verdict::kNever;
    };
  }

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
  Reach reach_;
  NearIndex index_;  // the trees that can take a feature, by the y of their last node
  Test closable_;
  std::vector<int> watched_;  // the trees that a closing walk has to look at
  std::vector<int> removed_;  // the trees that no longer count
};

}  // namespace scanline::detail
