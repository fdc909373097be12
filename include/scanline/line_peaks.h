#pragma once

/**
 * @file
 * Local peaks of one scan line; line_features.h describes what all extractors share.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/**
 * Tuning of the searches for L and V shapes (`qo_getLineLVFeature`) and for tubes
 * (`qo_getLineUpperSemiCircleFeature`). Lengths are in the unit of the samples.
 *
 * | Field        | L and V shapes                       | Tubes                                 |
 * |--------------|--------------------------------------|---------------------------------------|
 * | `scale`      | not read                             | no effect                             |
 * | `minSlope_z` | smallest change of z along a run     | not read                              |
 * | `jumpTh_z`   | change of z of a step or run, strict | not read                              |
 * | `maxGap_y`   | a wider hole starts a new segment    | a hole less wide than this is bridged |
 */
struct SQO_slopeParam {
  double scale;       ///< Without effect.
  double minSlope_z;  ///< Smallest change of z along a run that is kept.
  double jumpTh_z;    ///< What the change of z of a step or a run must exceed.
  double maxGap_y;    ///< Limit of the width in y of a hole inside a data segment.
};

/**
 * Finds the local peaks and valleys of a line: the turning points of z that are extreme among those
 * around them.
 *
 * Turning points are found from one valid sample to the next:
 * - At a minimum z turns from falling to rising, at a maximum from rising to falling. On a plateau
 *   the turning point is the last sample.
 * - If the last sample of the line is missing, the last valid one is a turning point too: a minimum
 *   if z was falling, a maximum if it was rising. A line that ends with a valid sample does not
 *   turn there, and no line turns at its first valid sample.
 *
 * A minimum is a peak unless a smaller one, a maximum a valley unless a greater one lies within
 * @p scale in y. The others are compared in order, in both directions, up to the first one farther
 * away. Equal turning points both stay.
 *
 * A NaN in z is valid, but a step from or to it neither rises nor falls; it is reported only as the
 * last valid sample of a line that ends with a missing one. Without turning points, nothing is
 * found.
 *
 * @param[in,out] lineData the samples of the line; `nPointIdx` of each becomes its index
 * @param dataSize         number of samples; below 2 nothing at all is done
 * @param lineIdx          index of the line
 * @param scale            distance in y within which a turning point must be the extreme one,
 *                         inclusive
 * @param[in,out] valleys  a `FEATURE_VALLEY` is appended for each valley, with `featureValue` 0
 * @param[in,out] peaks    a `FEATURE_PEAK` is appended for each peak, with `featureValue` 0
 * @pre @p valleys and @p peaks are different lists
 * @throw std::bad_alloc  if memory runs out; @p lineData, @p valleys and @p peaks are unchanged
 *
 * Cost: linear in the number of samples, whatever @p scale is.
 *
 * Method: turning points with non-maximum suppression.
 *
 * @code
 * std::vector<SQO_basicFeature1D> valleys;
 * std::vector<SQO_basicFeature1D> peaks;
 * qo_getLineLocalPeaks(line.data(), static_cast<int>(line.size()), lineIdx, 10.0, valleys, peaks);
 * @endcode
 */
SCANLINE_API void qo_getLineLocalPeaks(STesk3DPosition* lineData,
                                       int dataSize,
                                       int lineIdx,
                                       double scale,
                                       std::vector<SQO_basicFeature1D>& valleys,
                                       std::vector<SQO_basicFeature1D>& peaks);

/**
 * Finds the dents of a nearly flat line, where single turning points would be noise: narrow places
 * of greater z, from the middle between two opposite flanks or beside a single one.
 *
 * 1. *Steps.* One step starts at each measured sample. It is a *jump* to the next measured sample
 *    if that is more than half of @p peakWidth_y away in y, or more than @p jumpTh_z in z; without
 *    a rise of z it counts as falling. Otherwise it leads to a sample at least @p slopeWin_y away
 *    in y, and is a *slope* if it is steeper than 0.5 and z changes by more than 0.2. That sample
 *    is the first one from the previous search result on or, after a jump, from the end of the jump
 *    on. Without such a sample there is no step.
 * 2. *Merging.* The rising slopes that directly follow a rising jump and the falling slopes that
 *    directly precede a falling jump are dropped. Then the steepest step is kept of each unbroken
 *    row of jumps and slopes in one direction. A jump at the start of the line, after a sample
 *    without a step or after another jump kept by itself is kept by itself.
 * 3. *Jumps.* A jump makes a feature half way along it, or half way across the pair that it makes
 *    with the next kept step. The two must be closer than @p peakWidth_y in y, from end to start:
 *
 *    | Jump    | Its change of z    | Next kept step                                     |
 *    |---------|--------------------|----------------------------------------------------|
 *    | any     | below `jumpTh_z`   | any jump                                           |
 *    | falling | `jumpTh_z` or more | a jump below `jumpTh_z`                            |
 *    | rising  | `jumpTh_z` or more | a falling jump or slope, or a rising jump below it |
 *
 * 4. *Slopes.* Those that no jump has taken, in order:
 *
 *    | Slope   | Next kept step                          | Feature                  |
 *    |---------|-----------------------------------------|--------------------------|
 *    | rising  | none: the slope is the last step        | none                     |
 *    | rising  | falling slope closer than `peakWidth_y` | half way across the pair |
 *    | rising  | any other                               | beside the slope         |
 *    | falling | any or none                             | beside the slope         |
 *
 *    Beside a slope, both sides are viewed from its ends, up to the first measured sample farther
 *    than 1.5 * @p peakWidth_y in y. The feature is at the greatest z of the side of greater z if
 *    the mean z of that side exceeds the mean of the other by 0.1 or more. There is none if the
 *    view of the side of greater z meets a jump or the end of the line, or if the other view meets
 *    a jump; if the other view meets the end of the line, the z of the first sample of the slope is
 *    taken for its mean. Sample 0 counts as beyond the end.
 *
 * A feature half way has the mean of the two indices, rounded down, and the mean of the two
 * positions, so it may lie off the profile.
 *
 * @param[in,out] lineData the samples of the line; fewer than 2 measured ones give nothing.
 *                         `nPointIdx` becomes 16 on the outer samples of jumps and pairs with a
 *                         jump, then 13 on those of features, and is unchanged elsewhere. A missing
 *                         sample at the index of a feature takes the position of the feature.
 * @param lineIdx          index of the line
 * @param slopeWin_y       distance in y over which slopes are measured
 * @param jumpTh_z         change of z that makes a jump, strict
 * @param peakWidth_y      expected width of a dent in y
 * @param[in,out] peaks    a `FEATURE_PEAK` is appended for each dent, with `featureValue` 0
 * @pre No `nPointIdx` is 16, since that marks a jump for the views. A line that is stamped with its
 *      indices has a 16 at sample 16: clear the stamps first.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p peaks are unchanged
 *
 * Cost: linear in the number of samples, plus the samples of a view for each slope by itself and
 * those of a slope window after each jump. Quadratic if there are jumps or such slopes all along
 * the line and the windows span much of it.
 *
 * @code
 * for (STesk3DPosition& sample : line) {
 *   sample.nPointIdx = 0;
 * }
 * std::vector<SQO_basicFeature1D> dents;
 * qo_getFlatLineLocalPeaks_vector(line, lineIdx, 1.0, 2.0, 8.0, dents);
 * @endcode
 */
SCANLINE_API void qo_getFlatLineLocalPeaks_vector(std::vector<STesk3DPosition>& lineData,
                                                  int lineIdx,
                                                  double slopeWin_y,
                                                  double jumpTh_z,
                                                  double peakWidth_y,
                                                  std::vector<SQO_basicFeature1D>& peaks);
