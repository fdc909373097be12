#pragma once

/**
 * @file
 * Growers of trees from features of any extractor that reports `SQO_basicFeature1D`. trees.h
 * describes what all growers share.
 *
 * | Grower                                  | Index of a line     | Types match | Closes   |
 * |-----------------------------------------|---------------------|-------------|----------|
 * | `qo_getFeatureGrowingTrees`             | `lineIdx` of record | yes         | by lines |
 * | `qo_lineFeaturesGrowing`, one line      | argument            | yes         | by step  |
 * | `qo_cornerFeaturesGrowing`              | position in list    | yes         | by step  |
 * | `qo_peakFeatureGrowing`                 | position in list    | yes         | by lines |
 * | `ju_getFeatureGrowingTrees_noTypeMatch` | `lineIdx` of record | no          | by lines |
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>

/**
 * Grows trees from the features of a whole scan.
 *
 * Trees close by lines, and all that are growing close after the last line.
 *
 * @param lineFeatures  one record for each line, in order; `lineIdx` and `features` are read,
 *                      `endings` are not. Without records nothing happens.
 * @param[in,out] trees the trees; `treeValue` of new ones leaves out the first node
 * @param growParam     tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_cornerParam cornerParam = {5.0, 2.0, 3.0, 45.0, 30.0, 15.0};
 * std::vector<SQO_lineFeature> lines(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   qo_getLineCornerFeature(scan[i].data(), static_cast<int>(scan[i].size()), static_cast<int>(i),
 *                           cornerParam, &lines[i]);
 * }
 * SQO_treeGrowParam growParam = {2.0, 2.0, 5, 3.0, 50.0, 50.0};
 * std::vector<SQO_featureTree> trees;
 * qo_getFeatureGrowingTrees(lines, trees, growParam);
 * @endcode
 */
SCANLINE_API void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                                            std::vector<SQO_featureTree>& trees,
                                            SQO_treeGrowParam growParam);

/**
 * Grows trees by the features of one more line.
 *
 * Trees close by step. So a tree of one line never closes, and a tree that takes a node of the last
 * line stays growing and untested for its length. Lines need not have successive indices.
 *
 * @param lineIdx       index of the line
 * @param isLastLine    whether this is the last line of the scan
 * @param features      the features of the line, in order; without any, trees may close
 * @param[in,out] trees the trees; `treeValue` of new ones includes the first node
 * @param growParam     tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_treeGrowParam growParam = {2.0, 2.0, 5, 3.0, 50.0, 50.0};
 * std::vector<SQO_featureTree> trees;  // kept from line to line
 * std::vector<SQO_basicFeature1D> drops;
 * qo_getLineDownJumps(line.data(), static_cast<int>(line.size()), lineIdx, 10.0, drops);
 * qo_lineFeaturesGrowing(lineIdx, false, drops, trees, growParam);
 * @endcode
 */
SCANLINE_API void qo_lineFeaturesGrowing(int lineIdx,
                                         bool isLastLine,
                                         std::vector<SQO_basicFeature1D>& features,
                                         std::vector<SQO_featureTree>& trees,
                                         SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan as `qo_lineFeaturesGrowing` does line by line, and
 * removes those of one line.
 *
 * At the end each tree in the list with equal `sLineIdx` and `eLineIdx` is removed, whatever its
 * state, also if there are no lines. Trees that took a node of the last line stay growing and
 * untested for their length.
 *
 * @param lineFeatures  the features of each line; its position in the vector is the index of the
 *                      line
 * @param[in,out] trees the trees; `treeValue` of new ones includes the first node
 * @param growParam     tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, and trees of one
 *        line are not removed
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_cornerParam cornerParam = {0.0, 20.0, 3.0, 45.0, 15.0, 45.0};
 * std::vector<std::vector<SQO_basicFeature1D>> corners(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   ju_getLineCorerFeature(scan[i], static_cast<int>(i), cornerParam, corners[i]);
 * }
 * std::vector<SQO_featureTree> trees;
 * qo_cornerFeaturesGrowing(corners, trees, {2.0, 2.0, 5, 3.0, 50.0, 50.0});
 * @endcode
 */
SCANLINE_API void qo_cornerFeaturesGrowing(
    std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
    std::vector<SQO_featureTree>& trees,
    SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan as `qo_getFeatureGrowingTrees` does, and sets their
 * bounds.
 *
 * At the end `xRange` and `yRange` of each tree in the list, also of those passed in, become the
 * bounds of its nodes; without nodes they become 0. This happens without lines too.
 *
 * @param lineFeatures  the features of each line; its position in the vector is the index of the
 *                      line
 * @param[in,out] trees the trees; `treeValue` of new ones leaves out the first node
 * @param growParam     tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, with the bounds of
 *        the nodes
 *
 * Cost: see trees.h. In addition each node in the list is visited once.
 *
 * @code
 * std::vector<std::vector<SQO_basicFeature1D>> valleys(scan.size());
 * std::vector<std::vector<SQO_basicFeature1D>> peaks(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   qo_getLineLocalPeaks(scan[i].data(), static_cast<int>(scan[i].size()), static_cast<int>(i),
 *                        10.0, valleys[i], peaks[i]);
 * }
 * std::vector<SQO_featureTree> ridges;
 * qo_peakFeatureGrowing(peaks, ridges, {2.0, 2.0, 5, 3.0, 50.0, 50.0});
 * @endcode
 */
SCANLINE_API void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                                        std::vector<SQO_featureTree>& trees,
                                        SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan whatever their types, and others from its endings.
 *
 * Both lists grow and close as in `qo_getFeatureGrowingTrees`, without rule 5 and independently of
 * each other. `treeType` is the type of the first node, and decides which length a tree must have.
 *
 * @param lineFeatures        one record for each line, in order; without records nothing happens
 * @param[in,out] trees       trees of `features`; `treeValue` of new ones leaves out the first node
 * @param[in,out] endingTrees trees of `endings`; `treeValue` of new ones leaves out the first node
 * @param growParam           tuning
 * @throw std::bad_alloc  if memory runs out; @p trees and @p endingTrees are valid but incomplete.
 *        @p endingTrees grows after @p trees.
 *
 * Cost: see trees.h.
 *
 * @code
 * SQO_cornerParam cornerParam = {5.0, 2.0, 3.0, 45.0, 30.0, 15.0};
 * std::vector<SQO_lineFeature> lines(scan.size());
 * for (std::size_t i = 0; i < scan.size(); ++i) {
 *   qo_getLineCornerFeature(scan[i].data(), static_cast<int>(scan[i].size()), static_cast<int>(i),
 *                           cornerParam, &lines[i]);
 * }
 * std::vector<SQO_featureTree> edges;
 * std::vector<SQO_featureTree> outlines;
 * ju_getFeatureGrowingTrees_noTypeMatch(lines, edges, outlines, {2.0, 2.0, 5, 3.0, 50.0, 50.0});
 * @endcode
 */
SCANLINE_API void ju_getFeatureGrowingTrees_noTypeMatch(std::vector<SQO_lineFeature>& lineFeatures,
                                                        std::vector<SQO_featureTree>& trees,
                                                        std::vector<SQO_featureTree>& endingTrees,
                                                        SQO_treeGrowParam growParam);
