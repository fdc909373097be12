#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include <scanline/feature_records.h>

namespace scanline::detail {

/**
 * Bounds in x and y of runs of 16, 16^2, ... nodes of one tree, so that a search passes over whole
 * runs that are too far away. The tree may only gain nodes at its back.
 */
class NodeBoxes {
 public:
  using Nodes = std::vector<SQO_basicFeature1D>;

  /// Index of the first of the tree's nodes, from `from` on, that lies less than `distance` from a
  /// point in x and y; -1 if none does.
  int firstNear(const STesk3DPoint& point, double distance, int from, const Nodes& nodes);

 private:
  struct Box {
    STeskRangeD x;
    STeskRangeD y;
  };

  void addUpTo(const Nodes& nodes);

  std::array<std::vector<Box>, 5>
      levels_;             // runs of 16, 16^2, ... nodes; the last one may be short
  std::size_t count_ = 0;  // nodes taken in
};

}  // namespace scanline::detail
