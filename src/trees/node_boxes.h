#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include <scanline/feature_records.h>

namespace scanline::detail {

/**
 * Bounds in x and y of runs of 16, 16^2, ... nodes of one tree, so that a search skips whole runs
 * that are too far away. Between searches, nodes may only be appended to the tree.
 */
class NodeBoxes {
 public:
  using Nodes = std::vector<SQO_basicFeature1D>;

  /// Index of the first node of the tree, from index `from` on, that is less than `distance` from a
  /// point in the x-y plane; -1 if there is none.
  int firstNear(const STesk3DPoint& point, double distance, int from, const Nodes& nodes);

 private:
  struct Box {
    STeskRangeD x;
    STeskRangeD y;
  };

  void addUpTo(const Nodes& nodes);

  std::array<std::vector<Box>, 5> levels_;  // the last run of each level may be short
  std::size_t count_ = 0;                   // nodes inside the boxes
};

}  // namespace scanline::detail
