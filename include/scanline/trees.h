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
 *   with a tree of type V (5), all others with their own code alone.
 *
 * Only `TREE_CLOSED` keeps a tree from taking features, and only a tree that is `TREE_GROWING` is
 * ever closed. A tree that closes is removed if it is too short: the distance in x and y from its
 * first to its last node must exceed `minLTypeTreeLen`, or `minVTypeTreeLen` in a tree of type
 * `FEATURE_V`, whose height between the nodes at a quarter and at three quarters must also drift by
 * less than 0.3 per unit of that length.
 *
 * Gaps, semi-circles and segments have no types, and their growers say where they differ.
 *
 * The list of trees is the only state and is never cleared or sorted: trees passed in take part
 * like any other, but must have a node. Removal keeps the order of the rest. Features are only
 * read, unless documented otherwise.
 *
 * Cost: a feature visits the open trees whose last node lies about within `yDeviation_max` in y, in
 * the order of the list up to the one that it joins. A tree that ends on the line of the features
 * is visited once for all of them. No closed tree is visited, and none by a y that is not finite.
 * So the cost is quadratic only where many trees lie that close together in y and cannot take the
 * features there because of z, x, type or direction. The closing walk after a line visits each open
 * tree. A function that takes one line also visits each tree of the list once, to find the open
 * ones.
 *
 * If memory runs out, a list that is "valid but incomplete" holds the trees as they had grown so
 * far, in order. Each tree has its nodes, with `sLineIdx`, `eLineIdx` and `treeValue` to match.
 * Trees that should have closed may still be growing, and later features are missing.
 *
 * New trees have 0 in all fields that are not mentioned, and `anchorNode` at -1.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>

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
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete.
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
 * @param lineIdx    index of the line
 * @param isLastLine whether this is the last line of the scan
 * @param features   the features of the line, in order; may be empty
 * @param trees      the trees; `treeValue` of a new one starts at its first node's value
 * @param growParam  tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete.
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
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, and
 *        trees of one line are not removed.
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
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, with
 *        the bounds of the nodes.
 */
SCANLINE_API void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                                        std::vector<SQO_featureTree>& trees,
                                        SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of a whole scan whatever their types, and others from its endings.
 *
 * Both lists grow and close as in `qo_getFeatureGrowingTrees`, each for itself. `treeType` is that
 * of the first node and decides by which length a tree is tested.
 *
 * @param lineFeatures one record per line, in order; without any nothing happens
 * @param trees        trees of the `features`; the first node's value does not count
 * @param endingTrees  trees of the `endings`; the first node's value does not count
 * @param growParam    tuning
 * @throw std::bad_alloc  if memory runs out; @p trees and @p endingTrees are valid
 *        but incomplete. @p endingTrees grows after @p trees.
 */
SCANLINE_API void ju_getFeatureGrowingTrees_noTypeMatch(std::vector<SQO_lineFeature>& lineFeatures,
                                                        std::vector<SQO_featureTree>& trees,
                                                        std::vector<SQO_featureTree>& endingTrees,
                                                        SQO_treeGrowParam growParam);

/**
 * Grows trees from positions on a scan, such as the free segment ends of `qo_LVFeatureGrowing`.
 *
 * Each position becomes a feature of type `endingType` with `featureValue` 0, whose `jumpPos` is
 * the sample at it. On a scan that is walked across its lines x and y of the sample change places,
 * so that the limits keep their meaning. `x` of the position counts as the line, in either case.
 * After each position a tree closes if its last node is more than `maxLineSkipNum` lines behind
 * (never, if that is below 1); after the last one all trees close. Without positions nothing
 * happens. The open trees are visited for each position on another line than the one before, so
 * positions that change lines all the time cost as much as that many lines.
 *
 * @param endingPts   positions in the order of growing, as a rule by line; `x` and `y` are read
 * @param laserLines  the scan; every position must lie on it, which is not checked
 * @param isLineFirst whether `x` is the line and `y` the sample; otherwise the reverse
 * @param endingType  type of the features and of new trees; 0 and 8 match nothing
 * @param trees       the trees
 * @param growParam   tuning
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete.
 */
SCANLINE_API void qo_getEndingGrowingTrees(std::vector<SQO_2DValueI>& endingPts,
                                           STesk3DLaserLine* laserLines,
                                           bool isLineFirst,
                                           int endingType,
                                           std::vector<SQO_featureTree>& trees,
                                           SQO_treeGrowParam growParam);

/**
 * As `qo_getEndingGrowingTrees`, and keeps trees from turning off the x axis by more than 45
 * degrees.
 *
 * The direction is that from a tree's anchor to the new feature. As long as the feature lies less
 * than `angleCheckDist` from the first node, in x and y, there is no test. Then the first node
 * becomes the anchor (`anchorNode`), and with each further feature that the tree could take it
 * moves on to the node before the first one that lies less than `angleCheckDist` from the feature,
 * if there is one. It moves also when the feature then fails and goes on to the next tree.
 *
 * The search for that node passes over runs of nodes that lie too far away. It is slow only in a
 * tree that turns back and forth in x, by more than `angleCheckDist` from line to line.
 *
 * @param endingPts      positions in the order of growing, as a rule by line
 * @param laserLines     the scan; every position must lie on it, which is not checked
 * @param isLineFirst    whether `x` is the line and `y` the sample; otherwise the reverse
 * @param endingType     type of the features and of new trees
 * @param trees          the trees; those passed in must have a valid `anchorNode`, or -1
 * @param growParam      tuning
 * @param angleCheckDist distance in x and y over which the direction is measured
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete.
 */
SCANLINE_API void qo_getEndingGrowingTrees_angleCheck(std::vector<SQO_2DValueI>& endingPts,
                                                      STesk3DLaserLine* laserLines,
                                                      bool isLineFirst,
                                                      int endingType,
                                                      std::vector<SQO_featureTree>& trees,
                                                      SQO_treeGrowParam growParam,
                                                      double angleCheckDist);

/**
 * Grows trees by the gaps of one more line.
 *
 * A gap lies at its centre, the mean of its two samples. Afterwards a tree closes if its last node
 * is more than `maxLineSkipNum` lines behind (never, if that is below 1), or on the last line, and
 * is removed if the distance in x and y between its first and its last centre is at most
 * `minLTypeTreeLen`.
 *
 * @param lineIdx    index of the line; becomes that of trees that take a gap, while distances in
 *                   lines are taken from `lineIdx` of the gaps
 * @param isLastLine whether this is the last line of the scan
 * @param line_gaps  the gaps of the line, in order; may be empty
 * @param trees      the trees; new ones have `treeType` 1
 * @param growParam  tuning; `minVTypeTreeLen` is not read
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete.
 */
SCANLINE_API void qo_lineGapsGrowing(int lineIdx,
                                     bool isLastLine,
                                     std::vector<SQO_basicFeatureGap>& line_gaps,
                                     std::vector<SQO_gapFeatureTree>& trees,
                                     SQO_treeGrowParam growParam);

/**
 * Grows trees by the semi-circles of one more line, and hands over those that close.
 *
 * A semi-circle lies at `midPt`; z does not matter. Its `segState` steers the growing: with 1 or 3
 * it starts a tree, with 2 or 4 its tree takes no more after it, with 5 it is passed over. If the
 * features that come right behind it, of any state, could follow the same node, by y and by lines
 * or x, the one nearest in y joins the tree, the earliest of equals; all of these are then marked
 * with `segState` 5 and start no tree of their own. The node keeps the state that it came with.
 *
 * Afterwards a tree closes if its last node is more than `maxLineSkipNum` lines behind (never, if
 * that is below 1), or on the last line. From the last tree to the first, those that close leave
 * `trees`: with a distance in x and y between first and last node of at most `minVTypeTreeLen` for
 * `shortTrees`, else for `longTrees`.
 *
 * @param line_features the features of the line, in order; `segState` is changed
 * @param lineIdx       index of the line
 * @param lineNum       number of lines of the scan
 * @param trees         the open trees; closed ones that were passed in stay
 * @param longTrees     receives trees at its end
 * @param shortTrees    receives trees at its end
 * @param growParam     tuning; `zDeviation_max` and `minLTypeTreeLen` are not read
 * @throw std::bad_alloc  if memory runs out; all lists of trees are valid but
 *        incomplete, and each tree is in one of them. @p line_features may be marked in part.
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
 * Grows trees from the segments of a whole scan.
 *
 * Both ends of a segment must lie within the deviations of y and z of the last node's, and its
 * distance in x is the mean of those of the ends. After each line trees close as in
 * `qo_lineFeaturesGrowing`, with that distance between the first and the last node for the extent
 * in x, and a tree that closes is removed if it is at most `minLTypeTreeLen`. At the end each tree
 * with equal `sLineIdx` and `eLineIdx` is removed, also when there are no lines.
 *
 * @param lineFeatures the segments of each line. A new tree takes `lineIdx` of its segment, a tree
 *                     that takes a segment the position in this vector as its `eLineIdx`, so the
 *                     two should agree.
 * @param trees        the trees; `treeValue` adds up the mean z of the two ends of each node
 * @param growParam    tuning; `minVTypeTreeLen` is not read
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, and
 *        trees of one line are not removed.
 */
SCANLINE_API void ju_getSegFeatureGrowingTrees(
    std::vector<std::vector<SJU_segFeature>>& lineFeatures,
    std::vector<SJU_segFeatureTree>& trees,
    SQO_treeGrowParam growParam);

/**
 * Grows trees from the features of `qo_getLineLVFeature` for an object of known size.
 *
 * 1. Trees grow as in `qo_getFeatureGrowingTrees`.
 * 2. Each takes the type of most of its nodes, the lowest code among equals, and is lengthened by
 *    `endings` of the lines before it and behind it: on each line by the first ending within the
 *    deviations of y and z and fewer than `maxLineSkipNum` lines from a reference node, of any
 *    type, also one that another tree took. Going backward that is the tree's first node at the
 *    time, going forward the node that was last before. The walk ends on a line without such an
 *    ending that is more than `maxLineSkipNum` lines away from the tree.
 * 3. Every tree gets its bounds. Of the types `FEATURE_SLOPE_RISE`, `FEATURE_SLOPE_FALL`,
 *    `FEATURE_V` and `FEATURE_CORNER_OTHER` those are removed that are shorter in x than a quarter
 *    of `bagLength` and more than half as wide in y as they are long in x; then those shorter than
 *    half of `bagLength` that lie between two trees which span them in x and whose centres in y are
 *    less than 1.3 times `bagWidth` apart.
 * 4. What is left of the endings is handed over.
 *
 * `sLineIdx`, `eLineIdx` and `treeValue` do not count the endings.
 *
 * Each tree looks through the endings of the lines that it is compared with, also through those
 * that others took. The last removal compares short trees with all others. Both are quadratic:
 * the one in trees and endings that share lines, the other in the number of trees.
 *
 * @param lineFeatures one record per line; the position in the vector, `lineIdx` and `jumpPos2D.x`
 *                     must agree. Endings that a tree takes change to its type.
 * @param trees        the trees; all steps also run on those passed in, even without records
 * @param bagParam     size of the object
 * @param growParam    tuning
 * @param segStarts    receives the endings still of type `FEATURE_SEG_START` at its end: `x` and
 *                     `y` from `jumpPos2D`, `value` the type, `valueD` the z, `tag` 0
 * @param segEnds      receives those still of type `FEATURE_SEG_END` in the same way
 * @throw std::bad_alloc  if memory runs out; @p trees is valid but incomplete, with
 *        the bounds of the nodes; the removals of step 3 may be missing. An ending that has changed
 *        its type is a node of a tree. @p segStarts and @p segEnds are valid but incomplete.
 */
SCANLINE_API void qo_LVFeatureGrowing(std::vector<SQO_lineFeature>& lineFeatures,
                                      std::vector<SQO_featureTree>& trees,
                                      SQO_bagParam bagParam,
                                      SQO_treeGrowParam growParam,
                                      std::vector<SQO_2DValueI>& segStarts,
                                      std::vector<SQO_2DValueI>& segEnds);
