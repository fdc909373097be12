#pragma once

/**
 * @file
 * Segmentation of scan lines: into runs of connected samples, and of runs into straight pieces.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/** Limits for cutting a line into runs, and runs into nearly straight pieces. All are strict. */
struct SQO_lineSegParam {
  double segGapTh_y;  ///< Two consecutive samples of a run differ in y by less than this.
  double segGapTh_z;  ///< The same for z.
  double maxDist;     ///< The samples of a piece are closer than this to its chord.
};

/**
 * Cuts a line into runs of connected samples, at steps in y or z.
 *
 * A measured sample (`z > 0.0001`) continues the run of the measured sample before it if the two
 * differ by less than `segGapTh_y` in y and by less than `segGapTh_z` in z. A difference of exactly
 * a limit, or NaN, cuts. Samples that are not measured neither cut nor begin or end a run.
 *
 * @param lineData    the line; `nPointIdx` of every sample becomes 0
 * @param lineSegPara the limits; `maxDist` is not read
 * @param segs        the runs are appended in line order; nothing if no sample is measured. `start`
 *                    is the index of the first measured sample, `len` the number of indices up to
 *                    the last one. `value` is a label, 1 for the first run of the call and rising
 *                    by 1, but in the last run the index of its last measured sample.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p segs are unchanged
 *
 * Cost: linear in the samples. Room for one run per sample is allocated.
 */
SCANLINE_API void ju_getLineDataIntervals(std::vector<STesk3DPosition>& lineData,
                                          SQO_lineSegParam lineSegPara,
                                          std::vector<SQO_RUN>& segs);

/**
 * Divides a run into nearly straight pieces in the y-z plane.
 *
 * The rules for a piece, beginning with the whole run:
 * 1. With fewer than 3 indices, or if a sample at its ends is missing (`0.0001 > z`), it is
 *    dropped.
 * 2. If all its measured samples (`z > 0.0001`) are closer than `maxDist` to the chord, which is
 *    the line through its ends, it is straight and appended. So is a piece whose ends coincide in y
 *    and z.
 * 3. Otherwise it is divided at the sample farthest from the chord, at the lowest index of equals.
 *    That sample belongs to both parts. If rounding makes an end the farthest sample, the piece
 *    counts as straight.
 *
 * @param run      the run, by `start` and `len`
 * @param lineData the line; only read
 * @param maxDist  limit of the distance from the chord, in the unit of the samples
 * @param segs     the pieces are appended in line order: @p run itself, with its `value`, if it is
 *                 straight as a whole; otherwise pieces with a `value` of 0
 * @pre @p run lies on the line. @p maxDist is greater than 0.
 * @throw std::bad_alloc  if memory runs out; @p segs is unchanged
 *
 * Cost: linear in the length of the run for each level of divisions; quadratic if each division
 * takes off only an end, as on a zigzag that widens.
 *
 * Method: Ramer (1972), Douglas and Peucker (1973).
 *
 * @code
 * SQO_lineSegParam limits = {2.0, 1.0, 0.5};
 * std::vector<SQO_RUN> runs;
 * ju_getLineDataIntervals(line, limits, runs);
 * std::vector<SQO_RUN> pieces;
 * for (const SQO_RUN& run : runs) {
 *   split(run, line, limits.maxDist, pieces);
 * }
 * @endcode
 */
SCANLINE_API void split(SQO_RUN run,
                        std::vector<STesk3DPosition>& lineData,
                        double maxDist,
                        std::vector<SQO_RUN>& segs);

/**
 * Finds the straight pieces of a line that have a given length, and separates the flattest of each
 * run from the others.
 *
 * 1. The line is cut by ju_getLineDataIntervals() and each run by split().
 * 2. A piece is a candidate if the distance in space of its ends is in `lenRange` (inclusive).
 * 3. Its middle is the sample halfway between its ends. If that is missing (`0.0001 > z`), the
 *    nearest measured sample strictly between the ends takes its place, of two equally near ones
 *    the one with the higher index. A piece without one is dropped.
 * 4. The flattest candidate of a run is that of the lowest |dz / dy| between its ends, the first
 *    one of equals. With ends of equal y this is infinite, or NaN if z is equal too; a first
 *    candidate with NaN remains the flattest.
 *
 * @param lineData    the line; `nPointIdx` of every sample becomes 0
 * @param lineIdx     index of the line, copied into the results
 * @param lenRange    length of a piece, in the unit of the samples
 * @param lineSegPara the limits for cutting
 * @param bestSegs    the flattest candidate of each run that has a candidate is appended, in line
 *                    order
 * @param otherSegs   all other candidates are appended, in line order. In both lists `segState`,
 *                    `width` and `height` have no meaning and are 0.
 * @pre `lineSegPara.maxDist` is greater than 0.
 * @throw std::bad_alloc  if memory runs out; @p lineData, @p bestSegs and @p otherSegs are
 *        unchanged
 *
 * Cost: that of split() for all runs.
 */
SCANLINE_API void ju_surfaceLineSegment(std::vector<STesk3DPosition>& lineData,
                                        int lineIdx,
                                        STeskRangeD lenRange,
                                        SQO_lineSegParam lineSegPara,
                                        std::vector<SQO_featureSemiCircle>& bestSegs,
                                        std::vector<SQO_featureSemiCircle>& otherSegs);
