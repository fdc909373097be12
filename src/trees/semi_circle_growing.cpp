#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include <scanline/trees.h>
#include "trees/line_walk.h"
#include "trees/tree_rules.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_featureSemiCircle>;
using SemiCircleTrees = detail::OpenTrees<SQO_semiCircleFeatureTree>;

constexpr int kUsed = 5;  // the state of features that were chosen among

bool startsTree(const SQO_featureSemiCircle& feature) {
  return feature.segState == 1 || feature.segState == 3;
}

bool endsTree(const SQO_featureSemiCircle& feature) {
  return feature.segState == 2 || feature.segState == 4;
}

/// Whether a feature lies close enough behind a tree's last node. Its height does not matter.
bool continues(const SQO_featureSemiCircle& feature,
               const SQO_featureSemiCircle& lastNode,
               const SQO_treeGrowParam& param) {
  return param.yDeviation_max > std::abs(feature.midPt.y - lastNode.midPt.y) &&
         detail::isWithinSkip(detail::lineGap(feature.lineIdx, lastNode.lineIdx),
                              std::abs(feature.midPt.x - lastNode.midPt.x), param);
}

int findTree(const SQO_featureSemiCircle& feature,
             const detail::Outlook& ahead,
             const SQO_treeGrowParam& param,
             SemiCircleTrees& trees) {
  return trees.firstFitting(feature, ahead, [&](int id) {
    const SQO_featureSemiCircle& last = trees[id].treeNodes.back();
    return feature.lineIdx != last.lineIdx && !endsTree(last) && continues(feature, last, param);
  });
}

/// Of the feature `first` and those right behind it that could follow the tree's last node just as
/// well, attaches the nearest in y. The others are used up with it.
void attachNearest(Features::iterator first,
                   Features::iterator end,
                   int treeId,
                   const SQO_treeGrowParam& param,
                   SemiCircleTrees& trees) {
  const SQO_featureSemiCircle last = trees[treeId].treeNodes.back();
  const auto distance = [&](const SQO_featureSemiCircle& feature) {
    return std::abs(feature.midPt.y - last.midPt.y);
  };
  const auto rivalsEnd = std::find_if_not(
      std::next(first), end,
      [&](const SQO_featureSemiCircle& rival) { return continues(rival, last, param); });
  const auto winner = std::min_element(
      first, rivalsEnd, [&](const SQO_featureSemiCircle& a, const SQO_featureSemiCircle& b) {
        return distance(a) < distance(b);
      });
  trees.grow(treeId, [&](SQO_semiCircleFeatureTree& tree) {
    tree.treeNodes.push_back(*winner);
    tree.eLineIdx = winner->lineIdx;
  });
  if (rivalsEnd - first > 1) {
    std::for_each(first, rivalsEnd,
                  [](SQO_featureSemiCircle& feature) { feature.segState = kUsed; });
  }
}

SQO_semiCircleFeatureTree newSemiCircleTree(const SQO_featureSemiCircle& feature) {
  SQO_semiCircleFeatureTree tree = {};
  tree.treeState = TREE_GROWING;
  tree.sLineIdx = feature.lineIdx;
  tree.eLineIdx = feature.lineIdx;
  tree.treeNodes = {feature};
  return tree;
}

void growLine(Features& features,
              const detail::Outlook& ahead,
              const SQO_treeGrowParam& param,
              SemiCircleTrees& trees) {
  for (auto feature = features.begin(); feature != features.end(); ++feature) {
    if (feature->segState == kUsed) {
      continue;
    }
    const int treeId = startsTree(*feature) ? -1 : findTree(*feature, ahead, param, trees);
    if (treeId < 0) {
      trees.append(newSemiCircleTree(*feature));
    } else {
      attachNearest(feature, features.end(), treeId, param, trees);
    }
  }
}

}  // namespace

void qo_getFeatureGrowingTrees_semiCircle(std::vector<SQO_featureSemiCircle>& line_features,
                                          int lineIdx,
                                          int lineNum,
                                          std::vector<SQO_semiCircleFeatureTree>& trees,
                                          std::vector<SQO_semiCircleFeatureTree>& longTrees,
                                          std::vector<SQO_semiCircleFeatureTree>& shortTrees,
                                          SQO_treeGrowParam growParam) {
  SemiCircleTrees openTrees(trees, detail::reachOf(growParam),
                            [](const SQO_semiCircleFeatureTree&) { return true; });
  detail::Outlook ahead;
  ahead.add(line_features);
  openTrees.admit(ahead);
  growLine(line_features, ahead, growParam, openTrees);
  const bool isLastLine = lineIdx == static_cast<long long>(lineNum) - 1;
  openTrees.closeWhere(
      [&](const SQO_semiCircleFeatureTree& tree) {
        return isLastLine ||
               detail::liesTooFarBehind(lineIdx, tree.treeNodes.back().lineIdx, growParam);
      },
      [&](SQO_semiCircleFeatureTree& tree) {
        const bool isShort = growParam.minVTypeTreeLen >= detail::lengthOf(tree);
        std::vector<SQO_semiCircleFeatureTree>& receiver = isShort ? shortTrees : longTrees;
        receiver.push_back(std::move(tree));
        receiver.back().treeState = TREE_CLOSED;
        return false;
      });
}
