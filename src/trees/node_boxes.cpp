#include "trees/node_boxes.h"

#include <cmath>

#include "records/sample_rules.h"
#include "trees/tree_rules.h"

namespace scanline::detail {
namespace {

constexpr std::size_t kFan = 16;

double clamped(double value, const STeskRangeD& range) {
  return value < range.min ? range.min : (value > range.max ? range.max : value);
}

}  // namespace

/// Extends the boxes by nodes that were appended. A node that is not finite is near no point, so
/// the boxes ignore it.
void NodeBoxes::addUpTo(const Nodes& nodes) {
  for (; count_ < nodes.size(); ++count_) {
    const STesk3DPoint& pos = nodes[count_].jumpPos;
    const bool isFinite = std::isfinite(pos.x) && std::isfinite(pos.y);
    std::size_t run = count_;
    for (std::vector<Box>& boxes : levels_) {
      run /= kFan;
      if (run == boxes.size()) {
        boxes.push_back({kEmptyRange, kEmptyRange});
      }
      if (isFinite) {
        foldIntoRange(boxes[run].x, pos.x);
        foldIntoRange(boxes[run].y, pos.y);
      }
    }
  }
}

int NodeBoxes::firstNear(const STesk3DPoint& point, double distance, int from, const Nodes& nodes) {
  addUpTo(nodes);
  // Differences, squares, sums and roots round monotonically. So no node of a box has a smaller
  // computed distance than the point of the box that is nearest in x and in y.
  const auto mayHoldNear = [&](const Box& box) {
    const STesk3DPoint nearest = {clamped(point.x, box.x), clamped(point.y, box.y), 0.0};
    return !(box.x.min > box.x.max) && distance > planeDistance(point, nearest);
  };
  for (auto node = static_cast<std::size_t>(from); node < nodes.size();) {
    std::size_t passed = 1;  // nodes of the longest run from here on that is too far away
    for (const std::vector<Box>& boxes : levels_) {
      const std::size_t length = passed * kFan;
      if (node % length != 0 || mayHoldNear(boxes[node / length])) {
        break;
      }
      passed = length;
    }
    if (passed == 1 && distance > planeDistance(point, nodes[node].jumpPos)) {
      return static_cast<int>(node);
    }
    node += passed;
  }
  return -1;
}

}  // namespace scanline::detail
