#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/feature_records.h>
#include "records/prefetch.h"
#include "trees/near_index.h"
#include "trees/node_place.h"
#include "trees/remaining_extent.h"
#include "trees/tree_rules.h"

namespace scanline::detail {

/**
 * The open trees of a caller's list during one call: those that a feature can attach to, and those
 * that can close. The cost of visiting either does not depend on the other trees in the list.
 *
 * The ids of the trees are 0, 1, 2, ... in the order of the list. Removed trees stay in the list,
 * closed and without nodes, until the call ends, also if it ends by an exception.
 */
template <typename Tree>
class OpenTrees {
 public:
  using Node = typename decltype(Tree::treeNodes)::value_type;

  /// A feature can attach to a tree only if it is within `limits` of the last node: in y, and in
  /// lines or x. With `keepOneLineTrees` only trees that span several lines can close.
  OpenTrees(std::vector<Tree>& trees, const SQO_treeGrowParam& limits, bool keepOneLineTrees)
      : trees_(trees),
        limits_(limits),
        keepOneLineTrees_(keepOneLineTrees),
        index_(limits.yDeviation_max) {}
  OpenTrees(const OpenTrees&) = delete;
  OpenTrees& operator=(const OpenTrees&) = delete;
  /// Drops the removed trees from the list.
  ~OpenTrees() {
    dropRemoved();
  }

  /// Enters the open trees of the list; `remaining` covers all features of the call.
  void admit(const RemainingExtent& remaining) {
    for (std::size_t i = 0; i < trees_.size(); ++i) {
      const Tree& tree = trees_[i];
      if (tree.treeState == TREE_CLOSED) {
        continue;
      }
      assert(!tree.treeNodes.empty());
      const bool canGrow = remaining.reaches(tree.treeNodes.back(), limits_);
      if (canGrow || canClose(tree)) {
        enter(i, canGrow);
      }
    }
  }

  /// Number of trees that a feature can attach to.
  [[nodiscard]] int count() const {
    return index_.count();
  }

  /// No longer offers trees that no further feature can attach to; `remaining` covers all of these.
  void prune(const RemainingExtent& remaining) {
    index_.eraseIf([&](int id) { return !remaining.reaches(lastOf(id), limits_); });
  }

  /// Attaches a feature to the first tree of the list that ends near it in y, does not end on its
  /// line, and `fits(tree)`. `add(tree)` appends the node and returns it. Returns false if there is
  /// no such tree.
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

  /// Returns the ids of the growing trees that are due to close, from the last to the first: those
  /// for which `closes(tree, lastLine)`. The caller must close or remove them.
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

  /// Prefetches the memory for the next node, which is usually written on the next line.
  static void prefetchNextNode(const Tree& tree) {
    const auto& nodes = tree.treeNodes;
    prefetchForWrite(nodes.data() + std::min(nodes.size() + 1, nodes.capacity()));
  }

  [[nodiscard]] bool canClose(const Tree& tree) const {
    return tree.treeState == TREE_GROWING && (!keepOneLineTrees_ || linesSpanned(tree) >= 1);
  }

  void enter(std::size_t tree, bool canGrow) {
    const int id = static_cast<int>(slots_.size());
    slots_.push_back({tree, false, false});
    index_.put(id, endOf(id), canGrow);
    watch(id);
  }

  /// Watches a tree as soon as it can close.
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
  bool keepOneLineTrees_;
  std::vector<Slot> slots_;   // by id
  NearIndex index_;           // the trees that a feature can attach to
  std::vector<int> watched_;  // the trees that can close
  std::vector<int> due_;      // the result of due()
};

}  // namespace scanline::detail
