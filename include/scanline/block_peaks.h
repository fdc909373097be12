#pragma once

/**
 * @file
 * Local peaks, searched for in overlapping blocks: of a map the highest pixels, of a scan the
 * samples of lowest z. heightmap.h describes the conventions for images and positions.
 *
 * The best position of a block is a peak unless it lies on the border of the block: its first or
 * last row or column. Where the end of the data cuts a block off, it has no border there. Each peak
 * is reported once, in the order in which the blocks find it.
 *
 * Blocks overlap by half, so that the border of one lies inside another. The layout is crossed:
 * with W the `blockWidth` and H the `blockHeight`,
 *
 * | Function                         | Axis    | Extent | Block i starts at | Number of blocks  |
 * |----------------------------------|---------|--------|-------------------|-------------------|
 * | qo_getLocalPeaks_distTransform() | rows    | H      | i W / 2           | rows / (H / 2)    |
 * |                                  | columns | W      | i H / 2           | columns / (W / 2) |
 * | qo_getLocalPeaks()               | lines   | W      | i W / 2           | samples / (H / 2) |
 * |                                  | samples | H      | i H / 2           | lines / (W / 2)   |
 *
 * where halves and starts are rounded down and numbers of blocks are rounded up. It follows that
 * - a map is covered by square blocks, and in general by no others;
 * - a scan is covered by blocks whose sides are in proportion to the numbers of lines and of
 *   samples, and in general by no others;
 * - a side of 2 is all border and finds nothing except where a block is cut off.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/** Size of the blocks of a peak search. */
struct SQO_localPkParam {
  int blockWidth;   ///< Columns of the map, or lines of the scan; at least 2.
  int blockHeight;  ///< Rows of the map, or samples along a line; at least 2.
};

/**
 * Finds the local maxima of a map, such as the middles of objects in a distance map.
 *
 * Of equal pixels in a block the first in column-major order counts. A plateau is therefore
 * reported by one of its pixels, or not at all if that lies on the border of every block that holds
 * it.
 *
 * The map should not have negative values or NaN. A negative best pixel is replaced by any pixel
 * that follows it in its block, a NaN by none.
 *
 * @param distMap       `CV_32F`; only read
 * @param[in,out] peaks the peaks are appended: `x` the column, `y` the row, `valueD` the value of
 *                      the map, `value` and `tag` 0
 * @param blockSize     size of the blocks
 * @pre Both sides of @p blockSize are at least 2; below that, their halves divide by zero.
 * @throw std::bad_alloc  if memory runs out; @p peaks is unchanged
 *
 * Cost: linear in the pixels of all blocks, which is a few times the map; several times as much for
 * blocks with negative values or NaN.
 *
 * @code
 * std::vector<SQO_2DValueI> peaks;
 * qo_getLocalPeaks_distTransform(distances, peaks, {32, 32});
 * @endcode
 */
SCANLINE_API void qo_getLocalPeaks_distTransform(cv::Mat& distMap,
                                                 std::vector<SQO_2DValueI>& peaks,
                                                 SQO_localPkParam blockSize);

/**
 * Finds the samples of a scan with a locally lowest z.
 *
 * Missing samples (`0.0001 > z`) are skipped. Of equal samples in a block the first counts, lines
 * before samples. A NaN is taken only as the first valid sample of a block, and then nothing
 * replaces it.
 *
 * @param scanLines     the scan; only read
 * @param lineNum       number of lines; nothing is found below 1
 * @param[in,out] peaks the peaks are appended: `x` the line, `y` the sample, `valueD` its z,
 *                      `value` and `tag` 0
 * @param blockSize     size of the blocks
 * @pre Both sides of @p blockSize are at least 2; below that, their halves divide by zero. No line
 *      has fewer samples than the first.
 * @throw std::bad_alloc  if memory runs out; @p peaks is unchanged
 *
 * Cost: linear in the samples of all blocks, which is a few times the scan; more with NaN.
 *
 * @code
 * // 200 lines of 400 samples are covered by blocks of the same proportion.
 * std::vector<SQO_2DValueI> peaks;
 * qo_getLocalPeaks(lines.data(), static_cast<int>(lines.size()), peaks, {20, 40});
 * @endcode
 */
SCANLINE_API void qo_getLocalPeaks(STesk3DLaserLine* scanLines,
                                   int lineNum,
                                   std::vector<SQO_2DValueI>& peaks,
                                   SQO_localPkParam blockSize);
