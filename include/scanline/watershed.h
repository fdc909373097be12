#pragma once

/**
 * @file
 * Watershed segmentation of integer images: each pixel takes the label of the basin that it lies
 * in, in ascending order of grey value.
 *
 * An image comes with a plane of markers, whose values on entry count:
 *
 * | Marker | Meaning                                                                    |
 * |--------|----------------------------------------------------------------------------|
 * | > 0    | a label; `watershed()` gives 2 and higher, and 1 is reserved to the caller |
 * | 0      | no label                                                                   |
 * | -1     | a watershed pixel, where labels met; not a label                           |
 *
 * Neighbours are the eight around a pixel, as far as they lie inside the image.
 *
 * Basins are *low*: a flood starts at small grey values. A distance map, whose objects are hills,
 * must therefore be inverted, and scaled to integers; see ju_seedWatershed().
 *
 * Both functions throw std::length_error, and change nothing, for images of almost 2^32 pixels and
 * more, counted with a frame that is added inside.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/** A grey image and its labels. Both planes hold `height` rows of `width` values; not checked. */
struct SJU_waterShedImage {
  int width;                              ///< Number of values in a row.
  int height;                             ///< Number of rows.
  std::vector<std::vector<int>> gray;     ///< The image, `gray[row][column]`; only read.
  std::vector<std::vector<int>> markers;  ///< The labels, `markers[row][column]`.
};

/**
 * Segments an image from its own minima, in a single sweep over the pixels.
 *
 * **Minima.** The pixels that are not in the outer rows and columns are visited row by row. A pixel
 * is a minimum if no value in its window is smaller: 14 x 14 pixels, from 7 before it to 6 after it
 * in rows and in columns, clipped to the image. A minimum whose marker is 1 is passed over. Of any
 * other, the first neighbour with a marker above 1 is looked for (columns outside, rows inside):
 * - If there is one, *that neighbour* is overwritten with the marker of the pixel.
 * - Otherwise the pixel gets the next label, from 2 on.
 *
 * So a flat minimum keeps labels on some of its pixels only, in a pattern that follows from the
 * order of the visits. An image with fewer than 3 rows or columns has no minima.
 *
 * **Flood.** The pixels are visited once each, in ascending order of grey value, column and row.
 * Rows and columns are crossed: the turn of the value in row r and column c is the turn of the
 * marker in row c and column r. The marker changes if it is not above 0:
 *
 * | Neighbours with a label               | New marker                       |
 * |---------------------------------------|----------------------------------|
 * | none                                  | unchanged, and not visited again |
 * | one                                   | its label; 1 counts as a label   |
 * | two or more, even with the same label | -1                               |
 *
 * @param image the image; `markers` is changed in place
 * @pre The image is square, since rows and columns are crossed.
 * @throw std::bad_alloc  if memory runs out; @p image is unchanged
 *
 * Cost: linear in the pixels, whatever their values.
 *
 * Method: flooding of sorted pixels, after Vincent and Soille (1991), but without queues and with
 * the rules above: labelled areas stay thin. Use ju_seedWatershed() for regions that fill the
 * image.
 *
 * @code
 * const std::vector<std::vector<int>> unlabelled(side, std::vector<int>(side, 0));
 * SJU_waterShedImage image = {side, side, gray, unlabelled};
 * watershed(image);
 * @endcode
 */
SCANLINE_API void watershed(SJU_waterShedImage& image);

/**
 * Floods an image from given seeds, level by level.
 *
 * 1. Each seed in turn gets the next label, from `startLabel` on. Its pixel takes the label
 *    whatever its marker, and so does its plateau: the pixels of the same grey value that connect
 *    to it over four neighbours and have a marker of 0.
 * 2. The levels from 0 to `maxLevel` are worked in ascending order. The pixels of a level without a
 *    label are visited row by row, again and again as long as any of them settles. A visited pixel
 *    settles if it has neighbours with labels: with one and the same label it takes that, with
 *    different ones it becomes -1. A new label counts at once for pixels visited later.
 * 3. Step 2 is repeated until all pixels up to `maxLevel` have settled.
 *
 * A marker of -1 on entry is flooded like 0, but fills no plateau. Labels on entry stay and spread.
 * Pixels above `maxLevel` keep their markers, and spread them if they are labels.
 *
 * **The call returns only if all pixels up to `maxLevel` settle.** It waits forever for pixels that
 * no label reaches:
 * - a part of these pixels, connected over eight neighbours, that holds no label and touches none,
 *   so for instance a speck without a seed;
 * - pixels cut off by watershed pixels, such as the end of a dead end beyond the line where two
 *   labels met.
 *
 * The first kind is easily seen. The second depends on the course of the flood, and does not occur
 * with a single label. To be sure, find the pixels that the flood would not reach and raise them
 * above `maxLevel`, which changes no other pixel:
 *
 * @code
 * std::vector<STesk2DPoint> unreached(SJU_waterShedImage image,  // copies of the arguments
 *                                     std::vector<SQO_2DValueI> seeds,
 *                                     int maxLevel,
 *                                     int startLabel) {
 *   ju_seedWatershed(image, seeds, -1, startLabel);  // labels the seeds and their plateaus only
 *   std::vector<std::vector<STesk2DPoint>> levels(maxLevel + 1);
 *   for (int y = 0; y < image.height; ++y) {
 *     for (int x = 0; x < image.width; ++x) {
 *       if (image.gray[y][x] <= maxLevel) {
 *         levels[image.gray[y][x]].push_back({x, y});
 *       }
 *     }
 *   }
 *   const auto settles = [&](const STesk2DPoint& at) {
 *     int& own = image.markers[at.y][at.x];
 *     if (own > 0) {
 *       return true;
 *     }
 *     int label = 0;
 *     for (int y = std::max(at.y - 1, 0); y <= std::min(at.y + 1, image.height - 1); ++y) {
 *       for (int x = std::max(at.x - 1, 0); x <= std::min(at.x + 1, image.width - 1); ++x) {
 *         const int other = image.markers[y][x];
 *         if (other > 0 && other != label) {
 *           label = label == 0 ? other : -1;
 *         }
 *       }
 *     }
 *     own = label != 0 ? label : own;
 *     return label != 0;
 *   };
 *   for (bool progress = true; progress;) {
 *     progress = false;
 *     for (std::vector<STesk2DPoint>& level : levels) {
 *       for (bool again = true; again;) {
 *         std::vector<STesk2DPoint> waiting;
 *         for (const STesk2DPoint& at : level) {
 *           if (!settles(at)) {
 *             waiting.push_back(at);
 *           }
 *         }
 *         again = waiting.size() < level.size();
 *         progress = progress || again;
 *         level.swap(waiting);
 *       }
 *     }
 *   }
 *   std::vector<STesk2DPoint> left;
 *   for (const std::vector<STesk2DPoint>& level : levels) {
 *     left.insert(left.end(), level.begin(), level.end());
 *   }
 *   return left;
 * }
 * @endcode
 *
 * @param image      the image, of any shape; `markers` is changed in place
 * @param seeds      positions (`x` column, `y` row), such as peaks from
 *                   qo_getLocalPeaks_distTransform(); `value` is set to the label of the seed, the
 *                   rest is unchanged
 * @param maxLevel   highest grey value that is flooded; at -1 only step 1 is done
 * @param startLabel label of the first seed, rising by 1 per seed. It should be above 0: labels
 *                   below are no labels to the flood, and a label of 0 fills no plateau.
 * @pre No grey value is below 0. The seeds lie inside the image. The labels stay in the range of
 *      int. All pixels up to @p maxLevel can be reached, as above.
 * @throw std::length_error  for a @p maxLevel below -1; step 1 is done
 * @throw std::bad_alloc     if memory runs out; @p image and @p seeds are unchanged
 *
 * Cost: nearly linear in the pixels, whatever their values and however often levels are worked,
 * since a waiting pixel is not visited again before a neighbour gets a label.
 *
 * Method: marker-controlled watershed (Beucher and Meyer, 1993) in sweeps over the levels.
 *
 * @code
 * // Divides a mask among the peaks of its distance map. Distances are inverted, and scaled to
 * // integers with some steps per pixel; what the mask does not cover lies above the last level.
 * double deepest = 0.0;
 * cv::minMaxLoc(distances, nullptr, &deepest);
 * constexpr double kStepsPerPixel = 4.0;
 * const int maxLevel = static_cast<int>(std::lround(kStepsPerPixel * deepest));
 * SJU_waterShedImage image = {mask.cols, mask.rows, {}, {}};
 * image.gray.assign(mask.rows, std::vector<int>(mask.cols, maxLevel + 1));
 * image.markers.assign(mask.rows, std::vector<int>(mask.cols, 0));
 * for (int y = 0; y < mask.rows; ++y) {
 *   for (int x = 0; x < mask.cols; ++x) {
 *     if (mask.at<float>(y, x) > 0.0F) {
 *       const double distance = distances.at<float>(y, x);
 *       image.gray[y][x] = maxLevel - static_cast<int>(std::lround(kStepsPerPixel * distance));
 *     }
 *   }
 * }
 * for (const STesk2DPoint& at : unreached(image, peaks, maxLevel, 2)) {
 *   image.gray[at.y][at.x] = maxLevel + 1;
 * }
 * ju_seedWatershed(image, peaks, maxLevel, 2);
 * @endcode
 */
SCANLINE_API void ju_seedWatershed(SJU_waterShedImage& image,
                                   std::vector<SQO_2DValueI>& seeds,
                                   int maxLevel,
                                   int startLabel);
