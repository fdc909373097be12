#pragma once

/**
 * @file
 * Growers of trees from features that span several samples: gaps, semi-circles and segments.
 * trees.h describes what all growers share. None of them has types.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>

/**
 * Grows trees by the gaps of one more line.
 *
 * The position of a gap is its centre, the mean of its two edges. Trees close by lines. One that
 * closes is removed if the distance in the x-y plane from its first to its last centre is at most
 * `minLTypeTreeLen`; a distance of NaN keeps it.
 *
 * @param lineIdx       index of the line, for `sLineIdx`, `eLineIdx` and closing; attaching
 *                      compares `lineIdx` of the gaps
 * @param isLastLine    whether this is the last line of the scan
 * @param line_gaps     the gaps of the line, in order; without any, trees may close
 * @param[in,out] trees the trees; new ones have `treeType` 1
 * @param growParam     tuning; `minVTypeTreeLen` is not read
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_treeGrowParam growParam = {2.0, 5.0, 5, 3.0, 50.0, 0.0};
 * std::vector<SQO_gapFeatureTree> trees;  // kept from line to line
 * std::vector<SQO_basicFeatureGap> gaps;
 * qo_getLineGapFeature(line, lineIdx, {0.0, 30.0, 1.2, 50.0, 0.0, 0.0}, {1.5, 8.0}, gaps);
 * qo_lineGapsGrowing(lineIdx, false, gaps, trees, growParam);
 * @endcode
 */
SCANLINE_API void qo_lineGapsGrowing(int lineIdx,
                                     bool isLastLine,
                                     std::vector<SQO_basicFeatureGap>& line_gaps,
                                     std::vector<SQO_gapFeatureTree>& trees,
                                     SQO_treeGrowParam growParam);

/**
 * Grows trees by the semi-circles of one more line, and hands over those that close.
 *
 * The position of a semi-circle is `midPt`; z does not matter. Its `segState` controls the growing:
 *
 * | `segState` | Effect                                   |
 * |------------|------------------------------------------|
 * | 1, 3       | the semi-circle starts a tree            |
 * | 2, 4       | its tree takes no more features after it |
 * | 5          | it is used already, and skipped          |
 * | any other  | none                                     |
 *
 * A semi-circle that fits a tree competes with those that directly follow it in the list, in any
 * state, as long as they are close enough to the same node too, in y and in lines or x. The nearest
 * in y attaches, the earliest of equal ones. If there was a competitor, `segState` of all of them
 * becomes 5, so the others start no tree; the node keeps the state from before.
 *
 * Trees close by lines; the last line is @p lineNum - 1. From the last tree to the first, each that
 * closes is moved to the end of @p shortTrees if the distance in the x-y plane from its first to
 * its last node is at most `minVTypeTreeLen`, otherwise to the end of @p longTrees.
 *
 * @param[in,out] line_features the semi-circles of the line, in order; `segState` of competitors
 *                              becomes 5. Without any, trees may close.
 * @param lineIdx               index of the line, for closing; everything else uses `lineIdx` of
 *                              the semi-circles
 * @param lineNum               number of lines of the scan
 * @param[in,out] trees         the trees, of which those that close are removed; closed ones that
 *                              were passed in stay
 * @param[in,out] longTrees     long trees are appended
 * @param[in,out] shortTrees    short trees are appended
 * @param growParam             tuning; `zDeviation_max` and `minLTypeTreeLen` are not read
 * @throw std::bad_alloc  if memory runs out; all lists of trees are valid but incomplete, and each
 *        tree is in one of them. Some of @p line_features may be marked.
 *
 * Cost: see trees.h.
 *
 * @code
 * const int lineCount = static_cast<int>(scan.size());
 * SQO_treeGrowParam growParam = {10.0, 0.0, 5, 3.0, 0.0, 50.0};
 * std::vector<SQO_semiCircleFeatureTree> open;  // kept from line to line, as are the others
 * std::vector<SQO_semiCircleFeatureTree> tubes;
 * std::vector<SQO_semiCircleFeatureTree> stubs;
 * std::vector<SQO_featureSemiCircle> found;  // from qo_getLineUpperSemiCircleFeature
 * qo_getFeatureGrowingTrees_semiCircle(found, lineIdx, lineCount, open, tubes, stubs, growParam);
 * @endcode
 */
SCANLINE_API void qo_getFeatureGrowingTrees_semiCircle(
    std::vector<SQO_featureSemiCircle>& line_features,
    int lineIdx,
    int lineNum,
    std::vector<SQO_semiCircleFeatureTree>& trees,
    std::vector<SQO_semiCircleFeatureTree>& longTrees,
    std::vector<SQO_semiCircleFeatureTree>& shortTrees,
    SQO_treeGrowParam growParam);

/**
 * Grows trees from the segments of a whole scan: ring arcs or raised runs.
 *
 * Both ends of a segment must be within the deviations of y and z from those of the last node, and
 * its distance in x is the mean of the distances of both ends. Trees close by step, with that
 * distance from the first to the last node as the distance in x. One that closes is removed if the
 * distance is at most `minLTypeTreeLen`; NaN keeps it. At the end each tree in the list with equal
 * `sLineIdx` and `eLineIdx` is removed, whatever its state, also if there are no lines. Trees that
 * took a node of the last line stay growing and untested for their length.
 *
 * @param lineFeatures  the segments of each line
 * @param[in,out] trees the trees; `treeValue` is the sum of the mean z of the two ends of each node
 * @param growParam     tuning; `minVTypeTreeLen` is not read
 * @pre `lineIdx` of each segment is the position of its line in @p lineFeatures: a new tree takes
 *      the former, a tree that takes a segment the latter as its `eLineIdx`
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, and trees of one
 *        line are not removed
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_raisedFeatureParam raisedParam = {1.5, 1.0, 5.0, 40.0};
 * std::vector<std::vector<SJU_segFeature>> ribs(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   ju_getLineRaisedFeature(scan[i], static_cast<int>(i), raisedParam, ribs[i]);
 * }
 * std::vector<SJU_segFeatureTree> trees;
 * ju_getSegFeatureGrowingTrees(ribs, trees, {2.0, 2.0, 5, 3.0, 50.0, 0.0});
 * @endcode
 */
SCANLINE_API void ju_getSegFeatureGrowingTrees(
    std::vector<std::vector<SJU_segFeature>>& lineFeatures,
    std::vector<SJU_segFeatureTree>& trees,
    SQO_treeGrowParam growParam);
