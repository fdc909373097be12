#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/feature_records.h>
#include "trees/near_index.h"
#include "trees/node_place.h"
#include "trees/remaining_extent.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

/**
 * The open trees of a caller's list during one call: those that can take a feature, and those that
 * can close. The cost of either does not depend on how many others are in the list.
 *
 * Their ids count from 0 in the order of the list. Removed trees stay in the list, closed and
 * without nodes, until the call ends, also by an exception.
 */
template <typename Tree>
class OpenTrees {
 public:
  using Node = typename decltype(Tree::treeNodes)::value_type;

  /// A feature joins a tree only within `limits` of its last node: in y, and in lines or x. With
  /// `spareOneLiners` a tree can close only once it spans several lines.
  OpenTrees(std::vector<Tree>& trees, const SQO_treeGrowParam& limits, bool spareOneLiners)
      : trees_(trees),
        limits_(limits),
        spareOneLiners_(spareOneLiners),
        index_(limits.yDeviation_max) {}
  OpenTrees(const OpenTrees&) = delete;
  OpenTrees& operator=(const OpenTrees&) = delete;
  /// Takes the removed trees out of the list.
  ~OpenTrees() {
    dropRemoved();
  }

  /// Takes over the open trees that the list holds; `ahead` covers all features to come.
  void admit(const RemainingExtent& ahead) {
    for (std::size_t i = 0; i < trees_.size(); ++i) {
      const Tree& tree = trees_[i];
      if (tree.treeState == TREE_CLOSED) {
        continue;
      }
      const bool canGrow = ahead.reaches(tree.treeNodes.back(), limits_);
      if (canGrow || canClose(tree)) {
        enter(i, canGrow);
      }
    }
  }

  /// Number of trees that can take a feature.
  [[nodiscard]] int count() const {
    return index_.count();
  }

  /// Forgets the trees that no feature of `ahead`, which covers all to come, can join.
  void prune(const RemainingExtent& ahead) {
    index_.eraseIf([&](int id) { return !ahead.reaches(lastOf(id), limits_); });
  }

  /// Lets `add(tree)` add a node, which it returns, to the first tree of the list that is near the
  /// feature in y, does not end on its line, and `fits(tree)`. Returns false if there is none.
  template <typename Fits, typename Add>
  bool growFirst(const Node& feature, Fits fits, Add add) {
    const int id =
        index_.takeFirst(placeOf(feature), [&](int near) { return fits((*this)[near]); });
    if (id == NearIndex::kNone) {
      return false;
    }
    Tree& tree = (*this)[id];
    const Node& added = add(tree);
    prefetchNextNode(tree);
    index_.put(id, placeOf(added));
    watch(id);
    return true;
  }

  /// Appends a tree to the list.
  void append(Tree tree) {
    trees_.push_back(std::move(tree));
    enter(trees_.size() - 1, true);
  }

  /// Ids of the growing trees that are to close, from the last to the first: those that
  /// `closes(tree, lastLine)`. The caller closes or removes them.
  template <typename Closes>
  const std::vector<int>& due(Closes closes) {
    due_.clear();
    auto kept = watched_.rbegin();
    for (auto id = watched_.rbegin(); id != watched_.rend(); ++id) {
      if (closes((*this)[*id], index_.lineOf(*id))) {
        due_.push_back(*id);
      } else {
        *kept++ = *id;
      }
    }
    watched_.erase(watched_.begin(), kept.base());
    return due_;
  }

  Tree& operator[](int id) {
    return trees_[slots_[id].tree];
  }

  void close(int id) {
    index_.erase(id);
    (*this)[id].treeState = TREE_CLOSED;
  }

  void remove(int id) {
    close(id);
    (*this)[id].treeNodes = {};
    slots_[id].isRemoved = true;
  }

 private:
  struct Slot {
    std::size_t tree;  // its index in the list
    bool isWatched;
    bool isRemoved;
  };

  static LineAndY placeOf(const Node& node) {
    return {detail::lineOf(node), positionOf(node).y};
  }
  const Node& lastOf(int id) {
    return (*this)[id].treeNodes.back();
  }
  LineAndY endOf(int id) {
    return placeOf(lastOf(id));
  }

  /// Fetches the memory that the tree's next node will be written to, as a rule on the next line.
  static void prefetchNextNode(const Tree& tree) {
    const auto& nodes = tree.treeNodes;
    __builtin_prefetch(nodes.data() + std::min(nodes.size() + 1, nodes.capacity()), 1);
  }

  [[nodiscard]] bool canClose(const Tree& tree) const {
    return tree.treeState == TREE_GROWING && (!spareOneLiners_ || linesSpanned(tree) >= 1);
  }

  void enter(std::size_t tree, bool canGrow) {
    const int id = static_cast<int>(slots_.size());
    slots_.push_back({tree, false, false});
    index_.put(id, endOf(id), canGrow);
    watch(id);
  }

  /// Watches a tree from the time that it can close.
  void watch(int id) {
    Slot& slot = slots_[id];
    if (!slot.isWatched && canClose(trees_[slot.tree])) {
      watched_.push_back(id);
      slot.isWatched = true;
    }
  }

  void dropRemoved() {
    const auto isRemoved = [](const Slot& slot) { return slot.isRemoved; };
    auto slot = std::find_if(slots_.begin(), slots_.end(), isRemoved);
    if (slot == slots_.end()) {
      return;
    }
    std::size_t kept = slot->tree;
    for (std::size_t i = kept; i < trees_.size(); ++i) {
      slot = std::find_if(slot, slots_.end(), [i](const Slot& each) { return each.tree >= i; });
      if (slot == slots_.end() || slot->tree != i || !slot->isRemoved) {
        trees_[kept++] = std::move(trees_[i]);
      }
    }
    trees_.erase(trees_.begin() + static_cast<std::ptrdiff_t>(kept), trees_.end());
  }

  std::vector<Tree>& trees_;
  SQO_treeGrowParam limits_;
  bool spareOneLiners_;
  std::vector<Slot> slots_;   // by id
  NearIndex index_;           // the trees that can take a feature
  std::vector<int> watched_;  // the trees that can close
  std::vector<int> due_;      // the result of due()
};

}  // namespace scanline::detail
