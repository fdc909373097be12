#pragma once

/**
 * @file
 * Contour points of an object, found by walks away from a peak inside it. heightmap.h describes the
 * conventions for images and positions, contour_selection.h what follows.
 */

#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/** One point on the contour of an object, as found by a walk away from the peak of the object. */
struct SQO_contourPtInfo {
  int x;                ///< Index of the line.
  int y;                ///< Index of the sample on the line.
  int type;             ///< Own type of the sample; 8 for a marked sample without one.
  int edgeId;           ///< Label of the edge at the sample, or a virtual label from 5 to 8.
  int sideFlag;         ///< 1 if the type faces the walk: 1, 3 to lower, 2, 4 to higher index.
  double scanDist;      ///< Distance from the peak: in y for a walk along a line, else in x.
  STesk3DPoint edgePt;  ///< Position of the sample.
};

/** The contour points of one walk. */
struct SQO_lineConotours {
  int lineIdx;  ///< Index of the line, or for a walk across the lines the index of the sample.
  std::vector<SQO_contourPtInfo> contourPts;  ///< The points in walking order; at least one.
};

/**
 * Finds contour points of the object around one peak, by walks away from it in four directions.
 *
 * The caller detects the edges and passes them in two ways. The first is `nPointIdx` of the
 * samples, read as flags:
 *
 * | Bits    | Content                                                                   |
 * |---------|---------------------------------------------------------------------------|
 * | 0 to 3  | type of the feature that a search along the line found here, 0 for none   |
 * | 4 to 7  | type of the feature that a search across the lines found here, 0 for none |
 * | 8 to 15 | the mark of the caller; not 0 if the sample is marked                     |
 *
 * The second is the image @p edgeMap, with a row per sample index and a column per line: channel 0
 * is the label of the edge at the sample, 0 for none; channel 3 is not 0 where a peak may be.
 *
 * **Where walks start.** With h = `bagWidth` - `peak.valueD` / 2:
 * - Walks along the lines start at the sample index of the peak, on the line of the peak and its
 *   neighbours to either side, as far as the x of the samples at that index, missing or not,
 *   differs by at most h from the x of the peak.
 * - Walks across the lines start at the line of the peak, at the sample index of the peak and its
 *   neighbours, as far as the y of the samples on that line differs by at most h.
 *
 * From each start one walk goes to lower and one to higher index:
 *
 * | Output          | Walk             | Towards             | `lineIdx` | Virtual label |
 * |-----------------|------------------|---------------------|-----------|---------------|
 * | `lowYContours`  | along a line     | lower sample index  | line      | 5             |
 * | `highYContours` | along a line     | higher sample index | line      | 6             |
 * | `lowXContours`  | across the lines | lower line index    | sample    | 7             |
 * | `highXContours` | across the lines | higher line index   | sample    | 8             |
 *
 * **What a walk does.** The own type of a sample is that of the direction of the walk, the other
 * type that of the other direction. At each sample in turn, from the start on:
 * 1. A sample with neither an own type nor, if `useMark`, a mark is passed, unless its index is the
 *    first or the last. But if its other type is a jump (1 or 2) and none of the next four samples,
 *    before the end of the scan, has an own type, the walk is *stopped*.
 * 2. A marked sample without an own type gets type 8 and the virtual label of the walk in place of
 *    its label.
 * 3. A sample farther than h from the peak, in y on a line and else in x, ends the walk.
 * 4. A sample with a type and a label of at least 1 is a contour point. But at the start of the
 *    walk or next to it, it ends the walk instead.
 * 5. Types 1, 2, 6, 7 and 8 end the walk, as do the two virtual labels of its axis (5 and 6, or 7
 *    and 8). Slopes (3 and 4) do not, so that a walk goes on to a harder boundary.
 *
 * If the walk to higher index is stopped, neither walk from that start counts, and no more walks
 * start on that side of the peak. If the walk to lower index is stopped, it keeps its points, and
 * nothing else happens.
 *
 * @param scanLines  the scan; only read
 * @param lineNum    number of lines
 * @param edgeMap    `CV_32SC4`, as above; only read
 * @param peak       `x` its line, `y` its sample, `valueD` its value in the distance map, in
 *                   pixels. If channel 3 of @p edgeMap is 0 there, nothing is written at all.
 * @param growParam  not read
 * @param bagParam   `bagWidth` in the unit of the samples, from which half of `peak.valueD` is
 *                   subtracted without conversion. If h is negative no walk starts.
 * @param useMark    whether marks count
 * @param lowYContours,highYContours,lowXContours,highXContours  for each start in rising order, a
 *                   record is added if the walk found points. Those up to the line (sample index)
 *                   of the peak are inserted before what the list holds, the others are appended.
 * @param maxEdgeLowY,maxEdgeHighY,maxEdgeLowX,maxEdgeHighX  set to the largest label that this call
 *                   added to the list, 0 without any: the `maxEdgeId` for qo_contourPostProc()
 * @pre There is at least one line, and no line has fewer samples than the first. The peak lies on
 *      the scan, and @p edgeMap has a row for each sample index and a column for each line.
 * @throw std::bad_alloc  if memory runs out; the four lists and the four labels are unchanged
 *
 * Cost: the length of all walks. Rule 1 comes before rule 3, so a walk runs to the end of the scan
 * if it meets no types: at worst lines times samples for each of the two axes.
 *
 * @code
 * // The peak is a position on the scan; see heightmap.h for peaks of a map.
 * const SQO_bagParam bag = {reach + 0.5 * peak.valueD, 0.0};  // walks end `reach` from the peak
 * std::vector<SQO_lineConotours> lowY, highY, lowX, highX;
 * int maxLowY = 0, maxHighY = 0, maxLowX = 0, maxHighX = 0;
 * qo_peakXYScan(lines.data(), static_cast<int>(lines.size()), edges, peak, {}, bag, false,
 *               lowY, highY, lowX, highX, &maxLowY, &maxHighY, &maxLowX, &maxHighX);
 * @endcode
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
