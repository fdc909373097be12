#pragma once

/**
 * @file
 * Corners of one scan line near a reference height or near the ground. line_features.h describes
 * what all extractors share, corner_param.h the corner search.
 *
 * Both functions cut the line into runs at steps of `minEndingGap` or more in y, or
 * `minEndingGap_z` or more in z, from one sample to the next; holes do not cut. Arms stay inside a
 * run. A sample with one arm only takes 0 for the angle of the other and for its turn angle. An arm
 * is flat if its angle is below `jumpCornerTh_1` in magnitude; a missing arm counts as flat. The
 * type of a corner is the first row that holds, and a corner without a flat arm is dropped:
 *
 * | Type                | Condition         |
 * |---------------------|-------------------|
 * | `FEATURE_JUMP_RISE` | flat backward arm |
 * | `FEATURE_JUMP_FALL` | flat forward arm  |
 *
 * At the end of the line an extremum counts only if the last sample has neither arm.
 */

#include <vector>

#include <scanline/corner_param.h>
#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/**
 * Finds corners at a reference height at which the profile turns towards the sensor, and ends of
 * runs that continue flat.
 *
 * | Sample                         | Condition                          | Type                |
 * |--------------------------------|------------------------------------|---------------------|
 * | selected maximum of turn angle | flat arm, z within 10.0 of @p refZ | by its flat arm     |
 * | first sample of a run          | flat forward arm, or none          | `FEATURE_JUMP_FALL` |
 * | last sample of a run           | flat backward arm, or none         | `FEATURE_JUMP_RISE` |
 *
 * The limit of 10.0 is strict. An end of a run that is a corner with a flat arm is treated as a
 * corner only, even if it lies too far from @p refZ. The height of other ends does not matter. A
 * run of one sample has no features.
 *
 * @param[in,out] lineData      the samples of the line. In `nPointIdx` these bits are set: 0x100000
 *                              on the first and 0x200000 on the last sample of each run, 0x10000 on
 *                              corners with a flat backward arm, 0x20000 on other corners with a
 *                              flat forward arm, near @p refZ or not.
 * @param dataSize              number of samples; below 1 nothing is found
 * @param lineIdx               index of the line
 * @param refZ                  reference height of the corners
 * @param cornerPara            tuning; `jumpCornerTh_2` is not read
 * @param[in,out] line_features features are appended, with `featureValue` 0
 * @pre `nPointIdx` of each sample is its index, and there are at most 65536 samples. The function
 *      leaves marks there, so stamp the line again before a second call. This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged
 *
 * Cost and method: see corner_param.h.
 *
 * @code
 * int index = 0;
 * for (STesk3DPosition& sample : line) {
 *   sample.nPointIdx = index++;
 * }
 * SQO_cornerParam param = {5.0, 20.0, 3.0, 45.0, 15.0, 0.0};
 * std::vector<SQO_basicFeature1D> corners;
 * qo_getLineCornerFeature_BQ(line.data(), index, lineIdx, 120.0, param, corners);
 * @endcode
 */
SCANLINE_API void qo_getLineCornerFeature_BQ(STesk3DPosition* lineData,
                                             int dataSize,
                                             int lineIdx,
                                             double refZ,
                                             SQO_cornerParam cornerPara,
                                             std::vector<SQO_basicFeature1D>& line_features);

/**
 * Finds the corners close to the ground at which the profile turns away from the sensor.
 *
 * Corners are the minima of the turn angle below 0 that pass the selection and have a flat arm; a
 * minimum at the end of the line may have any sign. A corner is reported if a sample of the ground
 * lies near it: on either side the samples are visited in order up to the first one farther than
 * @p groundDist from the corner in the x-y plane, and one of them is marked as ground. The corner's
 * own mark does not count.
 *
 * @param lineData              the samples of the line, empty or not; only read
 * @param groundMask            1 for each sample of the ground, any other value for others
 * @param lineIdx               index of the line
 * @param groundDist            largest distance in the x-y plane, inclusive
 * @param cornerPara            tuning; `jumpCornerTh_2` is not read
 * @param[in,out] line_features corners are appended; `featureValue` is the turn angle with its sign
 * @pre `nPointIdx` of each sample is its index, and @p groundMask has one element for each sample.
 *      This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p line_features is unchanged
 *
 * Cost: that of the corner search; @p groundDist has no influence. Method: see corner_param.h.
 *
 * @code
 * std::vector<int> isGround(line.size(), 0);
 * int index = 0;
 * for (STesk3DPosition& sample : line) {
 *   isGround[index] = std::abs(sample.pt3D.z - 300.0) < 5.0 ? 1 : 0;
 *   sample.nPointIdx = index++;
 * }
 * SQO_cornerParam param = {50.0, 500.0, 3.0, 45.0, 15.0, 0.0};
 * std::vector<SQO_basicFeature1D> corners;
 * qo_getLineContourCornerFeature_groundMask_BQ(line, isGround, lineIdx, 20.0, param, corners);
 * @endcode
 */
SCANLINE_API void qo_getLineContourCornerFeature_groundMask_BQ(
    std::vector<STesk3DPosition>& lineData,
    std::vector<int> groundMask,
    int lineIdx,
    double groundDist,
    SQO_cornerParam cornerPara,
    std::vector<SQO_basicFeature1D>& line_features);
