#pragma once

/**
 * @file
 * Corners, gaps and jumps of one scan line; line_features.h describes what all extractors share.
 *
 * The functions that measure slopes look at the neighbours within one `scale` of each sample, but
 * pass over long rows of them in blocks. So the cost grows at most like n log n with the number of
 * samples n, whatever `scale` is, and also if y is not a number, stands still or goes back and
 * forth. One kind of line remains where it is the number of samples times the neighbours within one
 * `scale`: samples that keep switching between places closer than `scale` to others, while the
 * box around these places in the y-z plane extends further.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/**
 * Tuning of the corner search. Lengths are in the unit of the samples, angles in degrees.
 */
struct SQO_cornerParam {
  double minEndingGap;    ///< Two runs of samples are joined if their facing ends are closer in y.
  double minEndingGap_z;  ///< Step in z that breaks a run of samples; limit in z for joining two.
  double scale;           ///< Distance in the y-z plane over which slopes are measured.
  double cornerTh;        ///< Smallest corner measure of a feature.
  double jumpCornerTh_1;  ///< Angle beyond which an arm is steep; in some searches, below it, flat.
  double jumpCornerTh_2;  ///< How far an arm may run against a jump; in some, beyond it, steep.
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
 * @param lineData      the samples of the line in order; only read
 * @param dataSize      number of samples; below 1 nothing is appended
 * @param lineIdx       index of the line, stored in the record and in all features
 * @param cornerPara    tuning
 * @param line_features `lineIdx` is set in any case. Corners are appended to `features` in line
 *                      order, with `featureValue` 0; to `endings` a `FEATURE_SEG_START` and a
 *                      `FEATURE_SEG_END` for each segment.
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged.
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
 * In a stretch of two samples or more the first becomes `FEATURE_JUMP_FALL` if its forward arm is
 * flat or missing, the last one `FEATURE_JUMP_RISE` if its backward arm is, at any height, unless
 * the sample is a corner already.
 *
 * The results stay behind in the line: 0x100000 and 0x200000 are set in `nPointIdx` of the first
 * and the last sample of each stretch, 0x10000 on corners with a flat backward arm, 0x20000 on
 * others with a flat forward arm.
 *
 * @param lineData      the samples of the line; `nPointIdx` must hold each sample's index, below
 *                      65536 (not checked), and so has to be renewed before a second call
 * @param dataSize      number of samples
 * @param lineIdx       index of the line, stored in the features
 * @param refZ          reference height of the corners
 * @param cornerPara    tuning; `jumpCornerTh_2` is not read
 * @param line_features features are appended in line order, with `featureValue` 0
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged.
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
 * `groundDist` may be as large as the line: the cost does not depend on it.
 *
 * @param lineData      the samples of the line; only read. `nPointIdx` must hold each sample's
 * index (not checked).
 * @param groundMask    one word per sample (not checked), 1 where it belongs to the ground
 * @param lineIdx       index of the line, stored in the features
 * @param groundDist    largest distance in x and y from a corner to the ground
 * @param cornerPara    tuning; `cornerTh` limits magnitudes, `jumpCornerTh_2` is not read
 * @param line_features corners are appended in line order; `featureValue` is the corner measure
 *                      with its sign
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged.
 */
SCANLINE_API void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                                         int lineIdx,
                                         SQO_cornerParam cornerPara,
                                         std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds gaps: pairs of neighbouring rims whose distance in x and y lies within a range.
 *
 * A rim is a strong bend, negative except at the line's end: a minimum of the corner measure of at
 * least `cornerTh` in magnitude with no greater one within one `scale` in y. Slopes stay inside
 * stretches, which steps in z of `minEndingGap_z` or more cut. So of two rims closer than `scale`
 * in y only the stronger one stays: `scale` must be smaller than the gaps looked for. A rim that
 * ends a gap starts no other.
 *
 * @param lineData   the samples of the line; `nPointIdx` of each becomes its index
 * @param lineIdx    index of the line, stored in the gaps
 * @param cornerPara tuning; only `minEndingGap_z`, `scale` and `cornerTh` are read
 * @param gapParam   limits of the width of a gap, both excluded
 * @param line_gaps  gaps are appended in line order
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_gaps are unchanged.
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
 * flatter than `jumpCornerTh_1` and the other steeper than `jumpCornerTh_2`. Two bends in a row,
 * flat before steep and then steep before flat, of opposite sign, make a step if they lie less than
 * `minEndingGap` apart in y and z changes by more than `minEndingGap_z` from one `scale` before the
 * first to one `scale` behind the second. The jump stands on the bend at the end of greater z.
 *
 * @param lineData   the samples of the line; only read
 * @param dataSize   number of samples
 * @param lineIdx    index of the line, stored in the features
 * @param cornerPara tuning
 * @param line_jumps `FEATURE_JUMP_FALL` and `FEATURE_JUMP_RISE` are appended in line order;
 *                   `featureValue` is z of the side of greater z, one `scale` from the step
 * @throw std::bad_alloc  if memory runs out; @p line_jumps is unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_jumps are valid but
 *                        incomplete.
 */
SCANLINE_API void qo_getLineDownJumps(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      double jumpZ,
                                      std::vector<SQO_basicFeature1D>& line_jumps);
