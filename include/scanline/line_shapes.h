#pragma once

/**
 * @file
 * L and V shapes, right angles, arcs and raised stretches of one scan line; line_features.h tells
 * what all extractors share.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/line_corners.h>
#include <scanline/line_peaks.h>
#include <scanline/scan_records.h>

namespace cv {
class Mat;
}

/**
 * What two runs of a line must be like to make a V. Lengths are in the unit of the samples.
 */
struct SQO_VFeatureParam {
  double apexDiff_z;  ///< Difference in z below which the tops of the two runs count as level.
  double maxWidth_y;  ///< Limit of the distance in y across the V, excluded.
};

/**
 * Size and straightness of the arms of one kind of right angle, in the unit of the samples.
 */
struct SQO_lineRightAngleParam {
  double flatArmLen;   ///< Length of the flat arm, as |dy| + |dz| from the corner.
  double steepArmLen;  ///< Length of the steep arm, measured in the same way.
  double armTol;       ///< Limit of an arm's stray, excluded: |dz| if flat, |dy| if steep.
};

/**
 * Finds L and V shapes, made of one or two monotone runs of z, and the ends of the data segments.
 *
 * A run goes on over flat places and holes until z turns, and counts if z changes by at least
 * `minSlope_z` along it. Its L is
 * - a jump, on the low-z side of the run's largest step, if that step exceeds `jumpTh_z`;
 * - else a slope, on the high-z side of that step, if the run exceeds `jumpTh_z` and the samples
 *   around the step, holes included, are steeper than 2.0; but none for a rise that ends, or a
 *   fall that starts, within 2 samples of an end of a segment.
 *
 * A rise and the run after it make a V, on the higher of their tops, if that run is a fall, both
 * tops lie above the other's foot and the V is narrow. If the tops differ by less than
 * `apexDiff_z`, its width is taken that far below the higher one if it is the fall's, half as far
 * if not. Else `maxWidth_y` limits |y of a sample - z of the fall's top|, a y against a z, and is
 * tuned to that.
 * Flanks more than 5.0 in y from the V stay beside it. Of the V and a single closer flank one
 * stays: the flank if it is a jump or, without any other flank, if the V's feet differ by 40.0 or
 * more in z. Of the V and two closer flanks the V stays, or with such feet the flank of greater z,
 * as a slope.
 *
 * In the end, of neighbouring jumps of one type closer than 20.0 in y the later one stays, in the
 * whole list and so among features from earlier calls too.
 *
 * A z of 0.0001 counts as measured, and so does a z that is not a number. A step from or to such a
 * z, or between two equal infinities, is not a number either: it neither ends nor extends a run,
 * which goes on at the next step that is one. A segment may begin or end at such a sample. The last
 * sample of a line begins no segment.
 *
 * The cost is linear in the number of samples and of features in the list.
 *
 * @param lineData      the samples of the line; only read
 * @param dataSize      number of samples; below 2 nothing is appended, but jumps are merged
 * @param lineIdx       index of the line, stored in the features
 * @param slopeParam    limits of runs; `scale` is not read
 * @param vFeatureParam limits of a V
 * @param line_features L and V are appended to `features` in line order, with `featureValue` 0; to
 *                      `endings` a `FEATURE_SEG_START` and a `FEATURE_SEG_END` for each segment.
 *                      `lineIdx` is left to the caller.
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged.
 */
SCANLINE_API void qo_getLineLVFeature(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      SQO_slopeParam slopeParam,
                                      SQO_VFeatureParam vFeatureParam,
                                      SQO_lineFeature* line_features);

/**
 * Finds right angles: places where a stretch flat in z meets one that is steep, nearly constant
 * in y.
 *
 * From a sample an arm reaches on either side up to the first sample with |dy| + |dz| beyond the
 * arm's length. The samples before that one tell how far the arm strays, and an arm without any is
 * perfectly straight. A corner has arms at least as long as the shortest of all records, one flat
 * and one steep within the largest `armTol`, and then keeps to the record of its kind:
 * - `FEATURE_RIGHT_ANGLE_2`: flat, then steep to greater z; `flatRisePara`
 * - `FEATURE_RIGHT_ANGLE_4`: steep from smaller z, then flat; `riseFlatPara`
 * - `FEATURE_RIGHT_ANGLE_1`: flat, then steep to smaller z; `flatFallPara`, but the `armTol` of
 *   `flatRisePara`
 * - `FEATURE_RIGHT_ANGLE_3`: steep from greater z, then flat; `fallFlatPara`
 *
 * Such an arm that the line is too short for strays by 0. Consecutive corners of one kind are one
 * feature, on the last of them whose backward arm ends on the very sample before, else on the
 * middle one.
 *
 * The cost is the number of samples times those of the longest arms. Arms that exceed the extent of
 * the line cost nothing.
 *
 * @param lineData      the samples of the line; only read
 * @param dataSize      number of samples; below 1 nothing is appended
 * @param lineIdx       index of the line, stored in the features
 * @param flatRisePara  arms of `FEATURE_RIGHT_ANGLE_2`
 * @param riseFlatPara  arms of `FEATURE_RIGHT_ANGLE_4`
 * @param flatFallPara  arms of `FEATURE_RIGHT_ANGLE_1`
 * @param fallFlatPara  arms of `FEATURE_RIGHT_ANGLE_3`
 * @param line_features corners are appended to `features` in line order, with `featureValue` 0.
 *                      `lineIdx` is left to the caller, `endings` as it was.
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged.
 */
SCANLINE_API void qo_getLineRigthAngleFeature(STesk3DPosition* lineData,
                                              int dataSize,
                                              int lineIdx,
                                              SQO_lineRightAngleParam flatRisePara,
                                              SQO_lineRightAngleParam riseFlatPara,
                                              SQO_lineRightAngleParam flatFallPara,
                                              SQO_lineRightAngleParam fallFlatPara,
                                              SQO_lineFeature* line_features);

/**
 * Finds arcs: runs of points that all bend away from the sensor.
 *
 * Stretches are cut by steps in z of `minEndingGap_z` or more; slopes and arcs stay inside them.
 * An arc counts if it turns by more than `cornerTh` degrees from its first backward to its last
 * forward angle, and if its chord in the y-z plane lies within `ringArcWidth`. One that fills its
 * stretch is extended to the stretch's ends, where there are no slopes.
 *
 * @param lineData      the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx       index of the line, stored in the arcs
 * @param cornerPara    tuning; only `minEndingGap_z`, `scale` and `cornerTh` are read
 * @param ringArcWidth  limits of the chord, both included
 * @param line_ringArcs arcs are appended in line order; `segValue` is the turn in degrees
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_ringArcs are unchanged.
 */
SCANLINE_API void ju_getRingArcFeature(std::vector<STesk3DPosition>& lineData,
                                       int lineIdx,
                                       SQO_cornerParam cornerPara,
                                       STeskRangeD ringArcWidth,
                                       std::vector<SJU_segFeature>& line_ringArcs);

/**
 * Finds the narrow stretches of continuous data that hold a local peak.
 *
 * The data of a line is continuous from hole to hole, and across a hole less than `maxGap_y` wide
 * in y. A stretch of it counts if it has a peak as found by `qo_getLineLocalPeaks` and its ends lie
 * closer in y than 4 * `widthUnit`. Any place where z turns from falling to growing will do: the
 * lowest one of a stretch is a peak at every scale. Two such stretches in a row become one,
 * whatever its width, if the samples after the first and before the second have the same label; a
 * third cannot join.
 * A z of 0.0001 ends the data, but counts among the samples inside a stretch.
 *
 * The last stretch of a line is not reported, unless it was joined to the one before it.
 *
 * @param lineData      the samples of the line. In continuous data of two samples or more
 *                      `nPointIdx` becomes the index inside it.
 * @param dataSize      number of samples
 * @param lineIdx       index of the line, stored in the stretches, and its column in `labelImage`
 * @param widthUnit     a quarter of the limit on the width
 * @param slopeParam    tuning; only `maxGap_y` has an effect
 * @param line_features stretches are appended in line order, with `segState` 0
 * @param labelImage    labels as 32-bit ints, one row per sample and one column per line; 0 and
 *                      below are no labels. A view into a larger image will do. Only read; type and
 *                      size are not checked.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged.
 */
SCANLINE_API void qo_getLineUpperSemiCircleFeature(
    STesk3DPosition* lineData,
    int dataSize,
    int lineIdx,
    double widthUnit,
    SQO_slopeParam slopeParam,
    std::vector<SQO_featureSemiCircle>& line_features,
    cv::Mat& labelImage);

/**
 * Tuning of the search for glove arcs.
 */
struct SQO_gloveArcParam {
  double scale;         ///< Distance in the y-z plane over which slopes are measured.
  double armLen;        ///< Length along the line of either flank of an arc.
  double minTurnAngle;  ///< Smallest turn of an arc, in degrees.
};

/**
 * Finds glove arcs: places of greatest z whose flanks turn strongly over a given length.
 *
 * A summit is a valid sample (z above 0.0001) with no greater z up to the nearest samples at least
 * `scale` away, one on either side, and none equal before it; on a plateau it is the first sample.
 * Its turn is the greatest forward angle, at least 0, on the `armLen` before it minus the smallest
 * on the `armLen` from it on. The sample at which that length is reached counts on the flank
 * before the summit and not on the one behind it. Forward angles are those of
 * `qo_getLineCornerFeature`, and 0 where it has no slopes.
 *
 * The cost of slopes and summits is that of the corners in line_corners.h. The flanks add the
 * number of summits times the samples on their flanks, so an `armLen` beyond the line costs the
 * number of summits times the number of samples.
 *
 * @param lineData       the samples of the line, only read; fewer than 10, valid or not, give
 *                       nothing
 * @param lineIdx        index of the line, stored in the features
 * @param gloveArcPara   tuning
 * @param line_gloveArcs a `FEATURE_PEAK` for each summit that turns by `minTurnAngle` or more is
 *                       appended in line order; `featureValue` is the turn
 * @throw std::bad_alloc  if memory runs out; @p line_gloveArcs is unchanged.
 */
SCANLINE_API void ju_getLineGloveArcs(std::vector<STesk3DPosition>& lineData,
                                      int lineIdx,
                                      SQO_gloveArcParam gloveArcPara,
                                      std::vector<SQO_basicFeature1D>& line_gloveArcs);

/**
 * Tuning of the search for raised stretches.
 */
struct SQO_raisedFeatureParam {
  double minJumpZ;  ///< Step in z that a flank exceeds.
  double minJumpK;  ///< Magnitude of dz / dy that a flank exceeds.
  double minWidth;  ///< Smallest width of a stretch in y.
  double maxWidth;  ///< Largest width of a stretch in y.
};

/**
 * Finds raised stretches: from a steep fall of z to the next steep rise.
 *
 * A flank is a step from one valid sample to the next, holes or not, that exceeds `minJumpZ` in z
 * and `minJumpK` in slope. A stretch begins at the sample after a fall, a later fall begins it
 * anew, and it ends at the last valid sample before a rise; without a rise it is dropped. The line
 * itself and each rise open a stretch at sample 0, valid or not. So a rise without a fall since
 * closes a stretch from there, unless it follows the first valid sample or another rise directly.
 *
 * @param lineData            the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx             index of the line, stored in the stretches
 * @param raisedFeaturePara   tuning; flanks exceed their limits strictly, widths include theirs
 * @param line_raisedFeatures stretches are appended in line order; `segValue` is the width in y
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_raisedFeatures are unchanged.
 */
SCANLINE_API void ju_getLineRaisedFeature(std::vector<STesk3DPosition>& lineData,
                                          int lineIdx,
                                          SQO_raisedFeatureParam raisedFeaturePara,
                                          std::vector<SJU_segFeature>& line_raisedFeatures);
