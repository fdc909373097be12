#pragma once

/**
 * @file
 * Local peaks of one scan line; line_features.h tells what all extractors share.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

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
 * Finds the local peaks and valleys of a line: the turning points of z that stand out around them.
 *
 * A turning point is where z changes from falling to growing, or the reverse, from one valid sample
 * to the next, holes or not; on a plateau it is the last sample. A z of 0.0001 counts as valid. A
 * place where z turns upwards is a peak unless a smaller one lies within `scale` in y, a place
 * where it turns downwards a valley unless a greater one does; equal ones both stay. A line that
 * ends in a hole turns at its last valid sample; one that ends in a valid sample does not.
 *
 * The cost is linear in the number of samples, whatever `scale` is.
 *
 * @param lineData the samples of the line; `nPointIdx` of each becomes its index
 * @param dataSize number of samples; below 2 nothing at all is done
 * @param lineIdx  index of the line, stored in the features
 * @param scale    distance in y, included, within which a turning point must be the extreme one
 * @param valleys  a `FEATURE_VALLEY` for each valley is appended in line order, `featureValue` 0
 * @param peaks    a `FEATURE_PEAK` for each peak is appended in line order, `featureValue` 0
 * @throw std::bad_alloc  if memory runs out; @p lineData, @p valleys and @p peaks are unchanged.
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
 * it makes with the next step closer than `peakWidth_y`: a jump if one of the two is lower than
 * `jumpTh_z` or a rise comes before a fall, and for a rise of `jumpTh_z` or more also a falling
 * slope. So does a rising slope with the falling slope after it. A slope without partner, but for
 * a rising one at the end of the line, gives one on the greatest z within 1.5 * `peakWidth_y`
 * on its high side, if the mean z there exceeds that on its low side by 0.1 or more. That side
 * must not reach a jump or run off the line, nor may the low side reach a jump.
 *
 * The cost is linear in the number of samples, plus the samples of one window for each jump and
 * each lone slope: with jumps all along the line and a `slopeWin_y` that spans much of it,
 * quadratic.
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
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p peaks are unchanged.
 */
SCANLINE_API void qo_getFlatLineLocalPeaks_vector(std::vector<STesk3DPosition>& lineData,
                                                  int lineIdx,
                                                  double slopeWin_y,
                                                  double jumpTh_z,
                                                  double peakWidth_y,
                                                  std::vector<SQO_basicFeature1D>& peaks);
