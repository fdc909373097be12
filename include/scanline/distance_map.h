#pragma once

/**
 * @file
 * Distance maps. heightmap.h describes the conventions for images.
 */

#include <opencv2/core/mat.hpp>

#include <scanline/export.h>

/**
 * Computes for each pixel the cost of the cheapest way of steps to an empty pixel.
 *
 * Two passes over the image replace each pixel by the smallest of itself and four neighbours plus
 * the cost of a step, in single precision. An axial step (`a`) costs 1, the cost of a diagonal step
 * (`d`) depends on `distType`; `x` is the pixel:
 *
 * @code{.unparsed}
 *  forward pass              backward pass
 *  (rows downwards,          (rows upwards,
 *  columns rightwards)       columns leftwards)
 *
 *     d  a  .                   .  .  d
 *     a  x  .                   .  x  a
 *     d  .  .                   .  a  d
 * @endcode
 *
 * The textbook takes the whole row before the pixel instead. Here one diagonal neighbour lies in a
 * row that the pass has not reached yet, so along that diagonal each pass makes one step at most.
 * With m the larger and n the smaller of the distances of a pixel from an empty one in columns and
 * in rows, the cheapest way between them costs:
 *
 * | `distType` | Step `d` | Pixel above left or below right | Pixel above right or below left |
 * |------------|----------|---------------------------------|---------------------------------|
 * | 0          | 1.41...  | m + 0.41 n                      | m + n - 0.59, if n > 0          |
 * | 1          | 2        | m + n                           | m + n                           |
 * | any other  | 1        | m                               | m + n - 1, if n > 0             |
 *
 * where 1.41... is the square root of 2.
 *
 * Each result is the smallest of these costs over all empty pixels:
 * - For `distType` 0 it is an upper bound of the Euclidean distance: up to 8 % too large if the
 *   nearest empty pixel lies above left or below right, up to 41 % if it lies above right or below
 *   left. Four rows above and four columns to the right of a single empty pixel the result is 7.41,
 *   where the distance is 5.66.
 * - For `distType` 1 it is the city-block distance.
 * - For any other `distType` it is the chessboard distance or, if the nearest empty pixel lies
 *   above right or below left, up to nearly twice that.
 *
 * Pixels of the outer rows and columns count with their input values in the passes and are then set
 * to 0.0. So an image with fewer than 3 rows or columns becomes all 0.0; an empty one stays empty.
 * A NaN stays where it is and does not spread.
 *
 * @param src       `CV_32F`: 0.0 where empty, more than any distance where occupied, as in the mask
 *                  of pointClout2DProjection(); only read
 * @param[out] dst  the distances in pixels, `CV_32F`. Always a new image: other headers of its
 *                  former pixels see no change. May be the image of @p src.
 * @param distType  the metric
 * @throw std::exception  if memory runs out; @p dst is unchanged
 *
 * Cost: linear in the pixels.
 *
 * Method: two-pass chamfer distance (Rosenfeld and Pfaltz, 1966; Borgefors, 1986), with the masks
 * above.
 *
 * @code
 * cv::Mat distances;
 * qo_distanceTrans(mask, distances, 0);
 * @endcode
 */
SCANLINE_API void qo_distanceTrans(cv::Mat src, cv::Mat& dst, int distType);
