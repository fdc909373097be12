#pragma once

/**
 * @file
 * Height maps: images made from a scan, and the peaks and contours found in them.
 *
 * Images are `cv::Mat` of the element type that each function names. Rows run along y or the sample
 * index, columns along x or the line index. No function checks the type of an image, nor a pixel
 * position against the size of an image.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

/** Size of the blocks of a peak search. */
struct SQO_localPkParam {
  int blockWidth;   ///< Columns of the map, or lines of the scan; at least 2.
  int blockHeight;  ///< Rows of the map, or samples along a line; at least 2.
};

// ---------------------------------------------------------------------------------------------
// From a scan to a map
// ---------------------------------------------------------------------------------------------

/**
 * Draws the ground that a scan covers into a mask, and the way back from a pixel to its sample into
 * an index image.
 *
 * A position p has the pixel trunc(trunc(p - min) / scale + edge): it is cut to whole length units
 * first, so that a scale below 1 leaves stripes of empty pixels. Consecutive samples of a line are
 * linked by drawLine() if they are less than `maxLinkDist` apart in space, also across samples that
 * are left out. Then occupied pixels of a row that are more than 1 and less than
 * trunc(maxLinkDist / scale) columns apart are joined. An occupied pixel gets 1000000.0, so that
 * qo_distanceTrans() can follow at once. The image handling costs nothing worth mention beside
 * reading the samples and writing the images.
 *
 * @param scanLines    the scan; from each line as many samples are read as the first one has.
 *                     Without any line both images stay as they are.
 * @param xRange       its `min` is the x of column `edge`
 * @param yRange       its `min` is the y of row `edge`
 * @param scale        length units per pixel
 * @param zLimit       samples with a z above this are left out; 0.0 and below: none is
 * @param edge         margin before the first column and row, in pixels
 * @param maxLinkDist  length that a gap must stay below to be bridged
 * @param[in,out] projectionMask  CV_32F; zero where nothing is known. Pixels above 0.0001 count as
 *                     occupied in the joining of rows. All pixels of samples must lie inside it.
 * @param[in,out] backIndexing    CV_32SC2, as large; the pixel of a sample gets the index of its
 *                     line and its index on the line, and the last sample stays. Others, also
 *                     linked and joined ones, stay as they are.
 */
SCANLINE_API void pointClout2DProjection(std::vector<std::vector<STesk3DPosition>>& scanLines,
                                         STeskRangeD xRange,
                                         STeskRangeD yRange,
                                         double scale,
                                         double zLimit,
                                         int edge,
                                         double maxLinkDist,
                                         cv::Mat& projectionMask,
                                         cv::Mat& backIndexing);

/**
 * Finds the distance of each pixel to the nearest empty one by a chamfer scan of two passes.
 *
 * The masks of the passes are not the textbook halves (Rosenfeld and Pfaltz, Borgefors): each looks
 * back along the row and at the two rows beside it, so that a pixel takes its diagonal neighbours
 * behind it and the axial ones of one row. Each pixel becomes the smallest of itself and its
 * neighbours plus a step cost, in single precision; what is not a number stays, and spreads
 * nowhere. Images of less than 3 rows or 2 columns get no pass. At the end the border of the image
 * is set to 0; before, its pixels count as they are.
 *
 * @param src       CV_32F; 0 where empty, more than any distance where occupied, such as the mask
 *                  of pointClout2DProjection(). Not written.
 * @param[out] dst  the distances in pixels; a new image, whatever `dst` was: other headers on its
 *                  former data see no change. May be the image of `src`.
 * @param distType  cost of a diagonal step: 0 the square root of 2, 1 two (city block), otherwise
 *                  one (chessboard); an axial step costs one
 */
SCANLINE_API void qo_distanceTrans(cv::Mat src, cv::Mat& dst, int distType);

// ---------------------------------------------------------------------------------------------
// Peaks
// ---------------------------------------------------------------------------------------------

/**
 * Finds the local maxima of a map.
 *
 * The highest cell of a block, and among equals the first in column-major order, is a peak unless
 * it lies on the border of the block; where the map cuts the block off there is no border. Each
 * peak is reported once. Blocks overlap by half, and their strides are crossed: rows advance by
 * half a `blockWidth`, columns by half a `blockHeight`, as many times as halves of the block's own
 * height and width fit in. So with blocks that are not square there may be parts of the map that no
 * block covers.
 *
 * Meant for maps without negative values. A negative best gives way to any cell that follows it, a
 * not-a-number to none; blocks that hold one of these cost several times as much.
 *
 * @param distMap       CV_32F; not written
 * @param[in,out] peaks the peaks are appended, blocks in row-major order: `x` the column, `y` the
 *                      row, `valueD` the map's value
 * @param blockSize     size of the blocks; a side below 2 is not caught
 */
SCANLINE_API void qo_getLocalPeaks_distTransform(cv::Mat& distMap,
                                                 std::vector<SQO_2DValueI>& peaks,
                                                 SQO_localPkParam blockSize);

/**
 * Finds the samples of a scan with a locally lowest z.
 *
 * Blocks overlap by half, as in qo_getLocalPeaks_distTransform(), and what is said there of borders
 * holds; among equals the first in the order of the lines is taken, and no samples (z below 0.0001)
 * are passed over. Here it is the counts of the blocks that are crossed: as many steps of half a
 * `blockWidth` in lines as halves of `blockHeight` fit into the samples of a line, and as many
 * steps of half a `blockHeight` in samples as halves of `blockWidth` fit into the lines. So part of
 * a scan with more samples than lines, or the reverse, is not covered.
 *
 * @param scanLines     the scan; each line must have as many samples as the first one. Not written.
 * @param lineNum       number of lines
 * @param[in,out] peaks the peaks are appended, blocks line by line: `x` the line, `y` the sample,
 *                      `valueD` the z
 * @param blockSize     size of the blocks; a side below 2 is not caught
 */
SCANLINE_API void qo_getLocalPeaks(STesk3DLaserLine* scanLines,
                                   int lineNum,
                                   std::vector<SQO_2DValueI>& peaks,
                                   SQO_localPkParam blockSize);
