#pragma once

/**
 * @file
 * Watershed segmentation of integer images: each pixel takes the label of the basin that it lies
 * in, in ascending order of grey value. Images can have almost 2^32 pixels, with a frame around
 * them that is added inside; beyond that std::length_error is thrown, and nothing is changed.
 *
 * An image comes with a plane of markers, whose starting values take part: above 0 is a label, 0 is
 * none, -1 is a watershed pixel, where basins meet. Neighbours are the eight around a pixel, as far
 * as they lie inside the image.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/** A grey image and its labels. Both planes hold `height` rows of `width` values; not checked. */
struct SJU_waterShedImage {
  int width;                              ///< Number of values in a row.
  int height;                             ///< Number of rows.
  std::vector<std::vector<int>> gray;     ///< The image, `gray[row][column]`; read only.
  std::vector<std::vector<int>> markers;  ///< The labels, `markers[row][column]`.
};

/**
 * Segments an image from its own minima, in a single sweep over the pixels.
 *
 * First each pixel off the border whose value nowhere in the 14 x 14 window from 7 before to 6
 * behind it (rows and columns, clipped to the image) is undercut marks a basin, row by row: with
 * the next label from 2 on, or, if a neighbour has a label above 1 already, by writing its own
 * marker over the first such neighbour's (columns outer, rows inner). A flat minimum thus keeps
 * labels on some of its pixels only. A marker of 1 is the caller's: the pixel marks nothing.
 *
 * Then the pixels are flooded once each, in ascending order of grey value, column and row, but with
 * rows and columns crossed: the value at row r and column c calls up the marker at row c and
 * column r. If it is not above 0 it takes the label of its only labelled neighbour (1 counts), or
 * -1 if it has more than one, even with equal labels. Without any it stays as it is for good.
 *
 * The cost is linear in the number of pixels, whatever their values.
 *
 * @param image the image, which must be square since rows and columns are crossed. `markers` is
 *              changed in place. Below 3 x 3 pixels no minima are sought.
 * @throw std::bad_alloc  if memory runs out; @p image is unchanged.
 */
SCANLINE_API void watershed(SJU_waterShedImage& image);

/**
 * Floods an image from given seeds, level by level: a marker-controlled watershed (Beucher, Meyer).
 *
 * Seed by seed, the connected pixels (over four neighbours) of the seed's own value that have a
 * marker of 0 take its label; the seed's own pixel always does. Then each level from 0 to
 * `maxLevel` is walked row by row, again and again as long as any of its pixels settles, and the
 * whole sweep over the levels is repeated until every pixel within them has settled. A pixel
 * settles when it is visited with labelled neighbours: it takes their label or, if they have
 * different ones, -1 for good. A label is seen at once by the pixels visited after it. Pixels above
 * `maxLevel` keep their marker, which spreads if it is a label; labels that the caller set stay.
 *
 * A pixel that waits is not visited again before a neighbour gets a label, so the cost is all but
 * linear in the number of pixels, however many walks and sweeps they take.
 *
 * There is no way out for pixels that no label can reach: if a connected part of the pixels up to
 * `maxLevel` holds neither seed nor label, or a pixel is shut in by pixels of -1, the call does not
 * return.
 *
 * @param image      the image, of any shape, without values below 0. `markers` must be 0 wherever
 *                   the flood is to go; a -1 there is flooded as well, but fills no plateau.
 * @param seeds      positions (`x` column, `y` row) inside the image, not checked; `value` receives
 *                   the seed's label, the rest stays
 * @param maxLevel   highest grey value that is flooded; at -1 only the plateaus are labelled
 * @param startLabel label of the first seed, rising by 1 per seed; must not leave the range of int.
 *                   Should be above 0: a label below is none to the flood, and a label of 0
 *                   fills no plateau.
 * @throw std::length_error  for a `maxLevel` below -1; the plateaus and @p seeds are labelled.
 * @throw std::bad_alloc  if memory runs out; @p image and @p seeds are unchanged.
 */
SCANLINE_API void ju_seedWatershed(SJU_waterShedImage& image,
                                   std::vector<SQO_2DValueI>& seeds,
                                   int maxLevel,
                                   int startLabel);
