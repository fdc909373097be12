#pragma once

#include <scanline/feature_records.h>
#include "records/sample_rules.h"
#include "trees/node_place.h"

namespace scanline::detail {

/// The extent, in lines and in x, of the features that a call has yet to place.
class RemainingExtent {
 public:
  /// Adds the features of one line.
  template <typename Nodes>
  void add(const Nodes& features) {
    for (const auto& feature : features) {
      addPlace(lineOf(feature), positionOf(feature).x);
    }
  }

  /// Whether a tree with this last node is within the limits in lines or in x of any of the
  /// features. May be wrong only by returning true.
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
