#pragma once

#include <cmath>
#include <vector>

#include <scanline/feature_records.h>
#include "trees/tree_growing.h"
#include "trees/type_match.h"

namespace scanline::detail {

/// A new tree of one node.
SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx);

/// Whether a tree that closes is long enough for its type.
bool isLongEnough(const SQO_featureTree& tree, const SQO_treeGrowParam& param);

/// Sets the ranges in x and y of all trees to the bounds of their nodes, or to 0 without nodes.
void setBounds(std::vector<SQO_featureTree>& trees);

/// Sets the bounds of all trees of a list at the end of a scope, also if an exception leaves it.
class BoundsAtEnd {
 public:
  explicit BoundsAtEnd(std::vector<SQO_featureTree>& trees) : trees_(trees) {}
  BoundsAtEnd(const BoundsAtEnd&) = delete;
  BoundsAtEnd& operator=(const BoundsAtEnd&) = delete;
  ~BoundsAtEnd() {
    setBounds(trees_);
  }

 private:
  std::vector<SQO_featureTree>& trees_;
};

/// Trees of single features over a whole scan, which close by lines. `treeValue` leaves out the
/// first node.
struct ScanRules {
  using Tree = SQO_featureTree;
  using Node = SQO_basicFeature1D;
  static constexpr bool kClosesByStep = false;

  SQO_treeGrowParam param;
  bool matchesTypes = true;

  [[nodiscard]] const SQO_treeGrowParam& limits() const {
    return param;
  }
  [[nodiscard]] bool fits(const Node& feature, const Tree& tree) const {
    const Node& last = tree.treeNodes.back();
    return param.zDeviation_max > std::abs(feature.jumpPos.z - last.jumpPos.z) &&
           isWithinSkipOf(last, feature, param) &&
           (!matchesTypes || typesMatch(tree.treeType, feature.featureType));
  }
  [[nodiscard]] static Tree start(const Node& feature, int lineIdx) {
    return newTree(feature, lineIdx);
  }
  static void add(const Node& feature, int lineIdx, Tree& tree) {
    tree.treeNodes.push_back(feature);
    tree.eLineIdx = lineIdx;
    tree.treeValue += feature.featureValue;
  }
  [[nodiscard]] bool closes(const Tree& /*tree*/, long long lag, bool isLastLine) const {
    return closesByLines(lag, isLastLine, param);
  }
  [[nodiscard]] bool keeps(const Tree& tree) const {
    return isLongEnough(tree, param);
  }
};

}  // namespace scanline::detail
