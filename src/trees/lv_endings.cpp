#include "trees/lv_endings.h"

#include <algorithm>
#include <cmath>

#include "trees/tree_rules.h"

namespace scanline::detail {
namespace {

bool fits(const SQO_basicFeature1D& ending,
          const SQO_basicFeature1D& node,
          const SQO_treeGrowParam& param) {
  return param.yDeviation_max > std::abs(ending.jumpPos.y - node.jumpPos.y) &&
         param.zDeviation_max > std::abs(ending.jumpPos.z - node.jumpPos.z) &&
         lineGap(lineOf(ending), lineOf(node)) < param.maxLineSkipNum;
}

/// The first ending of a line that fits a node, or null.
SQO_basicFeature1D* findEnding(SQO_lineFeature& line,
                               const SQO_basicFeature1D& node,
                               const SQO_treeGrowParam& param) {
  const auto ending = std::find_if(
      line.endings.begin(), line.endings.end(),
      [&](const SQO_basicFeature1D& candidate) { return fits(candidate, node, param); });
  return ending == line.endings.end() ? nullptr : &*ending;
}

bool isOutOfReach(const SQO_lineFeature& line,
                  const SQO_basicFeature1D& node,
                  const SQO_treeGrowParam& param) {
  return lineGap(line.lineIdx, lineOf(node)) > param.maxLineSkipNum;
}

}  // namespace

void lengthenFront(SQO_featureTree& tree,
                   std::vector<SQO_lineFeature>& lineFeatures,
                   const SQO_treeGrowParam& growParam) {
  std::vector<SQO_basicFeature1D*> taken;
  const SQO_basicFeature1D* first = &tree.treeNodes.front();
  const int lineCount = static_cast<int>(lineFeatures.size());
  for (int i = std::min(lineOf(*first), lineCount); i > 0; --i) {
    SQO_lineFeature& line = lineFeatures[i - 1];
    if (SQO_basicFeature1D* ending = findEnding(line, *first, growParam)) {
      first = ending;
      taken.push_back(ending);
    } else if (isOutOfReach(line, *first, growParam)) {
      break;
    }
  }
  auto node = tree.treeNodes.insert(tree.treeNodes.begin(), taken.size(), {});
  for (auto ending = taken.rbegin(); ending != taken.rend(); ++ending) {
    (*ending)->featureType = tree.treeType;
    *node++ = **ending;
  }
}

void lengthenBack(SQO_featureTree& tree,
                  std::vector<SQO_lineFeature>& lineFeatures,
                  const SQO_treeGrowParam& growParam) {
  const SQO_basicFeature1D start = tree.treeNodes.back();
  const int lineCount = static_cast<int>(lineFeatures.size());
  for (int i = std::clamp(lineOf(start), -1, lineCount - 1) + 1; i < lineCount; ++i) {
    SQO_lineFeature& line = lineFeatures[i];
    if (SQO_basicFeature1D* ending = findEnding(line, start, growParam)) {
      tree.treeNodes.push_back(*ending);
      tree.treeNodes.back().featureType = ending->featureType = tree.treeType;
    } else if (isOutOfReach(line, tree.treeNodes.back(), growParam)) {
      break;
    }
  }
}

}  // namespace scanline::detail
