// Grows trees from L and V shapes, and removes those that do not suit an object of known size.
#include <algorithm>
#include <array>
#include <cassert>
#include <utility>
#include <vector>

#include <scanline/trees.h>
#include "trees/feature_rules.h"
#include "trees/lv_endings.h"

namespace detail = scanline::detail;

namespace {

using Trees = std::vector<SQO_featureTree>;

constexpr int kTypeCount = FEATURE_CORNER_OTHER + 1;

/// Gives a tree the type of most of its nodes, the lowest code of equally frequent ones.
void setCommonType(SQO_featureTree& tree) {
  std::array<int, kTypeCount> counts = {};
  for (const SQO_basicFeature1D& node : tree.treeNodes) {
    if (node.featureType >= 0 && node.featureType < kTypeCount) {
      ++counts[node.featureType];
    }
  }
  const auto type =
      static_cast<int>(std::max_element(counts.begin(), counts.end()) - counts.begin());
  if (type > 0) {
    tree.treeType = type;
  }
}

/// Grows trees from the features, sets their types, and lengthens them by endings.
void growToEndings(std::vector<SQO_lineFeature>& lineFeatures,
                   Trees& trees,
                   const SQO_treeGrowParam& growParam) {
  const detail::BoundsAtEnd bounds(trees);
  qo_getFeatureGrowingTrees(lineFeatures, trees, growParam);
  for (SQO_featureTree& tree : trees) {
    setCommonType(tree);
    if (!tree.treeNodes.empty()) {
      detail::lengthenFront(tree, lineFeatures, growParam);
      detail::lengthenBack(tree, lineFeatures, growParam);
    }
  }
}

/// Whether trees of a type must suit the size of the object.
bool mustSuitObject(int treeType) {
  return treeType == FEATURE_SLOPE_RISE || treeType == FEATURE_SLOPE_FALL ||
         treeType == FEATURE_V || treeType == FEATURE_CORNER_OTHER;
}

double extentOf(const STeskRangeD& range) {
  return range.max - range.min;
}

double centreOf(const STeskRangeD& range) {
  return (range.min + range.max) * 0.5;
}

/// Whether a tree is a stub: too short in x for the object and extends too far in y.
bool isStub(const SQO_featureTree& tree, const SQO_bagParam& bag) {
  const double width = extentOf(tree.xRange);
  return mustSuitObject(tree.treeType) && bag.bagLength * 0.25 > width &&
         extentOf(tree.yRange) > width * 0.5;
}

/// Removes the stubs from the list.
void removeStubs(const SQO_bagParam& bag, Trees& trees) {
  const auto isBagStub = [&](const SQO_featureTree& tree) { return isStub(tree, bag); };
  trees.erase(std::remove_if(trees.begin(), trees.end(), isBagStub), trees.end());
}

/// The bounds of a tree, and whether it has been removed from the list.
struct Extent {
  STeskRangeD x;
  STeskRangeD y;
  bool isRemoved;
};

/// Whether a tree lies between two longer ones that are too close together for two objects.
bool liesInsideObject(const Extent& tree, const std::vector<Extent>& all, double bagWidth) {
  const Extent* lower = nullptr;
  const Extent* upper = nullptr;
  for (const Extent& other : all) {
    if (other.isRemoved || !(tree.x.min > other.x.min) || !(other.x.max > tree.x.max)) {
      continue;
    }
    if (tree.y.min > other.y.max && (lower == nullptr || other.y.max > lower->y.max)) {
      lower = &other;
    }
    if (other.y.min > tree.y.max && (upper == nullptr || upper->y.max > other.y.max)) {
      upper = &other;
    }
  }
  return lower != nullptr && upper != nullptr &&
         bagWidth * 1.3 > centreOf(upper->y) - centreOf(lower->y);
}

/// Removes short trees inside an object, from the last tree to the first. A removed tree no longer
/// counts.
void removeInnerTrees(const SQO_bagParam& bag, Trees& trees) {
  std::vector<Extent> extents;
  extents.reserve(trees.size());
  for (const SQO_featureTree& tree : trees) {
    extents.push_back({tree.xRange, tree.yRange, false});
  }
  for (std::size_t t = trees.size(); t-- > 0;) {
    extents[t].isRemoved = bag.bagLength * 0.5 > extentOf(extents[t].x) &&
                           mustSuitObject(trees[t].treeType) &&
                           liesInsideObject(extents[t], extents, bag.bagWidth);
  }
  std::size_t kept = 0;
  for (std::size_t t = 0; t < trees.size(); ++t) {
    if (extents[t].isRemoved) {
      continue;
    }
    if (kept != t) {
      trees[kept] = std::move(trees[t]);
    }
    ++kept;
  }
  trees.resize(kept);
}

/// Appends the starts and ends of data segments that no tree has taken.
void collectFreeEnds(const std::vector<SQO_lineFeature>& lineFeatures,
                     std::vector<SQO_2DValueI>& segStarts,
                     std::vector<SQO_2DValueI>& segEnds) {
  for (const SQO_lineFeature& line : lineFeatures) {
    for (const SQO_basicFeature1D& ending : line.endings) {
      const SQO_2DValueI end = {ending.jumpPos2D.x, ending.jumpPos2D.y, ending.featureType,
                                ending.jumpPos.z, 0};
      if (ending.featureType == FEATURE_SEG_START) {
        segStarts.push_back(end);
      } else if (ending.featureType == FEATURE_SEG_END) {
        segEnds.push_back(end);
      }
    }
  }
}

}  // namespace

void qo_LVFeatureGrowing(std::vector<SQO_lineFeature>& lineFeatures,
                         std::vector<SQO_featureTree>& trees,
                         SQO_bagParam bagParam,
                         SQO_treeGrowParam growParam,
                         std::vector<SQO_2DValueI>& segStarts,
                         std::vector<SQO_2DValueI>& segEnds) {
  assert(&segStarts != &segEnds);
  growToEndings(lineFeatures, trees, growParam);
  removeStubs(bagParam, trees);
  removeInnerTrees(bagParam, trees);
  collectFreeEnds(lineFeatures, segStarts, segEnds);
}
