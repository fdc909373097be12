#pragma once

/**
 * @file
 * The grower of trees from L and V shapes, for an object of known size. trees.h describes what all
 * growers share.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>

/**
 * Grows trees from the features and endings of `qo_getLineLVFeature`, and removes those that do not
 * suit an object of known size.
 *
 * 1. *Growing.* Trees grow and close as in `qo_getFeatureGrowingTrees`.
 * 2. *Type.* Each tree takes the type of most of its nodes, the lowest code of equal ones.
 * 3. *Endings.* Right after that the tree is lengthened, first backward over the lines before it,
 *    then forward over those after it. On each line it takes the first ending that fits, of any
 *    type and even if another tree has it already: one within the deviations of y and z and fewer
 *    than `maxLineSkipNum` lines from a reference node. A direction ends at a line without such an
 *    ending that is more than `maxLineSkipNum` lines from the end of the tree. Endings that are
 *    taken change to the type of the tree. With a `maxLineSkipNum` below 1 none fit.
 *
 *    | Direction | Reference node                             |
 *    |-----------|--------------------------------------------|
 *    | backward  | the first node, which each ending replaces |
 *    | forward   | the last node from before, throughout      |
 *
 * 4. *Bounds.* `xRange` and `yRange` of each tree become the bounds of its nodes. The size of a
 *    tree is its extent in them.
 * 5. *Stubs.* Trees smaller in x than a quarter of `bagLength`, whose size in y is more than half
 *    of that in x, are removed.
 * 6. *Inner trees.* From the last tree to the first, one that is smaller in x than half of
 *    `bagLength` is removed if it lies between two others that are too close for two objects. Both
 *    exceed its range in x at both ends. The lower one is that with the greatest `yRange.max` of
 *    those entirely below it in y, the upper one that with the smallest `yRange.max` of those
 *    entirely above, the earliest of equal ones. They are too close if the centres of their ranges
 *    in y are less than 1.3 times `bagWidth` apart. A removed tree no longer counts.
 * 7. *Free ends.* Endings that are still of type `FEATURE_SEG_START` or `FEATURE_SEG_END` are
 *    reported.
 *
 * Steps 5 and 6 remove only trees of the types `FEATURE_SLOPE_RISE`, `FEATURE_SLOPE_FALL`,
 * `FEATURE_V` and `FEATURE_CORNER_OTHER`; in step 6 the two others may have any type.
 *
 * All steps also apply to the trees passed in, and even without lines. `sLineIdx`, `eLineIdx` and
 * `treeValue` do not take endings into account.
 *
 * @param[in,out] lineFeatures one record for each line; endings that a tree takes change to its
 *                             type
 * @param[in,out] trees        the trees
 * @param bagParam             size of the object
 * @param growParam            tuning
 * @param[in,out] segStarts    free starts of segments are appended: `x` and `y` from `jumpPos2D`,
 *                             the type in `value`, z in `valueD` and 0 in `tag`
 * @param[in,out] segEnds      free ends of segments are appended in the same way
 * @pre The position of a record in @p lineFeatures, its `lineIdx` and `jumpPos2D.x` of its features
 *      and endings agree. This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, with the bounds of
 *        the nodes; the removals of steps 5 and 6 may be missing. An ending with a changed type is
 *        a node of a tree. @p segStarts and @p segEnds are valid but incomplete.
 *
 * Cost: in addition to that in trees.h, each tree is compared with the endings of the lines before
 * and after it, also with those that other trees have taken, up to the end of each direction in
 * step 3. Step 6 compares each short tree with all others. So the cost is quadratic in trees and
 * endings on the same lines, and in short trees. Each node in the list is visited once for step 4.
 *
 * @code
 * SQO_slopeParam runs = {0.0, 5.0, 3.0, 10.0};
 * SQO_VFeatureParam shape = {2.0, 30.0};
 * std::vector<SQO_lineFeature> lines(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   lines[i].lineIdx = static_cast<int>(i);
 *   qo_getLineLVFeature(scan[i].data(), static_cast<int>(scan[i].size()), lines[i].lineIdx, runs,
 *                       shape, &lines[i]);
 * }
 * std::vector<SQO_featureTree> trees;
 * std::vector<SQO_2DValueI> starts;
 * std::vector<SQO_2DValueI> ends;
 * SQO_treeGrowParam growParam = {10.0, 10.0, 5, 8.0, 50.0, 50.0};
 * qo_LVFeatureGrowing(lines, trees, {300.0, 500.0}, growParam, starts, ends);
 * @endcode
 */
SCANLINE_API void qo_LVFeatureGrowing(std::vector<SQO_lineFeature>& lineFeatures,
                                      std::vector<SQO_featureTree>& trees,
                                      SQO_bagParam bagParam,
                                      SQO_treeGrowParam growParam,
                                      std::vector<SQO_2DValueI>& segStarts,
                                      std::vector<SQO_2DValueI>& segEnds);
