#pragma once

/**
 * @file
 * L and V shapes and right angles of one scan line; line_features.h describes what all extractors
 * share. This header also includes arcs, tubes and raised runs.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/line_corners.h>
#include <scanline/line_peaks.h>
#include <scanline/line_runs.h>
#include <scanline/scan_records.h>

/**
 * What two runs of a line must be like to make a V. Lengths are in the unit of the samples.
 */
struct SQO_VFeatureParam {
  double apexDiff_z;  ///< Difference in z below which the tops of the two runs count as level.
  double maxWidth_y;  ///< Limit of the width of the V in y, strict.
};

/**
 * Size and straightness of the arms of one kind of right angle, in the unit of the samples.
 */
struct SQO_lineRightAngleParam {
  double flatArmLen;   ///< Length of the flat arm, as |dy| + |dz| from the corner.
  double steepArmLen;  ///< Length of the steep arm, measured in the same way.
  double armTol;       ///< Limit of the deviation of an arm, strict: |dz| if flat, |dy| if steep.
};

/**
 * Finds L and V shapes, made of one or two monotone runs of z, and the ends of the data segments.
 *
 * **Runs.** A run continues over flat places and missing samples until z turns. It is kept if z
 * changes by `minSlope_z` or more along it. It has a *near end*, of smaller z, and a *far end*, of
 * greater z. Its largest step, the earliest of equal ones, decides its L:
 * - If the step exceeds `jumpTh_z`, the L is a `FEATURE_JUMP_RISE` or `FEATURE_JUMP_FALL` at the
 *   sample of the step with the smaller z.
 * - Otherwise, if z changes by more than `jumpTh_z` along the run and by more than 2.0 per unit of
 *   y from the sample before the step to the one after it (missing or not; at an end of the line,
 *   from or to the step itself), it is a `FEATURE_SLOPE_RISE` or `FEATURE_SLOPE_FALL` at the sample
 *   of the step with the greater z.
 * - Otherwise there is none. Nor is there a slope if the far end of the run is within 2 samples of
 *   an end of a data segment.
 *
 * **V.** A kept rise and the next kept run make a V if that is a fall, each far end has a greater z
 * than the near end of the other run, and the V is narrow: `maxWidth_y` exceeds its width. A run is
 * part of one V at most. The width is measured between samples of the two runs as follows, each
 * time the sample nearest to a given z, the earliest of equal ones. Equal far ends count as a
 * greater rise:
 *
 * | Far ends differ in z by | Greater z | Width                                                   |
 * |-------------------------|-----------|---------------------------------------------------------|
 * | less than `apexDiff_z`  | rise      | distance in y of both runs at that z - `apexDiff_z` / 2 |
 * | less than `apexDiff_z`  | fall      | distance in y of both runs at that z - `apexDiff_z`     |
 * | `apexDiff_z` or more    | either    | difference of a y and a z, see below                    |
 *
 * In the last row it is the difference of two numbers: y of the run with the greater far end, at
 * the z of the other far end, and z of the far end of the fall. Existing limits are tuned to this.
 * The feature is a `FEATURE_V` at the far end of greater z, or at that of the rise if they are
 * equal.
 *
 * **V and L.** An L is *apart* if the end of the run's largest step that faces the V, its second
 * sample in a rise and its first in a fall, is more than 5.0 in y away from the V. The V is *level*
 * if its near ends differ by less than 40.0 in z.
 * - An L that is apart is reported, before or after the V.
 * - If all are apart, or there are none, the V is reported.
 * - If one L is close and the other one is apart, the V is reported if the close one is a slope,
 *   the close L if it is a jump.
 * - If the only L is close, the V is reported if it is level and the L is a slope, else the L.
 * - If both are close, the V is reported if it is level; else the L at the greater z (the fall's if
 *   equal), changed to `FEATURE_SLOPE_FALL` if the near end of the rise has the greater z, else to
 *   `FEATURE_SLOPE_RISE`.
 *
 * **Merging.** Finally, from the end of the list to its start, a jump is dropped if the next kept
 * feature is of the same type and less than 20.0 away in y. This applies to the whole list, so to
 * features of earlier calls too.
 *
 * **Segments.** A data segment ends where missing samples separate two valid ones that are more
 * than `maxGap_y` apart in y; a step in z never ends it. The last sample of the line starts no
 * segment.
 *
 * A step from or to a NaN, or between equal infinities, neither ends nor extends a run, which
 * continues at the next step that is a number. A NaN may be the end of a segment.
 *
 * @param lineData              the samples of the line; only read
 * @param dataSize              number of samples; below 2 nothing is found, but jumps are merged
 * @param lineIdx               index of the line
 * @param slopeParam            limits of runs and segments; `scale` is not read
 * @param vFeatureParam         limits of a V
 * @param[in,out] line_features L and V are appended to `features`, with `featureValue` 0, and to
 *                              `endings` a `FEATURE_SEG_START` and a `FEATURE_SEG_END` for each
 *                              segment; `lineIdx` is left to the caller
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged
 *
 * Cost: linear in the number of samples and of features in the list.
 *
 * @code
 * SQO_slopeParam runs = {0.0, 5.0, 3.0, 10.0};
 * SQO_VFeatureParam shape = {2.0, 30.0};
 * SQO_lineFeature found = {lineIdx, {}, {}};
 * qo_getLineLVFeature(line.data(), static_cast<int>(line.size()), lineIdx, runs, shape, &found);
 * @endcode
 */
SCANLINE_API void qo_getLineLVFeature(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      SQO_slopeParam slopeParam,
                                      SQO_VFeatureParam vFeatureParam,
                                      SQO_lineFeature* line_features);

/**
 * Finds right angles: places where an arm flat in z meets one that is steep, nearly constant in y.
 *
 * An arm of a given length reaches from a sample, in one direction, to the first measured sample
 * with |dy| + |dz| above that length. Its deviation, |dz| of a flat arm and |dy| of a steep one, is
 * the greatest of the measured samples in between. A sample is marked in two steps:
 *
 * 1. With the shortest of all eight arm lengths both arms must end on the line. Their deviations
 *    must be below the greatest `armTol`: flat and then steep is tried first, then steep and then
 *    flat. z at the end of the steep arm, compared with z of the sample, decides between the two
 *    kinds of each.
 * 2. With the lengths of its kind both deviations must be below the `armTol` of the kind. An arm
 *    that does not end on the line has deviation 0.
 *
 * | Kind                    | Backward arm | Forward arm | z at its end | Record          |
 * |-------------------------|--------------|-------------|--------------|-----------------|
 * | `FEATURE_RIGHT_ANGLE_2` | flat         | steep       | greater      | @p flatRisePara |
 * | `FEATURE_RIGHT_ANGLE_1` | flat         | steep       | not greater  | @p flatFallPara |
 * | `FEATURE_RIGHT_ANGLE_4` | steep        | flat        | smaller      | @p riseFlatPara |
 * | `FEATURE_RIGHT_ANGLE_3` | steep        | flat        | not smaller  | @p fallFlatPara |
 *
 * The `armTol` of `FEATURE_RIGHT_ANGLE_1` is that of @p flatRisePara.
 *
 * Without samples in between an arm has deviation -1.0, but a backward steep arm that ends on the
 * adjacent sample has 0. Successive samples marked with one kind are one feature: at the last of
 * them whose backward arm ends on the adjacent sample, or else in their middle, rounded down.
 *
 * The first and the last sample of a line are never marked, nor is a sample with a NaN in y or z.
 *
 * @param lineData              the samples of the line; only read
 * @param dataSize              number of samples; below 1 nothing is found
 * @param lineIdx               index of the line
 * @param flatRisePara          arms of `FEATURE_RIGHT_ANGLE_2`
 * @param riseFlatPara          arms of `FEATURE_RIGHT_ANGLE_4`
 * @param flatFallPara          arms of `FEATURE_RIGHT_ANGLE_1`; `armTol` counts in the first step
 *                              only
 * @param fallFlatPara          arms of `FEATURE_RIGHT_ANGLE_3`
 * @param[in,out] line_features corners are appended to `features`, with `featureValue` 0; `lineIdx`
 *                              and `endings` are unchanged
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged
 *
 * Cost: the number of samples times the samples along the longest arms; quadratic with arms of half
 * the line. Arms that exceed the extent of the line have no cost.
 *
 * @code
 * SQO_lineRightAngleParam arms = {8.0, 6.0, 0.5};
 * SQO_lineFeature found = {lineIdx, {}, {}};
 * const int count = static_cast<int>(line.size());
 * qo_getLineRigthAngleFeature(line.data(), count, lineIdx, arms, arms, arms, arms, &found);
 * @endcode
 */
SCANLINE_API void qo_getLineRigthAngleFeature(STesk3DPosition* lineData,
                                              int dataSize,
                                              int lineIdx,
                                              SQO_lineRightAngleParam flatRisePara,
                                              SQO_lineRightAngleParam riseFlatPara,
                                              SQO_lineRightAngleParam flatFallPara,
                                              SQO_lineRightAngleParam fallFlatPara,
                                              SQO_lineFeature* line_features);
