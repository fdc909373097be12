#pragma once

/**
 * @file
 * Growers of feature trees: they link the features of successive lines into chains.
 *
 * **Attaching.** A grower walks the lines in order. A feature attaches to the first tree of the
 * list that it fits, or starts a new tree at the end of the list. Nothing looks for the best tree,
 * and only the last node of a tree is compared. A feature fits a tree with last node n if
 * 1. the tree is not `TREE_CLOSED`,
 * 2. the feature and n are on different lines,
 * 3. they are less than `yDeviation_max` apart in y and less than `zDeviation_max` in z,
 * 4. they are fewer than `maxLineSkipNum` lines apart, or less than `maxSkipDistance` in x,
 * 5. the type of the feature matches that of the tree:
 *
 * | Type of the tree                          | Types of features that match |
 * |-------------------------------------------|------------------------------|
 * | `FEATURE_JUMP_RISE`, `FEATURE_SLOPE_RISE` | the same two                 |
 * | `FEATURE_JUMP_FALL`, `FEATURE_SLOPE_FALL` | the same two                 |
 * | `FEATURE_V`                               | `FEATURE_V` and both slopes  |
 * | any other `FEATURE_` code                 | the same                     |
 * | any other number, such as 0 and 8         | none                         |
 *
 * Gaps, semi-circles and segments have no types and are compared as the table of
 * `SQO_treeGrowParam` lists. A feature with a NaN in a coordinate that is compared fits no tree.
 *
 * **Closing.** After each line, trees close that have not taken a feature for too long. There are
 * two rules. By *step* close the trees of `qo_lineFeaturesGrowing`, `qo_cornerFeaturesGrowing` and
 * `ju_getSegFeatureGrowingTrees`, by *lines* all others. A tree lags by the number of lines from
 * its last node to the present line.
 *
 * | Condition                   | by lines              | by step                  |
 * |-----------------------------|-----------------------|--------------------------|
 * | `maxLineSkipNum` 1 or more  | it lags by more lines | the same                 |
 * | `maxLineSkipNum` 0 or below | not yet               | if d > `maxSkipDistance` |
 * | after the last line         | yes                   | yes                      |
 *
 * By step, a tree does not close while its last node is on the present line, nor while `eLineIdx`
 * is not above `sLineIdx`. So trees of one line never close, nor do those with a node on the last
 * line.
 *
 * d estimates the distance in x that a tree has skipped so far: the distance in x from its first to
 * its last node, divided by `eLineIdx` - `sLineIdx`, times the lines that it lags by.
 *
 * | `treeState`    | takes features | closes |
 * |----------------|----------------|--------|
 * | `TREE_GROWING` | yes            | yes    |
 * | `TREE_CLOSED`  | no             | no     |
 * | any other      | yes            | no     |
 *
 * **Length.** When a tree closes it is removed if it is too short; the others keep their order. Its
 * length is the distance in the x-y plane from its first to its last node, not along the nodes. A
 * tree of features must be longer than `minLTypeTreeLen`. If it is of type `FEATURE_V` it must be
 * longer than `minVTypeTreeLen` instead, and of its k nodes those at the indices k / 4 and 3k / 4,
 * rounded down, must differ in z by less than 0.3 per unit of the length. A length of NaN is too
 * short.
 *
 * **The list** of trees is the only state. It is never cleared or sorted, and trees passed in take
 * part like any other. New trees have `treeState` `TREE_GROWING`, -1 in `anchorNode`, and 0 in
 * fields that are not documented. Features are only read, unless documented otherwise.
 *
 * @pre Each tree passed in has at least one node. Lists passed to one call are different objects,
 *      and none is part of another: the features of a call must not be the nodes of a tree. The
 *      line in a feature agrees with the index that the grower uses for its line. This is not
 *      checked.
 *
 * If memory runs out a function throws `std::bad_alloc`. A list that is then *valid but incomplete*
 * holds the trees as grown so far, in order. Each has its nodes, with `sLineIdx`, `eLineIdx` and
 * `treeValue` to match; trees that should have closed may still be growing, and the remaining
 * features are missing.
 *
 * Cost: a feature visits the open trees whose last node is within a few times `yDeviation_max` in
 * y, in the order of the list up to the one that it attaches to. Trees that end on the line of the
 * feature are visited only once for all features of the line, closed trees not at all. So the cost
 * is quadratic only where many open trees lie that close together in y and the features fit none of
 * them, or only late ones, because of z, x, type or direction. After each line, closing visits the
 * trees that could close; where only the last line closes trees, it visits them only then. In
 * addition each call visits every tree of the list once, so growers that take one line at a time
 * visit the whole list for each line.
 *
 * Method: greedy linking, where the first tree that fits takes the feature.
 */

#include <scanline/ending_trees.h>
#include <scanline/feature_trees.h>
#include <scanline/lv_trees.h>
#include <scanline/span_trees.h>
