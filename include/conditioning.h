#pragma once

/**
 * @file
 * Cleaning of single scan lines: smoothing and the removal of outliers.
 */

#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

/** What counts as an outlier on a line. */
struct SQO_outlierFilterParam {
  /// Two consecutive measured samples belong to one stretch if they differ by less than this.
  double continuityTh;
  /// A stretch of fewer measured samples than this is blanked; a count, kept as a double.
  double outlierTh;
};

/**
 * Smooths the z of a line with a moving mean.
 *
 * Every measured sample (z above 0.0001) gets the mean z of the measured samples in a window
 * centred on it. At the ends of the line and beside holes the window holds fewer samples; nothing
 * is weighted or mirrored. Means are taken of the input alone, never of means. Holes, x, y and
 * `nPointIdx` are copied as they are.
 *
 * @param input       The line; not changed.
 * @param smoothWin   Width of the window in samples. It reaches `smoothWin / 2` (integer division)
 *                    samples to each side, so that 4 acts like 5, and -1, 0 and 1 copy the line.
 *                    From -2 down the window is empty and every measured z becomes NaN.
 * @param lineDataOut Replaced by the smoothed line; empty if `input` is. Must not be `input`.
 */
SCANLINE_API void qo_lineDataSmoothing(std::vector<STesk3DPosition>& input,
                                       int smoothWin,
                                       std::vector<STesk3DPosition>& lineDataOut);

/**
 * Smooths the z of a line with a moving mean that never reaches across a step.
 *
 * The line is cut before every measured sample (z above 0.0001) that differs from the sample right
 * before it by more than one of the limits; each piece is smoothed by itself as
 * qo_lineDataSmoothing() would. The sample before may be a hole: a measured sample after a hole is
 * compared with the hole's z, usually 0, so that holes cut the line unless `seg_z_deltaTh` exceeds
 * its heights. Holes themselves never cut, nor does the first measured sample of the line.
 *
 * @param input         The line; not changed.
 * @param seg_y_deltaTh Largest difference in y within a piece; exactly this does not cut.
 * @param seg_z_deltaTh The same for z.
 * @param smoothWin     Width of the window as in qo_lineDataSmoothing().
 * @param lineDataOut   The smoothed line is appended, one sample for each of `input`. Must not be
 *                      `input`.
 */
SCANLINE_API void qo_lineSegSmoothing(std::vector<STesk3DPosition>& input,
                                      double seg_y_deltaTh,
                                      double seg_z_deltaTh,
                                      int smoothWin,
                                      std::vector<STesk3DPosition>& lineDataOut);

/**
 * Removes outliers from a copy of a line: stretches of continuous samples that are too short.
 *
 * Two consecutive measured samples are continuous if `outlierPara.continuityTh` is greater than
 * the absolute difference of their z; a difference of exactly the limit, or a NaN, separates them.
 * Holes (z at or below 0.0001; a NaN is no hole) neither separate nor count. A stretch is blanked
 * if `outlierPara.outlierTh` is greater than its number of measured samples: z becomes 0.0 from its
 * first to its last sample, holes between them included; x and y stay. The line is judged in one
 * pass: what follows a blanked stretch is not joined to what came before it.
 *
 * @param lineData     The line; not changed.
 * @param dataSize     Number of samples at `lineData`; 0 or less is an empty line.
 * @param outlierPara  Limits of continuity (in the unit of the samples) and of length (a count).
 * @param filteredData Replaced by the filtered line, sample by sample. Must not hold `lineData`.
 * @param noisePts     The indices of all blanked samples are appended in ascending order, those of
 *                     holes inside blanked stretches included.
 */
SCANLINE_API void qo_lineDataRemoveOutlier(STesk3DPosition* lineData,
                                           int dataSize,
                                           SQO_outlierFilterParam outlierPara,
                                           std::vector<STesk3DPosition>& filteredData,
                                           std::vector<int>& noisePts);

/**
 * Removes the outliers of a line in place, as qo_lineDataRemoveOutlier() does in a copy.
 *
 * @param lineData    The line; z of the blanked samples becomes 0.0, nothing else is changed.
 * @param dataSize    Number of samples at `lineData`; nothing happens for 0 or less.
 * @param outlierPara Limits as in qo_lineDataRemoveOutlier().
 */
SCANLINE_API void qo_lineDataRemoveOutlier_changeOriginData(STesk3DPosition* lineData,
                                                            int dataSize,
                                                            SQO_outlierFilterParam outlierPara);

/**
 * Removes the outliers of a line in place: qo_lineDataRemoveOutlier_changeOriginData() for a line
 * in a vector.
 *
 * @param lineData    The line; z of the blanked samples becomes 0.0, nothing else is changed.
 * @param outlierPara Limits as in qo_lineDataRemoveOutlier().
 */
SCANLINE_API void ju_vectorDataRemoveOutlier_overwrite(std::vector<STesk3DPosition>& lineData,
                                                       SQO_outlierFilterParam outlierPara);

/**
 * Removes outliers from a copy of a line, judging continuity by distance in space.
 *
 * Works as qo_lineDataRemoveOutlier() except that the Euclidean distance of two consecutive
 * measured samples takes the place of their difference in z.
 *
 * @param lineData     The line; not changed.
 * @param dataSize     Number of samples at `lineData`; 0 or less is an empty line.
 * @param outlierPara  Limits of continuity (a distance) and of length (a count).
 * @param filteredData Replaced by the filtered line, sample by sample. Must not hold `lineData`.
 * @param noisePts     The indices of all blanked samples are appended in ascending order, those of
 *                     holes inside blanked stretches included.
 */
SCANLINE_API void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                                        int dataSize,
                                                        SQO_outlierFilterParam outlierPara,
                                                        std::vector<STesk3DPosition>& filteredData,
                                                        std::vector<int>& noisePts);
