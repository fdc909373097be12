#pragma once

/**
 * @file
 * Projection of a scan to a mask of what it covers. heightmap.h describes the conventions for
 * images.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Draws what a scan covers into a mask, and the way back from each pixel to its sample into an
 * index image.
 *
 * 1. Missing samples (`0.0001 > z`) are skipped, and those with a z above a positive `zLimit`.
 * 2. The column of a sample is trunc(trunc(x - `xRange.min`) / `scale` + `edge`), its row the same
 *    of y. Positions are cut to whole units of length *before* they are scaled, so that a scale
 *    below 1 leaves stripes of empty pixels.
 * 3. The pixel gets 1000000.0 in the mask, and the index of the line and of the sample in the index
 *    image. Of several samples on a pixel the last one stays.
 * 4. Consecutive samples of a line, skipped ones left out, are linked by drawLine() if they are
 *    less than `maxLinkDist` apart in space.
 * 5. After all lines, gaps in the rows of the mask are filled: occupied pixels (above 0.0001) of a
 *    row are joined if they are more than 1 and less than trunc(`maxLinkDist` / `scale`) columns
 *    apart.
 *
 * Linked and filled pixels are set in the mask alone. The mask is ready for qo_distanceTrans().
 *
 * @param scanLines    the scan; only read. The first line sets how many samples are read of each
 *                     line. Without lines both images are unchanged.
 * @param xRange       its `min` is the x of column `edge`; `max` is not read
 * @param yRange       its `min` is the y of row `edge`; `max` is not read
 * @param scale        length units per pixel
 * @param zLimit       largest z, inclusive; 0.0 or below: no limit
 * @param edge         margin before the first column and row, in pixels
 * @param maxLinkDist  length below which a gap is bridged
 * @param[in,out] projectionMask  `CV_32F`, filled with 0.0 by the caller; what it holds counts in
 *                     step 5
 * @param[in,out] backIndexing    `CV_32SC2`, of the same size: channel 0 the line, channel 1 the
 *                     sample. Pixels without a sample are unchanged, so fill it with -1 first.
 * @pre No line is shorter than the first. @p scale is greater than 0. All pixels of step 2 lie in
 *      both images; x and y of the samples that are not skipped are finite.
 *
 * Cost: linear in the samples, in the pixels of the mask, and in the pixels of the links.
 *
 * Method: rasterisation with Bresenham lines.
 *
 * @code
 * const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
 * const double scale = 2.0;  // larger than both spacings of the scan
 * const int edge = 2;
 * const auto pixels = [&](const STeskRangeD& range) {
 *   return static_cast<int>((range.max - range.min) / scale) + 1 + 2 * edge;
 * };
 * cv::Mat mask(pixels(box.yRange), pixels(box.xRange), CV_32F, cv::Scalar(0.0));
 * cv::Mat backIndexing(mask.size(), CV_32SC2, cv::Scalar::all(-1));
 * pointClout2DProjection(
 *     scan, box.xRange, box.yRange, scale, 0.0, edge, 3.0 * scale, mask, backIndexing);
 * @endcode
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
