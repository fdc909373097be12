#pragma once

/**
 * @file
 * Removal of outliers from lines and scans.
 *
 * All functions share one rule. A line is cut into stretches of continuous samples, and a stretch
 * with too few samples is blanked:
 * 1. Two consecutive samples that are not holes are continuous if `continuityTh` is greater than
 *    their distance. A distance of exactly the limit, or NaN, separates them.
 * 2. Holes (`z <= 0.0001`) neither separate stretches nor count. A sample whose z is NaN is no
 *    hole: it counts, and it is continuous with nothing.
 * 3. A stretch is blanked if `outlierTh` is greater than its number of samples: z becomes 0.0 from
 *    its first to its last sample, in the holes between them too. x and y are unchanged.
 *
 * A line is judged in one pass: the stretches before and after a blanked one are not joined.
 *
 * | Function                                    | Distance | Blanks   | Lists the blanked samples |
 * |---------------------------------------------|----------|----------|---------------------------|
 * | qo_lineDataRemoveOutlier()                  | in z     | a copy   | yes                       |
 * | qo_lineDataRemoveOutlier_ptDistMethod()     | in space | a copy   | yes                       |
 * | qo_lineDataRemoveOutlier_changeOriginData() | in z     | the line | no                        |
 * | ju_vectorDataRemoveOutlier_overwrite()      | in z     | the line | no                        |
 * | ju_noiseFilter()                            | in z     | the scan | no                        |
 *
 * Cost: linear in the samples.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/** Limits that decide what is an outlier on a line. Both are strict. */
struct SQO_outlierFilterParam {
  /// Two consecutive samples belong to one stretch if they are closer than this; a length.
  double continuityTh;
  /// A stretch of fewer samples than this is blanked; a count. 0 or below blanks nothing, 2 blanks
  /// single samples.
  double outlierTh;
};

/**
 * Copies a line and removes the outliers from the copy, by distance in z.
 *
 * @param lineData     the line; only read
 * @param dataSize     number of samples; below 1 the line is empty
 * @param outlierPara  the limits
 * @param filteredData replaced by the filtered line, sample by sample
 * @param noisePts     the indices of all blanked samples are appended in ascending order, including
 *                     those of holes in blanked stretches
 * @pre @p filteredData does not hold @p lineData.
 * @throw std::bad_alloc  if memory runs out; @p filteredData and @p noisePts are unchanged
 *
 * @code
 * const SQO_outlierFilterParam limits = {2.0, 4.0};  // jumps from 2.0, stretches of 1 to 3 samples
 * std::vector<STesk3DPosition> filtered;
 * std::vector<int> blanked;
 * qo_lineDataRemoveOutlier(line.data(), static_cast<int>(line.size()), limits, filtered, blanked);
 * @endcode
 */
SCANLINE_API void qo_lineDataRemoveOutlier(STesk3DPosition* lineData,
                                           int dataSize,
                                           SQO_outlierFilterParam outlierPara,
                                           std::vector<STesk3DPosition>& filteredData,
                                           std::vector<int>& noisePts);

/**
 * Removes the outliers of a line in place, by distance in z.
 *
 * @param lineData    the line; z of the blanked samples becomes 0.0, nothing else is changed
 * @param dataSize    number of samples; nothing happens below 1
 * @param outlierPara the limits
 */
SCANLINE_API void qo_lineDataRemoveOutlier_changeOriginData(STesk3DPosition* lineData,
                                                            int dataSize,
                                                            SQO_outlierFilterParam outlierPara);

/**
 * Removes the outliers of a line in place, by distance in z:
 * qo_lineDataRemoveOutlier_changeOriginData() for a vector.
 *
 * @param lineData    the line; z of the blanked samples becomes 0.0, nothing else is changed
 * @param outlierPara the limits
 */
SCANLINE_API void ju_vectorDataRemoveOutlier_overwrite(std::vector<STesk3DPosition>& lineData,
                                                       SQO_outlierFilterParam outlierPara);

/**
 * Copies a line and removes the outliers from the copy, by distance in space.
 *
 * It differs from qo_lineDataRemoveOutlier() only in the distance, which is Euclidean in x, y and
 * z.
 *
 * @param lineData     the line; only read
 * @param dataSize     number of samples; below 1 the line is empty
 * @param outlierPara  the limits
 * @param filteredData replaced by the filtered line, sample by sample
 * @param noisePts     the indices of all blanked samples are appended in ascending order, including
 *                     those of holes in blanked stretches
 * @pre @p filteredData does not hold @p lineData.
 * @throw std::bad_alloc  if memory runs out; @p filteredData and @p noisePts are unchanged
 */
SCANLINE_API void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                                        int dataSize,
                                                        SQO_outlierFilterParam outlierPara,
                                                        std::vector<STesk3DPosition>& filteredData,
                                                        std::vector<int>& noisePts);

/**
 * Removes the outliers of a whole scan in place: along each line, then across the lines.
 *
 * 1. Each line is filtered as by ju_vectorDataRemoveOutlier_overwrite().
 * 2. The samples of equal index of all lines are taken as a line of their own, and filtered in the
 *    same way. What the first pass blanked is a hole in the second.
 *
 * @param scanLines   the scan; z of the blanked samples becomes 0.0, nothing else is changed
 * @param outlierPara the limits, used in both directions
 * @param errCode     set to 0, or to -1000 if the lines differ in length: then the first pass has
 *                    been done on all lines, and the second on none
 * @pre The scan has at least one line.
 * @throw std::bad_alloc  if memory runs out; @p scanLines and @p errCode are unchanged
 */
SCANLINE_API void ju_noiseFilter(std::vector<std::vector<STesk3DPosition>>& scanLines,
                                 SQO_outlierFilterParam outlierPara,
                                 int* errCode);
