// Grows trees from semi-circles, and moves those that close to the lists of the caller.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>
#include <utility>

#include <scanline/trees.h>
#include "trees/open_trees.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_featureSemiCircle>;
using OpenTrees = detail::OpenTrees<SQO_semiCircleFeatureTree>;

constexpr int kUsed = 5;  // the state of features that competed for a tree

bool startsTree(const SQO_featureSemiCircle& feature) {
  return feature.segState == 1 || feature.segState == 3;
}

bool endsTree(const SQO_featureSemiCircle& feature) {
  return feature.segState == 2 || feature.segState == 4;
}

SQO_semiCircleFeatureTree newTree(const SQO_featureSemiCircle& feature) {
  SQO_semiCircleFeatureTree tree = {};
  tree.treeState = TREE_GROWING;
  tree.sLineIdx = feature.lineIdx;
  tree.eLineIdx = feature.lineIdx;
  tree.treeNodes = {feature};
  return tree;
}

/// Attaches the nearest in y of the features that compete for a tree, and returns it: `first`, and
/// those directly after it that are within the limits of the last node too.
const SQO_featureSemiCircle& addNearest(Features::iterator first,
                                        Features::iterator end,
                                        const SQO_treeGrowParam& param,
                                        SQO_semiCircleFeatureTree& tree) {
  const SQO_featureSemiCircle last = tree.treeNodes.back();
  const auto distance = [&](const SQO_featureSemiCircle& feature) {
    return std::abs(feature.midPt.y - last.midPt.y);
  };
  const auto competitorsEnd =
      std::find_if_not(std::next(first), end, [&](const SQO_featureSemiCircle& competitor) {
        return param.yDeviation_max > distance(competitor) &&
               detail::isWithinSkipOf(last, competitor, param);
      });
  const auto winner = std::min_element(
      first, competitorsEnd, [&](const SQO_featureSemiCircle& a, const SQO_featureSemiCircle& b) {
        return distance(a) < distance(b);
      });
  tree.treeNodes.push_back(*winner);
  tree.eLineIdx = winner->lineIdx;
  if (competitorsEnd - first > 1) {
    std::for_each(first, competitorsEnd,
                  [](SQO_featureSemiCircle& feature) { feature.segState = kUsed; });
  }
  return *winner;
}

/// Grows the trees by the features of one line.
void growLine(Features& features, const SQO_treeGrowParam& param, OpenTrees& open) {
  detail::RemainingExtent remaining;
  remaining.add(features);
  open.admit(remaining);
  for (auto feature = features.begin(); feature != features.end(); ++feature) {
    if (feature->segState == kUsed) {
      continue;
    }
    const auto fits = [&](const SQO_semiCircleFeatureTree& tree) {
      const SQO_featureSemiCircle& last = tree.treeNodes.back();
      return !endsTree(last) && detail::isWithinSkipOf(last, *feature, param);
    };
    const auto add = [&](SQO_semiCircleFeatureTree& tree) -> const SQO_featureSemiCircle& {
      return addNearest(feature, features.end(), param, tree);
    };
    if (startsTree(*feature) || !open.growFirst(*feature, fits, add)) {
      open.append(newTree(*feature));
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
  assert(&trees != &longTrees && &trees != &shortTrees && &longTrees != &shortTrees);
  OpenTrees open(trees, growParam, false);
  growLine(line_features, growParam, open);
  const bool isLastLine = lineIdx == static_cast<long long>(lineNum) - 1;
  const auto closes = [&](const SQO_semiCircleFeatureTree&, int lastLine) {
    return detail::closesByLines(detail::lineGap(lineIdx, lastLine), isLastLine, growParam);
  };
  for (const int id : open.due(closes)) {
    const bool isShort = growParam.minVTypeTreeLen >= detail::lengthOf(open[id]);
    std::vector<SQO_semiCircleFeatureTree>& receiver = isShort ? shortTrees : longTrees;
    receiver.push_back(std::move(open[id]));
    receiver.back().treeState = TREE_CLOSED;
    open.remove(id);
  }
}
