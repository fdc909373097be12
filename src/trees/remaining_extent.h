#pragma once

#include <scanline/feature_records.h>
#include "records/sample_rules.h"
#include "trees/node_place.h"

namespace scanline::detail {

/// The extent, in lines and in x, of the features that a call has not visited yet.
class RemainingExtent {
 public:
  /// Adds the features of one line.
  template <typename Nodes>
  void add(const Nodes& features) {
    for (const auto& feature : features) {
      addPlace(lineOf(feature), positionOf(feature).x);
    }
  }

  /// Returns false only if each of the features is outside the limits in lines and in x of a tree
  /// with this last node.
  template <typename Node>
  [[nodiscard]] bool reaches(const Node& lastNode, const SQO_treeGrowParam& limits) const {
    return reachesPlace(lineOf(lastNode), positionOf(lastNode).x, limits);
  }

 private:
  void addPlace(int line, double x);
  [[nodiscard]] bool reachesPlace(int line, double x, const SQO_treeGrowParam& limits) const;

  STeskRangeD x_ = kEmptyRange;
  int firstLine_ = 0;
  int lastLine_ = -1;
};

}  // namespace scanline::detail
