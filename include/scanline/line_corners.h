#pragma once

/**
 * @file
 * Corners of one scan line. line_features.h describes what all extractors share, corner_param.h the
 * corner search. This header also includes the corners near a reference and the gaps and jumps.
 */

#include <vector>

#include <scanline/corner_param.h>
#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/line_jumps.h>
#include <scanline/line_reference_corners.h>
#include <scanline/scan_records.h>

/**
 * Finds the corners of a line at which the profile turns towards the sensor, and the ends of the
 * line's data segments.
 *
 * Corners are the maxima of the turn angle that pass the selection. With b the backward and f the
 * forward angle, J = `jumpCornerTh_1` and K = `jumpCornerTh_2`, the first row that holds is the
 * type:
 *
 * | Type                   | Condition        | Typical place                  |
 * |------------------------|------------------|--------------------------------|
 * | `FEATURE_JUMP_RISE`    | b > J and f > -K | foot of a step that leads down |
 * | `FEATURE_JUMP_FALL`    | f < -J and b < K | foot of a step that leads up   |
 * | `FEATURE_CORNER_OTHER` | otherwise        | bottom of a groove             |
 *
 * A data segment is a run of measured samples. Any other sample ends it, and so does a step in z
 * above `minEndingGap_z`. Two successive segments are joined if their facing ends are closer than
 * `minEndingGap` in y and closer than `minEndingGap_z` in z; so only holes are ever bridged.
 *
 * A line without measured samples has neither corners nor segments; a single measured sample is a
 * segment.
 *
 * @param lineData              the samples of the line in order; only read
 * @param dataSize              number of samples; below 1 nothing is found
 * @param lineIdx               index of the line
 * @param cornerPara            tuning
 * @param[in,out] line_features `lineIdx` is always set. Corners are appended to `features`, with
 *                              `featureValue` 0, and to `endings` a `FEATURE_SEG_START` and a
 *                              `FEATURE_SEG_END` for each segment.
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged
 *
 * Cost and method: see corner_param.h. The segments add a linear cost.
 *
 * @code
 * SQO_cornerParam param = {5.0, 2.0, 3.0, 45.0, 30.0, 15.0};
 * SQO_lineFeature found = {};
 * qo_getLineCornerFeature(line.data(), static_cast<int>(line.size()), lineIdx, param, &found);
 * for (const SQO_basicFeature1D& corner : found.features) {
 *   std::printf("corner at sample %d\n", corner.jumpPos2D.y);
 * }
 * @endcode
 */
SCANLINE_API void qo_getLineCornerFeature(STesk3DPosition* lineData,
                                          int dataSize,
                                          int lineIdx,
                                          SQO_cornerParam cornerPara,
                                          SQO_lineFeature* line_features);

/**
 * Finds the corners of the samples of one label, with the types of `qo_getLineCornerFeature`.
 *
 * Only measured samples whose `nPointIdx` is @p maskID take part. The search for a neighbour ends
 * without one at the first sample that is 4 * `scale` or farther away, so no arm spans a wide gap
 * between two pieces of a label.
 *
 * @param lineData              the samples of the line, with their labels in `nPointIdx`; only read
 * @param lineIdx               index of the line
 * @param maskID                label of the samples that take part; if no sample has it nothing is
 *                              found
 * @param cornerPara            tuning; `minEndingGap` and `minEndingGap_z` are not read
 * @param[in,out] line_features corners are appended; `featureValue` is the turn angle,
 *                              `jumpPos2D.y` the index on the line
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * // The label of each sample is in nPointIdx.
 * SQO_cornerParam param = {0.0, 0.0, 3.0, 45.0, 30.0, 15.0};
 * std::vector<SQO_basicFeature1D> corners;
 * qo_maskData_getLineCornerFeature(line, lineIdx, 7, param, corners);
 * @endcode
 */
SCANLINE_API void qo_maskData_getLineCornerFeature(std::vector<STesk3DPosition>& lineData,
                                                   int lineIdx,
                                                   int maskID,
                                                   SQO_cornerParam cornerPara,
                                                   std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds the corners and data segments of the part of a line that is not farther away than a limit.
 *
 * It differs from `qo_getLineCornerFeature` as follows:
 * - Samples with z above @p maxZ become missing samples in the caller's line, by writing 0.0 to z;
 *   @p maxZ itself stays.
 * - A data segment ends at a step in z of `minEndingGap_z` or more from one sample to the next, and
 *   never at a hole. Segments are never joined, because the step between two of them is too great.
 * - `nPointIdx` is read: it becomes `jumpPos2D.y` of the corners. Stamp the line with its indices
 *   first.
 * - A line whose only sample that is not a hole is sample 0 has no segment.
 *
 * @param[in,out] lineData      the samples of the line. z of those above @p maxZ becomes 0.0; in
 *                              `nPointIdx` of the first sample of each segment the bit 0x100000 is
 *                              set, in that of the last one 0x200000.
 * @param dataSize              number of samples; below 1 nothing is found
 * @param lineIdx               index of the line
 * @param maxZ                  greatest z that takes part
 * @param cornerPara            tuning; `minEndingGap` has no effect
 * @param[in,out] line_features `lineIdx` is always set. Corners are appended to `features` with
 *                              `featureValue` 0, and to `endings` a `FEATURE_SEG_START` and a
 *                              `FEATURE_SEG_END` for each segment, with the index on the line in
 *                              `jumpPos2D.y`.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * int index = 0;
 * for (STesk3DPosition& sample : line) {
 *   sample.nPointIdx = index++;
 * }
 * SQO_cornerParam param = {0.0, 2.0, 3.0, 45.0, 30.0, 15.0};
 * SQO_lineFeature found = {};
 * ju_getLineCornerFeature_PSM(line.data(), index, lineIdx, 250.0, param, &found);
 * @endcode
 */
SCANLINE_API void ju_getLineCornerFeature_PSM(STesk3DPosition* lineData,
                                              int dataSize,
                                              int lineIdx,
                                              double maxZ,
                                              SQO_cornerParam cornerPara,
                                              SQO_lineFeature* line_features);

/**
 * Finds the corners at which the profile turns towards the sensor, typed by flat and steep arms.
 *
 * Runs are cut by steps in z of `minEndingGap_z` or more, not by holes, and arms stay inside them.
 * Corners are the maxima of the turn angle above 0 that pass the selection; the one at the end of
 * the line may have any sign. An arm is flat if its angle is below `jumpCornerTh_1` in magnitude,
 * steep if it is above `jumpCornerTh_2`:
 *
 * | Type                   | Backward arm | Forward arm |
 * |------------------------|--------------|-------------|
 * | `FEATURE_JUMP_FALL`    | flat         | steep       |
 * | `FEATURE_JUMP_RISE`    | steep        | flat        |
 * | `FEATURE_CORNER_OTHER` | otherwise    |             |
 *
 * @param[in,out] lineData      the samples of the line, empty or not; `nPointIdx` of each becomes
 *                              its index
 * @param lineIdx               index of the line
 * @param cornerPara            tuning; `minEndingGap` is not read
 * @param[in,out] line_features corners are appended, with `featureValue` 0
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * SQO_cornerParam param = {0.0, 20.0, 3.0, 45.0, 15.0, 45.0};
 * std::vector<SQO_basicFeature1D> corners;
 * ju_getLineCorerFeature(line, lineIdx, param, corners);
 * @endcode
 */
SCANLINE_API void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                                         int lineIdx,
                                         SQO_cornerParam cornerPara,
                                         std::vector<SQO_basicFeature1D>& line_features);
