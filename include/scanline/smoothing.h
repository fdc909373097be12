#pragma once

/**
 * @file
 * Smoothing of single scan lines.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Smooths the z of a line with a moving mean.
 *
 * Each measured sample (`z > 0.0001`) gets the mean z of the measured samples in a window centred
 * on it. At the ends of the line and beside holes the window holds fewer samples; there are no
 * weights and no mirroring. Means are taken of @p input alone, never of other means. x, y,
 * `nPointIdx` and samples that are not measured are copied.
 *
 * @param input       the line; only read
 * @param smoothWin   width of the window in samples. It reaches `smoothWin / 2` samples to each
 *                    side (integer division):
 *                    - an even width acts like the next odd one: 4 like 5;
 *                    - -1, 0 and 1 copy the line;
 *                    - at -2 and below the window is empty, and every measured z becomes NaN.
 * @param lineDataOut replaced by the smoothed line; empty if @p input is
 * @pre @p lineDataOut is not @p input.
 * @throw std::bad_alloc  if memory runs out; @p lineDataOut is unchanged
 *
 * Cost: the number of samples times the width of the window; linear where the window is wider than
 * twice the line.
 *
 * @code
 * std::vector<STesk3DPosition> smooth;
 * qo_lineDataSmoothing(line, 5, smooth);  // two samples to each side
 * @endcode
 */
SCANLINE_API void qo_lineDataSmoothing(std::vector<STesk3DPosition>& input,
                                       int smoothWin,
                                       std::vector<STesk3DPosition>& lineDataOut);

/**
 * Smooths the z of a line with a moving mean that does not reach across steps.
 *
 * The line is cut at steps, and each piece is smoothed by itself as qo_lineDataSmoothing() does. A
 * measured sample (`z > 0.0001`) begins a new piece if it differs from the sample directly before
 * it by more than a limit, in y or in z. Two cases never cut: a sample that is not measured, and
 * the first measured sample of the line.
 *
 * The sample before may be a hole. The z of the measured sample is then compared with that of the
 * hole, usually 0.0, so holes cut the line unless `seg_z_deltaTh` exceeds the z on it.
 *
 * @param input         the line; only read
 * @param seg_y_deltaTh largest distance in y of neighbouring samples of a piece; a distance of
 *                      exactly this, or NaN, does not cut
 * @param seg_z_deltaTh the same for z
 * @param smoothWin     width of the window, as for qo_lineDataSmoothing()
 * @param lineDataOut   the smoothed line is appended, one sample for each of @p input
 * @pre @p lineDataOut is not @p input.
 * @throw std::bad_alloc  if memory runs out; @p lineDataOut is unchanged
 *
 * Cost: that of qo_lineDataSmoothing() for each piece.
 */
SCANLINE_API void qo_lineSegSmoothing(std::vector<STesk3DPosition>& input,
                                      double seg_y_deltaTh,
                                      double seg_z_deltaTh,
                                      int smoothWin,
                                      std::vector<STesk3DPosition>& lineDataOut);
