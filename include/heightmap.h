#pragma once

/**
 * @file
 * Contours around the peaks of a height map.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include "feature_records.h"
#include "scan_records.h"
#include "scanline_export.h"

// ---------------------------------------------------------------------------------------------
// Contours
// ---------------------------------------------------------------------------------------------

/** One point on the contour of an object, as a walk away from the object's peak met it. */
struct SQO_contourPtInfo {
  int x;                ///< Index of the sample's line.
  int y;                ///< Index of the sample on its line.
  int type;             ///< The sample's type code in the direction of the walk; 8 for a mark.
  int edgeId;           ///< Label of the edge at the sample, or a virtual label from 5 to 8.
  int sideFlag;         ///< 1 if the type faces the walk, else 0.
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
 * - A sample without type is passed, but within the first and last index only while there are types
 *   to come: if its type in the other direction is 1 or 2 and this sample and the next four have
 *   none, or the scan ends among them, the walk stops.
 * - A sample without type but with a mark (if `useMark`) has type 8 and a virtual label instead of
 *   that of `edgeMap`: 5 on a walk towards lower, 6 towards higher samples, 7 and 8 for lines.
 * - A sample farther than h from the peak ends the walk. One with a type and a label of at least 1
 *   is a contour point; one next to the peak, or behind its start, ends the walk instead.
 * - Types 1, 2, 6, 7 and 8 and the two virtual labels of its direction end the walk there.
 * - Two jumps in a row (1 or 2 along a line, 1 across) more than 100.0 apart would stop the walk.
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
 */
SCANLINE_API void qo_getContourPts(std::vector<SQO_lineConotours>& contours,
                                   int edgeId,
                                   std::vector<SQO_2DValueI>& contourPts,
                                   int* sideVerdict);

/**
 * Filters pairs of contour points by their edges and by a window in space.
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
 * @param maxEdgeId   largest label; that all labels lie from 0 to this one is not checked
 * @param distTol     tolerance of the mean distance, in the unit of the samples
 * @param outPts      the points of the edges that stay are appended, edge by edge in the order of
 *                    their first points: `x`, `y`, the type as `value`, z as `valueD`, and `tag`
 * @param tag         the tag of these points
 * @param sideVerdict 1 if more than half of `outPts`, counting what it held before, are points of
 *                    this call that face the walk (`sideFlag` of at least 1), else 0; 0 if no edge
 *                    is long enough
 */
SCANLINE_API void qo_contourPostProc(std::vector<SQO_contourPtInfo>& contourPts,
                                     int maxEdgeId,
                                     double distTol,
                                     std::vector<SQO_2DValueI>& outPts,
                                     int tag,
                                     int* sideVerdict);
