#pragma once

/**
 * @file
 * Cleaning of scan lines and whole scans (smoothing, removal of outliers), and cutting of lines
 * into straight pieces.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/** What counts as an outlier on a line. */
struct SQO_outlierFilterParam {
  /// Two consecutive measured samples belong to one stretch if they differ by less than this.
  double continuityTh;
  /// A stretch of fewer measured samples than this is blanked; a count, kept as a double.
  double outlierTh;
};

/** How a line is cut into runs, and runs into nearly straight pieces. */
struct SQO_lineSegParam {
  double segGapTh_y;  ///< Two consecutive samples of a run differ in y by less than this.
  double segGapTh_z;  ///< The same for z.
  double maxDist;     ///< A sample's distance from the chord of its piece stays below this.
};

/**
 * Smooths the z of a line with a moving mean.
 *
 * Every measured sample (z above 0.0001) gets the mean z of the measured samples in a window
 * centred on it. At the ends of the line and beside holes the window holds fewer samples; nothing
 * is weighted or mirrored. Means are taken of the input alone, never of means. Holes, x, y and
 * `nPointIdx` are copied as they are.
 *
 * The cost is the number of samples times the width of the window; linear where the window spans
 * the line on both sides of every sample.
 *
 * @param input       The line; not changed.
 * @param smoothWin   Width of the window in samples. It reaches `smoothWin / 2` (integer division)
 *                    samples to each side, so that 4 acts like 5, and -1, 0 and 1 copy the line.
 *                    From -2 down the window is empty and every measured z becomes NaN.
 * @param lineDataOut Replaced by the smoothed line; empty if `input` is. Must not be `input`.
 * @throw std::bad_alloc  if memory runs out; @p lineDataOut is unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p lineDataOut is unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p filteredData and @p noisePts are unchanged.
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
 * @throw std::bad_alloc  if memory runs out; @p filteredData and @p noisePts are unchanged.
 */
SCANLINE_API void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                                        int dataSize,
                                                        SQO_outlierFilterParam outlierPara,
                                                        std::vector<STesk3DPosition>& filteredData,
                                                        std::vector<int>& noisePts);

/**
 * Removes the outliers of a whole scan in place: along every line, then across the lines.
 *
 * The first pass filters each line as ju_vectorDataRemoveOutlier_overwrite() does. The second takes
 * the samples of equal index of all lines as a line of its own and filters it in the same way, so
 * that what the first pass blanked is a hole in the second. The columns do not affect each other.
 *
 * @param scanLines   The scan, at least one line (not checked); z of the blanked samples becomes
 *                    0.0, nothing else is changed.
 * @param outlierPara Limits as in qo_lineDataRemoveOutlier(), used in both directions.
 * @param errCode     Receives 0, or -1000 if the lines differ in length: then all lines have been
 *                    filtered along, and nothing across.
 * @throw std::bad_alloc  if memory runs out; @p scanLines and @p errCode are unchanged.
 */
SCANLINE_API void ju_noiseFilter(std::vector<std::vector<STesk3DPosition>>& scanLines,
                                 SQO_outlierFilterParam outlierPara,
                                 int* errCode);

/**
 * Cuts a line into runs of connected samples, at steps in y or z.
 *
 * A measured sample (z above 0.0001; a NaN is none) continues the run of the measured sample before
 * it if it differs from that by less than `segGapTh_y` in y and less than `segGapTh_z` in z; a
 * difference of exactly a limit, or a NaN, cuts. Holes do not cut.
 *
 * @param lineData    The line; `nPointIdx` of every sample, hole or not, becomes 0.
 * @param lineSegPara Limits in the unit of the samples; `maxDist` is not used.
 * @param segs        The runs are appended in line order: `start` is the first sample, `len` the
 *                    number of indices up to the last measured sample, holes counted. `value` is a
 *                    label from 1 on in every run but the last; in the last run it is the index of
 *                    the last measured sample. Nothing is appended if no sample is measured.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p segs are unchanged.
 */
SCANLINE_API void ju_getLineDataIntervals(std::vector<STesk3DPosition>& lineData,
                                          SQO_lineSegParam lineSegPara,
                                          std::vector<SQO_RUN>& segs);

/**
 * Divides a run into nearly straight pieces in the y-z plane by farthest-point division (the
 * method of Ramer, Douglas and Peucker).
 *
 * A piece whose measured samples (z above 0.0001) all lie closer than `maxDist` to the chord of its
 * ends is straight. Any other is cut at the sample farthest from the chord, the lowest index on a
 * tie; that sample belongs to both parts. Pieces of fewer than 3 indices, and pieces whose first or
 * last z is below 0.0001, are dropped. A piece whose ends coincide has no chord and counts as
 * straight. Each cut measures its whole piece again: the cost is linear in the run's length for
 * each level of cuts, and quadratic if every cut takes off only an end, as on a zigzag.
 *
 * @param run      The run, by `start` and `len`; must lie on the line (not checked).
 * @param lineData The line; not changed.
 * @param maxDist  Limit of the distance, in the unit of the samples; must be above 0 (not checked).
 * @param segs     The pieces are appended in line order: `run` itself, with its `value`, if it is
 *                 straight as a whole; otherwise pieces with `value` 0.
 * @throw std::bad_alloc  if memory runs out; @p segs is unchanged.
 */
SCANLINE_API void split(SQO_RUN run,
                        std::vector<STesk3DPosition>& lineData,
                        double maxDist,
                        std::vector<SQO_RUN>& segs);

/**
 * Finds the straight pieces of a line that have a wanted length, and separates the flattest of each
 * run from the others.
 *
 * The line is cut by ju_getLineDataIntervals() and each run by split(). A piece is a candidate if
 * the distance in space between its ends is in `lenRange`, both limits included. Its middle is the
 * sample halfway between the ends or, if that is a hole, the nearest measured one strictly between
 * them, the higher index first; a piece without one is dropped. The flattest candidate is that of
 * the lowest |dz / dy| between its ends, the first one on a tie. Ends of equal y make the slope
 * infinite, or undefined if z is equal too; a first candidate of undefined slope stays the
 * flattest.
 *
 * The cost is that of split().
 *
 * @param lineData    The line; `nPointIdx` of every sample becomes 0.
 * @param lineIdx     Index of the line, copied into the results.
 * @param lenRange    Wanted length of a piece, in the unit of the samples.
 * @param lineSegPara How the line is cut; `maxDist` must be above 0 (not checked).
 * @param bestSegs    The flattest candidate of each run that has one is appended.
 * @param otherSegs   All other candidates are appended in line order. In both lists `segState`,
 *                    `width` and `height` carry nothing and are 0.
 * @throw std::bad_alloc  if memory runs out; @p lineData, @p bestSegs and @p otherSegs are
 *        unchanged.
 */
SCANLINE_API void ju_surfaceLineSegment(std::vector<STesk3DPosition>& lineData,
                                        int lineIdx,
                                        STeskRangeD lenRange,
                                        SQO_lineSegParam lineSegPara,
                                        std::vector<SQO_featureSemiCircle>& bestSegs,
                                        std::vector<SQO_featureSemiCircle>& otherSegs);
