#pragma once

/**
 * @file
 * Extractors of features on one scan line.
 *
 * They see a line as a profile in the y-z plane; x only travels along in the features. Outputs are
 * appended to and never cleared.
 */

#include <vector>

#include "feature_records.h"
#include "scan_records.h"
#include "scanline_export.h"

namespace cv {
class Mat;
}

/**
 * Tuning of the corner search. Lengths are in the unit of the samples, angles in degrees.
 */
struct SQO_cornerParam {
  double minEndingGap;    ///< Two runs of samples are joined if their facing ends are closer in y.
  double minEndingGap_z;  ///< Step in z that breaks a run of samples; limit in z for joining two.
  double scale;           ///< Distance in the y-z plane over which slopes are measured.
  double cornerTh;        ///< Smallest corner measure of a feature.
  double jumpCornerTh_1;  ///< Angle beyond which an arm of a corner counts as steep.
  double jumpCornerTh_2;  ///< Angle up to which an arm may run against the direction of a jump.
};

/**
 * Finds the corners of a line, typed by their arms, and the ends of its data segments.
 *
 * At each valid sample (z above 0.0001) the chords to the nearest samples at least `scale` away,
 * one on either side, give a backward and a forward angle; holes do not stop the search for them.
 * The corner measure is the backward angle minus the forward angle, so a place where z turns from
 * growing to shrinking has a large one. A local maximum of it becomes a feature unless it is below
 * `cornerTh` or a greater maximum lies within 2 * `scale` in y; equal ones both stay. With a the
 * backward and f the forward angle its type is
 * - `FEATURE_JUMP_RISE` if a > `jumpCornerTh_1` and f > -`jumpCornerTh_2`,
 * - `FEATURE_JUMP_FALL` if f < -`jumpCornerTh_1` and a < `jumpCornerTh_2`,
 * - `FEATURE_CORNER_OTHER` otherwise.
 *
 * A data segment is a run of valid samples without a step in z above `minEndingGap_z`. Segments on
 * the two sides of a hole are joined if their facing ends differ by less than `minEndingGap` in y
 * and less than `minEndingGap_z` in z.
 *
 * Costs the number of samples times the neighbours within one `scale`.
 *
 * @param lineData      the samples of the line in order; only read
 * @param dataSize      number of samples; below 1 nothing is appended
 * @param lineIdx       index of the line, stored in the record and in all features
 * @param cornerPara    tuning
 * @param line_features `lineIdx` is set in any case. Corners are appended to `features` in line
 *                      order, with `featureValue` 0; to `endings` a `FEATURE_SEG_START` and a
 *                      `FEATURE_SEG_END` for each segment.
 */
SCANLINE_API void qo_getLineCornerFeature(STesk3DPosition* lineData,
                                          int dataSize,
                                          int lineIdx,
                                          SQO_cornerParam cornerPara,
                                          SQO_lineFeature* line_features);

/**
 * Finds the corners of the samples of one label, typed like those of `qo_getLineCornerFeature`.
 *
 * Only samples whose working word equals `maskID` take part. A neighbour 4 * `scale` or more away
 * belongs to another part of the label and does not count, so no slope runs across a wide gap.
 *
 * @param lineData      the samples of the line; only read. `nPointIdx` holds their labels.
 * @param lineIdx       index of the line, stored in the features
 * @param maskID        label of the samples to look at
 * @param cornerPara    tuning; `minEndingGap` and `minEndingGap_z` are not read
 * @param line_features corners are appended in line order; `featureValue` is the corner measure
 */
SCANLINE_API void qo_maskData_getLineCornerFeature(std::vector<STesk3DPosition>& lineData,
                                                   int lineIdx,
                                                   int maskID,
                                                   SQO_cornerParam cornerPara,
                                                   std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds corners with a flat arm near a reference height, and stretch ends that continue flat.
 *
 * A stretch is a set of measured samples whose steps from one to the next stay below
 * `minEndingGap` in y and `minEndingGap_z` in z; holes do not break it. Slopes stay inside a
 * stretch, and a point near its end has the slope of one side alone. An arm is flat if its angle
 * is smaller than `jumpCornerTh_1` in magnitude. A corner closer than 10.0 in z to `refZ` becomes
 * `FEATURE_JUMP_RISE` if its backward arm is flat, else `FEATURE_JUMP_FALL` if its forward arm is.
 * The first sample of a stretch becomes `FEATURE_JUMP_FALL` if it goes on flat, the last one
 * `FEATURE_JUMP_RISE` if it comes in flat, at any height, unless the sample is a corner already.
 *
 * The results stay behind in the line: 0x100000 and 0x200000 are set in `nPointIdx` of the first
 * and the last sample of each stretch, 0x10000 and 0x20000 on corners with a flat backward and
 * forward arm.
 *
 * @param lineData      the samples of the line; `nPointIdx` must hold each sample's index (not
 *                      checked) and so has to be renewed before a second call
 * @param dataSize      number of samples
 * @param lineIdx       index of the line, stored in the features
 * @param refZ          reference height of the corners
 * @param cornerPara    tuning; `jumpCornerTh_2` is not read
 * @param line_features features are appended in line order, with `featureValue` 0
 */
SCANLINE_API void qo_getLineCornerFeature_BQ(STesk3DPosition* lineData,
                                             int dataSize,
                                             int lineIdx,
                                             double refZ,
                                             SQO_cornerParam cornerPara,
                                             std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds the corners that open away from the sensor and have ground close by.
 *
 * Stretches, slopes and flat arms are those of `qo_getLineCornerFeature_BQ`. A corner is a strongly
 * negative minimum of the corner measure with a flat arm: `FEATURE_JUMP_RISE` with a flat backward
 * arm, else `FEATURE_JUMP_FALL` with a flat forward one. It stays if the measured samples around
 * it, looked at on each side as long as they lie within `groundDist` in x and y, hold a sample of
 * the ground.
 *
 * @param lineData      the samples of the line; only read. `nPointIdx` must hold each sample's
 * index (not checked).
 * @param groundMask    one word per sample, 1 where it belongs to the ground
 * @param lineIdx       index of the line, stored in the features
 * @param groundDist    largest distance in x and y from a corner to the ground
 * @param cornerPara    tuning; `cornerTh` limits magnitudes, `jumpCornerTh_2` is not read
 * @param line_features corners are appended in line order; `featureValue` is the corner measure
 *                      with its sign
 */
SCANLINE_API void qo_getLineContourCornerFeature_groundMask_BQ(
    std::vector<STesk3DPosition>& lineData,
    std::vector<int> groundMask,
    int lineIdx,
    double groundDist,
    SQO_cornerParam cornerPara,
    std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds what `qo_getLineCornerFeature` finds, below a height and with segments that span holes.
 *
 * Every sample with z above `maxZ` is blanked in the caller's line. Segments are cut by steps in z
 * of `minEndingGap_z` or more from one measured sample to the next, never by holes, and then
 * joined like those of `qo_getLineCornerFeature`. A line whose only measured sample is its first
 * one has no segment.
 *
 * @param lineData      the samples of the line. z of those above `maxZ` becomes 0.0; 0x100000 and
 *                      0x200000 are set in `nPointIdx` of the first and the last sample of each
 *                      segment before joining.
 * @param dataSize      number of samples
 * @param lineIdx       index of the line, stored in the record and in all features
 * @param maxZ          greatest z that stays
 * @param cornerPara    tuning as in `qo_getLineCornerFeature`
 * @param line_features `lineIdx` is set in any case; corners and endings are appended. A corner's
 *                      `jumpPos2D.y` is what `nPointIdx` of its sample held before the call.
 */
SCANLINE_API void ju_getLineCornerFeature_PSM(STesk3DPosition* lineData,
                                              int dataSize,
                                              int lineIdx,
                                              double maxZ,
                                              SQO_cornerParam cornerPara,
                                              SQO_lineFeature* line_features);

/**
 * Finds the corners inside the stretches of a line, typed by flat and steep arms.
 *
 * Stretches are cut by steps in z of `minEndingGap_z` or more from one measured sample to the next;
 * slopes never leave them. With `jumpCornerTh_1` as the flat and `jumpCornerTh_2` as the steep
 * limit of an arm's angle in magnitude, a corner is `FEATURE_JUMP_FALL` if its arms are flat and
 * then steep, `FEATURE_JUMP_RISE` if steep and then flat, `FEATURE_CORNER_OTHER` otherwise.
 *
 * @param lineData      the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx       index of the line, stored in the features
 * @param cornerPara    tuning; `minEndingGap` is not read
 * @param line_features corners are appended in line order, with `featureValue` 0
 */
SCANLINE_API void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                                         int lineIdx,
                                         SQO_cornerParam cornerPara,
                                         std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds gaps: pairs of neighbouring rims whose distance in x and y lies within a range.
 *
 * A rim is a strongly negative bend: a minimum of the corner measure of at least `cornerTh` in
 * magnitude with no greater one within one `scale` in y. Slopes stay inside stretches, which steps
 * in z of `minEndingGap_z` or more cut. A rim that ends a gap starts no other.
 *
 * @param lineData   the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx    index of the line, stored in the gaps
 * @param cornerPara tuning; only `minEndingGap_z`, `scale` and `cornerTh` are read
 * @param gapParam   limits of the width of a gap, both excluded
 * @param line_gaps  gaps are appended in line order
 */
SCANLINE_API void qo_getLineGapFeature(std::vector<STesk3DPosition>& lineData,
                                       int lineIdx,
                                       SQO_cornerParam cornerPara,
                                       STeskRangeD gapParam,
                                       std::vector<SQO_basicFeatureGap>& line_gaps);

/**
 * Finds jumps as pairs of bends at the foot and the top of a step, which may spread over samples.
 *
 * A bend is an extremum of the corner measure of at least `cornerTh` in magnitude with one arm
 * flatter than `jumpCornerTh_1` and the other steeper than `jumpCornerTh_2`. Two bends in a row
 * make a step if they lie less than `minEndingGap` apart in y and z changes by more than
 * `minEndingGap_z` from one `scale` before the first to one `scale` behind the second. The jump
 * stands on the bend at the end of greater z.
 *
 * @param lineData   the samples of the line; only read
 * @param dataSize   number of samples
 * @param lineIdx    index of the line, stored in the features
 * @param cornerPara tuning
 * @param line_jumps `FEATURE_JUMP_FALL` and `FEATURE_JUMP_RISE` are appended in line order;
 *                   `featureValue` is z of the side of greater z, one `scale` from the step
 */
SCANLINE_API void qo_getLineJumpFeature_cornerMethod(STesk3DPosition* lineData,
                                                     int dataSize,
                                                     int lineIdx,
                                                     SQO_cornerParam cornerPara,
                                                     std::vector<SQO_basicFeature1D>& line_jumps);

/**
 * Finds the places where z grows by more than a limit from one valid sample to the next.
 *
 * A z of 0.0001 counts as valid. Holes do not matter, however long. With fewer than two samples
 * nothing is done.
 *
 * @param lineData   the samples of the line; `nPointIdx` of each becomes its index
 * @param dataSize   number of samples
 * @param lineIdx    index of the line, stored in the features
 * @param jumpZ      limit of the growth, excluded
 * @param line_jumps a `FEATURE_JUMP_RISE` on the sample before each jump is appended, with
 *                   `featureValue` 0
 */
SCANLINE_API void qo_getLineDownJumps(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      double jumpZ,
                                      std::vector<SQO_basicFeature1D>& line_jumps);

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
 */
SCANLINE_API void ju_getRingArcFeature(std::vector<STesk3DPosition>& lineData,
                                       int lineIdx,
                                       SQO_cornerParam cornerPara,
                                       STeskRangeD ringArcWidth,
                                       std::vector<SJU_segFeature>& line_ringArcs);

// ---- L and V shapes, right angles ----

/**
 * What counts as a slope on a line. Lengths are in the unit of the samples.
 */
struct SQO_slopeParam {
  double scale;       ///< Window of a search for peaks; the L and V search does not read it.
  double minSlope_z;  ///< Smallest change of z along a run that is looked at.
  double jumpTh_z;    ///< What the change of z of a step or a run must exceed to count.
  double maxGap_y;    ///< Widest hole in y inside a data segment.
};

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
 * if not. Else the width is y of a sample against z of the fall's top; limits are tuned to that.
 * Flanks more than 5.0 in y from the V stay beside it. Of the V and closer flanks only some stay,
 * by whether they jump and whether the V's feet differ by 40.0 or more in z.
 *
 * In the end, of neighbouring jumps of one type closer than 20.0 in y the later one stays, in the
 * whole list and so among features from earlier calls too.
 *
 * A z of 0.0001 counts as measured. The last sample of a line begins no segment.
 *
 * @param lineData      the samples of the line; only read
 * @param dataSize      number of samples; below 2 nothing is appended, but jumps are merged
 * @param lineIdx       index of the line, stored in the features
 * @param slopeParam    limits of runs; `scale` is not read
 * @param vFeatureParam limits of a V
 * @param line_features L and V are appended to `features` in line order, with `featureValue` 0; to
 *                      `endings` a `FEATURE_SEG_START` and a `FEATURE_SEG_END` for each segment.
 *                      `lineIdx` is left to the caller.
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
 * Costs the number of samples times those of the longest arms, whatever the length of the line.
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
 */
SCANLINE_API void qo_getLineRigthAngleFeature(STesk3DPosition* lineData,
                                              int dataSize,
                                              int lineIdx,
                                              SQO_lineRightAngleParam flatRisePara,
                                              SQO_lineRightAngleParam riseFlatPara,
                                              SQO_lineRightAngleParam flatFallPara,
                                              SQO_lineRightAngleParam fallFlatPara,
                                              SQO_lineFeature* line_features);

// ---- Peaks, semi-circles, glove arcs, raised stretches ----

/**
 * Finds the local peaks and valleys of a line: the turning points of z that stand out around them.
 *
 * A turning point is where z changes from falling to growing, or the reverse, from one valid sample
 * to the next, holes or not; on a plateau it is the last sample. A z of 0.0001 counts as valid. A
 * place where z turns upwards is a peak unless a smaller one lies within `scale` in y, a place
 * where it turns downwards a valley unless a greater one does; equal ones both stay. A line that
 * ends in a hole turns at its last valid sample; one that ends in a valid sample does not.
 *
 * Costs the number of samples plus, for each turning point, the turning points within `scale` up
 * to the first that beats it.
 *
 * @param lineData the samples of the line; `nPointIdx` of each becomes its index
 * @param dataSize number of samples; below 2 nothing at all is done
 * @param lineIdx  index of the line, stored in the features
 * @param scale    distance in y, included, within which a turning point must be the extreme one
 * @param valleys  a `FEATURE_VALLEY` for each valley is appended in line order, `featureValue` 0
 * @param peaks    a `FEATURE_PEAK` for each peak is appended in line order, `featureValue` 0
 */
SCANLINE_API void qo_getLineLocalPeaks(STesk3DPosition* lineData,
                                       int dataSize,
                                       int lineIdx,
                                       double scale,
                                       std::vector<SQO_basicFeature1D>& valleys,
                                       std::vector<SQO_basicFeature1D>& peaks);

/**
 * Finds the dents of a nearly flat line, where single turning points would be noise.
 *
 * A jump is a step between neighbouring valid samples (z above 0.0001) by more than `jumpTh_z` in z
 * or half of `peakWidth_y` in y; elsewhere a slope is measured from each sample over `slopeWin_y`
 * and counts if steeper than 0.5 with a change of z above 0.2. Of each monotone stretch the
 * steepest step stays. A jump gives a feature half way along it, or half way across the pair that
 * it makes with the next step closer than `peakWidth_y`; so does a rising slope with the falling
 * slope behind it. A slope without partner gives one on the greatest z within 1.5 * `peakWidth_y`
 * on its high side, if the mean z there exceeds that on its low side by 0.1 or more. That side
 * must not reach a jump or run off the line, nor may the low side reach a jump.
 *
 * Costs the number of samples, plus the samples of one window for each jump and each lone slope.
 *
 * @param lineData    the samples of the line. `nPointIdx` becomes 16 on the outer samples of jumps
 *                    and 13 on those of features, and is left alone elsewhere; a 16 found there
 *                    counts as a jump. A hole that a feature falls on takes the feature's position.
 *                    Fewer than 2 samples give nothing.
 * @param lineIdx     index of the line, stored in the features
 * @param slopeWin_y  distance in y over which slopes are measured
 * @param jumpTh_z    step in z that makes a jump, excluded
 * @param peakWidth_y expected width of a dent in y
 * @param peaks       features of type `FEATURE_PEAK` are appended in line order, `featureValue` 0
 */
SCANLINE_API void qo_getFlatLineLocalPeaks_vector(std::vector<STesk3DPosition>& lineData,
                                                  int lineIdx,
                                                  double slopeWin_y,
                                                  double jumpTh_z,
                                                  double peakWidth_y,
                                                  std::vector<SQO_basicFeature1D>& peaks);

/**
 * Finds the narrow stretches of continuous data that hold a local peak.
 *
 * The data of a line is continuous from hole to hole, and across a hole less than `maxGap_y` wide
 * in y. A stretch of it counts if it has a peak as found by `qo_getLineLocalPeaks` and its ends lie
 * closer in y than 4 * `widthUnit`. Two such stretches in a row become one, whatever its width, if
 * the samples behind the first and before the second have the same label; a third cannot join.
 * A z of 0.0001 ends the data, but counts among the samples inside a stretch.
 *
 * The last stretch of a line is not reported, unless it was joined to the one before it.
 *
 * @param lineData      the samples of the line. In continuous data of two samples or more
 *                      `nPointIdx` becomes the index inside it.
 * @param dataSize      number of samples
 * @param lineIdx       index of the line, stored in the stretches, and its column in `labelImage`
 * @param widthUnit     a quarter of the limit on the width
 * @param slopeParam    tuning; only `scale` and `maxGap_y` are read
 * @param line_features stretches are appended in line order, with `segState` 0
 * @param labelImage    labels as 32-bit ints, one row per sample and one column per line; 0 and
 *                      below are no labels. Only read; type and size are not checked.
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
 * Costs the number of samples times the neighbours within one `scale`, plus for each summit the
 * samples on its flanks.
 *
 * @param lineData       the samples of the line, only read; fewer than 10, valid or not, give
 *                       nothing
 * @param lineIdx        index of the line, stored in the features
 * @param gloveArcPara   tuning
 * @param line_gloveArcs a `FEATURE_PEAK` for each summit that turns by `minTurnAngle` or more is
 *                       appended in line order; `featureValue` is the turn
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
 * and `minJumpK` in slope. A stretch begins at the sample behind a fall, a later fall begins it
 * anew, and it ends at the last valid sample before a rise; without a rise it is dropped. The line
 * itself and each rise open a stretch at sample 0, valid or not. So a rise without a fall since
 * closes a stretch from there, unless it follows the first valid sample or another rise directly.
 *
 * @param lineData            the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx             index of the line, stored in the stretches
 * @param raisedFeaturePara   tuning; flanks exceed their limits strictly, widths include theirs
 * @param line_raisedFeatures stretches are appended in line order; `segValue` is the width in y
 */
SCANLINE_API void ju_getLineRaisedFeature(std::vector<STesk3DPosition>& lineData,
                                          int lineIdx,
                                          SQO_raisedFeatureParam raisedFeaturePara,
                                          std::vector<SJU_segFeature>& line_raisedFeatures);
