#include <cmath>

#include <scanline/trees.h>
#include "trees/line_walk.h"
#include "trees/tree_rules.h"

namespace detail = scanline::detail;

namespace {

using SegmentTrees = detail::OpenTrees<SJU_segFeatureTree>;

/// Distance of two segments in x, as the mean of that of their starts and that of their ends.
double distanceX(const SJU_segFeature& a, const SJU_segFeature& b) {
  return (std::abs(a.startPt.x - b.startPt.x) + std::abs(a.endPt.x - b.endPt.x)) * 0.5;
}

double extentX(const SJU_segFeatureTree& tree) {
  return distanceX(tree.treeNodes.front(), tree.treeNodes.back());
}

double meanHeight(const SJU_segFeature& segment) {
  return (segment.startPt.z + segment.endPt.z) * 0.5;
}

/// Whether a segment lies close enough behind a tree's last node, with both of its ends.
bool continues(const SJU_segFeature& segment,
               const SJU_segFeature& last,
               const SQO_treeGrowParam& param) {
  return segment.lineIdx != last.lineIdx &&
         param.yDeviation_max > std::abs(segment.startPt.y - last.startPt.y) &&
         param.yDeviation_max > std::abs(segment.endPt.y - last.endPt.y) &&
         param.zDeviation_max > std::abs(segment.startPt.z - last.startPt.z) &&
         param.zDeviation_max > std::abs(segment.endPt.z - last.endPt.z) &&
         detail::isWithinSkip(detail::lineGap(segment.lineIdx, last.lineIdx),
                              distanceX(segment, last), param);
}

bool qo_segFeatureGrowing(const SJU_segFeature& segment,
                          int lineIdx,
                          const detail::Outlook& ahead,
                          const SQO_treeGrowParam& param,
                          SegmentTrees& trees) {
  const int treeId = trees.firstFitting(segment, ahead, [&](int id) {
    return continues(segment, trees[id].treeNodes.back(), param);
  });
  if (treeId < 0) {
    return false;
  }
  trees.grow(treeId, [&](SJU_segFeatureTree& tree) {
    tree.treeNodes.push_back(segment);
    tree.eLineIdx = lineIdx;
    tree.treeValue += meanHeight(segment);
  });
  return true;
}

void closeAfter(int lineIdx, bool isLastLine, const SQO_treeGrowParam& param, SegmentTrees& trees) {
  trees.closeWhere(
      [&](const SJU_segFeatureTree& tree) {
        const detail::TreeSpan span = {tree.treeNodes.back().lineIdx, detail::linesSpanned(tree),
                                       extentX(tree)};
        return detail::closesByItsStep(lineIdx, isLastLine, span, param);
      },
      [&](const SJU_segFeatureTree& tree) { return !(param.minLTypeTreeLen >= extentX(tree)); });
}

/// Grows trees over the lines of a scan.
void growOver(const std::vector<std::vector<SJU_segFeature>>& lines,
              std::vector<SJU_segFeatureTree>& trees,
              const SQO_treeGrowParam& param) {
  // A mean within its limit has a start within twice the limit.
  const detail::Reach reach = {param.yDeviation_max, param.maxLineSkipNum,
                               2.0 * param.maxSkipDistance};
  SegmentTrees openTrees(
      trees, reach, [](const SJU_segFeatureTree& tree) { return detail::linesSpanned(tree) >= 1; });
  const auto place = [&](const SJU_segFeature& segment, int lineIdx, const detail::Outlook& ahead) {
    if (!qo_segFeatureGrowing(segment, lineIdx, ahead, param, openTrees)) {
      openTrees.append(
          {TREE_GROWING, segment.lineIdx, segment.lineIdx, meanHeight(segment), {segment}});
    }
  };
  detail::growScan(
      static_cast<int>(lines.size()),
      [&](int i) { return detail::NodeLine<SJU_segFeature>(i, lines[i]); }, place,
      [&](int lineIdx, bool isLast) { closeAfter(lineIdx, isLast, param, openTrees); }, openTrees);
}

}  // namespace

void ju_getSegFeatureGrowingTrees(std::vector<std::vector<SJU_segFeature>>& lineFeatures,
                                  std::vector<SJU_segFeatureTree>& trees,
                                  SQO_treeGrowParam growParam) {
  growOver(lineFeatures, trees, growParam);
  detail::removeTreesOfOneLine(trees);
}
