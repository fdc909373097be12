#pragma once

/**
 * @file
 * Gaps and jumps of one scan line. line_features.h describes what all extractors share,
 * corner_param.h the corner search.
 */

#include <vector>

#include <scanline/corner_param.h>
#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/**
 * Finds gaps: pairs of successive edges whose distance in the x-y plane lies within a range.
 *
 * Edges are the corners at which the profile turns away from the sensor: the minima of the turn
 * angle below 0 that pass the selection, the one at the end of the line whatever its sign. Runs are
 * cut by steps in z of `minEndingGap_z` or more, not by holes, and arms stay inside them. Each edge
 * is paired with the next one, except that the end of one gap is not the start of another. If a
 * pair is too narrow or too wide, its second edge is tried as a start.
 *
 * Of two edges within one `scale` in y only the one with the turn angle of greater magnitude is
 * kept (equal ones both), so `scale` must be smaller than the gaps to be found. Fewer than two
 * edges make no gap.
 *
 * @param[in,out] lineData  the samples of the line, empty or not; `nPointIdx` of each becomes its
 *                          index
 * @param lineIdx           index of the line
 * @param cornerPara        tuning; only `minEndingGap_z`, `scale` and `cornerTh` are read
 * @param gapParam          limits of the width in the x-y plane, both strict
 * @param[in,out] line_gaps gaps are appended; `nPointIdx` of both edges is their index on the line
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_gaps are unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * SQO_cornerParam param = {0.0, 30.0, 1.2, 50.0, 0.0, 0.0};
 * std::vector<SQO_basicFeatureGap> gaps;
 * qo_getLineGapFeature(line, lineIdx, param, {1.5, 8.0}, gaps);
 * for (const SQO_basicFeatureGap& gap : gaps) {
 *   std::printf("gap from y %f to %f\n", gap.gapStart.pt3D.y, gap.gapEnd.pt3D.y);
 * }
 * @endcode
 */
SCANLINE_API void qo_getLineGapFeature(std::vector<STesk3DPosition>& lineData,
                                       int lineIdx,
                                       SQO_cornerParam cornerPara,
                                       STeskRangeD gapParam,
                                       std::vector<SQO_basicFeatureGap>& line_gaps);

/**
 * Finds jumps, which may spread over several samples, by the two corners of a step.
 *
 * An arm is flat if its angle is below `jumpCornerTh_1` in magnitude, steep if it is above
 * `jumpCornerTh_2`. The candidates are the selected maxima and minima of the turn angle with one
 * flat and one steep arm, in line order; all others are dropped first. A minimum may have a turn
 * angle above 0. Two successive candidates make a jump if they are closer than `minEndingGap` in y
 * and z differs by more than `minEndingGap_z` between the backward neighbour of the first and the
 * forward neighbour of the second, that is from one `scale` before the step to one after it:
 *
 * | First corner             | Second corner            | Type and place         | Value    |
 * |--------------------------|--------------------------|------------------------|----------|
 * | maximum, flat then steep | minimum, steep then flat | `FEATURE_JUMP_FALL`, 1 | z before |
 * | minimum, flat then steep | maximum, steep then flat | `FEATURE_JUMP_RISE`, 2 | z after  |
 *
 * The number is that of the corner where the feature is placed. On a plain step the feature is thus
 * at the corner of greater z, and its value is the z of that side, one `scale` away from the step.
 *
 * @param lineData           the samples of the line; only read
 * @param dataSize           number of samples; below 1 nothing is found
 * @param lineIdx            index of the line
 * @param cornerPara         tuning
 * @param[in,out] line_jumps jumps are appended; `featureValue` is a z, see above
 * @throw std::bad_alloc  if memory runs out; @p line_jumps is unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * SQO_cornerParam param = {6.0, 3.0, 2.0, 30.0, 15.0, 40.0};
 * std::vector<SQO_basicFeature1D> jumps;
 * qo_getLineJumpFeature_cornerMethod(line.data(), static_cast<int>(line.size()), lineIdx, param,
 *                                    jumps);
 * @endcode
 */
SCANLINE_API void qo_getLineJumpFeature_cornerMethod(STesk3DPosition* lineData,
                                                     int dataSize,
                                                     int lineIdx,
                                                     SQO_cornerParam cornerPara,
                                                     std::vector<SQO_basicFeature1D>& line_jumps);

/**
 * Finds the places where z rises by more than a limit from one valid sample to the next, across
 * missing samples as well.
 *
 * Steps towards the sensor are ignored. A step from or to a NaN is no jump.
 *
 * @param[in,out] lineData   the samples of the line; `nPointIdx` of each becomes its index
 * @param dataSize           number of samples; below 2 nothing is done
 * @param lineIdx            index of the line
 * @param jumpZ              limit of the rise, strict
 * @param[in,out] line_jumps a `FEATURE_JUMP_RISE` is appended at the sample before each jump, with
 *                           `featureValue` 0
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_jumps are valid but incomplete
 *
 * Cost: linear in the number of samples.
 *
 * @code
 * std::vector<SQO_basicFeature1D> drops;
 * qo_getLineDownJumps(line.data(), static_cast<int>(line.size()), lineIdx, 10.0, drops);
 * @endcode
 */
SCANLINE_API void qo_getLineDownJumps(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      double jumpZ,
                                      std::vector<SQO_basicFeature1D>& line_jumps);
