#pragma once

/**
 * @file
 * Clustering of points and of grid cells, and labelling of the regions of a binary image.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/** One cell of a grid whose features are clustered. */
struct SQO_featureClusteringInfo {
  int featureFlag;  ///< Not 0 if the cell holds a feature and can be clustered.
  int userWord1;    ///< For the caller's use; neither read nor written.
  int userWord2;    ///< For the caller's use.
  int clusterID;    ///< 0 if the cell is in no cluster; above 0 it is a barrier.
  int queued;       ///< 0, or 1 once the cell has been put on a queue.
  int userWord3;    ///< For the caller's use.
  int userWord4;    ///< For the caller's use.
};

/** One connected region of a binary image. */
struct SQO_Region {
  STeskRect roi;  ///< Bounding box in pixels: `left`, `right` are columns, `top`, `bottom` rows.
  int ptCounter;  ///< Number of pixels.
  int labelID;    ///< Value of the region's pixels in the label image; 2 or above.
};

/**
 * Splits points into clusters whose points reach each other by short steps in the x-y plane.
 *
 * The first point left starts a cluster. The members of the cluster are visited in turn, including
 * those that are added on the way; each adds all points left that are closer to it than
 * `clusterDist`, in the order of the input. So a cluster lists its members in breadth-first order.
 * z has no influence: missing samples are clustered like any others.
 *
 * @param points      the points; empty afterwards. A point with an `nPointIdx` below 0 counts as
 *                    taken and is dropped, except for the very first, which always starts a
 *                    cluster.
 * @param clusterDist two points are linked if they are closer than this; exactly this does not link
 *                    them. If it is 0.0, negative or NaN, every point is a cluster of its own. A
 *                    point whose x or y is NaN is linked to none.
 * @param clusters    the clusters are appended: copies of the points, with their `nPointIdx`
 * @throw std::bad_alloc  if memory runs out; @p points and @p clusters are unchanged
 *
 * Cost: quadratic in the points, since each member is compared with all points left.
 *
 * Method: single-linkage clustering with a fixed distance, by breadth-first search.
 *
 * @code
 * std::vector<STesk3DPosition> points = {{0, {0, 0, 5}}, {0, {1, 0, 9}}, {0, {4, 0, 5}}};
 * std::vector<std::vector<STesk3DPosition>> clusters;
 * qo_pointClustering(points, 1.5, clusters);  // two clusters, of 2 points and of 1
 * @endcode
 */
SCANLINE_API void qo_pointClustering(std::vector<STesk3DPosition>& points,
                                     double clusterDist,
                                     std::vector<std::vector<STesk3DPosition>>& clusters);

/**
 * Grows one cluster over a grid, from cell to cell of nearby points in space.
 *
 * The cells of the queue are visited in turn, including those that are added on the way. A cell
 * whose own `clusterID` is 0 adds the cells of the window around it (columns x outside, y inside)
 * that meet all of these conditions:
 * - the cell holds a feature (`featureFlag` is not 0);
 * - it is not in a cluster (`clusterID` is not above 0) and has not been `queued`;
 * - its point differs from that of the visited cell by less than `yDeviation_max` in y,
 *   `zDeviation_max` in z and `maxSkipDistance` in x.
 *
 * An added cell becomes `queued` and is appended to the queue. Every visited cell then gets the
 * number of the cluster and widens the bounds. Points are compared from cell to cell, not with the
 * seed, so a cluster can drift along a slope.
 *
 * Two cases to know:
 * - A cell whose `clusterID` is negative can be added, but adds none itself.
 * - The window includes the visited cell. A seed that meets the conditions and is not `queued` adds
 *   itself once more, and is in the queue twice; this has no other effect. Set `queued` of the
 *   seeds to 1 to prevent it.
 *
 * @param featureInfo     the grid, `featureInfo[x][y]`; `clusterID` and `queued` are written
 * @param feature3D       the points of the cells, `feature3D[x][y]`; only read
 * @param clusterCheckWin how many cells the window reaches to each side. At 0 it is the cell
 *                        itself, below 0 it is empty.
 * @param growParam       the three limits above, all strict; a difference of NaN is never within
 *                        them. The other fields are not read.
 * @param clusterID       number of the cluster
 * @param clusterQueue    in: the seeds, whose `featureFlag` may be 0; out: all cells of the cluster
 *                        in the order of their visit. If it is empty nothing happens.
 * @param clusterRoi      bounds in x, y and z, widened by the points of all visited cells. The
 *                        bounds on entry count, even those of an empty range: start with the point
 *                        of the first seed, or with huge and tiny values.
 * @pre All columns of both grids are as long as the first column of @p featureInfo. The seeds lie
 *      on the grid.
 * @throw std::bad_alloc  if memory runs out; @p featureInfo, @p clusterQueue and @p clusterRoi are
 *                        valid but incomplete. The same call with them completes the cluster.
 *
 * Cost: the number of visited cells times the number of grid cells in a window.
 *
 * Method: breadth-first region growing.
 *
 * @code
 * std::vector<STesk2DPoint> queue = {{3, 7}};
 * grid[3][7].queued = 1;
 * const STesk3DPoint& p = points[3][7];
 * STesk3DRangeD bounds = {{p.x, p.x}, {p.y, p.y}, {p.z, p.z}};
 * SQO_treeGrowParam limits = {};
 * limits.yDeviation_max = 2.0;
 * limits.zDeviation_max = 2.0;
 * limits.maxSkipDistance = 5.0;
 * ju_gridPointClustering(grid, points, 2, limits, 1, queue, bounds);  // windows of 5 x 5 cells
 * @endcode
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
 * It differs from ju_gridPointClustering() in that the window is always 3 x 3 cells and the points
 * are not compared.
 *
 * @param featureInfo  the grid, `featureInfo[x][y]`; `clusterID` and `queued` are written
 * @param feature3D    not read; may be empty
 * @param clusterID    number of the cluster
 * @param clusterQueue in: the seeds; out: all cells of the cluster in the order of their visit. If
 *                     it is empty nothing happens.
 * @param clusterRoi   widened by the indices of all visited cells: `left` and `right` by x, `top`
 *                     and `bottom` by y. The values on entry count: start with those of the first
 *                     seed.
 * @pre All columns of the grid are as long as the first. The seeds lie on the grid.
 * @throw std::bad_alloc  if memory runs out; @p featureInfo, @p clusterQueue and @p clusterRoi are
 *                        valid but incomplete. The same call with them completes the cluster.
 *
 * Cost: linear in the visited cells.
 *
 * Method: breadth-first region growing.
 */
SCANLINE_API void ju_gridPointClustering_labelling(
    std::vector<std::vector<SQO_featureClusteringInfo>>& featureInfo,
    std::vector<std::vector<STesk3DPoint>>& feature3D,
    int clusterID,
    std::vector<STesk2DPoint>& clusterQueue,
    STeskRect& clusterRoi);

/**
 * Labels the connected regions of a binary image and measures them.
 *
 * | Label        | Pixels                                                                         |
 * |--------------|--------------------------------------------------------------------------------|
 * | 0            | background                                                                     |
 * | 1            | foreground in the outer rows and columns; it belongs to and connects no region |
 * | 2 and higher | the regions, numbered in the order in which a scan by rows meets them          |
 *
 * An image with fewer than 3 rows or columns has no region. If @p bwImg is empty, @p labImg is
 * empty afterwards.
 *
 * @param bwImg        the image, 0 and 1, of any depth; may be a view into a larger image
 * @param labImg       the labels, `CV_32S`. An image of the same size and of this type is written
 *                     in place; otherwise a new one is allocated. It may be @p bwImg itself.
 * @param regions      the regions are appended in the order of their labels
 * @param connectivity 8: pixels are connected by side and by corner; any other value: by side alone
 * @pre @p bwImg has one channel and no values other than 0 and 1. Unless it is @p labImg, the two
 *      share no pixels. @p regions is empty: a record whose `labelID` is 3 or higher is widened by
 *      the region of that label, which then gets no record of its own.
 * @throw std::exception  if memory runs out; @p labImg and @p regions are unchanged
 *
 * Cost: nearly linear in the pixels, whatever the shapes of the regions. Besides the label image,
 * room for one int per two pixels is reserved; one per run of foreground is used.
 *
 * Method: two-pass connected-component labelling (Rosenfeld and Pfaltz, 1966) with a union-find
 * table, on runs of pixels instead of single ones.
 *
 * @code
 * cv::Mat labels;
 * std::vector<SQO_Region> regions;
 * QO_TwoPassLabel(binary, labels, regions, 8);
 * for (const SQO_Region& region : regions) {
 *   const cv::Mat mask = labels == region.labelID;
 * }
 * @endcode
 */
SCANLINE_API void QO_TwoPassLabel(const cv::Mat& bwImg,
                                  cv::Mat& labImg,
                                  std::vector<SQO_Region>& regions,
                                  int connectivity);
