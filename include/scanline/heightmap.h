#pragma once

/**
 * @file
 * Height maps: images made from a scan, the peaks found in them, and the contours around a peak.
 *
 * | Header              | Step                                                          |
 * |---------------------|---------------------------------------------------------------|
 * | projection.h        | from a scan to a mask, and from each pixel back to its sample |
 * | distance_map.h      | from a mask to distances from its empty pixels                |
 * | block_peaks.h       | peaks of a distance map, and lowest samples of a scan         |
 * | watershed.h         | division of a map among its peaks; not included here          |
 * | contour_scan.h      | contour points around a peak, by walks over the scan          |
 * | contour_selection.h | reduction of contour points to those of the object's outline  |
 *
 * Images are `cv::Mat` of the element type that is documented for each. Rows run along y or the
 * sample index, columns along x or the line index. No function checks the type of an image, nor a
 * position against its size.
 *
 * **Positions.** The first index of an `SQO_2DValueI` is not the same everywhere:
 *
 * | Where                                                                    | `x`    | `y`    |
 * |--------------------------------------------------------------------------|--------|--------|
 * | peaks from qo_getLocalPeaks_distTransform(), seeds of ju_seedWatershed() | column | row    |
 * | peaks from qo_getLocalPeaks(), the peak given to qo_peakXYScan()         | line   | sample |
 *
 * The back index of pointClout2DProjection() leads from the one to the other. Pixels that only a
 * link covers have no back index, so a peak may need the nearest pixel that has one:
 *
 * @code
 * const cv::Vec2i sample = backIndexing.at<cv::Vec2i>(peak.y, peak.x);
 * if (sample[0] >= 0) {  // if the image was filled with -1
 *   peak.x = sample[0];  // `valueD` is still the distance in pixels
 *   peak.y = sample[1];
 * }
 * @endcode
 */

#include <scanline/block_peaks.h>
#include <scanline/contour_scan.h>
#include <scanline/contour_selection.h>
#include <scanline/distance_map.h>
#include <scanline/projection.h>
