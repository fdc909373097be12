#pragma once

/**
 * @file
 * Features of single lines, and the trees that link them across a scan.
 *
 * A feature is something found at one place on one line. A tree is a chain of such features, as a
 * rule one per line, that follows an edge, a ridge or a groove across the scan. A feature's
 * position inside its line is the index of its sample and y; across the lines it is the index of
 * its line and x.
 */

#include <cstdint>
#include <vector>

#include <scanline/scan_records.h>

// Feature types. A rise is a growth of z with the sample index, a fall a shrinking. Code 8 is no
// type: nothing writes it and it matches nothing, not even itself.
constexpr int FEATURE_JUMP_RISE = 1;       ///< Sharp rise; on a corner, the backward arm decides.
constexpr int FEATURE_JUMP_FALL = 2;       ///< Sharp fall; on a corner, the forward arm decides.
constexpr int FEATURE_SLOPE_RISE = 3;      ///< Rise that is spread over several samples.
constexpr int FEATURE_SLOPE_FALL = 4;      ///< Fall that is spread over several samples.
constexpr int FEATURE_V = 5;               ///< A rise and the following fall, taken as one.
constexpr int FEATURE_SEG_START = 6;       ///< First sample of a data segment.
constexpr int FEATURE_SEG_END = 7;         ///< Last sample of a data segment.
constexpr int FEATURE_RIGHT_ANGLE_1 = 9;   ///< First of the four kinds of right angle.
constexpr int FEATURE_RIGHT_ANGLE_2 = 10;  ///< Second kind of right angle.
constexpr int FEATURE_RIGHT_ANGLE_3 = 11;  ///< Third kind of right angle.
constexpr int FEATURE_RIGHT_ANGLE_4 = 12;  ///< Fourth kind of right angle.
constexpr int FEATURE_PEAK = 13;           ///< Smallest z around; greatest in dents and glove arcs.
constexpr int FEATURE_VALLEY = 14;         ///< Largest z around a place.
constexpr int FEATURE_CORNER_OTHER = 15;   ///< A corner that is neither a jump rise nor a fall.

// States of a tree.
constexpr int TREE_GROWING = 1;  ///< The tree still takes features.
constexpr int TREE_CLOSED = 2;   ///< The tree takes no more features.

/** One feature on one line. */
struct SQO_basicFeature1D {
  int featureType;         ///< One of the `FEATURE_` codes.
  STesk2DPoint jumpPos2D;  ///< `x`: index of the line; `y`: index of the sample on it.
  STesk3DPoint jumpPos;    ///< Position, as a rule that of the sample at `jumpPos2D`.
  double featureValue;     ///< What a tree adds up over its nodes; 0 where a feature has no value.
};

/** The features of one line. */
struct SQO_lineFeature {
  int lineIdx;                               ///< Index of the line.
  std::vector<SQO_basicFeature1D> features;  ///< The features proper, in the order found.
  /// Ends of the line's data segments: one `FEATURE_SEG_START`, then one `FEATURE_SEG_END` each.
  std::vector<SQO_basicFeature1D> endings;
};

/** A chain of features across lines. */
struct SQO_featureTree {
  int treeState;       ///< `TREE_GROWING` or `TREE_CLOSED`.
  int treeType;        ///< Type of the first node; new features are matched against it.
  int sLineIdx;        ///< Index of the line of the first node.
  int eLineIdx;        ///< Index of the line of the last node added.
  double treeValue;    ///< Sum of the nodes' values, in the growers that keep it.
  STeskRangeD xRange;  ///< Extent of the nodes in x, in the growers that fill it.
  STeskRangeD yRange;  ///< Extent of the nodes in y, in the growers that fill it.
  std::vector<SQO_basicFeature1D> treeNodes;  ///< The nodes in the order of adding.
  int anchorNode;  ///< Node that the direction check measures from; -1 while there is none.
};

/** How features of neighbouring lines are linked, and how long a tree must get. */
struct SQO_treeGrowParam {
  double yDeviation_max;   ///< A new node's y differs from the last node's by less than this.
  double zDeviation_max;   ///< A new node's z differs from the last node's by less than this.
  int maxLineSkipNum;      ///< Lines that a tree may lie behind; below 1: no limit in lines.
  double maxSkipDistance;  ///< Limit in x once a tree is `maxLineSkipNum` lines behind.
  double minLTypeTreeLen;  ///< A closed tree stays if longer than this, unless it is a V tree.
  double minVTypeTreeLen;  ///< A closed tree of type `FEATURE_V` stays if longer than this.
};

/** Size of the expected object. */
struct SQO_bagParam {
  double bagWidth;   ///< Expected extent of the object.
  double bagLength;  ///< Expected length of the object.
};

/** One gap on one line, between two samples that face each other across it. */
struct SQO_basicFeatureGap {
  int lineIdx;                 ///< Index of the line.
  std::uint64_t reserved1[3];  ///< Written 0, never read.
  STesk3DPosition gapStart;    ///< The sample on the side of the lower index.
  STesk3DPosition gapEnd;      ///< The sample on the side of the higher index.
  std::uint64_t reserved2[4];  ///< Written 0, never read.
};

/** A chain of gaps across lines. */
struct SQO_gapFeatureTree {
  int treeState;                               ///< `TREE_GROWING` or `TREE_CLOSED`.
  int treeType;                                ///< Always 1.
  int sLineIdx;                                ///< Index of the line of the first node.
  int eLineIdx;                                ///< Index of the line of the last node added.
  double treeValue;                            ///< Always 0.
  STeskRangeD xRange;                          ///< Not used.
  STeskRangeD yRange;                          ///< Not used.
  std::vector<SQO_basicFeatureGap> treeNodes;  ///< The nodes in the order of adding.
  int anchorNode;                              ///< Not used.
};

/** A stretch of a line that is taken as one feature. */
struct SJU_segFeature {
  int lineIdx;           ///< Index of the line.
  int startPtIdx;        ///< Index of the stretch's first sample on the line.
  int endPtIdx;          ///< Index of its last sample.
  int featureType;       ///< Written 0, never read.
  STesk3DPoint startPt;  ///< The first point.
  STesk3DPoint endPt;    ///< The last point.
  double segValue;       ///< A size, as told by the extractor.
};

/** A chain of stretches across lines. */
struct SJU_segFeatureTree {
  int treeState;                          ///< `TREE_GROWING` or `TREE_CLOSED`.
  int sLineIdx;                           ///< Index of the line of the first node.
  int eLineIdx;                           ///< Index of the line of the last node added.
  double treeValue;                       ///< Sum over the nodes of the mean z of their two ends.
  std::vector<SJU_segFeature> treeNodes;  ///< The nodes in the order of adding.
};

/** A stretch of a line with a middle point. */
struct SQO_featureSemiCircle {
  /// Written 0 by the extractor. To the tree grower 1 and 3 force a new tree, 2 and 4 end a tree
  /// here, 5 marks the feature as used.
  int segState;
  int lineIdx;         ///< Index of the line.
  int startPtIdx;      ///< Index of the first sample on the line.
  int endPtIdx;        ///< Index of the last sample.
  int midPtIdx;        ///< Index of the middle sample.
  STesk3DPoint midPt;  ///< Point of the middle sample.
  double width;        ///< Width of the stretch along the line.
  double height;       ///< Smallest z of the stretch.
};

/** A chain of semi-circles across lines. */
struct SQO_semiCircleFeatureTree {
  int treeState;                                 ///< `TREE_GROWING` or `TREE_CLOSED`.
  int treeType;                                  ///< Always 0.
  int sLineIdx;                                  ///< Index of the line of the first node.
  int eLineIdx;                                  ///< Index of the line of the last node added.
  STesk3DRangeD treeRange;                       ///< Room for the caller's bounds of the tree.
  double treeValue;                              ///< The caller's own word.
  double treeValue2;                             ///< The caller's own word.
  int treeTag;                                   ///< The caller's own word.
  std::vector<SQO_featureSemiCircle> treeNodes;  ///< The nodes in the order of adding.
};
