#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>

#include <scanline/trees.h>
#include "trees/feature_growing.h"
#include "trees/node_boxes.h"
#include "trees/tree_rules.h"
#include "trees/type_match.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_basicFeature1D>;

/// The features at positions of a scan. On a scan that is walked across its lines x and y change
/// places, so that the limits of y and x keep their meaning.
Features featuresAt(const std::vector<SQO_2DValueI>& positions,
                    const STesk3DLaserLine* lines,
                    bool isLineFirst,
                    int type) {
  Features features;
  features.reserve(positions.size());
  for (const SQO_2DValueI& pos : positions) {
    const int line = isLineFirst ? pos.x : pos.y;
    const int sample = isLineFirst ? pos.y : pos.x;
    const STesk3DPoint& at = lines[line].p3DPosition[sample].pt3D;
    const STesk3DPoint across = {at.y, at.x, at.z};
    features.push_back({type, {pos.x, pos.y}, isLineFirst ? at : across, 0.0});
  }
  return features;
}

/// Grows trees from features, each a line of its own, by `place(feature, lineIdx, ahead)`.
template <typename Place>
void growEndings(const Features& features, Place place, detail::FeatureGrowth& growth) {
  const auto featureAt = [&](int i) {
    return detail::FeatureLine(detail::lineOf(features[i]), &features[i], 1);
  };
  std::optional<int> walkedLine;
  const auto close = [&](int lineIdx, bool isLast) {
    // Where the ending before was on the same line, every tree has just been looked at or has taken
    // that ending, so nothing closes but at the very end.
    if (isLast || walkedLine != lineIdx) {
      detail::closeByLines(lineIdx, isLast, growth);
    }
    walkedLine = lineIdx;
  };
  detail::growScan(static_cast<int>(features.size()), featureAt, place, close, growth.trees);
}

/// Growth of trees that are held to a direction.
struct DirectedGrowth {
  detail::FeatureGrowth& growth;
  double checkDist;
  std::unordered_map<int, detail::NodeBoxes> boxes;  // of the trees with an anchor, by tree
};

/// Index of the first of a tree's nodes after its anchor that lies near a feature, or -1. Mostly it
/// is one of the next few; only a longer search is worth the boxes.
int firstNearAnchor(const SQO_basicFeature1D& feature, int treeId, DirectedGrowth& directed) {
  constexpr int kFew = 16;
  const SQO_featureTree& tree = directed.growth.trees[treeId];
  const int first = tree.anchorNode + 1;
  const int count = static_cast<int>(tree.treeNodes.size());
  const int end = std::min(first + kFew, count);
  for (int node = first; node < end; ++node) {
    if (directed.checkDist > detail::planeDistance(feature.jumpPos, tree.treeNodes[node].jumpPos)) {
      return node;
    }
  }
  if (end == count) {
    return -1;
  }
  return directed.boxes[treeId].firstNear(feature.jumpPos, directed.checkDist, end, tree.treeNodes);
}

/// Gives a tree its anchor once it is long enough to have a direction, and later moves it up to the
/// node before the first one that is near the feature.
void settleAnchor(const SQO_basicFeature1D& feature, int treeId, DirectedGrowth& directed) {
  SQO_featureTree& tree = directed.growth.trees[treeId];
  if (tree.anchorNode >= 0) {
    const int near = firstNearAnchor(feature, treeId, directed);
    tree.anchorNode = near < 0 ? tree.anchorNode : near - 1;
  } else if (!(detail::planeDistance(feature.jumpPos, tree.treeNodes.front().jumpPos) <
               directed.checkDist)) {
    tree.anchorNode = 0;
  }
}

/// Whether the way from a tree's anchor to a feature lies within 45 degrees of the x axis. A tree
/// without anchor takes every feature.
bool keepsDirection(const SQO_basicFeature1D& feature, const SQO_featureTree& tree) {
  if (tree.anchorNode < 0) {
    return true;
  }
  const STesk3DPoint& pos = feature.jumpPos;
  const STesk3DPoint& anchor = tree.treeNodes[tree.anchorNode].jumpPos;
  const bool isSteep = std::abs(pos.y - anchor.y) / std::abs(pos.x - anchor.x) > 1.0;
  return !isSteep;
}

/// The first tree of the list that a feature fits, also by its direction, or -1. The anchors of the
/// trees before it move all the same.
int qo_findTreeAngleCheck(const SQO_basicFeature1D& feature,
                          const detail::Outlook& ahead,
                          DirectedGrowth& directed) {
  detail::FeatureGrowth& growth = directed.growth;
  return growth.trees.firstFitting(feature, ahead, [&](int id) {
    if (!detail::fitsTree(feature, growth.trees[id], growth)) {
      return false;
    }
    settleAnchor(feature, id, directed);
    return keepsDirection(feature, growth.trees[id]);
  });
}

}  // namespace

void qo_getEndingGrowingTrees(std::vector<SQO_2DValueI>& endingPts,
                              STesk3DLaserLine* laserLines,
                              bool isLineFirst,
                              int endingType,
                              std::vector<SQO_featureTree>& trees,
                              SQO_treeGrowParam growParam) {
  const Features features = featuresAt(endingPts, laserLines, isLineFirst, endingType);
  detail::FeatureGrowth growth(trees, growParam, detail::scanRule(detail::qo_featureTypeMatch));
  const auto place = [&](const SQO_basicFeature1D& feature, int lineIdx,
                         const detail::Outlook& ahead) {
    detail::placeFeature(feature, lineIdx, ahead, growth);
  };
  growEndings(features, place, growth);
}

void qo_getEndingGrowingTrees_angleCheck(std::vector<SQO_2DValueI>& endingPts,
                                         STesk3DLaserLine* laserLines,
                                         bool isLineFirst,
                                         int endingType,
                                         std::vector<SQO_featureTree>& trees,
                                         SQO_treeGrowParam growParam,
                                         double angleCheckDist) {
  const Features features = featuresAt(endingPts, laserLines, isLineFirst, endingType);
  detail::FeatureGrowth growth(trees, growParam, detail::scanRule(detail::qo_featureTypeMatch));
  DirectedGrowth directed = {growth, angleCheckDist, {}};
  const auto place = [&](const SQO_basicFeature1D& feature, int lineIdx,
                         const detail::Outlook& ahead) {
    const int treeId = qo_findTreeAngleCheck(feature, ahead, directed);
    if (treeId < 0) {
      growth.trees.append(detail::newTree(feature, lineIdx, 0.0));
    } else {
      detail::attach(feature, lineIdx, treeId, growth);
    }
  };
  growEndings(features, place, growth);
}
