#pragma once

/**
 * @file
 * Clustering of points and of grid cells, and labelling of the regions of an image.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/** One cell of a grid whose features are clustered. */
struct SQO_featureClusteringInfo {
  int featureFlag;  ///< Not 0: the cell holds a feature and can be clustered.
  int userWord1;    ///< The caller's own word; the library neither reads nor writes it.
  int userWord2;    ///< The caller's own word.
  int clusterID;    ///< 0 while the cell is in no cluster; above 0 it is a barrier.
  int queued;       ///< 0, or 1 once a walk has put the cell on its queue.
  int userWord3;    ///< The caller's own word.
  int userWord4;    ///< The caller's own word.
};

/** One connected region of a binary image. */
struct SQO_Region {
  STeskRect roi;  ///< Bounding box in pixels: `left`, `right` are columns, `top`, `bottom` rows.
  int ptCounter;  ///< Number of pixels.
  int labelID;    ///< Value of the region's pixels in the label image; 2 or above.
};

/**
 * Splits points into clusters of those that reach each other by short steps in the x-y plane
 * (single linkage).
 *
 * The first point left starts a cluster. Its members are taken in turn, new ones included, and each
 * draws in, in the order of the input, all points left that are closer to it than `clusterDist`. A
 * cluster thus holds its members in breadth-first order. Neither z nor the no-sample rule plays a
 * part.
 *
 * Each member is compared with every point left: the cost is quadratic in the number of points.
 *
 * @param points      The points; empty on return. A point with an `nPointIdx` below 0 counts as
 *                    taken and is dropped, unless it is the very first, which starts a cluster all
 *                    the same.
 * @param clusterDist Two points are linked if they are less than this apart; exactly this does not
 *                    link them, and at 0.0, below, or NaN every point is a cluster of its own. A
 *                    point whose x or y is NaN is linked to none.
 * @param clusters    The clusters are appended, copies of the points with their `nPointIdx`.
 * @throw std::bad_alloc  if memory runs out; @p points and @p clusters are unchanged.
 */
SCANLINE_API void qo_pointClustering(std::vector<STesk3DPosition>& points,
                                     double clusterDist,
                                     std::vector<std::vector<STesk3DPosition>>& clusters);

/**
 * Grows one cluster over a grid, from cell to cell of nearby 3D points (breadth-first search).
 *
 * Each cell of the queue in turn, new ones included, draws in the cells of the window around it
 * that hold a feature, are in no cluster (`clusterID` not above 0), have not been `queued`, and
 * whose points differ from its own by less than the limits; x of the window runs outside, y inside.
 * Cells drawn in are marked `queued` and appended to the queue. Limits are taken from cell to cell,
 * not from the seed, so a cluster can drift along a slope. A cell whose own `clusterID` is not 0
 * draws in none. Every cell of the queue then gets the cluster's number and widens the bounds.
 *
 * The window holds its own cell: a seed that is not yet `queued` draws itself in, and stands on the
 * queue twice. A seed's `featureFlag` is not read.
 *
 * The cost is the number of cells taken times the number of grid cells in a window.
 *
 * @param featureInfo     The grid, `featureInfo[x][y]`; all columns as long as the first (not
 *                        checked). `clusterID` and `queued` are written.
 * @param feature3D       The cells' points, in the same shape (not checked); not changed.
 * @param clusterCheckWin The window reaches this many cells to each side; at 0 it is the cell
 *                        itself, below 0 it is empty.
 * @param growParam       Limits, all strict: `maxSkipDistance` in x, `yDeviation_max` in y,
 *                        `zDeviation_max` in z. NaN is never within. The rest is not read.
 * @param clusterID       Number of the cluster.
 * @param clusterQueue    In: the seeds, which must lie on the grid (not checked). Out: all cells
 *                        taken, in order. If empty, nothing happens.
 * @param clusterRoi      Bounds in x, y and z, widened by the points of all cells taken. Start
 *                        values count, also those of an empty range: give the first seed's point,
 *                        or huge and tiny ones.
 * @throw std::bad_alloc  if memory runs out; @p featureInfo, @p clusterQueue and @p clusterRoi are
 *                        valid but incomplete. The same call with them completes the cluster.
 */
SCANLINE_API void ju_gridPointClustering(
    std::vector<std::vector<SQO_featureClusteringInfo>>& featureInfo,
    std::vector<std::vector<STesk3DPoint>>& feature3D,
    int clusterCheckWin,
    SQO_treeGrowParam growParam,
    int clusterID,
    std::vector<STesk2DPoint>& clusterQueue,
    STesk3DRangeD& clusterRoi);

/**
 * Grows one cluster over a grid, through all cells with a feature that touch by side or corner.
 *
 * Works as ju_gridPointClustering() with a window of 3 by 3 cells and no regard to the points.
 *
 * @param featureInfo  The grid, `featureInfo[x][y]`; all columns as long as the first (not
 *                     checked). `clusterID` and `queued` are written.
 * @param feature3D    Not read; may be empty.
 * @param clusterID    Number of the cluster.
 * @param clusterQueue In: the seeds, which must lie on the grid (not checked). Out: all cells
 *                     taken, in order. If empty, nothing happens.
 * @param clusterRoi   Widened by the indices of all cells taken: `left` and `right` by x, `top` and
 *                     `bottom` by y. Start values count.
 * @throw std::bad_alloc  if memory runs out; @p featureInfo, @p clusterQueue and @p clusterRoi are
 *                     valid but incomplete. The same call with them completes the cluster.
 */
SCANLINE_API void ju_gridPointClustering_labelling(
    std::vector<std::vector<SQO_featureClusteringInfo>>& featureInfo,
    std::vector<std::vector<STesk3DPoint>>& feature3D,
    int clusterID,
    std::vector<STesk2DPoint>& clusterQueue,
    STeskRect& clusterRoi);

/**
 * Labels the connected regions of a binary image and measures them (two-pass labelling with a
 * union-find table, on runs of pixels).
 *
 * Regions are numbered from 2, in the order in which a scan by rows meets them. The image's outer
 * rows and columns are left alone: a foreground pixel there keeps its 1, belongs to no region and
 * links none. An image of fewer than 3 rows or columns has no region.
 *
 * The cost is nearly linear in the number of pixels, whatever the regions' shapes. Beside the label
 * image there is room for one int per two pixels, of which one per run of foreground is used.
 *
 * @param bwImg        Image of 0 and 1, of one channel and any depth (not checked); may be a part
 *                     of a larger image.
 * @param labImg       The labels, `CV_32S`: 0 background, 1 foreground on the outer frame, 2 and
 *                     above the regions. An image of the right size and type is written in place;
 *                     otherwise a new one is allocated. May be `bwImg` itself; otherwise the two
 *                     must not share pixels.
 * @param regions      The regions are appended in the order of their numbers. It should come in
 *                     empty: a record that has come in takes up the region of its `labelID` (the
 *                     last such record, and any number but 2) instead of a new record.
 * @param connectivity 8: pixels are neighbours by side and corner; any other value: by side alone.
 * @throw std::exception  if memory runs out; @p labImg and @p regions are unchanged.
 */
SCANLINE_API void QO_TwoPassLabel(const cv::Mat& bwImg,
                                  cv::Mat& labImg,
                                  std::vector<SQO_Region>& regions,
                                  int connectivity);
