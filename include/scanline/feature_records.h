#pragma once

/**
 * @file
 * Records of the features of single lines, and of the trees that link them across a scan.
 *
 * A feature is found at one place on one line, by a function of line_features.h. A tree is a chain
 * of features, normally one per line, that follows an edge, a ridge or a groove across the scan;
 * trees.h grows them. A feature is located along its line by the index of its sample and by y, and
 * across the lines by the index of its line and by x.
 *
 * z is read as a distance from the sensor, so a small z is high. It *rises* where it grows with the
 * sample index and *falls* where it shrinks: a rise leads away from the sensor.
 *
 * A *corner* is a sample where the profile changes direction in the y-z plane. Its *arms* are the
 * chords from the backward neighbour to the sample and from the sample to the forward neighbour,
 * both of about one given length. The angle of a chord is atan(dz / |dy|) in degrees, from -90 to
 * 90; its sign is that of dz, so a line traversed with falling y has the same angles. The *turn
 * angle* is the backward angle minus the forward angle:
 * - It is positive where the profile turns towards the sensor, as at the foot of a step or the
 *   bottom of a groove (z rises, then falls).
 * - It is negative where the profile turns away from the sensor, as at the upper edge of a step or
 *   on a ridge (z falls, then rises).
 */

#include <cstdint>
#include <vector>

#include <scanline/scan_records.h>

// Feature types. The growers of trees.h match types by these codes. Code 8 is not assigned: no
// extractor writes it, and where types are matched it matches nothing, not even itself. Which arm
// makes a corner a jump depends on the search; line_corners.h describes it.
constexpr int FEATURE_JUMP_RISE = 1;       ///< Sharp rise, or a corner typed as one by its arms.
constexpr int FEATURE_JUMP_FALL = 2;       ///< Sharp fall, or a corner typed as one by its arms.
constexpr int FEATURE_SLOPE_RISE = 3;      ///< Rise that is spread over several samples.
constexpr int FEATURE_SLOPE_FALL = 4;      ///< Fall that is spread over several samples.
constexpr int FEATURE_V = 5;               ///< A rise and the following fall, taken as one.
constexpr int FEATURE_SEG_START = 6;       ///< First sample of a data segment.
constexpr int FEATURE_SEG_END = 7;         ///< Last sample of a data segment.
constexpr int FEATURE_RIGHT_ANGLE_1 = 9;   ///< Right angle: flat, then falling steeply.
constexpr int FEATURE_RIGHT_ANGLE_2 = 10;  ///< Right angle: flat, then rising steeply.
constexpr int FEATURE_RIGHT_ANGLE_3 = 11;  ///< Right angle: falling steeply, then flat.
constexpr int FEATURE_RIGHT_ANGLE_4 = 12;  ///< Right angle: rising steeply, then flat.
constexpr int FEATURE_PEAK = 13;           ///< Smallest z around; greatest in dents, glove arcs.
constexpr int FEATURE_VALLEY = 14;         ///< Greatest z around.
constexpr int FEATURE_CORNER_OTHER = 15;   ///< A corner that is neither a jump rise nor a fall.

// States of a tree. A tree in any other state takes features like a growing one, but never closes.
constexpr int TREE_GROWING = 1;  ///< The tree takes features, and closes when it lags too far.
constexpr int TREE_CLOSED = 2;   ///< The tree takes no more features.

/** One feature on one line. */
struct SQO_basicFeature1D {
  int featureType;  ///< One of the `FEATURE_` codes.
  /// `x`: index of the line; `y`: index of the sample on it. The ending growers copy the caller's
  /// position instead; `ju_getLineCornerFeature_PSM` takes `y` from `nPointIdx` of the sample.
  STesk2DPoint jumpPos2D;
  /// Position: that of the sample at `jumpPos2D`. A dent of `qo_getFlatLineLocalPeaks_vector` may
  /// have the mean of two samples instead; across the lines, the ending growers swap x and y.
  STesk3DPoint jumpPos;
  double featureValue;  ///< Documented with each extractor; 0 where a feature has no value.
};

/** The features of one line. */
struct SQO_lineFeature {
  int lineIdx;  ///< Index of the line. Some extractors leave it to the caller.
  std::vector<SQO_basicFeature1D> features;  ///< The features, in the order found.
  /// Ends of the line's data segments: for each segment a `FEATURE_SEG_START`, then a
  /// `FEATURE_SEG_END`. `qo_LVFeatureGrowing` changes the type of endings that it uses.
  std::vector<SQO_basicFeature1D> endings;
};

/**
 * A chain of features across lines. A new tree has 0 in `xRange` and `yRange` and -1 in
 * `anchorNode`.
 */
struct SQO_featureTree {
  int treeState;  ///< `TREE_GROWING` or `TREE_CLOSED`.
  /// Type of the first node; new features are matched with it. `qo_LVFeatureGrowing` replaces it by
  /// the most frequent type.
  int treeType;
  int sLineIdx;  ///< Index of the line of the first node.
  int eLineIdx;  ///< Index of the line of the last node added.
  /// Sum of `featureValue` over the nodes. The first node counts only in trees started by
  /// `qo_lineFeaturesGrowing` and `qo_cornerFeaturesGrowing`.
  double treeValue;
  STeskRangeD xRange;  ///< Bounds in x; set by `qo_peakFeatureGrowing` and `qo_LVFeatureGrowing`.
  STeskRangeD yRange;  ///< Bounds in y; set by the same.
  std::vector<SQO_basicFeature1D> treeNodes;  ///< The nodes in the order in which they were added.
  int anchorNode;  ///< Node that the angle check measures from; -1 while there is none.
};

/**
 * Tuning of the growers: how features of neighbouring lines are linked, and how long a tree must
 * get. Lengths are in the unit of the samples. All limits are strict: a feature must differ by less
 * than a deviation, a tree must be longer than a minimum.
 *
 * | Field             | features         | gaps     | semi-circles  | segments      |
 * |-------------------|------------------|----------|---------------|---------------|
 * | `yDeviation_max`  | `jumpPos`        | centre   | `midPt`       | start and end |
 * | `zDeviation_max`  | `jumpPos`        | centre   | not read      | start and end |
 * | `maxSkipDistance` | `jumpPos`        | centre   | `midPt`       | mean of both  |
 * | `minLTypeTreeLen` | length, except V | length   | not read      | extent in x   |
 * | `minVTypeTreeLen` | length, only V   | not read | short or long | not read      |
 *
 * The length of a tree is the distance in the x-y plane from its first to its last node.
 *
 * `maxLineSkipNum` has two uses. Below 1 it makes attaching as strict as possible, yet it keeps
 * trees open for longer:
 *
 * | `maxLineSkipNum` | a tree takes a feature that is            | a tree closes             |
 * |------------------|-------------------------------------------|---------------------------|
 * | 1 or more        | fewer lines away than this, or close in x | more than this many later |
 * | 0 or below       | close in x, at any distance in lines      | later; see the growers    |
 */
struct SQO_treeGrowParam {
  double yDeviation_max;   ///< Limit of the distance in y from the last node to a new one.
  double zDeviation_max;   ///< Limit of the distance in z from the last node to a new one.
  int maxLineSkipNum;      ///< Distance in lines up to which x does not count; see above.
  double maxSkipDistance;  ///< Limit of the distance in x from that distance in lines on.
  double minLTypeTreeLen;  ///< Length above which a tree that closes is kept.
  double minVTypeTreeLen;  ///< The same for trees of type `FEATURE_V`, and for semi-circles.
};

/** Size of the expected object, in the unit of the samples. */
struct SQO_bagParam {
  double bagWidth;   ///< Expected width.
  double bagLength;  ///< Expected length; `qo_peakXYScan` does not read it.
};

/** One gap on one line. Its centre is the mean of its two edges. */
struct SQO_basicFeatureGap {
  int lineIdx;                 ///< Index of the line.
  std::uint64_t reserved1[3];  ///< Written 0, never read.
  STesk3DPosition gapStart;    ///< The edge with the lower index, which is in `nPointIdx`.
  STesk3DPosition gapEnd;      ///< The edge with the higher index.
  std::uint64_t reserved2[4];  ///< Written 0, never read.
};

/** A chain of gaps across lines. */
struct SQO_gapFeatureTree {
  int treeState;                               ///< `TREE_GROWING` or `TREE_CLOSED`.
  int treeType;                                ///< Always 1.
  int sLineIdx;                                ///< Index of the line of the first node.
  int eLineIdx;                                ///< Index of the line of the last node added.
  double treeValue;                            ///< Always 0.
  STeskRangeD xRange;                          ///< Not used; 0 in a new tree.
  STeskRangeD yRange;                          ///< Not used; 0 in a new tree.
  std::vector<SQO_basicFeatureGap> treeNodes;  ///< The nodes in the order of adding.
  int anchorNode;                              ///< Not used; -1 in a new tree.
};

/** A run of samples that is taken as one feature. The growers call it a segment. */
struct SJU_segFeature {
  int lineIdx;           ///< Index of the line.
  int startPtIdx;        ///< Index of the first sample on the line.
  int endPtIdx;          ///< Index of the last sample.
  int featureType;       ///< Written 0, never read.
  STesk3DPoint startPt;  ///< Position of the first sample.
  STesk3DPoint endPt;    ///< Position of the last sample.
  double segValue;       ///< Turn of a ring arc in degrees; width of a raised run in y.
};

/** A chain of segments across lines. */
struct SJU_segFeatureTree {
  int treeState;                          ///< `TREE_GROWING` or `TREE_CLOSED`.
  int sLineIdx;                           ///< Index of the line of the first node.
  int eLineIdx;                           ///< Index of the line of the last node added.
  double treeValue;                       ///< Sum over the nodes of the mean z of their two ends.
  std::vector<SJU_segFeature> treeNodes;  ///< The nodes in the order of adding.
};

/**
 * A run of samples with a middle sample, from `qo_getLineUpperSemiCircleFeature` or from the
 * surface segmentation of conditioning.h, which leaves `segState`, `width` and `height` at 0.
 */
struct SQO_featureSemiCircle {
  /// Steers `qo_getFeatureGrowingTrees_semiCircle`: 1 and 3 force a new tree, 2 and 4 end a tree at
  /// this feature, 5 marks a feature as used. Extractors write 0.
  int segState;
  int lineIdx;         ///< Index of the line.
  int startPtIdx;      ///< Index of the first sample on the line.
  int endPtIdx;        ///< Index of the last sample.
  int midPtIdx;        ///< Index of the middle sample.
  STesk3DPoint midPt;  ///< Position of the middle sample.
  double width;        ///< Distance of the two ends in y.
  double height;       ///< Smallest z of the run.
};

/** A chain of semi-circles across lines. */
struct SQO_semiCircleFeatureTree {
  int treeState;                                 ///< `TREE_GROWING` or `TREE_CLOSED`.
  int treeType;                                  ///< Always 0.
  int sLineIdx;                                  ///< Index of the line of the first node.
  int eLineIdx;                                  ///< Index of the line of the last node added.
  STesk3DRangeD treeRange;                       ///< For the caller's use; 0 in a new tree.
  double treeValue;                              ///< For the caller's use; 0 in a new tree.
  double treeValue2;                             ///< For the caller's use; 0 in a new tree.
  int treeTag;                                   ///< For the caller's use; 0 in a new tree.
  std::vector<SQO_featureSemiCircle> treeNodes;  ///< The nodes in the order of adding.
};
