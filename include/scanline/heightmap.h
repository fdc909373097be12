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

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

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
 * @param scanLines    the scan; from each line as many samples are read as the first one has, and
 *                     none may be shorter (not checked). Without any line both images stay as they
 *                     are.
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
 * The masks of the passes are not the textbook halves (Rosenfeld and Pfaltz, Borgefors): each
 * takes the three neighbours in the column behind the pixel, and the one in the pixel's own column
 * in the row visited before. Each pixel becomes the smallest of itself and its
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
 * @throw std::exception  if memory runs out; @p dst is unchanged.
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
 * half a `blockWidth`, columns by half a `blockHeight`, as many times as it takes halves of the
 * block's own height and width to cover the map. So with blocks that are not square there may be
 * parts of the map that no block covers.
 *
 * Meant for maps without negative values. A negative best gives way to any cell that follows it, a
 * not-a-number to none; blocks that hold one of these cost several times as much.
 *
 * @param distMap       CV_32F; not written
 * @param[in,out] peaks the peaks are appended, blocks in row-major order: `x` the column, `y` the
 *                      row, `valueD` the map's value
 * @param blockSize     size of the blocks; a side below 2 is not caught
 * @throw std::bad_alloc  if memory runs out; @p peaks is unchanged.
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
 * `blockWidth` in lines as halves of `blockHeight` cover the samples of a line, and as many steps
 * of half a `blockHeight` in samples as halves of `blockWidth` cover the lines. So part of
 * a scan with more samples than lines, or the reverse, is not covered.
 *
 * @param scanLines     the scan; each line must have as many samples as the first one. Not written.
 * @param lineNum       number of lines
 * @param[in,out] peaks the peaks are appended, blocks line by line: `x` the line, `y` the sample,
 *                      `valueD` the z
 * @param blockSize     size of the blocks; a side below 2 is not caught
 * @throw std::bad_alloc  if memory runs out; @p peaks is unchanged.
 */
SCANLINE_API void qo_getLocalPeaks(STesk3DLaserLine* scanLines,
                                   int lineNum,
                                   std::vector<SQO_2DValueI>& peaks,
                                   SQO_localPkParam blockSize);

// ---------------------------------------------------------------------------------------------
// Contours
// ---------------------------------------------------------------------------------------------

/** One point on the contour of an object, as a walk away from the object's peak met it. */
struct SQO_contourPtInfo {
  int x;                ///< Index of the sample's line.
  int y;                ///< Index of the sample on its line.
  int type;             ///< The sample's type code in the direction of the walk; 8 for a mark.
  int edgeId;           ///< Label of the edge at the sample, or a virtual label from 5 to 8.
  int sideFlag;         ///< 1 if the type faces the walk: 1, 3 to lower, 2, 4 to higher index.
  double scanDist;      ///< Distance from the peak along the walk: in y on a line, else in x.
  STesk3DPoint edgePt;  ///< The sample's point.
};

/** The contour points of one walk. */
struct SQO_lineConotours {
  int lineIdx;  ///< Index of the line or, of a walk across the lines, of the sample.
  std::vector<SQO_contourPtInfo> contourPts;  ///< The points in walking order; at least one.
};

/** Two contour points on opposite sides of an object, paired by the caller. */
struct SQO_conotourPair {
  int pairTag;                    ///< The caller's own word; carried along, not read.
  int edgeId_1;                   ///< Label of the edge on the first side.
  int edgeId_2;                   ///< Label of the edge on the second side.
  int pairReserved;               ///< The caller's own word; carried along, not read.
  double pairReservedD;           ///< The caller's own value; carried along, not read.
  SQO_contourPtInfo contourPt_1;  ///< The point on the first side.
  SQO_contourPtInfo contourPt_2;  ///< The point on the second side.
};

/**
 * Finds the outline of the object around one peak, by walks away from it in four directions.
 *
 * Walks start on each line near the peak at the peak's sample index, and at each sample index near
 * it at the peak's line, and run both ways. "Near" ends, to either side by itself, where x (y) in
 * the peak's row (line) is more than h = `bagWidth` - `peak.valueD` * 0.5 away from the peak's own;
 * with a negative h no walk starts.
 *
 * The flags in a sample's `nPointIdx`: bits 0 to 3 the feature type along the line, 4 to 7 the one
 * across the lines, 8 to 15 the caller's mark. A walk reads the type of its own direction:
 * - A sample without type is passed. But one that is neither first nor last on its line and has
 *   type 1 or 2 in the other direction stops the walk, unless one of the next four, before the line
 *   ends, has a type.
 * - A sample without type but with a mark (if `useMark`) has type 8 and a virtual label instead of
 *   that of `edgeMap`: 5 on a walk towards lower, 6 towards higher samples, 7 and 8 for lines.
 * - A sample farther than h from the peak ends the walk. One with a type and a label of at least 1
 *   is a contour point; at the start of the walk or next to it, it ends the walk instead.
 * - Types 1, 2, 6, 7 and 8 and the two virtual labels of its direction end the walk there.
 *
 * Where the walk towards higher index stops, neither walk of that line or sample index counts and
 * no more start on this side of the peak. A stop of the walk towards lower index has no effect.
 *
 * @param scanLines  the scan, all lines as long as the first one; only read
 * @param lineNum    number of lines
 * @param edgeMap    CV_32SC4, a row per sample index and a column per line: channel 0 the label of
 *                   the edge, 0 for none, channel 3 not 0 where a peak may be; the size and the
 *                   type are not checked
 * @param peak       `x` its line and `y` its sample, not checked, `valueD` its distance value.
 *                   With channel 3 at 0 there, nothing is written at all.
 * @param growParam  not read
 * @param bagParam   `bagWidth` in the unit of the samples; the peak's value is not converted to it
 * @param useMark    whether marks count
 * @param lowYContours,highYContours  the points of the walks along the lines towards lower and
 *                   higher sample index: a record for each line where there are any, in rising
 *                   order. What a list holds stays, between those up to the peak's line and those
 *                   beyond it.
 * @param lowXContours,highXContours  likewise of the walks across the lines, by sample index
 * @param maxEdgeLowY,maxEdgeHighY,maxEdgeLowX,maxEdgeHighX  the largest label that was added to
 *                   the list, 0 without any: the size of table that qo_contourPostProc() needs
 * @throw std::bad_alloc  if memory runs out; the four lists and the four labels are unchanged.
 */
SCANLINE_API void qo_peakXYScan(STesk3DLaserLine* scanLines,
                                int lineNum,
                                cv::Mat& edgeMap,
                                SQO_2DValueI peak,
                                SQO_treeGrowParam growParam,
                                SQO_bagParam bagParam,
                                bool useMark,
                                std::vector<SQO_lineConotours>& lowYContours,
                                std::vector<SQO_lineConotours>& highYContours,
                                std::vector<SQO_lineConotours>& lowXContours,
                                std::vector<SQO_lineConotours>& highXContours,
                                int* maxEdgeLowY,
                                int* maxEdgeHighY,
                                int* maxEdgeLowX,
                                int* maxEdgeHighX);

/**
 * Picks the contour points of one edge.
 *
 * @param contours    contour points by line or sample index; only read
 * @param edgeId      label of the edge
 * @param contourPts  the points are appended in order: `x`, `y`, the type as `value`, z as
 *                    `valueD`, and a `tag` of 0
 * @param sideVerdict 1 if more than half of `contourPts`, counting what it held before, are points
 *                    of this call that face the walk (`sideFlag` of at least 1), else 0; 0 without
 *                    any `contours`
 * @throw std::bad_alloc  if memory runs out; @p contourPts and @p sideVerdict are unchanged.
 */
SCANLINE_API void qo_getContourPts(std::vector<SQO_lineConotours>& contours,
                                   int edgeId,
                                   std::vector<SQO_2DValueI>& contourPts,
                                   int* sideVerdict);

/**
 * Filters pairs of contour points by their edges and by a window in space.
 *
 * The cost is the product of the sizes of `pairs` and `edgePairs`, at most: each pair inside the
 * window is compared with the pairs of labels until one matches.
 *
 * @param pairs       the pairs; only read
 * @param edgePairs   the pairs of labels to keep: `first` for the first side, `second` for the
 *                    second one
 * @param matched     the pairs that are kept are appended whole and in order, each once; must not
 *                    be the vector `pairs`
 * @param window      both points must lie strictly inside, so that an empty window keeps nothing
 * @param useX        whether the window is one of x; else it is one of y
 * @param sideVerdict_1,sideVerdict_2  1 if the number of pairs kept by this call whose point on
 *                    that side faces the walk (`sideFlag` of at least 1) exceeds half the size of
 *                    `matched`, counting what it held before and rounded down; else 0
 * @throw std::bad_alloc  if memory runs out; @p matched and both verdicts are unchanged.
 */
SCANLINE_API void qo_getPairingContourPts(std::vector<SQO_conotourPair>& pairs,
                                          std::vector<SQO_intPair>& edgePairs,
                                          std::vector<SQO_conotourPair>& matched,
                                          STeskRangeD window,
                                          bool useX,
                                          int* sideVerdict_1,
                                          int* sideVerdict_2);

/**
 * Selects the edges that form the true contour: those that are long enough and nearest to the peak.
 *
 * An edge is long enough with more than 30 % of the points (3 n / 10 rounded down). Of these the
 * edges stay whose mean distance from the peak is by less than `distTol` larger than the smallest
 * one, so that with a `distTol` of 0.0 or below none does.
 *
 * @param contourPts  the points of all edges; only read. `scanDist` must not be negative. If the
 *                    first edge that is long enough has a mean that is not a number, none stays.
 * @param maxEdgeId   largest label; that all labels lie from 0 to this one is not checked. A table
 *                    of 16 bytes per label is allocated, up to the largest one that occurs.
 * @param distTol     tolerance of the mean distance, in the unit of the samples
 * @param outPts      the points of the edges that stay are appended, edge by edge in the order of
 *                    their first points: `x`, `y`, the type as `value`, z as `valueD`, and `tag`
 * @param tag         the tag of these points
 * @param sideVerdict 1 if more than half of `outPts`, counting what it held before, are points of
 *                    this call that face the walk (`sideFlag` of at least 1), else 0; 0 if no edge
 *                    is long enough
 * @throw std::bad_alloc  if memory runs out; @p outPts and @p sideVerdict are unchanged.
 */
SCANLINE_API void qo_contourPostProc(std::vector<SQO_contourPtInfo>& contourPts,
                                     int maxEdgeId,
                                     double distTol,
                                     std::vector<SQO_2DValueI>& outPts,
                                     int tag,
                                     int* sideVerdict);
