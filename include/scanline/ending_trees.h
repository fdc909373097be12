#pragma once

/**
 * @file
 * Growers of trees from positions on a scan, such as the free ends of data segments that
 * `qo_LVFeatureGrowing` reports. trees.h describes what all growers share.
 *
 * Each position (x, y) becomes a feature with `featureValue` 0 and (x, y) in `jumpPos2D`. Its
 * `jumpPos` is the sample at the position, missing or not:
 *
 * | `isLineFirst` | x      | y      | `jumpPos`                   |
 * |---------------|--------|--------|-----------------------------|
 * | true          | line   | sample | the sample                  |
 * | false         | sample | line   | the sample, x and y swapped |
 *
 * With `false` the scan is thus walked across its lines, and limits in x and y keep their meaning:
 * in both modes the x of a position counts as the index of its line.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>

/**
 * Grows trees from positions on a scan.
 *
 * Trees close by lines, after each position; all that are growing close after the last one.
 *
 * @param endingPts     the positions in the order of growing, as a rule by line; only `x` and `y`
 *                      are read. Without positions nothing happens.
 * @param laserLines    the lines of the scan
 * @param isLineFirst   whether `x` of a position is the line and `y` the sample; otherwise the
 *                      reverse
 * @param endingType    type of the features and of new trees; with a type that matches nothing,
 *                      such as 0 and 8, each position starts a tree
 * @param[in,out] trees the trees; `treeValue` of new ones is 0
 * @param growParam     tuning
 * @pre Each position lies on the scan. This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete
 *
 * Cost: as in trees.h, where each position on another line than the preceding position starts a new
 * line. So positions in the order of their lines cost the least.
 *
 * @code
 * std::vector<STesk3DLaserLine> lines;
 * for (std::vector<STesk3DPosition>& samples : scan) {
 *   lines.push_back({samples.data(), static_cast<int>(samples.size()), 0});
 * }
 * std::vector<SQO_2DValueI> starts;  // such as segStarts of qo_LVFeatureGrowing
 * std::vector<SQO_featureTree> trees;
 * qo_getEndingGrowingTrees(starts, lines.data(), true, FEATURE_SEG_START, trees,
 *                          {2.0, 2.0, 5, 3.0, 50.0, 50.0});
 * @endcode
 */
SCANLINE_API void qo_getEndingGrowingTrees(std::vector<SQO_2DValueI>& endingPts,
                                           STesk3DLaserLine* laserLines,
                                           bool isLineFirst,
                                           int endingType,
                                           std::vector<SQO_featureTree>& trees,
                                           SQO_treeGrowParam growParam);

/**
 * Grows trees as `qo_getEndingGrowingTrees` does, and limits their direction to 45 degrees from the
 * x axis.
 *
 * The direction is that from a node of the tree, its *anchor*, to the feature. A tree that takes
 * the feature by the rules of trees.h is then tested as follows:
 * 1. Without an anchor the feature attaches if it is less than @p angleCheckDist away from the
 *    first node in the x-y plane. Otherwise the first node becomes the anchor.
 * 2. A tree that had an anchor moves it forward: to the node before the first one after the anchor
 *    that is less than @p angleCheckDist away from the feature, if there is one.
 * 3. The feature fails if the magnitude of dy / dx from the anchor is above 1.0; 0 / 0 passes. It
 *    is then tried on the next tree; the anchor remains where it is now.
 *
 * @param endingPts      as in `qo_getEndingGrowingTrees`
 * @param laserLines     the lines of the scan
 * @param isLineFirst    as in `qo_getEndingGrowingTrees`
 * @param endingType     as in `qo_getEndingGrowingTrees`
 * @param[in,out] trees  the trees; `treeValue` of new ones is 0
 * @param growParam      tuning
 * @param angleCheckDist distance in the x-y plane over which the direction is measured
 * @pre Each position lies on the scan, and `anchorNode` of each tree passed in is the index of one
 *      of its nodes, or negative. This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete
 *
 * Cost: that of `qo_getEndingGrowingTrees`, and that of the search for the anchor. The search tests
 * a few nodes, and then the bounds of runs of nodes, of which it skips those that are too far away.
 * It is linear in the nodes only for a tree that goes back and forth by more than @p angleCheckDist
 * within a few nodes.
 *
 * @code
 * std::vector<STesk3DLaserLine> lines;
 * for (std::vector<STesk3DPosition>& samples : scan) {
 *   lines.push_back({samples.data(), static_cast<int>(samples.size()), 0});
 * }
 * std::vector<SQO_2DValueI> ends;  // such as segEnds of qo_LVFeatureGrowing
 * std::vector<SQO_featureTree> trees;
 * qo_getEndingGrowingTrees_angleCheck(ends, lines.data(), true, FEATURE_SEG_END, trees,
 *                                     {2.0, 2.0, 5, 3.0, 50.0, 50.0}, 20.0);
 * @endcode
 */
SCANLINE_API void qo_getEndingGrowingTrees_angleCheck(std::vector<SQO_2DValueI>& endingPts,
                                                      STesk3DLaserLine* laserLines,
                                                      bool isLineFirst,
                                                      int endingType,
                                                      std::vector<SQO_featureTree>& trees,
                                                      SQO_treeGrowParam growParam,
                                                      double angleCheckDist);
