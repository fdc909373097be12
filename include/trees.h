#pragma once

/**
 * @file
 * Growing of feature trees: features of neighbouring lines are linked into chains.
 *
 * All growers walk the lines in order. A feature joins the first tree of the list that it fits, or
 * starts a new tree at the end of the list. It fits an open tree with last node n if
 * - it is not on the line of n,
 * - y and z differ from those of n by less than `yDeviation_max` and `zDeviation_max`,
 * - it is less than `maxLineSkipNum` lines away from n, or less than `maxSkipDistance` in x,
 * - its type goes with the tree's: a rise with a rise (1, 3), a fall with a fall (2, 4), slopes
 *   with a V (5), all others with their own code alone.
 *
 * Only `TREE_CLOSED` keeps a tree from taking features, and only a tree that is `TREE_GROWING` is
 * ever closed. A tree that closes is removed if it is too short: the distance in x and y from its
 * first to its last node must exceed `minLTypeTreeLen`, or `minVTypeTreeLen` in a tree of type
 * `FEATURE_V`, whose height between the nodes at a quarter and at three quarters must also drift by
 * less than 0.3 per unit of that length.
 *
 * The list of trees is the only state and is never cleared or sorted: trees passed in take part
 * like any other, but must have a node. Removal keeps the order of the rest. Features are only
 * read. What a feature costs does not depend on the number of closed trees in the list.
 *
 * New trees have `xRange` and `yRange` at 0 and `anchorNode` at -1.
 */

#include <vector>

#include "feature_records.h"
#include "scanline_export.h"

/**
 * Grows trees from the features of a whole scan.
 *
 * After each line a tree closes if its last node is more than `maxLineSkipNum` lines behind; with a
 * `maxLineSkipNum` below 1 none closes early. After the last line all trees close.
 *
 * @param lineFeatures one record per line, in order; its `lineIdx` and `features` are read,
 *                     `endings` are not. Without any record nothing happens.
 * @param trees        the trees; the first node's value does not count in `treeValue` of new ones
 * @param growParam    tuning
 */
SCANLINE_API void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                                            std::vector<SQO_featureTree>& trees,
                                            SQO_treeGrowParam growParam);

/**
 * Grows trees by the features of one more line.
 *
 * Afterwards a tree closes that took no node of this line, spans at least two lines, and lies too
 * far behind: more than `maxLineSkipNum` lines or, with a `maxLineSkipNum` below 1, more than
 * `maxSkipDistance` in x, which is estimated as its mean step in x per line times the lines it lies
 * behind. On the last line the distance does not matter. A tree of one line thus never closes, nor
 * does one that takes a node of the last line.
 *
 * Every call looks once at each tree of the list, to find the open ones.
 *
 * @param lineIdx    index of the line
 * @param isLastLine whether this is the last line of the scan
 * @param features   the features of the line, in order; may be empty
 * @param trees      the trees; `treeValue` of a new one starts at its first node's value
 * @param growParam  tuning
 */
SCANLINE_API void qo_lineFeaturesGrowing(int lineIdx,
                                         bool isLastLine,
                                         std::vector<SQO_basicFeature1D>& features,
                                         std::vector<SQO_featureTree>& trees,
                                         SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan as `qo_lineFeaturesGrowing` does line by line.
 *
 * At the end each tree of one line (`sLineIdx` equal to `eLineIdx`) is removed, whatever its state,
 * also when there are no lines. Trees that took a node of the last line stay open and are not
 * tested for their length.
 *
 * @param lineFeatures the features of each line; the position in the vector is the line's index
 * @param trees        the trees; `treeValue` of a new one starts at its first node's value
 * @param growParam    tuning
 */
SCANLINE_API void qo_cornerFeaturesGrowing(
    std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
    std::vector<SQO_featureTree>& trees,
    SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan and fills their bounds.
 *
 * Trees grow and close as in `qo_getFeatureGrowingTrees`. Then `xRange` and `yRange` of every tree
 * in the list, also of those that were passed in, become the bounds of its nodes (0 without nodes).
 *
 * @param lineFeatures the features of each line; the position in the vector is the line's index
 * @param trees        the trees; the first node's value does not count in `treeValue` of new ones
 * @param growParam    tuning
 */
SCANLINE_API void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                                        std::vector<SQO_featureTree>& trees,
                                        SQO_treeGrowParam growParam);
