// Grows trees from positions on a scan, such as the ends of data segments.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <unordered_map>

#include <scanline/trees.h>
#include "trees/feature_rules.h"
#include "trees/node_boxes.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_basicFeature1D>;

/// The features at positions of a scan. If the scan is walked across its lines, x and y are
/// exchanged, so that the limits in x and y keep their meaning.
Features featuresAt(const std::vector<SQO_2DValueI>& positions,
                    const STesk3DLaserLine* lines,
                    bool isLineFirst,
                    int type) {
  Features features;
  features.reserve(positions.size());
  for (const SQO_2DValueI& pos : positions) {
    const int line = isLineFirst ? pos.x : pos.y;
    const int sample = isLineFirst ? pos.y : pos.x;
    assert(line >= 0 && sample >= 0 && sample < lines[line].nPositionCnt);
    const STesk3DPoint& at = lines[line].p3DPosition[sample].pt3D;
    const STesk3DPoint across = {at.y, at.x, at.z};
    features.push_back({type, {pos.x, pos.y}, isLineFirst ? at : across, 0.0});
  }
  return features;
}

/// The features as lines for growing. Trees may close after each ending. But an ending on the same
/// line as the preceding one closes no tree, unless it is the very last: each tree was tested after
/// the preceding ending with the same lag, or ends on this line. So consecutive endings on
/// one line are split only after the first one.
std::vector<detail::NodeLine<SQO_basicFeature1D>> linesOf(const Features& features) {
  std::vector<detail::NodeLine<SQO_basicFeature1D>> lines;
  for (std::size_t i = 0; i < features.size(); ++i) {
    const int line = detail::lineOf(features[i]);
    const bool extendsLast = i >= 2 && detail::lineOf(features[i - 1]) == line &&
                             detail::lineOf(features[i - 2]) == line;
    if (!extendsLast) {
      lines.emplace_back(line, &features[i], 0, false);
    }
    ++lines.back().count;
    lines.back().isLast = i + 1 == features.size();
  }
  return lines;
}

/// Whether the direction from the anchor of a tree to a feature is within 45 degrees of the x axis.
/// Without an anchor any direction passes.
bool keepsDirection(const SQO_basicFeature1D& feature, const SQO_featureTree& tree) {
  if (tree.anchorNode < 0) {
    return true;
  }
  const STesk3DPoint& pos = feature.jumpPos;
  const STesk3DPoint& anchor = tree.treeNodes[tree.anchorNode].jumpPos;
  const bool isSteep = std::abs(pos.y - anchor.y) / std::abs(pos.x - anchor.x) > 1.0;
  return !isSteep;
}

/// Trees whose direction is limited once they have an anchor. The first node becomes the anchor
/// when a feature is at least `checkDist` away from it.
struct DirectedRules : detail::ScanRules {
  std::vector<Tree>& trees;
  double checkDist;
  std::unordered_map<std::ptrdiff_t, detail::NodeBoxes> boxes;  // of long trees, by their index

  /// Updates the anchor even if the direction does not pass.
  bool fits(const Node& feature, Tree& tree) {
    if (!ScanRules::fits(feature, tree)) {
      return false;
    }
    if (tree.anchorNode >= 0) {
      advanceAnchor(feature, tree);
    } else if (!(detail::planeDistance(feature.jumpPos, tree.treeNodes.front().jumpPos) <
                 checkDist)) {
      tree.anchorNode = 0;
    }
    return keepsDirection(feature, tree);
  }

  /// Moves the anchor forward, to the node before the first following one that is near the feature.
  /// That is usually one of the next few nodes; only a longer search is worth the boxes.
  void advanceAnchor(const Node& feature, Tree& tree) {
    constexpr int kFew = 16;
    const int first = tree.anchorNode + 1;
    const int count = static_cast<int>(tree.treeNodes.size());
    const int end = std::min(first + kFew, count);
    for (int node = first; node < end; ++node) {
      if (checkDist > detail::planeDistance(feature.jumpPos, tree.treeNodes[node].jumpPos)) {
        tree.anchorNode = node - 1;
        return;
      }
    }
    if (end < count) {
      const int near =
          boxes[&tree - trees.data()].firstNear(feature.jumpPos, checkDist, end, tree.treeNodes);
      tree.anchorNode = near < 0 ? tree.anchorNode : near - 1;
    }
  }
};

[[maybe_unused]] bool hasValidAnchor(const SQO_featureTree& tree) {
  return tree.anchorNode < static_cast<long long>(tree.treeNodes.size());
}

}  // namespace

void qo_getEndingGrowingTrees(std::vector<SQO_2DValueI>& endingPts,
                              STesk3DLaserLine* laserLines,
                              bool isLineFirst,
                              int endingType,
                              std::vector<SQO_featureTree>& trees,
                              SQO_treeGrowParam growParam) {
  const Features features = featuresAt(endingPts, laserLines, isLineFirst, endingType);
  const detail::ScanRules rules = {growParam};
  detail::growTrees(linesOf(features), trees, rules);
}

void qo_getEndingGrowingTrees_angleCheck(std::vector<SQO_2DValueI>& endingPts,
                                         STesk3DLaserLine* laserLines,
                                         bool isLineFirst,
                                         int endingType,
                                         std::vector<SQO_featureTree>& trees,
                                         SQO_treeGrowParam growParam,
                                         double angleCheckDist) {
  assert(std::all_of(trees.begin(), trees.end(), hasValidAnchor));
  const Features features = featuresAt(endingPts, laserLines, isLineFirst, endingType);
  detail::growTrees(linesOf(features), trees,
                    DirectedRules{{growParam}, trees, angleCheckDist, {}});
}
