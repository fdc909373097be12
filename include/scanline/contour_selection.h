#pragma once

/**
 * @file
 * Selection of contour points by their edges. contour_scan.h finds the points.
 *
 * All functions append to their output. Their side verdict is 1 if more than half of the points
 * that the output then holds, including those from before the call, were added by this call and
 * face the walk (`sideFlag` of at least 1); otherwise it is 0. Start with empty lists if it is to
 * count.
 */

#include <vector>

#include <scanline/contour_scan.h>
#include <scanline/export.h>
#include <scanline/scan_records.h>

/** Two contour points on opposite sides of an object, paired by the caller. */
struct SQO_conotourPair {
  int pairTag;                    ///< For the caller's use; copied, not read.
  int edgeId_1;                   ///< Label of the edge on the first side.
  int edgeId_2;                   ///< Label of the edge on the second side.
  int pairReserved;               ///< For the caller's use; copied, not read.
  double pairReservedD;           ///< For the caller's use; copied, not read.
  SQO_contourPtInfo contourPt_1;  ///< The point on the first side.
  SQO_contourPtInfo contourPt_2;  ///< The point on the second side.
};

/**
 * Selects the contour points of one edge.
 *
 * @param contours    the contour points; only read
 * @param edgeId      label of the edge
 * @param contourPts  the points are appended in order: `x`, `y`, the type as `value`, z as
 *                    `valueD`, and a `tag` of 0
 * @param sideVerdict the side verdict
 * @throw std::bad_alloc  if memory runs out; @p contourPts and @p sideVerdict are unchanged
 *
 * Cost: linear in the contour points.
 *
 * @code
 * std::vector<SQO_2DValueI> points;
 * int isFacing = 0;
 * qo_getContourPts(lowY, edgeId, points, &isFacing);
 * @endcode
 */
SCANLINE_API void qo_getContourPts(std::vector<SQO_lineConotours>& contours,
                                   int edgeId,
                                   std::vector<SQO_2DValueI>& contourPts,
                                   int* sideVerdict);

/**
 * Selects pairs of contour points by their edges and by a window.
 *
 * A pair is kept if its two labels are those of an entry of `edgePairs`, first with first and
 * second with second, and if both points lie in the window.
 *
 * @param pairs       the pairs; only read
 * @param edgePairs   the pairs of labels to keep; `third` is not read
 * @param matched     the kept pairs are appended in order, each once
 * @param window      limits of the coordinate, both strict; an empty window keeps nothing
 * @param useX        whether the window limits x; otherwise it limits y
 * @param sideVerdict_1,sideVerdict_2  the side verdicts of the first and the second points
 * @pre @p matched is not @p pairs.
 * @throw std::bad_alloc  if memory runs out; @p matched and both verdicts are unchanged
 *
 * Cost: the product of the sizes of @p pairs and @p edgePairs, at most: a pair in the window is
 * compared with the entries until one matches.
 *
 * @code
 * std::vector<SQO_intPair> edges = {{9, 11, 0}};  // edge 9 on the first side with 11 on the second
 * std::vector<SQO_conotourPair> matched;
 * int isFacing1 = 0;
 * int isFacing2 = 0;
 * qo_getPairingContourPts(pairs, edges, matched, {-50.0, 50.0}, true, &isFacing1, &isFacing2);
 * @endcode
 */
SCANLINE_API void qo_getPairingContourPts(std::vector<SQO_conotourPair>& pairs,
                                          std::vector<SQO_intPair>& edgePairs,
                                          std::vector<SQO_conotourPair>& matched,
                                          STeskRangeD window,
                                          bool useX,
                                          int* sideVerdict_1,
                                          int* sideVerdict_2);

/**
 * Selects the points of the edges that form the contour: those that are long enough and nearest to
 * the peak.
 *
 * 1. An edge is long enough if it holds more than 30 % of the points.
 * 2. Of these edges, those are kept whose mean `scanDist` exceeds the smallest mean by less than
 *    `distTol`. So with a `distTol` of 0.0 or below none is kept, not even the nearest.
 *
 * @param contourPts  the points of all edges, such as those of one list of qo_peakXYScan(); only
 *                    read
 * @param maxEdgeId   largest label that occurs
 * @param distTol     tolerance of the mean distance, in the unit of the samples
 * @param outPts      the points of the kept edges are appended, edge by edge in the order in which
 *                    they first occur: `x`, `y`, the type as `value`, z as `valueD`, and @p tag
 * @param tag         the tag of these points
 * @param sideVerdict the side verdict
 * @pre All labels lie from 0 to @p maxEdgeId. No `scanDist` is negative or NaN: if the mean of the
 *      first long enough edge is NaN, no edge is kept.
 * @throw std::bad_alloc  if memory runs out; @p outPts and @p sideVerdict are unchanged
 *
 * Cost: linear in the points, and in the largest label that occurs: 16 bytes are allocated per
 * label.
 *
 * @code
 * std::vector<SQO_contourPtInfo> points;
 * for (const SQO_lineConotours& walk : lowY) {
 *   points.insert(points.end(), walk.contourPts.begin(), walk.contourPts.end());
 * }
 * std::vector<SQO_2DValueI> contour;
 * int isFacing = 0;
 * qo_contourPostProc(points, maxLowY, 5.0, contour, 1, &isFacing);
 * @endcode
 */
SCANLINE_API void qo_contourPostProc(std::vector<SQO_contourPtInfo>& contourPts,
                                     int maxEdgeId,
                                     double distTol,
                                     std::vector<SQO_2DValueI>& outPts,
                                     int tag,
                                     int* sideVerdict);
